#include "frm_change_work_dir.h"

#include <QDir>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QVBoxLayout>

namespace pvx {

frmChangeWorkDir::frmChangeWorkDir(Gui_Context& context, QWidget* parent)
    : Work_Form_Widget(parent), context_(context) {
  setObjectName("frmChangeWorkDir");
  setWindowTitle("Change Work Directory");
  Drive1 = new QComboBox(this);
  Drive1->setObjectName("Drive1");
  for (const QFileInfo& drive : QDir::drives())
    Drive1->addItem(QDir::toNativeSeparators(drive.absoluteFilePath()));
  model_ = new QFileSystemModel(this);
  model_->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot | QDir::Drives);
  model_->setRootPath(QString());
  Dir1 = new QTreeView(this);
  Dir1->setObjectName("Dir1");
  Dir1->setModel(model_);
  for (int column = 1; column < model_->columnCount(); ++column)
    Dir1->hideColumn(column);
  Dir1->header()->hide();
  Dir1->setMinimumSize(420, 320);
  lblChosen = new QLabel(this);
  lblChosen->setObjectName("lblChosen");
  cmdExit = new QPushButton("Exit", this);
  cmdExit->setObjectName("cmdExit");

  auto* buttons = new QHBoxLayout;
  buttons->addWidget(lblChosen, 1);
  buttons->addWidget(cmdExit);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(Drive1);
  layout->addWidget(Dir1, 1);
  layout->addLayout(buttons);

  connect(Drive1, &QComboBox::activated, this, [this](int) { Select_Directory(Drive1->currentText()); });
  connect(Dir1->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this] { lblChosen->setText(QDir::toNativeSeparators(Chosen_Directory())); });
  connect(cmdExit, &QPushButton::clicked, this, [this] { Exit_Click(); });
}

void frmChangeWorkDir::Form_Shown() {
  // The command has just gone to the program's directory; the tree starts there.
  Select_Directory(QDir::currentPath());
}

void frmChangeWorkDir::Select_Directory(const QString& path) {
  const QModelIndex index = model_->index(QDir(path).absolutePath());
  if (!index.isValid()) return;
  Dir1->setCurrentIndex(index);
  Dir1->scrollTo(index);
  Dir1->expand(index);
  lblChosen->setText(QDir::toNativeSeparators(Chosen_Directory()));
}

QString frmChangeWorkDir::Chosen_Directory() const {
  const QModelIndex index = Dir1->currentIndex();
  return index.isValid() ? model_->filePath(index) : QString();
}

void frmChangeWorkDir::Exit_Click() {
  Close_Work_Directory_Form(QDir::toNativeSeparators(Chosen_Directory()).toStdString(), context_.shell,
                            context_.host);
  context_.host.Hide_All();
  context_.state_changed();
}

}  // namespace pvx
