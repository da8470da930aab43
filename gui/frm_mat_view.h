// The material viewer: the materials of the database in a list, the properties of the chosen one
// in a second list, and the chosen property as a curve with its formula text, drawn by the core
// (material_curves.h) through the painter bridge. The window keeps a copy of the materials it was
// given, so a database read anew elsewhere changes nothing here until it is given again.
#pragma once

#include <vector>

#include <QWidget>

#include "analysis/material_curves.h"
#include "material/material.h"

class QLabel;
class QListWidget;

namespace pvx {

inline constexpr const char* Material_Viewer_Caption = "Material properties";
inline constexpr const char* No_Materials_Text = "  (No material database connected.)";

class frmMatView : public QWidget {
 public:
  // A window of its own, owned by `parent`.
  explicit frmMatView(QWidget* parent = nullptr);

  // Shows these materials from now on, in the metric or the imperial system. The chosen material
  // and property stay chosen where the new list has them by name; otherwise the first are chosen.
  // Nothing is redone when the materials and the system are those already shown.
  void Show_Materials(const Table<Material>& materials, bool metric);

  // Chooses material `number` (from 1) of the list; false when there is none such.
  bool Select_Material(int number);
  // Chooses a property of the chosen material; false when the material does not have it.
  bool Select_Property(Material_Property p);

  int Material_Number() const;  // 0 when the list is empty
  // The chosen material's properties, in the order of the list.
  const std::vector<Material_Property>& Properties() const { return properties_; }
  // The curve in view and what its last drawing showed.
  const Material_Curve& Curve() const { return curve_; }
  const Material_Picture& Last_Picture() const { return picture_; }

  QLabel* Label1 = nullptr;      // the database's material count
  QListWidget* List1 = nullptr;  // the materials
  QListWidget* List2 = nullptr;  // the properties of the chosen material
  QWidget* Picture1 = nullptr;

 private:
  friend class Material_Curve_Picture;
  void Fill_Properties(Material_Property keep);
  void Make_Curve();

  Table<Material> materials_;
  bool metric_ = true;
  bool shown_ = false;
  std::vector<Material_Property> properties_;
  Material_Curve curve_;
  Material_Picture picture_;
};

}  // namespace pvx
