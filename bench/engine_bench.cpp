// What the engine's files cost a running program, and how soon what they ask for reaches the CAT
// server: on a private display, with a Java window that plays the engine. Fails when the medians
// are above what is asked for. To be started in the source's folder:
//   engine_bench PROGRAM [SECONDS a run]
#include <time.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "cat_listener.h"
#include "processor.h"
#include "support/process.h"
#include "support/pulse_server.h"
#include "support/x_desktop.h"

namespace {

using namespace velt;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr int kTurns = 3;
constexpr int kRequests = 40;  // of each kind
constexpr int kRoundMs = 350;
constexpr double kMostMs = kRoundMs + 20;
constexpr double kMostCpu = 0.1;

void Need(bool condition, const char* what) {
  if (!condition) throw std::runtime_error(what);
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

class Bench {
 public:
  explicit Bench(std::string program) : program_(std::move(program)) {
    environment_ = sound_.Environment();
    environment_.push_back("DISPLAY=" + desktop_.Display());
    environment_.push_back("XDG_CONFIG_HOME=" + home_.Path().string());
    Process make({"tests/peers/engine/make", engine_.Path().string()}, {});
    Need(make.WaitForEnd(seconds(60)) && make.ExitCode() == 0, "the engine could not be made");
  }

  // The processor time that a minute of the program takes, in seconds.
  double CpuOfAMinute(bool engine, bool window, int runSeconds) {
    const auto java = window ? OpenEngine() : nullptr;
    CatListener rig;
    const auto run = Start(rig, engine ? engine_ : noEngine_);
    std::this_thread::sleep_for(seconds(3));
    const double before = CpuSeconds(*run);
    std::this_thread::sleep_for(seconds(runSeconds));
    const double used = CpuSeconds(*run) - before;
    Need(run->Running(), "the program ended");
    return used * 60 / runSeconds;
  }

  // Milliseconds from the file's replacement to the command, for each kind of request.
  std::map<std::string, std::vector<double>> Answers() {
    const auto java = OpenEngine();
    CatListener rig;
    const auto run = Start(rig, engine_);
    // By then it is linked and has read "off".
    Need(WaitUntil([&] { return std::filesystem::exists(engine_ / "STATUSRX.CFG"); }, seconds(10)),
         "the program did not link");
    Ask("off\n7000000\n");
    Need(Arrives(rig, 0, "+F 7000000", seconds(5)) > 0, "nothing was tuned");

    std::map<std::string, std::vector<double>> took;
    std::mt19937 random(1);
    std::uniform_int_distribution<int> pauseMs(0, kRoundMs);
    for (int i = 0; i < kRequests; ++i) {
      const std::string hertz = std::to_string(7'000'100 + i);
      for (const auto& [kind, text, command] : std::array<std::array<std::string, 3>, 4>{
               {{"frequency", "off\n" + hertz + "\n", "+F " + hertz},
                {"frequency, last line without an end", "off\n1" + hertz, "+F 1" + hertz},
                {"transmit", "on\n0\n", "+T 1"},
                {"receive", "off\n0\n", "+T 0"}}}) {
        std::this_thread::sleep_for(milliseconds(pauseMs(random)));
        const size_t before = rig.Arrivals().size();
        Ask(text);
        took[kind].push_back(Arrives(rig, before, command, seconds(5)));
        Need(took[kind].back() > 0, command.c_str());
      }
    }
    return took;
  }

 private:
  std::unique_ptr<Process> OpenEngine() {
    std::filesystem::remove(engine_ / "engine.log");
    auto java = std::make_unique<Process>(
        std::vector<std::string>{"env", "-C", engine_.Path().string(), "java", "-jar", "velt.jar"},
        Process::Options{.environment = environment_});
    Need(WaitUntil([&] { return std::filesystem::exists(engine_ / "engine.log"); }, seconds(20)),
         "the engine did not open");
    return java;
  }

  std::unique_ptr<Process> Start(const CatListener& rig, const TempFolder& folder) {
    std::filesystem::create_directories(home_ / "KALVARO");
    home_.Write("KALVARO/VELT-SA.ini",
                "[VELT-SA]\nVersion=3.0.0\nAutoStartSA=True\nAutoRunZOKA=False\n"
                "cmdZOKAstart=False\n");
    return std::make_unique<Process>(
        std::vector<std::string>{program_, "--rig1", rig.Address(), "--engine-folder",
                                 folder.Path().string()},
        Process::Options{.environment = environment_});
  }

  static double CpuSeconds(const Process& process) {
    clockid_t clock{};
    timespec used{};
    Need(::clock_getcpuclockid(static_cast<pid_t>(process.Id()), &clock) == 0 &&
             ::clock_gettime(clock, &used) == 0,
         "the processor time is not told");
    return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) * 1e-9;
  }

  void Ask(const std::string& text) {
    engine_.Write("request.new", text);
    asked_ = Clock::now();
    std::filesystem::rename(engine_ / "request.new", engine_ / "transmitter.cfg");
  }

  // Milliseconds from the request to the command among those behind the first `before`; -1 without.
  double Arrives(CatListener& rig, size_t before, const std::string& command, seconds limit) {
    double took = -1;
    WaitUntil(
        [&] {
          const auto arrivals = rig.Arrivals();
          for (size_t i = before; i < arrivals.size(); ++i) {
            if (arrivals[i].command != command) continue;
            took = std::chrono::duration<double, std::milli>(arrivals[i].time - asked_).count();
            return true;
          }
          return false;
        },
        limit);
    return took;
  }

  std::string program_;
  PulseServer sound_;
  XDesktop desktop_;
  TempFolder home_, engine_, noEngine_;
  std::vector<std::string> environment_;
  Clock::time_point asked_;
};

bool PrintCpu(Bench& bench, int runSeconds) {
  struct Kind {
    const char* name;
    bool engine;
    bool window;
    std::vector<double> used = {};
  };
  std::array<Kind, 3> kinds{{{"without velt.jar", false, false},
                             {"with its files, no window", true, false},
                             {"with its files and window", true, true}}};
  for (int turn = 0; turn < kTurns; ++turn) {
    for (Kind& kind : kinds) {
      kind.used.push_back(bench.CpuOfAMinute(kind.engine, kind.window, runSeconds));
    }
  }
  const double least = Median(kinds[0].used);
  bool good = true;
  for (const Kind& kind : kinds) {
    std::printf("%-28s", kind.name);
    for (const double used : kind.used) std::printf(" %6.3f", used);
    const double added = Median(kind.used) - least;
    std::printf("   median %.3f, added %+.3f CPU-seconds a minute\n", Median(kind.used), added);
    good = good && added <= kMostCpu;
  }
  return good;
}

bool PrintAnswers(Bench& bench) {
  bool good = true;
  for (auto& [kind, took] : bench.Answers()) {
    std::sort(took.begin(), took.end());
    std::printf("%-38s %zu: median %.0f ms, worst %.0f ms, above %.0f ms: %td\n", kind.c_str(),
                took.size(), Median(took), took.back(), kMostMs,
                took.end() - std::upper_bound(took.begin(), took.end(), kMostMs));
    good = good && took[took.size() * 95 / 100] <= kMostMs;
  }
  return good;
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) {
    std::fprintf(stderr, "usage: engine_bench PROGRAM [SECONDS]\n");
    return 2;
  }
  try {
    std::printf("%s\n", ProcessorName().c_str());
    Bench bench(arguments[1]);
    const bool soon = PrintAnswers(bench);
    const bool cheap = PrintCpu(bench, count > 2 ? std::max(std::atoi(arguments[2]), 1) : 30);
    return soon && cheap ? 0 : 1;
  } catch (const std::exception& problem) {
    std::fprintf(stderr, "%s\n", problem.what());
    return 1;
  }
}
