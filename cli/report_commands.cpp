// pvx report: the input tables of a project, as text on standard output or as an A4 PDF
// drawn by the same page frame that prints it.
#include <QDateTime>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>

#include <cctype>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include <fmt/format.h>

#include "commands.h"
#include "gui_application.h"
#include "print_pages.h"
#include "project_io.h"
#include "report/input_printout.h"

namespace pvx::cli {

namespace {

struct Report_Options {
  std::string path;
  std::string sections;
  bool sections_given = false;
  std::string pdf;
  bool text = false;
  bool imperial = false;
};

std::string Lower(std::string t) {
  for (char& c : t)
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return t;
}

std::string Trim(const std::string& t) {
  const auto first = t.find_first_not_of(" \t");
  if (first == std::string::npos) return "";
  return t.substr(first, t.find_last_not_of(" \t") - first + 1);
}

std::string Section_Names() {
  std::string names;
  for (int i = 1; i <= Print_Section_Count; ++i)
    names += (i > 1 ? ", " : "") + std::string(Print_Section_Name(static_cast<Print_Section>(i)));
  return names;
}

// The ticked boxes: the sections named in a comma-separated list (the boxes' captions, in any
// case), "all" for every box with data, or, with no list given, every box with data as the window
// opens. An empty list ticks nothing. A box without data cannot be ticked.
bool Parse_Sections(const std::string& list, bool given, const Project& p, Print_Selection& selection,
                    std::ostream& err) {
  selection = Print_Selection{};
  if (!given || Lower(Trim(list)) == "all") {
    selection = Sections_With_Data(p);
    return true;
  }
  std::size_t from = 0;
  while (from <= list.size()) {
    const std::size_t comma = std::min(list.find(',', from), list.size());
    const std::string name = Lower(Trim(list.substr(from, comma - from)));
    from = comma + 1;
    if (name.empty()) continue;
    int found = 0;
    for (int i = 1; i <= Print_Section_Count && found == 0; ++i)
      if (Lower(Print_Section_Name(static_cast<Print_Section>(i))) == name) found = i;
    if (found == 0) {
      err << fmt::format("Unknown section \"{}\": give {} or all\n", name, Section_Names());
      return false;
    }
    const auto section = static_cast<Print_Section>(found);
    if (!Section_Has_Data(p, section)) {
      err << fmt::format("Section \"{}\" has nothing to print in this project\n",
                         Print_Section_Name(section));
      return false;
    }
    selection[found] = true;
  }
  return true;
}

// The pages go to a file beside the target first, so that a failed print leaves an older file of
// the same name as it was. Landscape A4: the widest table (the thermal conditions) needs some 130
// characters of the fixed-pitch font.
int Write_Pdf(const Project& p, const std::vector<Report_Table>& tables, const std::string& target,
              std::ostream& out, std::ostream& err) {
  Ensure_Gui_Application();
  const std::string partial = target + ".partial";
  int pages = 0;
  {
    QPdfWriter writer(QString::fromStdString(partial));
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Landscape,
                                     QMarginsF(15, 15, 15, 15), QPageLayout::Millimeter));
    writer.setTitle(QString::fromStdString(Printout_Header(p).front() + " input"));
    writer.setCreator(QStringLiteral("KIVA_TRV_PELDANOR_8"));
    pages = Print_Pages(writer, Printout_Header(p), Layout_Tables(tables), QDateTime::currentDateTime());
  }
  std::error_code ec;
  if (pages == 0 || !std::filesystem::exists(partial, ec)) {
    std::filesystem::remove(partial, ec);
    err << fmt::format("The input tables could not be written to {}\n", target);
    return Exit_Failure;
  }
  std::filesystem::rename(partial, target, ec);
  if (ec) {
    std::filesystem::remove(partial, ec);
    err << fmt::format("The input tables could not be written to {}\n", target);
    return Exit_Failure;
  }
  out << fmt::format("{}: {} page{}\n", target, pages, pages == 1 ? "" : "s");
  return Exit_Ok;
}

int Report(const Report_Options& o, std::ostream& out, std::ostream& err) {
  if (o.text == !o.pdf.empty()) {
    err << "Give one output: --text (standard output) or --pdf OUT.pdf\n";
    return Exit_Failure;
  }
  if (!o.pdf.empty() && Lower(std::filesystem::path(o.pdf).extension().string()) != ".pdf") {
    err << fmt::format("--pdf writes a .pdf file, not {}\n", o.pdf);
    return Exit_Failure;
  }
  Project p;
  if (!Open_Project(o.path, p, err)) return Exit_Failure;
  Print_Selection selection;
  if (!Parse_Sections(o.sections, o.sections_given, p, selection, err)) return Exit_Failure;
  const std::vector<Report_Table> tables = Input_Tables(p, selection, !o.imperial);
  if (tables.empty()) {
    // No box ticked: nothing is printed, as the window's print button prints nothing then.
    err << "Nothing to print: no section with data is selected\n";
    return Exit_Ok;
  }
  if (o.text) {
    out << Input_Printout_Text(p, selection, !o.imperial);
    return Exit_Ok;
  }
  return Write_Pdf(p, tables, o.pdf, out, err);
}

}  // namespace

void Add_Report_Commands(CLI::App& app, int& status) {
  auto* report = app.add_subcommand("report", "Print the input of a project as tables, as text or PDF");
  auto o = std::make_shared<Report_Options>();
  report->add_option("PROJECT", o->path, "Project file (.PVX)")->required();
  auto* sections = report->add_option(
      "--sections", o->sections,
      "Comma-separated sections to print (" + Section_Names() + "); default: every section with data");
  report->add_flag("--imperial", o->imperial, "Values in the English Imperial System");
  report->add_flag("--text", o->text, "Print the tables as fixed-pitch text on standard output");
  report->add_option("--pdf", o->pdf, "Write the pages to an A4 PDF file");
  report->callback([&status, o, sections] {
    o->sections_given = sections->count() > 0;
    status = Report(*o, std::cout, std::cerr);
  });
}

}  // namespace pvx::cli
