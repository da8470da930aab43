// The platform's side of the shell: the chooser filter in Qt's form, the recent list in the
// per-user store, and the check of a result family before the viewers open it.
#include "qt_shell_host.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <filesystem>

#include "app/project_load.h"
#include "app/recent_files.h"
#include "results/result_files.h"
#include "support/temp_dir.h"

namespace pvx {
namespace {

namespace fs = std::filesystem;

TEST(QtShellHost, TheProgramsFilterBecomesQtsNameFilters) {
  EXPECT_EQ(Qt_Name_Filters(Project_Filter), (QStringList{"Alle Files (*.*)", "Projekten(*.PVX)"}));
  // Entries without their pattern in the description get it; several patterns are blank-separated.
  EXPECT_EQ(Qt_Name_Filters("Tables|*.txt;*.dat|"), QStringList{"Tables (*.txt *.dat)"});
}

TEST(QtShellHost, TheRecentListLivesInTheUsersSettings) {
  test::Temp_Dir dir;
  QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, QString::fromStdString(dir.path().string()));
  Qt_Settings_Store store(QSettings::IniFormat);
  Add_Recent_File(store, "/a/ONE.PVX");
  Add_Recent_File(store, "/b/TWO.PVX");
  Add_Recent_File(store, " /A/one.pvx ");  // the same name: it moves to the front
  EXPECT_EQ(Read_Recent_Files(store), (std::vector<std::string>{"/A/one.pvx", "/b/TWO.PVX"}));
  QSettings direct(QSettings::IniFormat, QSettings::UserScope, "PVX", "PVX");
  EXPECT_EQ(direct.value("Recent File List/File1").toString(), "/A/one.pvx");
  EXPECT_EQ(direct.value("Recent File List/File2").toString(), "/b/TWO.PVX");
  EXPECT_EQ(store.Get_Setting("PVX", "Recent File List", "File9", "none"), "none");
}

// Acts on the modal dialog that the next call opens, once it is up.
template <class Dialog, class Act>
void When_Shown(Act act) {
  QTimer::singleShot(0, [act] {
    auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    act(*dialog);
  });
}

TEST(QtShellHost, QuestionsAnswerWithTheButtonPressed) {
  Qt_Shell_Host host;
  When_Shown<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(box.text(), "Warning ! Project not saved yet. Saving now ?");
    EXPECT_NE(box.button(QMessageBox::Cancel), nullptr);
    box.button(QMessageBox::No)->click();
  });
  EXPECT_EQ(host.Ask(Not_Saved_Question, Question_Buttons::Yes_No_Cancel), Answer::No);
  When_Shown<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(box.button(QMessageBox::Yes), nullptr);
    box.button(QMessageBox::Ok)->click();
  });
  EXPECT_EQ(host.Ask(All_Data_Deleted_Warning, Question_Buttons::OK_Cancel), Answer::OK);
  // Escape means No where there is no Cancel, and Cancel where there is; so does closing the box.
  When_Shown<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
  EXPECT_EQ(host.Ask(Destroy_Output_Question, Question_Buttons::Yes_No), Answer::No);
  When_Shown<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
  EXPECT_EQ(host.Ask(Not_Saved_Question, Question_Buttons::Yes_No_Cancel), Answer::Cancel);
  When_Shown<QMessageBox>([](QMessageBox& box) { box.reject(); });
  EXPECT_EQ(host.Ask(Destroy_Output_Question, Question_Buttons::Yes_No), Answer::No);
}

TEST(QtShellHost, TheSaveChooserAddsTheProjectExtensionAndCancelKeepsThePath) {
  test::Temp_Dir dir;
  Qt_Shell_Host host;
  const QString typed = QString::fromStdString(dir.file("NEWWALL"));
  When_Shown<QFileDialog>([typed](QFileDialog& chooser) {
    EXPECT_EQ(chooser.windowTitle(), "Save project as");
    EXPECT_EQ(chooser.nameFilters(), (QStringList{"Alle Files (*.*)", "Projekten(*.PVX)"}));
    chooser.selectFile(typed);
    QMetaObject::invokeMethod(&chooser, "accept");
  });
  std::string path;
  ASSERT_TRUE(host.Choose_Save_File(Save_Project_Title, Project_Filter, path));
  EXPECT_EQ(path, dir.file("NEWWALL.PVX"));

  When_Shown<QFileDialog>([](QFileDialog& chooser) { chooser.reject(); });
  path = "kept";
  EXPECT_FALSE(host.Choose_Open_File(Select_Project_Title, Project_Filter, path));
  EXPECT_EQ(path, "kept");
}

// A thermal family of the example with `storages` stored steps, written as the analysis writes it.
void Write_Family(const Project& p, const std::string& work, int storages) {
  Result_Family family;
  std::string message;
  ASSERT_TRUE(Prepare_Result_Family(family, p, false, work, message)) << message;
  ASSERT_TRUE(Open_Result_Files(family, 1, 1, p.File_Version, message)) << message;
  const std::vector<double> nodes(static_cast<std::size_t>(p.Mesh_Node.count()), 20.0);
  const std::vector<double> points(4 * static_cast<std::size_t>(p.Mesh_Element.count()), 0.5);
  Field_Values fields;
  fields.Temperature = nodes;
  fields.Potential = nodes;
  fields.Maturity = fields.Hydration = fields.C_Maturity = points;
  fields.Moisture_Content = fields.Tensile_Strength = fields.Compressive_Strength = points;
  Run_Index index;
  for (int k = 1; k <= storages; ++k) {
    index.Step_Time.add(k * 1.0);
    ASSERT_TRUE(Record_Storage(family, 1, fields, k * 1.0, index, message)) << message;
  }
  ASSERT_TRUE(Close_Result_Files(family, 1, message)) << message;
}

TEST(QtShellHost, ResultsOpenOnlyWhenTheFamilyReadsWhole) {
  test::Temp_Dir dir;
  const std::string work = dir.path().string() + "/";
  fs::copy_file(test::Source_Path("examples/WALL.PVX"), dir.file("WALL.PVX"));
  fs::copy_file(test::Source_Path("examples/PVX-Concrete.txt"), dir.file("PVX-Concrete.txt"));
  Project p;
  Read_Report report;
  ASSERT_EQ(Load_Project(dir.file("WALL.PVX"), work, p, report), Load_Result::Loaded);
  p.Mechanical_Included = False_Flag;
  p.Result_File_Name = "WALL.RES";
  p.Result_Names.clear();
  Shell shell;
  shell.Work_Directory = work;
  Qt_Shell_Host host;
  std::string message;

  EXPECT_FALSE(host.Open_Results(p, shell, message));
  EXPECT_EQ(message, Results_Not_Available(work + "WALL.RES"));

  Write_Family(p, work, 3);
  EXPECT_TRUE(host.Open_Results(p, shell, message)) << message;
  EXPECT_TRUE(message.empty());

  // A sibling cut short after the index was written: the index counts more than it holds.
  const std::string temperatures = Sibling_Name(work + "WALL.RES", 2);
  ASSERT_TRUE(fs::exists(temperatures));
  fs::resize_file(temperatures, fs::file_size(temperatures) / 2);
  EXPECT_FALSE(host.Open_Results(p, shell, message));
  EXPECT_EQ(message, Results_Corrupted(work + "WALL.RES"));

  // A project that names no results has none to show.
  p.Result_File_Name.clear();
  EXPECT_FALSE(host.Open_Results(p, shell, message));
  EXPECT_FALSE(message.empty());
}

}  // namespace
}  // namespace pvx
