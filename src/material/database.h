// The material database: a plain text file, written by hand, that holds every material the
// Projects refer to by name. It is read whole, strictly and in one pass: a line at a time, a
// four-letter key at the start of a line chooses what follows, and the numbers of a line are
// picked out of whatever text surrounds them, so that words serve as comments. A format fault
// stops the reading with one message; nothing is skipped or repaired, and the caller's table is
// replaced only by a database that was read to its end.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "app/table.h"
#include "material/material.h"

namespace pvx {

inline constexpr int Max_Database_Numbers = 40;       // numbers one line may hold
inline constexpr int Max_Latent_Pairs = 19;           // latent pairs behind capacity and count
inline constexpr int Max_Interface_Data_Index = 100;  // Interface_Data runs 0..100
inline constexpr int Default_Chain_Size_Limit = 50;

inline constexpr const char* Database_Corrupted_Message = "Material DataBase is corrupted";
inline constexpr const char* No_Database_Caption = "  (No material database connected.)";
inline constexpr const char* Select_Database_Title = "Select Database";
inline constexpr const char* Select_Database_Filter = "All Files (*.*)|*.*|Projekten(*.txt)|*.txt|";

// "Material Database (name) could not be opened. Do you want to browse for this file ?"
std::string Database_Open_Message(const std::string& name);

// What went wrong with a database.
enum class Database_Fault {
  None,
  Cannot_Open,  // the file cannot be opened; the program offers to browse for it
  Format,       // a fault the reader names ("error 1", "Error 9b", "Problems with Dead Weight", ...)
  Syntax,       // a token that is no number or more than 40 numbers on a line
  Corrupted     // an end of file inside a record, or a value out of range of its field
};

struct Database_Report {
  Database_Fault Fault = Database_Fault::None;
  // The program's message: the format message, "Syntax error in line N" with the text of that
  // line behind a line break, "Material DataBase is corrupted", or the could-not-open question.
  std::string Message;
  int Line = 0;    // the line counter when the fault was found
  int Format = 0;  // the database format number of line 1 (0 when absent)
};

struct Database_Settings {
  bool Decimal_Comma = false;  // the user's locale writes 1.5 as "1,5"
  int Chain_Size_Limit = Default_Chain_Size_Limit;
};

// The state of the line reader over the text of a database. One "line" is one text value: it ends
// at a line end or at a comma outside quotes, so "1,5" at file level is two lines.
struct Database_Reader {
  std::string_view Text;
  std::size_t Position = 0;
  bool Decimal_Comma = false;
  int Database_Line_Number = 0;
  std::string Raw_Line;  // the value as read
  std::string Key;       // first four characters of the value, upper case, leading blanks gone
  double Number[Max_Database_Numbers + 1] = {};  // Number[1..Number_Count]; the rest are 0
  int Number_Count = 0;
  bool Continuation = false;  // the value holds a "/"
};

// Turns one token of digits, signs, decimal signs and "E" into a number. "", "," and "." give 0.
// The first decimal sign of the other kind than the locale's counts as the locale's, so "2,5" and
// "2.5" both read as 2.5 in either locale. `ok` is false when the token is no number or its value
// is beyond the range of a double.
double Parse_Database_Number(std::string_view token, bool decimal_comma, bool& ok);

// Reads the next value into the reader's Raw_Line, Key and Number. False with a report at the end
// of the text (Corrupted) or on a spoilt token or a 41st number (Syntax).
bool Read_Database_Line(Database_Reader& reader, Database_Report& report);

// Reads a property: a `CONS` line, or a `MATU` or `TEMP` line with its count and the points. With
// `dutch_flag` the abscissae of a maturity table are turned into weighted maturity with C.
bool Read_Property(Database_Reader& reader, Property_Table& table, bool dutch_flag, float dutch_c,
                   Database_Report& report);

// Reads a softening line (`NO S`, `ISOT`, `ISOM` with its points, `EPFL`) into `block`.
bool Read_Softening(Database_Reader& reader, Softening& block, Database_Report& report);

// Reads a whole database text into a fresh table and, on success, replaces `materials` and
// `colours` (one default colour per material). On failure both are left as they were.
bool Read_Database_Text(std::string_view text, const Database_Settings& settings, Table<Material>& materials,
                        Table<std::int32_t>& colours, Database_Report& report);

// Reads the database file at `path` as above; a file that cannot be opened is a Cannot_Open fault.
bool Read_Material_Database(const std::string& path, const Database_Settings& settings,
                            Table<Material>& materials, Table<std::int32_t>& colours,
                            Database_Report& report);

// The same with the settings of a new Project and the message only.
bool Read_Material_Database(const std::string& path, Table<Material>& materials, Table<std::int32_t>& colours,
                            std::string& message);

// A colour packed as the platform packs it: red in the low byte, then green, then blue.
constexpr std::int32_t Pack_RGB(int red, int green, int blue) {
  return red + 256 * green + 65536 * blue;
}
// The default colour of material i (from 1): a cycle of ten, material 1 taking the first.
std::int32_t Default_Material_Colour(int i);

}  // namespace pvx
