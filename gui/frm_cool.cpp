#include "frm_cool.h"

#include <QPainter>
#include <QVBoxLayout>

#include "draw/qt_surface.h"
#include "results/cooling_view.h"

namespace pvx {

// The picture: every paint draws the whole history at the picture's current size.
class Circuit_Picture : public QWidget {
 public:
  Circuit_Picture(frmCool& form, QWidget* parent) : QWidget(parent), form_(form) {
    setObjectName("Picture1");
    setMinimumSize(240, 120);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    Qt_Surface surface(painter, size(), logicalDpiX());
    Plot_Circuit_Data(surface, form_.history_, form_.number_, form_.metric_);
  }

 private:
  frmCool& form_;
};

frmCool::frmCool(QWidget* parent) : QWidget(parent, Qt::Window) {
  setObjectName("frmCool");
  setWindowTitle(Cooling_Caption);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  Picture1 = new Circuit_Picture(*this, this);
  layout->addWidget(Picture1);
  resize(960, 420);
}

void frmCool::Show_Circuit(const Circuit_History& history, int circuit_number, bool metric) {
  history_ = history;
  number_ = circuit_number;
  metric_ = metric;
  setWindowTitle(
      QString("%1 - %2").arg(Cooling_Caption, QString::fromStdString(Circuit_Caption(circuit_number))));
  Picture1->update();
}

}  // namespace pvx
