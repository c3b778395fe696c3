// Writes recordings as WAV files, each on a thread of its own: a disk that hangs holds up neither
// the sound nor the window nor the next recording on another disk.
#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "adapters/soundfile/wav_file.h"
#include "ports/scheduler.h"
#include "ports/sound_writer.h"

namespace velt {

class WavWriter final : public SoundWriter {
 public:
  // The scheduler outlives the writer.
  explicit WavWriter(Scheduler& scheduler, uint64_t mostFrames = WavFile::kMostFrames);
  // Gives the disk two seconds to take what is left.
  ~WavWriter() override;

  void Begin(const std::filesystem::path& file, int32_t rateHz) override;
  void Write(std::span<const int16_t> samples) override;
  void WriteSilence(size_t samples) override;
  void End() override;

 private:
  class Job;

  void Told(const std::shared_ptr<Job>& job, const WriterEvent& event);
  std::shared_ptr<Job> Current() const;

  Scheduler& scheduler_;
  const uint64_t mostFrames_;
  const std::shared_ptr<WavWriter*> self_;  // tells a posted event whether this is still alive
  mutable std::mutex mutex_;
  std::shared_ptr<Job> job_;  // written under the mutex, on the window's thread
  std::vector<std::shared_ptr<Job>> ending_;
};

}  // namespace velt
