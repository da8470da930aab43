#include "graph_window.h"

#include <QImage>
#include <QPainter>
#include <utility>

#include "draw/qt_surface.h"
#include "frm_res.h"

namespace pvx {

Graph_Picture::Graph_Picture(std::function<void(Plot_Surface&)> draw, QSize minimum_size, QWidget* parent)
    : QWidget(parent), draw_(std::move(draw)) {
  setObjectName("Picture1");
  setMinimumSize(minimum_size);
}

void Graph_Picture::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  Qt_Surface surface(painter, size(), logicalDpiX());
  draw_(surface);
}

std::string In_Work_Directory(const std::string& directory, const std::string& name) {
  std::string path = directory;
  if (!path.empty() && path.back() != '/' && path.back() != '\\') path += '/';
  return path + name;
}

void Store_Picture_Of_Graph(Gui_Context& context, const Graph_Picture& picture, std::string proposal) {
  if (!context.host.Choose_Save_File(Store_Picture_Caption, Store_Picture_Filter, proposal) ||
      proposal.empty())
    return;
  const QImage image = Draw_To_Image(picture.size(), picture.Drawing());
  std::string message;
  if (!Store_Picture(image, proposal, message)) context.host.Show_Message(message);
}

}  // namespace pvx
