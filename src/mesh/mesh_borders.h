// Mesh borders and mesh interfaces follow the cuts: an entry whose line a cut crosses with new
// nodes is replaced by a chain of entries, from its first end through the new nodes in order to its
// second end, all with the data of the entry.
#pragma once

#include <string>
#include <vector>

#include "app/project.h"

namespace pvx {

// For one table: per entry that takes nodes, the entry number and the nodes it takes, in order
// from its first end.
struct Chain_Plan {
  struct Entry {
    int entry = 0;
    std::vector<int> nodes;
  };
  std::vector<Entry> entries;
  int appended = 0;  // entries the plan adds to the table
};

// The nodes first_new .. last node of the mesh that lie on each entry's line strictly between its
// ends (within Ring_Closure_Tolerance across the line), sorted by distance from the first end;
// ties keep node order. An entry of zero length takes none.
Chain_Plan Plan_Border_Chains(const Project& p, const Table<Border>& entries, int first_new);
Chain_Plan Plan_Interface_Chains(const Project& p, const Table<Interface>& entries, int first_new);
// Carries a plan out: entry k ends at its first node and copies of it run on through the others.
void Apply_Border_Chains(Table<Border>& entries, const Chain_Plan& plan);
void Apply_Interface_Chains(Table<Interface>& entries, const Chain_Plan& plan);

// Plan and apply in one: fail with nothing changed when the table would pass its limit (32767
// mesh borders, 1001 mesh interfaces).
bool Split_Borders(Project& p, int first_new, std::string& message);
bool Split_Interfaces(Project& p, int first_new, std::string& message);

inline constexpr const char* Too_Many_Borders_Message =
    "The mesh cannot hold more than 32767 border sides; the operation is not carried out.";
inline constexpr const char* Too_Many_Interfaces_Message =
    "The mesh cannot hold more than 1001 interface sides; the operation is not carried out.";

}  // namespace pvx
