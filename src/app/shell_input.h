// What the shell hands to and takes from the platform in the platform's own forms: the filter text
// of the file choosers ("description|pattern|description|pattern|") split into its entries, and the
// project named on the command line, which the start-up reads in quotes.
#pragma once

#include <string>
#include <vector>

namespace pvx {

struct File_Filter_Entry {
  std::string Description;  // as the chooser lists it ("Projekten(*.PVX)")
  std::string Patterns;     // one or more patterns separated by ";" ("*.PVX")
  bool operator==(const File_Filter_Entry&) const = default;
};

// The entries of a filter text in their order. A trailing "|" ends the text; a description
// without its pattern is dropped, and a blank pattern means every file ("*").
std::vector<File_Filter_Entry> Split_File_Filter(const std::string& filter);

// The extension a save chooser adds to a name typed without one: that of the first entry whose
// pattern names a single extension ("*.PVX" gives "PVX"); empty when no entry does.
std::string Default_Suffix(const std::string& filter);

// The command line as the start-up reads it: a path in quotes. A path given without quotes
// (as a shell passes argv[1]) is put in quotes; one already in quotes is kept; blank gives "".
std::string Quoted_Command_Line(const std::string& argument);

}  // namespace pvx
