// What the graph windows of the result viewer ("Results from linecut" and "Evolution") share: the
// picture that draws the graph through the core's plot procedures at every paint, and storing that
// graph as a picture file at the size it is shown.
#pragma once

#include <QWidget>
#include <functional>
#include <string>

#include "gui_context.h"
#include "results/plot_surface.h"

namespace pvx {

// The picture of a graph: every paint draws the whole graph at the picture's present size. The same
// drawing serves the stored picture, so the file shows what the window shows.
class Graph_Picture : public QWidget {
 public:
  Graph_Picture(std::function<void(Plot_Surface&)> draw, QSize minimum_size, QWidget* parent);

  const std::function<void(Plot_Surface&)>& Drawing() const { return draw_; }

 protected:
  void paintEvent(QPaintEvent*) override;

 private:
  std::function<void(Plot_Surface&)> draw_;
};

// The working folder with a file name, as the proposal of a save dialogue.
std::string In_Work_Directory(const std::string& directory, const std::string& name);

// "Store picture": the user chooses the file, starting from `proposal`; the graph is drawn again at
// the picture's size and stored by the file's extension. A refused write is shown as its message.
void Store_Picture_Of_Graph(Gui_Context& context, const Graph_Picture& picture, std::string proposal);

}  // namespace pvx
