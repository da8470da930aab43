// The splitting window of the mesh panel: the counts of the mesh, the number of parts and the
// grading of the next cut, and the element type of the project. It edits the panel's splitting
// parameters in place; every typed number is checked when Enter is pressed, and a refused one
// says why and keeps the old value.
#pragma once

#include <functional>

#include <QWidget>

#include "app/project.h"
#include "app/workflow.h"
#include "mesh/ratios.h"

class QButtonGroup;
class QLabel;
class QLineEdit;
class QRadioButton;
class QSpinBox;

namespace pvx {

class frmelem : public QWidget {
 public:
  frmelem(const Project& project, Splitting_Parameters& parameters, Shell_Host& host, bool decimal_comma,
          QWidget* parent = nullptr);

  // "Generated nodes    : " and "Generated elements : " with the mesh's counts.
  void Set_Femlabels();
  // Fills every box from the parameters and the project; the factor a is open only to the two
  // geometric options, the user weights only to "User defined".
  void Update_Splitting_Display();
  // Shows user weight k (held within 1 .. Division).
  void Set_Division(int k);

  // Asked before the element type changes: returns false to keep the old type (the results that
  // depend on it were not to be destroyed). Without it the change is refused.
  std::function<bool(bool constant_shear)> On_Element_Type;

  QLineEdit* Division_Box() const { return division_; }
  QLineEdit* Factor_Box() const { return factor_; }
  QLineEdit* Weight_Box() const { return weight_; }
  QSpinBox* Weight_Position() const { return position_; }
  QRadioButton* Option(int option) const { return option_[option]; }
  QRadioButton* Element_Type(bool constant_shear) const { return constant_shear ? shear_ : full_; }
  QLabel* Nodes_Label() const { return nodes_; }
  QLabel* Elements_Label() const { return elements_; }

 private:
  void Division_Entered();
  void Factor_Entered();
  void Weight_Entered();
  void Option_Chosen(int option);
  void Element_Type_Chosen(bool constant_shear);
  QString Number_Text(double value) const;

  const Project& project_;
  Splitting_Parameters& parameters_;
  Shell_Host& host_;
  bool decimal_comma_;
  QLabel* nodes_ = nullptr;
  QLabel* elements_ = nullptr;
  QLineEdit* division_ = nullptr;
  QRadioButton* option_[7] = {};
  QButtonGroup* options_ = nullptr;
  QLabel* factor_label_ = nullptr;
  QLineEdit* factor_ = nullptr;
  QLabel* weight_label_ = nullptr;
  QSpinBox* position_ = nullptr;
  QLineEdit* weight_ = nullptr;
  QRadioButton* full_ = nullptr;
  QRadioButton* shear_ = nullptr;
  bool filling_ = false;  // the boxes are being filled, not edited
};

}  // namespace pvx
