#include "design/panel.h"

namespace pvx {

namespace {

struct Mode_Texts {
  const char* caption;
  const char* word;
  const char* panel;
};

constexpr Mode_Texts Texts[Design_Mode_Count] = {
    {"Nodes", "Nodes", "Node mode"},
    {"Macros", "Macros", "Macro mode"},
    {"Interfaces", "Interfaces", "Interface mode"},
    {"Reinforcement", "Reinforcement", "Reinforcement mode"},
    {"Convection and Radiation", "BorderT", "Thermal convection and radiation mode"},
    {"Heating wires", "Point_T", "Mode prescribed temperatures in points"},
    {"Heating mats", "Line_T", "Mode prescribed temperatures in lines"},
    {"Prescribed areas", "Area_T", "Mode prescribed temperatures in areas"},
    {"Transfer/ pressure", "BorderH", "Hygral border mode"},
    {"Point supports", "Support_P", "Point support mode"},
    {"Line supports", "Support_L", "Line support mode"},
    {"Cooling circuits", "Cooling", "Cooling circuit mode"},
    {"Point loads", "Load_P", "Point load mode"},
    {"Line loads", "Load_L", "Line load mode"},
    {"Out of plane", "Free", "No mode"},
};

const Mode_Texts& Texts_Of(Design_Mode mode) {
  return Texts[static_cast<int>(mode)];
}

}  // namespace

Design_Mode Mode_Of_Button(int index) {
  if (index < 0 || index >= Design_Mode_Count) return Design_Mode::Free;
  return static_cast<Design_Mode>(index);
}

const char* Mode_Button_Caption(Design_Mode mode) {
  return Texts_Of(mode).caption;
}

const char* Mode_Word(Design_Mode mode) {
  return Texts_Of(mode).word;
}

const char* Mode_Panel_Caption(Design_Mode mode) {
  return Texts_Of(mode).panel;
}

bool Find_Mode(const std::string& word, Design_Mode& mode) {
  for (int i = 0; i < Design_Mode_Count; ++i)
    if (word == Texts[i].word) {
      mode = static_cast<Design_Mode>(i);
      return true;
    }
  return false;
}

void Reset_Panel(Design_Panel& panel, const Project& p) {
  panel = Design_Panel{};
  panel.Current_Border_Template.Thermal_Periods.add(p.Thermal_Period_Default);
  panel.Current_Border_Template.Hygral_Periods.add(p.Hygral_Period_Default);
}

}  // namespace pvx
