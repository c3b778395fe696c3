#include "app/options.h"

#include <QCommandLineParser>
#include <optional>
#include <vector>

#include "adapters/rigctld/server_address.h"
#include "shell/startup.h"
#include "text/numbers.h"
#include "ui/qt_text.h"

namespace velt {
namespace {

struct Known {
  const char* name;
  const char* description;
  const char* value;  // null: a switch
};

constexpr Known kKnown[] = {
    {"demo", "Analyse a generated band, with nothing connected.", nullptr},
    {"input", "Analyse this sound file, repeated, instead of the sound card.", "FILE"},
    {"audio-device", "Capture from this source instead of the default one.", "NAME"},
    {"list-audio-devices", "List the sources of the sound server and end.", nullptr},
    {"rig1", "Where the CAT server of rig 1 is (default 127.0.0.1:4532).", "HOST:PORT"},
    {"rig2", "Where the CAT server of rig 2 is (default 127.0.0.1:4534).", "HOST:PORT"},
    {"data-folder", "Keep data and settings in this folder.", "DIR"},
    {"engine-folder", "Look for the engine in this folder.", "DIR"},
    {"log", "Write a log to this file; it is rotated at 1 MB.", "FILE"},
    {"headless", "Run without a display, for --seconds.", nullptr},
    {"seconds", "How long a headless run takes.", "N"},
    {"screenshot", "Write the window's picture at the end of a headless run.", "FILE.png"},
    {"analyse", "Analyse a sound file as fast as possible, without a window.", "FILE"},
    {"csv", "With --analyse: write one line per block.", "OUT"},
    {"image", "With --analyse: write the display after the last block.", "OUT.png"},
    {"mode", "With --analyse: spectrum mode 0, 1 or 69 (default 0).", "N"},
    {"precision", "With --analyse: resolution 1 to 4 (default 1).", "N"},
    {"slider", "With --analyse: level slider 1 to 100 (default 15).", "N"},
    {"waterfall", "With --analyse: the waterfall instead of the spectrum.", nullptr},
    {"size", "With --analyse: size of the display (default 524x110).", "WxH"},
};

constexpr const char* kOnlyAnalysing[] = {"csv",    "image",     "mode", "precision",
                                          "slider", "waterfall", "size"};
constexpr const char* kOnlyHeadless[] = {"seconds", "screenshot"};
constexpr const char* kNotAnalysing[] = {
    "demo", "input", "audio-device", "headless", "list-audio-devices", "rig1", "rig2"};

// Collects the first complaint.
class Checker {
 public:
  explicit Checker(const QCommandLineParser& parser) : parser_(parser) {}

  void Complain(const QString& text) {
    if (complaint_.isEmpty()) complaint_ = text;
  }
  const QString& Complaint() const { return complaint_; }

  void NeedsOther(const char* name, const char* other) {
    if (parser_.isSet(name) && !parser_.isSet(other)) {
      Complain(QString("--%1 goes with --%2.").arg(name, other));
    }
  }
  void NotTogether(const char* name, const char* other) {
    if (parser_.isSet(name) && parser_.isSet(other)) {
      Complain(QString("--%1 and --%2 do not go together.").arg(name, other));
    }
  }
  std::string Text(const char* name) {
    const QString value = parser_.value(name);
    if (parser_.isSet(name) && value.isEmpty()) {
      Complain(QString("--%1 needs a value.").arg(name));
    }
    return FromQt(value);
  }
  std::string Address(const char* name) {
    std::string text = Text(name);
    if (parser_.isSet(name) && !ParseServerAddress(text)) {
      Complain(QString("--%1 takes HOST:PORT, for example 127.0.0.1:4532.").arg(name));
    }
    return text;
  }
  int Number(const char* name, int fallback, int least, int most) {
    if (!parser_.isSet(name)) return fallback;
    const auto value = ParseWhole(FromQt(parser_.value(name)));
    if (value && *value >= least && *value <= most) return *value;
    Complain(QString("--%1 takes a whole number from %2 to %3.").arg(name).arg(least).arg(most));
    return fallback;
  }

