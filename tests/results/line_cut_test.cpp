// The line cut: pieces across a linear field lie on the field's straight line and join without gap
// or overlap, a node is counted once, a line along a side or ending inside an element gives no
// piece there, the stresses bring their strength, the graph's extents, and the stored file.
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

// A grid of nx x ny cells of 100 mm from the origin, corners counter-clockwise. The interior nodes
// are shifted by up to 16 mm so that no side but the outer ones is parallel to an axis.
struct Grid {
  Project p;
  Plot_Buffers b;
  int nx, ny;
  Grid(int nx_, int ny_, bool distorted) : nx(nx_), ny(ny_) {
    for (int j = 0; j <= ny; ++j)
      for (int i = 0; i <= nx; ++i) {
        double x = 100.0 * i, y = 100.0 * j;
        if (distorted && i > 0 && i < nx && j > 0 && j < ny) {
          x += ((i * 7 + j * 3) % 5 - 2) * 8;
          y += ((i * 2 + j * 5) % 5 - 2) * 7;
        }
        p.Mesh_Node.add({x, y});
      }
    for (int j = 0; j < ny; ++j)
      for (int i = 0; i < nx; ++i) {
        Mesh_Element e;
        e.Corner = {{Node(i, j), Node(i + 1, j), Node(i + 1, j + 1), Node(i, j + 1)}};
        p.Mesh_Element.add(e);
      }
    Dimension_Plot_Buffers(
        {.Nodes = p.Mesh_Node.count(), .Elements = p.Mesh_Element.count(), .Circuit_Stations = {}}, b);
  }
  std::int16_t Node(int i, int j) const { return static_cast<std::int16_t>(j * (nx + 1) + i + 1); }
  // The temperature (variable 1) at every node from a field of x and y.
  template <class F>
  void Node_Field(F f) {
    for (int n = 1; n <= p.Mesh_Node.count(); ++n)
      b.Node[n] = static_cast<float>(f(p.Mesh_Node[n].X, p.Mesh_Node[n].Y));
  }
};

double Linear_Field(double x, double y) {
  return 3 + 0.05 * x - 0.02 * y;
}

// The pieces ordered along the line, each as (smaller fraction, larger fraction).
std::vector<std::pair<double, double>> Along_The_Line(const Line_Cut& cut) {
  std::vector<std::pair<double, double>> spans;
  for (const Cut_Piece& c : cut.CutPieces)
    spans.push_back({std::min(c.Fraction[1], c.Fraction[2]), std::max(c.Fraction[1], c.Fraction[2])});
  std::sort(spans.begin(), spans.end());
  return spans;
}

