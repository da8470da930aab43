#include "results/result_files.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <utility>

#include "app/project_file.h"
#include "app/units.h"
#include "results/binary.h"

namespace pvx {

namespace {

constexpr int First_Unit = 11;
constexpr int Version_Cooling_File = 104;  // the cooling file exists in results of later versions

bool Valid_Variant(const Result_Family& family, int variant) {
  return variant >= 1 && variant <= Number_Of_Runs(family);
}

bool Is_Binary_Sibling(int slot) {
  return slot >= Slot_REA && slot <= Result_Slot_Count && slot != Slot_COO;
}

void Close_Stream(ResultFile& file, bool& ok) {
  if (file.Stream == nullptr) return;
  if (std::fclose(file.Stream) != 0) ok = false;
  file.Stream = nullptr;
}

void Close_Run(std::array<ResultFile, Result_Slot_Count + 1>& files) {
  bool ok = true;
  for (ResultFile& f : files)
    Close_Stream(f, ok);
}

void Close_All(Result_Family& family) {
  for (auto& run : family.Files)
    Close_Run(run);
}

std::int64_t File_Size(std::FILE* stream) {
  if (std::fseek(stream, 0, SEEK_END) != 0) return -1;
  const long size = std::ftell(stream);
  return size < 0 ? -1 : static_cast<std::int64_t>(size);
}

// Seeks a 0-based byte offset; offsets beyond `long` are refused.
bool Seek(std::FILE* stream, std::int64_t offset) {
  if (offset < 0 || offset > std::numeric_limits<long>::max()) return false;
  return std::fseek(stream, static_cast<long>(offset), SEEK_SET) == 0;
}

// The values a field must have for its slot, and where they come from.
std::span<const double> Field_Of(const Field_Values& f, int slot) {
  switch (slot) {
    case Slot_REA:
      return f.Temperature;
    case Slot_REB:
      return f.Potential;
    case Slot_REC:
      return f.Maturity;
    case Slot_RED:
      return f.C_Maturity;
    case Slot_REE:
      return f.Moisture_Content;
    case Slot_REF:
      return f.Tensile_Strength;
    case Slot_REH:
      return f.Compressive_Strength;
    case Slot_REI:
      return f.Displacement;
    case Slot_REJ:
      return f.Corner_Stress;
    case Slot_REK:
      return f.Reaction;
    case Slot_REL:
      return f.Crack_Opening;
    case Slot_REM:
      return f.Interface_Stress;
    case Slot_REO:
      return f.Bar_Values;
    case Slot_REP:
      return f.Hydration;
    default:
      return {};
  }
}

const char* Field_Name(int slot) {
  switch (slot) {
    case Slot_REA:
      return "temperature";
    case Slot_REB:
      return "moisture potential";
    case Slot_REC:
      return "maturity";
    case Slot_RED:
      return "C-maturity";
    case Slot_REE:
      return "moisture content";
    case Slot_REF:
      return "tensile strength";
    case Slot_REH:
      return "compressive strength";
    case Slot_REI:
      return "displacements";
    case Slot_REJ:
      return "corner stresses";
    case Slot_REK:
      return "reactions";
    case Slot_REL:
      return "crack openings";
    case Slot_REM:
      return "interface stresses";
    case Slot_REO:
      return "bar values";
    case Slot_REP:
      return "degree of hydration";
    default:
      return "";
  }
}

// One record in file bytes.
void Encode_Record(int slot, const Field_Values& f, std::vector<unsigned char>& bytes) {
  const std::span<const double> values = Field_Of(f, slot);
  bytes.resize(values.size() * 4);
  unsigned char* out = bytes.data();
  if (slot == Slot_REL && !f.Cracked.empty()) {
    for (std::size_t k = 0; k < values.size(); ++k, out += 4)
      binary::Put_F32(out, f.Cracked[k] != 0 ? binary::Narrow(values[k]) : 0.0f);
    return;
  }
  for (double v : values) {
    binary::Put_F32(out, binary::Narrow(v));
    out += 4;
  }
}

// Reads record `k` (1-based) of an open sibling into `values`.
bool Read_Record(const ResultFile& file, int k, std::vector<float>& values) {
  values.assign(static_cast<std::size_t>(file.RecordLength), 0.0f);
  if (file.Stream == nullptr || k < 1) return false;
  const std::int64_t bytes = std::int64_t{4} * file.RecordLength;
  if (!Seek(file.Stream, (k - 1) * bytes)) return false;
  std::vector<unsigned char> raw(static_cast<std::size_t>(bytes));
  if (bytes > 0 && std::fread(raw.data(), 1, raw.size(), file.Stream) != raw.size()) return false;
  for (std::size_t i = 0; i < values.size(); ++i)
    values[i] = binary::Get_F32(raw.data() + 4 * i);
  return true;
}

struct Running {
  double min = 0, max = 0;
  bool any = false;
  void add(double v) {
    if (!any) {
      min = max = v;
      any = true;
      return;
    }
    if (v < min) min = v;
    if (v > max) max = v;
  }
};

float Display(bool to_imperial, int kind, float v) {
  return to_imperial ? static_cast<float>(Convert_Unit(true, kind, v)) : v;
}

}  // namespace

std::string Results_Not_Available(const std::string& path) {
  return "Results (" + path + ") not available";
}

std::string Results_Corrupted(const std::string& path) {
  return "Results (" + path + ") not available or corrupted! The program returns to the design mode.";
}

Result_Layout Result_Layout_Of(const Project& p, bool mechanical) {
  Result_Layout layout;
  layout.Nodes = p.Mesh_Node.count();
  layout.Elements = p.Mesh_Element.count();
  layout.Doubled_Nodes = p.Doubled_Node_Count;
  layout.Reactions = p.Mesh_Support.count();
  layout.Interfaces = p.Mesh_Interface.count();
  layout.Bars = p.Mesh_Rebar.count();
  layout.Mechanical = mechanical;
  for (const Circuit& c : p.Circuit)
    layout.Circuit_Stations.add(c.Pipe_Count + 2);
  return layout;
}

std::int64_t Record_Length(const Result_Layout& l, int slot) {
  switch (slot) {
    case Slot_REA:
    case Slot_REB:
      return l.Nodes;
    case Slot_REC:
    case Slot_RED:
    case Slot_REE:
    case Slot_REF:
    case Slot_REH:
    case Slot_REL:
    case Slot_REP:
      return 4 * l.Elements;
    case Slot_REI:
      return 2 * (l.Nodes + l.Doubled_Nodes);
    case Slot_REJ:
      return 16 * l.Elements;
    case Slot_REK:
      return l.Reactions;
    case Slot_REM:
      return 4 * l.Interfaces;
    case Slot_REO:
      return 5 * l.Bars;
    default:
      return 0;
  }
}

bool Slot_Exists(const Result_Layout& l, int slot) {
  switch (slot) {
    case Slot_RES:
    case Slot_REA:
    case Slot_REB:
    case Slot_REC:
    case Slot_RED:
    case Slot_REE:
    case Slot_REF:
    case Slot_REH:
    case Slot_REP:
      return true;
    case Slot_REI:
    case Slot_REJ:
    case Slot_REK:
    case Slot_REL:
      return l.Mechanical;
    case Slot_REM:
      return l.Mechanical && l.Interfaces > 0;
    case Slot_REO:
      return l.Mechanical && l.Bars > 0;
    case Slot_COO:
      return !l.Circuit_Stations.empty();
    default:
      return false;
  }
}

std::string Sibling_Name(const std::string& res_name, int slot) {
  if (slot == Slot_COO) return res_name.size() >= 3 ? res_name.substr(0, res_name.size() - 3) + "COO" : "COO";
  const char letter = Slot_Letter(slot);
  if (letter == 0 || res_name.empty()) return res_name;
  std::string name = res_name;
  name.back() = letter;
  return name;
}

Result_Family::Result_Family(Result_Family&& other) noexcept
    : Layout(std::move(other.Layout)), Files(std::move(other.Files)), Mode(other.Mode) {
  other.Files.clear();
}

Result_Family& Result_Family::operator=(Result_Family&& other) noexcept {
  if (this != &other) {
    Close_All(*this);
    Layout = std::move(other.Layout);
    Files = std::move(other.Files);
    Mode = other.Mode;
    other.Files.clear();
  }
  return *this;
}

Result_Family::~Result_Family() {
  Close_All(*this);
}

bool Set_Output_Names(Result_Family& family, const std::vector<std::string>& result_names,
                      const std::string& work_directory, std::string& message) {
  Close_All(family);
  family.Files.clear();
  const int runs = result_names.size() >= 2 ? static_cast<int>(result_names.size()) - 1 : 0;
  if (runs == 0) {
    message = Output_Name_Missing;
    return false;
  }
  for (int r = 1; r <= runs; ++r) {
    if (result_names[static_cast<std::size_t>(r)].empty()) {
      message = Output_Name_Missing;
      return false;
    }
  }
  family.Files.resize(static_cast<std::size_t>(runs) + 1);
  int unit = First_Unit;
  for (int r = 1; r <= runs; ++r) {
    const std::string& name = result_names[static_cast<std::size_t>(r)];
    const std::string res = std::filesystem::path(name).is_absolute() || work_directory.empty()
                                ? name
                                : Join_Path(work_directory, name);
    auto& run = family.Files[static_cast<std::size_t>(r)];
    for (int slot = 1; slot <= Result_Slot_Count; ++slot) {
      ResultFile& f = run[static_cast<std::size_t>(slot)];
      f = ResultFile{};
      f.Path = slot == Slot_RES ? res : Sibling_Name(res, slot);
      // Handles are numbered whether or not the run ever opens; past 16 bits they repeat.
      f.Unit = static_cast<std::int16_t>(unit++);
    }
  }
  return true;
}

bool Prepare_Result_Family(Result_Family& family, const Project& p, bool mechanical,
                           const std::string& work_directory, std::string& message) {
  family.Layout = Result_Layout_Of(p, mechanical);
  std::vector<std::string> names = p.Result_Names;
  if (names.size() < 2) names.assign(2, p.Result_File_Name);
  return Set_Output_Names(family, names, work_directory, message);
}

bool Open_Result_Files(Result_Family& family, int variant, int mode, int project_version,
                       std::string& message) {
  if (!Valid_Variant(family, variant) || (mode != 1 && mode != 2)) {
    message = Open_Failed_Message;
    return false;
  }
  auto& run = family.Files[static_cast<std::size_t>(variant)];
  Close_Run(run);
  family.Mode = mode;
  bool ok = true;
  for (int slot = 1; slot <= Result_Slot_Count && ok; ++slot) {
    ResultFile& f = run[static_cast<std::size_t>(slot)];
    f.RecordsWritten = slot == Slot_RES ? 1 : 0;
    const std::int64_t length = Record_Length(family.Layout, slot);
    if (length > std::numeric_limits<std::int32_t>::max() / 4) {
      ok = false;
      break;
    }
    f.RecordLength = static_cast<std::int32_t>(length);
    if (!Slot_Exists(family.Layout, slot)) continue;
    if (slot == Slot_COO) {
      if (mode == 1) {
        f.Stream = std::fopen(f.Path.c_str(), "wb");
        ok = f.Stream != nullptr;
      } else if (project_version > Version_Cooling_File) {
        f.Stream = std::fopen(f.Path.c_str(), "rb");  // may be missing: the cooling tab is not offered
      }
      continue;
    }
    if (mode == 2) {
      f.Stream = std::fopen(f.Path.c_str(), "rb");
    } else if (slot == Slot_RES) {
      f.Stream = std::fopen(f.Path.c_str(), "w+b");
    } else {
      // An older file is overwritten from its start and its tail stays: readers count on the index.
      f.Stream = std::fopen(f.Path.c_str(), "r+b");
      if (f.Stream == nullptr) f.Stream = std::fopen(f.Path.c_str(), "w+b");
    }
    ok = f.Stream != nullptr;
  }
  if (ok && mode == 1) {
    // An empty index from the start: a run that dies before its first storage must not leave the
    // index of a former run over records that are being overwritten.
    std::string ignored;
    ok = Write_Run_Index(family, variant, Run_Index{}, ignored);
  }
  if (!ok) {
    Close_Run(run);
    message = Open_Failed_Message;
    return false;
  }
  return true;
}

bool Close_Result_Files(Result_Family& family, int variant, std::string& message) {
  if (!Valid_Variant(family, variant)) return true;
  bool ok = true;
  for (ResultFile& f : family.Files[static_cast<std::size_t>(variant)])
    Close_Stream(f, ok);
  if (!ok) message = Close_Failed_Message;
  return ok;
}

bool Write_Result_Storage(Result_Family& family, int variant, const Field_Values& fields,
                          std::string& message) {
  if (!Valid_Variant(family, variant) || family.Mode != 1) {
    message = Write_Failed_Message;
    return false;
  }
  auto& run = family.Files[static_cast<std::size_t>(variant)];
  // Refuse a field of the wrong length before any file is touched, so that no sibling runs ahead.
  for (int slot : Storage_Write_Order) {
    if (!Slot_Exists(family.Layout, slot)) continue;
    const ResultFile& f = run[static_cast<std::size_t>(slot)];
    const std::size_t expected = static_cast<std::size_t>(f.RecordLength);
    if (Field_Of(fields, slot).size() != expected) {
      message = std::string("The ") + Field_Name(slot) + " of a storage hold " +
                std::to_string(Field_Of(fields, slot).size()) + " values; the record needs " +
                std::to_string(expected);
      return false;
    }
    if (slot == Slot_REL && !fields.Cracked.empty() && fields.Cracked.size() != expected) {
      message = "The cracked flags of a storage hold " + std::to_string(fields.Cracked.size()) +
                " values; the record needs " + std::to_string(expected);
      return false;
    }
    if (f.Stream == nullptr) {
      message = Write_Failed_Message + f.Path;
      return false;
    }
  }
  std::vector<unsigned char> bytes;
  for (int slot : Storage_Write_Order) {
    if (!Slot_Exists(family.Layout, slot)) continue;
    ResultFile& f = run[static_cast<std::size_t>(slot)];
    Encode_Record(slot, fields, bytes);
    const std::int64_t start = std::int64_t{f.RecordsWritten} * 4 * f.RecordLength;
    const bool ok = Seek(f.Stream, start) &&
                    (bytes.empty() || std::fwrite(bytes.data(), 1, bytes.size(), f.Stream) == bytes.size()) &&
                    std::fflush(f.Stream) == 0;
    if (!ok) {
      message = Write_Failed_Message + f.Path;
      return false;
    }
    ++f.RecordsWritten;
  }
  return true;
}

bool Write_Run_Index(Result_Family& family, int variant, const Run_Index& index, std::string& message) {
  if (!Valid_Variant(family, variant)) {
    message = Write_Failed_Message;
    return false;
  }
  auto& run = family.Files[static_cast<std::size_t>(variant)];
  ResultFile& res = run[Slot_RES];
  int complete = Storage_Count(index);
  for (int slot = Slot_REA; slot <= Result_Slot_Count; ++slot)
    if (Is_Binary_Sibling(slot) && Slot_Exists(family.Layout, slot))
      complete = std::min(complete, static_cast<int>(run[static_cast<std::size_t>(slot)].RecordsWritten));
  const std::vector<unsigned char> bytes = Encode_Run_Index(index, complete);
  const bool ok = res.Stream != nullptr && Seek(res.Stream, 0) &&
                  std::fwrite(bytes.data(), 1, bytes.size(), res.Stream) == bytes.size() &&
                  std::fflush(res.Stream) == 0;
  if (!ok) message = Write_Failed_Message + res.Path;
  return ok;
}

bool Record_Storage(Result_Family& family, int variant, const Field_Values& fields, double time,
                    Run_Index& index, std::string& message) {
  if (!Write_Result_Storage(family, variant, fields, message)) return false;
  index.Storage_Time.add(time);
  return Write_Run_Index(family, variant, index, message);
}

bool Open_All_Result_Sets(Result_Family& family, int project_version, std::string& message) {
  for (int r = 1; r <= Number_Of_Runs(family); ++r) {
    std::string ignored;
    if (!Open_Result_Files(family, r, 2, project_version, ignored)) {
      message = Results_Not_Available(family.Files[static_cast<std::size_t>(r)][Slot_RES].Path);
      return false;
    }
  }
  if (Number_Of_Runs(family) == 0) {
    message = Results_Not_Available("");
    return false;
  }
  return true;
}

namespace {

bool Read_Index_Stream(std::FILE* stream, int project_version, bool to_imperial, Run_Index& index) {
  const std::int64_t size = File_Size(stream);
  if (size < 0 || !Seek(stream, 0)) return false;
  std::vector<unsigned char> bytes(static_cast<std::size_t>(size));
  if (!bytes.empty() && std::fread(bytes.data(), 1, bytes.size(), stream) != bytes.size()) return false;
  std::string detail;
  if (!Parse_Run_Index(bytes.data(), bytes.size(), project_version, index, detail)) return false;
  if (Storage_Count(index) <= 0) return false;
  if (to_imperial) Convert_Extreme_Table(index, project_version);
  return true;
}

}  // namespace

bool Read_Run_Index(Result_Family& family, int variant, int project_version, bool to_imperial,
                    Run_Index& index, std::string& message) {
  if (!Valid_Variant(family, variant)) {
    message = Results_Corrupted("");
    return false;
  }
  auto& run = family.Files[static_cast<std::size_t>(variant)];
  const std::string& path = run[Slot_RES].Path;
  if (run[Slot_RES].Stream == nullptr ||
      !Read_Index_Stream(run[Slot_RES].Stream, project_version, to_imperial, index)) {
    message = Results_Corrupted(path);
    return false;
  }
  const int storages = Storage_Count(index);
  for (int slot = Slot_REA; slot <= Result_Slot_Count; ++slot) {
    if (!Is_Binary_Sibling(slot) || !Slot_Exists(family.Layout, slot)) continue;
    ResultFile& f = run[static_cast<std::size_t>(slot)];
    const std::int64_t size = f.Stream != nullptr ? File_Size(f.Stream) : -1;
    if (size < std::int64_t{storages} * 4 * f.RecordLength) {
      message = Results_Corrupted(path);
      return false;
    }
    f.RecordsWritten = storages;
  }
  return true;
}

bool Read_Run_Index_File(const std::string& path, int project_version, bool to_imperial, Run_Index& index,
                         std::string& message) {
  std::FILE* stream = std::fopen(path.c_str(), "rb");
  if (stream == nullptr) {
    message = Results_Not_Available(path);
    return false;
  }
  const bool ok = Read_Index_Stream(stream, project_version, to_imperial, index);
  std::fclose(stream);
  if (!ok) message = Results_Corrupted(path);
  return ok;
}

void Dimension_Plot_Buffers(const Result_Layout& layout, Plot_Buffers& buffers) {
  const std::int64_t nodes = std::max(2 * (layout.Nodes + layout.Doubled_Nodes), layout.Reactions);
  buffers.Node.clear();
  buffers.Node.resize(static_cast<int>(std::min<std::int64_t>(nodes, std::numeric_limits<int>::max())));
  buffers.Element_A.clear();
  buffers.Element_A.resize(static_cast<int>(layout.Elements));
  buffers.Element_B.clear();
  buffers.Element_B.resize(static_cast<int>(layout.Elements));
  buffers.Interface.clear();
  buffers.Interface.resize(static_cast<int>(layout.Interfaces));
  buffers.Bar.clear();
  buffers.Bar.resize(static_cast<int>(layout.Bars));
  buffers.CurrentMin = buffers.CurrentMax = 0;
}

namespace {

// Fills column `column` of an element buffer from a record of one value per element point.
void Fill_Column(Table<Array1<Array1<float, 4>, 4>>& buffer, const std::vector<float>& values, int column) {
  const int elements = std::min(buffer.count(), static_cast<int>(values.size() / 4));
  for (int e = 1; e <= elements; ++e)
    for (int p = 1; p <= 4; ++p)
      buffer[e][p][column] = values[static_cast<std::size_t>(4 * (e - 1) + p - 1)];
}

}  // namespace

bool Read_Result_Variable(Result_Family& family, int variant, int slot, int stored_index, int variable,
                          bool to_imperial, Plot_Buffers& b, std::string& message) {
  const std::string path =
      Valid_Variant(family, variant) ? family.Files[static_cast<std::size_t>(variant)][Slot_RES].Path : "";
  auto fail = [&] {
    message = Results_Corrupted(path);
    return false;
  };
  if (!Valid_Variant(family, variant) || !Is_Binary_Sibling(slot) || !Slot_Exists(family.Layout, slot))
    return fail();
  auto& run = family.Files[static_cast<std::size_t>(variant)];
  const ResultFile& file = run[static_cast<std::size_t>(slot)];
  if (stored_index < 1 || stored_index > file.RecordsWritten) return fail();
  std::vector<float> values;
  if (!Read_Record(file, stored_index, values)) return fail();

  const int kind = [slot] {
    switch (slot) {
      case Slot_REA:
        return int{Unit_Temperature};
      case Slot_REE:
        return int{Unit_Density};
      case Slot_REF:
      case Slot_REH:
      case Slot_REJ:
        return int{Unit_Stress_2};
      case Slot_REI:
      case Slot_REL:
        return int{Unit_Length_mm};
      case Slot_REK:
        return int{Unit_Force_kN};
      default:
        return 0;
    }
  }();
  if (to_imperial && kind != 0)
    for (float& v : values)
      v = Display(true, kind, v);

  Running r;
  switch (slot) {
    case Slot_REA:
    case Slot_REB:
    case Slot_REK: {
      const std::size_t n = std::min(values.size(), static_cast<std::size_t>(b.Node.count()));
      for (std::size_t i = 0; i < n; ++i) {
        b.Node[static_cast<int>(i) + 1] = values[i];
        r.add(values[i]);
      }
      break;
    }
    case Slot_REC:
    case Slot_RED:
    case Slot_REE:
    case Slot_REF:
    case Slot_REH:
    case Slot_REL:
    case Slot_REP:
      Fill_Column(b.Element_A, values, 1);
      for (float v : values)
        r.add(v);
      break;
    case Slot_REI: {
      const std::size_t n = std::min(values.size(), static_cast<std::size_t>(b.Node.count()));
      for (std::size_t i = 0; i < n; ++i)
        b.Node[static_cast<int>(i) + 1] = values[i];
      for (std::size_t i = 0; i + 1 < values.size(); i += 2) {
        if (variable == 12)
          r.add(values[i + 1]);
        else if (variable == 20)
          r.add(std::hypot(double{values[i]}, double{values[i + 1]}));
        else
          r.add(values[i]);
      }
      if (variable == 20) r.min = 0;
      break;
    }
    case Slot_REJ: {
      const int elements = std::min(b.Element_A.count(), static_cast<int>(values.size() / 16));
      for (int e = 1; e <= elements; ++e) {
        for (int p = 1; p <= 4; ++p) {
          const float* q = values.data() + 16 * (e - 1) + 4 * (p - 1);
          for (int c = 1; c <= 4; ++c)
            b.Element_A[e][p][c] = q[c - 1];
          switch (variable) {
            case 13:
              r.add(Major_Principal(q[0], q[1], q[2]));
              break;
            case 14:
              r.add(Minor_Principal(q[0], q[1], q[2]));
              break;
            case 15:
              r.add(q[3]);
              break;
            case 17:
              r.add(q[1]);
              break;
            case 18:
              r.add(q[2]);
              break;
            case 19:  // the ratio needs the strength, read below
              break;
            default:
              r.add(q[0]);
              break;
          }
        }
      }
      break;
    }
    case Slot_REM: {
      const int count = std::min(b.Interface.count(), static_cast<int>(values.size() / 4));
      for (int i = 1; i <= count; ++i) {
        const float* q = values.data() + 4 * (i - 1);
        Interface_Result& ir = b.Interface[i];
        for (int k = 0; k < 4; ++k) {
          const float v = Display(to_imperial, Unit_Stress_2, q[k]);
          (k < 2 ? ir.Normal[k] : ir.Shear[k - 2]) = v;
          if ((variable == 31) == (k >= 2)) r.add(v);
        }
      }
      break;
    }
    case Slot_REO: {
      const int count = std::min(b.Bar.count(), static_cast<int>(values.size() / 5));
      for (int i = 1; i <= count; ++i) {
        const float* q = values.data() + 5 * (i - 1);
        Bar_Result& br = b.Bar[i];
        br.Normal = Display(to_imperial, Unit_Stress_2, q[0]);
        br.Shear[0] = Display(to_imperial, Unit_Stress_2, q[1]);
        br.Shear[1] = Display(to_imperial, Unit_Stress_2, q[2]);
        br.Slip[0] = Display(to_imperial, Unit_Length_mm, q[3]);
        br.Slip[1] = Display(to_imperial, Unit_Length_mm, q[4]);
        if (variable == 33) {
          r.add(br.Shear[0]);
          r.add(br.Shear[1]);
        } else if (variable == 34) {
          r.add(br.Slip[0]);
          r.add(br.Slip[1]);
        } else {
          r.add(br.Normal);
        }
      }
      break;
    }
    default:
      return fail();
  }

  if (family.Layout.Mechanical) {
    std::vector<float> strength;
    if (!Read_Record(run[Slot_REF], stored_index, strength)) return fail();
    if (to_imperial)
      for (float& v : strength)
        v = Display(true, Unit_Stress_2, v);
    Fill_Column(b.Element_B, strength, 1);
    if (slot == Slot_REJ && variable == 19) {
      for (int e = 1; e <= b.Element_A.count(); ++e)
        for (int p = 1; p <= 4; ++p) {
          const float szz = b.Element_A[e][p][4], ft = b.Element_B[e][p][1];
          r.add(ft > 0 && szz > 0 ? szz / ft : 0.0f);
        }
    }
  }
  b.CurrentMin = r.min;
  b.CurrentMax = r.max;
  return true;
}

bool Write_Cooling_Data(Result_Family& family, int variant, const Table<Circuit_History>& circuits,
                        std::string& message) {
  if (!Valid_Variant(family, variant)) return true;
  ResultFile& f = family.Files[static_cast<std::size_t>(variant)][Slot_COO];
  if (f.Stream == nullptr) return true;  // no circuits, no file
  for (const Circuit_History& c : circuits)
    if (c.History.count() > std::numeric_limits<std::int16_t>::max()) {
      message = Write_Failed_Message + f.Path;
      return false;
    }
  const std::string text = Encode_Cooling_Text(circuits);
  const bool ok = Seek(f.Stream, 0) && std::fwrite(text.data(), 1, text.size(), f.Stream) == text.size() &&
                  std::fflush(f.Stream) == 0;
  if (!ok) message = Write_Failed_Message + f.Path;
  return ok;
}

bool Read_Cooling_Data(Result_Family& family, int variant, Table<Circuit_History>& circuits,
                       bool& cooling_data_ok, std::string& message) {
  cooling_data_ok = false;
  if (!Valid_Variant(family, variant)) return false;
  ResultFile& f = family.Files[static_cast<std::size_t>(variant)][Slot_COO];
  const std::string name = f.Path;
  auto fail = [&] {
    circuits.clear();
    message = Cooling_Corrupted(name);
    return false;
  };
  if (f.Stream == nullptr) return fail();
  const std::int64_t size = File_Size(f.Stream);
  if (size < 0 || !Seek(f.Stream, 0)) return fail();
  std::string text(static_cast<std::size_t>(size), '\0');
  if (!text.empty() && std::fread(text.data(), 1, text.size(), f.Stream) != text.size()) return fail();
  std::string detail;
  if (!Parse_Cooling_Text(text, family.Layout.Circuit_Stations, circuits, detail)) return fail();
  cooling_data_ok = true;
  return true;
}

}  // namespace pvx
