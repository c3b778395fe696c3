#include "shell/startup.h"

#include <cstring>

#include "rig/shown_frequency.h"
#include "text/formats.h"

namespace velt {
namespace {

constexpr int32_t kProfileFolder = 40;
constexpr const char* kOmniRigKey = "TypeLib\\{4FE359C5-A58F-459D-BE95-CA559FB4F270}\\1.0\\helpdir";
constexpr const char* kOmniRigFolder = "c:\\program files\\afreet\\omnirig";

}  // namespace

bool AsksForReset(std::span<const std::string> arguments) {
  for (const std::string& argument : arguments) {
    const std::string lowered = Lowered(argument);
    // The word has to begin in it: "preset" is another one.
    for (size_t at = lowered.find("reset"); at != std::string::npos;
         at = lowered.find("reset", at + 1)) {
      if (at == 0 || lowered[at - 1] < 'a' || lowered[at - 1] > 'z') return true;
    }
  }
  return false;
}

Startup::Startup(Parts parts) : p_(parts) {}

Startup::Result Startup::Run(const RunOptions& options) {
  if (options.resetSettings) {
    if (const int error = p_.settings.Reset()) {
      p_.log.Write(LogLevel::Error, "velt.settings",
                   std::string("The settings could not be deleted: ") + std::strerror(error));
    }
    return Result::SettingsReset;
  }
  if (!options.exemptFromSingleInstance && !p_.lock.TryHold()) return Result::AnotherInstance;
  Form_Load(options);
  ApplySavedSize();
  return Result::Running;
}

void Startup::Form_Load(const RunOptions& options) {
  Installation& installation = p_.installation;
  if (options.dataFolder.empty()) {
    const std::string home = p_.platform.GetSpecialFolder(kProfileFolder);
    installation.dataFolder = std::filesystem::path(home) / "VELT";
  } else {
    installation.dataFolder = options.dataFolder;
  }
  p_.platform.GetWindowsVersion();
  installation.DetectEngine(p_.files);
  if (installation.enginePresent) {
    p_.form.Window.caption =
        p_.form.Window.caption.Get() + " - Engine " + installation.engineVersionText;
  }
  baseCaption_ = p_.form.Window.caption;

  p_.settings.LoadRegistryStuff();
  if (IsVersionBelow3(p_.carried.version)) p_.colours.menu = kSystemButtonFace;

  const std::string registered =
      p_.platform.GetRegistryString(RegistryRoot::ClassesRoot, kOmniRigKey, "");
  installation.omniRigFolder = registered.size() < 3 ? kOmniRigFolder : registered;
  MakeFolders();

  p_.display.InitWaterColor();
  p_.display.Slider_Change();
  if (steps.loadPresets) steps.loadPresets();
  p_.layout.Form_Resize();
  PrepareEngine();

  next_ = p_.scheduler.After(Milliseconds(0), [this, options] { StartAnalyserIfWanted(options); });
}

void Startup::MakeFolders() {
  for (const char* folder : {"", "WAV", "BMP"}) {
    const auto path = p_.installation.dataFolder / folder;
    if (p_.files.IsFolder(path)) continue;
    if (const int error = p_.files.MakeFolder(path)) {
      p_.log.Write(LogLevel::Warning, "velt.settings",
                   "The data folder " + p_.installation.dataFolder.string() +
                       " could not be made: " + std::strerror(error));
      return;
    }
  }
}

void Startup::ApplySavedSize() {
  if (sizeApplied_) return;
  sizeApplied_ = true;
  if (!p_.form.mnusettings[3].checked) return;
  const SavedWindowSize saved = p_.layout.saved;
  if (saved.widthTwips != WindowLimits::kMaxWidth) p_.form.Window.widthTwips = saved.widthTwips;
  if (saved.heightTwips != WindowLimits::kMaxHeight) p_.form.Window.heightTwips = saved.heightTwips;
}

void Startup::PrepareEngine() {
  Main& form = p_.form;
  if (!p_.installation.enginePresent) {
    form.mnuautos[0].enabled = false;
    form.mnuautos[1].enabled = false;
    form.mnurunzoka.enabled = false;
    form.mnuclosezoka.enabled = false;
    form.lblMode.enabled = false;
    return;
  }
  if (form.mnuautos[1].checked) form.tmrCheckZOKA.enabled = true;
  if (form.mnuautos[0].checked && steps.mnurunzoka_Click) steps.mnurunzoka_Click();
}

void Startup::StartAnalyserIfWanted(const RunOptions& options) {
  if (steps.ReadRS232) steps.ReadRS232();
  if (p_.form.mnuautos[2].checked || options.startAnalyser) {
    p_.capture.ShowRunning();
    p_.form.imgRecOnOff.enabled = true;
    if (p_.form.imgRecOnOff.tag.Get().empty()) p_.form.imgRecOnOff.tag = "Rec";
    if (options.startAnalyser) {
      p_.capture.StartButton_Click();
    } else {
      p_.capture.StartWhenThere();
    }
  }
  next_ = p_.scheduler.After(Milliseconds(0), [this] { LinkRig(); });
}

void Startup::LinkRig() {
  p_.display.DomFreq();
  if (!IsVersionBelow3(p_.carried.version)) ShowExpander();
  if (!steps.StartOmniRig) {
    RigIsOffLine();
    return;
  }
  steps.StartOmniRig([this] { RigIsOnline(); }, [this] { RigIsOffLine(); });
}

void Startup::RigIsOnline() {
  rigOnline_ = true;
  if (steps.tmrStatus_Timer) steps.tmrStatus_Timer();
  if (steps.ShowRigParams) steps.ShowRigParams();
  ShowRigInCaption();
  ShowExpander();
}

void Startup::ShowRigInCaption() {
  if (!rigOnline_) return;
  p_.form.Window.caption = baseCaption_ + " - Rig " + (steps.rigType ? steps.rigType() : "");
}

void Startup::ShowExpander() {
  p_.form.chkExpand.value = p_.carried.expander != 0 ? 1 : 0;
}

void Startup::RigIsOffLine() {
  if (steps.writeOffLineStatus) steps.writeOffLineStatus();
  if (steps.offerFrequencyCounter) steps.offerFrequencyCounter();
}

}  // namespace velt
