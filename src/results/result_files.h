// The result family of an analysis: the `.RES` index and its siblings, one binary file per
// quantity, each a flat sequence of fixed-length records of 4-byte little-endian singles, one
// record per stored step. Record k of a file starts at byte (k - 1) x 4 x RecordLength.
//
// The family stays open from Open_Result_Files to Close_Result_Files. The writer keeps the index
// readable at every moment: it is written empty when the family opens, and again after every
// storage, so that a run that stops, fails or is killed leaves an index that counts exactly the
// storages whose records are complete in every sibling. The viewers never hold a whole run: they
// seek one record of one file into a plot buffer.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "app/project.h"
#include "results/cooling_data.h"
#include "results/result_variables.h"
#include "results/run_index.h"
#include "results/storage.h"

namespace pvx {

// The program's messages about the family.
inline constexpr const char* Output_Name_Missing = "A path and a filename must be given for your output !";
inline constexpr const char* Open_Failed_Message = "Error occured during opening of result files !";
inline constexpr const char* Close_Failed_Message = "Error occured by closing output files";
inline constexpr const char* Write_Failed_Message = "Error occured writing file  ";
// "Results (" + path + ") not available"
std::string Results_Not_Available(const std::string& path);
// "Results (" + path + ") not available or corrupted! The program returns to the design mode."
std::string Results_Corrupted(const std::string& path);

// The sizes of the records, from the mesh of the analysis.
struct Result_Layout {
  std::int64_t Nodes = 0;          // N, mesh nodes
  std::int64_t Elements = 0;       // E
  std::int64_t Doubled_Nodes = 0;  // Nx, the nodes that the interfaces add
  std::int64_t Reactions = 0;      // R, reaction entries
  std::int64_t Interfaces = 0;     // I, interface elements
  std::int64_t Bars = 0;           // B, bar elements
  bool Mechanical = false;
  Table<int> Circuit_Stations;  // per cooling circuit, its number of pipe sections + 2
  bool operator==(const Result_Layout&) const = default;
};

// The layout of a project's mesh: one reaction entry per mesh support.
Result_Layout Result_Layout_Of(const Project& p, bool mechanical);

// Number of values in one record of a slot; 0 for the index and the cooling file.
std::int64_t Record_Length(const Result_Layout& layout, int slot);
// Whether the slot's file belongs to a family of this layout.
bool Slot_Exists(const Result_Layout& layout, int slot);

// The name of a sibling: the `.RES` name with its last character replaced by the slot's letter, or
// its last three by "COO" for the cooling file.
std::string Sibling_Name(const std::string& res_name, int slot);

// One entry of the file table.
struct ResultFile {
  std::int32_t RecordsWritten = 0;  // records written so far in this run (read: records there are)
  std::int32_t RecordLength = 0;    // values in one record
  std::int16_t Unit = 0;            // the file's handle number, fixed when the names are set
  std::string Path;
  std::FILE* Stream = nullptr;  // open between Open_Result_Files and Close_Result_Files
};

// The file table of all runs, indexed by run (1 .. Number_Of_Runs) and slot (1..16; 0 unused).
// It owns the open files: they close at the latest when the family goes.
struct Result_Family {
  Result_Layout Layout;
  std::vector<std::array<ResultFile, Result_Slot_Count + 1>> Files;  // run 0 unused
  int Mode = 0;                                                      // 1 writing, 2 reading

