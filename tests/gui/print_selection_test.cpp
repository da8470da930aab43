// The print selection over the examples: the boxes a project leaves to tick, what the ticked boxes
// print in the session's units, the pages of a PDF file through the form's procedure and through
// "Print ..." with a scripted choice of printer, and the main window's "Print" button.
#include "frm_printkeuze.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QPdfWriter>
#include <QPrinter>
#include <QTest>

#include <algorithm>
#include <filesystem>

#include "form_fixture.h"

namespace pvx {
namespace {

using Names = std::vector<std::string>;
using S = Print_Section;

Print_Selection Only(std::initializer_list<S> sections) {
  Print_Selection selection{};
  for (S s : sections)
    selection[static_cast<int>(s)] = true;
  return selection;
}

Names Boxes(const frmPrintkeuze& w, bool (QCheckBox::*state)() const) {
  Names names;
  for (QCheckBox* box : w.printkeuze)
    if ((box->*state)()) names.push_back(box->text().toStdString());
  return names;
}

// The page objects of a PDF file ("/Type /Page", not the "/Type /Pages" tree); -1 without a file.
int Pdf_Pages(const std::string& path) {
  QFile file(QString::fromStdString(path));
  if (!file.open(QIODevice::ReadOnly)) return -1;
  const QByteArray data = file.readAll();
  return static_cast<int>(data.count("/Type /Page") - data.count("/Type /Pages"));
}

const Names Wall_Boxes = {"Macros", "Thermal", "Hygral", "Mechanical", "Nodes", "Elements", "Periods"};

TEST(frmPrintkeuze, GreysOutTheBoxesOfSectionsWithoutDataAndOpensWithTheOthersTicked) {
  const std::pair<const char*, Names> cases[] = {
      {"WALL.PVX", Wall_Boxes},  // no joint, bar or circuit
      {"WALL-ON-SLAB.PVX",       // a joint and bars, no circuit
       {"Macros", "Interfaces", "Reinforcement bars", "Thermal", "Hygral", "Mechanical", "Nodes", "Elements",
        "Periods"}},
      // Thermal only, on rock: a circuit, but no joint, bar, support or load.
      {"BLOCK-COOLED.PVX",
       {"Macros", "Cooling circuits", "Thermal", "Hygral", "Nodes", "Elements", "Periods"}}};
  for (const auto& [example, enabled] : cases) {
    SCOPED_TRACE(example);
    test::Form_Fixture f;
    ASSERT_TRUE(std::string(example) == "WALL.PVX" ? f.Load_Example() : f.Load_Example_Named(example));
    frmPrintkeuze w(f.context);
    EXPECT_EQ(Boxes(w, &QCheckBox::isEnabled), enabled);
    EXPECT_EQ(Boxes(w, &QCheckBox::isChecked), enabled);
    w.Set_Selection(Only({S::Macros, S::Interfaces, S::Reinforcement_Bars, S::Cooling_Circuits, S::Thermal,
                          S::Hygral, S::Mechanical, S::Nodes, S::Elements, S::Periods}));
    EXPECT_EQ(Boxes(w, &QCheckBox::isChecked), enabled);  // a grey box stays unticked
  }
}

TEST(frmPrintkeuze, PrintsTheTickedSectionsInTheSessionUnitsOnThePagesOfAPdf) {
  // WALL: 4 macros, 2 periods, 135 nodes, 104 elements printed two a line; node 2 at x = 1500 mm,
  // 59.055 in.
  const Names mesh = {"NODES", "ELEMENTS (fully integrated)"};
  struct Case {
    Print_Selection ticked;
    bool metric;
    Names headings;
    int rows, pages;  // pages: 0, 1, or 2 for more than one
    std::string unit, node_2;
  } const cases[] = {
      {Only({S::Macros, S::Periods}), true, {"MACRO PROPERTIES", "PERIODS"}, 4 + 2, 1, "", ""},
      {Only({S::Nodes, S::Elements}), true, mesh, 135 + 52, 2, "mm", "     2      1500.00         0.00"},
      {Only({S::Nodes, S::Elements}), false, mesh, 135 + 52, 2, "in", "     2       59.055        0.000"},
      {Print_Selection{}, true, {}, 0, 0, "", ""}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.headings.empty() ? "nothing" : c.headings[0] + (c.metric ? "" : " imperial"));
    test::Form_Fixture f;
    ASSERT_TRUE(f.Load_Example());
    f.project.Metric_Units = c.metric ? True_Flag : False_Flag;
    frmPrintkeuze w(f.context);
    for (int s = 1; s <= Print_Section_Count; ++s)  // ticked as a user ticks
      if (w.printkeuze[s - 1]->isChecked() != c.ticked[s]) w.printkeuze[s - 1]->click();
    const Print_Layout layout = w.Printed_Layout();
    Names headings;
    int rows = 0;
    for (const Print_Line& line : layout.Lines) {
      if (line.Role == Print_Line_Role::Heading) headings.push_back(line.Text);
      rows += line.Role == Print_Line_Role::Row;
    }
    EXPECT_EQ(headings, c.headings);
    EXPECT_EQ(rows, c.rows);
    if (!c.unit.empty()) {
      ASSERT_GT(layout.Lines.size(), 4u);
      EXPECT_EQ(layout.Lines[2].Text, "                 " + c.unit + "           " + c.unit);
      EXPECT_EQ(layout.Lines[4].Text, c.node_2);
    }
    const std::string pdf = f.dir.file("input.pdf");
    int pages = 0;
    {
      QPdfWriter writer(QString::fromStdString(pdf));
      writer.setPageOrientation(QPageLayout::Landscape);
      pages = w.Print_To(writer, QDateTime(QDate(2024, 3, 5), QTime(9, 7)));
    }
    EXPECT_EQ(std::min(pages, 2), c.pages) << pages;
    EXPECT_EQ(std::max(Pdf_Pages(pdf), 0), pages);  // nothing printed: no file, or no page in it
  }
}

TEST(frmPrintkeuze, PrintButtonAsksForAPrinterOnlyWithABoxTickedAndClosesOnceThePagesWentOut) {
  struct Case {
    bool tick, confirm, writable;  // Macros and Periods ticked; the dialog confirmed; the file writable
    int dialogs;
    bool printed, closes;
    std::string message;
  } const cases[] = {{false, true, true, 0, false, false, ""},
                     {true, false, true, 1, false, false, ""},  // the dialog cancelled
                     {true, true, true, 1, true, true, ""},
                     {true, true, false, 1, false, false, "The input tables could not be printed."}};
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.tick << c.confirm << c.writable);
    test::Form_Fixture f;
    ASSERT_TRUE(f.Load_Example());
    frmPrintkeuze w(f.context);
    w.show();
    w.Set_Selection(c.tick ? Only({S::Macros, S::Periods}) : Print_Selection{});
    const std::string pdf = f.dir.file(c.writable ? "printed.pdf" : "no folder/printed.pdf");
    int dialogs = 0;
    w.Choose_Printer = [&](QPrinter& printer) {
      ++dialogs;
      EXPECT_EQ(printer.pageLayout().orientation(), QPageLayout::Landscape);  // the wide tables fit
      printer.setOutputFormat(QPrinter::PdfFormat);
      printer.setOutputFileName(QString::fromStdString(pdf));
      return c.confirm;
    };
    QTest::mouseClick(w.Printknop, Qt::LeftButton);
    EXPECT_EQ(dialogs, c.dialogs);
    EXPECT_EQ(Pdf_Pages(pdf), c.printed ? 1 : -1);
    EXPECT_EQ(w.isVisible(), !c.closes);
    EXPECT_EQ(f.host.messages, c.message.empty() ? Names{} : Names{c.message});
  }
}

TEST(frmPrintkeuze, MainWindowPrintButtonOpensTheSelectionOnceAProjectIsLoaded) {
  test::Window_Fixture f;
  mdiPVX& window = f.window;
  auto* print = window.findChild<QAction*>("Print");
  ASSERT_TRUE(print != nullptr && !print->isEnabled());
  f.Open_Example();
  ASSERT_TRUE(print->isEnabled());
  print->trigger();
  auto* selection = window.findChild<frmPrintkeuze*>("frmPrintkeuze");
  ASSERT_TRUE(selection != nullptr && selection->isVisible());
  EXPECT_EQ(Boxes(*selection, &QCheckBox::isEnabled), Wall_Boxes);
  test::Take_Screenshot(*selection, "frmPrintkeuze");
  QTest::mouseClick(selection->cmdCancel, Qt::LeftButton);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(window.findChild<frmPrintkeuze*>("frmPrintkeuze"), nullptr);
}

}  // namespace
}  // namespace pvx
