// The working state of the design panel: the mode the mouse acts in, the pointer as the user
// moved it and after snapping, the node nearest to it, the open polygon of a macro being drawn,
// and the neighbours of the node being dragged. The panel's rules take it beside the Project.
#pragma once

#include <cstdint>
#include <string>

#include "app/project.h"

namespace pvx {

// The mode word of the panel; the mouse acts according to it.
enum class Design_Mode {
  Nodes,
  Macros,
  Interfaces,
  Reinforcement,
  BorderT,
  Point_T,
  Line_T,
  Area_T,
  BorderH,
  Support_P,
  Support_L,
  Cooling,
  Load_P,
  Load_L,
  Free
};
inline constexpr int Design_Mode_Count = 15;

// The mode buttons in their order on the panel (the order of the enumeration).
Design_Mode Mode_Of_Button(int index);              // index 0..14
const char* Mode_Button_Caption(Design_Mode mode);  // "Nodes", ..., "Out of plane"
const char* Mode_Word(Design_Mode mode);            // "Nodes", ..., "BorderT", ..., "Free"
const char* Mode_Panel_Caption(Design_Mode mode);   // "Node mode", ..., "No mode"
bool Find_Mode(const std::string& word, Design_Mode& mode);

struct Design_Panel {
  Design_Mode Mode = Design_Mode::Free;  // a new Project starts with no mode

  double Mouse_X = 0, Mouse_Y = 0;  // model mm, the position rounded to the snap size only
  double Snap_X = 0, Snap_Y = 0;    // the position after the grids
  bool Use_Raw_Position = false;    // Closest_Node and new objects take Mouse_X/Y, not Snap_X/Y
  std::int32_t Closest_Node_Number = 0;
  double Screen_Scale = 1;  // pixels per mm

  Table<std::int16_t> Selection_List;  // point objects under the pointer, for Select_Extra

  // The macro being drawn: its corners so far and how many of them were made new.
  Table<std::int16_t> Polygon_Nodes;
  int Polygon_Added = 0;

  // The corner neighbours of the node being dragged, for the rubber bands.
  Table<std::int32_t> Node_Connections;

  // What a new border copies; a border made in a border mode is active in that mode.
  Border Current_Border_Template;

  // The current entries of the tables whose current number the Project does not hold.
  int Current_Interface = 0;
  int Current_Point_T = 0, Current_Line_T = 0, Current_Area_T = 0;
  int Current_Point_Support = 0, Current_Line_Support = 0;
  int Current_Point_Load = 0, Current_Line_Load = 0;
};

inline int Polygon_Node_Count(const Design_Panel& panel) {
  return panel.Polygon_Nodes.count();
}

// A panel for a Project just made or read: no mode, nothing open, the border template with one
// default thermal and one default hygral period of the Project.
void Reset_Panel(Design_Panel& panel, const Project& p);

// The position that counts for the panel's rules: the snapped one, or the raw one.
inline double Pointer_X(const Design_Panel& panel) {
  return panel.Use_Raw_Position ? panel.Mouse_X : panel.Snap_X;
}
inline double Pointer_Y(const Design_Panel& panel) {
  return panel.Use_Raw_Position ? panel.Mouse_Y : panel.Snap_Y;
}

}  // namespace pvx
