// Reads the sources themselves: who includes whom, and words that must not be used where the
// window's thread could wait or a number could be converted without a check.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;
using Tree = std::map<std::string, Lines>;  // by path below src
using Findings = std::vector<std::string>;

struct Include {
  std::string target;
  bool own;  // in quotes: a file below src
};

// "rig" for rig/ptt.cpp, "adapters/qt" for adapters/qt/qt_log.cpp.
std::string FolderOf(const std::string& path) {
  return std::filesystem::path(path).parent_path().string();
}

// 0 for a folder that has no floor yet.
int FloorOf(const std::string& folder) {
  static const std::map<std::string, int> floors{
      {"text", 1},      {"form", 1},  {"ports", 1},  {"spectrum", 2}, {"platform", 2},
      {"dialogs", 2},   {"rig", 3},   {"engine", 4}, {"audio", 5},    {"presets", 5},
      {"recording", 6}, {"shell", 7}, {"ui", 8},     {"app", 9}};
  if (folder.starts_with("adapters/")) return 8;
  const auto found = floors.find(folder);
  return found == floors.end() ? 0 : found->second;
}

std::vector<Include> IncludesOf(const Lines& lines) {
  static const std::regex pattern(R"(^\s*#\s*include\s*(["<])([^">]+)[">])");
  std::vector<Include> includes;
  std::smatch match;
  for (const std::string& line : lines) {
    if (std::regex_search(line, match, pattern)) includes.push_back({match[2], match[1] == "\""});
  }
  return includes;
}

