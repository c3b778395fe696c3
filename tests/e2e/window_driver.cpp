#include "e2e/window_driver.h"

#include <QFont>
#include <cmath>
#include <stdexcept>

#include "ui/click_label.h"
#include "ui/qt_text.h"

namespace velt {
namespace {

// Dark text on a light ground as 1, everything else 0, cut to the text.
QImage Ink(const QImage& picture) {
  QImage ink(picture.size(), QImage::Format_Grayscale8);
  QRect used;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const bool dark = qGray(picture.pixel(x, y)) < 128;
      ink.scanLine(y)[x] = dark ? 1 : 0;
      if (dark) used |= QRect(x, y, 1, 1);
    }
  }
  return ink.copy(used);
}

double Difference(const QImage& a, const QImage& b) {
  if (a.isNull() || a.size() != b.size()) return 1.0;
  int different = 0;
  for (int y = 0; y < a.height(); ++y) {
    for (int x = 0; x < a.width(); ++x) different += a.scanLine(y)[x] != b.scanLine(y)[x] ? 1 : 0;
  }
  return static_cast<double>(different) / (a.width() * a.height());
}

}  // namespace

std::string Output(const std::vector<std::string>& command,
                   const std::vector<std::string>& environment) {
  const TempFolder folder;
  Process process(command, {.environment = environment, .output = folder.Path() / "output"});
  if (!process.WaitForEnd(std::chrono::seconds(10))) return "";
  return ReadText(folder.Path() / "output");
}

WindowDriver::WindowDriver(const std::vector<std::string>& arguments,
                           std::vector<std::string> environment)
    : environment_(std::move(environment)) {
  std::vector<std::string> command{VELT_PROGRAM};
  command.insert(command.end(), arguments.begin(), arguments.end());
  program_ =
      std::make_unique<Process>(command, Process::Options{.environment = environment_,
                                                          .output = folder_.Path() / "output",
                                                          .ownGroup = true});
  const bool found = WaitUntil(
      [this] {
        window_ = Search("^VELT-SA");
        window_.resize(std::min(window_.size(), window_.find('\n')));
        return !window_.empty();
      },
      std::chrono::seconds(10));
  if (!found) throw std::runtime_error("no window: " + Said());
}

std::string WindowDriver::Tool(std::vector<std::string> arguments) const {
  arguments.insert(arguments.begin(), "xdotool");
  return Output(arguments, environment_);
}

std::string WindowDriver::Search(const std::string& title) const {
  return Tool({"search", "--all", "--onlyvisible", "--pid", std::to_string(program_->Id()),
               "--name", title});
}

void WindowDriver::ClickAt(QPoint point) const {
  Tool({"mousemove", "--window", window_, std::to_string(point.x()), std::to_string(point.y()),
        "click", "1"});
}

void WindowDriver::Press(const std::vector<std::string>& keys) const {
  std::vector<std::string> arguments{"key"};
  arguments.insert(arguments.end(), keys.begin(), keys.end());
  Tool(arguments);
}

void WindowDriver::Type(const std::string& text) const {
  Tool({"type", text});
}

void WindowDriver::Close() {
  // A busy window manager may miss keys that come while it is still giving the focus.
  for (int attempt = 0; attempt < 3; ++attempt) {
    Tool({"windowactivate", "--sync", window_});
    Press({"alt+F4"});
    if (program_->WaitForEnd(std::chrono::seconds(2))) return;
  }
}

QImage WindowDriver::Picture() const {
  const std::string file = (folder_.Path() / "picture.png").string();
  Output({"import", "-window", window_, file}, environment_);
  return QImage(ToQt(file)).convertToFormat(QImage::Format_RGB32);
}

bool WindowDriver::HasWindow(const std::string& title) const {
  return !Search("^" + title + "$").empty();
}

bool WindowDriver::WaitForWindow(const std::string& title) const {
  return WaitUntil([&] { return HasWindow(title); }, std::chrono::seconds(5));
}

bool WindowDriver::Dismiss(const std::string& title) const {
  if (!WaitForWindow(title)) return false;
  return WaitUntil(
      [&] {
        Press({"Escape"});
        // A click that comes before the window manager is done with the box may be lost.
        return !HasWindow(title) && Tool({"getactivewindow"}).starts_with(window_);
      },
      std::chrono::seconds(5));
}

std::string WindowDriver::ReadLabel(const Rectangle& place, int pixelSize, Qt::Alignment alignment,
                                    const std::vector<std::string>& candidates) const {
  const QRect where(place.left, place.top, place.width, place.height);
  // A label under the mouse is tinted.
  const Rectangle aside = form.Label3.place;
  Tool({"mousemove", "--window", window_, std::to_string(aside.left + 2),
        std::to_string(aside.top + 2)});
  const QImage seen = Ink(Picture().copy(where));
  std::string best;
  double least = 0.02;
  for (const std::string& text : candidates) {
    ClickLabel label(nullptr);
    QFont font = label.font();
    font.setPixelSize(pixelSize);
    font.setBold(true);
    label.setFont(font);
    label.SetAlignment(alignment);
    label.setText(ToQt(text));
    label.setFixedSize(where.size());
    const double difference = Difference(seen, Ink(label.grab().toImage()));
    if (difference < least) {
      least = difference;
      best = text;
    }
  }
  return best;
}

}  // namespace velt
