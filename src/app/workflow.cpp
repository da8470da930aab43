#include "app/workflow.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>

#include "app/prescribed_data.h"
#include "app/project_file.h"
#include "app/project_load.h"
#include "material/database.h"

namespace pvx {

namespace {

struct Button_Text {
  const char* key;
  const char* tip;
};
constexpr Button_Text Buttons[Toolbar_Button_Count] = {{"Open", "Open project"},
                                                       {"Quit", "Quit"},
                                                       {"Project_information", "Project description"},
                                                       {"Design_Panel", "Design Panel"},
                                                       {"Mesh", "FE mesh generation"},
                                                       {"Refresh", ""},
                                                       {"Runset", "Set runtime constants"},
                                                       {"Compute", "Compute"},
                                                       {"Results", "Visualize computed distributions"}};

std::string Lower(std::string s) {
  std::transform(s.begin(), s.end(), s.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return s;
}

void Set_Caption(const Project& p, Shell& shell) {
  shell.Caption = Main_Caption(p, shell);
}

bool Save_Command(Project& p, Shell& shell, Shell_Host& host, Settings_Store& store, bool ask_name) {
  if (ask_name || p.Project_File.empty()) {
    std::string path = p.Project_File;
    if (!host.Choose_Save_File(Save_Project_Title, Project_Filter, path) || path.empty()) return false;
    // Relative names of the database and the results now refer to the project's folder.
    shell.Work_Directory = getdir(path);
    host.Change_Directory(shell.Work_Directory);
    p.Project_File = path;
  }
  Save_Report report;
  const bool saved = Save_Project(p, shell.Work_Directory, report);
  for (const std::string& message : report.messages)
    host.Show_Message(message);
  if (!saved) {
    host.Show_Message(report.error);
    return false;
  }
  Add_Recent_File(store, p.Project_File);
  Set_Caption(p, shell);
  return true;
}

void New_Command(Project& p, Shell& shell, Shell_Host& host) {
  if (Node_Count(p) > 0 && host.Ask(All_Data_Deleted_Warning, Question_Buttons::OK_Cancel) == Answer::Cancel)
    return;
  New_Project(p);
  Set_Graphical_Defaults(p);
  Choose_Default_Database(p, shell, host);
  p.Project_Saved = False_Flag;
  p.Current_Node = 0;
  p.Current_Macro = 0;
  p.Current_Border = 0;
  shell.State = Work_State::Design;
  Set_Caption(p, shell);
  host.Redraw_Design();
}

}  // namespace

const char* Button_Key(Toolbar_Button button) {
  return Buttons[static_cast<int>(button)].key;
}

const char* Button_Tool_Tip(Toolbar_Button button) {
  return Buttons[static_cast<int>(button)].tip;
}

bool Find_Button(const std::string& key, Toolbar_Button& button) {
  for (int i = 0; i < Toolbar_Button_Count; ++i)
    if (key == Buttons[i].key) {
      button = static_cast<Toolbar_Button>(i);
      return true;
    }
  return false;
}

Button_Set Buttons_Of(Work_State state) {
  using B = Toolbar_Button;
  Button_Set set{};
  auto show = [&set](B b) { set[static_cast<std::size_t>(b)] = true; };
  show(B::Open);
  show(B::Quit);
  show(B::Project_information);
  show(B::Design_Panel);
  if (state == Work_State::No_Project) return set;
  show(B::Mesh);
  show(B::Refresh);
  show(B::Runset);
  if (state == Work_State::Design) return set;
  show(B::Compute);
  if (state == Work_State::Run_Set) return set;
  show(B::Results);
  return set;
}

std::string Default_Database_Question(const std::string& name) {
  return "Default Database = " + name + ". Is this correct ?";
}

std::string Main_Caption(const Project& p, const Shell& shell) {
  if (p.Material_Database_Path.empty()) return shell.Version_Label + No_Database_Caption;
  return p.Material_Database_Path + " - " + p.Project_File + " - " + shell.Version_Label;
}

void Destroy_Output(Shell& shell, Shell_Host& host, bool& ok) {
  ok = true;
  if (shell.State != Work_State::Computed) return;
  if (host.Ask(Destroy_Output_Question, Question_Buttons::Yes_No) == Answer::Yes) {
    shell.State = Work_State::Run_Set;
  } else {
    ok = false;
  }
}

bool fileexist(const std::string& name) {
  std::error_code ec;
  return !name.empty() && std::filesystem::is_regular_file(name, ec) && !ec;
}

std::string Default_Database_Proposal(const std::string& directory) {
  namespace fs = std::filesystem;
  std::vector<std::string> names;
  std::error_code ec;
  fs::directory_iterator it(directory.empty() ? fs::path(".") : fs::path(directory), ec);
  for (; !ec && it != fs::directory_iterator(); it.increment(ec)) {
    if (!it->is_regular_file(ec)) continue;
    const std::string name = it->path().filename().string();
    const std::string lower = Lower(name);
    if (lower.size() >= 7 && lower.compare(0, 3, "pvx") == 0 &&
        lower.compare(lower.size() - 4, 4, ".txt") == 0)
      names.push_back(name);
  }
  if (names.empty()) return {};
  // The file list sorts as the user reads it, without regard to letter case.
  std::sort(names.begin(), names.end(),
            [](const std::string& a, const std::string& b) { return Lower(a) < Lower(b); });
  return Join_Path(directory, names.back());
}

bool Choose_Default_Database(Project& p, Shell& shell, Shell_Host& host) {
  std::string path = Default_Database_Proposal(shell.Application_Path);
  bool choose =
      path.empty() || host.Ask(Default_Database_Question(path), Question_Buttons::Yes_No) != Answer::Yes;
  if (!choose) {
    shell.Work_Directory = shell.Application_Path;
    host.Change_Directory(shell.Application_Path);
  }
  for (;;) {
    if (choose && !host.Choose_Open_File(Select_Database_Title, Select_Database_Filter, path)) return false;
    Table<Material> materials;
    Table<std::int32_t> colours;
    std::string message;
    if (Read_Material_Database(path, materials, colours, message)) {
      p.Material_Database_Path = path;
      p.Material = std::move(materials);
      p.Material_Color = std::move(colours);
      Set_Caption(p, shell);
      return true;
    }
    host.Show_Message(Default_Database_Failed);
    choose = true;
  }
}

bool Read_Work_Directory(Shell& shell, Shell_Host& host) {
  std::ifstream in(Join_Path(shell.Application_Path, Work_Directory_File), std::ios::binary);
  std::string line;
  if (!in || !std::getline(in, line)) return false;
  if (!line.empty() && line.back() == '\r') line.pop_back();
  // A record written as a quoted text reads the same.
  if (line.size() >= 2 && line.front() == '"' && line.back() == '"') line = line.substr(1, line.size() - 2);
  std::error_code ec;
  if (line.empty() || !std::filesystem::is_directory(line, ec) || ec) return false;
  shell.Work_Directory = line;
  host.Change_Directory(line);
  return true;
}

bool Write_Work_Directory(const Shell& shell) {
  std::ofstream out(Join_Path(shell.Application_Path, Work_Directory_File),
                    std::ios::binary | std::ios::trunc);
  out << shell.Work_Directory << '\n';
  out.close();
  return static_cast<bool>(out);
}

void Close_Work_Directory_Form(const std::string& chosen, Shell& shell, Shell_Host& host) {
  if (!chosen.empty()) {
    shell.Work_Directory = chosen;
    host.Change_Directory(chosen);
  }
  Write_Work_Directory(shell);
}

bool Open_Project_File(const std::string& path, Project& p, Shell& shell, Shell_Host& host,
                       Settings_Store& store) {
  Read_Report report;
  if (Load_Project(path, shell.Work_Directory, p, report) != Load_Result::Loaded) {
    host.Show_Message(report.message);
    return false;
  }
  After_Opening(p);
  p.Current_Macro = 0;
  shell.State = p.Result_File_Name.empty() ? Work_State::Design : Work_State::Computed;
  Set_Caption(p, shell);
  Add_Recent_File(store, path);
  return true;
}

bool Direct_Start(const std::string& command_line, Project& p, Shell& shell, Shell_Host& host,
                  Settings_Store& store) {
  if (command_line.size() < 2) return false;
  const std::string path = command_line.substr(1, command_line.size() - 2);
  // As with Open: the database and the results named in the file lie beside it.
  if (const std::string directory = getdir(path); !directory.empty()) {
    shell.Work_Directory = directory;
    host.Change_Directory(directory);
  }
  return Open_Project_File(path, p, shell, host, store);
}

bool Open_Recent_File(int position, Project& p, Shell& shell, Shell_Host& host, Settings_Store& store) {
  const std::vector<std::string> list = Read_Recent_Files(store);
  if (position < 1 || position > static_cast<int>(list.size())) return false;
  const std::string& path = list[static_cast<std::size_t>(position - 1)];
  if (!fileexist(path)) {
    host.Show_Message(File_Cannot_Be_Opened);
    return false;
  }
  const std::string directory = getdir(path);
  if (!directory.empty()) {
    shell.Work_Directory = directory;
    host.Change_Directory(directory);
  }
  return Open_Project_File(path, p, shell, host, store);
}

bool Query_Close(Project& p, Shell& shell, Shell_Host& host, Settings_Store& store) {
  if (p.Project_Saved != False_Flag) return true;
  switch (host.Ask(Not_Saved_Question, Question_Buttons::Yes_No_Cancel)) {
    case Answer::Yes:
      Save_Command(p, shell, host, store, false);
      return p.Project_Saved != False_Flag;
    case Answer::No:
      return true;
    default:
      return false;
  }
}

std::vector<std::string> Start_Main_Window(Project& p, Shell& shell, Shell_Host& host, Settings_Store& store,
                                           bool decimal_comma, const std::string& command_line) {
  Read_Work_Directory(shell, host);
  Initialize_Program(shell, p, decimal_comma);
  shell.State = Work_State::No_Project;
  Choose_Default_Database(p, shell, host);
  Set_Caption(p, shell);
  if (!command_line.empty()) Direct_Start(command_line, p, shell, host, store);
  return Read_Recent_Files(store);
}

void mnuProject_Click(int index, Project& p, Shell& shell, Shell_Host& host, Settings_Store& store) {
  switch (index) {
    case 0:
      New_Command(p, shell, host);
      break;
    case 1:
      host.Change_Directory(shell.Application_Path);
      host.Show_Form(Work_Form::Change_Work_Directory);
      break;
    case 2: {
      std::string path;
      if (!host.Choose_Open_File(Select_Project_Title, Project_Filter, path) || path.empty()) break;
      // The database and the results of a project lie beside it, and their names in the file are
      // relative: the project's folder becomes the work directory, as for a recent entry.
      if (const std::string directory = getdir(path); !directory.empty()) {
        shell.Work_Directory = directory;
        host.Change_Directory(directory);
      }
      Open_Project_File(path, p, shell, host, store);
      break;
    }
    case 3:
      Save_Command(p, shell, host, store, false);
      break;
    case 4:
      Save_Command(p, shell, host, store, true);
      break;
    case 5:
      if (Query_Close(p, shell, host, store)) host.End_Program();
      break;
    default:
      break;
  }
}

void Toolbar1_ButtonClick(const std::string& key, Project& p, Shell& shell, Shell_Host& host,
                          Settings_Store& store) {
  using B = Toolbar_Button;
  B button{};
  // A button the state does not show cannot be pressed.
  if (!Find_Button(key, button) || !Shows(Buttons_Of(shell.State), button)) return;
  host.Hide_All();
  bool ok = true;
  switch (button) {
    case B::Open:
      mnuProject_Click(2, p, shell, host, store);
      break;
    case B::Quit:
      mnuProject_Click(5, p, shell, host, store);
      break;
    case B::Project_information:
      host.Show_Form(Work_Form::Project_Description);
      break;
    case B::Design_Panel:
      if (shell.State == Work_State::No_Project) shell.State = Work_State::Design;
      host.Show_Form(Work_Form::Design);
      host.Set_Work_Caption(Design_Panel_Caption);
      host.Redraw_Design();
      break;
    case B::Mesh:
      host.Show_Mesh_Form(p.Mesh_Element.count() > 0, p.Circuit.count() >= 1);
      break;
    case B::Refresh:
      host.Redraw_Design();
      break;
    case B::Runset:
      Destroy_Output(shell, host, ok);
      if (!ok) break;
      host.Show_Form(Work_Form::Run_Settings);
      shell.State = Work_State::Run_Set;
      break;
    case B::Compute: {
      // Without a mesh there is nothing to compute.
      if (p.Mesh_Element.count() == 0) {
        host.Show_Message(No_Mesh_To_Compute);
        break;
      }
      Destroy_Output(shell, host, ok);
      if (!ok) break;
      host.Set_Work_Caption(Start_Computations_Caption);
      std::string message;
      Set_Prescribed_Data(p, ok, message);
      if (!ok) {
        host.Show_Message(message);
        break;
      }
      host.Show_Form(Work_Form::Diagnostics);
      break;
    }
    case B::Results: {
      std::string message;
      if (host.Open_Results(p, shell, message)) {
        host.Show_Form(Work_Form::Results);
      } else {
        host.Show_Message(message);
        shell.State = Work_State::Design;
      }
      break;
    }
  }
}

void Computation_Ended(Shell& shell, bool results_written) {
  if (results_written) shell.State = Work_State::Computed;
}

}  // namespace pvx
