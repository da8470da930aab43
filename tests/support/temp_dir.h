// A fresh folder per test, removed at the end.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>

namespace pvx::test {

class Temp_Dir {
 public:
  Temp_Dir() {
    std::random_device rd;
    path_ =
        std::filesystem::temp_directory_path() / ("pvx-test-" + std::to_string(rd()) + std::to_string(rd()));
    std::filesystem::create_directories(path_);
  }
  ~Temp_Dir() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
  }
  Temp_Dir(const Temp_Dir&) = delete;
  Temp_Dir& operator=(const Temp_Dir&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::string file(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

inline std::string Read_Text(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

inline void Write_Text(const std::string& path, const std::string& text) {
  std::ofstream out(path, std::ios::binary);
  out << text;
}

inline std::string Source_Path(const std::string& relative) {
  return std::string(PVX_SOURCE_DIR) + "/" + relative;
}

}  // namespace pvx::test
