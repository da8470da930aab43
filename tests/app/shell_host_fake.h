// A scripted main window for the tests of the shell: the answers and file choices are queued
// beforehand, and everything the commands ask, show or change is recorded.
#pragma once

#include <deque>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "app/workflow.h"

namespace pvx::test {

struct Scripted_Host : Shell_Host {
  std::deque<Answer> answers;
  std::deque<std::string> files;  // an empty entry cancels the chooser
  std::vector<std::string> questions, messages, chooser_titles, chooser_filters, directories, work_captions;
  std::vector<Work_Form> forms;
  int hide_all = 0, redraws = 0, ended = 0, mesh_forms = 0;
  bool mesh_existing = false, mesh_cooling = false;
  bool results_ok = false;
  std::string results_message;

  Answer Ask(const std::string& question, Question_Buttons) override {
    questions.push_back(question);
    if (answers.empty()) return Answer::Cancel;
    Answer a = answers.front();
    answers.pop_front();
    return a;
  }
  void Show_Message(const std::string& text) override { messages.push_back(text); }
  bool Choose(const std::string& title, const std::string& filter, std::string& path) {
    chooser_titles.push_back(title);
    chooser_filters.push_back(filter);
    if (files.empty()) return false;
    path = files.front();
    files.pop_front();
    return !path.empty();
  }
  bool Choose_Open_File(const std::string& title, const std::string& filter, std::string& path) override {
    return Choose(title, filter, path);
  }
  bool Choose_Save_File(const std::string& title, const std::string& filter, std::string& path) override {
    return Choose(title, filter, path);
  }
  void Hide_All() override { ++hide_all; }
  void Show_Form(Work_Form form) override { forms.push_back(form); }
  void Redraw_Design() override { ++redraws; }
  void Set_Work_Caption(const std::string& caption) override { work_captions.push_back(caption); }
  void Show_Mesh_Form(bool existing, bool cooling_button) override {
    ++mesh_forms;
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

}  // namespace pvx::test
