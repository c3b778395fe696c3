// The menu tree as data, and the pop-ups made from it.
#pragma once

#include <string>
#include <vector>

#include "display/display_options.h"
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
  std::vector<MenuEntry> record;

  // The lines of a pop-up as the controls stand now. Items that have no handler yet are left out,
  // and so are submenus without any line and separators with nothing between them.
  static std::vector<PopupItem> Lines(const std::vector<MenuEntry>& menu);
};

// Opens the pop-up menus. Capture is stopped while one is open and goes on afterwards: first the
// chosen item's handler, then capture, then the focus.
class MenuOpener {
 public:
  struct Parts {
    Main& form;
    Menus& menus;
    DisplayOptions& options;
    Prompts& prompts;
  };
  explicit MenuOpener(const Parts& parts);

  void cmdOptions_Click();
  void Image2_Click();

  void imgRecOnOff_Menu();
  void lblFrequency_Click();
  void lblMode_Click();
  void lblTRXMode_Click();

 private:
  void Open(const Control& opener, const std::vector<MenuEntry>& menu);
  // Leaves capture alone: such a small menu does not hide the display.
  void OpenPlain(const Control& opener, const std::vector<MenuEntry>& menu);

  Parts parts_;
  Connections connections_;
};

}  // namespace velt
