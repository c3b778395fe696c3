#include "recording/recorder.h"

#include "text/formats.h"
#include "text/paths.h"

namespace velt {
namespace {

constexpr int32_t kRecordingImage = 1;
constexpr int32_t kIdleImage = 2;

// "hh.mm.ss"
std::string TimeStamp(const LocalTime& now) {
  return AtLeastTwoDigits(now.hour) + "." + AtLeastTwoDigits(now.minute) + "." +
         AtLeastTwoDigits(now.second);
}

}  // namespace

Recorder::Recorder(const Parts& parts, const Ports& ports) : parts_(parts), ports_(ports) {
  connections_ +=
      ports_.recorder.happened.Listen([this](const RecorderEvent& event) { HandleEvent(event); });
  connections_ += parts_.form.imgStartStop.clicked.Listen([this] { Offer(); });
  connections_ += parts_.form.imgRecOnOff[0].clicked.Listen([this] { imgRecOnOff_Click(); });
  connections_ += parts_.form.tmrRec.ticked.Listen([this] { tmrRec_Timer(); });
  connections_ += parts_.menu.mnuRecordOption.clicked.Listen([this] { mnuRecordOption_Click(); });
  ControlArray<MenuItem>& options = parts_.menu.mnuRecordOptions;
  connections_ += options[0].clicked.Listen([this] { imgRecOnOff_Click(); });
  connections_ += options[2].clicked.Listen([this] { parts_.soundTools.OpenExternalRecorder(); });
  connections_ += options[4].clicked.Listen(
      [this] { parts_.soundTools.OpenVolumeControl(SoundTools::Side::Recording); });
}

bool Recorder::Recording() const {
  return parts_.form.imgRecOnOff[0].tag.Get() == "Rec";
}

void Recorder::Offer() {
  parts_.form.imgRecOnOff[0].enabled = true;
  if (parts_.form.imgRecOnOff[0].tag.Get().empty()) ShowState(kIdleImage);
}

void Recorder::ShowState(int32_t image) {
  ControlArray<Image>& images = parts_.form.imgRecOnOff;
  images[0].tag = images[image].tag.Get();
  images[0].toolTip = images[image].toolTip.Get();
}

void Recorder::imgRecOnOff_Click() {
  if (Recording()) {
    Finish();
  } else {
    StartWavRecording();
  }
}

void Recorder::StartWavRecording() {
  ShowState(kRecordingImage);
  parts_.messageForm.lblMessage.visible = true;
  parts_.notices.Over(NoticeKind::Recording);
  ports_.recorder.Open({parts_.capture.DeviceName(), parts_.capture.SourceName()}, parts_.rateHz);
  ports_.recorder.Record();
  ShowFile("VELTSA_" + parts_.platform.DateStamp() + "_" + TimeStamp(ports_.clock.Now()) + ".wav");
  ports_.recorder.SaveAs(parts_.installation.dataFolder / "WAV" / TextPath(recFileName_));
  recTicks_ = 0;
  parts_.form.tmrRec.enabled = true;
}

void Recorder::ShowFile(const std::string& name) {
  recFileName_ = parts_.messages.recFileName = name;
  parts_.messageForm.lblMessage.caption = "Recording...\\WAV\\" + name + "....";
}

void Recorder::Finish() {
  if (!Recording()) return;
  ShowState(kIdleImage);
  ports_.recorder.Close();
  parts_.form.tmrRec.enabled = false;
  parts_.messageForm.lblMessage.visible = false;
}

void Recorder::mnuRecordOption_Click() {
  parts_.menu.mnuRecordOptions[0].caption =
      std::string(Recording() ? "Stop Recording" : "Start Recording");
}

void Recorder::tmrRec_Timer() {
  ++recTicks_;
  parts_.messageForm.lblMessage.visible = recTicks_ == 2;
  if (recTicks_ == 2) recTicks_ = 0;
}

void Recorder::HandleEvent(const RecorderEvent& event) {
  const std::string name = PathText(event.file.filename());
  const auto log = [this](LogLevel level, const std::string& text) {
    ports_.log.Write(level, "velt.recording", text);
  };
  switch (event.kind) {
    case RecorderEvent::Kind::Started:
    case RecorderEvent::Kind::NextFile:
      log(LogLevel::Info, "Recording into " + PathText(event.file) + ".");
      if (name != recFileName_) ShowFile(name);
      break;
    case RecorderEvent::Kind::Moved:
      parts_.messages.Show("The recording goes on from " + event.text + ".");
      break;
    case RecorderEvent::Kind::Failed:
      log(LogLevel::Warning, event.text);
      Finish();
      Failed(name.empty() ? event.text : event.text + " What was recorded is in " + name + ".");
      break;
    case RecorderEvent::Kind::Finished:
      log(LogLevel::Info, "The recording " + name + " is complete.");
      if (!event.text.empty()) Failed(event.text);
      break;
  }
}

void Recorder::Failed(const std::string& text) {
  parts_.messages.Show(text);
  parts_.notices.Raise(NoticeKind::Recording, text);
}

}  // namespace velt
