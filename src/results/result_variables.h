// Result variables and the files of a result family.
//
// One numbering of the result variables serves the extreme table, the viewers, the line cut and
// the history plots: 1 to 40, of which the extreme table keeps a row for each. The viewers use
// their own numbers 30 to 34 for what the extreme table keeps in rows 23 to 27 (interfaces and
// rebars).
//
// A family is the `.RES` index and its siblings, one file per quantity; the slot of a file is its
// place in the file table (1..16).
#pragma once

namespace pvx {

inline constexpr int Result_Variable_Count = 40;

// The slots of the file table. 12 is the cooling text file; all others are binary.
enum Result_Slot : int {
  Slot_RES = 1,
  Slot_REA = 2,   // temperature per node
  Slot_REB = 3,   // moisture potential per node
  Slot_REC = 4,   // maturity per element point
  Slot_RED = 5,   // C-maturity per element point
  Slot_REE = 6,   // moisture content per element point
  Slot_REF = 7,   // tensile strength per element point
  Slot_REH = 8,   // compressive strength per element point
  Slot_REI = 9,   // displacements Ux, Uy per node (with the doubled nodes)
  Slot_REJ = 10,  // corner stresses Sxx, Syy, Sxy, Szz per element corner
  Slot_REK = 11,  // reactions
  Slot_COO = 12,  // cooling circuit history (text)
  Slot_REL = 13,  // crack opening per element point
  Slot_REM = 14,  // interface stresses
  Slot_REO = 15,  // bar stresses and slips
  Slot_REP = 16,  // degree of hydration per element point
};
inline constexpr int Result_Slot_Count = 16;

// The order in which one stored step is written, which is also the order of the slot table.
inline constexpr int Storage_Write_Order[] = {Slot_REA, Slot_REB, Slot_REC, Slot_REP, Slot_RED,
                                              Slot_REE, Slot_REF, Slot_REH, Slot_REI, Slot_REJ,
                                              Slot_REL, Slot_REK, Slot_REM, Slot_REO};

// The last letter of a binary slot's extension ('S' for the index); 0 for the cooling slot and for
// numbers outside 1..16.
char Slot_Letter(int slot);

// What the values of a variable are sampled over.
enum class Result_Location {
  None,       // a row that carries nothing
  Node,       // one value per mesh node
  Point,      // one value per element integration point
  Corner,     // one value per element corner (the extrapolated stresses)
  Circuit,    // the selected cooling circuit
  Reaction,   // one value per reaction entry
  Interface,  // per interface element
  Bar,        // per bar element
};

struct Result_Variable_Info {
  int number = 0;
  const char* name = "";
  int unit_kind = 0;  // kind of Convert_Unit for imperial display; 0 none
  int slot = 0;       // file the viewers read it from; 0 none (cooling variables, empty rows)
  Result_Location location = Result_Location::None;
  bool mechanical = false;  // present only in a mechanical analysis
};

// The row of the extreme table for v in 1..40; rows without a quantity have an empty name.
// Numbers outside 1..40 give a record with number 0.
const Result_Variable_Info& Result_Variable(int v);

// The unit kind with which the extreme table's row v is converted after reading. Rows 26, 27 and
// 30 are converted only in files of project version above 106.
int Extreme_Row_Unit_Kind(int v, int project_version);

// The slot the viewers read for a viewer variable (30 to 34 included); 0 where the variable has no
// record (6, 7, 8, unused numbers).
int Slot_Of_Variable(int viewer_variable);

// The extreme-table row of a viewer variable: 30..34 map to rows 23..27 (33 and 34 to the shear
// and slip rows), all others to themselves.
int Extreme_Row_Of_Variable(int viewer_variable);

// The viewer's name of a variable, including 30 to 34 ("Normal stress in interfaces", ...).
const char* Viewer_Variable_Name(int viewer_variable);

// Major and minor principal stress in the x-y plane, in single precision at the end.
float Major_Principal(double sxx, double syy, double sxy);
float Minor_Principal(double sxx, double syy, double sxy);

}  // namespace pvx
