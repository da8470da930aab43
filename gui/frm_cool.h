// "Cooling": the water history of one cooling circuit as three graphs (inlet and outlet
// temperature, flow, capacity), drawn by the core through the painter bridge and drawn again
// whenever the window changes size. The result viewer shows it on a click in its circuit list.
#pragma once

#include <QWidget>

#include "results/cooling_data.h"

namespace pvx {

class frmCool : public QWidget {
 public:
  // A window of its own, owned by `parent`.
  explicit frmCool(QWidget* parent = nullptr);

  // Draws this circuit's history from now on; the window keeps a copy.
  void Show_Circuit(const Circuit_History& history, int circuit_number, bool metric);
  int Circuit_Number() const { return number_; }

  QWidget* Picture1 = nullptr;

 private:
  friend class Circuit_Picture;
  Circuit_History history_;
  int number_ = 0;
  bool metric_ = true;
};

}  // namespace pvx
