// The line cut and the history windows of the result viewer on the example computed by the run
// window: a line drawn with the mouse against the cut of the same line over a record read apart
// from the form, and the graph's pixels; two picked points against the bilinear values of the
// stored records, the recorded files, the scale window and the cut of "Selection Criteria".
#include <gtest/gtest.h>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QImage>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QTest>
#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>

#include "app/units.h"
#include "form_fixture.h"
#include "frm_diag.h"
#include "frm_his.h"
#include "frm_line_cut.h"
#include "frm_res.h"
#include "results/viewer_geometry.h"
#include "support/recording_surface.h"

namespace pvx {
namespace {

struct Computed_Example : test::Form_Fixture {
  bool ok = false;
  Computed_Example() {
    if (!Load_Example()) return;
    frmDiag run(context);
    run.Form_Shown();
    QTest::mouseClick(run.Command2, Qt::LeftButton);
    ok = run.Last_Outcome() == Run_Outcome::Completed;
    EXPECT_TRUE(ok);
  }
};

const Computed_Example& Example() {
  static Computed_Example example;
  return example;
}

// A viewer over a copy of the computed project, with a host of its own, and records read apart.
struct Viewer : test::Form_Fixture {
  std::unique_ptr<frmRes> form;
  bool Open() {
    if (!Example().ok) return false;
    project = Example().project;
    shell = Example().shell;
    form = std::make_unique<frmRes>(context);
    form->resize(1200, 760);
    form->show();
    form->Form_Shown();
    return form->Is_Open();
  }
  Plot_Buffers Read(int variable, int stored) const {
    Plot_Buffers buffers;
    Result_Family family;
    std::string message;
    bool ok = Prepare_Result_Family(family, project, project.Mechanical_Included != 0, shell.Work_Directory,
                                    message) &&
              Open_All_Result_Sets(family, project.File_Version, message);
    Run_Index index;
    ok = ok && Read_Run_Index(family, 1, project.File_Version, false, index, message);
    if (ok) {
      Dimension_Plot_Buffers(family.Layout, buffers);
      ok = Read_Result_Variable(family, 1, Slot_Of_Variable(variable), stored, variable, false, buffers,
                                message);
    }
    EXPECT_TRUE(ok) << message;
    return buffers;
  }
  // The pixel of a model point in the viewer's picture.
  QPoint Pixel(double x, double y) const {
    const Picture_State& p = form->Picture();
    const double x0 = Picture_To_World_X(p, 0), x1 = Picture_To_World_X(p, 1);
    const double y0 = Picture_To_World_Y(p, 0), y1 = Picture_To_World_Y(p, 1);
    return QPoint(static_cast<int>(std::lround((x - x0) / (x1 - x0))),
                  static_cast<int>(std::lround((y - y0) / (y1 - y0))));
  }
};

std::vector<std::string> Lines_Of(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::vector<std::string> lines;
  std::string line;
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

// Whether a pixel of the colour lies within `radius` of (x, y).
bool Colour_Near(const QImage& image, double x, double y, QColor colour, int radius = 2) {
  for (int dy = -radius; dy <= radius; ++dy)
    for (int dx = -radius; dx <= radius; ++dx) {
      const int px = static_cast<int>(std::lround(x)) + dx, py = static_cast<int>(std::lround(y)) + dy;
      if (image.valid(px, py) && image.pixelColor(px, py) == colour) return true;
    }
  return false;
}

TEST(frmLineCut, ALineDrawnAcrossTheWallShowsTheCutOfTheStoredRecord) {
  Viewer f;
  ASSERT_TRUE(f.Open());
  frmRes& w = *f.form;
  const int stored = 20;
  ASSERT_TRUE(w.Show_Variable(15));
  w.Pick_Time(stored - 1);
  ASSERT_EQ(w.State().CurrentStored, stored);

  // "Linecut" opens the choice of direction; "Horizontally" and "Apply" close it.
  w.Toolbar_Click("Linecut");
  frmcut* choice = w.Cut_Direction_Window();
  ASSERT_NE(choice, nullptr);
  EXPECT_TRUE(choice->isVisible());
  QTest::mouseClick(choice->Option[0], Qt::LeftButton, {}, QPoint(5, choice->Option[0]->height() / 2));
  QTest::mouseClick(choice->Apply_Button, Qt::LeftButton);
  EXPECT_FALSE(choice->isVisible());
  EXPECT_EQ(w.Direction().CutMode, Cut_Mode::Horizontally);
  EXPECT_EQ(w.Picture_Widget()->cursor().shape(), Qt::CrossCursor);

  // Dragged across the example (4000 x 3000 mm) at a third of its height, ending 12 pixels lower:
  // the start follows the pointer's height, so the line is level at the pointer.
  const QPoint from = f.Pixel(-40, 1000), to = f.Pixel(4020, 1000);
  QWidget* picture = w.Picture_Widget();
  QTest::mousePress(picture, Qt::LeftButton, {}, from);
  QTest::mouseMove(picture, (from + to) / 2 + QPoint(0, 6));
  QTest::mouseMove(picture, to + QPoint(0, 12));
  QTest::mouseRelease(picture, Qt::LeftButton, {}, to + QPoint(0, 12));
  ASSERT_TRUE(w.State().LineCutActive);
  EXPECT_EQ(w.Picture_Widget()->cursor().shape(), Qt::ArrowCursor);
  const Cut_Line line = w.State().LineCut;
  EXPECT_DOUBLE_EQ(line.Y1, line.Y2);
  EXPECT_NEAR(line.Y1, Picture_To_World_Y(w.Picture(), to.y() + 12), 1e-9);
  EXPECT_NEAR(line.X1, Picture_To_World_X(w.Picture(), from.x()), 1e-9);

  // The window shows the cut of that line over the record read apart, with the stresses' strength.
  frmLineCut* cut_window = w.Line_Cut_Window();
  ASSERT_NE(cut_window, nullptr);
  EXPECT_TRUE(cut_window->isVisible());
  const Plot_Buffers buffers = f.Read(15, stored);
  const Line_Cut expected = Determine_Intersections(f.project, buffers, 15, Current_Time(w.State()), line.X1,
                                                    line.Y1, line.X2, line.Y2);
  ASSERT_GE(CutCount(expected), 4);
  EXPECT_EQ(cut_window->Cut().CutPieces, expected.CutPieces);
  EXPECT_EQ(cut_window->Cut().CutStrength, expected.CutStrength);

  // Each piece's middle is red on screen at the picture's formulas, stretched from 3570 x 2000 twips.
  const QImage graph = cut_window->Picture1->grab().toImage();
  const Cut_Extents& e = cut_window->Drawn().Extents;
  for (const Cut_Piece& c : expected.CutPieces) {
    const double x = Cut_Picture_X(e, (c.Fraction[1] + c.Fraction[2]) / 2) * graph.width() / 3570.0;
    const double y = Cut_Picture_Y(e, (c.Value[1] + c.Value[2]) / 2) * graph.height() / 2000.0;
    EXPECT_TRUE(Colour_Near(graph, x, y, QColor(255, 0, 0))) << c.Element << " at " << x << ", " << y;
  }
  EXPECT_EQ(cut_window->Drawn().Pieces_Drawn, CutCount(expected));
  EXPECT_EQ(cut_window->Drawn().Strength_Pieces_Drawn, 2 * CutCount(expected));
  // A factor below 1 draws "factor * ft" apart from "ft", and stays while the viewer's ft factor
  // does not change.
  test::Type(cut_window->Text_Factor, "0.6");
  EXPECT_DOUBLE_EQ(cut_window->Settings().Factor, 0.6);
  test::Take_Screenshot(*cut_window, "frmLineCut");

  // The text file: the variable, the header, then a line per piece.
  const std::string path = f.dir.file("cut.txt");
  f.host.files.push_back(path);
  QTest::mouseClick(cut_window->Store_Button, Qt::LeftButton);
  ASSERT_EQ(f.host.messages.size(), 1u);
  EXPECT_EQ(f.host.messages.back(), "The linecut data is saved correctly under filename " + path);
  const std::vector<std::string> text = Lines_Of(path);
  ASSERT_EQ(text.size(), static_cast<std::size_t>(CutCount(expected) + 2));
  EXPECT_EQ(text[0], "Variable is Stresses Szz [MPa]");

  // "Store picture": the graph as it is on screen.
  const std::string picture_path = f.dir.file("cut.jpg");
  f.host.files.push_back(picture_path);
  QTest::mouseClick(cut_window->Picture_Button, Qt::LeftButton);
  EXPECT_EQ(QImage(QString::fromStdString(picture_path)).size(), cut_window->Picture1->size());

  // A fixed axis: a maximum below the minimum is refused and the old number comes back; a taken
  // one is the graph's top.
  cut_window->Check_Fixed->setChecked(true);
  const QString old_maximum = cut_window->Text_Maximum->text();
  const double minimum = cut_window->Settings().Minimum;
  test::Type(cut_window->Text_Maximum, QString::number(minimum - 1));
  EXPECT_EQ(f.host.messages.back(), "Maximum < Minimum");
  EXPECT_EQ(cut_window->Text_Maximum->text(), old_maximum);
  test::Type(cut_window->Text_Maximum, QString::number(minimum + 7.5, 'f', 3));
  (void)cut_window->Picture1->grab();
  EXPECT_TRUE(cut_window->Drawn().Settings_Taken);
  EXPECT_NEAR(cut_window->Drawn().Extents.Value_Max, minimum + 7.5, 1e-9);

  // The cut follows the viewer: a step forward is the cut of the next record.
  w.Toolbar_Click("Forward");
  EXPECT_DOUBLE_EQ(cut_window->Settings().Factor, 0.6);
  const Plot_Buffers next = f.Read(15, stored + 1);
  EXPECT_EQ(cut_window->Cut().CutPieces, Determine_Intersections(f.project, next, 15, Current_Time(w.State()),
                                                                 line.X1, line.Y1, line.X2, line.Y2)
                                             .CutPieces);
  // The ft factor of the "Szz / ft" page becomes the factor of the cut, which now shows the ratio.
  ASSERT_TRUE(w.Show_Variable(19));
  w.Scale_Entered(Scale_Box::Ft_Factor, "0.8");
  EXPECT_EQ(cut_window->Cut().Variable, 19);
  EXPECT_DOUBLE_EQ(cut_window->Settings().Factor, 0.8);
  EXPECT_EQ(cut_window->Text_Factor->text(), "0.8");
  EXPECT_FALSE(cut_window->Text_Factor->isEnabled());  // the ratio has no strength curve
}

// The value of the temperature at (u, v) of an element: bilinear in its corner nodes' values.
double Bilinear_Temperature(const Project& p, const Plot_Buffers& b, const History_Point& at) {
  const Mesh_Element& e = p.Mesh_Element[at.Element];
  const double f1 = b.Node[e.Corner[1]], f2 = b.Node[e.Corner[2]], f3 = b.Node[e.Corner[3]],
               f4 = b.Node[e.Corner[4]];
  return f1 + (f2 - f1) * at.U + (f4 - f1) * at.V + (f3 - f2 - f4 + f1) * at.U * at.V;
}

// Opens the history of two points picked with the mouse on the temperature page.
struct Two_Points : Viewer {
  frmHis* his = nullptr;
  bool Pick() {
    if (!Open()) return false;
    frmRes& w = *form;
    w.Toolbar_Click("History1");
    EXPECT_TRUE(w.State().PickingPoints);
    // The middles of the first and the last element shown at the first stored step.
    std::vector<int> shown;
    for (int e = 1; e <= project.Mesh_Element.count(); ++e)
      if (Element_Shown(project.Mesh_Element[e], Current_Time(w.State()))) shown.push_back(e);
    if (shown.size() < 2) return false;
    for (int e : {shown.front(), shown.back()}) {
      double x[4], y[4];
      Element_Corners(project, e, x, y);
      QTest::mouseClick(w.Picture_Widget(), Qt::LeftButton, {},
                        Pixel((x[0] + x[1] + x[2] + x[3]) / 4, (y[0] + y[1] + y[2] + y[3]) / 4));
    }
    EXPECT_EQ(w.State().HistoryPoints.count(), 2);
    EXPECT_EQ(w.History_Window(), nullptr);
    w.Toolbar_Click("History1");  // picking done: the history opens
    his = w.History_Window();
    return his != nullptr && his->isVisible();
  }
};

TEST(frmHis, TwoPickedPointsEndAtTheirStoredValuesAndAreRecorded) {
  Two_Points f;
  ASSERT_TRUE(f.Pick());
  frmHis& his = *f.his;
  const History_Data& h = his.Data();
  const int count = Storage_Count(f.form->State().Index);
  ASSERT_EQ(h.Items, 2);
  ASSERT_EQ(h.Stored, count);
  ASSERT_EQ(h.Runs, 1);

  // Both curves end at the last stored record's temperature at their points, and start at the
  // first's.
  const Plot_Buffers last = f.Read(1, count), first = f.Read(1, 1);
  for (int p = 1; p <= 2; ++p) {
    const History_Point& at = f.form->State().HistoryPoints[p];
    const double end = Bilinear_Temperature(f.project, last, at);
    EXPECT_NEAR(HistoryValues(h, 1, p, count), end, 1e-4 * (1 + std::fabs(end))) << p;
    EXPECT_NEAR(HistoryValues(h, 1, p, 1), Bilinear_Temperature(f.project, first, at), 1e-4) << p;
  }
  (void)his.Picture1->grab();
  EXPECT_EQ(his.Drawn().Labels, (std::vector<std::string>{"Point 1", "Point 2"}));
  test::Take_Screenshot(his, "frmHis");

  // "Picture" stores the graph.
  const std::string picture_path = f.dir.file("history.bmp");
  f.host.files.push_back(picture_path);
  his.Toolbar_Click("Picture");
  EXPECT_EQ(QImage(QString::fromStdString(picture_path)).size(), his.Picture1->size());

  // "Record": a collection name first, then the files wall1.txt and wall2.txt.
  f.host.messages.clear();
  f.host.files.push_back(f.dir.file("wall.TXT"));
  his.Toolbar_Click("Record");
  his.Toolbar_Click("Record");
  const std::string file1 = f.dir.file("wall1.txt"), file2 = f.dir.file("wall2.txt");
  EXPECT_EQ(f.host.messages,
            (std::vector<std::string>{"A collection name for the files to be stored must be provided.",
                                      "File " + file1 + " is stored ", "File " + file2 + " is stored "}));
  const std::vector<std::string> lines = Lines_Of(file1);
  ASSERT_EQ(lines.size(), static_cast<std::size_t>(1 + 2 * (1 + count)));  // header, points, steps
  EXPECT_EQ(lines[2 + count], "Point 2");
  EXPECT_EQ(Lines_Of(file2), lines);

  // "Differences": point 1 less point 2 between each pair of stored steps.
  QTest::mouseClick(his.Option_Differences, Qt::LeftButton, {},
                    QPoint(5, his.Option_Differences->height() / 2));
  EXPECT_TRUE(his.Combo1->isEnabled());
  EXPECT_EQ(his.Combo2->currentText(), "2");
  QTest::mouseClick(his.Execute_Button, Qt::LeftButton);
  (void)his.Picture1->grab();
  EXPECT_TRUE(his.Differences_Shown());
  EXPECT_EQ(his.Difference_Lines(), count - 1);
  QTest::mouseClick(his.Option_Standard, Qt::LeftButton, {}, QPoint(5, his.Option_Standard->height() / 2));
  EXPECT_FALSE(his.Differences_Shown());
}

TEST(frmHis, TheScaleWindowAndTheSelectionCriteria) {
  Two_Points f;
  ASSERT_TRUE(f.Pick());
  frmHis& his = *f.his;
  const History_Data& h = his.Data();
  const auto [lo, hi] = std::minmax_element(h.Values.begin(), h.Values.end());
  const double low = *lo, high = *hi;

  // "Scale": the boxes hold the axes; a minimum above the maximum is refused and comes back.
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
  // A taken minimum fixes the axes: 4500 twips over the new extent.
  const double fixed_low = std::floor(low) - 5;
  test::Type(scales.Text_Value_Minimum, QString::number(fixed_low));
  EXPECT_TRUE(his.Scale().Fixed);
  EXPECT_DOUBLE_EQ(his.Data().ValueMin, fixed_low);
  EXPECT_DOUBLE_EQ(his.Data().ValueScale, 4500 / (high - fixed_low));
  QTest::mouseClick(scales.Reset_Button, Qt::LeftButton);
  EXPECT_FALSE(his.Scale().Fixed);
  EXPECT_DOUBLE_EQ(his.Data().ValueMin, low);

  // "Selection Criteria" by time, halfway between two stored steps: the value of point 1
  // interpolated between the two records, in the pattern "0.00".
  QTest::mouseClick(his.Mebin_Button, Qt::LeftButton);
  frmMebin& mebin = *his.Mebin;
  EXPECT_TRUE(mebin.isVisible());
  const Table<double>& times = f.form->State().Index.Storage_Time;
  const int s = 10;
  const double c = (times[s] + times[s + 1]) / 2;
  const History_Point& at = f.form->State().HistoryPoints[1];
  const double expected = (Bilinear_Temperature(f.project, f.Read(1, s), at) +
                           Bilinear_Temperature(f.project, f.Read(1, s + 1), at)) /
                          2;
  mebin.Combo_Kind->setCurrentIndex(1);  // "Time"
  test::Type(mebin.Text_Position, QString::number(c, 'g', 17));
  ASSERT_EQ(mebin.flg3->rowCount(), 1);
  ASSERT_EQ(mebin.Rows().count(), 1);
  EXPECT_NEAR(mebin.Rows()[1].Result, expected, 1e-4);
  EXPECT_EQ(mebin.flg3->item(0, 1)->text().toStdString(),
            Format_Number_Trimmed(mebin.Rows()[1].Result, 40, 2));
  // The criterion is a vertical line through the graph at X = 800 + c TimeScale.
  testing::Recording_Surface graph(790, 550);
  his.Draw(graph);
  const auto& mark = graph.Lines.back();
  EXPECT_EQ(mark.Colour, Black);
  EXPECT_NEAR(mark.X1, (800 + c * 6000 / times.last()) * 0.1, 1e-6);

  const std::string path = f.dir.file("criteria.txt");
  f.host.files.push_back(path);
  QTest::mouseClick(mebin.Store_Button, Qt::LeftButton);
  const std::vector<std::string> lines = Lines_Of(path);  // the project's file, c, the rows
  ASSERT_EQ(lines.size(), 4u);
  EXPECT_EQ(lines[0], "WALL.PVX");
  EXPECT_NEAR(std::stod(lines[1]), c, 1e-12);

  // Closing the results forgets the fixed scales and closes the windows.
  test::Type(scales.Text_Time_Maximum, "10");
  EXPECT_TRUE(his.Scale_Of(1).Fixed);
  f.form->Close_Results();
  EXPECT_FALSE(his.isVisible());
  EXPECT_FALSE(his.Scale_Of(1).Fixed);
}

}  // namespace
}  // namespace pvx
