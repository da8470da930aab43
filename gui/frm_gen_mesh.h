// The mesh panel: the picture of the mesh, where a click on an element side cuts the strip through
// it, the toolbar that steps through the splitting history and makes the cooling pipes into holes,
// and the splitting window beside it. The mesh itself is the Project's; the panel holds the
// splitting session and the picture's transformation.
#pragma once

#include <map>
#include <string>

#include <QString>

#include "frm_elem.h"
#include "gui_context.h"
#include "mesh/mesh_session.h"
#include "results/plot.h"

class QAction;
class QToolBar;

namespace pvx {

// Draws the mesh panel: the design layers with the mesh in place of the macros, the mesh nodes,
// the pipe positions of circuits not yet made into holes, and side `side` of element `element`
// highlighted (none when 0).
void Plot_Mesh_Panel(Plot_Surface& surface, const Picture_State& state, const Project& project,
                     bool circuits_integrated, int element, int side);

inline constexpr Plot_Colour Picked_Side_Colour{255, 0, 255};
inline constexpr Plot_Colour Mesh_Node_Colour = Blue;
inline constexpr Plot_Colour Pipe_Colour = Red;

class Mesh_Picture;

class frmGenMesh : public Work_Form_Widget {
 public:
  frmGenMesh(Gui_Context& context, QWidget* parent = nullptr);

  // Opens on the Project: its mesh with its history, or the initial mesh made from the macros.
  void Form_Shown() override;
  void Redraw() override;

  // The toolbar by key: "Zoomout", "Clean", "Backward", "Forward", "All", "Reset", "Integrate",
  // and "Store" for storing the picture.
  void Toolbar_Click(const std::string& key);
  QAction* Tool(const std::string& key) const;
  // Sets the history keys and the visibility of "Integrate" from the Project and the session.
  void Set_Toolbar();

  // A click on the picture at pixel (px, py): cuts the strip through the element side there.
  void Click_At(double px, double py);
  // A dragged rectangle between two pixels: zooms to it.
  void Zoom_To(double px1, double py1, double px2, double py2);
  // The pointer over the picture: the side it would cut is highlighted.
  void Hover_At(double px, double py);

  // The transformation of the picture as it is drawn now (for the pointer and for the tests).
  const Picture_State& Picture() const;
  QWidget* Picture_Widget() const;
  frmelem* Splitting_Window() const { return elem_; }
  const Mesh_Session& Session() const { return session_; }
  int Highlighted_Element() const { return hover_element_; }
  int Highlighted_Side() const { return hover_side_; }

 private:
  friend class Mesh_Picture;
  void Update_Scale();
  void Draw(Plot_Surface& surface);
  // After a change of the mesh: flags, labels, toolbar, picture, and the main window told.
  void Mesh_Changed();
  // The gate before a change that invalidates computed results.
  bool May_Change();
  void Store_Picture_Dialog();
  void Home_View();

  Gui_Context& context_;
  Mesh_Session session_;
  Picture_State picture_;
  // The view that "Zoomout" returns to: the project's frame, widened to hold the whole mesh.
  bool home_zoomed_ = false;
  double home_[4] = {0, 0, 0, 0};
  int hover_element_ = 0, hover_side_ = 0;
  QToolBar* toolbar_ = nullptr;
  std::map<std::string, QAction*> tools_;
  Mesh_Picture* picture_widget_ = nullptr;
  frmelem* elem_ = nullptr;
};

inline constexpr const char* Store_Picture_Title = "Store picture";
inline constexpr const char* Picture_Filter = "JPEG (*.jpg)|*.jpg|Bitmap (*.bmp)|*.bmp|PNG (*.png)|*.png|";

}  // namespace pvx
