// Opens and closes the sound input, and keeps capture running when the input comes and goes.
#pragma once

#include <functional>
#include <span>
#include <string>

#include "audio/delivery_watchdog.h"
#include "dialogs/message_line.h"
#include "dialogs/notices.h"
#include "form/main_form.h"
#include "platform/installation.h"
#include "ports/audio_input.h"
#include "ports/log.h"
#include "ports/prompts.h"
#include "ports/scheduler.h"
#include "rig/transmit_guard.h"

namespace velt {

class Capture {
 public:
  struct Parts {
    CaptureControls& form;
    DisplayControls& display;
    RigControls& rig;
    const Installation& installation;
    const TransmitGuard& guard;
    MessageLine& messages;
    Notices& notices;
  };
  struct Ports {
    AudioInput& input;
    Prompts& prompts;
    Scheduler& scheduler;
    Log& log;
  };
  // Opens the source of that name until another is chosen; empty: the system's default.
  Capture(const Parts& parts, const Ports& ports, std::string deviceName);

  Event<> started;

  // Fills DevicesBox with the devices known. Nothing calls it: the device is chosen elsewhere.
  // Without any device `noDevices` is called after the message was dismissed.
  void InitDevices(std::function<void()> noDevices);

  void StartButton_Click();
  void StopButton_Click();

  // As StartButton_Click, for a start that nobody is waiting beside: what is not there yet, be it
  // the sound server, is waited for without a box.
  void StartWhenThere();

  // The device to open from now on; an empty name is the system's default. What runs, is being
  // opened or is waited for goes on with it at once.
  void ChooseDevice(const AudioDevice& device);

  // Resets and closes the device.
  void StopCapture();

  // The picture that starts and stops the analyser: its tag is "Play" while stopped.
  void imgStartStop_Click();

  // Puts the picture into its running state, without starting.
  void ShowRunning();

  // Copies the newest samples not used yet; false when there are none. Ends the ticks of a device
  // that is closed, and gives one up that has stopped delivering.
  bool TakeBlock(std::span<int16_t, kBlockSamples> block);

  // Whether a device is open or being opened.
  bool DeviceOpen() const { return device_ != Device::Closed; }
  bool Capturing() const { return capturing_; }

  // What is or would be opened: chosen by name, or empty for the system's default; and the name of
  // the source that was heard last, empty before the first.
  const std::string& DeviceName() const { return deviceName_; }
  const std::string& SourceName() const { return source_; }

  int32_t scanFreqMs = 25;  // period given to Timer1 when capture starts

 private:
  enum class Device { Closed, Opening, Open };

  std::string SourceToOpen() const;
  void ShowSourceToOpen();
  void Open(const std::string& device);
  void StopSound();
  void HandleEvent(const AudioEvent& event);
  void Opened(const AudioEvent& event);
  void Moved(const AudioEvent& event);
  void ShowSource(const AudioEvent& event);
  void OpenFailed(const std::string& text);
  void Lost(const std::string& text);
  void AwaitReturn(const std::string& text);
  void ShowStopped();
  void ShowStartable();

  Parts parts_;
  Ports ports_;
  std::string deviceName_;
  std::string deviceDescription_;  // for people, if it is known from before
  DeliveryWatchdog watchdog_;
  Device device_ = Device::Closed;
  bool capturing_ = false;
  bool recovering_ = false;  // lost while running, or not there yet; capture begins by itself
  bool awaited_ = false;     // and that was told
  std::string source_;       // name of the source that was open last
  Connections connections_;
};

}  // namespace velt
