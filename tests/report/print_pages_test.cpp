// The page frame: the date and time texts of the header, and pages drawn as the paging lays them
// out, counted in the PDF that a writer makes of them.
#include "print_pages.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QGuiApplication>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>

#include <cstdlib>
#include <string>

namespace pvx {
namespace {

TEST(Print_Pages, Date_And_Time_Read_As_The_Header_Shows_Them) {
  EXPECT_EQ(Print_Date_Text(QDate(2024, 7, 3)) + " " + Print_Time_Text(QTime(9, 5)),
            "Wednesday 3-7-2024 9:05");
  EXPECT_EQ(Print_Date_Text(QDate(2023, 12, 31)) + " " + Print_Time_Text(QTime(23, 59)),
            "Sunday 31-12-2023 23:59");
}

TEST(Print_Pages, Every_Page_Of_The_Paging_Is_Drawn) {
  // Fonts need a GUI application; the offscreen platform needs no display.
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  static int argc = 1;
  static char name[] = "test_report";
  static char* argv[] = {name, nullptr};
  static const QGuiApplication* application = new QGuiApplication(argc, argv);  // kept to the end
  (void)application;
  const std::vector<std::string> header{"W.PVX", "one", "two", "three", "four", " Input data"};
  const QDateTime when(QDate(2024, 7, 3), QTime(9, 5));
  for (const auto orientation : {QPageLayout::Portrait, QPageLayout::Landscape}) {
    for (const int rows : {1, 150, 400}) {
      Report_Table t;
      t.Heading = "NODES";
      t.Columns = {{"nr.", "", 0, 7, Cell_Align::Right}};
      t.Rows.resize(static_cast<std::size_t>(rows), {"1"});
      QBuffer buffer;
      ASSERT_TRUE(buffer.open(QIODevice::WriteOnly));
      int pages = 0, lines = 0;
      {
        QPdfWriter writer(&buffer);
        writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), orientation, QMarginsF(15, 15, 15, 15),
                                         QPageLayout::Millimeter));
        lines = Print_Lines_Per_Page(writer, static_cast<int>(header.size()));
        pages = Print_Pages(writer, header, Layout_Tables({t}), when);
      }
      // A table line of a size-8 font is 8 to 12 points; the page is 267 mm (757 pt) high upright
      // and 180 mm (510 pt) on its side, of which a header of six size-10 lines takes 60 to 100 pt.
      const double height = orientation == QPageLayout::Portrait ? 756.85 : 510.24;
      EXPECT_GE(lines, static_cast<int>((height - 100) / 12)) << orientation;
      EXPECT_LE(lines, static_cast<int>((height - 60) / 8)) << orientation;
      // The head (heading, names, units) on every page, the rows below it.
      EXPECT_EQ(pages, (rows + lines - 4) / (lines - 3)) << rows << " rows, " << lines << " lines";
      const QByteArray pdf = buffer.data();
      EXPECT_EQ(pdf.count("/Type /Page") - pdf.count("/Type /Pages"), pages);
    }
  }
  // Nothing to print: no page. The date, time and page number take three header lines whatever the
  // project's text; three more lines of size 10 are 3 x 10 / 8 = 3.75 lines of size 8.
  QBuffer buffer;
  ASSERT_TRUE(buffer.open(QIODevice::WriteOnly));
  QPdfWriter writer(&buffer);
  EXPECT_EQ(Print_Pages(writer, header, Print_Layout{}, when), 0);
  const int three = Print_Lines_Per_Page(writer, 3), six = Print_Lines_Per_Page(writer, 6);
  EXPECT_EQ(Print_Lines_Per_Page(writer, 1), three);
  EXPECT_GE(three - six, 3);
  EXPECT_LE(three - six, 4);
}

}  // namespace
}  // namespace pvx
