#include "audio/capture.h"

namespace velt {

Capture::Capture(Controls controls, Services services) : form_(controls), services_(services) {
  services_.input.onEvent = [this](const AudioEvent& event) { HandleEvent(event); };
  form_.capture.StartButton.onClick = [this] { StartButton_Click(); };
  form_.capture.StopButton.onClick = [this] { StopButton_Click(); };
  form_.capture.imgStartStop.onClick = [this] { imgStartStop_Click(); };
  ShowStopped();
}

void Capture::InitDevices(std::function<void()> noDevices) {
  std::vector<std::string> names;
  for (const AudioDevice& device : services_.input.Devices()) names.push_back(device.name);
  form_.capture.DevicesBox.items = names;
  if (names.empty()) {
    services_.prompts.Tell({"Ack!", "You have no audio input devices!", BoxIcon::Critical},
                           std::move(noDevices));
    return;
  }
  form_.capture.DevicesBox.listIndex = 0;
}

void Capture::StartButton_Click() {
  Open(deviceName);
}

void Capture::StartWhenThere() {
  recovering_ = true;
  Open(deviceName);
}

void Capture::Open(const std::string& device) {
  if (device_ != Device::Closed) return;
  device_ = Device::Opening;
  form_.capture.StartButton.enabled = false;
  services_.input.Open(device);
}

void Capture::StopButton_Click() {
  StopCapture();
}

void Capture::StopCapture() {
  services_.input.Close();
  device_ = Device::Closed;
  capturing_ = false;
  form_.capture.StopButton.enabled = false;
  form_.capture.StartButton.enabled = true;
  form_.capture.DevicesBox.enabled = true;
  form_.capture.lblSource.caption = std::string();
  form_.display.Smeter.topTwips = 0;
  form_.capture.Timer1.enabled = false;
  form_.rig.tmrStatus.enabled = false;
  form_.rig.lblMode.enabled = false;
}

void Capture::imgStartStop_Click() {
  if (form_.capture.imgStartStop.tag.Get() == "Play") {
    ShowRunning();
    StartButton_Click();
    return;
  }
  recovering_ = awaited_ = false;
  services_.notices.Over(NoticeKind::Sound);
  StopCapture();
  ShowStopped();
}

void Capture::ShowRunning() {
  form_.capture.imgStartStop.tag = "Stop";
  form_.capture.imgStartStop.toolTip = "Stop the spectrum analyzer";
}

void Capture::ShowStopped() {
  form_.capture.imgStartStop.tag = "Play";
  form_.capture.imgStartStop.toolTip = "Start the spectrum analyzer";
}

void Capture::DeviceGone() {
  capturing_ = false;
  form_.capture.Timer1.enabled = false;
}

void Capture::NothingDelivered() {
  if (device_ == Device::Open && watchdog_.Check(services_.scheduler.Now())) {
    Lost("The sound server has stopped delivering.");
  }
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
      if (recovering_) Open(deviceName);
      break;
  }
}

void Capture::Opened(const AudioEvent& event) {
  device_ = Device::Open;
  watchdog_.Started(services_.scheduler.Now());
  services_.input.Start();
  if (awaited_ && event.text == source_) {
    services_.messages.Show("Sound is back.");
  } else if (awaited_) {
    services_.messages.Show("Sound now comes from " + event.description + ".");
  }
  recovering_ = awaited_ = false;
  ShowSource(event);
  services_.notices.Over(NoticeKind::Sound);
  form_.capture.StopButton.enabled = true;
  form_.capture.DevicesBox.enabled = false;
  capturing_ = true;
  form_.capture.Timer1.interval = scanFreqMs;
  form_.capture.Timer1.enabled = true;
  form_.rig.tmrStatus.enabled = engineStatus;
  form_.rig.lblMode.enabled = true;
  if (captureStarted) captureStarted();
}

void Capture::Moved(const AudioEvent& event) {
  watchdog_.Started(services_.scheduler.Now());  // a headset needs its time to begin
  ShowSource(event);
  services_.messages.Show("Sound now comes from " + event.description + ".");
}

void Capture::ShowSource(const AudioEvent& event) {
  source_ = event.text;
  form_.capture.lblSource.caption = event.description;
  services_.log.Write(LogLevel::Info, "velt.audio", "Sound comes from " + event.text + ".");
}

void Capture::OpenFailed(const std::string& text) {
  services_.log.Write(LogLevel::Warning, "velt.audio", "The sound input did not open: " + text);
  StopCapture();
  if (recovering_) {
    AwaitReturn(text);
    return;
  }
  ShowStopped();
  services_.messages.Show(text);
  services_.notices.Raise(NoticeKind::Sound, text);
  // The box names the handle, which is always 0 here.
  services_.prompts.Tell(
      {"Err in Device opening 0", "Wave input device didn't open!", BoxIcon::Exclamation}, {});
}

void Capture::Lost(const std::string& text) {
  services_.log.Write(LogLevel::Warning, "velt.audio", "The sound input was lost: " + text);
  StopCapture();
  AwaitReturn(text);
}

void Capture::AwaitReturn(const std::string& text) {
  recovering_ = awaited_ = true;
  services_.messages.Show(text);
  services_.notices.Raise(
      NoticeKind::Sound,
      text + (source_.empty() ? " Waiting for it." : " Waiting for it to come back."));
  services_.input.WatchForReturn();
}

}  // namespace velt
