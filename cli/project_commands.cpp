#include "commands.h"

namespace pvx::cli {

void Add_Project_Commands(CLI::App& app, int& status) {
  (void)app;
  (void)status;
}

}  // namespace pvx::cli
