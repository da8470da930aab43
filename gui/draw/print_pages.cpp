#include "print_pages.h"

#include <QFont>
#include <QFontMetrics>
#include <QLocale>
#include <QPagedPaintDevice>
#include <QPainter>

#include <algorithm>

namespace pvx {

namespace {

QString Q(const std::string& text) {
  return QString::fromStdString(text);
}

// The header: the title and description lines at the left, the date, time and page number at the
// right of its first three lines, a rule under it and one table line of space.
struct Header_Metrics {
  int line_height = 0;
  int height = 0;  // down to the first table line
};

Header_Metrics Measure_Header(QPaintDevice& device, int header_lines) {
  const QFontMetrics header(Print_Header_Font(), &device);
  const QFontMetrics table(Print_Table_Font(), &device);
  Header_Metrics m;
  m.line_height = header.lineSpacing();
  m.height = std::max(header_lines, 3) * m.line_height + table.lineSpacing();
  return m;
}

}  // namespace

QFont Print_Header_Font() {
  QFont font("Arial", 10);
  font.setStyleHint(QFont::SansSerif);
  return font;
}

QFont Print_Table_Font() {
  QFont font("Courier New", 8);
  font.setStyleHint(QFont::TypeWriter);
  font.setFixedPitch(true);
  return font;
}

std::string Print_Date_Text(const QDate& date) {
  return QLocale(QLocale::English).toString(date, QStringLiteral("dddd d-M-yyyy")).toStdString();
}

std::string Print_Time_Text(const QTime& time) {
  return QLocale(QLocale::English).toString(time, QStringLiteral("h:mm")).toStdString();
}

int Print_Lines_Per_Page(QPaintDevice& device, int header_lines) {
  const Header_Metrics header = Measure_Header(device, header_lines);
  const int line = QFontMetrics(Print_Table_Font(), &device).lineSpacing();
  if (line <= 0) return 1;
  return std::max(1, (device.height() - header.height) / line);
}

void Draw_Print_Page(QPainter& painter, QPaintDevice& device, const std::vector<std::string>& header,
                     const std::vector<std::string>& lines, int page, int count, const QDateTime& when) {
  const int header_lines = static_cast<int>(header.size());
  const Header_Metrics head = Measure_Header(device, header_lines);
  const QFont header_font = Print_Header_Font(), table_font = Print_Table_Font();
  const QFontMetrics table_metrics(table_font, &device);
  const int width = device.width();
  painter.setFont(header_font);
  const int ascent = QFontMetrics(header_font, &device).ascent();
  for (int i = 0; i < header_lines; ++i)
    painter.drawText(0, i * head.line_height + ascent, Q(header[static_cast<std::size_t>(i)]));
  const QString right[3] = {Q(Print_Date_Text(when.date())), Q(Print_Time_Text(when.time())),
                            QStringLiteral("page %1 of %2").arg(page).arg(count)};
  for (int i = 0; i < 3; ++i)
    painter.drawText(QRect(0, i * head.line_height, width, head.line_height),
                     Qt::AlignRight | Qt::AlignVCenter, right[i]);
  const int rule = head.height - table_metrics.lineSpacing() / 2;
  painter.drawLine(0, rule, width, rule);
  painter.setFont(table_font);
  for (std::size_t i = 0; i < lines.size(); ++i)
    painter.drawText(0,
                     head.height + static_cast<int>(i) * table_metrics.lineSpacing() + table_metrics.ascent(),
                     Q(lines[i]));
}

int Print_Pages(QPagedPaintDevice& device, const std::vector<std::string>& header, const Print_Layout& layout,
                const QDateTime& when) {
  if (layout.Lines.empty()) return 0;
  const auto pages = Paginate(layout, Print_Lines_Per_Page(device, static_cast<int>(header.size())));
  const int count = static_cast<int>(pages.size());
  QPainter painter;
  if (!painter.begin(&device)) return 0;
  for (int n = 1; n <= count; ++n) {
    if (n > 1 && !device.newPage()) {
      painter.end();
      return 0;
    }
    Draw_Print_Page(painter, device, header, pages[static_cast<std::size_t>(n - 1)], n, count, when);
  }
  painter.end();
  return count;
}

}  // namespace pvx