TEST(Determine_Intersections, LinearFieldGivesItsStraightLineFromEntryToExit) {
  Grid g(5, 3, true);
  g.Node_Field(Linear_Field);
  struct Row {
    double x1, y1, x2, y2;
    double entry, exit;  // fractions where the line enters and leaves the 500 x 300 mesh
  };
  const Row rows[] = {
      // Shallow, left to right: x = 0 at t = 30/560, x = 500 at t = 530/560.
      {-30, 37, 530, 211, 30.0 / 560, 530.0 / 560},
      // Steep, upwards: y = 0 at t = 40/380, y = 300 at t = 340/380.
      {123, -40, 260, 340, 40.0 / 380, 340.0 / 380},
      // Right to left and down: x = 500 at t = 10/520, x = 0 at t = 510/520.
      {510, 280, -10, 20, 10.0 / 520, 510.0 / 520},
      // Starting on the left side: the start itself (t = 0) is on the side, and counts.
      {0, 150, 560, 40, 0, 500.0 / 560},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(::testing::Message() << r.x1 << "," << r.y1 << " -> " << r.x2 << "," << r.y2);
    const Line_Cut cut = Determine_Intersections(g.p, g.b, 1, 0, r.x1, r.y1, r.x2, r.y2);
    EXPECT_DOUBLE_EQ(cut.CutLength, std::hypot(r.x2 - r.x1, r.y2 - r.y1));
    ASSERT_GE(CutCount(cut), 4);
    for (const Cut_Piece& c : cut.CutPieces)
      for (int end = 1; end <= 2; ++end) {
        const double t = c.Fraction[end];
        EXPECT_NEAR(c.X[end], r.x1 + t * (r.x2 - r.x1), 1e-9);
        EXPECT_NEAR(c.Y[end], r.y1 + t * (r.y2 - r.y1), 1e-9);
        EXPECT_NEAR(c.Value[end], Linear_Field(c.X[end], c.Y[end]), 2e-5);
      }
    // Ordered along the line, the pieces join end to end from the entry to the exit.
    const auto spans = Along_The_Line(cut);
    EXPECT_NEAR(spans.front().first, r.entry, 1e-12);
    EXPECT_NEAR(spans.back().second, r.exit, 1e-12);
    for (std::size_t k = 1; k < spans.size(); ++k) {
      EXPECT_NEAR(spans[k].first, spans[k - 1].second, 1e-12) << k;
      EXPECT_LT(spans[k].first, spans[k].second) << k;
    }
    const double x_entry = r.x1 + r.entry * (r.x2 - r.x1), y_entry = r.y1 + r.entry * (r.y2 - r.y1);
    const double x_exit = r.x1 + r.exit * (r.x2 - r.x1), y_exit = r.y1 + r.exit * (r.y2 - r.y1);
    double at_entry = 0, at_exit = 0;
    for (const Cut_Piece& c : cut.CutPieces)
      for (int end = 1; end <= 2; ++end) {
        if (std::abs(c.Fraction[end] - r.entry) < 1e-12) at_entry = c.Value[end];
        if (std::abs(c.Fraction[end] - r.exit) < 1e-12) at_exit = c.Value[end];
      }
    EXPECT_NEAR(at_entry, Linear_Field(x_entry, y_entry), 2e-5);
    EXPECT_NEAR(at_exit, Linear_Field(x_exit, y_exit), 2e-5);
    // The pieces come in element order, one element each.
    for (int i = 2; i <= CutCount(cut); ++i)
      EXPECT_LT(cut.CutPieces[i - 1].Element, cut.CutPieces[i].Element);
  }
}

TEST(Determine_Intersections, NodeOnTheLineIsCountedOnce) {
  // 2 x 2 squares: elements 1 (0..100, 0..100), 2 (100..200, 0..100), 3 (0..100, 100..200), 4.
  Grid g(2, 2, false);
  g.Node_Field(Linear_Field);
  struct Row {
    double x1, y1, x2, y2;
    std::vector<int> elements;  // the elements that give a piece
    std::vector<std::pair<double, double>> spans;
  };
  const Row rows[] = {
      // The diagonal through the nodes (0,0), (100,100), (200,200): in and out at corners only.
      {-50, -50, 250, 250, {1, 4}, {{1.0 / 6, 0.5}, {0.5, 5.0 / 6}}},
      {250, 250, -50, -50, {1, 4}, {{1.0 / 6, 0.5}, {0.5, 5.0 / 6}}},
      // Through the centre node from element 3 into element 2; 1 and 4 only touch it.
      {-50, 150, 250, 50, {2, 3}, {{50.0 / 300, 0.5}, {0.5, 250.0 / 300}}},
      // Down the middle through (100, 0)... (100, 200) runs along sides: see the next test.
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(::testing::Message() << r.x1 << "," << r.y1 << " -> " << r.x2 << "," << r.y2);
    const Line_Cut cut = Determine_Intersections(g.p, g.b, 1, 0, r.x1, r.y1, r.x2, r.y2);
    std::vector<int> elements;
    for (const Cut_Piece& c : cut.CutPieces)
      elements.push_back(c.Element);
    EXPECT_EQ(elements, r.elements);
    const auto spans = Along_The_Line(cut);
    ASSERT_EQ(spans.size(), r.spans.size());
    for (std::size_t k = 0; k < spans.size(); ++k) {
      EXPECT_NEAR(spans[k].first, r.spans[k].first, 1e-12);
      EXPECT_NEAR(spans[k].second, r.spans[k].second, 1e-12);
    }
    // The centre node (100, 100) is an end of both pieces, with the same value in both.
    for (const Cut_Piece& c : cut.CutPieces) {
      const int at_centre = std::abs(c.Fraction[1] - 0.5) < 1e-12 ? 1 : 2;
      EXPECT_NEAR(c.X[at_centre], 100, 1e-9);
      EXPECT_NEAR(c.Y[at_centre], 100, 1e-9);
      EXPECT_NEAR(c.Value[at_centre], Linear_Field(100, 100), 1e-5);
    }
  }
}

