#include "results/viewer_state.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <limits>
#include <sstream>

#include "app/units.h"
#include "results/plot.h"
#include "results/result_variables.h"
#include "results/viewer_geometry.h"

namespace pvx {

double Current_Time(const Viewer_State& s) {
  return s.Index.Storage_Time.valid(s.CurrentStored) ? s.Index.Storage_Time[s.CurrentStored] : 0.0;
}

bool Moisture_Results(const Project& p) {
  for (const Mesh_Element& e : p.Mesh_Element)
    for (const Material& m : p.Material)
      if (m.Name == e.Material && m.Has_Hygral) return true;
  return false;
}

bool Variable_Offered(const Result_Layout& layout, bool moisture, int variable) {
  switch (variable) {
    case 1:
    case 2:
    case 3:
    case 9:
    case 10:
    case 40:
      return true;
    case 4:
    case 5:
      return moisture;
    case 30:
    case 31:
      return layout.Mechanical && layout.Interfaces > 0;
    case 32:
    case 33:
    case 34:
      return layout.Mechanical && layout.Bars > 0;
    default:
      return layout.Mechanical && ((variable >= 11 && variable <= 22));
  }
}

bool Open_Viewer(Viewer_State& s, Result_Family& family, const Project& p, const std::string& work_directory,
                 Viewer_Host& host) {
  std::string message;
  if (!Prepare_Result_Family(family, p, p.Mechanical_Included != 0, work_directory, message)) {
    host.Show_Message(message);
    return false;
  }
  if (!Open_All_Result_Sets(family, p.File_Version, message)) {
    host.Show_Message(message);
    return false;
  }
  s.Metric = p.Metric_Units != 0;
  s.Project_Version = p.File_Version;
  const int run = s.CurrentRun >= 1 && s.CurrentRun <= Number_Of_Runs(family) ? s.CurrentRun : 1;
  return Load_Run(s, family, run, host);
}

namespace {

// Load_Run, with the message of a failed index chosen by the caller: opening the viewer returns to
// the design mode, a failed "Select" keeps the viewer on the run it had.
bool Load_Run_With(Viewer_State& s, Result_Family& family, int run, Viewer_Host& host, bool selecting) {
  std::string message;
  Run_Index index;
  if (!Read_Run_Index(family, run, s.Project_Version, !s.Metric, index, message)) {
    if (selecting) message = Run_Not_Loaded(family.Files[static_cast<std::size_t>(run)][Slot_RES].Path);
    host.Show_Message(message);
    return false;
  }
  s.Index = std::move(index);
  s.CurrentRun = static_cast<std::int16_t>(run);
  Dimension_Plot_Buffers(family.Layout, s.Buffers);
  s.CoolingDataOk = false;
  s.Circuits.clear();
  if (Slot_Exists(family.Layout, Slot_COO) && s.Project_Version > 104) {
    if (!Read_Cooling_Data(family, run, s.Circuits, s.CoolingDataOk, message)) host.Show_Message(message);
  }
  Cap_Stored(s);
  return Read_Current(s, family, host);
}

}  // namespace

std::string Run_Not_Loaded(const std::string& path) {
  return "Results (" + path + ") not available or corrupted. ";
}

bool Load_Run(Viewer_State& s, Result_Family& family, int run, Viewer_Host& host) {
  return Load_Run_With(s, family, run, host, false);
}

void Cap_Stored(Viewer_State& s) {
  const int count = Storage_Count(s.Index);
  if (s.CurrentStored < 1) s.CurrentStored = 1;
  if (s.CurrentStored > count) s.CurrentStored = static_cast<std::int16_t>(std::max(count, 1));
}

bool Read_Current(Viewer_State& s, Result_Family& family, Viewer_Host& host) {
  Cap_Stored(s);
  const int slot = Slot_Of_Variable(s.CurrentVariable);
  if (slot == 0) return true;
  std::string message;
  if (!Read_Result_Variable(family, s.CurrentRun, slot, s.CurrentStored, s.CurrentVariable, !s.Metric,
                            s.Buffers, message)) {
    host.Show_Message(message);
    return false;
  }
  return true;
}

void Clear_Pick_Flags(Viewer_State& s) {
  s.PickingPoints = s.PickingAreas = s.PickingSupports = false;
}

bool Select_Variable(Viewer_State& s, Result_Family& family, int variable, Viewer_Host& host) {
  Clear_Pick_Flags(s);
  s.CurrentVariable = static_cast<std::int16_t>(variable);
  return Read_Current(s, family, host);
}

bool Can_Step_Backward(const Viewer_State& s) {
  return s.CurrentStored >= 2;
}

bool Can_Step_Forward(const Viewer_State& s) {
  return s.CurrentStored < Storage_Count(s.Index);
}

bool Step_Backward(Viewer_State& s, Result_Family& family, Viewer_Host& host) {
  if (!Can_Step_Backward(s)) return false;
  --s.CurrentStored;
  return Read_Current(s, family, host);
}

bool Step_Forward(Viewer_State& s, Result_Family& family, Viewer_Host& host) {
  if (!Can_Step_Forward(s)) return false;
  ++s.CurrentStored;
  return Read_Current(s, family, host);
}

namespace {

const Extreme_Row* Row_Of(const Viewer_State& s) {
  const int row = Extreme_Row_Of_Variable(s.CurrentVariable);
  if (row < 1 || row > Result_Variable_Count) return nullptr;
  return &s.Index.Extremes[row];
}

}  // namespace

int Stored_Index_Of_Minimum(const Viewer_State& s) {
  const Extreme_Row* r = Row_Of(s);
  return Display_Stored_Index(s.Index, r ? r->StoredIndexOfMin : 1);
}

int Stored_Index_Of_Maximum(const Viewer_State& s) {
  const Extreme_Row* r = Row_Of(s);
  return Display_Stored_Index(s.Index, r ? r->StoredIndexOfMax : 1);
}

bool Jump_To_Minimum(Viewer_State& s, Result_Family& family, Viewer_Host& host) {
  s.CurrentStored = static_cast<std::int16_t>(Stored_Index_Of_Minimum(s));
  return Read_Current(s, family, host);
}

bool Jump_To_Maximum(Viewer_State& s, Result_Family& family, Viewer_Host& host) {
  s.CurrentStored = static_cast<std::int16_t>(Stored_Index_Of_Maximum(s));
  return Read_Current(s, family, host);
}

std::vector<std::string> Stored_Time_Texts(const Viewer_State& s) {
  std::vector<std::string> texts;
  for (double t : s.Index.Storage_Time)
    texts.push_back(Format_Number(t, 14, 6));
  return texts;
}

bool Pick_Stored_Step(Viewer_State& s, Result_Family& family, int stored, Viewer_Host& host) {
  if (stored < 1 || stored > Storage_Count(s.Index)) return false;
  s.CurrentStored = static_cast<std::int16_t>(stored);
  return Read_Current(s, family, host);
}

int Next_Movie_Frame(const Viewer_State& s, int frame) {
  const int next = std::max(frame, 0) + 1;
  return next <= Storage_Count(s.Index) ? next : 0;
}

int Play_Movie(Viewer_State& s, Result_Family& family, Viewer_Host& host) {
  int shown = 0;
  for (int i = Next_Movie_Frame(s, 0); i != 0 && host.Movie_Button_Down(); i = Next_Movie_Frame(s, i)) {
    s.CurrentStored = static_cast<std::int16_t>(i);
    if (!Read_Current(s, family, host)) break;
    host.Show_Picture();
    ++shown;
    host.Yield();
  }
  return shown;
}

std::vector<std::string> Run_Names(const Project& p) {
  std::vector<std::string> names;
  for (std::int16_t m : p.Run_Material)
    names.push_back(p.Material.valid(m) ? p.Material[m].Name : std::string());
  return names;
}

bool Select_Run(Viewer_State& s, Result_Family& family, int run, Viewer_Host& host) {
  if (run < 1 || run > Number_Of_Runs(family)) return false;
  const ResultFile& index_file = family.Files[static_cast<std::size_t>(run)][Slot_RES];
  if (index_file.Stream == nullptr) {
    host.Show_Message(Results_Not_Available(index_file.Path));
    return false;
  }
  return Load_Run_With(s, family, run, host, true);
}

bool Edit_Scale(Viewer_State& s, Scale_Box box, const std::string& text, bool decimal_comma,
                Viewer_Host& host) {
  std::string message;
  const double value = Check_Number(text, decimal_comma, &message);
  if (!message.empty()) {
    host.Show_Message(message);
    return false;
  }
  if (box == Scale_Box::Ft_Factor) {
    s.FtFactor = value;
    return true;
  }
  const int row = box == Scale_Box::Deformation ? 20 : Extreme_Row_Of_Variable(s.CurrentVariable);
  if (row < 1 || row > Result_Variable_Count) return false;
  Extreme_Row& r = s.Index.Extremes[row];
  switch (box) {
    case Scale_Box::Maximum:
      if (value <= r.ScaleMin) {
        host.Show_Message(Max_Not_Above_Min_Message);
        return false;
      }
      r.ScaleMax = value;
      return true;
    case Scale_Box::Minimum:
      if (value >= r.ScaleMax) {
        host.Show_Message(Min_Not_Below_Max_Message);
        return false;
      }
      r.ScaleMin = value;
      return true;
    default:
      if (value <= 0) {
        host.Show_Message(Scale_Not_Positive_Message);
        return false;
      }
      r.ScaleMax = value;
      return true;
  }
}

void Reset_Picks(Viewer_State& s, Viewer_Host& host) {
  if (s.LineCutActive && host.Ask_Yes_No(Reset_Line_Cut_Question)) {
    s.LineCutActive = false;
    s.LineCutPending = false;
    s.LineCut = Cut_Line{};
  }
  if (!s.HistoryPoints.empty() && host.Ask_Yes_No(Reset_Points_Question)) s.HistoryPoints.clear();
  if (!s.HistoryAreas.empty() && host.Ask_Yes_No(Reset_Areas_Question)) s.HistoryAreas.clear();
  if (!s.HistorySupports.empty() && host.Ask_Yes_No(Reset_Supports_Question)) s.HistorySupports.clear();
}

bool Value_Under_Pointer(const Viewer_State& s, const Picture_State& picture, const Project& p, double px,
                         double py, Point_Reading& reading) {
  if (s.CurrentVariable == 21) return false;
  const double x = Picture_To_World_X(picture, px), y = Picture_To_World_Y(picture, py);
  int element = 0;
  double u = 0, v = 0;
  if (!Find_Element_At_Point(p, Current_Time(s), x, y, element, u, v)) return false;
  return Value_At_Point(p, s.Buffers, s.CurrentVariable, element, u, v, s.Metric, reading);
}

bool Pick_History_Point(Viewer_State& s, const Project& p, double x, double y) {
  History_Point h;
  int element = 0;
  if (!Find_Element_At_Point(p, Current_Time(s), x, y, element, h.U, h.V)) return false;
  h.Element = element;
  Element_Point(p, element, h.U, h.V, h.X, h.Y);
  s.HistoryPoints.add(h);
  return true;
}

int Nearest_Support(const Project& p, double x, double y) {
  double best = 1e30;
  int found = 0;
  for (int i = 1; i <= p.Mesh_Support.count(); ++i) {
    const double d = std::hypot(p.Mesh_Support[i].X - x, p.Mesh_Support[i].Y - y);
    if (d < best) {
      best = d;
      found = i;
    }
  }
  return found;
}

std::string Reaction_Text(const Viewer_State& s, int support) {
  const double value = s.Buffers.Node.valid(support) ? s.Buffers.Node[support] : 0.0;
  return Format_Number(value, 11, 3) + (s.Metric ? " [kN]" : " [kip]");
}

bool Reaction_Label(Viewer_State& s, const Project& p, double x, double y, int& support, std::string& text) {
  support = Nearest_Support(p, x, y);
  if (support == 0) return false;
  text = Reaction_Text(s, support);
  if (s.PickingSupports) s.HistorySupports.add(support);
  return true;
}

bool Read_List_Numbers(const std::string& text, std::vector<double>& numbers) {
  numbers.clear();
  std::size_t i = 0;
  while (i < text.size()) {
    const char c = text[i];
    if (c == ' ' || c == ',' || c == '\t' || c == '\r' || c == '\n') {
      ++i;
      continue;
    }
    std::size_t j = i;
    while (j < text.size() && text[j] != ' ' && text[j] != ',' && text[j] != '\t' && text[j] != '\r' &&
           text[j] != '\n')
      ++j;
    const char* first = text.data() + i;
    const char* last = text.data() + j;
    if (*first == '+') ++first;
    double v = 0;
    const auto result = std::from_chars(first, last, v);
    if (result.ec != std::errc{} || result.ptr != last || !std::isfinite(v)) return false;
    numbers.push_back(v);
    i = j;
  }
  return true;
}

namespace {

// The numbers of an import file with its count first and `per_item` numbers per item (the running
// number included). False when the file cannot be read, holds no valid count or is short.
bool Read_Import_File(const std::string& path, int per_item, std::vector<double>& numbers, int& count) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  std::ostringstream text;
  text << in.rdbuf();
  if (!Read_List_Numbers(text.str(), numbers) || numbers.empty()) return false;
  const double n = numbers[0];
  if (n < 0 || n > std::numeric_limits<std::int16_t>::max() || n != std::floor(n)) return false;
  count = static_cast<int>(n);
  return numbers.size() >= 1 + static_cast<std::size_t>(count) * static_cast<std::size_t>(per_item);
}

}  // namespace

