// Boxes and pop-up menus. None of them waits: the answer comes to a continuation in a later turn
// of the loop, or never when the program ends first.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velt {

enum class BoxIcon { Information, Question, Exclamation, Critical };

struct MessagePrompt {
  std::string title;
  std::string text;
  BoxIcon icon = BoxIcon::Information;
  // What the two answers of a question are called; empty: Yes and No.
  std::string yes = {};
  std::string no = {};
  bool dismissedMeansYes = false;  // a question closed without an answer; else it means no
};

struct InputPrompt {
  std::string title;
  std::string prompt;
  std::string initial;       // selected, so that typing replaces it
  std::string example = {};  // stands below the field
};

// What a pop-up belongs to, in logical pixels of the program's window. Without a size: the mouse.
struct PopupPlace {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
};

// One line of a pop-up menu. A line with items below it is a submenu; a caption of "-" separates.
struct PopupItem {
  std::string caption;  // "&" marks the access letter, "&&" shows one ampersand
  bool checked = false;
  bool enabled = true;
  std::string shortcut;          // shown only
  std::function<void()> choose;  // empty for submenus and separators
  std::vector<PopupItem> items;
};

// The property of those widgets of the window that take the mouse below a box, too.
inline constexpr const char* reachableBelowBoxes = "reachableBelowBoxes";

// Boxes are shown one at a time, in the order in which they were asked for, over the program's
// window once that is up, or over that of its dialogs which the user is at.
class Prompts {
 public:
  virtual ~Prompts() = default;

  // Shows a message with OK; `closed` runs when it was dismissed.
  virtual void Tell(const MessagePrompt& box, std::function<void()> closed) = 0;

  // Asks Yes or No.
  virtual void Ask(const MessagePrompt& box, std::function<void(bool yes)> answered) = 0;

  // Asks for a text; empty when cancelled.
  virtual void Input(const InputPrompt& box,
                     std::function<void(std::optional<std::string>)> answered) = 0;

  // Shows a pop-up below the control that opened it. When that was done by keyboard its first line
  // is active, and the keyboard is given back to where it was after `closed`. `closed` receives
  // what the chosen line's `choose` was, or an empty function when nothing was chosen; the caller
  // runs it. A second pop-up while one is open is ignored: false is returned and nothing is called.
  virtual bool Popup(const PopupPlace& opener, const std::vector<PopupItem>& items,
                     std::function<void(std::function<void()> chosen)> closed) = 0;

  // Closes whatever is open or waits; no continuation of theirs runs any more.
  virtual void DropAll() = 0;
};

}  // namespace velt
