// pvx run: computes every material variant of a project headless and writes its result family.
#include <unistd.h>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "analysis/driver.h"
#include "analysis/parallel_variants.h"
#include "analysis/schedule.h"
#include "app/prescribed_data.h"
#include "app/project_file.h"
#include "commands.h"
#include "project_io.h"

namespace pvx::cli {

namespace {

// Ctrl-C acts as the stop button: the run ends at the top of the next step with its files closed.
std::atomic<bool> interrupt_requested{false};
extern "C" void On_Interrupt(int) {
  interrupt_requested = true;
}

std::string Clock(double seconds) {
  const long s = static_cast<long>(seconds + 0.5);
  return s >= 3600 ? fmt::format("{}:{:02}:{:02}", s / 3600, s / 60 % 60, s % 60)
                   : fmt::format("{:02}:{:02}", s / 60, s % 60);
}

class Console_Host : public Analysis_Host {
 public:
  explicit Console_Host(bool terminal) : terminal_(terminal), start_(std::chrono::steady_clock::now()) {}

  void Show_Message(const std::string& text, Message_Kind kind) override {
    if (bar_shown_) std::cerr << "\n";
    bar_shown_ = false;
    std::cerr << (kind == Message_Kind::Critical  ? "error: "
                  : kind == Message_Kind::Warning ? "warning: "
                                                  : "")
              << text << "\n";
  }
  bool Stop_Requested() override { return interrupt_requested.load(); }

  // Nobody is there to answer the program's question, so the batch tool answers no: the run stops
  // with the results stored so far, and says what to do about it.
  bool Ask_More_Iterations(int iterations, int& iteration_limit, double limits[3]) override {
    (void)limits;
    refused_ = true;
    const int variant = variants_done_ + 1;
    const int step = last_.variant == variant ? last_.step + 1 : 1;
    Show_Message(
        fmt::format("More than {} have been performed. The mechanical iteration of step {} of variant {} "
                    "has not converged within the limit of {} iterations, and the batch tool does not "
                    "go on by itself: the computation is stopped. Raise the limit with --iterations N.",
                    iterations, step, variant, iteration_limit),
        Message_Kind::Critical);
    return false;
  }
  bool Refused() const { return refused_; }
  // A run of variant K alone counts from it.
  void Start_At(int variant) { variants_done_ = variant - 1; }

  void Report_Step(const Step_Report& r) override {
    last_ = r;
    if (!terminal_) return;
    const auto now = std::chrono::steady_clock::now();
    if (r.step != r.steps && now - last_draw_ < std::chrono::milliseconds(100)) return;
    last_draw_ = now;
    const double elapsed = std::chrono::duration<double>(now - variant_start_).count();
    const double remaining = r.step > 0 ? elapsed * (r.steps - r.step) / r.step : 0;
    const int width = 30;
    const int filled = r.steps > 0 ? width * r.step / r.steps : width;
    std::cerr
        << fmt::format(
               "\rvariant {}/{} [{}{}] step {}/{}  t = {:.2f} h  storages {}  elapsed {}  remaining {} ",
               r.variant, r.variants, std::string(static_cast<std::size_t>(filled), '#'),
               std::string(static_cast<std::size_t>(width - filled), '.'), r.step, r.steps, r.time,
               r.storages, Clock(elapsed), Clock(remaining))
        << std::flush;
    bar_shown_ = true;
  }

  // One line at the end of a variant, on a terminal below the bar.
  void Report_Variant(int variant, int variants, int storages) override {
    variants_done_ = variant;
    if (bar_shown_) std::cerr << "\n";
    bar_shown_ = false;
    const double elapsed =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - variant_start_).count();
    const std::string name =
        static_cast<std::size_t>(variant) < names_.size() ? names_[static_cast<std::size_t>(variant)] : "";
    std::cout << fmt::format("variant {}/{}: {} of {} steps, {} storages in {} ({:.1f} s)\n", variant,
                             variants, last_.variant == variant ? last_.step : 0, last_.steps, storages, name,
                             elapsed)
              << std::flush;
    variant_start_ = std::chrono::steady_clock::now();
  }

  std::vector<std::string> names_;
  Step_Report last_{};

 private:
  bool terminal_;
  bool bar_shown_ = false;
  bool refused_ = false;
  int variants_done_ = 0;
  std::chrono::steady_clock::time_point start_, variant_start_ = std::chrono::steady_clock::now(),
                                                last_draw_{};
};

// The console of variants computed side by side: one line of progress for all of them on a
// terminal, their messages and their closing lines as they come, each told by its variant.
class Parallel_Console {
 public:
  Parallel_Console(bool terminal, int variants, std::vector<std::string> names)
      : terminal_(terminal), names_(std::move(names)), progress_(static_cast<std::size_t>(variants) + 1) {}