 private:
  const QCommandLineParser& parser_;
  QString complaint_;
};

void ParseSize(const QCommandLineParser& parser, Checker& checker, AnalyseOptions& analyse) {
  if (!parser.isSet("size")) return;
  const QStringList parts = parser.value("size").split('x');
  const auto width = parts.size() == 2 ? ParseWhole(FromQt(parts[0])) : std::nullopt;
  const auto height = parts.size() == 2 ? ParseWhole(FromQt(parts[1])) : std::nullopt;
  if (!width || !height || *width < 16 || *width > 8192 || *height < 16 || *height > 4096) {
    checker.Complain("--size takes WIDTHxHEIGHT, from 16x16 to 8192x4096.");
    return;
  }
  analyse.width = *width;
  analyse.height = *height;
}

void ParseAnalyse(const QCommandLineParser& parser, Checker& checker, AnalyseOptions& analyse) {
  analyse.file = checker.Text("analyse");
  analyse.csv = checker.Text("csv");
  analyse.image = checker.Text("image");
  analyse.mode = checker.Number("mode", 0, 0, 69);
  if (analyse.mode != 0 && analyse.mode != 1 && analyse.mode != 69) {
    checker.Complain("--mode takes 0, 1 or 69.");
  }
  analyse.precision = checker.Number("precision", 1, 1, 4);
  analyse.slider = checker.Number("slider", 15, 1, 100);
  analyse.waterfall = parser.isSet("waterfall");
  ParseSize(parser, checker, analyse);
}

}  // namespace

Options ParseOptions(const QStringList& arguments, const std::string& versionText) {
  QCommandLineParser parser;
  parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
  parser.setApplicationDescription(
      "VELT-SA: audio spectrum analyser and transceiver control.\n"
      "An argument that holds the word \"reset\" deletes all settings and ends.");
  const QCommandLineOption help({"h", "help"}, "Show this help.");
  const QCommandLineOption version({"v", "version"}, "Show the version.");
  parser.addOption(help);
  parser.addOption(version);
  for (const Known& known : kKnown) {
    QCommandLineOption option(known.name, known.description);
    if (known.value != nullptr) option.setValueName(known.value);
    parser.addOption(option);
  }
  const bool parsed = parser.parse(arguments);

  Options options;
  std::vector<std::string> others;
  for (const QString& text : parser.positionalArguments()) others.push_back(FromQt(text));
  for (const QString& text : parser.unknownOptionNames()) others.push_back(FromQt(text));
  if (AsksForReset(others)) {
    options.run = Options::Run::Reset;
    options.dataFolder = FromQt(parser.value("data-folder"));
    return options;
  }

  Checker checker(parser);
  if (!parsed) checker.Complain(parser.errorText());
  if (!parser.positionalArguments().isEmpty()) {
    checker.Complain(QString("Unexpected argument \"%1\".").arg(parser.positionalArguments()[0]));
  }
  for (const char* name : kOnlyAnalysing) checker.NeedsOther(name, "analyse");
  for (const char* name : kOnlyHeadless) checker.NeedsOther(name, "headless");
  for (const char* name : kNotAnalysing) checker.NotTogether(name, "analyse");
  checker.NotTogether("demo", "input");
  if (parser.isSet("headless")) checker.NeedsOther("headless", "seconds");

  options.demo = parser.isSet("demo");
  options.input = checker.Text("input");
  options.audioDevice = checker.Text("audio-device");
  options.rigAddresses = {checker.Address("rig1"), checker.Address("rig2")};
  options.dataFolder = checker.Text("data-folder");
  options.engineFolder = checker.Text("engine-folder");
  options.logFile = checker.Text("log");
  options.seconds = checker.Number("seconds", 0, 1, 1000000);
  options.screenshot = checker.Text("screenshot");
  ParseAnalyse(parser, checker, options.analyse);

  if (parser.isSet(help)) {
    options.run = Options::Run::Help;
    options.text = FromQt(parser.helpText());
  } else if (parser.isSet(version)) {
    options.run = Options::Run::Version;
    options.text = "VELT-SA " + versionText + "\n";
  } else if (!checker.Complaint().isEmpty()) {
    options.run = Options::Run::Invalid;
    options.text = FromQt(checker.Complaint() + "\n\n" + parser.helpText());
  } else if (parser.isSet("analyse")) {
    options.run = Options::Run::Analyse;
  } else if (parser.isSet("list-audio-devices")) {
    options.run = Options::Run::ListDevices;
  } else if (parser.isSet("headless")) {
    options.run = Options::Run::Headless;
  }
  return options;
}

}  // namespace velt
