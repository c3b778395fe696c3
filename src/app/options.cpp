#include "app/options.h"

#include <optional>

#include "app/adapters.h"
#include "app/arguments.h"
#include "text/formats.h"
#include "text/numbers.h"
#include "text/paths.h"

namespace velt {
namespace {

constexpr KnownOption kKnown[] = {
    {"demo", nullptr, "Analyse a generated band, with nothing connected."},
    {"input", "FILE", "Analyse this sound file, repeated, instead of the card."},
    {"audio-device", "NAME", "Capture from this source instead of the default one."},
    {"list-audio-devices", nullptr, "List the sources of the sound server and end."},
    {"rig1", "HOST:PORT", "Where rig 1's CAT server is (default 127.0.0.1:4532)."},
    {"rig2", "HOST:PORT", "Where rig 2's CAT server is (default 127.0.0.1:4534)."},
    {"serial-port", "PATH", "The device of the engine's COM port, whatever its number."},
    {"data-folder", "DIR", "Keep data and settings in this folder."},
    {"engine-folder", "DIR", "Look for the engine in this folder."},
    {"engine-title", "TEXT", "Find the engine's window by this title."},
    {"log", "FILE", "Write a log to this file; it is rotated at 1 MB."},
    {"headless", nullptr, "Run without a display, for --seconds."},
    {"seconds", "N", "How long a headless run takes."},
    {"screenshot", "FILE.png", "Write the window's picture at a headless run's end."},
    {"analyse", "FILE", "Analyse a sound file as fast as possible, no window."},
    {"csv", "OUT", "With --analyse: write one line per block."},
    {"image", "OUT.png", "With --analyse: write the display after the last block."},
    {"mode", "N", "With --analyse: spectrum mode 0, 1 or 69 (default 0)."},
    {"precision", "N", "With --analyse: resolution 1 to 4 (default 1)."},
    {"slider", "N", "With --analyse: level slider 1 to 100 (default 15)."},
    {"waterfall", nullptr, "With --analyse: the waterfall instead of the spectrum."},
    {"spectrogram", "OUT.png", "With --analyse: write the whole recording as a picture."},
    {"from", "S", "With --spectrogram: begin at this second (default 0)."},
    {"to", "S", "With --spectrogram: end at this second (default: the end)."},
    {"size", "WxH", "With --analyse: size of the picture (524x110 or 1200x512)."},
    {"export-presets", "FILE", "Write the band presets as CSV and end."},
    {"import-presets", "FILE", "Take the band presets from this CSV file and end."},
    {"help", nullptr, "Show this help and end (also -h)."},
    {"version", nullptr, "Show the version and end (also -v)."},
    {"h", nullptr, nullptr},
    {"v", nullptr, nullptr},
};

// Qt's own, which desktops and session managers give to any program of its kind.
constexpr KnownOption kQts[] = {
    {"session", "ID", nullptr},
    {"platform", "NAME", nullptr},
    {"platformpluginpath", "DIR", nullptr},
    {"platformtheme", "NAME", nullptr},
    {"plugin", "NAME", nullptr},
    {"display", "NAME", nullptr},
    {"name", "NAME", nullptr},
    {"style", "NAME", nullptr},
    {"stylesheet", "FILE", nullptr},
    {"geometry", "WxH", nullptr},
    {"qwindowgeometry", "WxH", nullptr},
    {"title", "TEXT", nullptr},
    {"qwindowtitle", "TEXT", nullptr},
    {"icon", "FILE", nullptr},
    {"qwindowicon", "FILE", nullptr},
    {"nograb", nullptr, nullptr},
    {"dograb", nullptr, nullptr},
    {"reverse", nullptr, nullptr},
    {"widgetcount", nullptr, nullptr},
};

constexpr const char* kOnlyAnalysing[] = {"csv",    "image",     "mode",        "precision",
                                          "slider", "waterfall", "spectrogram", "size"};
constexpr const char* kOnlySpectrogram[] = {"from", "to"};
constexpr const char* kOnlyHeadless[] = {"seconds", "screenshot"};
constexpr const char* kNotAnalysing[] = {
    "demo", "input", "audio-device", "headless", "list-audio-devices",
    "rig1", "rig2",  "serial-port"};
constexpr const char* kNotWithPresets[] = {"analyse", "demo", "input", "headless",
                                           "list-audio-devices"};
constexpr const char* kNotWithReset[] = {"analyse", "list-audio-devices", "export-presets",
                                         "import-presets"};

// Whether an argument that is no option asks to delete all settings. It has to be meant: the name
// of a file does not ask for it, nor does "preset", in which the word does not begin.
bool AsksForReset(const std::string& argument) {
  const std::string name = Lowered(argument).substr(0, argument.find('='));
  const bool isFile = argument.find('.') != std::string::npos ||
                      argument.find_first_of("/\\", 1) != std::string::npos;
  if (isFile) return false;
  for (size_t at = name.find("reset"); at != std::string::npos; at = name.find("reset", at + 1)) {
    if (at == 0 || name[at - 1] < 'a' || name[at - 1] > 'z') return true;
  }
  return false;
}

std::string UsageText() {
  return "Usage: velt-sa [options]\n"
         "VELT-SA: audio spectrum analyser and transceiver control.\n"
         "An argument that holds the word \"reset\" deletes all settings and ends.\n\n"
         "Options:\n" +
         OptionsText(kKnown);
}

// Collects the first complaint.
class Checker {
 public:
  explicit Checker(const Arguments& arguments) : arguments_(arguments) {
    Complain(arguments.Complaint());
  }

