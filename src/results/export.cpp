#include "results/export.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <tuple>

#include "results/binary.h"

namespace pvx {

namespace {

constexpr std::uint8_t Vtk_Quad = 9;

// Shortest text that reads back to the same value.
template <class T>
void Append_Number(std::string& out, T v) {
  char buffer[32];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, v);
  out.append(buffer, result.ptr);
}

std::string Escaped(const std::string& text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

Export_Array Scalar(std::string name, std::size_t count) {
  Export_Array a;
  a.Columns = {name};
  a.Name = std::move(name);
  a.Values.resize(count);
  return a;
}

// A quantity kept at the four points of an element.
struct Point_Quantity {
  int slot;
  int variable;
  const char* name;
  const char* unit;
};

constexpr Point_Quantity Point_Quantities[] = {
    {Slot_REC, 2, "Maturity", "hours"},         {Slot_RED, 3, "C-Maturity", "oChours"},
    {Slot_REP, 40, "Degree of hydration", "-"}, {Slot_REE, 5, "Moisture content", "kg/m3"},
    {Slot_REF, 9, "Tensile strength", "MPa"},   {Slot_REH, 10, "Compressive strength", "MPa"},
    {Slot_REL, 22, "Crack opening", "mm"},
};

// Mean, minimum and maximum of column 1 of every element of buffer A.
void Add_Point_Statistics(const Plot_Buffers& b, std::size_t elements, const Point_Quantity& q,
                          std::vector<Export_Array>& out) {
  const std::string unit = std::string(" [") + q.unit + "]";
  Export_Array mean = Scalar(std::string(q.name) + " mean" + unit, elements);
  Export_Array low = Scalar(std::string(q.name) + " min" + unit, elements);
  Export_Array high = Scalar(std::string(q.name) + " max" + unit, elements);
  for (std::size_t e = 0; e < elements; ++e) {
    const auto& rows = b.Element_A[static_cast<int>(e) + 1];
    double sum = 0;
    float lo = rows[1][1], hi = rows[1][1];
    for (int p = 1; p <= 4; ++p) {
      const float v = rows[p][1];
      sum += v;
      lo = std::min(lo, v);
      hi = std::max(hi, v);
    }
    mean.Values[e] = static_cast<float>(sum / 4);
    low.Values[e] = lo;
    high.Values[e] = hi;
  }
  out.push_back(std::move(mean));
  out.push_back(std::move(low));
  out.push_back(std::move(high));
}

bool Mesh_Fits(const Export_Mesh& mesh, const Result_Layout& layout, std::string& message) {
  const auto nodes = static_cast<std::int64_t>(mesh.X.size());
  if (mesh.Y.size() != mesh.X.size() || nodes != layout.Nodes ||
      static_cast<std::int64_t>(mesh.Cells.size()) != layout.Elements) {
    message = "The mesh has " + std::to_string(nodes) + " nodes and " + std::to_string(mesh.Cells.size()) +
              " elements; the results hold " + std::to_string(layout.Nodes) + " nodes and " +
              std::to_string(layout.Elements) + " elements";
    return false;
  }
  for (std::size_t e = 0; e < mesh.Cells.size(); ++e)
    for (std::int64_t n : mesh.Cells[e])
      if (n < 0 || n >= nodes) {
        message = "Element " + std::to_string(e + 1) + " has a corner that is not a mesh node";
        return false;
      }
  return true;
}

// The arrays of a grid in the order they are written, with what each holds.
struct Block {
  enum Kind { F32, F64_Points, I64_Connectivity, I64_Offsets, U8_Types } kind;
  const Export_Array* array = nullptr;  // F32
  std::uint64_t bytes = 0;
};

void Append_Block_Bytes(std::string& out, const Block& b, const Export_Mesh& mesh) {
  unsigned char word[8];
  binary::Put_Unsigned(word, b.bytes);
  out.append(reinterpret_cast<const char*>(word), 8);
  const std::size_t start = out.size();
  out.resize(start + b.bytes);
  auto* at = reinterpret_cast<unsigned char*>(out.data() + start);
  switch (b.kind) {
    case Block::F32:
      for (float v : b.array->Values) {
        binary::Put_F32(at, v);
        at += 4;
      }
      break;
    case Block::F64_Points:
      for (std::size_t n = 0; n < mesh.X.size(); ++n) {
        binary::Put_F64(at, mesh.X[n]);
        binary::Put_F64(at + 8, mesh.Y[n]);
        binary::Put_F64(at + 16, 0.0);
        at += 24;
      }
      break;
    case Block::I64_Connectivity:
      for (const auto& cell : mesh.Cells)
        for (std::int64_t n : cell) {
          binary::Put_Unsigned(at, static_cast<std::uint64_t>(n));
          at += 8;
        }
      break;
    case Block::I64_Offsets:
      for (std::size_t e = 1; e <= mesh.Cells.size(); ++e) {
        binary::Put_Unsigned(at, static_cast<std::uint64_t>(4 * e));
        at += 8;
      }
      break;
    case Block::U8_Types:
      std::fill(at, at + b.bytes, Vtk_Quad);
      break;
  }
}

void Append_Block_Text(std::string& out, const Block& b, const Export_Mesh& mesh) {
  switch (b.kind) {
    case Block::F32: {
      const std::size_t k = static_cast<std::size_t>(b.array->Components);
      for (std::size_t i = 0; i < b.array->Values.size(); ++i) {
        Append_Number(out, b.array->Values[i]);
        out += (i + 1) % k == 0 ? '\n' : ' ';
      }
      break;
    }
    case Block::F64_Points:
      for (std::size_t n = 0; n < mesh.X.size(); ++n) {
        Append_Number(out, mesh.X[n]);
        out += ' ';
        Append_Number(out, mesh.Y[n]);
        out += " 0\n";
      }
      break;
    case Block::I64_Connectivity:
      for (const auto& cell : mesh.Cells) {
        for (int c = 0; c < 4; ++c) {
          Append_Number(out, cell[static_cast<std::size_t>(c)]);
          out += c < 3 ? ' ' : '\n';
        }
      }
      break;
    case Block::I64_Offsets:
      for (std::size_t e = 1; e <= mesh.Cells.size(); ++e) {
        Append_Number(out, 4 * e);
        out += '\n';
      }
      break;
    case Block::U8_Types:
      for (std::size_t e = 0; e < mesh.Cells.size(); ++e)
        out += "9\n";
      break;
  }
}

const char* Type_Of(Block::Kind kind) {
  switch (kind) {
    case Block::F32:
      return "Float32";
    case Block::F64_Points:
      return "Float64";
    case Block::I64_Connectivity:
    case Block::I64_Offsets:
      return "Int64";
    case Block::U8_Types:
      return "UInt8";
  }
  return "";
}

bool Write_File(const std::string& path, const std::string& text, std::string& message) {
  std::FILE* f = std::fopen(path.c_str(), "wb");
  bool ok = f != nullptr && (text.empty() || std::fwrite(text.data(), 1, text.size(), f) == text.size());
  if (f != nullptr && std::fclose(f) != 0) ok = false;
  if (!ok) message = Write_Failed_Message + path;
  return ok;
}

bool Make_Folder(const std::string& folder, std::string& message) {
  std::error_code ec;
  std::filesystem::create_directories(folder, ec);
  if (ec || !std::filesystem::is_directory(folder, ec)) {
    message = "The folder " + folder + " cannot be made";
    return false;
  }
  return true;
}

std::string Numbered(const std::string& name, int stored, int count) {
  std::string digits = std::to_string(stored);
  const std::size_t width = std::max<std::size_t>(4, std::to_string(count).size());
  if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
  return name + "_" + digits;
}

void Append_Columns(std::string& out, const std::vector<Export_Array>& arrays) {
  for (const Export_Array& a : arrays)
    for (const std::string& c : a.Columns)
      if (!c.empty()) out += "," + c;
}

void Append_Cells(std::string& out, const std::vector<Export_Array>& arrays, std::size_t tuple) {
  for (const Export_Array& a : arrays) {
    const std::size_t k = static_cast<std::size_t>(a.Components);
    for (std::size_t c = 0; c < k && c < a.Columns.size(); ++c) {
      if (a.Columns[c].empty()) continue;
      out += ',';
      Append_Number(out, a.Values[tuple * k + c]);
    }
  }
}

// The first columns of a row of step `step`: time and stored step, then the number.
void Append_Row_Start(std::string& out, const Export_Step& step, std::size_t number) {
  Append_Number(out, step.Time);
  out += ',';
  Append_Number(out, step.Stored);
  out += ',';
  Append_Number(out, number);
}

}  // namespace

Export_Mesh Export_Mesh_Of(const Project& p) {
  Export_Mesh mesh;
  mesh.X.reserve(static_cast<std::size_t>(p.Mesh_Node.count()));
  mesh.Y.reserve(static_cast<std::size_t>(p.Mesh_Node.count()));
  for (const Mesh_Node& n : p.Mesh_Node) {
    mesh.X.push_back(n.X);
    mesh.Y.push_back(n.Y);
  }
  for (const Mesh_Element& e : p.Mesh_Element)
    mesh.Cells.push_back({e.Corner[1] - 1, e.Corner[2] - 1, e.Corner[3] - 1, e.Corner[4] - 1});
  return mesh;
}

bool Read_Export_Step(Result_Family& family, int variant, const Run_Index& index, int stored,
                      Plot_Buffers& buffers, Export_Step& step, std::string& message) {
  const Result_Layout& layout = family.Layout;
  const auto nodes = static_cast<std::size_t>(layout.Nodes);
  const auto elements = static_cast<std::size_t>(layout.Elements);
  auto read = [&](int slot, int variable) {
    return Read_Result_Variable(family, variant, slot, stored, variable, false, buffers, message);
  };
  if (stored < 1 || stored > Storage_Count(index)) {
    const bool known = variant >= 1 && variant <= Number_Of_Runs(family);
    message = Results_Corrupted(known ? family.Files[static_cast<std::size_t>(variant)][Slot_RES].Path : "");
    return false;
  }
  step = Export_Step{};
  step.Stored = stored;
  step.Time = index.Storage_Time[stored];

  for (const auto& [slot, variable, name] :
       {std::tuple{Slot_REA, 1, "Temperature [oC]"}, std::tuple{Slot_REB, 4, "Moisture potential [-]"}}) {
    if (!read(slot, variable)) return false;
    Export_Array a = Scalar(name, nodes);
    for (std::size_t n = 0; n < nodes; ++n)
      a.Values[n] = buffers.Node[static_cast<int>(n) + 1];
    step.Point_Data.push_back(std::move(a));
  }
  if (layout.Mechanical) {
    if (!read(Slot_REI, 11)) return false;
    Export_Array u;
    u.Name = "Displacement [mm]";
    u.Components = 3;
    u.Columns = {"Ux [mm]", "Uy [mm]", ""};
    u.Values.resize(3 * nodes);
    Export_Array total = Scalar("Total displacement [mm]", nodes);
    for (std::size_t n = 0; n < nodes; ++n) {
      const float ux = buffers.Node[static_cast<int>(2 * n) + 1],
                  uy = buffers.Node[static_cast<int>(2 * n) + 2];
      u.Values[3 * n] = ux;
      u.Values[3 * n + 1] = uy;
      total.Values[n] = static_cast<float>(std::hypot(double{ux}, double{uy}));
    }
    step.Point_Data.push_back(std::move(u));
    step.Point_Data.push_back(std::move(total));
  }

  for (const Point_Quantity& q : Point_Quantities) {
    if (!Slot_Exists(layout, q.slot)) continue;
    if (!read(q.slot, q.variable)) return false;
    Add_Point_Statistics(buffers, elements, q, step.Cell_Data);
  }
  if (layout.Mechanical) {
    if (!read(Slot_REJ, 16)) return false;
    const char* names[4] = {"Stress Sxx [MPa]", "Stress Syy [MPa]", "Stress Sxy [MPa]", "Stress Szz [MPa]"};
    for (int c = 1; c <= 4; ++c) {
      Export_Array a = Scalar(names[c - 1], elements);
      for (std::size_t e = 0; e < elements; ++e) {
        const auto& corners = buffers.Element_A[static_cast<int>(e) + 1];
        double sum = 0;
        for (int p = 1; p <= 4; ++p)
          sum += corners[p][c];
        a.Values[e] = static_cast<float>(sum / 4);
      }
      step.Cell_Data.push_back(std::move(a));
    }
  }
  return true;
}

std::string Vtu_Document(const Export_Mesh& mesh, const Export_Step& step, Vtk_Encoding encoding) {
  const std::uint64_t points = mesh.X.size(), cells = mesh.Cells.size();
  std::vector<Block> blocks;
  for (const Export_Array& a : step.Point_Data)
    blocks.push_back({Block::F32, &a, 4 * a.Values.size()});
  for (const Export_Array& a : step.Cell_Data)
    blocks.push_back({Block::F32, &a, 4 * a.Values.size()});
  blocks.push_back({Block::F64_Points, nullptr, 24 * points});
  blocks.push_back({Block::I64_Connectivity, nullptr, 32 * cells});
  blocks.push_back({Block::I64_Offsets, nullptr, 8 * cells});
  blocks.push_back({Block::U8_Types, nullptr, cells});
  const bool binary = encoding == Vtk_Encoding::Binary;

  std::string out;
  std::size_t body = 0;
  for (const Block& b : blocks)
    body += 8 + b.bytes;
  out.reserve(4096 + (binary ? body : 3 * body));
  std::uint64_t offset = 0;
  std::size_t next = 0;
  // The element of block `next`: in binary form an empty element pointing into the appended data,
  // in ASCII form the values themselves.
  auto data_array = [&](const std::string& attributes) {
    const Block& b = blocks[next++];
    out += "        <DataArray type=\"";
    out += Type_Of(b.kind);
    out += "\" " + attributes;
    if (binary) {
      out += " format=\"appended\" offset=\"";
      Append_Number(out, offset);
      out += "\"/>\n";
      offset += 8 + b.bytes;
    } else {
      out += " format=\"ascii\">\n";
      Append_Block_Text(out, b, mesh);
      out += "        </DataArray>\n";
    }
  };
  auto field_arrays = [&](const std::vector<Export_Array>& arrays) {
    for (const Export_Array& a : arrays) {
      std::string attributes = "Name=\"" + Escaped(a.Name) + "\"";
      if (a.Components != 1) attributes += " NumberOfComponents=\"" + std::to_string(a.Components) + "\"";
      data_array(attributes);
    }
  };
  auto active = [](const std::vector<Export_Array>& arrays) {
    std::string attributes;
    const auto scalar =
        std::find_if(arrays.begin(), arrays.end(), [](const auto& a) { return a.Components == 1; });
    const auto vector =
        std::find_if(arrays.begin(), arrays.end(), [](const auto& a) { return a.Components == 3; });
    if (scalar != arrays.end()) attributes += " Scalars=\"" + Escaped(scalar->Name) + "\"";
    if (vector != arrays.end()) attributes += " Vectors=\"" + Escaped(vector->Name) + "\"";
    return attributes;
  };

  out += "<?xml version=\"1.0\"?>\n";
  out +=
      "<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\" "
      "header_type=\"UInt64\">\n";
  out += "  <UnstructuredGrid>\n";
  out += "    <FieldData>\n";
  out += "      <DataArray type=\"Float64\" Name=\"TimeValue\" NumberOfTuples=\"1\" format=\"ascii\">";
  Append_Number(out, step.Time);
  out += "</DataArray>\n";
  out += "    </FieldData>\n";
  out += "    <Piece NumberOfPoints=\"" + std::to_string(points) + "\" NumberOfCells=\"" +
         std::to_string(cells) + "\">\n";
  out += "      <PointData" + active(step.Point_Data) + ">\n";
  field_arrays(step.Point_Data);
  out += "      </PointData>\n";
  out += "      <CellData" + active(step.Cell_Data) + ">\n";
  field_arrays(step.Cell_Data);
  out += "      </CellData>\n";
  out += "      <Points>\n";
  data_array("Name=\"Points\" NumberOfComponents=\"3\"");
  out += "      </Points>\n";
  out += "      <Cells>\n";
  data_array("Name=\"connectivity\"");
  data_array("Name=\"offsets\"");
  data_array("Name=\"types\"");
  out += "      </Cells>\n";
  out += "    </Piece>\n";
  out += "  </UnstructuredGrid>\n";
  if (binary) {
    out += "  <AppendedData encoding=\"raw\">\n   _";
    for (const Block& b : blocks)
      Append_Block_Bytes(out, b, mesh);
    out += "\n  </AppendedData>\n";
  }
  out += "</VTKFile>\n";
  return out;
}

std::string Pvd_Document(const std::vector<Pvd_Entry>& entries) {
  std::string out = "<?xml version=\"1.0\"?>\n";
  out += "<VTKFile type=\"Collection\" version=\"1.0\" byte_order=\"LittleEndian\" header_type=\"UInt64\">\n";
  out += "  <Collection>\n";
  for (const Pvd_Entry& e : entries) {
    out += "    <DataSet timestep=\"";
    Append_Number(out, e.Time);
    out += "\" group=\"\" part=\"0\" file=\"" + Escaped(e.File) + "\"/>\n";
  }
  out += "  </Collection>\n";
  out += "</VTKFile>\n";
  return out;
}

std::string Csv_Node_Header(const Export_Step& step) {
  std::string out = "time [hours],stored,node,x [mm],y [mm]";
  Append_Columns(out, step.Point_Data);
  return out + "\n";
}

std::string Csv_Element_Header(const Export_Step& step) {
  std::string out = "time [hours],stored,element,x [mm],y [mm]";
  Append_Columns(out, step.Cell_Data);
  return out + "\n";
}

std::string Csv_Node_Rows(const Export_Mesh& mesh, const Export_Step& step) {
  std::string out;
  for (std::size_t n = 0; n < mesh.X.size(); ++n) {
    Append_Row_Start(out, step, n + 1);
    out += ',';
    Append_Number(out, mesh.X[n]);
    out += ',';
    Append_Number(out, mesh.Y[n]);
    Append_Cells(out, step.Point_Data, n);
    out += '\n';
  }
  return out;
}

std::string Csv_Element_Rows(const Export_Mesh& mesh, const Export_Step& step) {
  std::string out;
  for (std::size_t e = 0; e < mesh.Cells.size(); ++e) {
    double x = 0, y = 0;
    for (std::int64_t n : mesh.Cells[e]) {
      x += mesh.X[static_cast<std::size_t>(n)];
      y += mesh.Y[static_cast<std::size_t>(n)];
    }
    Append_Row_Start(out, step, e + 1);
    out += ',';
    Append_Number(out, x / 4);
    out += ',';
    Append_Number(out, y / 4);
    Append_Cells(out, step.Cell_Data, e);
    out += '\n';
  }
  return out;
}

bool Export_Run(Result_Family& family, int variant, const Run_Index& index, const Export_Mesh& mesh,
                const std::string& name, const Export_Target& target, std::vector<std::string>& written,
                std::string& message) {
  namespace fs = std::filesystem;
  if (!Mesh_Fits(mesh, family.Layout, message)) return false;
  const bool vtk = !target.Vtk_Folder.empty(), csv = !target.Csv_Folder.empty();
  const fs::path vtk_folder(target.Vtk_Folder), csv_folder(target.Csv_Folder);
  if (vtk && !Make_Folder((vtk_folder / name).string(), message)) return false;
  if (csv && !Make_Folder(target.Csv_Folder, message)) return false;

  const std::string nodes_path = (csv_folder / (name + "_nodes.csv")).string();
  const std::string elements_path = (csv_folder / (name + "_elements.csv")).string();
  std::FILE* tables[2] = {nullptr, nullptr};
  auto close_tables = [&] {
    bool ok = true;
    for (std::FILE*& f : tables)
      if (f != nullptr) {
        ok = std::fclose(f) == 0 && ok;
        f = nullptr;
      }
    return ok;
  };
  if (csv) {
    tables[0] = std::fopen(nodes_path.c_str(), "wb");
    tables[1] = std::fopen(elements_path.c_str(), "wb");
    if (tables[0] == nullptr || tables[1] == nullptr) {
      message = Write_Failed_Message + (tables[0] == nullptr ? nodes_path : elements_path);
      close_tables();
      return false;
    }
  }
  auto append = [&](int table, const std::string& text) {
    if (std::fwrite(text.data(), 1, text.size(), tables[table]) == text.size()) return true;
    message = Write_Failed_Message + (table == 0 ? nodes_path : elements_path);
    return false;
  };

  Plot_Buffers buffers;
  Dimension_Plot_Buffers(family.Layout, buffers);
  const int count = Storage_Count(index);
  std::vector<Pvd_Entry> entries;
  Export_Step step;
  for (int k = 1; k <= count; ++k) {
    if (!Read_Export_Step(family, variant, index, k, buffers, step, message)) {
      close_tables();
      return false;
    }
    if (vtk) {
      const std::string file = name + "/" + Numbered(name, k, count) + ".vtu";
      if (!Write_File((vtk_folder / file).string(), Vtu_Document(mesh, step, target.Encoding), message)) {
        close_tables();
        return false;
      }
      entries.push_back({step.Time, file});
    }
    if (csv) {
      const bool ok = (k > 1 || (append(0, Csv_Node_Header(step)) && append(1, Csv_Element_Header(step)))) &&
                      append(0, Csv_Node_Rows(mesh, step)) && append(1, Csv_Element_Rows(mesh, step));
      if (!ok) {
        close_tables();
        return false;
      }
    }
  }
  if (!close_tables()) {
    message = Write_Failed_Message + nodes_path;
    return false;
  }
  if (vtk) {
    const std::string pvd = (vtk_folder / (name + ".pvd")).string();
    if (!Write_File(pvd, Pvd_Document(entries), message)) return false;
    written.push_back(pvd);
  }
  if (csv) {
    written.push_back(nodes_path);
    written.push_back(elements_path);
  }
  return true;
}

}  // namespace pvx
