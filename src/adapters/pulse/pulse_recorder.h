// Records from the user's sound server: a stream of its own, whatever the analyser does with its
// one, into a file that a writer keeps.
#pragma once

#include <atomic>
#include <memory>
#include <optional>

#include "adapters/pulse/pulse_input.h"
#include "ports/sound_recorder.h"
#include "ports/sound_writer.h"

namespace velt {

class PulseRecorder final : public SoundRecorder, private SampleSink {
 public:
  // Both outlive the recorder.
  PulseRecorder(Scheduler& scheduler, SoundWriter& writer);

  void Open(const RecordingSource& source, int32_t rateHz) override;
  void Record() override;
  void SaveAs(const std::filesystem::path& file) override;
  void Close() override;

 private:
  void Write(std::span<const int16_t> samples) override;
  void WriteSilence(size_t samples) override;

  void HandleInput(const AudioEvent& event);
  void HandleWriter(const WriterEvent& event);
  void BeginIfReady();
  void WatchDelivery();
  void Fail(const std::string& text);

  Scheduler& scheduler_;
  SoundWriter& writer_;
  int32_t rateHz_ = 0;
  bool open_ = false;     // the server delivers
  bool record_ = false;   // and what it delivers is wanted
  bool writing_ = false;  // in a file
  std::filesystem::path file_;
  std::atomic<uint64_t> delivered_ = 0;  // samples
  uint64_t seen_ = 0;
  Scheduler::Handle watch_;
  Scheduler::Handle refusal_;
  std::unique_ptr<PulseInput> input_;
  Connections listening_;
  Connection toWriter_;
};

}  // namespace velt
