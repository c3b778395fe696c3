// Reads the sources themselves: who includes whom, words that must not be used where the window's
// thread could wait or a number could be converted without a check, and callbacks left to be
// filled.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <ranges>
#include <regex>
#include <set>

namespace {

using Lines = std::vector<std::string>;
using Tree = std::map<std::string, Lines>;  // by path below src
using Findings = std::set<std::string>;

// "rig" for rig/ptt.cpp, "adapters/qt" for adapters/qt/qt_log.cpp.
std::string FolderOf(const std::string& path) {
  return std::filesystem::path(path).parent_path().string();
}

// -1 for a folder that has no floor yet.
int FloorOf(const std::string& folder) {
  static const std::map<std::string, int> floors{
      {"event", 0},    {"text", 1},     {"form", 1},    {"ports", 1},     {"guardian", 2},
      {"spectrum", 2}, {"platform", 2}, {"dialogs", 2}, {"rig", 3},       {"engine", 4},
      {"audio", 5},    {"presets", 5},  {"display", 6}, {"recording", 6}, {"shell", 7},
      {"ui", 8},       {"app", 9}};
  if (folder.starts_with("adapters/")) return 8;
  return floors.contains(folder) ? floors.at(folder) : -1;
}

Findings WrongIncludes(const Tree& tree) {
  // The window and the adapters may know more; the processors' instructions have headers too,
  // and the guardian is close to the system.
  static const std::regex include(R"(^\s*#\s*include\s*([<"])([^">]+))");
  static const std::regex allowed(
      "[a-z]+/[a-z_]+|spectrum/[ei]mmintrin\\.h|guardian/((arpa|linux|net|netinet|sys)/"
      ")?[a-z]+\\.h");
  static const std::set<std::string> aroundGuardian{"app", "adapters/guardian"};
  Findings findings;
  for (const auto& [path, lines] : tree) {
    const std::string from = FolderOf(path);
    if (FloorOf(from) < 0) findings.insert(path + " is in a folder without a floor");
    for (const std::string& line : lines) {
      std::smatch match;
      if (!std::regex_search(line, match, include)) continue;
      const std::string target = match[2], to = FolderOf(target);
      const bool right =
          match[1] == "<"
              ? FloorOf(from) >= 8 || regex_match(from + "/" + target, allowed)
              : tree.contains(target) &&
                    (to == from ||
                     (FloorOf(to) < FloorOf(from) && (from != "spectrum" || to == "text") &&
                      (from != "guardian" || to != "form") &&
                      (to != "guardian" || aroundGuardian.contains(from))));
      if (!right) findings.insert(path + " includes " + target);
    }
  }
  return findings;
}

// Files that reach themselves by way of their includes: takes away again and again what includes
// nothing that is left.
Findings Circles(Tree left) {
  const auto includesOneThatIsLeft = [&left](const std::string& line) {
    const size_t open = line.find("#include \"");
    return open == 0 && left.contains(line.substr(10, line.find('"', 10) - 10));
  };
  while (std::erase_if(left, [&](const auto& file) {
    return std::ranges::none_of(file.second, includesOneThatIsLeft);
  })) {
  }
  const auto names = std::views::keys(left);
  return {names.begin(), names.end()};
}

// Without comments and the insides of texts and character literals.
std::string CodeOf(const std::string& line) {
  static const std::regex noise(R"("(\\.|[^"\\])*"|\B'(\\.|[^'\\])+'|//.*|/\*.*?\*/)");
  return std::regex_replace(line, noise, "\"\"");
}

// Waiting, ending the program and unchecked conversions, as "path word".
Findings ForbiddenWords(const Tree& tree) {
  // A connection's own abort() ends nothing but the connection.
  static const std::regex pattern(
      R"((?:\.|->)abort\s*\(|)"
      R"(\b(QEventLoop\b|(?:exec|processEvents|u?sleep|nanosleep|msleep|sleep_for|sleep_until|)"
      R"(waitFor\w*|exit|_exit|_Exit|quick_exit|abort|terminate|sto[ild]|stof|stoul|)"
      R"(stol[ld]|stoull|ato[ilf]|atoll|strto\w+|sscanf|from_chars|l?l?round|l?l?rint|nearbyint)(?=\s*\()))");
  Findings findings;
  for (const auto& [path, lines] : tree) {
    for (const std::string& line : lines) {
      const std::string code = CodeOf(line);
      for (std::sregex_iterator match(code.begin(), code.end(), pattern), end; match != end;
           ++match) {
        if (match->length(1) != 0) findings.insert(path + " " + match->str(1));
      }
    }
  }
  return findings;
}

// Members that others may fill with a callback, and other names for one; those for a class's own
// use end with "_". What a lower floor calls is an Event<>, or a parameter that is used once;
// whoever puts the program together, on the top floor, may keep what it likes. As "path member".
Findings PublicCallbacks(const Tree& tree) {
  // From the start of a declaration on, so that no parameter is meant.
  static const std::regex member(
      R"((?:^|[;{}]|: )[^;{}(]*\bstd::function\b(?:<[^;]*>)?[&*]*\s+(\w*[^_\W])\s*[;={])"
      R"(|\busing\s+(\w+)\s*=[^;]*std::function)");
  Findings findings;
  std::smatch match;
  for (const auto& [path, lines] : tree) {
    if (!path.ends_with(".h") || FolderOf(path) == "app") continue;
    std::string code;
    for (const std::string& line : lines) {
      code = code.substr(code.find_last_of(";{}") + 1) + " " + CodeOf(line);
      if (!std::regex_search(code, match, member)) continue;
      findings.insert(path + " " + match.str(1) + match.str(2));
    }
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

Findings AllFindings(const Tree& tree) {
  Findings findings = Circles(tree);
  findings.merge(WrongIncludes(tree));
  findings.merge(ForbiddenWords(tree));
  findings.merge(PublicCallbacks(tree));
  return findings;
}

TEST(Structure, TheSourcesKeepTheRules) {
  const Findings allowed{
      "app/main.cpp exec",                         // the loop of the runs without a window
      "app/run_window.cpp exec",                   // the one event loop of the program
      "adapters/demo/generated_signal.cpp lrint",  // each sample, bounded by its amplitudes
      "adapters/rigctld/tcp_channel.cpp waitForConnected",  // the release at an end, with a limit
      "adapters/rigctld/tcp_channel.cpp waitForBytesWritten",  // the same
      "adapters/soundfile/sound_file_reader.cpp nearbyint",    // each sample, clamped right before
      "adapters/system/linux_system_info.cpp from_chars",  // numbers inside a text, both checked
      "text/numbers.cpp from_chars",                       // the checked conversions are made here
      "adapters/qt/qt_prompts.h Chosen",                   // private
      "adapters/qt/qt_scheduler.h run",                    // of a struct that nobody else sees
      "adapters/x11/x_connection.h answered",              // the same
      "event/event.h Listener",                            // a parameter's
      "ports/engine_window.h Done",                        // the same
      "ports/prompts.h choose",     // data: what a line of a pop-up menu does, handed over with it
      "shell/settings.h fallback",  // rows of a table that nobody else sees
      "shell/settings.h load",
      "shell/settings.h save",
  };
  const Tree tree = ReadSources();
  ASSERT_GT(tree.size(), 100U);
  EXPECT_EQ(AllFindings(tree), allowed);
  for (const auto& [path, lines] : tree) EXPECT_LE(lines.size(), 600U) << path;
}

TEST(Structure, BrokenRulesAreSeen) {
  struct Case {
    bool good;
    std::string line, path = "rig/b.h";
  };
  for (const Case& c :
       {Case{true, "#include \"platform/a.h\""}, Case{false, "#include \"rig/b.h\""},
        Case{true, "Say(\"call exit( \\\" now\"); x = '\"';"},
        Case{false, "#include \"ports/a.h\"", "spectrum/b.h"},
        Case{false, "#include \"ui/a.h\"", "adapters/x/b.h"},
        Case{true, "#include <sys/socket.h>", "guardian/b.h"},
        Case{false, "#include \"form/a.h\"", "guardian/b.h"},
        Case{false, "#include \"guardian/a.h\""}, Case{false, "", "attic/b.h"},
        Case{false, "#include <QString>"}, Case{false, "Say(\"//\"); usleep(1);"},
        Case{false, "n = '1' + std::stoi(text);"},
        Case{true, "struct B { std::function<void()> told; };", "app/b.h"},
        Case{false, "class B { public: std::function<int()>\n d = [] { return 1; }; };"},
        Case{false, "struct B { struct C { int e; }; std::vector<std::function<C()>> d; };"},
        Case{false, "class B { public: using C = std::function<int()>; C d; };"},
        Case{true, "struct B { void C(std::function<int()> d); std::function<int()> E(); };"}}) {
    Tree tree{{"ports/a.h", {}}, {"platform/a.h", {}}, {"form/a.h", {}}, {"guardian/a.h", {}}};
    const size_t end = std::min(c.line.find('\n'), c.line.size());
    tree["ui/a.h"] = {};
    tree[c.path] = {c.line.substr(0, end), c.line.substr(end)};
    EXPECT_EQ(AllFindings(tree).empty(), c.good) << c.path << ": " << c.line;
  }
}

}  // namespace
