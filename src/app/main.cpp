#include <QApplication>
#include <QCoreApplication>
#include <QIcon>
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
#include "app/console.h"
#include "app/display_check.h"
#include "app/exchange_presets.h"
#include "app/file_clashes.h"
#include "app/options.h"
#include "app/run_window.h"
#include "app/system.h"
#include "app/unmet_need.h"
#include "app/window_factor.h"
#include "guardian/error_output.h"
#include "guardian/run_guardian.h"
#include "text/error_text.h"
#include "text/paths.h"

namespace velt {
namespace {

void OpenLog(const std::filesystem::path& path) {
  if (path.empty()) {
    QtLog::Install(WriteErrorLine, nullptr);
    return;
  }
  const auto file = std::make_shared<LogFile>(path);
  if (const int error = file->Open()) {
    Warn("the log file " + PathText(path) + " could not be opened: " + ErrorText(error));
  }
  QtLog::Install(WriteErrorLine, [file](std::string_view line) { file->WriteLine(line); });
}

int ListDevices(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const auto lister = MakeSoundDeviceLister();
  SoundDevices listing;
  lister->List([&listing](const SoundDevices& told) {
    listing = told;
    QCoreApplication::quit();
  });
  QCoreApplication::exec();
  if (!listing.error.empty()) return Fail(listing.error);
  std::string text;
  for (const AudioDevice& device : listing.devices) {
    text += (device.name == listing.defaultName ? "* " : "  ") + device.name + "\t" +
            device.description + "\n";
  }
  return Print(text);
}

int RunApplication(char* programName, Options options, GuardianSpawn guardian) {
  SettledDisplay display;
  if (!options.windowless || !options.platform.empty()) display = SettleDisplay(options);
  if (!display.problem.empty()) {
    if (options.run != Options::Run::Reset) {
      return Fail(display.problem + " Without one: --headless --seconds N --screenshot FILE.png");
    }
    // A reset has no need to be seen.
    options.windowless = true;
    options.platform.clear();
    options.qtArguments.clear();
  }
  if (const std::string need = UnmetNeed(options); !need.empty()) return Fail(need);
  KeepErrorOutputFromWaiting();
  if (options.windowless && options.platform.empty()) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication::setApplicationName("VELT-SA");
  if (!options.namesStyle) QApplication::setStyle("Fusion");
  // Qt keeps the references and writes to the array.
  std::vector<std::string> texts = options.qtArguments;
  std::vector<char*> arguments{programName};
  for (std::string& text : texts) arguments.push_back(text.data());
  int count = static_cast<int>(arguments.size());
  arguments.push_back(nullptr);
  auto factor = std::make_unique<WindowFactor>(options);
  QApplication application(count, arguments.data());
  factor.reset();
  display.connection.reset();
  QApplication::setDesktopFileName("velt-sa");
  QApplication::setWindowIcon(QIcon(":/velt-sa.svg"));
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
    for (const char* other : {"analyse", "demo", "export-presets", "h", "help", "import-presets",
                              "list-audio-devices", "v", "version"}) {
      if (word == other) return false;
    }
  }
  return true;
}

int Run(int argc, char** argv, GuardianSpawn guardian) {
  const Options options = ParseOptions(ArgumentTexts(argc, argv), VELT_VERSION_TEXT);
  using Kind = Options::Run;
  if (options.run == Kind::Help || options.run == Kind::Version) return Print(options.text);
  const std::string refusal = options.run == Kind::Invalid ? options.text : FileClash(options);
  if (!refusal.empty()) {
    Warn(refusal);
    constexpr int kWrongCall = 2;
    return kWrongCall;
  }
  if (options.run == Kind::Analyse) return RunAnalyse(options.analyse);
  if (options.run == Kind::ExportPresets) return ExportPresets(options);
  if (options.run == Kind::ImportPresets) return ImportPresets(options);
  if (options.run == Kind::ListDevices) return ListDevices(argc, argv);
  return RunApplication(argv[0], options, std::move(guardian));
}

}  // namespace
}  // namespace velt

int main(int argc, char** argv) {
  if (argc > 1 && std::string_view(argv[1]) == "--guardian") return velt::RunGuardian();
  velt::PrepareProcess();
  return velt::Run(argc, argv,
                   velt::CanKey(argc, argv) ? velt::SpawnGuardian() : velt::GuardianSpawn());
}