// A line along element sides is cut by the elements on one side of it, each side once, with no gap
// between them; a line that ends inside an element gives that element no piece.
TEST(Determine_Intersections, SideOnTheLineIsCutOnceAndLineEndingInsideGivesNoPiece) {
  Grid g(2, 2, false);
  g.Node_Field(Linear_Field);
  struct Row {
    const char* what;
    double x1, y1, x2, y2;
    std::vector<int> elements;
  };
  const Row rows[] = {
      // Along the sides y = 100 shared by 1 and 3 and by 2 and 4: taken from 1 and 2, the first
      // elements in order along each side.
      {"along the shared sides y = 100", -50, 100, 250, 100, {1, 2}},
      {"along the outer side x = 0", 0, -50, 0, 250, {1, 3}},
      // Half a cell above: every element of the lower row is crossed through two sides.
      {"parallel to the sides, inside", -50, 50, 250, 50, {1, 2}},
      // Ends inside element 2 at (150, 50): element 2 has one crossing.
      {"ending inside element 2", -50, 50, 150, 50, {1}},
      // Starts inside element 1: only its exit is crossed.
      {"starting inside element 1", 50, 50, 250, 50, {2}},
      {"wholly inside element 4", 120, 130, 180, 170, {}},
      // Ends exactly on the side x = 200: t = 1 is not a crossing, so element 2 gives none.
      {"ending on the outer side", -50, 50, 200, 50, {1}},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.what);
    const Line_Cut cut = Determine_Intersections(g.p, g.b, 1, 0, r.x1, r.y1, r.x2, r.y2);
    std::vector<int> elements;
    for (const Cut_Piece& c : cut.CutPieces)
      elements.push_back(c.Element);
    EXPECT_EQ(elements, r.elements);
    EXPECT_EQ(cut.CutStrength.count(), cut.CutPieces.count());
    // The pieces follow each other along the line: sorted by their start, each starts where the
    // one before ends, and their values there agree.
    std::vector<std::pair<double, double>> spans;
    for (const Cut_Piece& c : cut.CutPieces) {
      spans.push_back({std::min(c.Fraction[1], c.Fraction[2]), std::max(c.Fraction[1], c.Fraction[2])});
      for (int end = 1; end <= 2; ++end)
        EXPECT_NEAR(c.Value[end], Linear_Field(c.X[end], c.Y[end]), 1e-5);
    }
    std::sort(spans.begin(), spans.end());
    for (std::size_t k = 1; k < spans.size(); ++k)
      EXPECT_NEAR(spans[k].first, spans[k - 1].second, 1e-12) << r.what;
  }
}

