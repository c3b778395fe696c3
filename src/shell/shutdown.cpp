#include "shell/shutdown.h"

#include "rig/shown_frequency.h"

namespace velt {

Shutdown::Shutdown(Parts parts) : p_(parts) {
  connections_ += p_.form.QuitTimer.ticked.Listen([this] { QuitTimer_Timer(); });
  connections_ += p_.form.mnucloseme.clicked.Listen([this] { mnucloseme_Click(); });
}

void Shutdown::Form_Unload(bool& cancel) {
  if (unloading_) {
    cancel = !ended_;
    return;
  }
  unloading_ = true;
  p_.guard.ReleaseNow();
  p_.prompts.DropAll();
  if (steps.closeDialogs) steps.closeDialogs();
  if (steps.restoreRigFrequency && steps.restoreRigFrequency()) {
    cancel = true;
    restored_ = p_.scheduler.After(kRestoreTime, [this] {
      bool later = false;
      Unload(later);
    });
    return;
  }
  Unload(cancel);
}

void Shutdown::Unload(bool& cancel) {
  p_.settings.SaveRegistryStuff();
  if (steps.StopOmniRig) steps.StopOmniRig();
  if (steps.SaveExpandedPresets) steps.SaveExpandedPresets();
  if (p_.form.mnuautos[1].checked && steps.mnuclosezoka_Click) steps.mnuclosezoka_Click();
  const bool frequencyShown = ShownFrequencyHz(p_.form.lblFrequency).value_or(0) > 0;
  if (frequencyShown && steps.WriteStatusRX) steps.WriteStatusRX();
  const std::string& shown = p_.form.lblFrequency.caption;
  if (shown == "RigOffLine" || shown == "N/A") {
    p_.form.lblTRXMode.caption = "OFF";
    if (steps.writeOffStatus) steps.writeOffStatus();
  }
  if (steps.closeSerialPort) steps.closeSerialPort();
  quitting_ = true;
  p_.layout.quitting = true;
  if (p_.capture.DeviceOpen()) {
    p_.capture.StopCapture();
    cancel = true;
    p_.form.QuitTimer.enabled = true;
    return;
  }
  End();
}

void Shutdown::QuitTimer_Timer() {
  p_.form.QuitTimer.enabled = false;
  if (p_.capture.DeviceOpen()) p_.capture.StopCapture();
  End();
}

void Shutdown::mnucloseme_Click() {
  p_.guard.ReleaseNow();
  p_.prompts.DropAll();
  unloading_ = true;
  quitting_ = true;
  // The menu that this was chosen from would let capture go on.
  p_.form.StartButton.enabled = false;
  End();
}

void Shutdown::End() {
  if (ended_) return;
  ended_ = true;
  // Frames below still unwind, so the loop is asked in its next turn.
  p_.scheduler.Post([this] {
    if (endProgram) endProgram();
  });
}

}  // namespace velt