  std::unique_ptr<Analysis_Host> Host_Of(int variant) {
    return std::make_unique<Variant_Host>(*this, variant);
  }
  bool Refused() const { return refused_.load(); }

 private:
  struct Progress {
    int step = 0, steps = 0;
    bool done = false;
    std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
  };

  class Variant_Host : public Analysis_Host {
   public:
    Variant_Host(Parallel_Console& console, int variant) : console_(console), variant_(variant) {
      std::lock_guard<std::mutex> lock(console_.mutex_);
      console_.progress_[static_cast<std::size_t>(variant_)].start = std::chrono::steady_clock::now();
    }
    void Show_Message(const std::string& text, Message_Kind kind) override {
      console_.Print_Line(fmt::format("{}variant {}: {}",
                                      kind == Message_Kind::Critical  ? "error: "
                                      : kind == Message_Kind::Warning ? "warning: "
                                                                      : "",
                                      variant_, text),
                          true);
    }
    bool Stop_Requested() override { return interrupt_requested.load(); }
    bool Ask_More_Iterations(int iterations, int& iteration_limit, double limits[3]) override {
      (void)limits;
      console_.refused_ = true;
      Show_Message(
          fmt::format("More than {} have been performed. A mechanical step has not converged within the "
                      "limit of {} iterations, and the batch tool does not go on by itself: this "
                      "variant is stopped. Raise the limit with --iterations N.",
                      iterations, iteration_limit),
          Message_Kind::Critical);
      return false;
    }
    void Report_Step(const Step_Report& r) override {
      {
        std::lock_guard<std::mutex> lock(console_.mutex_);
        Progress& p = console_.progress_[static_cast<std::size_t>(variant_)];
        p.step = r.step, p.steps = r.steps;
      }
      console_.Draw();
    }
    void Report_Variant(int variant, int variants, int storages) override {
      double elapsed = 0;
      int step = 0, steps = 0;
      {
        std::lock_guard<std::mutex> lock(console_.mutex_);
        Progress& p = console_.progress_[static_cast<std::size_t>(variant)];
        p.done = true;
        step = p.step, steps = p.steps;
        elapsed = std::chrono::duration<double>(std::chrono::steady_clock::now() - p.start).count();
      }
      const auto at = static_cast<std::size_t>(variant);
      console_.Print_Line(
          fmt::format("variant {}/{}: {} of {} steps, {} storages in {} ({:.1f} s)", variant, variants, step,
                      steps, storages, at < console_.names_.size() ? console_.names_[at] : "", elapsed),
          false);
    }

   private:
    Parallel_Console& console_;
    int variant_;
  };

  // A line of its own, below the progress line on a terminal.
  void Print_Line(const std::string& text, bool to_error) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (bar_shown_) std::cerr << "\r" << std::string(bar_width_, ' ') << "\r";
    bar_shown_ = false;
    (to_error ? std::cerr : std::cout) << text << "\n" << std::flush;
  }

  // Every variant's share of its steps: "variants 1 100%  2 45%  3 ...".
  void Draw() {
    if (!terminal_) return;
    std::lock_guard<std::mutex> lock(mutex_);
    const auto now = std::chrono::steady_clock::now();
    if (now - last_draw_ < std::chrono::milliseconds(100)) return;
    last_draw_ = now;
    std::string line = "variants";
    for (std::size_t v = 1; v < progress_.size(); ++v) {
      const Progress& p = progress_[v];
      line += p.steps == 0 ? fmt::format("  {} ...", v)
                           : fmt::format("  {} {:3d}%", v, p.done ? 100 : 100 * p.step / p.steps);
    }
    bar_width_ = std::max(bar_width_, line.size());
    std::cerr << "\r" << line << std::flush;
    bar_shown_ = true;
  }

  bool terminal_;
  std::vector<std::string> names_;
  std::vector<Progress> progress_;
  std::mutex mutex_;
  std::atomic<bool> refused_{false};
  bool bar_shown_ = false;
  std::size_t bar_width_ = 0;
  std::chrono::steady_clock::time_point last_draw_{};
};

}  // namespace

