// Records what is heard into the data folder's WAV folder, by the record image and its menu. Has a
// stream of its own: the analyser may start and stop meanwhile.
#pragma once

#include <cstdint>
#include <string>

#include "audio/capture.h"
#include "dialogs/message_line.h"
#include "dialogs/notices.h"
#include "form/main_form.h"
#include "platform/installation.h"
#include "platform/platform_helpers.h"
#include "platform/sound_tools.h"
#include "ports/clock.h"
#include "ports/log.h"
#include "ports/sound_recorder.h"

namespace velt {

class Recorder {
 public:
  struct Parts {
    CaptureControls& form;
    RecordingControls& menu;
    MessageControls& messageForm;
    MessageLine& messages;
    Notices& notices;
    const Capture& capture;
    const PlatformHelpers& platform;
    SoundTools& soundTools;
    const Installation& installation;
    const int32_t& rateHz;  // of recordings, as it is set
  };
  struct Ports {
    SoundRecorder& recorder;
    const Clock& clock;
    Log& log;
  };
  Recorder(const Parts& parts, const Ports& ports);

  // The analyser starts: recordings can be made from now on.
  void Offer();

  // Starts a recording, or ends the one that goes on.
  void imgRecOnOff_Click();

  // Ends a recording, if one goes on: the program is about to end.
  void Finish();

  bool Recording() const;

  void mnuRecordOption_Click();
  void tmrRec_Timer();

 private:
  void StartWavRecording();
  void ShowState(int32_t image);
  void ShowFile(const std::string& name);
  void HandleEvent(const RecorderEvent& event);
  void Failed(const std::string& text);

  Parts parts_;
  Ports ports_;
  std::string recFileName_;  // without folder
  int recTicks_ = 0;
  Connections connections_;
};

}  // namespace velt
