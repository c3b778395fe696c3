#include <QApplication>
#include <QCoreApplication>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "adapters/files/log_file.h"
#include "adapters/guardian/guardian_spawn.h"
#include "adapters/qt/qt_log.h"
#include "app/adapters.h"
#include "app/analyse.h"
#include "app/options.h"
#include "app/run_window.h"
#include "app/system.h"
#include "guardian/run_guardian.h"
#include "text/error_text.h"
#include "text/paths.h"

namespace velt {
namespace {

void OpenLog(const std::filesystem::path& path) {
  if (path.empty()) {
    QtLog::Install(nullptr);
    return;
  }
  const auto file = std::make_shared<LogFile>(path);
  if (const int error = file->Open()) {
    std::fprintf(stderr, "velt-sa: the log file %s could not be opened: %s\n",
                 PathText(path).c_str(), ErrorText(error).c_str());
  }
  QtLog::Install([file](std::string_view line) { file->WriteLine(line); });
}

int ListDevices(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const auto lister = MakeSoundDeviceLister();
  int exitCode = 0;
  lister->List([&exitCode](const SoundDevices& listing) {
    if (!listing.error.empty()) {
      std::fprintf(stderr, "velt-sa: %s\n", listing.error.c_str());
      exitCode = 1;
    }
    for (const AudioDevice& device : listing.devices) {
      std::printf("%s%s\t%s\n", device.name == listing.defaultName ? "* " : "  ",
                  device.name.c_str(), device.description.c_str());
    }
    QCoreApplication::quit();
  });
  QCoreApplication::exec();
  return exitCode;
}

int RunApplication(char* programName, const Options& options, GuardianSpawn guardian) {
  const bool headless = options.run == Options::Run::Headless;
  const bool display =
      !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
  if (headless) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  } else if (!display && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
    if (options.run == Options::Run::Reset) {
      qputenv("QT_QPA_PLATFORM", "offscreen");
    } else {
      std::fprintf(stderr,
                   "velt-sa: there is no display. Without one: --headless --seconds N "
                   "--screenshot FILE.png\n");
      return 1;
    }
  }
  QApplication::setApplicationName("VELT-SA");
  if (!options.namesStyle) QApplication::setStyle("Fusion");
  // Qt keeps the references and writes to the array.
  std::vector<std::string> texts = options.qtArguments;
  std::vector<char*> arguments{programName};
  for (std::string& text : texts) arguments.push_back(text.data());
  int count = static_cast<int>(arguments.size());
  arguments.push_back(nullptr);
  QApplication application(count, arguments.data());
  OpenLog(options.logFile);
  return RunWindow(application, options, std::move(guardian));
}

// A plain look at the arguments, as the guardian starts before anything that could go wrong. A run
// that is misjudged here starts its guardian later.
bool CanKey(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    std::string_view word = argv[i];
    if (!word.starts_with('-')) continue;
    word.remove_prefix(word.starts_with("--") ? 2 : 1);
    word = word.substr(0, word.find('='));
    for (const char* other :
         {"analyse", "demo", "h", "help", "list-audio-devices", "v", "version"}) {
      if (word == other) return false;
    }
  }
  return true;
}

int Run(int argc, char** argv, GuardianSpawn guardian) {
  const Options options = ParseOptions(ArgumentTexts(argc, argv), VELT_VERSION_TEXT);
  switch (options.run) {
    case Options::Run::Help:
    case Options::Run::Version:
      std::fputs(options.text.c_str(), stdout);
      return 0;
    case Options::Run::Invalid:
      std::fprintf(stderr, "velt-sa: %s", options.text.c_str());
      return 2;
    case Options::Run::Analyse:
      return RunAnalyse(options.analyse);
    case Options::Run::ListDevices:
      return ListDevices(argc, argv);
    case Options::Run::Reset:
    case Options::Run::Window:
    case Options::Run::Headless:
      break;
  }
  return RunApplication(argv[0], options, std::move(guardian));
}

}  // namespace
}  // namespace velt

int main(int argc, char** argv) {
  if (argc > 1 && std::string_view(argv[1]) == "--guardian") return velt::RunGuardian();
  return velt::Run(argc, argv,
                   velt::CanKey(argc, argv) ? velt::SpawnGuardian() : velt::GuardianSpawn());
}
