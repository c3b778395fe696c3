// The program as a user calls it, without any display, with a home of its own.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include "support/process.h"
#include "support/pulse_server.h"

namespace velt {

struct CommandLine : testing::Test {
  TempFolder folder;

  struct Result {
    int exitCode;
    std::string said;
    auto Lines() const { return std::count(said.begin(), said.end(), '\n'); }
    bool Says(const std::string& text) const { return said.find(text) != std::string::npos; }
  };

  Process::Options Surroundings() const {
    const std::string home = folder.Path().string();
    return {.environment = {"HOME=" + home, "XDG_RUNTIME_DIR=" + home, "XDG_CONFIG_HOME=" + home,
                            "DISPLAY=", "WAYLAND_DISPLAY=", "PULSE_SERVER=unix:/nowhere"},
            .output = folder.Path() / "output"};
  }
  Process::Options With(const std::vector<std::string>& environment) const {
    Process::Options options = Surroundings();
    // Of equal names the first counts.
    options.environment.insert(options.environment.begin(), environment.begin(), environment.end());
    return options;
  }
  std::unique_ptr<Process> Start(std::vector<std::string> arguments,
                                 const Process::Options& surroundings) const {
    arguments.insert(arguments.begin(), VELT_PROGRAM);
    std::filesystem::remove(surroundings.output);  // a process appends
    return std::make_unique<Process>(arguments, surroundings);
  }
  Result End(Process& process) const {
    const bool ended = process.WaitForEnd(std::chrono::seconds(20));
    return {ended ? process.ExitCode().value_or(-1) : -1, ReadText(folder.Path() / "output")};
  }
  Result Call(const std::vector<std::string>& arguments) const {
    return Call(arguments, Surroundings());
  }
  Result Call(const std::vector<std::string>& arguments,
              const Process::Options& surroundings) const {
    return End(*Start(arguments, surroundings));
  }
  std::string Path(const std::string& name) const { return (folder.Path() / name).string(); }
};

}  // namespace velt