  Result_Family() = default;
  Result_Family(const Result_Family&) = delete;
  Result_Family& operator=(const Result_Family&) = delete;
  Result_Family(Result_Family&& other) noexcept;
  Result_Family& operator=(Result_Family&& other) noexcept;
  ~Result_Family();
};
inline int Number_Of_Runs(const Result_Family& family) {
  return family.Files.empty() ? 0 : static_cast<int>(family.Files.size()) - 1;
}

// From the result names of the runs (entries 0..runs as Set_Result_Names makes them; entry 0 is
// not used) to the file table: paths of all slots of all runs, relative names taken in the work
// directory, and the handle numbers from 11 up over slots 1..16 of run 1, then run 2, ... Any open
// file is closed first. An empty name is refused with Output_Name_Missing.
bool Set_Output_Names(Result_Family& family, const std::vector<std::string>& result_names,
                      const std::string& work_directory, std::string& message);

// Layout and names for a project: its mesh, Result_Names (or Result_File_Name when the names are
// not made yet).
bool Prepare_Result_Family(Result_Family& family, const Project& p, bool mechanical,
                           const std::string& work_directory, std::string& message);

// Opens the files of one run. Mode 1 starts a new analysis: every file of the layout is opened for
// writing (created when missing, an older file overwritten from its start) and the index is set
// to an empty one. Mode 2 opens for reading: every file of the layout must be there; the cooling
// file is opened when the layout has circuits and the project version is above 104, and may be
// missing. On failure all files of the run are closed and `message` is Open_Failed_Message.
bool Open_Result_Files(Result_Family& family, int variant, int mode, int project_version,
                       std::string& message);

// Closes the files of one run; a failure gives Close_Failed_Message.
bool Close_Result_Files(Result_Family& family, int variant, std::string& message);

// Appends one record to every binary sibling of the layout and flushes them. A field whose length
// does not match its record is refused before anything is written.
bool Write_Result_Storage(Result_Family& family, int variant, const Field_Values& fields,
                          std::string& message);

// Writes the index of a run at the start of the `.RES` file. The storage count written is that of
// `index`, capped at the records complete in every sibling.
bool Write_Run_Index(Result_Family& family, int variant, const Run_Index& index, std::string& message);

// One storage as the analysis makes it: Write_Result_Storage, then the storage's time is added to
// `index`, then Write_Run_Index, so that the index on disk always counts this storage.
bool Record_Storage(Result_Family& family, int variant, const Field_Values& fields, double time,
                    Run_Index& index, std::string& message);

// Opens every run of the family for reading. On failure the message is Results_Not_Available with
// the `.RES` path of the run that failed.
bool Open_All_Result_Sets(Result_Family& family, int project_version, std::string& message);

// Reads the index of an open run, converts the extreme table to imperial display when asked, and
// checks that every sibling holds Storage_Count records (it may hold more: a former, longer run's
// tail). A damaged or short index, no storage, or a short sibling gives Results_Corrupted.
bool Read_Run_Index(Result_Family& family, int variant, int project_version, bool to_imperial,
                    Run_Index& index, std::string& message);

// Reads an index file on its own, as Read_Run_Index does without the siblings.
bool Read_Run_Index_File(const std::string& path, int project_version, bool to_imperial, Run_Index& index,
                         std::string& message);

// Values of one interface element and one bar element, as the viewers draw them.
struct Interface_Result {
  float Normal[2] = {0, 0};  // at the first and second integration point
  float Shear[2] = {0, 0};
};
struct Bar_Result {
  float Normal = 0;
  float Shear[2] = {0, 0};  // at the first and second station
  float Slip[2] = {0, 0};
};

// The plot buffers: one record of one file at a time.
struct Plot_Buffers {
  Table<float> Node;  // 2(N + Nx) values, or R when that is more
  // Per element, rows 1..4 (the points or corners) of columns 1..4 (the values).
  Table<Array1<Array1<float, 4>, 4>> Element_A, Element_B;
  Table<Interface_Result> Interface;
  Table<Bar_Result> Bar;
  double CurrentMin = 0, CurrentMax = 0;  // extremes of the record last read
};
void Dimension_Plot_Buffers(const Result_Layout& layout, Plot_Buffers& buffers);

// Reads record `stored_index` of `slot` into the plot buffers, converted to imperial display when
// asked, and leaves its extremes for the viewer variable `variable` in CurrentMin and CurrentMax.
// In a mechanical family the tensile strength of the same storage then goes to Element_B, column 1.
// A slot the family lacks, a stored index outside the storages, or a short file gives
// Results_Corrupted.
bool Read_Result_Variable(Result_Family& family, int variant, int slot, int stored_index, int variable,
                          bool to_imperial, Plot_Buffers& buffers, std::string& message);

// The cooling history of a run, written as text into the open `.COO` file of the run (mode 1).
bool Write_Cooling_Data(Result_Family& family, int variant, const Table<Circuit_History>& circuits,
                        std::string& message);
// Reads it back (mode 2). `cooling_data_ok` is cleared at the start and set only when every
// circuit has been read; otherwise `message` is Cooling_Corrupted(name).
bool Read_Cooling_Data(Result_Family& family, int variant, Table<Circuit_History>& circuits,
                       bool& cooling_data_ok, std::string& message);

}  // namespace pvx