// Without comments and the insides of texts and character literals.
std::string CodeOf(const std::string& line) {
  static const std::regex noise(R"("(\\.|[^"\\])*"|\B'(\\.|[^'\\])+'|//.*|/\*.*?\*/)");
  return std::regex_replace(line, noise, "\"\"");
}

Findings WrongDirections(const Tree& tree) {
  Findings findings;
  for (const auto& [path, lines] : tree) {
    const std::string from = FolderOf(path);
    if (FloorOf(from) == 0) findings.push_back(path + " is in a folder without a floor");
    for (const Include& include : IncludesOf(lines)) {
      if (!include.own) continue;
      const std::string to = FolderOf(include.target);
      if (!tree.contains(include.target)) {
        findings.push_back(path + " includes " + include.target + ", which src does not have");
      } else if (to != from && FloorOf(to) >= FloorOf(from)) {
        findings.push_back(path + " includes " + include.target + " of its own floor or above");
      } else if (from == "spectrum" && to != from && to != "text") {
        findings.push_back(path + " includes " + include.target + ": it knows no control, no port");
      }
    }
  }
  return findings;
}

// Walks the includes depth first; `open` is the way from the start to here.
void Walk(const Tree& tree, const std::string& path, std::set<std::string>& done, Lines& open,
          Findings& findings) {
  if (std::find(open.begin(), open.end(), path) != open.end()) {
    findings.push_back(path + " includes itself by way of " + open.back());
  }
  if (!done.insert(path).second) return;
  open.push_back(path);
  for (const Include& include : IncludesOf(tree.at(path))) {
    if (tree.contains(include.target)) Walk(tree, include.target, done, open, findings);
  }
  open.pop_back();
}

Findings Circles(const Tree& tree) {
  Findings findings;
  std::set<std::string> done;
  Lines open;
  for (const auto& entry : tree) Walk(tree, entry.first, done, open, findings);
  return findings;
}

// Below the window and the adapters there is the standard library and nothing else.
Findings ForeignHeaders(const Tree& tree) {
  // The processors' own instructions.
  static const std::set<std::string> alsoInSpectrum{"emmintrin.h", "immintrin.h"};
  static const std::regex standard("[a-z_]+");
  Findings findings;
  for (const auto& [path, lines] : tree) {
    const std::string folder = FolderOf(path);
    if (FloorOf(folder) >= 8) continue;
    for (const Include& include : IncludesOf(lines)) {
      if (include.own || std::regex_match(include.target, standard)) continue;
      if (folder == "spectrum" && alsoInSpectrum.contains(include.target)) continue;
      findings.push_back(path + " includes <" + include.target + "> below the window");
    }
  }
  return findings;
}

struct Allowed {
  std::string path;
  std::string word;
  std::string reason;
  auto operator<=>(const Allowed&) const = default;
};

const std::vector<Allowed> allowedWords{
    {"app/main.cpp", "exec", "the loop of the runs without a window"},
    {"app/run_window.cpp", "exec", "the one event loop of the program"},
    {"adapters/demo/generated_signal.cpp", "lrint", "each sample, bounded by its amplitudes"},
    {"adapters/rigctld/tcp_channel.cpp", "waitForConnected", "the release at an end, with a limit"},
    {"adapters/rigctld/tcp_channel.cpp", "waitForBytesWritten", "the same"},
    {"adapters/soundfile/sound_file_reader.cpp", "nearbyint", "each sample, clamped right before"},
    {"adapters/system/linux_system_info.cpp", "from_chars", "numbers inside a text, both checked"},
    {"text/numbers.cpp", "from_chars", "the checked conversions are made here"},
};

// Waiting, ending the program and unchecked conversions. An entry of the list that nothing needs
// is told too, so that the list stays short.
Findings ForbiddenWords(const Tree& tree, const std::vector<Allowed>& allowed) {
  // A connection's own abort() ends nothing but the connection.
  static const std::regex pattern(
      R"((?:\.|->)abort\s*\(|)"
      R"(\b(exec|processEvents|u?sleep|nanosleep|msleep|sleep_for|sleep_until|waitFor\w*|)"
      R"(exit|_exit|_Exit|quick_exit|abort|terminate|sto[ild]|stof|stoul|stol[ld]|stoull|)"
      R"(ato[ilf]|atoll|strto\w+|sscanf|from_chars|l?l?round|l?l?rint|nearbyint)\s*\(|)"
      R"(\b(QEventLoop)\b)");
  Findings findings;
  std::set<Allowed> used;
  for (const auto& [path, lines] : tree) {
    for (const std::string& line : lines) {
      const std::string code = CodeOf(line);
      for (std::sregex_iterator match(code.begin(), code.end(), pattern), end; match != end;
           ++match) {
        if (!(*match)[1].matched && !(*match)[2].matched) continue;
        const std::string word = (*match)[1].matched ? (*match)[1] : (*match)[2];
        const auto entry = std::find_if(
            allowed.begin(), allowed.end(),
            [&path = path, &word](const Allowed& a) { return a.path == path && a.word == word; });
        if (entry == allowed.end()) {
          findings.push_back(path + " uses " + word + ": " + line);
        } else {
          used.insert(*entry);
        }
      }
    }
  }
  for (const Allowed& entry : allowed) {
    if (!used.contains(entry)) findings.push_back(entry.path + " no longer uses " + entry.word);
  }
  return findings;
}

Findings LongFiles(const Tree& tree) {
  Findings findings;
  for (const auto& [path, lines] : tree) {
    if (lines.size() > 600) findings.push_back(path + " has more than 600 lines");
  }
  return findings;
}

Tree ReadSources() {
  const std::filesystem::path root = VELT_SOURCE_FOLDER;
  Tree tree;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
    const std::string extension = entry.path().extension().string();
    if (extension != ".h" && extension != ".cpp") continue;
    Lines& lines = tree[entry.path().lexically_relative(root).generic_string()];
    std::ifstream file(entry.path());
    for (std::string line; std::getline(file, line);) lines.push_back(line);
  }
  return tree;
}

std::string Joined(const Findings& findings) {
  std::string text;
  for (const std::string& finding : findings) text += finding + "\n";
  return text;
}

TEST(Structure, TheSourcesKeepTheRules) {
  const Tree tree = ReadSources();
  ASSERT_GT(tree.size(), 100U);
  EXPECT_EQ(Joined(WrongDirections(tree)), "");
  EXPECT_EQ(Joined(Circles(tree)), "");
  EXPECT_EQ(Joined(ForeignHeaders(tree)), "");
  EXPECT_EQ(Joined(ForbiddenWords(tree, allowedWords)), "");
  EXPECT_EQ(Joined(LongFiles(tree)), "");
}

struct Doctored {
  std::string path;
  std::string line;
  bool good;
};

// The files that the doctored lines include.
Tree TreeWith(const Doctored& doctored) {
  Tree tree{{"text/a.h", {}}, {"ports/a.h", {}},      {"platform/a.h", {}},   {"shell/a.h", {}},
            {"ui/a.h", {}},   {"adapters/x/a.h", {}}, {"adapters/y/a.h", {}}, {"app/a.h", {}}};
  tree[doctored.path].push_back(doctored.line);
  return tree;
}

