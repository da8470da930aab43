// The design panel: a picture of the design layer in which the mouse draws and picks according to
// the mode of the panel. The rules of what a click does live in the core (design/panel_*.h); this
// form turns pixels into model millimetres, gates every edit through Destroy_Output, keeps the
// undo copies, and shows popups and the property editors.
#pragma once

#include <functional>

#include <QPoint>
#include <QStringList>

#include "design/circular.h"
#include "design/panel.h"
#include "design/panel_snap.h"
#include "design/panel_undo.h"
#include "editors.h"
#include "gui_context.h"
#include "results/plot.h"

class QLabel;
class QButtonGroup;

namespace pvx {

inline constexpr const char* Corner_Refused_Hint =
    "A macro corner cannot lie inside another macro or within one of its sides: click an existing node "
    "or a free point. To stand a macro on a side, draw the other macro as two, so that the point is "
    "one of their corners.";

class frmDesign;
class frmGenerate;
class frmGraf;

// The picture area of the panel; it hands its paint and mouse events to the form.
class frmDesign_Picture : public QWidget {
 public:
  frmDesign_Picture(frmDesign& form, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  frmDesign& form_;
};

class frmDesign : public Work_Form_Widget {
 public:
  frmDesign(Gui_Context& context, QWidget* parent = nullptr);
  ~frmDesign() override;

  void Form_Shown() override;
  void Redraw() override;
  // A Project read or made anew: the undo copies and any half-drawn macro belong to the old one.
  // The form also notices this by itself when it is shown (another file, another node or macro
  // count), but the main window knows for certain.
  void Project_Replaced();

  // The mode of the panel, as its buttons set it.
  void Set_Mode(Design_Mode mode);
  Design_Mode Mode() const { return panel_.Mode; }

  // Ctrl+Z and its inverse; false when there is nothing to take back.
  bool Undo_Edit();
  bool Redo_Edit();
  // Deletes the nodes that nothing refers to.
  void Delete_Free_Nodes_Command();
  // "Save picture": asks for a file through the host and stores the picture as JPEG or bitmap.
  void Store_Picture_Command();
  // "Magnify": the next rectangle dragged in the picture becomes the view. "Original size".
  void Zoom_In_Command();
  void Zoom_Out_Command();
  // "Settings": the grid dialog.
  frmGraf& Show_Graf();
  // "Generation of circular polygons" and "Generation of holes": their dialogs, opened with the
  // last circle asked for, or with a hole in the middle of `macro`.
  frmGenerate& Show_Circle_Dialog();
  frmGenerate& Show_Hole_Dialog(int macro);
  // What the dialogs' "Apply" does: the generation as one undo step, after Destroy_Output. Empty
  // when it was made (or the user kept the results), else the reason of the refusal; a refused
  // request changes nothing and asks nothing.
  std::string Generate_Circle_Command(const Circle_Request& c);
  std::string Generate_Hole_Command(const Hole_Request& h);
  // What the panel says under its picture: why the last click did nothing, or what was generated.
  QString Hint_Text() const;

  // For the tests and the drawing: the picture widget, its transformation and the panel state.
  QWidget* Picture_Widget() const;
  const Picture_State& Picture();
  Design_Panel& Panel() { return panel_; }
  const Design_Undo& Undo_Stack() const { return undo_; }
  QString Pointer_Text() const;

  // What would need the user's hand, as replaceable hooks (the tests script them): a popup menu
  // returns the chosen entry (-1 none), a choice among several objects under the pointer returns
  // its position (-1 none), an editor returns true when it changed the Project.
  std::function<int(const QStringList& entries, QPoint global)> Choose_Popup_Entry;
  std::function<int(const QStringList& entries)> Choose_Extra;
  std::function<bool(Property_Editor editor, int index)> Open_Editor;
  std::function<void()> Beep;

  // The event handlers of the picture, in picture pixels.
  void Picture_Paint(QPainter& painter, QSize size);
  void Picture_Press(Qt::MouseButton button, QPointF pixel, QPoint global);
  void Picture_Move(QPointF pixel);
  void Picture_Release(Qt::MouseButton button, QPointF pixel);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Refuse_Corner();
  void Tell(const QString& text, bool refusal);
  // A generation tried on a copy of the Project, made the Project's own (one undo step) when the
  // user lets the results go; the refusal otherwise.
  std::string Generate(const std::function<Generation_Result(Project&, Design_Undo&)>& generate);
  void Build_Controls();
  void Update_Scale();
  void Track_Pointer(QPointF pixel);
  void Draw_Objects(Plot_Surface& surface);
  void Draw_Picture(Plot_Surface& surface);
  // The gate of every edit: Destroy_Output, then the undo copy. False when the user declined.
  bool Begin_Edit();
  // After an edit: the main window and the picture are brought up to date.
  void End_Edit();
  // An editor over a record, with an undo copy kept only when it changed something.
  void Edit_Properties(Property_Editor editor, int index);
  void Popup(QPoint global);
  // Several objects under the pointer: the user picks one of the Selection_List.
  int Select_Extra(const char* what);
  // The same for a left click on point objects or areas: the chosen one becomes current.
  void Choose_Current_Object();
  void Left_Press();
  void Forget_Stale_State();
  void Update_Caption();

  Gui_Context& context_;
  Design_Panel panel_;
  Design_Undo undo_;
  Design_Display display_;
  Picture_State state_;
  frmDesign_Picture* picture_ = nullptr;
  QLabel* caption_label_ = nullptr;
  QLabel* position_label_ = nullptr;
  QLabel* hint_label_ = nullptr;  // why the last click did nothing
  QButtonGroup* modes_ = nullptr;
  frmGraf* graf_ = nullptr;
  frmGenerate* circle_dialog_ = nullptr;
  frmGenerate* hole_dialog_ = nullptr;
  Circle_Request last_circle_;

  // A drag in progress: of a node, a bar, an area or a zoom window, from a model point.
  enum class Drag { None, Node, Bar, Area, Zoom };
  Drag drag_ = Drag::None;
  bool drag_edit_begun_ = false;
  double drag_x_ = 0, drag_y_ = 0;
  double node_start_x_ = 0, node_start_y_ = 0;
  bool pointer_in_picture_ = false;
  double raw_x_ = 0, raw_y_ = 0;  // the pointer in model mm before snapping
  // What the form saw of the Project after its last own step, to notice a Project read or made
  // anew elsewhere (the undo copies and an open polygon belong to the model they came from).
  std::string seen_file_;
  int seen_nodes_ = -1;
  int seen_macros_ = -1;
};

}  // namespace pvx
