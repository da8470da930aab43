// The small dialogs behind the design panel's "Generation of circular polygons" and "Generation of
// holes": a centre, radii, the number of segments and a material (or the macro of a hole), typed by
// the program's entry rule in the project's units. "Apply" hands the request to the panel, which
// makes it as one undo step; a refusal is shown in the dialog, which stays open to be corrected.
#pragma once

#include <array>
#include <functional>
#include <string>

#include <QDialog>

#include "design/generation_entry.h"
#include "gui_context.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace pvx {

class frmGenerate : public QDialog {
 public:
  enum class Kind { Circle, Hole };
  // What "Apply" calls with the typed request: empty when it was made, else why not.
  using Circle_Action = std::function<std::string(const Circle_Request&)>;
  using Hole_Action = std::function<std::string(const Hole_Request&)>;

  frmGenerate(Gui_Context& context, Kind kind, QWidget* parent);

  Kind Which() const { return kind_; }
  // Fills the fields from a request (in the project's units).
  void Show_Circle(const Circle_Request& c);
  void Show_Hole(const Hole_Request& h);
  // The request as typed; false with the number message when a field holds no number.
  bool Read_Circle(Circle_Request& c, std::string& message) const;
  bool Read_Hole(Hole_Request& h, std::string& message) const;

  Circle_Action On_Circle;
  Hole_Action On_Hole;

  // For the tests: the entry boxes in the order of the fields, the material list, the buttons and
  // the line that tells why nothing was made.
  QLineEdit* Entry(int field) const { return entries_[static_cast<std::size_t>(field)]; }
  QComboBox* Material_List() const { return material_; }
  QPushButton* Apply_Button() const { return apply_; }
  QString Refusal() const;

  void Apply_Clicked();

 private:
  void Macro_Entered();
  void Set_Captions();

  Gui_Context& context_;
  Kind kind_;
  std::array<QLabel*, 5> captions_{};
  std::array<QLineEdit*, 5> entries_{};
  QComboBox* material_ = nullptr;
  QLabel* refusal_ = nullptr;
  QPushButton* apply_ = nullptr;
  int shown_macro_ = 0;
};

}  // namespace pvx
