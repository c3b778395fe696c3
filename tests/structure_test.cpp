// Reads the sources themselves: who includes whom, words that must not be used where the window's
// thread could wait or a number could be converted without a check, and callbacks left to be
// filled.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
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

// The text between quotes, or between angle brackets.
Lines IncludesOf(const Lines& lines, const std::string& open, const std::string& close) {
  const std::regex pattern(R"(^\s*#\s*include\s*)" + open + "([^\">]+)" + close);
  Lines includes;
  std::smatch match;
  for (const std::string& line : lines) {
    if (std::regex_search(line, match, pattern)) includes.push_back(match[1]);
  }
  return includes;
}

Findings WrongIncludes(const Tree& tree) {
  // The window and the adapters may know more; the processors' instructions have headers too,
  // and the guardian is close to the system.
  static const std::map<std::string, std::regex> own{
      {"spectrum", std::regex("[a-z_]+|[ei]mmintrin\\.h")},
      {"guardian", std::regex("[a-z_]+|((arpa|linux|net|netinet|sys)/)?[a-z]+\\.h")}};
  static const std::regex standard("[a-z_]+");
  static const std::set<std::string> guardians{"event", "text", "ports"};
  static const std::set<std::string> aroundGuardian{"app", "adapters/guardian"};
  Findings findings;
  for (const auto& [path, lines] : tree) {
    const std::string from = FolderOf(path);
    if (FloorOf(from) < 0) findings.insert(path + " is in a folder without a floor");
    for (const std::string& target : IncludesOf(lines, "\"", "\"")) {
      const std::string to = FolderOf(target);
      if (!tree.contains(target) || (to != from && FloorOf(to) >= FloorOf(from)) ||
          (from == "spectrum" && to != from && to != "text") ||
          (from == "guardian" && to != from && !guardians.contains(to)) ||
          (to == "guardian" && to != from && !aroundGuardian.contains(from))) {
        findings.insert(path + " includes " + target);
      }
    }
    for (const std::string& target : IncludesOf(lines, "<", ">")) {
      const std::regex& allowed = own.contains(from) ? own.at(from) : standard;
      if (FloorOf(from) < 8 && !regex_match(target, allowed)) {
        findings.insert(path + " includes <" + target + ">");
      }
    }
  }
  return findings;
}

// Files that reach themselves by way of their includes: takes away again and again what includes
// nothing that is left.
Findings Circles(const Tree& tree) {
  std::map<std::string, Lines> left;
  for (const auto& [path, lines] : tree) left[path] = IncludesOf(lines, "\"", "\"");
  while (std::erase_if(left, [&left](const auto& file) {
    return std::ranges::none_of(file.second, [&](const auto& to) { return left.contains(to); });
  })) {
  }
  Findings findings;
  for (const auto& file : left) findings.insert(file.first);
  return findings;
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
      R"(\b(exec|processEvents|u?sleep|nanosleep|msleep|sleep_for|sleep_until|waitFor\w*|)"
      R"(exit|_exit|_Exit|quick_exit|abort|terminate|sto[ild]|stof|stoul|stol[ld]|stoull|)"
      R"(ato[ilf]|atoll|strto\w+|sscanf|from_chars|l?l?round|l?l?rint|nearbyint)\s*\(|)"
      R"(\b(QEventLoop)\b)");
  Findings findings;
  for (const auto& [path, lines] : tree) {
    for (const std::string& line : lines) {
      const std::string code = CodeOf(line);
      for (std::sregex_iterator match(code.begin(), code.end(), pattern), end; match != end;
           ++match) {
        const std::string word = match->str(1) + match->str(2);
        if (!word.empty()) findings.insert(path + " " + word);
      }
    }
  }
  return findings;
}

// The insides of angle brackets taken away.
std::string WithoutTemplates(const std::string& code) {
  std::string rest;
  int depth = 0;
  for (size_t i = 0; i < code.size(); ++i) {
    if (code[i] == '<') ++depth;
    if (depth == 0) rest += code[i];
    if (code[i] == '>' && depth > 0 && code[i - 1] != '-') --depth;
  }
  return rest;
}

// Whether the declaration names the pattern outside of parameter lists.
bool NamesOutsideParameters(const std::string& code, const std::regex& pattern) {
  for (std::sregex_iterator match(code.begin(), code.end(), pattern), end; match != end; ++match) {
    const auto here = code.begin() + match->position();
    if (std::count(code.begin(), here, '(') == std::count(code.begin(), here, ')')) return true;
  }
  return false;
}