  void Complain(const std::string& text) {
    if (complaint_.empty()) complaint_ = text;
  }
  const std::string& Complaint() const { return complaint_; }

  void NeedsOther(const std::string& name, const std::string& other) {
    if (arguments_.Has(name) && !arguments_.Has(other)) {
      Complain("--" + name + " goes with --" + other + ".");
    }
  }
  void NotTogether(const std::string& name, const std::string& other) {
    if (arguments_.Has(name) && arguments_.Has(other)) {
      Complain("--" + name + " and --" + other + " do not go together.");
    }
  }
  std::string Address(const std::string& name) {
    std::string text = arguments_.Value(name);
    if (arguments_.Has(name) && !IsRigAddress(text)) {
      Complain("--" + name + " takes HOST:PORT, for example 127.0.0.1:4532.");
    }
    return text;
  }
  int Number(const std::string& name, int fallback, int least, int most) {
    if (!arguments_.Has(name)) return fallback;
    const auto value = ParseWhole(arguments_.Value(name));
    if (value && *value >= least && *value <= most) return *value;
    Complain("--" + name + " takes a whole number from " + std::to_string(least) + " to " +
             std::to_string(most) + ".");
    return fallback;
  }
  std::optional<double> Seconds(const std::string& name) {
    if (!arguments_.Has(name)) return std::nullopt;
    constexpr double kMost = 1e9;
    const auto value = ParseNumber(arguments_.Value(name));
    if (value && *value >= 0 && *value <= kMost) return value;
    Complain("--" + name + " takes seconds, for example 90 or 12.5.");
    return std::nullopt;
  }

