#include "e2e/window_driver.h"

#include <QBitmap>
#include <QRegion>
#include <algorithm>
#include <stdexcept>

#include "ui/click_label.h"
#include "ui/qt_text.h"

namespace velt {
namespace {

using std::chrono::seconds;

// Where a picture is dark, from its left upper dark pixel on.
QRegion Ink(const QImage& picture) {
  const QRegion ink(QBitmap::fromImage(picture, Qt::MonoOnly | Qt::ThresholdDither));
  return ink.translated(-ink.boundingRect().topLeft());
}

int Area(const QRegion& region) {
  int area = 0;
  for (const QRect& rect : region) area += rect.width() * rect.height();
  return area;
}

}  // namespace

WindowDriver::WindowDriver(std::vector<std::string> arguments,
                           const std::vector<std::string>& environment,
                           std::shared_ptr<const TempFolder> home)
    : home_(std::move(home)), environment_(environment) {
  // Of equal names the first counts.
  for (const char* name : {"HOME=", "XDG_RUNTIME_DIR=", "XDG_CONFIG_HOME="}) {
    environment_.push_back(name + home_->Path().string());
  }
  environment_.push_back("PULSE_SERVER=unix:/nowhere");
  arguments.insert(arguments.begin(), VELT_PROGRAM);
  program_ = std::make_unique<Process>(
      arguments, Process::Options{.environment = environment_, .output = folder_ / "output"});
  const auto found = [this] { return !(window_ = Search("VELT-SA.*")).empty(); };
  if (!WaitUntil(found, seconds(10))) throw std::runtime_error("no window: " + Said());
  window_.resize(window_.find('\n'));
}

std::string WindowDriver::Tool(std::vector<std::string> arguments) const {
  arguments.insert(arguments.begin(), "xdotool");
  return Output(arguments, environment_);
}

std::string WindowDriver::Search(const std::string& pattern, const std::string& what) const {
  return Tool({"search", "--all", "--onlyvisible", "--pid", std::to_string(program_->Id()), what,
               "^" + pattern + "$"});
}

void WindowDriver::Click(const Control& control) const {
  ClickAt(control, control.place.Get().width / 2, 1);
}

void WindowDriver::OpenMenu(const Control& control) const {
  Click(control);
  const auto opened = [this] { return std::ranges::count(Search("velt-sa", "--class"), '\n') > 1; };
  WaitUntil(opened, seconds(5));
}

void WindowDriver::ClickAt(const Control& control, int x, int button) const {
  const Rectangle place = control.place;
  Tool({"mousemove", "--window", window_, std::to_string(place.left + x),
        std::to_string(place.top + place.height / 2), "click", std::to_string(button)});
}

void WindowDriver::Press(std::vector<std::string> keys) const {
  keys.insert(keys.begin(), "key");
  Tool(keys);
}

void WindowDriver::Close() {
  // A busy window manager may miss keys that come while it is still giving the focus.
  for (int attempt = 0; attempt < 3; ++attempt) {
    Tool({"windowactivate", "--sync", window_});
    Press({"alt+F4"});
    if (program_->WaitForEnd(seconds(2))) return;
  }
}

QImage WindowDriver::Picture() const {
  const std::string file = folder_ / "picture.png";
  Output({"import", "-window", window_, file}, environment_);
  return QImage(ToQt(file)).convertToFormat(QImage::Format_RGB32);
}

QRgb WindowDriver::Corner(const Control& control, int inset) const {
  const Rectangle place = control.place;
  return Picture().pixel(place.left + inset, place.top + inset);
}

bool WindowDriver::WaitForWindow(const std::string& title) const {
  const auto active = [&] {
    const std::string window = Search(title);
    return !window.empty() && window == Tool({"getactivewindow"});
  };
  return WaitUntil(active, seconds(10));
}

bool WindowDriver::Dismiss(const std::string& title) const {
  const auto dismissed = [&] {
    Press({"Escape"});
    // A click that comes before the window manager is done with the box may be lost.
    return Search(title).empty() && Tool({"getactivewindow"}).starts_with(window_);
  };
  return WaitForWindow(title) && WaitUntil(dismissed, seconds(5));
}

bool WindowDriver::Reads(const Label& label, int pixelSize, const std::string& text,
                         std::chrono::milliseconds limit) const {
  const Rectangle place = label.place;
  ClickLabel same(nullptr);
  QFont font = same.font();
  font.setPixelSize(pixelSize);
  font.setBold(true);
  same.setFont(font);
  same.SetText(ToQt(text));
  same.setFixedSize(place.width, place.height);
  const QRegion ink = Ink(same.grab().toImage());
  // A label under the mouse is tinted.
  const Rectangle aside = form.Label3.place;
  Tool({"mousemove", "--window", window_, std::to_string(aside.left), std::to_string(aside.top)});
  const auto reads = [&] {
    const QImage seen = Picture().copy(place.left, place.top, place.width, place.height);
    return Area(Ink(seen) ^ ink) * 10 < Area(ink);
  };
  return WaitUntil(reads, limit);
}

}  // namespace velt
