// The platform's side of the program: the shell's questions and file choosers in Qt's forms, and
// the QPainter bridge refusing what it cannot store. That the bridge puts the contour bands on the
// pixels the plotting code names is seen in the result viewer's picture.
#include <gtest/gtest.h>

#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include "draw/qt_surface.h"
#include "form_fixture.h"
#include "qt_shell_host.h"
#include "results/plot.h"

namespace pvx {
namespace {

// Acts on the modal dialog that the next call opens, once it is up.
template <class Dialog>
void When_Shown(std::function<void(Dialog&)> act) {
  QTimer::singleShot(0, [act] {
    auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    act(*dialog);
  });
}

TEST(QtShellHost, QuestionsAnswerWithTheButtonPressed) {
  // Escape means No where there is no Cancel, and Cancel where there is.
  const struct {
    const char* question;
    Question_Buttons buttons;
    QMessageBox::StandardButton pressed;  // NoButton: Escape
    Answer expected;
  } rows[] = {
      {Not_Saved_Question, Question_Buttons::Yes_No_Cancel, QMessageBox::No, Answer::No},
      {All_Data_Deleted_Warning, Question_Buttons::OK_Cancel, QMessageBox::Ok, Answer::OK},
      {Destroy_Output_Question, Question_Buttons::Yes_No, QMessageBox::Yes, Answer::Yes},
      {Destroy_Output_Question, Question_Buttons::Yes_No, QMessageBox::NoButton, Answer::No},
      {Not_Saved_Question, Question_Buttons::Yes_No_Cancel, QMessageBox::NoButton, Answer::Cancel},
  };
  Qt_Shell_Host host;
  for (const auto& row : rows) {
    QString text;
    When_Shown<QMessageBox>([&](QMessageBox& box) {
      text = box.text();
      if (row.pressed == QMessageBox::NoButton)
        QTest::keyClick(&box, Qt::Key_Escape);
      else
        box.button(row.pressed)->click();
    });
    EXPECT_EQ(host.Ask(row.question, row.buttons), row.expected) << row.question << " " << row.pressed;
    EXPECT_EQ(text.toStdString(), row.question);
  }
}

TEST(QtShellHost, TheSaveChooserAddsTheProjectExtensionAndCancelKeepsThePath) {
  EXPECT_EQ(Qt_Name_Filters("Tables|*.txt;*.dat|"), QStringList{"Tables (*.txt *.dat)"});
  test::Temp_Dir dir;
  Qt_Shell_Host host;
  const QString typed = QString::fromStdString(dir.file("NEWWALL"));
  When_Shown<QFileDialog>([typed](QFileDialog& chooser) {
    EXPECT_EQ(chooser.nameFilters(), (QStringList{"Alle Files (*.*)", "Projekten(*.PVX)"}));
    chooser.selectFile(typed);
    QMetaObject::invokeMethod(&chooser, "accept");
  });
  std::string path;
  ASSERT_TRUE(host.Choose_Save_File(Save_Project_Title, Project_Filter, path));
  EXPECT_EQ(path, dir.file("NEWWALL.PVX"));
  When_Shown<QFileDialog>([](QFileDialog& chooser) { chooser.reject(); });
  EXPECT_FALSE(host.Choose_Open_File(Select_Project_Title, Project_Filter, path));
  EXPECT_EQ(path, dir.file("NEWWALL.PVX"));
}

// The windows store their pictures through the same call (the design panel's as a bitmap, the
// mesh panel's as a PNG); what it cannot store it refuses.
TEST(QtSurface, PicturesOfAnUnknownKindOrFolderAreRefused) {
  test::Temp_Dir dir;
  const QImage image = Draw_To_Image(QSize(40, 30), [](Plot_Surface& s) { s.Box(0, 0, 40, 30, Yellow); });
  std::string message;
  EXPECT_FALSE(Store_Picture(image, dir.file("picture.xyz"), message));
  EXPECT_NE(message.find("picture.xyz"), std::string::npos);
  EXPECT_FALSE(Store_Picture(image, dir.file("no-such-folder/picture.jpg"), message));
}

}  // namespace
}  // namespace pvx
