// The platform's side of the shell: questions and messages as message boxes, the file choosers,
// the current directory, the check of a result family before the viewers show it, and the per-user
// settings store of the recent file list. The main window adds its own window work to these.
#pragma once

#include <QSettings>
#include <QString>
#include <QStringList>
#include <QWidget>

#include "app/recent_files.h"
#include "app/workflow.h"

namespace pvx {

// The chooser filter of the program ("description|pattern|...") as Qt's list of name filters.
QStringList Qt_Name_Filters(const std::string& filter);

// Opens every run of the project's result family and reads its index, as the viewers will; the
// family is closed again. On failure `message` is the program's ("Results (name) not available",
// or "... not available or corrupted! The program returns to the design mode.").
bool Check_Result_Family(const Project& p, const Shell& shell, std::string& message);

class Qt_Shell_Host : public Shell_Host {
 public:
  // `parent` is the window the dialogs belong to (may be null, and may be set later).
  explicit Qt_Shell_Host(QWidget* parent = nullptr) : parent_(parent) {}
  void Set_Parent(QWidget* parent) { parent_ = parent; }

  Answer Ask(const std::string& question, Question_Buttons buttons) override;
  void Show_Message(const std::string& text) override;
  bool Choose_Open_File(const std::string& title, const std::string& filter, std::string& path) override;
  bool Choose_Save_File(const std::string& title, const std::string& filter, std::string& path) override;
  bool Open_Results(const Project& p, const Shell& shell, std::string& message) override;
  void Change_Directory(const std::string& directory) override;
  void End_Program() override;

 private:
  QWidget* parent_;
};

// The recent file list in the platform's store: organisation and application are the store's
// application name ("PVX"), the section a group, the key a value name.
class Qt_Settings_Store : public Settings_Store {
 public:
  explicit Qt_Settings_Store(QSettings::Format format = QSettings::NativeFormat) : format_(format) {}
  std::string Get_Setting(const std::string& application, const std::string& section, const std::string& key,
                          const std::string& fallback) override;
  void Save_Setting(const std::string& application, const std::string& section, const std::string& key,
                    const std::string& value) override;

 private:
  QSettings::Format format_;
};

}  // namespace pvx
