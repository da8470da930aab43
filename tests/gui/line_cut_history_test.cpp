// The line cut and the history windows of the result viewer on the computed example: a line drawn
// with the mouse against the cut of the same line over a record read apart from the form; two
// picked points against the bilinear values of the stored records, with the files, the scale
// window and the "Selection Criteria".
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <algorithm>
#include <cmath>

#include "form_fixture.h"
#include "frm_his.h"
#include "frm_line_cut.h"
#include "support/recording_surface.h"

namespace pvx {
namespace {

// Clicks a radio button on its circle.
void Choose(QRadioButton* option) {
  QTest::mouseClick(option, Qt::LeftButton, {}, QPoint(5, option->height() / 2));
}

TEST(frmLineCut, ALineDrawnAcrossTheWallShowsTheCutOfTheStoredRecord) {
  test::Viewer f;
  ASSERT_TRUE(f.Open());
  frmRes& w = *f.form;
  const int stored = 20;
  ASSERT_TRUE(w.Show_Variable(15));
  w.Pick_Time(stored - 1);
  ASSERT_EQ(w.State().CurrentStored, stored);

  w.Toolbar_Click("Linecut");
  frmcut* choice = w.Cut_Direction_Window();
  ASSERT_NE(choice, nullptr);
  Choose(choice->Option[0]);  // "Horizontally"
  QTest::mouseClick(choice->Apply_Button, Qt::LeftButton);
  EXPECT_FALSE(choice->isVisible());
  EXPECT_EQ(w.Direction().CutMode, Cut_Mode::Horizontally);
  EXPECT_EQ(w.Picture_Widget()->cursor().shape(), Qt::CrossCursor);

  // Dragged across the wall (4000 x 3000 mm) ending 12 pixels lower: the line is level at the end.
  const QPoint from = f.Pixel(-40, 1000).toPoint(), to = f.Pixel(4020, 1000).toPoint() + QPoint(0, 12);
  QWidget* picture = w.Picture_Widget();
  QTest::mousePress(picture, Qt::LeftButton, {}, from);
  QTest::mouseMove(picture, (from + to) / 2);
  QTest::mouseMove(picture, to);
  QTest::mouseRelease(picture, Qt::LeftButton, {}, to);
  ASSERT_TRUE(w.State().LineCutActive);
  EXPECT_EQ(picture->cursor().shape(), Qt::ArrowCursor);
  const Cut_Line line = w.State().LineCut;
  EXPECT_DOUBLE_EQ(line.Y1, line.Y2);
  EXPECT_NEAR(line.Y1, Picture_To_World_Y(w.Picture(), to.y()), 1e-9);
  EXPECT_NEAR(line.X1, Picture_To_World_X(w.Picture(), from.x()), 1e-9);
  auto cut_of = [&](int variable, int step) {
    return Determine_Intersections(f.project, f.Read(variable, step), variable, Current_Time(w.State()),
                                   line.X1, line.Y1, line.X2, line.Y2);
  };

  frmLineCut* cut = w.Line_Cut_Window();
  ASSERT_TRUE(cut != nullptr && cut->isVisible());
  const Line_Cut expected = cut_of(15, stored);
  ASSERT_GE(CutCount(expected), 4);
  EXPECT_EQ(cut->Cut().CutPieces, expected.CutPieces);
  EXPECT_EQ(cut->Cut().CutStrength, expected.CutStrength);
  // Each piece's middle is red on screen, the graph's 3570 x 2000 twips stretched to the picture.
  const QImage graph = cut->Picture1->grab().toImage();
  const Cut_Extents& e = cut->Drawn().Extents;
  for (const Cut_Piece& c : expected.CutPieces) {
    const QPoint at(std::lround(Cut_Picture_X(e, (c.Fraction[1] + c.Fraction[2]) / 2) * graph.width() / 3570),
                    std::lround(Cut_Picture_Y(e, (c.Value[1] + c.Value[2]) / 2) * graph.height() / 2000));
    bool red = false;
    for (int dy = -2; dy <= 2; ++dy)
      for (int dx = -2; dx <= 2; ++dx)
        red = red || (graph.valid(at + QPoint(dx, dy)) && graph.pixelColor(at + QPoint(dx, dy)) == Qt::red);
    EXPECT_TRUE(red) << c.Element << " at " << at.x() << ", " << at.y();
  }
  EXPECT_EQ(cut->Drawn().Pieces_Drawn, CutCount(expected));
  EXPECT_EQ(cut->Drawn().Strength_Pieces_Drawn, 2 * CutCount(expected));  // ft and factor * ft
  test::Type(cut->Text_Factor, "0.6");
  EXPECT_DOUBLE_EQ(cut->Settings().Factor, 0.6);
  test::Take_Screenshot(*cut, "frmLineCut");

  // The stored text is the cut's, the stored picture the graph on screen.
  const std::string path = f.dir.file("cut.txt"), copy = f.dir.file("copy.txt");
  f.host.files = {path, f.dir.file("cut.jpg")};
  QTest::mouseClick(cut->Store_Button, Qt::LeftButton);
  EXPECT_EQ(f.host.messages,
            std::vector<std::string>{"The linecut data is saved correctly under filename " + path});
  std::string message;
  ASSERT_TRUE(Store_Line_Cut(copy, expected, true, message));
  EXPECT_EQ(test::Read_Text(path), test::Read_Text(copy));
  QTest::mouseClick(cut->Picture_Button, Qt::LeftButton);
  EXPECT_EQ(QImage(QString::fromStdString(f.dir.file("cut.jpg"))).size(), cut->Picture1->size());

  // A fixed maximum below the minimum is refused and the old number comes back; a taken one tops
  // the graph.
  cut->Check_Fixed->setChecked(true);
  const QString old_maximum = cut->Text_Maximum->text();
  const double minimum = cut->Settings().Minimum;
  test::Type(cut->Text_Maximum, QString::number(minimum - 1));
  EXPECT_EQ(f.host.messages.back(), "Maximum < Minimum");
  EXPECT_EQ(cut->Text_Maximum->text(), old_maximum);
  test::Type(cut->Text_Maximum, QString::number(minimum + 7.5, 'f', 3));
  (void)cut->Picture1->grab();
  EXPECT_TRUE(cut->Drawn().Settings_Taken);
  EXPECT_NEAR(cut->Drawn().Extents.Value_Max, minimum + 7.5, 1e-9);

  // A step forward cuts the next record and keeps the factor while the viewer's ft factor stays.
  w.Toolbar_Click("Forward");
  EXPECT_DOUBLE_EQ(cut->Settings().Factor, 0.6);
  EXPECT_EQ(cut->Cut().CutPieces, cut_of(15, stored + 1).CutPieces);
  // The ft factor of the "Szz / ft" page becomes the cut's; the ratio has no strength curve.
  ASSERT_TRUE(w.Show_Variable(19));
  w.Scale_Entered(Scale_Box::Ft_Factor, "0.8");
  EXPECT_EQ(cut->Cut().Variable, 19);
  EXPECT_DOUBLE_EQ(cut->Settings().Factor, 0.8);
  EXPECT_EQ(cut->Text_Factor->text(), "0.8");
  EXPECT_FALSE(cut->Text_Factor->isEnabled());
}

// The temperature at (u, v) of an element: bilinear in its corner nodes' values.
double Bilinear_Temperature(const Project& p, const Plot_Buffers& b, const History_Point& at) {
  const Mesh_Element& e = p.Mesh_Element[at.Element];
  const double f1 = b.Node[e.Corner[1]], f2 = b.Node[e.Corner[2]], f3 = b.Node[e.Corner[3]],
               f4 = b.Node[e.Corner[4]];
  return f1 + (f2 - f1) * at.U + (f4 - f1) * at.V + (f3 - f2 - f4 + f1) * at.U * at.V;
}

TEST(frmHis, TwoPickedPointsTheirFilesScalesAndSelectionCriteria) {
  test::Viewer f;
  ASSERT_TRUE(f.Open());
  frmRes& w = *f.form;
  // The middles of the first and the last element shown at the first stored step, picked on the
  // temperature page; the second click of "History1" opens the history.
  w.Toolbar_Click("History1");
  EXPECT_TRUE(w.State().PickingPoints);
  std::vector<int> shown;
  for (int e = 1; e <= f.project.Mesh_Element.count(); ++e)
    if (Element_Shown(f.project.Mesh_Element[e], Current_Time(w.State()))) shown.push_back(e);
  ASSERT_GE(shown.size(), 2u);
  for (int e : {shown.front(), shown.back()}) {
    double x[4], y[4];
    Element_Corners(f.project, e, x, y);
    QTest::mouseClick(w.Picture_Widget(), Qt::LeftButton, {},
                      f.Pixel((x[0] + x[1] + x[2] + x[3]) / 4, (y[0] + y[1] + y[2] + y[3]) / 4).toPoint());
  }
  ASSERT_EQ(w.State().HistoryPoints.count(), 2);
  EXPECT_EQ(w.History_Window(), nullptr);
  w.Toolbar_Click("History1");
  ASSERT_TRUE(w.History_Window() != nullptr && w.History_Window()->isVisible());
  frmHis& his = *w.History_Window();
  const History_Data& h = his.Data();
  const int count = Storage_Count(w.State().Index);
  ASSERT_EQ(std::tuple(h.Items, h.Stored, h.Runs), std::tuple(2, count, 1));

  // Both curves start and end at the first and the last record's temperature at their points.
  const Plot_Buffers last = f.Read(1, count), first = f.Read(1, 1);
  for (int p = 1; p <= 2; ++p) {
    const History_Point& at = w.State().HistoryPoints[p];
    const double end = Bilinear_Temperature(f.project, last, at);
    EXPECT_NEAR(HistoryValues(h, 1, p, count), end, 1e-4 * (1 + std::fabs(end))) << p;
    EXPECT_NEAR(HistoryValues(h, 1, p, 1), Bilinear_Temperature(f.project, first, at), 1e-4) << p;
  }
  (void)his.Picture1->grab();
  EXPECT_EQ(his.Drawn().Labels, (std::vector<std::string>{"Point 1", "Point 2"}));
  test::Take_Screenshot(his, "frmHis");
  f.host.files = {f.dir.file("history.bmp"), f.dir.file("wall.TXT")};
  his.Toolbar_Click("Picture");
  EXPECT_EQ(QImage(QString::fromStdString(f.dir.file("history.bmp"))).size(), his.Picture1->size());

  // "Record" asks for a collection name first, then stores wall1.txt and wall2.txt.
  his.Toolbar_Click("Record");
  his.Toolbar_Click("Record");
  const std::string file1 = f.dir.file("wall1.txt"), file2 = f.dir.file("wall2.txt");
  EXPECT_EQ(f.host.messages,
            (std::vector<std::string>{"A collection name for the files to be stored must be provided.",
                                      "File " + file1 + " is stored ", "File " + file2 + " is stored "}));
  EXPECT_EQ(test::Read_Text(file1), Recording_Text(h));
  EXPECT_EQ(test::Read_Text(file2), Recording_Text(h));

  // "Differences": point 1 less point 2 between each pair of stored steps.
  Choose(his.Option_Differences);
  EXPECT_TRUE(his.Combo1->isEnabled());
  EXPECT_EQ(his.Combo2->currentText(), "2");
  QTest::mouseClick(his.Execute_Button, Qt::LeftButton);
  (void)his.Picture1->grab();
  EXPECT_TRUE(his.Differences_Shown());
  EXPECT_EQ(his.Difference_Lines(), count - 1);
  Choose(his.Option_Standard);
  EXPECT_FALSE(his.Differences_Shown());

  // "Scale": a minimum above the maximum is refused and comes back; a taken one fixes the axes
  // until "Reset".
  const auto [lo, hi] = std::minmax_element(h.Values.begin(), h.Values.end());
  const double low = *lo, high = *hi;
  his.Toolbar_Click("Scale");
  frmScales& scales = *his.Scales;
  EXPECT_TRUE(scales.isVisible());
  EXPECT_EQ(scales.Text_Value_Maximum->text().toStdString(), Format_Number_Trimmed(high, 12, 3));
  EXPECT_EQ(scales.Text_Time_Minimum->text(), "0.00");
  const QString old_minimum = scales.Text_Value_Minimum->text();
  f.host.messages.clear();
  test::Type(scales.Text_Value_Minimum, QString::number(high + 1, 'f', 2));
  EXPECT_EQ(f.host.messages, std::vector<std::string>{"minimum >= maximum"});
  EXPECT_EQ(scales.Text_Value_Minimum->text(), old_minimum);
  EXPECT_FALSE(his.Scale().Fixed);
  const double fixed_low = std::floor(low) - 5;
  test::Type(scales.Text_Value_Minimum, QString::number(fixed_low));
  EXPECT_TRUE(his.Scale().Fixed);
  EXPECT_DOUBLE_EQ(his.Data().ValueMin, fixed_low);
  QTest::mouseClick(scales.Reset_Button, Qt::LeftButton);
  EXPECT_FALSE(his.Scale().Fixed);
  EXPECT_DOUBLE_EQ(his.Data().ValueMin, low);

  // "Selection Criteria" by time halfway between two stored steps: point 1 interpolated between
  // the two records, and a vertical line through the graph at X = 800 + c TimeScale.
  QTest::mouseClick(his.Mebin_Button, Qt::LeftButton);
  frmMebin& mebin = *his.Mebin;
  EXPECT_TRUE(mebin.isVisible());
  const Table<double>& times = w.State().Index.Storage_Time;
  const int s = 10;
  const double c = (times[s] + times[s + 1]) / 2;
  const History_Point& at = w.State().HistoryPoints[1];
  mebin.Combo_Kind->setCurrentIndex(1);  // "Time"
  test::Type(mebin.Text_Position, QString::number(c, 'g', 17));
  ASSERT_EQ(mebin.flg3->rowCount(), 1);
  ASSERT_EQ(mebin.Rows().count(), 1);
  EXPECT_NEAR(mebin.Rows()[1].Result,
              (Bilinear_Temperature(f.project, f.Read(1, s), at) +
               Bilinear_Temperature(f.project, f.Read(1, s + 1), at)) /
                  2,
              1e-4);
  EXPECT_EQ(mebin.flg3->item(0, 1)->text().toStdString(), mebin.Rows()[1].Text);
  testing::Recording_Surface drawn(790, 550);
  his.Draw(drawn);
  EXPECT_EQ(drawn.Lines.back().Colour, Black);
  EXPECT_NEAR(drawn.Lines.back().X1, (800 + c * 6000 / times.last()) * 0.1, 1e-6);
  const std::string path = f.dir.file("criteria.txt");
  f.host.files = {path};
  QTest::mouseClick(mebin.Store_Button, Qt::LeftButton);
  EXPECT_EQ(test::Read_Text(path), Intersections_Text("WALL.PVX", c, mebin.Rows()));

  // Closing the results forgets the fixed scales and closes the windows.
  test::Type(scales.Text_Time_Maximum, "10");
  EXPECT_TRUE(his.Scale_Of(1).Fixed);
  w.Close_Results();
  EXPECT_FALSE(his.isVisible());
  EXPECT_FALSE(his.Scale_Of(1).Fixed);
}

}  // namespace
}  // namespace pvx
