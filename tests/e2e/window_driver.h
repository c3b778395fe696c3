// Drives the program itself in a real window: starts it, presses its buttons and keys, looks at its
// picture.
#pragma once

#include <QImage>
#include <memory>
#include <string>
#include <vector>

#include "shell/window_places.h"
#include "support/process.h"

namespace velt {

class WindowDriver {
 public:
  // Starts the program with these arguments and its user's home, without sound unless the
  // environment says where it is; throws std::runtime_error when its window is not there after
  // 10 s.
  explicit WindowDriver(
      std::vector<std::string> arguments, const std::vector<std::string>& environment = {},
      std::shared_ptr<const TempFolder> home = std::make_shared<const TempFolder>());

  Process& Program() { return *program_; }
  const std::vector<std::string>& Environment() const { return environment_; }
  // What the program wrote to standard output and error.
  std::string Said() const { return ReadText(folder_ / "output"); }
  std::string Settings() const { return ReadText(*home_ / "KALVARO" / "VELT-SA.ini"); }

  void Click(const Control& control) const;
  // Opens the menu below the control and waits until it takes keys.
  void OpenMenu(const Control& control) const;
  // At its column x, with the button 1 left or 3 right.
  void ClickAt(const Control& control, int x, int button) const;
  void Press(std::vector<std::string> keys) const;  // keysyms, to the window with the focus
  void Type(const std::string& text) const { Tool({"type", text}); }
  void Close();                                               // as the window manager does it
  void KillClient() const { Tool({"windowkill", window_}); }  // as a user does whom it annoys
  void DestroyWindow() const { Tool({"windowclose", window_}); }

  QImage Picture() const;
  // The colour so many pixels inside the control's left upper corner.
  QRgb Corner(const Control& control, int inset = 5) const;
  bool ShowsNotice() const { return Corner(form.lblNotice, 2) == qRgb(0xFF, 0xD4, 0x5E); }
  // Waits until a window of that title is there and gets what is typed.
  bool WaitForWindow(const std::string& title) const;
  // Closes the box of that title, which has to come up, and waits until it is gone.
  bool Dismiss(const std::string& title) const;
  // Waits until the label shows the text, dark on light.
  bool Reads(const Label& label, int pixelSize, const std::string& text,
             std::chrono::milliseconds limit = std::chrono::seconds(5)) const;

  // Where everything is in a window of the design size, without the panel and with it: the places
  // of these controls.
  struct DesignForm : Main {
    explicit DesignForm(WindowGrid grid) {
      for (const PlaceRule& rule : PlaceRules(*this)) rule.control->place = rule.place(grid);
    }
  };
  const DesignForm form{WindowGrid(559, 164)};
  const DesignForm formWithPanel{WindowGrid(559 + WindowGrid::kPanelWidth, 164, true)};

 private:
  std::string Tool(std::vector<std::string> arguments) const;
  // The program's visible windows whose titles, or what else, match.
  std::string Search(const std::string& pattern, const std::string& what = "--name") const;

  const TempFolder folder_;
  const std::shared_ptr<const TempFolder> home_;
  std::vector<std::string> environment_;
  std::unique_ptr<Process> program_;
  std::string window_;
};

}  // namespace velt
