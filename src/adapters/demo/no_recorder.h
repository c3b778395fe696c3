// Stands for the recorder in runs that make their own sound, or read it from a file.
#pragma once

#include "ports/scheduler.h"
#include "ports/sound_recorder.h"

namespace velt {

class NoRecorder : public SoundRecorder {
 public:
  explicit NoRecorder(Scheduler& scheduler) : scheduler_(scheduler) {}

  void Open(const RecordingSource& /*source*/, int32_t /*rateHz*/) override {
    refusal_ = scheduler_.After(Milliseconds(0), [this] {
      happened.Raise({RecorderEvent::Kind::Failed,
                      "This run has no sound from outside: there is nothing to record."});
    });
  }
  void Record() override {}
  void SaveAs(const std::filesystem::path& /*file*/) override {}
  void Close() override { refusal_.Cancel(); }

 private:
  Scheduler& scheduler_;
  Scheduler::Handle refusal_;
};

}  // namespace velt
