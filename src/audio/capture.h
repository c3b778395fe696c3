// Opens and closes the sound input, and keeps capture running when the input comes and goes.
#pragma once

#include <functional>
#include <string>

#include "audio/delivery_watchdog.h"
#include "dialogs/message_line.h"
#include "dialogs/notices.h"
#include "form/main_form.h"
#include "ports/audio_input.h"
#include "ports/log.h"
#include "ports/prompts.h"
#include "ports/scheduler.h"

namespace velt {

class Capture {
 public:
  struct Controls {
    CaptureControls& capture;
    DisplayControls& display;
    RigControls& rig;
  };
  struct Services {
    AudioInput& input;
    Prompts& prompts;
    MessageLine& messages;
    Notices& notices;
    Scheduler& scheduler;
    Log& log;
  };
  Capture(Controls controls, Services services);

  // Fills DevicesBox with the devices known. Nothing calls it: capture always opens the device
  // named below, the default one when that is empty. Without any device `noDevices` is called
  // after the message was dismissed.
  void InitDevices(std::function<void()> noDevices);

  void StartButton_Click();
  void StopButton_Click();

  // As StartButton_Click, for a start that nobody is waiting beside: what is not there yet, be it
  // the sound server, is waited for without a box.
  void StartWhenThere();

  // Resets and closes the device.
  void StopCapture();

  // The picture that starts and stops the analyser: its tag is "Play" while stopped.
  void imgStartStop_Click();

  // Puts the picture into its running state, without starting.
  void ShowRunning();

  // A tick has found the device closed.
  void DeviceGone();

  // A tick has found no new block; one that found a block tells so with Delivered.
  void NothingDelivered();
  void Delivered() { watchdog_.Delivered(services_.scheduler.Now()); }

  // Whether a device is open or being opened.
  bool DeviceOpen() const { return device_ != Device::Closed; }
  bool Capturing() const { return capturing_; }

  std::string deviceName;     // empty: the default input
  int32_t scanFreqMs = 25;    // period given to Timer1 when capture starts
  bool engineStatus = false;  // whether the status timer runs while capturing
  std::function<void()> captureStarted;

 private:
  enum class Device { Closed, Opening, Open };

  void Open(const std::string& device);
  void HandleEvent(const AudioEvent& event);
  void Opened(const AudioEvent& event);
  void Moved(const AudioEvent& event);
  void ShowSource(const AudioEvent& event);
  void OpenFailed(const std::string& text);
  void Lost(const std::string& text);
  void AwaitReturn(const std::string& text);
  void ShowStopped();

  Controls form_;
  Services services_;
  DeliveryWatchdog watchdog_;
  Device device_ = Device::Closed;
  bool capturing_ = false;
  bool recovering_ = false;  // lost while running, or not there yet; capture begins by itself
  bool awaited_ = false;     // and that was told
  std::string source_;       // name of the source that was open last
};

}  // namespace velt
