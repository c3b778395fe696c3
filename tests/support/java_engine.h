// The program that plays the engine, started in a folder of its own.
#pragma once

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "support/process.h"

namespace velt {

// What it has written into its log.
struct EngineLog {
  std::filesystem::path folder;

  // What of its lines begins so, without that and each with a space behind.
  std::string All(const std::string& beginning) const {
    std::istringstream text(ReadText(folder / "engine.log"));
    std::string all;
    for (std::string time, line; text >> time && text.get() && std::getline(text, line);) {
      if (line.starts_with(beginning)) all += line.substr(beginning.size()) + " ";
    }
    return all;
  }
  // Whether it has opened its window so often, each time leaving a space, or got these chords, in
  // time.
  bool Opens(size_t times) const {
    return WaitUntil([&] { return All("open").size() == times; }, std::chrono::seconds(20));
  }
  bool Chords(const std::string& expected) const {
    return WaitUntil([&] { return All("chord ") == expected; }, std::chrono::seconds(10));
  }
  // Asks it for something; true when it has seen that.
  bool Request(const std::string& line) const {
    const auto file = folder / "engine.do";
    std::ofstream(folder / "engine.new") << line << '\n';
    std::filesystem::rename(folder / "engine.new", file);
    return WaitUntil([&] { return !std::filesystem::exists(file); }, std::chrono::seconds(5));
  }
};

struct JavaEngine {
  JavaEngine(const std::vector<std::string>& environment, const std::string& title) {
    folder.Write("zoka.ver", title + "\n");
    process = std::make_unique<Process>(
        std::vector<std::string>{"env", "-C", folder.Path().string(), "java", "-jar", VELT_JAR},
        Process::Options{.environment = environment, .output = folder / "output"});
  }

  TempFolder folder;
  EngineLog log{folder.Path()};
  std::unique_ptr<Process> process;
};

}  // namespace velt
