#include "adapters/pulse/pulse_recorder.h"

#include <algorithm>
#include <utility>

namespace velt {
namespace {

constexpr Milliseconds kFragment{100};
constexpr Milliseconds kBacklog{4000};
// A headset needs its time to begin.
constexpr Milliseconds kSilenceLimit{3000};

uint32_t Bytes(Milliseconds time, int32_t rateHz) {
  constexpr uint64_t kFrameBytes = SoundWriter::kChannels * sizeof(int16_t);
  const uint64_t frames =
      static_cast<uint64_t>(time.count()) * static_cast<uint64_t>(rateHz) / 1000;
  return static_cast<uint32_t>(std::max<uint64_t>(frames, 1) * kFrameBytes);
}

}  // namespace

PulseRecorder::PulseRecorder(Scheduler& scheduler, SoundWriter& writer)
    : scheduler_(scheduler),
      writer_(writer),
      toWriter_(
          writer_.happened.Listen([this](const WriterEvent& event) { HandleWriter(event); })) {}

void PulseRecorder::Open(const RecordingSource& source, int32_t rateHz) {
  Close();
  rateHz_ = rateHz;
  const pa_sample_spec wanted{PA_SAMPLE_S16LE, static_cast<uint32_t>(rateHz),
                              SoundWriter::kChannels};
  if (rateHz <= 0 || pa_sample_spec_valid(&wanted) == 0) {
    refusal_ = scheduler_.After(Milliseconds(0), [this, rateHz] {
      Fail("The sound server does not record " + std::to_string(rateHz) + " samples a second.");
    });
    return;
  }
  input_ =
      std::make_unique<PulseInput>(scheduler_,
                                   StreamFormat{"VELT-SA recording", wanted.rate, wanted.channels,
                                                Bytes(kFragment, rateHz), Bytes(kBacklog, rateHz)},
                                   static_cast<SampleSink&>(*this));
  listening_ += input_->happened.Listen([this](const AudioEvent& event) { HandleInput(event); });
  input_->BeginAt(source.heard);
  input_->Open(source.device);
}

void PulseRecorder::Record() {
  record_ = true;
  BeginIfReady();
}

void PulseRecorder::SaveAs(const std::filesystem::path& file) {
  file_ = file;
  BeginIfReady();
}

void PulseRecorder::Close() {
  watch_.Cancel();
  refusal_.Cancel();
  listening_.Disconnect();
  input_.reset();
  open_ = record_ = false;
  file_.clear();
  if (std::exchange(writing_, false)) writer_.End();
}

void PulseRecorder::BeginIfReady() {
  if (writing_ || !open_ || !record_ || file_.empty()) return;
  writing_ = true;
  writer_.Begin(file_, rateHz_);
  seen_ = delivered_;
  watch_ = scheduler_.After(kSilenceLimit, [this] { WatchDelivery(); });
}

// Nobody else reports a sound server that is frozen.
void PulseRecorder::WatchDelivery() {
  const uint64_t now = delivered_;
  if (std::exchange(seen_, now) == now) return Fail("The sound server has stopped delivering.");
  watch_ = scheduler_.After(kSilenceLimit, [this] { WatchDelivery(); });
}

void PulseRecorder::Write(std::span<const int16_t> samples) {
  delivered_ += samples.size();
  writer_.Write(samples);
}

void PulseRecorder::WriteSilence(size_t samples) {
  delivered_ += samples;
  writer_.WriteSilence(samples);
}

void PulseRecorder::HandleInput(const AudioEvent& event) {
  switch (event.kind) {
    case AudioEvent::Kind::Opened:
      open_ = true;
      BeginIfReady();
      break;
    case AudioEvent::Kind::Moved:
      happened.Raise({RecorderEvent::Kind::Moved, event.description, file_});
      break;
    case AudioEvent::Kind::OpenFailed:
    case AudioEvent::Kind::Lost:
      Fail(event.text);
      break;
    case AudioEvent::Kind::Returned:
      break;
  }
}

void PulseRecorder::HandleWriter(const WriterEvent& event) {
  switch (event.kind) {
    case WriterEvent::Kind::Created:
    case WriterEvent::Kind::NextFile:
      if (!writing_) break;
      file_ = event.file;
      happened.Raise({event.kind == WriterEvent::Kind::Created ? RecorderEvent::Kind::Started
                                                               : RecorderEvent::Kind::NextFile,
                      {},
                      file_});
      break;
    case WriterEvent::Kind::Failed:
      file_ = event.file;
      Fail(event.text);
      break;
    case WriterEvent::Kind::Finished:
      happened.Raise({RecorderEvent::Kind::Finished, event.text, event.file});
      break;
  }
}

void PulseRecorder::Fail(const std::string& text) {
  const std::filesystem::path file = writing_ ? file_ : std::filesystem::path();
  Close();
  happened.Raise({RecorderEvent::Kind::Failed, text, file});
}

}  // namespace velt