TEST(Structure, DirectionsAndForeignHeadersAreSeen) {
  const std::vector<Doctored> directions{
      {"rig/b.h", "#include \"platform/a.h\"", true},
      {"app/b.h", "#include \"adapters/x/a.h\"", true},
      {"ui/b.h", "#include \"ui/a.h\"", true},
      {"spectrum/b.h", "#include \"text/a.h\"", true},
      {"text/b.h", "#include \"ports/a.h\"", false},
      {"spectrum/b.h", "#include \"ports/a.h\"", false},
      {"rig/b.h", "  #  include \"shell/a.h\"", false},
      {"ui/b.h", "#include \"adapters/x/a.h\"", false},
      {"adapters/x/b.h", "#include \"ui/a.h\"", false},
      {"adapters/x/b.h", "#include \"adapters/y/a.h\"", false},
      {"ui/b.h", "#include \"app/a.h\"", false},
      {"ui/b.h", "#include \"a.h\"", false},
      {"attic/b.h", "", false},
  };
  for (const Doctored& d : directions) {
    EXPECT_EQ(WrongDirections(TreeWith(d)).empty(), d.good) << d.path << ": " << d.line;
  }
  const std::vector<Doctored> headers{
      {"shell/b.h", "#include <string>", true},
      {"ui/b.h", "#include <QWidget>", true},
      {"spectrum/b.h", "#include <immintrin.h>", true},
      {"rig/b.h", "#include <QString>", false},
      {"shell/b.h", "#include <QtCore/QDir>", false},
      {"audio/b.h", "#include <pulse/def.h>", false},
      {"audio/b.h", "#include <sndfile.h>", false},
      {"audio/b.h", "#include <samplerate.h>", false},
      {"platform/b.h", "#include <unistd.h>", false},
  };
  for (const Doctored& d : headers) {
    EXPECT_EQ(ForeignHeaders(TreeWith(d)).empty(), d.good) << d.path << ": " << d.line;
  }
}

TEST(Structure, CirclesAndLongFilesAreSeen) {
  const std::string a = "#include \"rig/a.h\"";
  const std::string b = "#include \"rig/b.h\"";
  const std::string c = "#include \"rig/c.h\"";
  EXPECT_TRUE(Circles({{"rig/a.h", {b, c}}, {"rig/b.h", {c}}, {"rig/c.h", {}}}).empty());
  EXPECT_FALSE(Circles({{"rig/a.h", {b}}, {"rig/b.h", {c}}, {"rig/c.h", {a}}}).empty());
  EXPECT_FALSE(Circles({{"rig/a.h", {a}}}).empty());

  EXPECT_TRUE(LongFiles({{"rig/a.h", Lines(600)}}).empty());
  EXPECT_FALSE(LongFiles({{"rig/a.h", Lines(601)}}).empty());
}

TEST(Structure, ForbiddenWordsAreSeen) {
  const std::vector<Doctored> words{
      {"rig/b.cpp", "rig.Execute(); CloseAndExit(); rounds(3); // exec()", true},
      {"rig/b.cpp", "Say(\"call exit( \\\" now\"); x = '\"'; y = exitCode;", true},
      {"text/b.cpp", "to_chars(begin, end, 1'000); resto(1);", true},
      {"adapters/x/b.cpp", "socket.abort(); socket->abort();", true},
      {"ui/b.cpp", "menu.exec();", false},
      {"ui/b.cpp", "QCoreApplication::processEvents ();", false},
      {"ui/b.cpp", "QEventLoop loop;", false},
      {"ui/b.cpp", "QThread::msleep(5);", false},
      {"rig/b.cpp", "std::this_thread::sleep_for(1s);", false},
      {"rig/b.cpp", "Say(\"//\"); usleep(1);", false},
      {"adapters/x/b.cpp", "socket.waitForBytesWritten(500);", false},
      {"app/b.cpp", "std::exit(1);", false},
      {"app/b.cpp", "abort();", false},
      {"rig/b.cpp", "n = '1' + std::stoi(text);", false},
      {"rig/b.cpp", "n = std::lround(x);", false},
      {"rig/b.cpp", "n = strtol(text, nullptr, 10);", false},
  };
  for (const Doctored& d : words) {
    EXPECT_EQ(ForbiddenWords(TreeWith(d), {}).empty(), d.good) << d.path << ": " << d.line;
  }
  const Tree tree{{"app/b.cpp", {"app.exec();"}}};
  const Allowed exec{"app/b.cpp", "exec", "the loop"};
  EXPECT_TRUE(ForbiddenWords(tree, {exec}).empty());
  EXPECT_EQ(ForbiddenWords(tree, {exec, {"app/b.cpp", "exit", "gone"}}).size(), 1U);
}

}  // namespace