// Finds the classes of one header and their members that everybody may fill with a callback.
class CallbackMembers {
 public:
  CallbackMembers(const Lines& lines, const std::regex& callback) : callback_(callback) {
    static const std::regex left("\"\"");  // of texts and comments
    for (const std::string& line : lines) {
      if (!line.starts_with('#')) code_ += std::regex_replace(CodeOf(line), left, "") + ' ';
    }
    for (size_t i = 0; i < code_.size(); ++i) Take(i);
  }
  Findings found;

 private:
  enum class Scope { Namespace, Public, Hidden };  // Hidden: from whoever is outside of the class

  void Take(size_t& i) {
    const char c = code_[i];
    if (c == ';') return EndStatement();
    if (c == '{') return Open(i);
    if (c == '}') {
      if (scopes_.size() > 1) scopes_.pop_back();
      return statement_.clear();
    }
    static const std::regex label("\\s*(public|protected|private|Q_SIGNALS)( slots)?\\s*");
    std::smatch match;
    if (c == ':' && std::regex_match(statement_, match, label)) {
      scopes_.back() = match[1] == "public" ? Scope::Public : Scope::Hidden;
      return statement_.clear();
    }
    statement_ += c;
  }

  void Open(size_t& i) {
    static const std::regex space("\\b(namespace|extern)\\b");
    static const std::regex type("\\b(class|struct|union)\\b");
    const std::string bare = WithoutTemplates(statement_);
    const bool function = bare.substr(0, bare.find('=')).find('(') != std::string::npos;
    std::smatch match;
    if (std::regex_search(bare, space)) {
      scopes_.push_back(Scope::Namespace);
    } else if (!function && bare.find("enum") == std::string::npos &&
               std::regex_search(bare, match, type)) {
      scopes_.push_back(match[1] == "class" ? Scope::Hidden : Scope::Public);
    } else {
      // A function's body or an initial value.
      for (int depth = 1; depth > 0 && ++i < code_.size();) {
        depth += code_[i] == '{' ? 1 : code_[i] == '}' ? -1 : 0;
      }
      if (!function) return;
    }
    statement_.clear();
  }

  void EndStatement() {
    static const std::regex noMember("\\s*(using|typedef|friend)\\b");
    static const std::regex name("(\\w+)\\s*$");
    std::string bare = WithoutTemplates(statement_);
    bare = bare.substr(0, bare.find('='));
    std::smatch match;
    if (scopes_.back() == Scope::Public && std::ranges::count(scopes_, Scope::Hidden) == 0 &&
        !std::regex_search(statement_, noMember, std::regex_constants::match_continuous) &&
        bare.find('(') == std::string::npos && NamesOutsideParameters(statement_, callback_) &&
        std::regex_search(bare, match, name)) {
      found.insert(match[1]);
    }
    statement_.clear();
  }

  const std::regex& callback_;
  std::string code_, statement_;
  std::vector<Scope> scopes_{Scope::Namespace};
};

