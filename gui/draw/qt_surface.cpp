#include "qt_surface.h"

#include <QBrush>
#include <QColor>
#include <QFile>
#include <QFileInfo>
#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QPen>
#include <QPoint>
#include <QSvgGenerator>

namespace pvx {
namespace {

QColor To_Qt(Plot_Colour c) {
  return QColor(c.R, c.G, c.B);
}

}  // namespace

Qt_Surface::Qt_Surface(QPainter& painter, QSize size, double dots_per_inch)
    : painter_(painter), size_(size), dpi_(dots_per_inch > 0 ? dots_per_inch : 96) {
  // Fills are on whole pixels so that neighbouring triangles meet without seams; smoothing
  // their edges would let the background show through along every shared side.
  painter_.setRenderHint(QPainter::Antialiasing, false);
  painter_.setRenderHint(QPainter::TextAntialiasing, true);
}

void Qt_Surface::Clear() {
  painter_.fillRect(QRect(QPoint(0, 0), size_), Qt::white);
}

void Qt_Surface::Refresh() {
  if (On_Refresh) On_Refresh();
}

void Qt_Surface::Line(double x1, double y1, double x2, double y2, Plot_Colour colour, Line_Style style,
                      int width) {
  QPen pen(To_Qt(colour));
  pen.setWidth(width < 1 ? 1 : (width > 3 ? 3 : width));
  pen.setStyle(style == Line_Style::Dashed ? Qt::DashLine : Qt::SolidLine);
  painter_.setPen(pen);
  painter_.drawLine(QPointF(x1, y1), QPointF(x2, y2));
}

void Qt_Surface::Box(double x1, double y1, double x2, double y2, Plot_Colour colour) {
  painter_.fillRect(QRectF(QPointF(x1, y1), QPointF(x2, y2)).normalized(), To_Qt(colour));
}

void Qt_Surface::Circle(double x, double y, double radius, Plot_Colour colour) {
  painter_.setPen(To_Qt(colour));
  painter_.setBrush(To_Qt(colour));
  painter_.drawEllipse(QPointF(x, y), radius, radius);
  painter_.setBrush(Qt::NoBrush);
}

void Qt_Surface::Text(double x, double y, std::string_view text, int size, Plot_Colour colour) {
  QFont font = painter_.font();
  font.setPointSizeF(size > 0 ? size : 8);
  painter_.setFont(font);
  painter_.setPen(To_Qt(colour));
  const QFontMetricsF metrics(font, painter_.device());
  painter_.drawText(QPointF(x, y + metrics.ascent()),
                    QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

void Qt_Surface::Fill_Polygon(const Pixel_Point (&vertex)[3], Plot_Colour colour) {
  const QPoint points[3] = {
      {vertex[0].X, vertex[0].Y}, {vertex[1].X, vertex[1].Y}, {vertex[2].X, vertex[2].Y}};
  // The outline in the fill colour closes the half-pixel gaps that a pure fill leaves between
  // neighbours on the same pixel edge.
  painter_.setPen(To_Qt(colour));
  painter_.setBrush(To_Qt(colour));
  painter_.drawPolygon(points, 3);
  painter_.setBrush(Qt::NoBrush);
}

void Qt_Surface::Set_Wait_Pointer(bool waiting) {
  if (On_Wait_Pointer) On_Wait_Pointer(waiting);
}

bool Store_Picture(const QImage& image, const std::string& path, std::string& message) {
  const QString target = QString::fromStdString(path);
  const QString suffix = QFileInfo(target).suffix().toLower();
  const char* format = nullptr;
  int quality = -1;
  if (suffix == "jpg" || suffix == "jpeg") {
    format = "JPEG";
    quality = 90;
  } else if (suffix == "bmp") {
    format = "BMP";
  } else if (suffix == "png") {
    format = "PNG";
  }
  if (format == nullptr) {
    message = "Pictures are stored as .jpg, .bmp or .png: " + path;
    return false;
  }
  const QString temporary = target + ".saving";
  QFile::remove(temporary);
  if (!image.save(temporary, format, quality)) {
    QFile::remove(temporary);
    message = "The picture could not be written: " + path;
    return false;
  }
  QFile::remove(target);
  if (!QFile::rename(temporary, target)) {
    QFile::remove(temporary);
    message = "The picture could not be written: " + path;
    return false;
  }
  message.clear();
  return true;
}

QImage Draw_To_Image(QSize size, const std::function<void(Plot_Surface&)>& draw) {
  QImage image(size, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  Qt_Surface surface(painter, size, 96);
  draw(surface);
  painter.end();
  return image;
}

bool Draw_To_Svg(const std::string& path, QSize size, const std::function<void(Plot_Surface&)>& draw,
                 std::string& message) {
  const QString target = QString::fromStdString(path);
  const QString temporary = target + ".saving";
  {
    QSvgGenerator generator;
    generator.setFileName(temporary);
    generator.setSize(size);
    generator.setViewBox(QRect(QPoint(0, 0), size));
    generator.setResolution(96);
    QPainter painter;
    if (!painter.begin(&generator)) {
      QFile::remove(temporary);
      message = "The picture could not be written: " + path;
      return false;
    }
    Qt_Surface surface(painter, size, 96);
    surface.Clear();
    draw(surface);
    painter.end();
  }
  QFile::remove(target);
  if (!QFileInfo(temporary).isFile() || !QFile::rename(temporary, target)) {
    QFile::remove(temporary);
    message = "The picture could not be written: " + path;
    return false;
  }
  message.clear();
  return true;
}

}  // namespace pvx
