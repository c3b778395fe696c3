// Drives the program itself in a real window: starts it, presses its buttons and keys, looks at its
// picture.
#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>
#include <memory>
#include <string>
#include <vector>

#include "shell/window_places.h"
#include "support/process.h"

namespace velt {

// Runs a command to its end and returns what it printed; "" after 10 s without an end.
std::string Output(const std::vector<std::string>& command,
                   const std::vector<std::string>& environment);

class WindowDriver {
 public:
  // Starts the program with these arguments; throws std::runtime_error when its window is not
  // there after 10 s.
  WindowDriver(const std::vector<std::string>& arguments, std::vector<std::string> environment);

  Process& Program() { return *program_; }
  // What the program wrote to standard output and error.
  std::string Said() const { return ReadText(folder_.Path() / "output"); }

  void Click(const Rectangle& place) const {
    ClickAt({place.left + place.width / 2, place.top + place.height / 2});
  }
  void ClickAt(QPoint point) const;
  void Press(const std::vector<std::string>& keys) const;  // keysyms, to the window with the focus
  void Type(const std::string& text) const;
  void Close();                                               // as the window manager does it
  void KillClient() const { Tool({"windowkill", window_}); }  // as a user does whom it annoys

  QImage Picture() const;
  // Waits until a window of that title is there.
  bool WaitForWindow(const std::string& title) const;
  // Closes the box of that title, which has to come up, and waits until it is gone.
  bool Dismiss(const std::string& title) const;

  // The text that the label at a place shows, of those that it may show; "" when none looks like
  // it.
  std::string ReadLabel(const Rectangle& place, int pixelSize, Qt::Alignment alignment,
                        const std::vector<std::string>& candidates) const;

  // Where everything is in a window of the design size: the places of these controls.
  struct DesignForm : Main {
    DesignForm() {
      WindowGrid grid(559, 164);
      for (const PlaceRule& rule : PlaceRules(*this)) rule.control->place = rule.place(grid);
    }
  };
  const DesignForm form;

 private:
  bool HasWindow(const std::string& title) const;
  std::string Tool(std::vector<std::string> arguments) const;
  // The program's visible windows whose titles match.
  std::string Search(const std::string& title) const;

  TempFolder folder_;
  std::vector<std::string> environment_;
  std::unique_ptr<Process> program_;
  std::string window_;
};

}  // namespace velt
