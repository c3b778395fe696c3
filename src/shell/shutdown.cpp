#include "shell/shutdown.h"

#include <utility>

#include "rig/shown_frequency.h"
#include "text/error_text.h"

namespace velt {

Shutdown::Shutdown(const Parts& parts, const Ports& ports) : parts_(parts), ports_(ports) {
  connections_ += parts_.form.QuitTimer.ticked.Listen([this] { QuitTimer_Timer(); });
  connections_ += parts_.form.mnucloseme.clicked.Listen([this] { mnucloseme_Click(); });
}

void Shutdown::Form_Unload(bool& cancel, ClosedBy closedBy) {
  closedBy_ = closedBy;
  if (unloading_) {
    cancel = !ended_;
    if (unlessAnswered_ != nullptr && closedBy == ClosedBy::System) {
      ports_.prompts.DropAll();
      (this->*std::exchange(unlessAnswered_, nullptr))(cancel);
    }
    return;
  }
  // What was just deleted must not be saved again.
  if (parts_.setupDialog.HasReset()) return mnucloseme_Click();
  unloading_ = true;
  PutAway();
  parts_.rig.dialog.Close();
  cancel = WritesFirst([this] {
    bool later = false;
    SaveSettings(later);
  });
  if (!cancel) SaveSettings(cancel);
}

void Shutdown::PutAway() {
  writeUntil_ = ports_.scheduler.Now() + kWriteTime;
  // The engine keys nothing any more.
  parts_.form.tmrStatus.enabled = false;
  parts_.rig.guard.ReleaseNow();
  parts_.rig.control.RestoreNow();
  ports_.prompts.DropAll();
  parts_.colorDialog.Close();
  parts_.bandDialog.Close();
  parts_.setupDialog.Close();
  parts_.player.Close();
  parts_.recorder.Finish();
}

bool Shutdown::WritesFirst(const std::function<void()>& then) {
  if (!parts_.rig.link.WritesWait()) return false;
  LookAtWrites(then);
  return true;
}

void Shutdown::LookAtWrites(const std::function<void()>& then) {
  written_ = ports_.scheduler.After(kLookEvery, [this, then] {
    const bool late = ports_.scheduler.Now() >= writeUntil_;
    if (late || !parts_.rig.link.WritesWait()) return then();
    LookAtWrites(then);
  });
}

void Shutdown::SaveSettings(bool& cancel) {
  const int error = parts_.settings.SaveRegistryStuff();
  GoOn("settings", error, &Shutdown::SaveSettings, &Shutdown::StopLink, cancel);
}

void Shutdown::StopLink(bool& cancel) {
  parts_.rig.link.StopOmniRig();
  SavePresets(cancel);
}

void Shutdown::SavePresets(bool& cancel) {
  const int error = parts_.presetFiles.SaveExpandedPresets();
  GoOn("presets", error, &Shutdown::SavePresets, &Shutdown::Unload, cancel);
}

void Shutdown::GoOn(const std::string& what, int error, Step again, Step next, bool& cancel) {
  if (error == 0 || closedBy_ == ClosedBy::System) return (this->*next)(cancel);
  cancel = true;
  unlessAnswered_ = next;
  ports_.prompts.Ask({.title = "VELT-SA",
                      .text = "The " + what + " could not be saved: " + ErrorText(error) + ".",
                      .icon = BoxIcon::Exclamation,
                      .yes = "Try again",
                      .no = "Close anyway",
                      .dismissedMeansYes = true},
                     [this, again, next](bool yes) {
                       unlessAnswered_ = nullptr;
                       bool later = false;
                       (this->*(yes ? again : next))(later);
                     });
}

void Shutdown::Unload(bool& cancel) {
  Main& form = parts_.form;
  parts_.engine.quitting = true;
  if (form.mnuautos[1].checked) form.mnuclosezoka.Click();
  if (ShownFrequencyHz(form.lblFrequency).value_or(0) > 0) {
    lastFrequency.Raise(parts_.rig.state.RealRigFrequency);
  }
  const std::string& shown = form.lblFrequency.caption;
  if (shown == "RigOffLine" || shown == "N/A") {
    form.lblTRXMode.caption = "OFF";
    rigOff.Raise();
  }
  form.tmrFreqcount.enabled = false;
  parts_.rig.serial.Close();
  quitting_ = true;
  parts_.layout.quitting = true;
  if (parts_.capture.DeviceOpen()) {
    parts_.capture.StopCapture();
    cancel = true;
    form.QuitTimer.enabled = true;
    return;
  }
  End();
}

void Shutdown::QuitTimer_Timer() {
  parts_.form.QuitTimer.enabled = false;
  if (parts_.capture.DeviceOpen()) parts_.capture.StopCapture();
  End();
}

void Shutdown::mnucloseme_Click() {
  PutAway();
  unloading_ = true;
  quitting_ = true;
  // The menu that this was chosen from would let capture go on.
  parts_.form.StartButton.enabled = false;
  if (!WritesFirst([this] { End(); })) End();
}

void Shutdown::End() {
  if (ended_) return;
  ended_ = true;
  // Frames below still unwind, so the loop is asked in its next turn.
  ports_.scheduler.Post([this, alive = std::weak_ptr(alive_)] {
    if (!alive.expired()) ended.Raise();
  });
}

}  // namespace velt
