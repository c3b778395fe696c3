// The setup dialog `frmSetup`: what the analysis, the waterfall and recordings go by, the sound
// input, the way to the other dialogs, and the reset. Only OK applies what is in its fields, and
// only when all of it can be.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "audio/audio_choice.h"
#include "display/color_dialog.h"
#include "display/main_display.h"
#include "form/setup_form.h"
#include "platform/on_top.h"
#include "platform/sound_tools.h"
#include "ports/prompts.h"
#include "ports/scheduler.h"
#include "presets/band_dialog.h"
#include "rig/omnirig_dialog.h"
#include "rig/serial_setup.h"
#include "shell/settings.h"
#include "shell/window_layout.h"

namespace velt {

class SetupDialog {
 public:
  struct Parts {
    SetupForm& form;
    CaptureControls& captureForm;
    MainDisplay& display;
    Capture& capture;
    AudioChoice& audio;
    WindowLayout& layout;
    SerialSetup& serial;
    Settings& settings;
    CarriedSettings& carried;
    PresetTable& presets;
    PresetPanel& panel;
    ColorDialog& colorDialog;
    BandDialog& bandDialog;
    OmniRigDialog& rigDialog;
    SoundTools& soundTools;
    OnTop& onTop;
  };
  struct Ports {
    Prompts& prompts;
    Scheduler& scheduler;
  };
  // `opener` is the menu's item.
  SetupDialog(MenuItem& opener, const Parts& parts, const Ports& ports);

  // Everything was reset and the user has read so: the program is to end at once.
  Event<> endWanted;

  // Shows the dialog with what is in force; one that is open comes before the other windows.
  void Open();
  // Closes it; what was entered is gone.
  void Close();

  // The settings were deleted: the program must end without saving.
  bool HasReset() const { return reset_; }

  void Command3_Click();  // OK
  void Command4_Click();  // reset

 private:
  static constexpr size_t kNumbers = 5;
  using Numbers = std::array<double, kNumbers>;

  void Form_Load();
  void ShowDevices(const std::string& chosen);
  std::string ChosenDevice() const;
  void Tick();
  std::array<TextBox*, kNumbers> NumberFields();
  std::optional<Numbers> Read();
  void Apply(const Numbers& numbers);
  void ApplyLists();
  void Reset();

  Parts parts_;
  Ports ports_;
  int32_t shownResolution_ = -1;      // when the fields were filled
  std::vector<AudioDevice> devices_;  // that are offered
  bool reset_ = false;
  Scheduler::Handle tick_;
  OnTop::Lowered lowered_;  // while it is open
  Connections connections_;
};

}  // namespace velt
