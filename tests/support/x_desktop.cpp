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
  windowManager_ = std::make_unique<Process>(std::vector<std::string>{"openbox", "--sm-disable"},
                                             Process::Options{environment, log, {}});
  const auto managed = [&] {
    const auto output = folder_.Path() / "xprop.out";
    std::filesystem::remove(output);
    Process xprop({"xprop", "-root", "_NET_SUPPORTING_WM_CHECK"}, {environment, output, {}});
    return xprop.WaitForEnd(std::chrono::seconds(2)) &&
           ReadText(output).find("window id") != std::string::npos;
  };
  if (!WaitUntil(managed, std::chrono::seconds(10))) {
    throw std::runtime_error("openbox: " + ReadText(log));
  }
}

}  // namespace velt
