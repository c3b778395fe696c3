#include "shell/startup.h"

#include "rig/shown_frequency.h"
#include "text/error_text.h"
#include "text/paths.h"

namespace velt {
namespace {

constexpr int32_t kProfileFolder = 40;
constexpr const char* kOmniRigKey = "TypeLib\\{4FE359C5-A58F-459D-BE95-CA559FB4F270}\\1.0\\helpdir";
constexpr const char* kOmniRigFolder = "c:\\program files\\afreet\\omnirig";

}  // namespace

Startup::Startup(const Parts& parts, const Ports& ports) : parts_(parts), ports_(ports) {}

Startup::Result Startup::Run() {
  if (parts_.setup.resetSettings) {
    if (const int error = parts_.settings.Reset()) {
      ports_.log.Write(LogLevel::Error, "velt.settings",
                       "The settings could not be deleted: " + ErrorText(error));
    }
    return Result::SettingsReset;
  }
  if (!parts_.setup.exemptFromSingleInstance && !ports_.lock.TryHold()) {
    return Result::AnotherInstance;
  }
  Form_Load();
  parts_.layout.ApplySavedSize();
  return Result::Running;
}

void Startup::Form_Load() {
  Installation& installation = parts_.installation;
  installation.dataFolder = parts_.setup.dataFolder;
  if (installation.dataFolder.empty()) {
    installation.dataFolder = TextPath(parts_.platform.GetSpecialFolder(kProfileFolder)) / "VELT";
  }
  parts_.platform.GetWindowsVersion();
  installation.DetectEngine(ports_.files);
  std::string caption = parts_.form.Window.caption;
  if (installation.enginePresent) caption += " - Engine " + installation.engineVersionText;
  parts_.reporter.SetBaseCaption(caption);

  parts_.settings.LoadRegistryStuff();
  if (IsVersionBelow3(parts_.carried.version)) parts_.display.colours.menu = kSystemButtonFace;

  const std::string registered =
      parts_.platform.GetRegistryString(RegistryRoot::ClassesRoot, kOmniRigKey, "");
  installation.omniRigFolder = TextPath(registered.size() < 3 ? kOmniRigFolder : registered);
  MakeFolders();

  parts_.display.options.InitWaterColor();
  parts_.display.options.Slider_Change();
  parts_.presetFiles.OpenPresets();
  // Before the window is shown: a window that grows while the desktop puts its frame around it ends
  // up beside its place.
  if (!IsVersionBelow3(parts_.carried.version)) ShowExpander();
  parts_.layout.Form_Resize();
  PrepareEngine();

  next_ = ports_.scheduler.After(Milliseconds(0), [this] { ReadSerialSetup(); });
}

void Startup::MakeFolders() {
  for (const char* folder : {"", "WAV", "BMP"}) {
    const auto path = parts_.installation.dataFolder / folder;
    if (ports_.files.IsFolder(path)) continue;
    if (const int error = ports_.files.MakeFolder(path)) {
      ports_.log.Write(LogLevel::Warning, "velt.settings",
                       "The folder " + PathText(path) + " could not be made: " + ErrorText(error));
    }
  }
}

void Startup::PrepareEngine() {
  Main& form = parts_.form;
  if (parts_.setup.controlsEngine) parts_.engine.Begin();
  if (!parts_.installation.enginePresent) {
    form.mnuautos[0].enabled = false;
    form.mnuautos[1].enabled = false;
    form.mnurunzoka.enabled = false;
    form.mnuclosezoka.enabled = false;
    form.mnurunSAjar.enabled = false;
    form.lblMode.enabled = false;
    return;
  }
  if (form.mnuautos[1].checked) form.tmrCheckZOKA.enabled = true;
  if (form.mnuautos[0].checked && parts_.setup.controlsEngine) form.mnurunzoka.Click();
}

void Startup::ReadSerialSetup() {
  parts_.serial.ReadRS232();
  StartAnalyserIfWanted();
}

void Startup::StartAnalyserIfWanted() {
  if (parts_.form.mnuautos[2].checked || parts_.setup.startAnalyser) {
    parts_.capture.ShowRunning();
    parts_.recorder.Offer();
    if (parts_.setup.startAnalyser) {
      parts_.capture.StartButton_Click();
    } else {
      parts_.capture.StartWhenThere();
    }
  }
  next_ = ports_.scheduler.After(Milliseconds(0), [this] { LinkRig(); });
}

void Startup::LinkRig() {
  parts_.display.options.DomFreq();
  parts_.link.StartOmniRig([this](bool online) { RigAnswered(online); });
}

// Once when the server answers, however late, and before that once if it does not at the start.
void Startup::RigAnswered(bool online) {
  if (online) {
    parts_.form.tmrStatus.ticked.Raise();
    parts_.rigDisplay.ShowRigParams();
    ShowExpander();
  }
  // A server that is up with a rig that is off counts as off line too.
  const std::string& shown = parts_.form.lblFrequency.caption;
  if (!online || shown == "N/A" || IsRigOffLine(parts_.form.lblFrequency)) rigOffLine.Raise();
}

void Startup::ShowExpander() {
  parts_.form.chkExpand.value = parts_.carried.expander != 0 ? 1 : 0;
}

}  // namespace velt
