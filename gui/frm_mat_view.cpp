#include "frm_mat_view.h"

#include <algorithm>

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QVBoxLayout>

#include "draw/qt_surface.h"

namespace pvx {

namespace {

QString Display_Name(const Material& m) {
  return QString::fromStdString(m.Name).trimmed();
}

}  // namespace

// The picture: every paint draws the curve in view at the picture's current size.
class Material_Curve_Picture : public QWidget {
 public:
  Material_Curve_Picture(frmMatView& form, QWidget* parent) : QWidget(parent), form_(form) {
    setObjectName("Picture1");
    setMinimumSize(320, 240);
    setAutoFillBackground(true);
    QPalette p = palette();
    p.setColor(QPalette::Window, Qt::white);
    setPalette(p);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    Qt_Surface surface(painter, size(), logicalDpiX());
    form_.picture_ = Plot_Material_Curve(surface, form_.curve_);
  }

 private:
  frmMatView& form_;
};

frmMatView::frmMatView(QWidget* parent) : QWidget(parent, Qt::Window) {
  setObjectName("frmMatView");
  setWindowTitle(Material_Viewer_Caption);
  auto* layout = new QHBoxLayout(this);
  auto* side = new QVBoxLayout;
  Label1 = new QLabel(this);
  Label1->setObjectName("Label1");
  List1 = new QListWidget(this);
  List1->setObjectName("List1");
  auto* properties = new QLabel("Properties", this);
  List2 = new QListWidget(this);
  List2->setObjectName("List2");
  side->addWidget(Label1);
  side->addWidget(List1, 2);
  side->addWidget(properties);
  side->addWidget(List2, 3);
  auto* lists = new QWidget(this);
  lists->setLayout(side);
  lists->setFixedWidth(250);
  side->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(lists);
  Picture1 = new Material_Curve_Picture(*this, this);
  layout->addWidget(Picture1, 1);
  resize(1120, 640);

  connect(List1, &QListWidget::currentRowChanged, this, [this](int) {
    const int row = List2->currentRow();
    const bool had = row >= 0 && row < static_cast<int>(properties_.size());
    Fill_Properties(had ? properties_[static_cast<std::size_t>(row)] : Material_Property::Capacity);
    Make_Curve();
  });
  connect(List2, &QListWidget::currentRowChanged, this, [this](int) { Make_Curve(); });
  Make_Curve();
}

void frmMatView::Show_Materials(const Table<Material>& materials, bool metric) {
  if (shown_ && metric == metric_ && materials == materials_) return;
  shown_ = true;
  const QString chosen = List1->currentItem() ? List1->currentItem()->text() : QString();
  const int row = List2->currentRow();
  const Material_Property keep = row >= 0 && row < static_cast<int>(properties_.size())
                                     ? properties_[static_cast<std::size_t>(row)]
                                     : Material_Property::Capacity;
  materials_ = materials;
  metric_ = metric;
  {
    const QSignalBlocker block(List1);
    List1->clear();
    int current = 0;
    for (int i = 1; i <= materials_.count(); ++i) {
      List1->addItem(Display_Name(materials_[i]));
      if (Display_Name(materials_[i]) == chosen) current = i - 1;
    }
    if (!materials_.empty()) List1->setCurrentRow(current);
  }
  Label1->setText(QString("Materials (%1)").arg(materials_.count()));
  Fill_Properties(keep);
  Make_Curve();
}

void frmMatView::Fill_Properties(Material_Property keep) {
  const int number = Material_Number();
  properties_ = number > 0 ? Material_Properties(materials_[number]) : std::vector<Material_Property>{};
  const QSignalBlocker block(List2);
  List2->clear();
  for (Material_Property p : properties_)
    List2->addItem(Property_Name(p));
  const auto at = std::find(properties_.begin(), properties_.end(), keep);
  if (!properties_.empty())
    List2->setCurrentRow(at == properties_.end() ? 0 : static_cast<int>(at - properties_.begin()));
}

void frmMatView::Make_Curve() {
  const int number = Material_Number();
  const int row = List2->currentRow();
  if (number == 0 || row < 0 || row >= static_cast<int>(properties_.size())) {
    curve_ = Material_Curve{};
    curve_.Title = number == 0 ? No_Materials_Text : Display_Name(materials_[number]).toStdString();
    setWindowTitle(Material_Viewer_Caption);
  } else {
    curve_ = Material_Curve_Of(materials_[number], properties_[static_cast<std::size_t>(row)], metric_);
    setWindowTitle(QString("%1 - %2").arg(Material_Viewer_Caption, Display_Name(materials_[number])));
  }
  Picture1->update();
}

bool frmMatView::Select_Material(int number) {
  if (!materials_.valid(number)) return false;
  List1->setCurrentRow(number - 1);
  return true;
}

bool frmMatView::Select_Property(Material_Property p) {
  const auto at = std::find(properties_.begin(), properties_.end(), p);
  if (at == properties_.end()) return false;
  List2->setCurrentRow(static_cast<int>(at - properties_.begin()));
  return true;
}

int frmMatView::Material_Number() const {
  const int row = List1->currentRow();
  return materials_.valid(row + 1) ? row + 1 : 0;
}

}  // namespace pvx
