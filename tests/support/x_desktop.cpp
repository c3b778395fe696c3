#include "support/x_desktop.h"

#include <stdexcept>

namespace velt {

XDesktop::XDesktop(Manager manager) {
  const auto log = folder_.Path() / "desktop.log";
  const auto number = folder_.Path() / "display";
  server_ = std::make_unique<Process>(
      std::vector<std::string>{"Xvfb", "-displayfd", "3", "-screen", "0", "1280x900x24",
                               "-nolisten", "tcp", "-noreset"},
      Process::Options{{}, log, {{3, number}}});
  // The number is complete with its newline.
  if (!WaitUntil([&] { return ReadText(number).ends_with('\n'); }, std::chrono::seconds(10))) {
    throw std::runtime_error("Xvfb: " + ReadText(log));
  }
  display_ = ":" + ReadText(number);
  display_.pop_back();
  if (manager == Manager::Openbox) StartManager();
}

void XDesktop::StartManager() {
  const auto log = folder_.Path() / "desktop.log";
  std::vector<std::string> environment = Environment();
  environment.push_back("HOME=" + folder_.Path().string());
  const auto managed = folder_ / "managed";
  std::filesystem::remove(managed);
  windowManager_ = std::make_unique<Process>(
      std::vector<std::string>{"openbox", "--sm-disable", "--startup", "touch " + managed.string()},
      Process::Options{environment, log});
  if (!WaitUntil([&] { return std::filesystem::exists(managed); }, std::chrono::seconds(10))) {
    throw std::runtime_error("openbox: " + ReadText(log));
  }
}

}  // namespace velt
