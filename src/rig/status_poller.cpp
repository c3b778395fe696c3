#include "rig/status_poller.h"

#include <algorithm>
#include <array>
#include <utility>

#include "text/formats.h"
#include "text/numbers.h"

namespace velt {
namespace {

constexpr int kCalibrationShift = 12;
constexpr size_t kModeLetters = 4;

std::string Key(std::string_view text) {
  return Lowered(Trimmed(text));
}

std::filesystem::path Sibling(std::filesystem::path engineFolder) {
  if (!engineFolder.has_filename()) engineFolder = engineFolder.parent_path();
  engineFolder += "_SA";
  return engineFolder / "transmitter.cfg";
}

}  // namespace

StatusPoller::StatusPoller(const Parts& parts, const Ports& ports)
    : parts_(parts),
      ports_(ports),
      statusFile_(ports.files, ports.clock, {}),
      calibrationFile_(ports.files, ports.clock, {}),
      transmitFile_(ports.files, ports.clock, {}),
      siblingFile_(ports.files, ports.clock, {}) {
  Timer& timer = parts_.form.tmrStatus;
  connections_ += timer.ticked.Listen([this] { tmrStatus_Timer(); });
  connections_ += timer.enabled.changed.Listen([this] {
    if (parts_.form.tmrStatus.enabled) return;
    secondLook_.Cancel();
    CarryOut(wish_.Pause());
  });
}

void StatusPoller::tmrStatus_Timer() {
  if (!parts_.installation.enginePresent) {
    parts_.form.tmrStatus.enabled = false;
    return;
  }
  Round();
  // What is asked for may wait for one round, not for two.
  if (transmitFile_.WantsSecondLook() || siblingFile_.WantsSecondLook()) {
    secondLook_ = ports_.scheduler.After(WatchedFile::kSecondLook, [this] { Round(); });
  }
}

void StatusPoller::Round() {
  FollowFolder();
  const bool engineWas = window_ != 0;
  window_ = parts_.installation.DetectVELTWindow(ports_.window);
  ReadStatus();
  // Without the engine the label is the transceiver's, which tells its mode when it changes.
  if (window_ != 0 || engineWas) ShowMode();
  FollowCalibration();

  const bool newRequest = transmitFile_.Look();
  const TransmitFile wanted = ReadTransmitFile(transmitFile_.Reader());
  if (wanted.state) transmitState_ = *wanted.state;
  MeetRequest(transmitFile_, newRequest);
  MeetRequest(siblingFile_, siblingFile_.Look());
  CarryOut(wish_.Round(window_,
                       wanted.state ? std::optional(Key(*wanted.state) == "on") : std::nullopt));
  FollowTransmitterMode();
  FollowLockedMode();
  FollowInversion();
  if (parts_.form.tmrFreqcount.enabled) {
    parts_.statusFile.WriteStatusRX(parts_.counter.LastCountHz());
  }
  parts_.statusFile.TryAgain();
}

void StatusPoller::FollowFolder() {
  const std::filesystem::path& folder = parts_.installation.engineFolder;
  statusFile_.Move(folder / "status.cfg");
  calibrationFile_.Move(folder / "calall.cfg");
  transmitFile_.Move(folder / "transmitter.cfg");
  siblingFile_.Move(Sibling(folder));
}

void StatusPoller::ReadStatus() {
  if (statusFile_.Look()) read_ = ReadEngineStatus(statusFile_.Reader(), std::move(read_));
  status_ = read_;
  if (window_ == 0) {
    status_.mode = "N/A";
    status_.values = {};
  }
  parts_.engine.modeText = status_.mode;
  parts_.engine.transmitterModeLine = status_.transmitterLine;
  parts_.engine.passbandLow = status_.values[0];
  parts_.engine.passbandHigh = status_.values[1];
}

void StatusPoller::ShowMode() {
  const std::string& mode = status_.mode;
  parts_.form.lblMode.caption =
      mode.size() < kModeLetters ? mode : Lowered(std::string_view(mode).substr(0, kModeLetters));
}

bool StatusPoller::Locked() const {
  return Key(status_.transmitterLine) == "lock_to_txcr";
}

void StatusPoller::FollowCalibration() {
  if (calibrationFile_.Look() && calibrationFile_.IsThere()) {
    calibrations_ = ReadCalibrations(calibrationFile_.Reader(), calibrations_);
    calibrated_ = true;
  }
  if (calibrated_) {
    const Calibration& used = Locked() ? calibrations_.Of(status_.mode) : calibrations_.all;
    parts_.engine.scaleOffset = used.a;
    parts_.engine.calibrationC = static_cast<float>(used.c - kCalibrationShift);
    parts_.state.offsetKHz = used.offsetKHz;
  }
  // All that the layout of the display is made from.
  std::string key = Key(status_.transmitterLine) + "\n" + Lowered(status_.mode) + "\n" +
                    SingleText(parts_.engine.calibrationC) + "\n" +
                    std::to_string(parts_.engine.scaleOffset);
  if (key == layoutKey_) return;
  layoutKey_ = std::move(key);
  displayChanged.Raise();
}

// What was asked for once is done once, even when the file cannot be written.
void StatusPoller::MeetRequest(WatchedFile& file, bool isNew) {
  const TransmitFile read = ReadTransmitFile(file.Reader());
  if (!read.Requests()) return;
  if (isNew) parts_.control.SetTRXFrequency(*read.frequencyHz, parts_.state.vfo);
  if (ports_.files.ReplaceIfSame(file.Path(), file.Bytes(), MetRequestText(transmitState_)) == 0) {
    file.Forget();
  }
}

void StatusPoller::CarryOut(EngineWish::Change change) {
  if (change == EngineWish::Change::None) return;
  if (change == EngineWish::Change::Begins) {
    parts_.form.lblTRXMode.caption = "TX";
    parts_.ptt.PTT_ON(TransmitOwner::Engine);
  } else {
    parts_.ptt.PTT_OFF(TransmitOwner::Engine);
  }
  if (!parts_.guard.Wanted()) parts_.form.lblTRXMode.caption = "RX";
}

void StatusPoller::FollowTransmitterMode() {
  std::string mode = Key(status_.transmitterLine);
  if (mode.empty()) mode = "off";
  if (mode == transmitterMode_) return;
  transmitterMode_ = mode;
  if (window_ == 0) return;
  parts_.form.lblMode.caption = Raised(mode);
  struct Row {
    const char* mode;
    int32_t rigMode;
    const char* shown;
  };
  static constexpr std::array<Row, 4> kRows = {{{"usb", PM_SSB_U, "USB"},
                                                {"lsb", PM_SSB_L, "LSB"},
                                                {"cw-usb", PM_CW_U, "CW-u"},
                                                {"cw-lsb", PM_CW_L, "CW-l"}}};
  const auto* const row = std::find_if(kRows.begin(), kRows.end(),
                                       [&mode](const Row& known) { return mode == known.mode; });
  if (row == kRows.end()) return;
  parts_.control.SendMode(row->rigMode);
  parts_.form.lblMode.caption = row->shown;
}

void StatusPoller::FollowLockedMode() {
  const bool changed = lockedMode_ != status_.mode;
  lockedMode_ = status_.mode;
  if (changed && Locked()) parts_.control.SetModulationMode(status_.mode);
}

void StatusPoller::FollowInversion() {
  const std::string inverted = Key(status_.invertedSideband);
  if (inverted == inverted_) return;
  inverted_ = inverted;
  parts_.state.invertedSideband = inverted;
  if (window_ == 0) return;
  Property<std::string>& shown = parts_.form.lblMode.caption;
  if (inverted == "on") {
    shown = shown.Get() == "USB" ? "LSB" : "USB";
  } else {
    shown = Raised(status_.mode);
  }
}

}  // namespace velt