// What a lower floor calls is an Event<>, or a parameter that is used once; whoever puts the
// program together, on the top floor, may keep what it likes. As "path member".
Findings PublicCallbacks(const Tree& tree) {
  static const std::regex alias(R"(\busing\s+(\w+)\s*=[^;]*std::function)");
  std::string names = R"(\bstd::function\b)";
  for (const auto& [path, lines] : tree) {
    std::smatch match;
    for (const std::string& line : lines) {
      if (std::regex_search(line, match, alias)) names += "|\\b" + match.str(1) + "\\b";
    }
  }
  const std::regex callback(names);
  Findings findings;
  for (const auto& [path, lines] : tree) {
    if (!path.ends_with(".h") || FolderOf(path) == "app") continue;
    for (const std::string& member : CallbackMembers(lines, callback).found) {
      findings.insert(path + " " + member);
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

TEST(Structure, TheSourcesKeepTheRules) {
  const Findings allowedWords{
      "app/main.cpp exec",                         // the loop of the runs without a window
      "app/run_window.cpp exec",                   // the one event loop of the program
      "adapters/demo/generated_signal.cpp lrint",  // each sample, bounded by its amplitudes
      "adapters/rigctld/tcp_channel.cpp waitForConnected",  // the release at an end, with a limit
      "adapters/rigctld/tcp_channel.cpp waitForBytesWritten",  // the same
      "adapters/soundfile/sound_file_reader.cpp nearbyint",    // each sample, clamped right before
      "adapters/system/linux_system_info.cpp from_chars",  // numbers inside a text, both checked
      "text/numbers.cpp from_chars",                       // the checked conversions are made here
  };
  const Findings allowedCallbacks{
      "ports/prompts.h choose",  // data: what a line of a pop-up menu does, handed over with it
  };
  const Tree tree = ReadSources();
  ASSERT_GT(tree.size(), 100U);
  EXPECT_EQ(WrongIncludes(tree), Findings{});
  EXPECT_EQ(Circles(tree), Findings{});
  EXPECT_EQ(ForbiddenWords(tree), allowedWords);
  EXPECT_EQ(PublicCallbacks(tree), allowedCallbacks);
  for (const auto& [path, lines] : tree) EXPECT_LE(lines.size(), 600U) << path;
}

TEST(Structure, BrokenRulesAreSeen) {
  struct Case {
    std::string path, line;
    bool good;
  };
  for (const Case& c :
       {Case{"rig/b.h", "#include \"platform/a.h\"", true},
        Case{"rig/b.cpp", "Say(\"call exit( \\\" now\"); x = '\"';", true},
        Case{"spectrum/b.h", "#include \"ports/a.h\"", false},
        Case{"rig/b.h", "  #  include \"ui/a.h\"", false},
        Case{"adapters/x/b.h", "#include \"ui/a.h\"", false},
        Case{"ui/b.h", "#include \"a.h\"", false},
        Case{"ui/b.h", "#include \"ui/b.h\"", false},
        Case{"guardian/b.h", "#include <sys/socket.h>", true},
        Case{"guardian/b.h", "#include <QObject>", false},
        Case{"guardian/b.h", "#include \"form/a.h\"", false},
        Case{"app/b.h", "#include \"guardian/a.h\"", true},
        Case{"rig/b.h", "#include \"guardian/a.h\"", false},
        Case{"adapters/x/b.h", "#include \"guardian/a.h\"", false},
        Case{"attic/b.h", "", false},
        Case{"rig/b.h", "#include <QString>", false},
        Case{"ui/b.cpp", "menu.exec();", false},
        Case{"ui/b.cpp", "QEventLoop loop;", false},
        Case{"rig/b.cpp", "Say(\"//\"); usleep(1);", false},
        Case{"rig/b.cpp", "n = '1' + std::stoi(text);", false},
        Case{"rig/b.h", "struct B { std::function<void()> told; };", false},
        Case{"app/b.h", "struct B { std::function<void()> told; };", true},
        Case{"ui/b.h", "namespace a { class B { int c; public: std::function<int()> d; }; }",
             false},
        Case{"ui/b.h", "class B { public: int C() { return 1; } std::function<int()> d; };", false},
        Case{"ui/b.h", "class B { public: std::function<int()> d = [] { return 1; }; };", false},
        Case{"ui/b.h", "class B { public: std::function<int()> d{}; private: int e; };", false},
        Case{"ui/b.h", "struct B { struct C { int e; }; std::vector<std::function<C()>> d; };",
             false},
        Case{"ui/b.h", "class B { public: using C = std::function<int()>; C d; };", false},
        Case{"ui/b.h", "template <class T> struct B : A<T> { std::function<void(T)> d; };", false},
        Case{"ui/b.h", "class B { public: /* c */ private: std::function<int()> d; };", true},
        Case{"ui/b.h", "class B { std::function<int()> c; struct D { std::function<int()> e; }; };",
             true},
        Case{"ui/b.h", "struct B { enum class C { D }; using E = std::function<int()>; };", true},
        Case{"ui/b.h", "struct B { void C(std::function<int()> d); std::function<int()> E(); };",
             true},
        Case{"ui/b.h", "struct B { B(std::function<int()> c) : d(c) {} private: E<int()> d; };",
             true}}) {
    Tree tree{{"ports/a.h", {}},
              {"platform/a.h", {}},
              {"form/a.h", {}},
              {"guardian/a.h", {}},
              {"ui/a.h", {}}};
    tree[c.path] = {c.line};
    Findings findings = WrongIncludes(tree);
    findings.merge(Circles(tree));
    findings.merge(ForbiddenWords(tree));
    findings.merge(PublicCallbacks(tree));
    EXPECT_EQ(findings.empty(), c.good) << c.path << ": " << c.line;
  }
}

}  // namespace
