// The commands of pvx. Each adds itself to the command line parser and runs through the core.
#pragma once

#include <CLI/CLI.hpp>

namespace pvx::cli {

// Exit status of every command: 0 success, 1 the program's message (bad input, failed run).
inline constexpr int Exit_Ok = 0;
inline constexpr int Exit_Failure = 1;
inline constexpr int Exit_Stopped = 2;  // pvx run: stopped by the user, files closed

// Each command sets `status` when it runs.
void Add_Project_Commands(CLI::App& app, int& status);   // check, convert
void Add_Material_Commands(CLI::App& app, int& status);  // materials
void Add_Mesh_Commands(CLI::App& app, int& status);      // mesh
void Add_Run_Commands(CLI::App& app, int& status);       // run
void Add_Results_Commands(CLI::App& app, int& status);   // results
void Add_Plot_Commands(CLI::App& app, int& status);      // plot
void Add_Report_Commands(CLI::App& app, int& status);    // report
void Add_Cut_Commands(CLI::App& app, int& status);       // cut, history
void Add_Export_Commands(CLI::App& app, int& status);    // export
void Add_Study_Commands(CLI::App& app, int& status);     // study
void Add_Design_Commands(CLI::App& app, int& status);    // design

}  // namespace pvx::cli
