// A scripted main window for the tests of the shell: the answers and file choices are queued
// beforehand, and everything the commands ask, show or change is recorded.
#pragma once

#include <deque>
#include <filesystem>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "app/workflow.h"
#include "support/temp_dir.h"

namespace pvx::test {

struct Scripted_Host : Shell_Host {
  std::deque<Answer> answers;
  std::deque<std::string> files;  // an empty entry cancels the chooser
  std::vector<std::string> questions, messages, chooser_titles, directories, work_captions;
  std::vector<Work_Form> forms;
  int hide_all = 0, redraws = 0, ended = 0;
  bool mesh_existing = false, mesh_cooling = false;
  bool results_ok = false;
  std::string results_message;

  Answer Ask(const std::string& question, Question_Buttons) override {
    questions.push_back(question);
    const Answer a = answers.empty() ? Answer::Cancel : answers.front();
    if (!answers.empty()) answers.pop_front();
    return a;
  }
  void Show_Message(const std::string& text) override { messages.push_back(text); }
  bool Choose_Open_File(const std::string& title, const std::string&, std::string& path) override {
    chooser_titles.push_back(title);
    path = files.empty() ? "" : files.front();
    if (!files.empty()) files.pop_front();
    return !path.empty();
  }
  bool Choose_Save_File(const std::string& title, const std::string& filter, std::string& path) override {
    return Choose_Open_File(title, filter, path);
  }
  void Hide_All() override { ++hide_all; }
  void Show_Form(Work_Form form) override { forms.push_back(form); }
  void Redraw_Design() override { ++redraws; }
  void Set_Work_Caption(const std::string& caption) override { work_captions.push_back(caption); }
  void Show_Mesh_Form(bool existing, bool cooling_button) override {
    mesh_existing = existing;
    mesh_cooling = cooling_button;
  }
  bool Open_Results(const Project&, const Shell&, std::string& message) override {
    message = results_message;
    return results_ok;
  }
  void Change_Directory(const std::string& directory) override { directories.push_back(directory); }
  void End_Program() override { ++ended; }
};

// The per-user settings store as a map.
struct Memory_Store : Settings_Store {
  std::map<std::tuple<std::string, std::string, std::string>, std::string> values;
  std::string Get_Setting(const std::string& application, const std::string& section, const std::string& key,
                          const std::string& fallback) override {
    auto it = values.find({application, section, key});
    return it == values.end() ? fallback : it->second;
  }
  void Save_Setting(const std::string& application, const std::string& section, const std::string& key,
                    const std::string& value) override {
    values[{application, section, key}] = value;
  }
};

// A folder with the example project and its database, as a user keeps them.
struct Work_Folder {
  Temp_Dir dir;
  std::string project = dir.file("WALL.PVX");
  Work_Folder() {
    std::filesystem::copy_file(Source_Path("examples/WALL.PVX"), project);
    std::filesystem::copy_file(Source_Path("examples/PVX-Concrete.txt"), dir.file("PVX-Concrete.txt"));
  }
  std::string path() const { return dir.path().string() + "/"; }
};

// The main window's state with its scripted platform: the user presses buttons and menu entries.
struct Session {
  Project p;
  Shell shell;
  Scripted_Host host;
  Memory_Store store;
  void Click(const std::string& key) { Toolbar1_ButtonClick(key, p, shell, host, store); }
  void Menu(int index) { mnuProject_Click(index, p, shell, host, store); }
};

}  // namespace pvx::test