void Add_Run_Commands(CLI::App& app, int& status) {
  struct Options {
    std::string project, output;
    bool mechanical = false;
    int iterations = 0;
    int damped_start = -1;
    int variant = 0;
    int jobs = 1;
  };
  auto o = std::make_shared<Options>();
  auto* run =
      app.add_subcommand("run", "Compute every material variant of a project and write its result family");
  run->add_option("PROJECT", o->project, "Project file (.PVX)")->required();
  run->add_option("--output", o->output,
                  "Name of the result family (NAME.RES), relative to the project's folder");
  run->add_flag("--mechanical", o->mechanical,
                "Compute the displacements and stresses too, even when the project leaves them off");
  run->add_option("--iterations", o->iterations,
                  "The iteration count at which a mechanical step that has not converged stops the run "
                  "(default 10; a step needs at least 2 iterations, so at least 3)")
      ->check(CLI::Range(3, 1000000));
  run->add_option("--damped-start", o->damped_start,
                  "Backward Euler steps after the start and after a cooling circuit is switched, against "
                  "the overshoot round the pipes (0 off; default: as the project says)")
      ->check(CLI::Range(0, 100));
  run->add_option("--variant", o->variant,
                  "Compute variant K of the run set alone, into the result family the whole set gives it "
                  "(for a job array of a cluster scheduler)")
      ->check(CLI::Range(1, 32767));
  run->add_option("--jobs", o->jobs, "Compute the variants of the run set on N cores side by side")
      ->check(CLI::Range(1, 256))
      ->excludes("--variant");
  run->footer(
      "Exit status: 0 every variant was computed; 1 the project, its database or its prescribed data could "
      "not be used, a variant failed (zero pivot, result files, displacements above 10000 mm) or a "
      "mechanical step did not converge within the iteration limit; 2 the run was stopped with Ctrl-C. "
      "Whenever a run ends early its files hold every storage written so far and are closed.");
  run->callback([&status, o] {
    Project p;
    if (!Open_Project_With_Database(o->project, p, std::cerr)) {
      status = Exit_Failure;
      return;
    }
    bool ok = true;
    std::string message;
    Set_Prescribed_Data(p, ok, message);
    if (!ok) {
      std::cerr << message << "\n";
      status = Exit_Failure;
      return;
    }
    Prepare_Run_Set(p, o->project, o->output);
    if (p.Mesh_Element.empty()) {
      std::cerr << "The project has no mesh: make one first (pvx mesh --write).\n";
      status = Exit_Failure;
      return;
    }

    if (o->damped_start >= 0) Enter_Damped_Start(p, o->damped_start);
    Run_State state;
    state.Mechanical_Included = p.Mechanical_Included != 0 || o->mechanical;
    if (o->iterations > 0) state.Mechanical_Iteration_Limit = o->iterations;
    Console_Host host(isatty(STDERR_FILENO) != 0);
    host.names_ = p.Result_Names;
    interrupt_requested = false;
    auto previous = std::signal(SIGINT, On_Interrupt);
    const std::string work = Work_Directory_Of(o->project);
    // A result family asked for in a folder that does not exist yet gets that folder.
    if (!o->output.empty()) {
      const std::filesystem::path target = std::filesystem::path(work) / o->output;
      std::error_code ignored;
      if (target.has_parent_path()) std::filesystem::create_directories(target.parent_path(), ignored);
    }
    state.Only_Variant = o->variant;
    if (o->variant > 0) host.Start_At(o->variant);
    Run_Outcome outcome = Run_Outcome::Completed;
    if (o->jobs > 1 && Number_Of_Runs(p) > 1) {
      Parallel_Console console(isatty(STDERR_FILENO) != 0, Number_Of_Runs(p), p.Result_Names);
      const std::vector<Variant_Result> results = Run_Variants_In_Parallel(
          p, state, o->jobs, [&console](int variant) { return console.Host_Of(variant); }, work);
      for (const Variant_Result& r : results)
        if (r.Outcome == Run_Outcome::Failed ||
            (r.Outcome == Run_Outcome::Stopped && outcome == Run_Outcome::Completed))
          outcome = r.Outcome;
      if (outcome == Run_Outcome::Stopped && console.Refused()) outcome = Run_Outcome::Failed;
    } else {
      outcome = Run_Analysis(p, state, host, work, message);
      if (outcome == Run_Outcome::Stopped && host.Refused()) outcome = Run_Outcome::Failed;
    }
    std::signal(SIGINT, previous);
    switch (outcome) {
      case Run_Outcome::Completed:
        status = Exit_Ok;
        break;
      case Run_Outcome::Stopped:
        std::cerr << "stopped: the result files are closed and hold what was stored\n";
        status = Exit_Stopped;
        break;
      case Run_Outcome::Failed:
        status = Exit_Failure;
        break;
    }
  });
}

}  // namespace pvx::cli
