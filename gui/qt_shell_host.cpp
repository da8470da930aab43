#include "qt_shell_host.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

#include "app/shell_input.h"
#include "results/result_files.h"

namespace pvx {

namespace {

QString Q(const std::string& text) {
  return QString::fromStdString(text);
}

bool Choose_File(QWidget* parent, bool save, const std::string& title, const std::string& filter,
                 std::string& path) {
  QFileDialog dialog(parent, Q(title));
  dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  dialog.setNameFilters(Qt_Name_Filters(filter));
  if (save) dialog.setDefaultSuffix(Q(Default_Suffix(filter)));
  const QFileInfo proposal(Q(path));
  if (path.empty()) {
    dialog.setDirectory(QDir::currentPath());
  } else {
    dialog.setDirectory(proposal.absolutePath());
    dialog.selectFile(proposal.fileName());
  }
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return false;
  path = QDir::toNativeSeparators(dialog.selectedFiles().front()).toStdString();
  return true;
}

}  // namespace

QStringList Qt_Name_Filters(const std::string& filter) {
  QStringList list;
  for (const File_Filter_Entry& entry : Split_File_Filter(filter)) {
    QString patterns = Q(entry.Patterns);
    patterns.replace(';', ' ');
    // Qt reads the patterns from the parentheses at the end of a description; a description that
    // does not already end in its own patterns gets them added.
    QString text = Q(entry.Description);
    if (!text.trimmed().endsWith("(" + patterns + ")")) text += " (" + patterns + ")";
    list << text;
  }
  return list;
}

bool Check_Result_Family(const Project& p, const Shell& shell, std::string& message) {
  message.clear();
  if (p.Result_File_Name.empty()) {
    message = Results_Not_Available("");
    return false;
  }
  Result_Family family;
  if (!Prepare_Result_Family(family, p, p.Mechanical_Included != False_Flag, shell.Work_Directory, message) ||
      !Open_All_Result_Sets(family, p.File_Version, message))
    return false;
  for (int run = 1; run <= Number_Of_Runs(family); ++run) {
    Run_Index index;
    if (!Read_Run_Index(family, run, p.File_Version, p.Metric_Units == False_Flag, index, message))
      return false;
  }
  return true;  // the family closes as it goes
}

Answer Qt_Shell_Host::Ask(const std::string& question, Question_Buttons buttons) {
  QMessageBox::StandardButtons choice;
  QMessageBox::StandardButton fallback = QMessageBox::No;
  switch (buttons) {
    case Question_Buttons::Yes_No:
      choice = QMessageBox::Yes | QMessageBox::No;
      break;
    case Question_Buttons::Yes_No_Cancel:
      choice = QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
      fallback = QMessageBox::Cancel;
      break;
    case Question_Buttons::OK_Cancel:
      choice = QMessageBox::Ok | QMessageBox::Cancel;
      fallback = QMessageBox::Cancel;
      break;
  }
  QMessageBox box(QMessageBox::Question, Q(Program_Name), Q(question), choice, parent_);
  box.setDefaultButton(buttons == Question_Buttons::OK_Cancel ? QMessageBox::Ok : QMessageBox::Yes);
  box.setEscapeButton(fallback);
  switch (box.exec()) {
    case QMessageBox::Yes:
      return Answer::Yes;
    case QMessageBox::Ok:
      return Answer::OK;
    case QMessageBox::No:
      return Answer::No;
    default:  // the box closed without a button: as its escape button
      return fallback == QMessageBox::No ? Answer::No : Answer::Cancel;
  }
}

void Qt_Shell_Host::Show_Message(const std::string& text) {
  if (text.empty()) return;
  QMessageBox::information(parent_, Q(Program_Name), Q(text));
}

bool Qt_Shell_Host::Choose_Open_File(const std::string& title, const std::string& filter, std::string& path) {
  return Choose_File(parent_, false, title, filter, path);
}

bool Qt_Shell_Host::Choose_Save_File(const std::string& title, const std::string& filter, std::string& path) {
  return Choose_File(parent_, true, title, filter, path);
}

bool Qt_Shell_Host::Open_Results(const Project& p, const Shell& shell, std::string& message) {
  return Check_Result_Family(p, shell, message);
}

void Qt_Shell_Host::Change_Directory(const std::string& directory) {
  if (!directory.empty()) QDir::setCurrent(Q(directory));
}

void Qt_Shell_Host::End_Program() {
  QCoreApplication::quit();
}

std::string Qt_Settings_Store::Get_Setting(const std::string& application, const std::string& section,
                                           const std::string& key, const std::string& fallback) {
  QSettings settings(format_, QSettings::UserScope, Q(application), Q(application));
  settings.beginGroup(Q(section));
  return settings.value(Q(key), Q(fallback)).toString().toStdString();
}

void Qt_Settings_Store::Save_Setting(const std::string& application, const std::string& section,
                                     const std::string& key, const std::string& value) {
  QSettings settings(format_, QSettings::UserScope, Q(application), Q(application));
  settings.beginGroup(Q(section));
  settings.setValue(Q(key), Q(value));
}

}  // namespace pvx