 private:
  const Arguments& arguments_;
  std::string complaint_;
};

void ParseSize(const std::string& size, Checker& checker, AnalyseOptions& analyse) {
  const size_t cross = size.find('x');
  const auto width = ParseWhole(size.substr(0, cross));
  const auto height =
      cross == std::string::npos ? std::nullopt : ParseWhole(size.substr(cross + 1));
  if (!width || !height || *width < 16 || *width > 8192 || *height < 16 || *height > 4096) {
    checker.Complain("--size takes WIDTHxHEIGHT, from 16x16 to 8192x4096.");
    return;
  }
  analyse.width = analyse.plotWidth = *width;
  analyse.height = analyse.plotHeight = *height;
}

void ParseAnalyse(const Arguments& arguments, Checker& checker, AnalyseOptions& analyse) {
  analyse.file = TextPath(arguments.Value("analyse"));
  analyse.csv = TextPath(arguments.Value("csv"));
  analyse.image = TextPath(arguments.Value("image"));
  analyse.spectrogram = TextPath(arguments.Value("spectrogram"));
  analyse.fromSeconds = checker.Seconds("from").value_or(0.0);
  analyse.toSeconds = checker.Seconds("to");
  if (analyse.toSeconds && *analyse.toSeconds <= analyse.fromSeconds) {
    checker.Complain("--to has to be later than --from.");
  }
  analyse.mode = checker.Number("mode", 0, 0, 69);
  if (analyse.mode != 0 && analyse.mode != 1 && analyse.mode != 69) {
    checker.Complain("--mode takes 0, 1 or 69.");
  }
  analyse.precision = checker.Number("precision", 1, 1, 4);
  analyse.slider = checker.Number("slider", 15, 1, 100);
  analyse.waterfall = arguments.Has("waterfall");
  if (arguments.Has("size")) ParseSize(arguments.Value("size"), checker, analyse);
}

void ParseQts(const Arguments& arguments, Options& options) {
  for (const KnownOption& option : kQts) {
    if (!arguments.Has(option.name)) continue;
    options.qtArguments.push_back(std::string("-") + option.name);
    if (option.value != nullptr) options.qtArguments.push_back(arguments.Value(option.name));
  }
  options.namesStyle = arguments.Has("style");
  options.platform = arguments.Value("platform");
  options.display = arguments.Value("display");
}

}  // namespace

Options ParseOptions(std::span<const std::string> texts, const std::string& versionText) {
  std::vector<KnownOption> known(std::begin(kKnown), std::end(kKnown));
  known.insert(known.end(), std::begin(kQts), std::end(kQts));
  const Arguments arguments(texts, known);
  Options options;
  Checker checker(arguments);
  bool reset = false;
  for (const std::string& other : arguments.Others()) {
    if (AsksForReset(other)) {
      reset = true;
    } else {
      checker.Complain("Unexpected argument \"" + other + "\".");
    }
  }
  for (const char* name : kOnlyAnalysing) checker.NeedsOther(name, "analyse");
  for (const char* name : kOnlySpectrogram) checker.NeedsOther(name, "spectrogram");
  for (const char* name : kOnlyHeadless) checker.NeedsOther(name, "headless");
  for (const char* name : kNotAnalysing) checker.NotTogether(name, "analyse");
  for (const char* name : kNotWithPresets) {
    checker.NotTogether("export-presets", name);
    checker.NotTogether("import-presets", name);
  }
  checker.NotTogether("export-presets", "import-presets");
  checker.NotTogether("demo", "input");
  if (reset) {
    for (const char* name : kNotWithReset) {
      if (arguments.Has(name))
        checker.Complain(std::string("A reset does not go with --") + name + ".");
    }
  } else {
    checker.NeedsOther("headless", "seconds");
  }

  options.windowless = arguments.Has("headless");
  options.demo = arguments.Has("demo");
  options.dataFolder = TextPath(arguments.Value("data-folder"));
  options.input = TextPath(arguments.Value("input"));
  options.audioDevice = arguments.Value("audio-device");
  options.rigAddresses = {checker.Address("rig1"), checker.Address("rig2")};
  options.serialPort = TextPath(arguments.Value("serial-port"));
  options.engineFolder = TextPath(arguments.Value("engine-folder"));
  options.engineTitle = arguments.Value("engine-title");
  options.logFile = TextPath(arguments.Value("log"));
  options.seconds = checker.Number("seconds", 0, 1, 1000000);
  options.screenshot = TextPath(arguments.Value("screenshot"));
  options.exportPresets = TextPath(arguments.Value("export-presets"));
  options.importPresets = TextPath(arguments.Value("import-presets"));
  ParseAnalyse(arguments, checker, options.analyse);
  ParseQts(arguments, options);

  if (arguments.Has("help") || arguments.Has("h")) {
    options.run = Options::Run::Help;
    options.text = UsageText();
  } else if (arguments.Has("version") || arguments.Has("v")) {
    options.run = Options::Run::Version;
    options.text = "VELT-SA " + versionText + "\n";
  } else if (!checker.Complaint().empty()) {
    options.run = Options::Run::Invalid;
    options.text = checker.Complaint() + "\n\n" + UsageText();
    options.text.pop_back();  // the last line's end
  } else if (reset) {
    options.run = Options::Run::Reset;
  } else if (arguments.Has("analyse")) {
    options.run = Options::Run::Analyse;
  } else if (arguments.Has("export-presets")) {
    options.run = Options::Run::ExportPresets;
  } else if (arguments.Has("import-presets")) {
    options.run = Options::Run::ImportPresets;
  } else if (arguments.Has("list-audio-devices")) {
    options.run = Options::Run::ListDevices;
  } else if (arguments.Has("headless")) {
    options.run = Options::Run::Headless;
  }
  return options;
}

}  // namespace velt
