// The program that plays the engine, started in a folder of its own.
#pragma once

#include <cstdint>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "support/process.h"

namespace velt {

// What it has written into its log.
struct EngineLog {
  struct Line {
    int64_t atMs;  // since 1970
    std::string text;
  };
  std::filesystem::path folder;

  std::vector<Line> Lines() const {
    std::vector<Line> lines;
    std::istringstream text(ReadText(folder / "engine.log"));
    for (Line line; text >> line.atMs && text.get() && std::getline(text, line.text);) {
      lines.push_back(line);
    }
    return lines;
  }
  // What of its lines begins so, without that and with ", " between them.
  std::string All(const std::string& beginning) const {
    std::string all;
    for (const Line& line : Lines()) {
      if (!line.text.starts_with(beginning)) continue;
      all += (all.empty() ? "" : ", ") + line.text.substr(beginning.size());
    }
    return all;
  }
  std::string Chords() const { return All("chord "); }
  // Asks it for something; true when it has seen that.
  bool Request(const std::string& line) const {
    const auto file = folder / "engine.do";
    std::ofstream(folder / "engine.new") << line << '\n';
    std::filesystem::rename(folder / "engine.new", file);
    return WaitUntil([&] { return !std::filesystem::exists(file); }, std::chrono::seconds(5));
  }
};

class JavaEngine {
 public:
  // Its window has the title; without one it has the engine's usual one.
  JavaEngine(const std::vector<std::string>& environment, const std::string& title) {
    if (!title.empty()) folder_.Write("zoka.ver", title + "\n");
    process_ = std::make_unique<Process>(
        std::vector<std::string>{"env", "-C", folder_.Path().string(), "java", "-jar", VELT_JAR},
        Process::Options{.environment = environment, .output = folder_.Path() / "output"});
  }
  const EngineLog log() const { return {folder_.Path()}; }
  Process& Program() { return *process_; }

 private:
  TempFolder folder_;
  std::unique_ptr<Process> process_;
};

}  // namespace velt
