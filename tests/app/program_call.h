// The program as a user calls it, without any display, in a home of its own.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "app/words.h"
#include "support/process.h"
#include "support/pulse_server.h"

namespace velt {

namespace fs = std::filesystem;

// Program and test work in the same folder.
struct CommandLine : testing::Test {
  const TempFolder folder;

  CommandLine() { fs::current_path(folder.Path()); }
  ~CommandLine() override { fs::current_path("/"); }

  struct Result {
    int exitCode;
    std::string said;
    bool Says(const std::string& text) const { return said.find(text) != std::string::npos; }
    bool IsOneLineWith(const std::string& text) const {
      return std::ranges::count(said, '\n') == 1 && Says(text);
    }
  };

  // `environment` is over the usual one: of equal names the first counts.
  Process Start(const std::string& call, const std::string& environment = "",
                const std::map<int, fs::path>& files = {}) const {
    const std::string home = folder.Path().string();
    fs::remove("output");  // a process appends
    return Process(Words(VELT_PROGRAM " " + call),
                   {.environment = Words(environment + " HOME=" + home +
                                         " XDG_RUNTIME_DIR=" + home + " XDG_CONFIG_HOME=" + home +
                                         " DISPLAY= WAYLAND_DISPLAY= PULSE_SERVER=unix:/nowhere"),
                    .output = "output",
                    .files = files});
  }
  Result End(Process& process) const {
    const bool ended = process.WaitForEnd(std::chrono::seconds(20));
    return {ended ? process.ExitCode().value_or(-1) : -1, folder.Read("output")};
  }
  Result Call(const std::string& call, const std::string& environment = "",
              const std::map<int, fs::path>& files = {}) const {
    Process process = Start(call, environment, files);
    return End(process);
  }
};

}  // namespace velt
