#include "app/recent_files.h"

#include <algorithm>
#include <cctype>

namespace pvx {

namespace {

std::string Trim(const std::string& text) {
  auto blank = [](unsigned char c) { return std::isspace(c) != 0; };
  auto first = std::find_if_not(text.begin(), text.end(), blank);
  auto last = std::find_if_not(text.rbegin(), text.rend(), blank).base();
  return first < last ? std::string(first, last) : std::string();
}

}  // namespace

std::string Recent_Key(int position) {
  return Recent_Key_Prefix + std::to_string(position);
}

std::string Recent_Compare_Form(const std::string& name) {
  std::string s = Trim(name);
  std::transform(s.begin(), s.end(), s.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return s;
}

std::vector<std::string> Read_Recent_Files(Settings_Store& store) {
  std::vector<std::string> list;
  for (int position = 1; position <= Recent_List_Length; ++position) {
    std::string name =
        Trim(store.Get_Setting(Settings_Application, Recent_Section, Recent_Key(position), ""));
    if (!name.empty()) list.push_back(std::move(name));
  }
  return list;
}

void Add_Recent_File(Settings_Store& store, const std::string& name) {
  std::string entry = Trim(name);
  if (entry.empty()) return;
  std::vector<std::string> list{entry};
  for (std::string& old : Read_Recent_Files(store)) {
    const std::string old_key = Recent_Compare_Form(old);
    const bool listed = std::any_of(list.begin(), list.end(), [&](const std::string& kept) {
      return Recent_Compare_Form(kept) == old_key;
    });
    if (!listed && static_cast<int>(list.size()) < Recent_List_Length) list.push_back(std::move(old));
  }
  for (int position = 1; position <= Recent_List_Length; ++position) {
    const std::size_t i = static_cast<std::size_t>(position - 1);
    store.Save_Setting(Settings_Application, Recent_Section, Recent_Key(position),
                       i < list.size() ? list[i] : std::string());
  }
}

}  // namespace pvx
