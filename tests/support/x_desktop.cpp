#include "support/x_desktop.h"

#include <stdexcept>

namespace velt {

XDesktop::XDesktop(Manager manager) {
  const auto number = folder_.Path() / "display";
  server_ = std::make_unique<Process>(
      std::vector<std::string>{"Xvfb", "-displayfd", "3", "-screen", "0", "1280x900x24",
                               "-nolisten", "tcp", "-noreset"},
      Process::Options{{}, log_, {{3, number}}});
  // The number is complete with its newline.
  if (!WaitUntil([&] { return ReadText(number).ends_with('\n'); }, std::chrono::seconds(10))) {
    throw std::runtime_error("Xvfb: " + ReadText(log_));
  }
  display_ = ":" + ReadText(number);
  display_.pop_back();
  if (manager == Manager::Openbox) StartManager();
}

void XDesktop::StartManager() {
  const auto managed = folder_ / "managed";
  std::filesystem::remove(managed);
  windowManager_ = std::make_unique<Process>(
      std::vector<std::string>{"openbox", "--sm-disable", "--startup", "touch " + managed.string()},
      Process::Options{{"DISPLAY=" + display_, "HOME=" + folder_.Path().string()}, log_});
  if (!WaitUntil([&] { return std::filesystem::exists(managed); }, std::chrono::seconds(10))) {
    throw std::runtime_error("openbox: " + ReadText(log_));
  }
}

}  // namespace velt
