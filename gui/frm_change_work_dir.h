// The choice of the work directory: a drive list, a directory tree and "Exit". On "Exit" the
// chosen directory becomes the work directory and is kept for the next start.
#pragma once

#include <QComboBox>
#include <QFileSystemModel>
#include <QLabel>
#include <QPushButton>
#include <QTreeView>

#include "gui_context.h"

namespace pvx {

class frmChangeWorkDir : public Work_Form_Widget {
  Q_OBJECT

 public:
  frmChangeWorkDir(Gui_Context& context, QWidget* parent = nullptr);
  void Form_Shown() override;
  // Selects a directory in the tree, as a click on it does.
  void Select_Directory(const QString& path);
  QString Chosen_Directory() const;

  QComboBox* Drive1;
  QTreeView* Dir1;
  QLabel* lblChosen;
  QPushButton* cmdExit;

 private:
  void Exit_Click();
  Gui_Context& context_;
  QFileSystemModel* model_;
};

}  // namespace pvx
