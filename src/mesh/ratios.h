// The parameters of the next cut and the weights of its parts: seven ways to divide a strip, from
// equal parts to a cut at the pointer, and the checks of the numbers the user types for them.
#pragma once

#include <string>
#include <string_view>

#include "app/project.h"

namespace pvx {

// The seven ways to grade a cut.
enum Ratio_Option : int {
  Ratio_Equal = 0,             // 1 : 1 : 1 ...
  Ratio_Doubling = 1,          // 1 : 2 : 4 ...
  Ratio_Doubling_Mirror = 2,   // 1 : 2 : 4 .. 4 : 2 : 1
  Ratio_Geometric = 3,         // 1 : a : a2 ...
  Ratio_Geometric_Mirror = 4,  // 1 : a : a2 .. a2 : a : 1
  Ratio_User = 5,              // the weights the user typed
  Ratio_At_Pointer = 6         // into two at the pointer
};

// Captions of the options, by option number.
inline constexpr const char* Ratio_Option_Caption[7] = {"Equal",
                                                        "|1 : 2 : 4 :....| ",
                                                        "|1 : 2 : 4 :..: 4 : 2 : 1| ",
                                                        "|1 : a : a2 : a3......| )",
                                                        "|1 : a : a2 : ...: a2 : a : 1| ",
                                                        "User defined",
                                                        "Into two at position of mousepointer "};

// What the splitting window holds between cuts.
struct Splitting_Parameters {
  int Division = 4;          // parts of the next cut, at least 2
  Table<double> Ratios;      // raw weights, then (after Set_Ratios) cumulative fractions
  Table<double> UserRatios;  // weights typed for "User defined"
  double FactorA = 1.5;      // the factor a of the geometric options
  int RatioOption = Ratio_Equal;
  int PickedElement = 0, PickedSide = 0;
  double Pointer_X = 0, Pointer_Y = 0;  // model coordinates of the pick, for the cut at the pointer
};

// Makes Ratios and UserRatios Division long, keeping their values and filling new entries with 1.
void Fit_Ratio_Tables(Splitting_Parameters& s);

// Fills Ratios with the cumulative fractions of the chosen option (Ratios[Division] = 1). The cut
// at the pointer uses side PickedSide of PickedElement and the pointer position, and forces the
// division to 2.
void Set_Ratios(const Project& p, Splitting_Parameters& s);

// The entries of the window, checked when Enter is pressed. Each returns false with the program's
// message when the typed value is refused; the value then stays as it was.
inline constexpr const char* Division_Message = "Subdivision always > 1";
inline constexpr const char* Factor_A_Message = "Factor a always > 0.";
inline constexpr const char* User_Ratio_Message = "Factor always > 0.";

bool Enter_Division(std::string_view text, bool decimal_comma, Splitting_Parameters& s, std::string& message);
bool Enter_Factor_A(std::string_view text, bool decimal_comma, Splitting_Parameters& s, std::string& message);
// Entry k (1 .. Division) of the user weights.
bool Enter_User_Ratio(std::string_view text, bool decimal_comma, int k, Splitting_Parameters& s,
                      std::string& message);

// The two count lines of the splitting window.
std::string Generated_Nodes_Label(const Project& p);
std::string Generated_Elements_Label(const Project& p);

}  // namespace pvx
