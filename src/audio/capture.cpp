#include "audio/capture.h"

namespace velt {

Capture::Capture(const Parts& parts, const Ports& ports, std::string deviceName)
    : parts_(parts), ports_(ports), deviceName_(std::move(deviceName)) {
  connections_ +=
      ports_.input.happened.Listen([this](const AudioEvent& event) { HandleEvent(event); });
  connections_ += parts_.form.StartButton.clicked.Listen([this] { StartButton_Click(); });
  connections_ += parts_.form.StopButton.clicked.Listen([this] { StopButton_Click(); });
  connections_ += parts_.form.imgStartStop.clicked.Listen([this] { imgStartStop_Click(); });
  ShowSourceToOpen();
  ShowStopped();
}

void Capture::ShowSourceToOpen() {
  parts_.form.lblListen.caption = "Press \u25B6 to listen to " + SourceToOpen();
}

// For people.
std::string Capture::SourceToOpen() const {
  const std::vector<AudioDevice> known = ports_.input.Devices();
  for (const AudioDevice& device : known) {
    if (device.name == deviceName_) return device.description;
  }
  if (!deviceDescription_.empty()) return deviceDescription_;
  if (!deviceName_.empty()) return deviceName_;
  return known.size() == 1 ? known.front().description : "the default source";
}

void Capture::InitDevices(std::function<void()> noDevices) {
  std::vector<std::string> names;
  for (const AudioDevice& device : ports_.input.Devices()) names.push_back(device.name);
  parts_.form.DevicesBox.items = names;
  if (names.empty()) {
    ports_.prompts.Tell({"Ack!", "You have no audio input devices!", BoxIcon::Critical},
                        std::move(noDevices));
    return;
  }
  parts_.form.DevicesBox.listIndex = 0;
}

void Capture::StartButton_Click() {
  Open(deviceName_);
}

void Capture::StartWhenThere() {
  recovering_ = true;
  Open(deviceName_);
}

void Capture::ChooseDevice(const AudioDevice& device) {
  deviceDescription_ = device.description;
  const bool another = deviceName_ != device.name;
  deviceName_ = device.name;
  ShowSourceToOpen();
  if (!another || (device_ == Device::Closed && !recovering_)) return;
  StopSound();
  Open(deviceName_);
}

void Capture::Open(const std::string& device) {
  if (device_ != Device::Closed) return;
  device_ = Device::Opening;
  parts_.form.lblListen.visible = false;
  parts_.form.StartButton.enabled = false;
  ports_.input.Open(device);
}

// A menu stops it for a moment: the engine's files are read on meanwhile.
void Capture::StopButton_Click() {
  StopSound();
}

void Capture::StopCapture() {
  StopSound();
  // What the engine keyed, its files release.
  if (!parts_.guard.WantedBy(TransmitOwner::Engine)) parts_.rig.tmrStatus.enabled = false;
}

void Capture::StopSound() {
  ports_.input.Close();
  device_ = Device::Closed;
  capturing_ = false;
  ShowStartable();
  parts_.form.lblSource.caption = std::string();
  parts_.display.Smeter.topTwips = 0;
  parts_.display.lblFreqDetect.stale = true;
  parts_.form.Timer1.enabled = false;
  parts_.rig.lblMode.enabled = false;
}

void Capture::imgStartStop_Click() {
  if (parts_.form.imgStartStop.tag.Get() == "Play") {
    ShowRunning();
    StartButton_Click();
    return;
  }
  recovering_ = awaited_ = false;
  parts_.notices.Over(NoticeKind::Sound);
  StopCapture();
  ShowStopped();
}

void Capture::ShowRunning() {
  parts_.form.imgStartStop.tag = "Stop";
  parts_.form.imgStartStop.toolTip = "Stop the spectrum analyser";
}

void Capture::ShowStartable() {
  parts_.form.StopButton.enabled = false;
  parts_.form.StartButton.enabled = true;
  parts_.form.DevicesBox.enabled = true;
}

void Capture::ShowStopped() {
  parts_.form.imgStartStop.tag = "Play";
  parts_.form.imgStartStop.toolTip = "Start the spectrum analyser";
}

bool Capture::TakeBlock(std::span<int16_t, kBlockSamples> block) {
  switch (ports_.input.TakeNewest(block)) {
    case TakeResult::Block:
      watchdog_.Delivered(ports_.scheduler.Now());
      return true;
    case TakeResult::NotYet:
      if (device_ == Device::Open && watchdog_.Check(ports_.scheduler.Now())) {
        Lost("The sound server has stopped delivering.");
      }
      return false;
    case TakeResult::Gone:
      capturing_ = false;
      parts_.form.Timer1.enabled = false;
      return false;
  }
  return false;
}

void Capture::HandleEvent(const AudioEvent& event) {
  switch (event.kind) {
    case AudioEvent::Kind::Opened:
      if (device_ == Device::Opening) Opened(event);
      break;
    case AudioEvent::Kind::Moved:
      if (device_ == Device::Open) Moved(event);
      break;
    case AudioEvent::Kind::OpenFailed:
      if (device_ == Device::Opening) OpenFailed(event.text);
      break;
    case AudioEvent::Kind::Lost:
      if (device_ != Device::Closed) Lost(event.text);
      break;
    case AudioEvent::Kind::Returned:
      if (recovering_) Open(deviceName_);
      break;
  }
}

void Capture::Opened(const AudioEvent& event) {
  device_ = Device::Open;
  watchdog_.Started(ports_.scheduler.Now());
  ports_.input.Start();
  if (awaited_ && event.text == source_) {
    parts_.messages.Show("Sound is back.");
  } else if (awaited_) {
    parts_.messages.Show("Sound now comes from " + event.description + ".");
  }
  recovering_ = awaited_ = false;
  ShowSource(event);
  parts_.notices.Over(NoticeKind::Sound);
  parts_.form.StopButton.enabled = true;
  parts_.form.DevicesBox.enabled = false;
  capturing_ = true;
  parts_.form.Timer1.interval = scanFreqMs;
  parts_.form.Timer1.enabled = true;
  parts_.rig.tmrStatus.enabled = parts_.installation.enginePresent;
  parts_.rig.lblMode.enabled = true;
  started.Raise();
}

void Capture::Moved(const AudioEvent& event) {
  watchdog_.Started(ports_.scheduler.Now());  // a headset needs its time to begin
  ShowSource(event);
  parts_.messages.Show("Sound now comes from " + event.description + ".");
}

void Capture::ShowSource(const AudioEvent& event) {
  source_ = event.text;
  parts_.form.lblSource.caption = event.description;
  ports_.log.Write(LogLevel::Info, "velt.audio", "Sound comes from " + event.text + ".");
}

void Capture::OpenFailed(const std::string& text) {
  ports_.log.Write(LogLevel::Warning, "velt.audio", "The sound input did not open: " + text);
  ports_.input.Close();
  device_ = Device::Closed;
  ShowStartable();
  if (recovering_) {
    AwaitReturn(text);
    return;
  }
  ShowStopped();
  parts_.form.lblListen.visible = source_.empty();
  parts_.messages.Show(text);
  parts_.notices.Raise(NoticeKind::Sound, text);
  // The box names the handle, which is always 0 here.
  ports_.prompts.Tell(
      {"Err in Device opening 0", "Wave input device didn't open!", BoxIcon::Exclamation}, {});
}

void Capture::Lost(const std::string& text) {
  ports_.log.Write(LogLevel::Warning, "velt.audio", "The sound input was lost: " + text);
  StopCapture();
  AwaitReturn(text);
}

void Capture::AwaitReturn(const std::string& text) {
  recovering_ = awaited_ = true;
  parts_.messages.Show(text);
  parts_.notices.Raise(
      NoticeKind::Sound,
      text + (source_.empty() ? " Waiting for it." : " Waiting for it to come back."));
  ports_.input.WatchForReturn();
}

}  // namespace velt
