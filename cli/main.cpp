// pvx: the batch tool. Runs projects headless, checks and converts files, reads results.
#include <CLI/CLI.hpp>

#include "commands.h"

int main(int argc, char** argv) {
  CLI::App app{"pvx: batch tool of KIVA_TRV_PELDANOR_8 (KIVA, TRV and PELDANOR version 8.6.2)"};
  app.require_subcommand(1);
  int status = pvx::cli::Exit_Ok;
  pvx::cli::Add_Project_Commands(app, status);
  pvx::cli::Add_Material_Commands(app, status);
  pvx::cli::Add_Mesh_Commands(app, status);
  pvx::cli::Add_Run_Commands(app, status);
  pvx::cli::Add_Results_Commands(app, status);
  pvx::cli::Add_Plot_Commands(app, status);
  pvx::cli::Add_Report_Commands(app, status);
  pvx::cli::Add_Cut_Commands(app, status);
  pvx::cli::Add_Export_Commands(app, status);
  pvx::cli::Add_Study_Commands(app, status);
  pvx::cli::Add_Design_Commands(app, status);
  CLI11_PARSE(app, argc, argv);
  return status;
}