int Import_History_Points(Viewer_State& s, const Project& p, const std::string& path, Viewer_Host& host) {
  std::vector<double> numbers;
  int count = 0;
  if (!Read_Import_File(path, 3, numbers, count)) {
    host.Show_Message(Error_In_File_Message);
    return -1;
  }
  int added = 0;
  for (int k = 0; k < count; ++k) {
    const double x = numbers[static_cast<std::size_t>(3 * k + 2)];
    const double y = numbers[static_cast<std::size_t>(3 * k + 3)];
    if (Pick_History_Point(s, p, x, y)) ++added;
  }
  return added;
}

int Import_History_Supports(Viewer_State& s, const Project& p, const std::string& path, Viewer_Host& host) {
  std::vector<double> numbers;
  int count = 0;
  if (!Read_Import_File(path, 2, numbers, count)) {
    host.Show_Message(Error_In_File_Message);
    return -1;
  }
  int added = 0;
  for (int k = 0; k < count; ++k) {
    const double n = numbers[static_cast<std::size_t>(2 * k + 2)];
    if (n != std::floor(n) || n < 1 || n > p.Mesh_Support.count()) continue;
    s.HistorySupports.add(static_cast<std::int32_t>(n));
    ++added;
  }
  return added;
}

}  // namespace pvx
