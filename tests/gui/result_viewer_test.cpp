// The result viewer on the example computed by the run window: the picture and the value at the
// pointer against the stored values read apart from the form, the scale boxes, the tabs, and the
// stepping, jumps and movie against the index.
#include "frm_res.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTabWidget>
#include <cmath>

#include "form_fixture.h"
#include "frm_diag.h"
#include "results/result_variables.h"
#include "results/viewer_geometry.h"

namespace pvx {
namespace {

// The example computed once for all the tests of this file by the run window, into a folder of
// its own. The tests only read the family.
struct Computed_Example : test::Form_Fixture {
  bool ok = false;
  Computed_Example() {
    if (!Load_Example()) return;
    frmDiag run(context);
    run.Form_Shown();
    QTest::mouseClick(run.Command2, Qt::LeftButton);
    ok = run.Last_Outcome() == Run_Outcome::Completed;
    EXPECT_TRUE(ok) << run.Label_Messages->text().toStdString();
  }
};

const Computed_Example& Example() {
  static Computed_Example example;
  return example;
}

// A form over a copy of the computed project, with a host of its own.
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
  // The index and a record read apart from the form.
  Run_Index Index() const {
    Run_Index index;
    std::string message;
    EXPECT_TRUE(
        Read_Run_Index_File(Example().dir.file("WALL.RES"), project.File_Version, false, index, message))
        << message;
    return index;
  }
  Plot_Buffers Read(int variable, int stored) const {
    Plot_Buffers buffers;
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
    return buffers;
  }
  // The pixel of a model point in the form's picture, unrounded.
  double Pixel_X(double x) const {
    const double a = Picture_To_World_X(form->Picture(), 0), b = Picture_To_World_X(form->Picture(), 1);
    return (x - a) / (b - a);
  }
  double Pixel_Y(double y) const {
    const double a = Picture_To_World_Y(form->Picture(), 0), b = Picture_To_World_Y(form->Picture(), 1);
    return (y - a) / (b - a);
  }
  std::string Time_Label() const { return form->A->Label_Title->text().toStdString(); }
};

QColor Qt_Colour(Plot_Colour c) {
  return QColor(c.R, c.G, c.B);
}

// The band of the colour scale [lo, hi] that a value falls in, or 0 when it lies within a tenth of
// a band of a limit (a pixel there may show either neighbour).
int Clear_Band(double value, double lo, double hi) {
  const double f = (value - lo) / (hi - lo) * Scale_Band_Count;
  const double part = f - std::floor(f);
  if (f < 0 || f >= Scale_Band_Count || part < 0.1 || part > 0.9) return 0;
  return static_cast<int>(std::floor(f)) + 1;
}

TEST(frmRes, ThePictureThePointerAndTheTabsShowTheStoredValues) {
  Viewer f;
  ASSERT_TRUE(f.Open());
  frmRes& w = *f.form;
  const Run_Index index = f.Index();
  const int middle = (Storage_Count(index) + 1) / 2;
  ASSERT_GE(middle, 2);
  w.Pick_Time(middle - 1);
  ASSERT_EQ(w.State().CurrentStored, middle);
  const Plot_Buffers buffers = f.Read(1, middle);
  const double lo = index.Extremes[1].ScaleMin, hi = index.Extremes[1].ScaleMax;
  ASSERT_LT(lo, hi);

  // Every element whose centre value lies clearly inside a band, and is big enough on screen,
  // shows that band's colour at its centre pixel.
  const QImage image = w.Picture_Widget()->grab().toImage();
  const Project& p = f.project;
  int checked = 0;
  for (int e = 1; e <= p.Mesh_Element.count(); ++e) {
    double x[4], y[4], centre = 0;
    ASSERT_TRUE(Element_Corners(p, e, x, y));
    for (int c = 0; c < 4; ++c)
      centre += buffers.Node[p.Mesh_Element[e].Corner[c + 1]] / 4.0;
    const double cx = (x[0] + x[1] + x[2] + x[3]) / 4, cy = (y[0] + y[1] + y[2] + y[3]) / 4;
    const int band = Clear_Band(centre, lo, hi);
    const double width =
        std::fabs(f.Pixel_X(x[1]) - f.Pixel_X(x[0])) + std::fabs(f.Pixel_X(x[2]) - f.Pixel_X(x[1]));
    if (band == 0 || width < 12 || !Element_Shown(p.Mesh_Element[e], Current_Time(w.State()))) continue;
    const QColor colour = image.pixelColor(static_cast<int>(f.Pixel_X(cx)), static_cast<int>(f.Pixel_Y(cy)));
    EXPECT_EQ(colour, Qt_Colour(ScaleColours[band])) << "element " << e << " value " << centre;
    ++checked;
  }
  EXPECT_GE(checked, 5);
  test::Take_Screenshot(w, "frmRes_temperature");

  // The pointer over a node that four shown elements share, so that rounding cannot take the
  // pointer outside: the node's stored value, in the unit of the page.
  std::vector<int> uses(p.Mesh_Node.count() + 1);
  int node = 0;
  for (int e = 1; e <= p.Mesh_Element.count(); ++e)
    for (int c = 1; c <= 4 && Element_Shown(p.Mesh_Element[e], Current_Time(w.State())); ++c)
      if (++uses[p.Mesh_Element[e].Corner[c]] == 4 && node == 0) node = p.Mesh_Element[e].Corner[c];
  ASSERT_GT(node, 0);
  w.Hover_At(f.Pixel_X(p.Mesh_Node[node].X), f.Pixel_Y(p.Mesh_Node[node].Y));
  ASSERT_TRUE(w.Reading_Shown()) << "node " << node;
  EXPECT_NEAR(w.Reading().Value, buffers.Node[node], 1e-6 * (1 + std::fabs(buffers.Node[node])));
  EXPECT_EQ(w.A->lblScal->text().toStdString(),
            QString::fromStdString(Format_Number(buffers.Node[node], 10, 2) + " oC").trimmed().toStdString());
  EXPECT_NEAR(std::stod(w.Reading().X_Text), p.Mesh_Node[node].X, 0.006);
  // Outside the mesh nothing is shown.
  w.Hover_At(2, 2);
  EXPECT_FALSE(w.Reading_Shown());
  EXPECT_TRUE(w.A->lblScal->text().isEmpty());

  // A maximum below the minimum is refused and the old one shows again; one far above every value
  // puts the whole picture in the lower bands.
  const Result_Page* page = w.Page_Of(1);
  ASSERT_NE(page, nullptr);
  const QString old_maximum = page->Scale_Maximum->text();
  test::Type(page->Scale_Maximum, QString::number(lo - 1));
  EXPECT_EQ(f.host.messages, std::vector<std::string>{"Max =< Min"});
  EXPECT_EQ(page->Scale_Maximum->text(), old_maximum);
  test::Type(page->Scale_Maximum, QString::number(hi + 100 * (hi - lo), 'g', 17));
  const QImage flat = w.Picture_Widget()->grab().toImage();
  int top_pixels = 0, low_pixels = 0;
  for (int y = 0; y < flat.height() - 60; ++y)  // above the scale bar
    for (int x = 0; x < flat.width(); ++x) {
      top_pixels += flat.pixelColor(x, y) == Qt_Colour(ScaleColours[Scale_Band_Count]);
      low_pixels += flat.pixelColor(x, y) == Qt_Colour(ScaleColours[1]);
    }
  EXPECT_EQ(top_pixels, 0);
  EXPECT_GT(low_pixels, 1000);

  // The tab "Maturity" opens on its "Arrhenious" page: variable 2 at the same stored step.
  QTabWidget* root = w.B->SSTab1;
  int maturity = 0;
  while (maturity < root->count() && root->tabText(maturity) != "Maturity")
    ++maturity;
  root->setCurrentIndex(maturity);
  auto* sub = qobject_cast<QTabWidget*>(root->widget(maturity));
  ASSERT_NE(sub, nullptr);
  EXPECT_EQ(w.State().CurrentVariable, 2);
  EXPECT_EQ(w.State().Buffers.Element_A, f.Read(2, middle).Element_A);
  EXPECT_EQ(f.Time_Label(), Distribution_Title_At(2, index.Storage_Time[middle]));
  test::Take_Screenshot(w, "frmRes_maturity");
  ASSERT_TRUE(w.Show_Variable(40));
  EXPECT_EQ(root->tabText(root->currentIndex()), "D.o.h");
  test::Take_Screenshot(w, "frmRes_hydration");
  // While a computation runs a tab click is ignored and the tab goes back.
  ASSERT_TRUE(w.Show_Variable(2));
  w.Computing = [] { return true; };
  sub->setCurrentIndex(1);
  EXPECT_EQ(w.State().CurrentVariable, 2);
  EXPECT_EQ(sub->currentIndex(), 0);
  w.Computing = [] { return false; };
  sub->setCurrentIndex(1);
  EXPECT_EQ(w.State().CurrentVariable, 3);
}

TEST(frmRes, StepsJumpsAndTheMovieFollowTheIndex) {
  Viewer f;
  ASSERT_TRUE(f.Open());
  frmRes& w = *f.form;
  const Run_Index index = f.Index();
  const int count = Storage_Count(index);
  ASSERT_GE(count, 4);
  EXPECT_FALSE(w.Tool("Backward")->isEnabled());  // the first stored step has nothing before it

  // The movie stops where its button is released.
  std::vector<int> frames;
  w.Movie_Frame_Observer = [&](int frame) {
    frames.push_back(w.State().CurrentStored);
    if (frame == 2) w.Tool("Movie")->setChecked(false);
  };
  w.Toolbar_Click("Movie");
  w.Movie_Frame_Observer = nullptr;
  EXPECT_EQ(frames, (std::vector<int>{1, 2}));
  EXPECT_EQ(w.State().CurrentStored, 2);
  EXPECT_EQ(f.Time_Label(), Distribution_Title_At(1, index.Storage_Time[2]));
  EXPECT_EQ(w.State().Buffers.Node, f.Read(1, 2).Node);  // the record of the step shown

  w.Toolbar_Click("Maximum");
  EXPECT_EQ(w.State().CurrentStored, std::clamp<int>(index.Extremes[1].StoredIndexOfMax, 1, count));
  // The period's extremes are sampled at every step, so no stored record goes beyond them.
  EXPECT_LE(w.State().Buffers.CurrentMax, index.Extremes[1].PeriodMax + 1e-6);

  // Left down, the movie runs to the last stored step and the button comes up.
  w.Toolbar_Click("Movie");
  EXPECT_EQ(w.State().CurrentStored, count);
  EXPECT_FALSE(w.Tool("Movie")->isChecked());
  EXPECT_FALSE(w.Tool("Forward")->isEnabled());

  // The list of "Specific" holds every stored time, the current one selected.
  w.Toolbar_Click("Specific");
  EXPECT_EQ(w.A->List_Times->currentRow(), count - 1);
  EXPECT_EQ(w.A->List_Times->item(1)->text().toStdString(), Format_Number(index.Storage_Time[2], 14, 6));
}

}  // namespace
}  // namespace pvx