TEST(Determine_Intersections, ElementsAbsentAtTheTimeAreNotCut) {
  Grid g(2, 1, false);
  g.Node_Field(Linear_Field);
  g.p.Mesh_Element[2].Present_From = 10;
  g.p.Mesh_Element[2].Present_Until = 20;
  // Shown from Present_From to Present_Until, both included.
  const std::pair<double, std::vector<int>> rows[] = {{5, {1}}, {10, {1, 2}}, {20, {1, 2}}, {20.5, {1}}};
  for (const auto& [time, expected] : rows) {
    const Line_Cut cut = Determine_Intersections(g.p, g.b, 1, time, -50, 50, 250, 50);
    std::vector<int> elements;
    for (const Cut_Piece& c : cut.CutPieces)
      elements.push_back(c.Element);
    EXPECT_EQ(elements, expected) << time;
  }
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
  // The line y = 25 from x = -50 to 250 crosses side 2 (corner 2 to 3) at s = 0.25, fraction 0.5,
  // then side 4 (corner 4 to 1) at s = 0.75, fraction 1/6.
  //   side 2: a 0.75 x 2 + 0.25 x 4 = 2.5, d 0.75 x -2 + 0.25 x 6 = 0, ft 0.75 x 4 + 0.25 x 2 = 3.5;
  //   side 4: a 0.25 x 8 + 0.75 x 1 = 2.75, d 0.25 x 4 + 0.75 x 2 = 2.5, ft 0.25 x 8 + 0.75 x 4 = 5.
  // Szz / ft by corner: 0.5, 0 (Szz < 0), 3, 0.5; side 2: 0.25 x 3 = 0.75, side 4: 0.5.
  struct Row {
    int variable;
    double end1, end2;
  };
  const Row rows[] = {{16, 2.5, 2.75}, {17, -2.5, -2.75}, {15, 0, 2.5},
                      {13, 2.5, 2.75}, {14, -2.5, -2.75}, {19, 0.75, 0.5}};
  for (const Row& r : rows) {
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

// A cut of hand-made pieces: (fraction, value, strength) at both ends.
Line_Cut Cut_Of(int variable, std::vector<std::array<double, 6>> pieces, double length = 3000) {
  Line_Cut cut;
  cut.Variable = static_cast<std::int16_t>(variable);
  cut.CutLength = length;
  for (const auto& q : pieces) {
    Cut_Piece c, s;
    c.Fraction = s.Fraction = {{q[0], q[3]}};
    c.Value = {{q[1], q[4]}};
    s.Value = {{q[2], q[5]}};
    cut.CutPieces.add(c);
    cut.CutStrength.add(s);
  }
  return cut;
}

TEST(Plot_Cut_Extents, PiecesStrengthFixedAxisAndDegenerateExtents) {
  const std::vector<std::array<double, 6>> two = {{0.2, 1.5, 3, 0.4, -0.5, 2}, {0.4, -0.5, 2, 0.7, 0.25, 4}};
  struct Row {
    const char* what;
    int variable;
    std::vector<std::array<double, 6>> pieces;
    Cut_Graph_Settings settings;
    Cut_Extents expected;
    bool ok;
  };
  const Row rows[] = {
      {"values only", 1, two, {}, {0.2, 0.7, -0.5, 1.5}, true},
      // 13 to 18 take in ft (up to 4) and factor x ft (up to 6).
      {"strength and factor", 16, two, {.Factor = 1.5}, {0.2, 0.7, -0.5, 6}, true},
      {"strength, small factor", 16, two, {.Factor = 0.1}, {0.2, 0.7, -0.5, 4}, true},
      // Szz / ft has no strength curve.
      {"ratio without strength", 19, two, {.Factor = 1.5}, {0.2, 0.7, -0.5, 1.5}, true},
      {"fixed axis", 1, two, {.Fixed = true, .Minimum = -10, .Maximum = 10}, {0.2, 0.7, -10, 10}, true},
      {"fixed, equal ends", 1, two, {.Fixed = true, .Minimum = 3, .Maximum = 3}, {0.2, 0.7, 3, 4}, true},
      {"fixed, maximum below minimum",
       1,
       two,
       {.Fixed = true, .Minimum = 3, .Maximum = 2},
       {0.2, 0.7, -0.5, 1.5},
       false},
      {"flat and one point", 1, {{0.3, 7, 0, 0.3, 7, 0}}, {}, {0.3, 1.3, 7, 8}, true},
      {"degree of hydration",
       40,
       two,
       {.Fixed = true, .Minimum = -10, .Maximum = 10},
       {0.2, 0.7, 0, 1},
       true},
      {"no pieces", 1, {}, {}, {0, 1, 0, 1}, true},
  };
  for (const Row& r : rows) {
    SCOPED_TRACE(r.what);
    Cut_Extents e;
    std::string message;
    EXPECT_EQ(Plot_Cut_Extents(Cut_Of(r.variable, r.pieces), r.settings, e, message), r.ok);
    EXPECT_EQ(message, r.ok ? "" : "Maximum < Minimum");
    EXPECT_DOUBLE_EQ(e.Fraction_Min, r.expected.Fraction_Min);
    EXPECT_DOUBLE_EQ(e.Fraction_Max, r.expected.Fraction_Max);
    EXPECT_DOUBLE_EQ(e.Value_Min, r.expected.Value_Min);
    EXPECT_DOUBLE_EQ(e.Value_Max, r.expected.Value_Max);
  }
}

TEST(Plot_Cut_Extents, PictureCoordinatesAndLengthLabel) {
  const Line_Cut cut = Cut_Of(1, {{0.2, -0.5, 0, 0.7, 1.5, 0}});
  Cut_Extents e;
  std::string message;
  ASSERT_TRUE(Plot_Cut_Extents(cut, {}, e, message));
  // The graph spans X 570 .. 3270 and Y 1700 (lowest value) up to 300.
  EXPECT_DOUBLE_EQ(Cut_Picture_X(e, 0.2), 570);
  EXPECT_DOUBLE_EQ(Cut_Picture_X(e, 0.7), 3270);
  EXPECT_DOUBLE_EQ(Cut_Picture_X(e, 0.45), 1920);
  EXPECT_DOUBLE_EQ(Cut_Picture_Y(e, -0.5), 1700);
  EXPECT_DOUBLE_EQ(Cut_Picture_Y(e, 1.5), 300);
  EXPECT_DOUBLE_EQ(Cut_Picture_Y(e, 0), 1350);
  // Half of a 3 m line is 1.5 m, or 1.5 / 0.9144 = 1.6404 yd.
  EXPECT_EQ(Cut_Length_Label(cut, e, true), "  1.500");
  EXPECT_EQ(Cut_Length_Label(cut, e, false), "  1.640");
}

TEST(Store_Line_Cut, FileCharacterByCharacter) {
  Line_Cut cut;
  cut.Variable = 16;
  Cut_Piece c;
  // Entered at the larger X: the file puts the end of smaller X first.
  c.X = {{250.26, 100}}, c.Y = {{-12, 37.5}}, c.Value = {{1.2346, -0.5}};
  cut.CutPieces.add(c);
  // Equal X: end 1 first.
  c.X = {{100, 100}}, c.Y = {{37.5, 80}}, c.Value = {{-0.5, 12345.6789}};
  cut.CutPieces.add(c);
  const std::string expected =
      "Variable is Stresses Sxx [ksi]\r\n"
      "Piece   X-start   Y-start   X-end  Y-end    V-start    V-end\r\n"
      "  1      100.0       37.5      250.3      -12.0     -0.500      1.235\r\n"
      "  2      100.0       37.5      100.0       80.0     -0.500  12345.679\r\n";
  EXPECT_EQ(Line_Cut_Text(cut, false), expected);

  test::Temp_Dir dir;
  const std::string path = dir.file("cut.txt");
  std::string message;
  ASSERT_TRUE(Store_Line_Cut(path, cut, false, message));
  EXPECT_EQ(test::Read_Text(path), expected);
  EXPECT_EQ(message, "The linecut data is saved correctly under filename " + path);
  // A variable without a name leaves out the first line; a cut without pieces is the header alone.
  Line_Cut reactions;
  reactions.Variable = 21;
  ASSERT_TRUE(Store_Line_Cut(path, reactions, true, message));
  EXPECT_EQ(test::Read_Text(path), "Piece   X-start   Y-start   X-end  Y-end    V-start    V-end\r\n");
  // An empty name ends the action; a folder that is not there is a write failure.
  EXPECT_FALSE(Store_Line_Cut("", cut, true, message));
  EXPECT_EQ(message, "");
  const std::string nowhere = dir.file("missing/cut.txt");
  EXPECT_FALSE(Store_Line_Cut(nowhere, cut, true, message));
  EXPECT_EQ(message, "Error occured writing file  " + nowhere);
}

}  // namespace
}  // namespace pvx
