// The result viewer on the computed example: the picture against the stored values read apart
// from the form, the stepping and jumps against the index, the pages, the scale boxes, the value at
// the pointer, the movie and the stored picture.
#include "frm_res.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QImage>
#include <QImageReader>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QToolBar>

#include <chrono>
#include <cmath>
#include <filesystem>
#include <memory>

#include "analysis/driver.h"
#include "analysis/run_preparation.h"
#include "app/prescribed_data.h"
#include "app/units.h"
#include "results/result_variables.h"
#include "results/viewer_geometry.h"
#include "run_forms_fixture.h"
#include "screenshot.h"

namespace pvx {
namespace {

// The example computed once for all the tests of this file: one run, headless, into a folder of
// its own. The tests only read the family.
struct Computed_Example {
  test::Run_Forms_Fixture base;
  bool ok = false;
  double seconds = 0;
  explicit Computed_Example(int runs) {
    if (!base.Load_Example()) return;
    Project& p = base.project;
    bool prescribed = true;
    std::string message;
    Set_Prescribed_Data(p, prescribed, message);
    if (!prescribed) {
      ADD_FAILURE() << message;
      return;
    }
    p.Result_File_Name = "WALL.RES";
    p.Run_Material.resize(0);
    if (runs == 2) {  // the material of the first element, and another one in its place
      p.Replace_Material = True_Flag;
      int first = 1;
      for (int m = 1; m <= p.Material.count(); ++m)
        if (p.Material[m].Name == p.Mesh_Element[1].Material) first = m;
      p.Run_Material.resize(2);
      p.Run_Material[1] = static_cast<std::int16_t>(first);
      p.Run_Material[2] = static_cast<std::int16_t>(first == 1 ? 2 : 1);
    }
    Prepare_Run_Variants(p);
    if (Number_Of_Runs(p) != runs) {
      ADD_FAILURE() << "runs: " << Number_Of_Runs(p);
      return;
    }
    Run_State run;
    run.Mechanical_Included = p.Mechanical_Included != 0;
    Analysis_Host host;
    const auto start = std::chrono::steady_clock::now();
    const Run_Outcome outcome = Run_Analysis(p, run, host, base.dir.path().string() + "/", message);
    seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    ok = outcome == Run_Outcome::Completed;
    if (!ok) ADD_FAILURE() << message;
    base.shell.State = Work_State::Computed;
  }
};

const Computed_Example& Example(int runs = 1) {
  static Computed_Example one(1);
  if (runs == 1) return one;
  static Computed_Example two(2);
  return two;
}

// A form over a copy of the computed project, with a host of its own.
struct Viewer {
  Project project;
  Shell shell;
  test::Memory_Store store;
  test::Scripted_Host host;
  Gui_Context context{project, shell, store, host};
  std::unique_ptr<frmRes> form;
  int runs = 1;
  bool Open() {
    const Computed_Example& e = Example(runs);
    if (!e.ok) return false;
    project = e.base.project;
    shell = e.base.shell;
    form = std::make_unique<frmRes>(context);
    form->resize(1200, 760);
    form->show();
    form->Form_Shown();
    return form->Is_Open();
  }
  std::string Path(const std::string& name) const { return Example(runs).base.dir.file(name); }
  // The index and a record read apart from the form.
  Run_Index Index(const std::string& name = "WALL.RES") const {
    Run_Index index;
    std::string message;
    EXPECT_TRUE(Read_Run_Index_File(Path(name), project.File_Version, false, index, message)) << message;
    return index;
  }
  bool Read(int variable, int stored, Plot_Buffers& buffers) const {
    Result_Family family;
    std::string message;
    bool ok = Prepare_Result_Family(family, project, project.Mechanical_Included != 0, shell.Work_Directory,
                                    message) &&
              Open_All_Result_Sets(family, project.File_Version, message);
    Run_Index index;  // the index tells how many records each file holds
    ok = ok && Read_Run_Index(family, 1, project.File_Version, false, index, message);
    if (ok) {
      Dimension_Plot_Buffers(family.Layout, buffers);
      ok = Read_Result_Variable(family, 1, Slot_Of_Variable(variable), stored, variable, false, buffers,
                                message);
    }
    EXPECT_TRUE(ok) << message;
    return ok;
  }
  // The pixel of a model point in the form's picture, unrounded.
  double Pixel_X(double x) const {
    const Picture_State& s = form->Picture();
    const double a = Picture_To_World_X(s, 0), b = Picture_To_World_X(s, 1);
    return (x - a) / (b - a);
  }
  double Pixel_Y(double y) const {
    const Picture_State& s = form->Picture();
    const double a = Picture_To_World_Y(s, 0), b = Picture_To_World_Y(s, 1);
    return (y - a) / (b - a);
  }
  QImage Grab() const { return form->Picture_Widget()->grab().toImage(); }
  std::string Time_Label() const { return form->A->Label_Title->text().toStdString(); }
};

// The band of the colour scale [lo, hi] that a value falls in, or 0 when it lies within a tenth of
// a band of a limit (a pixel there may show either neighbour).
int Clear_Band(double value, double lo, double hi) {
  const double f = (value - lo) / (hi - lo) * Scale_Band_Count;
  if (f < 0 || f >= Scale_Band_Count) return 0;
  const double part = f - std::floor(f);
  if (part < 0.1 || part > 0.9) return 0;
  return static_cast<int>(std::floor(f)) + 1;
}

TEST(frmRes, OpensOnTheTemperatureAndItsPictureShowsTheStoredValuesInTheirBands) {
  Viewer f;
  ASSERT_TRUE(f.Open());
  std::cout << "example computed in " << Example().seconds << " s\n";
  frmRes& w = *f.form;
  EXPECT_EQ(w.State().CurrentVariable, 1);
  EXPECT_EQ(w.State().CurrentStored, 1);
  EXPECT_EQ(w.B->SSTab1->tabText(w.B->SSTab1->currentIndex()), "Physics");
  auto* physics = qobject_cast<QTabWidget*>(w.B->SSTab1->currentWidget());
  ASSERT_NE(physics, nullptr);
  EXPECT_EQ(physics->tabText(physics->currentIndex()), "Temperature");
  // The toolbar keys in order, then the two imports.
  const auto actions = w.A->Toolbar->actions();
  ASSERT_EQ(actions.size(), 15);
  EXPECT_EQ(actions[13]->objectName(), "ImportPoints");
  EXPECT_EQ(actions[14]->objectName(), "ImportSupports");
  for (int i = 0; i < 13; ++i)
    EXPECT_EQ(actions[i]->text().toStdString(), Viewer_Toolbar_Keys[i]);

  const Run_Index index = f.Index();
  const int count = Storage_Count(index);
  ASSERT_GE(count, 3);
  const int middle = (count + 1) / 2;
  w.Pick_Time(middle - 1);
  ASSERT_EQ(w.State().CurrentStored, middle);
  Plot_Buffers buffers;
  ASSERT_TRUE(f.Read(1, middle, buffers));
  const double lo = index.Extremes[1].ScaleMin, hi = index.Extremes[1].ScaleMax;
  ASSERT_LT(lo, hi);

  // Every element whose centre value lies clearly inside a band, and is big enough on screen,
  // shows that band's colour at its centre pixel.
  const QImage image = f.Grab();
  const Project& p = f.project;
  int checked = 0;
  for (int e = 1; e <= p.Mesh_Element.count(); ++e) {
    double x[4], y[4];
    ASSERT_TRUE(Element_Corners(p, e, x, y));
    double centre = 0, cx = 0, cy = 0;
    for (int c = 0; c < 4; ++c) {
      centre += buffers.Node[p.Mesh_Element[e].Corner[c + 1]] / 4.0;
      cx += x[c] / 4;
      cy += y[c] / 4;
    }
    const int band = Clear_Band(centre, lo, hi);
    const double width =
        std::fabs(f.Pixel_X(x[1]) - f.Pixel_X(x[0])) + std::fabs(f.Pixel_X(x[2]) - f.Pixel_X(x[1]));
    if (band == 0 || width < 12 || !Element_Shown(p.Mesh_Element[e], Current_Time(w.State()))) continue;
    const QColor colour = image.pixelColor(static_cast<int>(f.Pixel_X(cx)), static_cast<int>(f.Pixel_Y(cy)));
    const Plot_Colour expected = ScaleColours[band];
    EXPECT_EQ(colour, QColor(expected.R, expected.G, expected.B)) << "element " << e << " value " << centre;
    ++checked;
  }
  EXPECT_GE(checked, 5);
  test::Take_Screenshot(w, "frmRes_temperature");
}

TEST(frmRes, StepsAndJumpsFollowTheIndex) {
  Viewer f;
  ASSERT_TRUE(f.Open());
  frmRes& w = *f.form;
  const Run_Index index = f.Index();
  const int count = Storage_Count(index);
  ASSERT_GE(count, 3);
  EXPECT_FALSE(w.Tool("Backward")->isEnabled());  // the first stored step has nothing before it

  w.Toolbar_Click("Forward");
  EXPECT_EQ(w.State().CurrentStored, 2);
  EXPECT_EQ(f.Time_Label(), Distribution_Title_At(1, index.Storage_Time[2]));
  EXPECT_NE(f.Time_Label().find(Format_Number(index.Storage_Time[2], 14, 6)), std::string::npos);
  w.Toolbar_Click("Forward");
  EXPECT_EQ(w.State().CurrentStored, 3);
  w.Toolbar_Click("Backward");
  EXPECT_EQ(w.State().CurrentStored, 2);
  EXPECT_EQ(f.Time_Label(), Distribution_Title_At(1, index.Storage_Time[2]));

  // The record shown is the one of the step: the node buffer equals a read apart from the form.
  Plot_Buffers buffers;
  ASSERT_TRUE(f.Read(1, 2, buffers));
  EXPECT_EQ(w.State().Buffers.Node, buffers.Node);

  const int max_step = std::clamp<int>(index.Extremes[1].StoredIndexOfMax, 1, count);
  w.Toolbar_Click("Maximum");
  EXPECT_EQ(w.State().CurrentStored, max_step);
  // The period's extremes are sampled at every step, so no stored record goes beyond them.
  EXPECT_LE(w.State().Buffers.CurrentMax, index.Extremes[1].PeriodMax + 1e-6);
  const int min_step = std::clamp<int>(index.Extremes[1].StoredIndexOfMin, 1, count);
  w.Toolbar_Click("Minimum");
  EXPECT_EQ(w.State().CurrentStored, min_step);

  w.Pick_Time(count - 1);
  EXPECT_EQ(w.State().CurrentStored, count);
  EXPECT_FALSE(w.Tool("Forward")->isEnabled());
  w.Toolbar_Click("Forward");
  EXPECT_EQ(w.State().CurrentStored, count);

  // The list of "Specific" holds every stored time, the current one selected.
  w.Toolbar_Click("Specific");
  ASSERT_EQ(w.A->List_Times->count(), count);
  EXPECT_EQ(w.A->List_Times->currentRow(), count - 1);
  EXPECT_EQ(w.A->List_Times->item(1)->text().toStdString(), Format_Number(index.Storage_Time[2], 14, 6));
}

TEST(frmRes, TheMaturityPageReadsVariableTwoAndThePointerReadsTheStoredNodeValue) {
  Viewer f;
  ASSERT_TRUE(f.Open());
  frmRes& w = *f.form;
  const Run_Index index = f.Index();
  const int middle = (Storage_Count(index) + 1) / 2;
  w.Pick_Time(middle - 1);

  // The pointer over a node of the temperature picture: the node's stored value.
  Plot_Buffers buffers;
  ASSERT_TRUE(f.Read(1, middle, buffers));
  const Project& p = f.project;
  // A node inside the mesh, off its outline, so that rounding cannot take the pointer outside.
  double x1 = 1e30, x2 = -1e30, y1 = 1e30, y2 = -1e30;
  for (const Mesh_Node& n : p.Mesh_Node) {
    x1 = std::min(x1, n.X);
    x2 = std::max(x2, n.X);
    y1 = std::min(y1, n.Y);
    y2 = std::max(y2, n.Y);
  }
  int element = 0, node = 0;
  for (int e = p.Mesh_Element.count() / 2; e <= p.Mesh_Element.count() && node == 0; ++e) {
    const int n = p.Mesh_Element[e].Corner[3];
    const double x = p.Mesh_Node[n].X, y = p.Mesh_Node[n].Y;
    if (x > x1 && x < x2 && y > y1 && y < y2) {
      element = e;
      node = n;
    }
  }
  ASSERT_GT(node, 0);
  w.Hover_At(f.Pixel_X(p.Mesh_Node[node].X), f.Pixel_Y(p.Mesh_Node[node].Y));
  ASSERT_TRUE(w.Reading_Shown()) << "element " << element << " node " << node << " at " << p.Mesh_Node[node].X
                                 << ", " << p.Mesh_Node[node].Y << " time " << Current_Time(w.State())
                                 << " from " << p.Mesh_Element[element].Present_From << " until "
                                 << p.Mesh_Element[element].Present_Until;
  EXPECT_NEAR(w.Reading().Value, buffers.Node[node], 1e-6 * (1 + std::fabs(buffers.Node[node])));
  EXPECT_EQ(w.A->lblScal->text().toStdString(),
            QString::fromStdString(Format_Number(buffers.Node[node], 10, 2) + " oC").trimmed().toStdString());
  EXPECT_NEAR(std::stod(w.Reading().X_Text), p.Mesh_Node[node].X, 0.006);
  // Outside the mesh nothing is shown.
  w.Hover_At(2, 2);
  EXPECT_FALSE(w.Reading_Shown());
  EXPECT_TRUE(w.A->lblScal->text().isEmpty());

  // The tab "Maturity" with its "Arrhenious" page.
  QTabWidget* root = w.B->SSTab1;
  int maturity = -1;
  for (int i = 0; i < root->count(); ++i)
    if (root->tabText(i) == "Maturity") maturity = i;
  ASSERT_GE(maturity, 0);
  root->setCurrentIndex(maturity);
  auto* sub = qobject_cast<QTabWidget*>(root->widget(maturity));
  ASSERT_NE(sub, nullptr);
  EXPECT_EQ(sub->tabText(0), "Arrhenious");
  EXPECT_EQ(sub->tabText(1), "C-Method");
  EXPECT_EQ(w.State().CurrentVariable, 2);
  EXPECT_EQ(w.State().CurrentStored, middle);
  Plot_Buffers maturity_buffers;
  ASSERT_TRUE(f.Read(2, middle, maturity_buffers));
  EXPECT_EQ(w.State().Buffers.Element_A, maturity_buffers.Element_A);
  const Extreme_Labels labels = Extreme_Labels_Of(index, 2, true);
  EXPECT_EQ(w.Page_Of(2)->Label_Maximum->text().toStdString(), labels.Maximum);
  EXPECT_EQ(labels.Maximum.rfind("Maximum: ", 0), 0u);
  EXPECT_EQ(f.Time_Label(), Distribution_Title_At(2, index.Storage_Time[middle]));
  test::Take_Screenshot(w, "frmRes_maturity");
  ASSERT_TRUE(w.Show_Variable(40));
  EXPECT_EQ(root->tabText(root->currentIndex()), "D.o.h");
  EXPECT_EQ(w.State().CurrentVariable, 40);
  test::Take_Screenshot(w, "frmRes_hydration");
  ASSERT_TRUE(w.Show_Variable(2));

  // While a computation runs a tab click is ignored and the tab goes back.
  w.Computing = [] { return true; };
  sub->setCurrentIndex(1);
  EXPECT_EQ(w.State().CurrentVariable, 2);
  EXPECT_EQ(sub->currentIndex(), 0);
  w.Computing = [] { return false; };
  sub->setCurrentIndex(1);
  EXPECT_EQ(w.State().CurrentVariable, 3);
}

TEST(frmRes, ADraggedRectangleZoomsAndPicksAreMadeShownAndResetOnQuestion) {
  Viewer f;
  ASSERT_TRUE(f.Open());
  frmRes& w = *f.form;
  QWidget* picture = w.Picture_Widget();
  const double whole = w.Picture().ScaleX;
  // A rectangle a quarter of the picture each way: about four times the pixels per mm.
  const QPoint a(picture->width() / 2, picture->height() / 2);
  const QPoint b(a.x() + picture->width() / 4, a.y() + picture->height() / 4);
  QTest::mousePress(picture, Qt::LeftButton, {}, a);
  QTest::mouseMove(picture, b);
  QTest::mouseRelease(picture, Qt::LeftButton, {}, b);
  EXPECT_GT(w.Picture().ScaleX, 2.5 * whole);
  w.Toolbar_Click("Zoomout");
  EXPECT_DOUBLE_EQ(w.Picture().ScaleX, whole);

  // "History1" down: a click inside an element adds a point there, with the mapped position.
  const Project& p = f.project;
  const int element = p.Mesh_Element.count() / 2;
  double x[4], y[4];
  ASSERT_TRUE(Element_Corners(p, element, x, y));
  const double cx = (x[0] + x[1] + x[2] + x[3]) / 4, cy = (y[0] + y[1] + y[2] + y[3]) / 4;
  w.Toolbar_Click("History1");
  EXPECT_TRUE(w.Tool("History1")->isChecked());
  EXPECT_TRUE(w.State().PickingPoints);
  w.Click_At(f.Pixel_X(cx), f.Pixel_Y(cy));
  ASSERT_EQ(w.State().HistoryPoints.count(), 1);
  EXPECT_EQ(w.State().HistoryPoints[1].Element, element);
  EXPECT_NEAR(w.State().HistoryPoints[1].X, cx, 1e-6 * (1 + std::fabs(cx)));
  EXPECT_NEAR(w.State().HistoryPoints[1].Y, cy, 1e-6 * (1 + std::fabs(cy)));

  // A line cut: "Linecut", then a drag gives the line in model mm.
  w.Toolbar_Click("Linecut");
  EXPECT_TRUE(w.State().LineCutPending);
  w.Drag_To(f.Pixel_X(x[0]), f.Pixel_Y(y[0]), f.Pixel_X(x[2]), f.Pixel_Y(y[2]));
  EXPECT_TRUE(w.State().LineCutActive);
  EXPECT_FALSE(w.Tool("Linecut")->isChecked());
  EXPECT_NEAR(w.State().LineCut.X2, x[2], 1e-6 * (1 + std::fabs(x[2])));
  EXPECT_DOUBLE_EQ(w.Picture().ScaleX, whole);  // the drag did not zoom

  // Another page releases the pick button; the points stay.
  ASSERT_TRUE(w.Show_Variable(2));
  EXPECT_FALSE(w.Tool("History1")->isChecked());
  EXPECT_FALSE(w.State().PickingPoints);
  EXPECT_EQ(w.State().HistoryPoints.count(), 1);

  // "Reset": No keeps the line cut, Yes drops the points.
  f.host.answers = {Answer::No, Answer::Yes};
  w.Toolbar_Click("Reset");
  ASSERT_EQ(f.host.questions.size(), 2u);
  EXPECT_EQ(f.host.questions[0], Reset_Line_Cut_Question);
  EXPECT_EQ(f.host.questions[1], Reset_Points_Question);
  EXPECT_TRUE(w.State().LineCutActive);
  EXPECT_EQ(w.State().HistoryPoints.count(), 0);
}

TEST(frmRes, SelectLoadsTheChosenRunOfTheRunSet) {
  Viewer f;
  f.runs = 2;
  ASSERT_TRUE(f.Open());
  frmRes& w = *f.form;
  const Project& p = f.project;
  ASSERT_EQ(Number_Of_Runs(p), 2);
  EXPECT_TRUE(w.Tool("Select")->isEnabled());
  w.Toolbar_Click("Forward");
  w.Toolbar_Click("Select");
  ASSERT_EQ(w.A->List_Runs->count(), 2);
  for (int r = 1; r <= 2; ++r)
    EXPECT_EQ(w.A->List_Runs->item(r - 1)->text().toStdString(), p.Material[p.Run_Material[r]].Name);
  EXPECT_EQ(w.A->List_Runs->currentRow(), 0);
  w.A->List_Runs->setCurrentRow(1);
  QTest::mouseClick(w.A->Apply_Run, Qt::LeftButton);
  EXPECT_EQ(w.State().CurrentRun, 2);
  EXPECT_EQ(w.State().CurrentStored, 2);  // the step is kept
  // The index now shown is the second run's file, which differs from the first's.
  const Run_Index first = f.Index(p.Result_Names[1]), second = f.Index(p.Result_Names[2]);
  EXPECT_NE(first.Extremes[1].PeriodMax, second.Extremes[1].PeriodMax);
  EXPECT_EQ(w.State().Index.Extremes[1].PeriodMax, second.Extremes[1].PeriodMax);
  EXPECT_EQ(w.Page_Of(1)->Label_Maximum->text().toStdString(), Extreme_Labels_Of(second, 1, true).Maximum);
}

TEST(frmRes, AScaleMinimumAboveTheMaximumIsRefusedAndAGoodOneRedraws) {
  Viewer f;
  ASSERT_TRUE(f.Open());
  frmRes& w = *f.form;
  const Result_Page* page = w.Page_Of(1);
  ASSERT_NE(page, nullptr);
  const double lo = w.State().Index.Extremes[1].ScaleMin, hi = w.State().Index.Extremes[1].ScaleMax;
  const QString old_text = page->Scale_Minimum->text();
  page->Scale_Minimum->setText(QString::number(hi + 5));
  QTest::keyClick(page->Scale_Minimum, Qt::Key_Return);
  ASSERT_EQ(f.host.messages.size(), 1u);
  EXPECT_EQ(f.host.messages[0], "Min >= Max");
  EXPECT_EQ(page->Scale_Minimum->text(), old_text);
  EXPECT_DOUBLE_EQ(w.State().Index.Extremes[1].ScaleMin, lo);

  page->Scale_Maximum->setText(QString::number(lo - 1));
  QTest::keyClick(page->Scale_Maximum, Qt::Key_Return);
  ASSERT_EQ(f.host.messages.size(), 2u);
  EXPECT_EQ(f.host.messages[1], "Max =< Min");

  // A taken maximum far above every value: the whole picture falls in the lower bands.
  page->Scale_Maximum->setText(QString::number(hi + 100 * (hi - lo), 'g', 17));
  QTest::keyClick(page->Scale_Maximum, Qt::Key_Return);
  EXPECT_EQ(f.host.messages.size(), 2u);
  EXPECT_DOUBLE_EQ(w.State().Index.Extremes[1].ScaleMax, hi + 100 * (hi - lo));
  const QImage image = f.Grab();
  const Plot_Colour top = ScaleColours[Scale_Band_Count], low = ScaleColours[1];
  int top_pixels = 0, low_pixels = 0;
  for (int y = 0; y < image.height() - 60; ++y)  // above the scale bar
    for (int x = 0; x < image.width(); ++x) {
      const QColor c = image.pixelColor(x, y);
      top_pixels += c == QColor(top.R, top.G, top.B);
      low_pixels += c == QColor(low.R, low.G, low.B);
    }
  EXPECT_EQ(top_pixels, 0);
  EXPECT_GT(low_pixels, 1000);
}

TEST(frmRes, TheMovieStopsWhereTheButtonIsReleased) {
  Viewer f;
  ASSERT_TRUE(f.Open());
  frmRes& w = *f.form;
  ASSERT_GE(Storage_Count(w.State().Index), 4);
  std::vector<int> frames;
  w.Movie_Frame_Observer = [&](int frame) {
    frames.push_back(w.State().CurrentStored);
    if (frame == 2) w.Tool("Movie")->setChecked(false);
  };
  w.Toolbar_Click("Movie");
  EXPECT_EQ(frames, (std::vector<int>{1, 2}));
  EXPECT_EQ(w.State().CurrentStored, 2);
  EXPECT_FALSE(w.Tool("Movie")->isChecked());

  // Left down, it runs to the last stored step and the button comes up.
  w.Movie_Frame_Observer = nullptr;
  w.Toolbar_Click("Movie");
  EXPECT_EQ(w.State().CurrentStored, Storage_Count(w.State().Index));
  EXPECT_FALSE(w.Tool("Movie")->isChecked());
}

TEST(frmRes, StorePicWritesAJpegOfThePictureAndHidingClosesTheFamily) {
  Viewer f;
  ASSERT_TRUE(f.Open());
  frmRes& w = *f.form;
  const std::string path = f.Path("picture.jpg");
  f.host.files.push_back(path);
  w.Toolbar_Click("StorePic");
  ASSERT_EQ(f.host.chooser_titles.size(), 1u);
  EXPECT_EQ(f.host.chooser_titles[0], "Store Picture");
  QImageReader reader(QString::fromStdString(path));
  EXPECT_EQ(reader.format(), "jpeg");
  const QImage stored = reader.read();
  EXPECT_EQ(stored.size(), w.Picture_Widget()->size());
  std::filesystem::remove(path);

  EXPECT_TRUE(w.Is_Open());
  w.hide();
  EXPECT_FALSE(w.Is_Open());
  w.show();
  w.Form_Shown();
  EXPECT_TRUE(w.Is_Open());
}

// History points read from a file land in the elements that hold them, and are shown.
TEST(frmRes, HistoryPointsAreImportedFromAFile) {
  Viewer f;
  ASSERT_TRUE(f.Open());
  frmRes& w = *f.form;
  const Project& p = f.project;
  const int e1 = 1, e2 = p.Mesh_Element.count();
  double x[4], y[4], cx[2], cy[2];
  int k = 0;
  for (int e : {e1, e2}) {
    ASSERT_TRUE(Element_Corners(p, e, x, y));
    cx[k] = (x[0] + x[1] + x[2] + x[3]) / 4;
    cy[k] = (y[0] + y[1] + y[2] + y[3]) / 4;
    ++k;
  }
  const std::string path = f.Path("points.txt");
  std::string text = "3\n";
  text.append("1 ").append(std::to_string(cx[0])).append(" ").append(std::to_string(cy[0])).append("\n");
  text.append("2 ").append(std::to_string(cx[1])).append(" ").append(std::to_string(cy[1])).append("\n");
  text.append("3 -99999 -99999\n");  // in no element: dropped
  test::Write_Text(path, text);
  f.host.files.push_back(path);
  w.Toolbar_Click("ImportPoints");
  ASSERT_EQ(f.host.chooser_titles.back(), "Select file for history points");
  ASSERT_EQ(w.State().HistoryPoints.count(), 2);
  EXPECT_EQ(w.State().HistoryPoints[1].Element, e1);
  EXPECT_EQ(w.State().HistoryPoints[2].Element, e2);
  EXPECT_NEAR(w.State().HistoryPoints[2].X, cx[1], 1e-3);
  EXPECT_TRUE(w.Tool("History1")->isChecked());

  // A damaged file says so and adds nothing.
  test::Write_Text(path, "2\n1 10 x\n");
  f.host.files.push_back(path);
  w.Toolbar_Click("ImportPoints");
  EXPECT_EQ(w.State().HistoryPoints.count(), 2);
  EXPECT_EQ(f.host.messages.back(), "Error in file");
}

}  // namespace
}  // namespace pvx
