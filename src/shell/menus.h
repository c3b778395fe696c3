// The menu tree as data, and the pop-ups made from it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "form/main_form.h"
#include "ports/prompts.h"

namespace velt {

// One line of a menu: an item with its shortcut, a submenu, or (without item) a separator.
struct MenuEntry {
  MenuItem* item = nullptr;
  std::string shortcut;
  std::vector<MenuEntry> entries;
};

class Menus {
 public:
  explicit Menus(Main& form);

  std::vector<MenuEntry> options;
  std::vector<MenuEntry> file;
  // Offered by the labels of the rig.
  std::vector<MenuEntry> frequency;
  std::vector<MenuEntry> mode;
  std::vector<MenuEntry> ptt;

  // The lines of a pop-up as the controls stand now. Items that have no handler yet are left out,
  // and so are submenus without any line and separators with nothing between them.
  static std::vector<PopupItem> Lines(const std::vector<MenuEntry>& menu);
};

// Opens the pop-up menus. Capture is stopped while one is open and goes on afterwards: first the
// chosen item's handler, then capture, then the focus.
class MenuOpener {
 public:
  MenuOpener(Main& form, Menus& menus, Prompts& prompts);

  void cmdOptions_Click();
  void Image2_Click();

  void lblFrequency_Click();
  void lblMode_Click();
  void lblTRXMode_Click();

  // Clears and sets the check marks of the resolution before "Options" is shown.
  std::function<void()> showPrecision;
  std::function<void()> focusScope;

 private:
  void Open(const std::vector<MenuEntry>& menu);
  // Leaves capture alone: such a small menu does not hide the display.
  void OpenPlain(const std::vector<MenuEntry>& menu);

  Main& form_;
  Menus& menus_;
  Prompts& prompts_;
  Connections connections_;
};

}  // namespace velt
