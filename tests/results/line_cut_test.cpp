// The line cut: pieces across a linear field lie on its straight line and join without gap or
// overlap, a node or a side on the line is cut once, the stresses bring their strength, the file.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "family_support.h"
#include "results/line_cut.h"
#include "results/viewer_geometry.h"

namespace pvx {
namespace {

// A grid of nx x ny cells of 100 mm, corners counter-clockwise, with the temperature (variable 1)
// 3 + 0.05 x - 0.02 y at the nodes. Distorted, the interior nodes move by up to 16 mm so that no
// inner side is parallel to an axis.
double Linear_Field(double x, double y) {
  return 3 + 0.05 * x - 0.02 * y;
}

struct Grid {
  Project p;
  Plot_Buffers b;
  Grid(int nx, int ny, bool distorted) {
    for (int j = 0; j <= ny; ++j)
      for (int i = 0; i <= nx; ++i) {
        const bool inner = distorted && i > 0 && i < nx && j > 0 && j < ny;
        p.Mesh_Node.add({100.0 * i + (inner ? ((i * 7 + j * 3) % 5 - 2) * 8 : 0),
                         100.0 * j + (inner ? ((i * 2 + j * 5) % 5 - 2) * 7 : 0)});
      }
    auto node = [nx](int i, int j) { return static_cast<std::int16_t>(j * (nx + 1) + i + 1); };
    for (int j = 0; j < ny; ++j)
      for (int i = 0; i < nx; ++i) {
        Mesh_Element e;
        e.Corner = {{node(i, j), node(i + 1, j), node(i + 1, j + 1), node(i, j + 1)}};
        p.Mesh_Element.add(e);
      }
    Dimension_Plot_Buffers(
        {.Nodes = p.Mesh_Node.count(), .Elements = p.Mesh_Element.count(), .Circuit_Stations = {}}, b);
    for (int n = 1; n <= p.Mesh_Node.count(); ++n)
      b.Node[n] = static_cast<float>(Linear_Field(p.Mesh_Node[n].X, p.Mesh_Node[n].Y));
  }
};

std::vector<int> Elements_Of(const Line_Cut& cut) {
  std::vector<int> elements;
  for (const Cut_Piece& c : cut.CutPieces)
    elements.push_back(c.Element);
  return elements;
}

// The pieces ordered along the line as (smaller, larger fraction); checks that each end lies on the
// line and holds the field's value there, and that the pieces join end to end.
std::vector<std::pair<double, double>> Along_The_Line(const Line_Cut& cut) {
  std::vector<std::pair<double, double>> spans;
  for (const Cut_Piece& c : cut.CutPieces) {
    spans.push_back({std::min(c.Fraction[1], c.Fraction[2]), std::max(c.Fraction[1], c.Fraction[2])});
    for (int end = 1; end <= 2; ++end) {
      const double t = c.Fraction[end];
      EXPECT_NEAR(c.X[end], cut.X1 + t * (cut.X2 - cut.X1), 1e-9);
      EXPECT_NEAR(c.Y[end], cut.Y1 + t * (cut.Y2 - cut.Y1), 1e-9);
      EXPECT_NEAR(c.Value[end], Linear_Field(c.X[end], c.Y[end]), 2e-5);
    }
  }
  std::sort(spans.begin(), spans.end());
  for (std::size_t k = 1; k < spans.size(); ++k) {
    EXPECT_NEAR(spans[k].first, spans[k - 1].second, 1e-12) << k;
    EXPECT_LT(spans[k].first, spans[k].second) << k;
  }
  return spans;
}

TEST(Determine_Intersections, LinearFieldGivesItsStraightLineFromEntryToExit) {
  Grid g(5, 3, true);
  const struct {
    double x1, y1, x2, y2;
    double entry, exit;  // fractions where the line enters and leaves the 500 x 300 mesh
  } rows[] = {
      {-30, 37, 530, 211, 30.0 / 560, 530.0 / 560},   // shallow, left to right
      {123, -40, 260, 340, 40.0 / 380, 340.0 / 380},  // steep, upwards
      {510, 280, -10, 20, 10.0 / 520, 510.0 / 520},   // right to left and down
      {0, 150, 560, 40, 0, 500.0 / 560},              // starting on the left side, which counts
  };
  for (const auto& r : rows) {
    SCOPED_TRACE(::testing::Message() << r.x1 << "," << r.y1 << " -> " << r.x2 << "," << r.y2);
    const Line_Cut cut = Determine_Intersections(g.p, g.b, 1, 0, r.x1, r.y1, r.x2, r.y2);
    EXPECT_DOUBLE_EQ(cut.CutLength, std::hypot(r.x2 - r.x1, r.y2 - r.y1));
    ASSERT_GE(CutCount(cut), 4);
    const auto spans = Along_The_Line(cut);
    EXPECT_NEAR(spans.front().first, r.entry, 1e-12);
    EXPECT_NEAR(spans.back().second, r.exit, 1e-12);
    const std::vector<int> elements = Elements_Of(cut);
    EXPECT_TRUE(std::is_sorted(elements.begin(), elements.end()));
  }
}

// On 2 x 2 squares (elements 1 and 2 below, 3 and 4 above): a line through a node or along sides
// gives each stretch once, with no gap; a line ending inside an element gives it no piece.
TEST(Determine_Intersections, NodesAndSidesOnTheLineAreCutOnce) {
  Grid g(2, 2, false);
  const struct {
    const char* what;
    double x1, y1, x2, y2;
    std::vector<int> elements;
    std::vector<std::pair<double, double>> spans;  // when given
  } rows[] = {
      {"diagonal through three nodes", -50, -50, 250, 250, {1, 4}, {{1.0 / 6, 0.5}, {0.5, 5.0 / 6}}},
      {"the same backwards", 250, 250, -50, -50, {1, 4}, {{1.0 / 6, 0.5}, {0.5, 5.0 / 6}}},
      // From element 3 into element 2 through the centre node; 1 and 4 only touch it.
      {"through the centre node", -50, 150, 250, 50, {2, 3}, {{1.0 / 6, 0.5}, {0.5, 5.0 / 6}}},
      // Taken from the first element along each side.
      {"along the shared sides y = 100", -50, 100, 250, 100, {1, 2}, {{1.0 / 6, 0.5}, {0.5, 5.0 / 6}}},
      {"along the outer side x = 0", 0, -50, 0, 250, {1, 3}, {{1.0 / 6, 0.5}, {0.5, 5.0 / 6}}},
      {"ending inside element 2", -50, 50, 150, 50, {1}, {{0.25, 0.75}}},
      {"starting inside element 1", 50, 50, 250, 50, {2}, {{0.25, 0.75}}},
      {"wholly inside element 4", 120, 130, 180, 170, {}, {}},
      // t = 1 is no crossing, so element 2 has one point only.
      {"ending on the outer side", -50, 50, 200, 50, {1}, {{0.2, 0.6}}},
  };
  for (const auto& r : rows) {
    SCOPED_TRACE(r.what);
    const Line_Cut cut = Determine_Intersections(g.p, g.b, 1, 0, r.x1, r.y1, r.x2, r.y2);
    EXPECT_EQ(Elements_Of(cut), r.elements);
    EXPECT_EQ(cut.CutStrength.count(), cut.CutPieces.count());
    const auto spans = Along_The_Line(cut);
    ASSERT_EQ(spans.size(), r.spans.size());
    for (std::size_t k = 0; k < spans.size(); ++k) {
      EXPECT_NEAR(spans[k].first, r.spans[k].first, 1e-12);
      EXPECT_NEAR(spans[k].second, r.spans[k].second, 1e-12);
    }
  }
  // Elements absent at the time are not cut: shown from Present_From to Present_Until, both included.
  g.p.Mesh_Element[2].Present_From = 10;
  g.p.Mesh_Element[2].Present_Until = 20;
  for (const auto& [time, expected] :
       {std::pair{5.0, std::vector{1}}, {10.0, {1, 2}}, {20.0, {1, 2}}, {20.5, {1}}})
    EXPECT_EQ(Elements_Of(Determine_Intersections(g.p, g.b, 1, time, -50, 50, 250, 50)), expected) << time;
}

TEST(Determine_Intersections, StressesAndTheirStrengthAlongTheCrossedSides) {
  Grid g(2, 1, false);
  // Element 1 per corner: Sxx a, Syy -a, Sxy 0, Szz d; ft in buffer B.
  const double a[4] = {1, 2, 4, 8}, d[4] = {2, -2, 6, 4}, ft[4] = {4, 4, 2, 8};
  for (int c = 1; c <= 4; ++c) {
    auto& row = g.b.Element_A[1][c];
    row[1] = float(a[c - 1]), row[2] = float(-a[c - 1]), row[3] = 0, row[4] = float(d[c - 1]);
    g.b.Element_B[1][c][1] = float(ft[c - 1]);
  }
  // y = 25 from x = -50 to 250 crosses side 2 (corner 2 to 3) at s = 0.25, fraction 0.5, then side 4
  // (corner 4 to 1) at s = 0.75, fraction 1/6:
  //   side 2: a 0.75 x 2 + 0.25 x 4 = 2.5, d 0, ft 0.75 x 4 + 0.25 x 2 = 3.5;
  //   side 4: a 0.25 x 8 + 0.75 x 1 = 2.75, d 2.5, ft 0.25 x 8 + 0.75 x 4 = 5.
  // Szz / ft by corner: 0.5, 0 (Szz < 0), 3, 0.5; side 2: 0.25 x 3 = 0.75, side 4: 0.5.
  const struct {
    int variable;
    double end1, end2;
  } rows[] = {{16, 2.5, 2.75}, {17, -2.5, -2.75}, {15, 0, 2.5},
              {13, 2.5, 2.75}, {14, -2.5, -2.75}, {19, 0.75, 0.5}};
  for (const auto& r : rows) {
    SCOPED_TRACE(r.variable);
    const Line_Cut cut = Determine_Intersections(g.p, g.b, r.variable, 0, -50, 25, 250, 25);
    ASSERT_GE(CutCount(cut), 1);
    const Cut_Piece& c = cut.CutPieces[1];
    EXPECT_EQ(c.Element, 1);
    EXPECT_NEAR(c.Fraction[1], 0.5, 1e-12);
    EXPECT_NEAR(c.Fraction[2], 1.0 / 6, 1e-12);
    EXPECT_NEAR(c.Value[1], r.end1, 1e-6);
    EXPECT_NEAR(c.Value[2], r.end2, 1e-6);
    EXPECT_NEAR(cut.CutStrength[1].Value[1], 3.5, 1e-6);
    EXPECT_NEAR(cut.CutStrength[1].Value[2], 5, 1e-6);
  }
  // The reactions and the interface rows have no corner values: nothing to cut.
  for (int variable : {21, 30, 6})
    EXPECT_EQ(CutCount(Determine_Intersections(g.p, g.b, variable, 0, -50, 25, 250, 25)), 0) << variable;
}

TEST(Store_Line_Cut, FileCharacterByCharacter) {
  Line_Cut cut;
  cut.Variable = 16;
  Cut_Piece c;
  // Entered at the larger X: the file puts the end of smaller X first; at equal X end 1.
  c.X = {{250.26, 100}}, c.Y = {{-12, 37.5}}, c.Value = {{1.2346, -0.5}};
  cut.CutPieces.add(c);
  c.X = {{100, 100}}, c.Y = {{37.5, 80}}, c.Value = {{-0.5, 12345.6789}};
  cut.CutPieces.add(c);
  const std::string header = "Piece   X-start   Y-start   X-end  Y-end    V-start    V-end\r\n";
  const std::string expected = "Variable is Stresses Sxx [ksi]\r\n" + header +
                               "  1      100.0       37.5      250.3      -12.0     -0.500      1.235\r\n"
                               "  2      100.0       37.5      100.0       80.0     -0.500  12345.679\r\n";
  test::Temp_Dir dir;
  const std::string path = dir.file("cut.txt");
  std::string message;
  ASSERT_TRUE(Store_Line_Cut(path, cut, false, message));
  EXPECT_EQ(test::Read_Text(path), expected);
  EXPECT_EQ(message, "The linecut data is saved correctly under filename " + path);
  // A variable without a name leaves out the first line.
  Line_Cut reactions;
  reactions.Variable = 21;
  EXPECT_EQ(Line_Cut_Text(reactions, true), header);
  // An empty name ends the action; a folder that is not there is a write failure.
  EXPECT_FALSE(Store_Line_Cut("", cut, true, message));
  EXPECT_EQ(message, "");
  const std::string nowhere = dir.file("missing/cut.txt");
  EXPECT_FALSE(Store_Line_Cut(nowhere, cut, true, message));
  EXPECT_EQ(message, "Error occured writing file  " + nowhere);
}

}  // namespace
}  // namespace pvx
