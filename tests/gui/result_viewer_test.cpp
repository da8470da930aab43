// The result viewer on the example computed by the run window: the picture and the value at the
// pointer against the stored values read apart from the form, the scale boxes, the tabs, and the
// stepping, jumps and movie against the index.
#include "frm_res.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QTabWidget>
#include <cmath>

#include "form_fixture.h"
#include "results/result_variables.h"

namespace pvx {
namespace {

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
  test::Viewer f;
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
    const double width = std::fabs(f.Pixel(x[2], 0).x() - f.Pixel(x[0], 0).x());
    if (band == 0 || width < 12 || !Element_Shown(p.Mesh_Element[e], Current_Time(w.State()))) continue;
    const QPointF at = f.Pixel(cx, cy);
    const QColor colour = image.pixelColor(static_cast<int>(at.x()), static_cast<int>(at.y()));
    EXPECT_EQ(colour, Qt_Colour(ScaleColours[band])) << "element " << e << " value " << centre;
    ++checked;
  }
  EXPECT_GE(checked, 5);
  test::Take_Screenshot(w, "frmRes_temperature");

  // The pointer at (0.3, 0.6) of the first shown element's own coordinates: the stored record's
  // value bilinear in its corners, in the unit of the page.
  int e = 1;
  while (!Element_Shown(p.Mesh_Element[e], Current_Time(w.State())))
    ++e;
  double x[4], y[4], corner[4];
  ASSERT_TRUE(Element_Corners(p, e, x, y));
  for (int c = 0; c < 4; ++c)
    corner[c] = buffers.Node[p.Mesh_Element[e].Corner[c + 1]];
  auto bilinear = [](const double(&g)[4], double u, double v) {
    return g[0] + (g[1] - g[0]) * u + (g[3] - g[0]) * v + (g[2] - g[1] - g[3] + g[0]) * u * v;
  };
  const double expected = bilinear(corner, 0.3, 0.6);
  const QPointF at = f.Pixel(bilinear(x, 0.3, 0.6), bilinear(y, 0.3, 0.6));
  w.Hover_At(at.x(), at.y());
  ASSERT_TRUE(w.Reading_Shown()) << "element " << e;
  EXPECT_NEAR(w.Reading().Value, expected, 1e-5 * (1 + std::fabs(expected)));
  EXPECT_EQ(w.A->lblScal->text().toStdString(),
            QString::fromStdString(Format_Number(expected, 10, 2) + " oC").trimmed().toStdString());
  EXPECT_NEAR(std::stod(w.Reading().X_Text), bilinear(x, 0.3, 0.6), 0.006);
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
  const QImage whole = w.Picture_Widget()->grab().toImage();
  const QImage flat = whole.copy(0, 0, whole.width(), whole.height() - 60);  // above the scale bar
  EXPECT_EQ(test::Pixels_Of(flat, Qt_Colour(ScaleColours[Scale_Band_Count])), 0);
  EXPECT_GT(test::Pixels_Of(flat, Qt_Colour(ScaleColours[1])), 1000);

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
  EXPECT_EQ(w.A->Label_Title->text().toStdString(), Distribution_Title_At(2, index.Storage_Time[middle]));
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
  test::Viewer f;
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
  EXPECT_EQ(w.A->Label_Title->text().toStdString(), Distribution_Title_At(1, index.Storage_Time[2]));
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
