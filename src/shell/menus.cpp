#include "shell/menus.h"

namespace velt {
namespace {

template <class C>
std::vector<MenuEntry> All(ControlArray<C>& array) {
  std::vector<MenuEntry> entries;
  for (auto& [index, item] : array) entries.push_back({item.get(), "", {}});
  return entries;
}

const MenuEntry kSeparator{};

PopupPlace PlaceOf(const Control& opener) {
  const Rectangle& place = opener.place.Get();
  return {place.left, place.top, place.width, place.height};
}

void Append(std::vector<MenuEntry>& menu, std::vector<MenuEntry> more) {
  menu.insert(menu.end(), more.begin(), more.end());
}

}  // namespace

Menus::Menus(Main& form) {
  ptt = {{&form.mnuPTT_ON, "", {}}, {&form.mnuPTT_OFF, "", {}}};
  mode = All(form.mnuModModes);
  frequency = {{&form.mnuSetFreqManual, "", {}}, kSeparator};
  Append(frequency, All(form.mnuBands));
  record = {{&form.mnuRecordOptions[0], "", {}},
            {&form.mnuRecordOptions[1], "", {}},
            {&form.mnuRecordOptions[2], "", {}},
            kSeparator,
            {&form.mnuRecordOptions[4], "", {}}};
  options = {{&form.mnuPTT, "", ptt}};
  std::vector<MenuEntry> rig = All(form.mnuBands);
  Append(rig, {{&form.mnuSetFreqManual, "", {}},
               kSeparator,
               {&form.mnuSetupBands, "", {}},
               {&form.mnunorig, "", {}}});
  Append(options, {{&form.mnuRig, "", rig},
                   kSeparator,
                   {&form.mnuauto, "", All(form.mnuautos)},
                   {&form.mnuzokamode, "", All(form.mnuzokamodes)}});
  Append(options, All(form.mnusettings));
  Append(options, {{&form.mnudomfreq, "", {}},
                   {&form.mnuArduinoFreq, "", {}},
                   {&form.mnuExpandedRigControl, "", {}},
                   {&form.mnuprec, "", All(form.mnuprecision)},
                   {&form.mnueditcolorshemes, "", {}},
                   {&form.mnuscale, "", All(form.mnuscales)},
                   kSeparator,
                   {&form.mnusetupcalib, "F9", {}},
                   kSeparator,
                   {&form.mnuOmniRigStatus, "", {}},
                   kSeparator,
                   {&form.mnuexit, "", {}}});
  file = {{&form.mnuopenrec, "", {}},
          {&form.mnuspectrogram, "", {}},
          {&form.mnuprofile, "", {}},
          {&form.mnuopenbmp, "", {}},
          {&form.mnusavebmp, "F2", {}},
          kSeparator,
          {&form.mnucopy, "F5", {}},
          kSeparator,
          {&form.mnurunzoka, "F11", {}},
          {&form.mnuclosezoka, "F12", {}},
          kSeparator,
          {&form.mnurunSAjar, "", {}},
          kSeparator,
          {&form.mnumanual, "F1", {}},
          {&form.mnumanual1, "", {}},
          {&form.mnuabout, "", {}},
          kSeparator,
          {&form.mnucloseme, "", {}}};
}

std::vector<PopupItem> Menus::Lines(const std::vector<MenuEntry>& menu) {
  std::vector<PopupItem> lines;
  bool separatorDue = false;
  const auto add = [&](PopupItem line) {
    if (separatorDue && !lines.empty()) lines.push_back({"-", false, false, "", {}, {}});
    separatorDue = false;
    lines.push_back(std::move(line));
  };
  for (const MenuEntry& entry : menu) {
    if (entry.item == nullptr) {
      separatorDue = true;
      continue;
    }
    const MenuItem& item = *entry.item;
    if (!item.visible) continue;
    PopupItem line{item.caption, item.checked, item.enabled, entry.shortcut, {}, {}};
    if (!entry.entries.empty()) {
      // Opening a submenu raises its own item's handler, which prepares what it shows.
      item.Click();
      line.items = Lines(entry.entries);
      if (line.items.empty()) continue;
    } else if (item.clicked.HasListeners()) {
      line.choose = [&item] { item.Click(); };
    } else {
      continue;
    }
    add(std::move(line));
  }
  return lines;
}

MenuOpener::MenuOpener(const Parts& parts) : parts_(parts) {
  connections_ += parts_.form.cmdOptions.clicked.Listen([this] { cmdOptions_Click(); });
  connections_ += parts_.form.Image2.clicked.Listen([this] { Image2_Click(); });
  connections_ += parts_.form.imgRecOnOff[0].menuAsked.Listen([this] { imgRecOnOff_Menu(); });
  connections_ += parts_.form.lblFrequency.clicked.Listen([this] { lblFrequency_Click(); });
  connections_ += parts_.form.lblMode.clicked.Listen([this] { lblMode_Click(); });
  connections_ += parts_.form.lblTRXMode.clicked.Listen([this] { lblTRXMode_Click(); });
  connections_ += parts_.form.mnuexit.clicked.Listen([] {});
}

void MenuOpener::cmdOptions_Click() {
  parts_.options.ShowPrecision();
  Open(parts_.form.cmdOptions, parts_.menus.options);
}

void MenuOpener::Image2_Click() {
  Open(parts_.form.Image2, parts_.menus.file);
}

void MenuOpener::imgRecOnOff_Menu() {
  parts_.form.mnuRecordOption.Click();
  Open(parts_.form.imgRecOnOff[0], parts_.menus.record);
}

void MenuOpener::lblFrequency_Click() {
  parts_.form.mnuRig.Click();
  OpenPlain(parts_.form.lblFrequency, parts_.menus.frequency);
}

void MenuOpener::lblMode_Click() {
  parts_.form.mnuModMode.Click();
  OpenPlain(parts_.form.lblMode, parts_.menus.mode);
}

void MenuOpener::lblTRXMode_Click() {
  OpenPlain(parts_.form.lblTRXMode, parts_.menus.ptt);
}

void MenuOpener::Open(const Control& opener, const std::vector<MenuEntry>& menu) {
  const bool wasRunning = parts_.form.StopButton.enabled;
  const bool opened = parts_.prompts.Popup(PlaceOf(opener), Menus::Lines(menu),
                                           [this, wasRunning](const std::function<void()>& chosen) {
                                             if (chosen) chosen();
                                             if (wasRunning && parts_.form.StartButton.enabled)
                                               parts_.form.StartButton.Click();
                                             parts_.form.Scope.SetFocus();
                                           });
  if (opened && wasRunning) parts_.form.StopButton.Click();
}

void MenuOpener::OpenPlain(const Control& opener, const std::vector<MenuEntry>& menu) {
  parts_.prompts.Popup(PlaceOf(opener), Menus::Lines(menu),
                       [](const std::function<void()>& chosen) {
                         if (chosen) chosen();
                       });
}

}  // namespace velt
