#include "adapters/soundfile/wav_writer.h"

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <system_error>
#include <thread>
#include <utility>

#include "adapters/soundfile/frame_queue.h"
#include "text/error_text.h"
#include "text/paths.h"

namespace velt {
namespace {

constexpr Milliseconds kPeriod{500};  // the file is brought up to date
constexpr int kPeriodsToDisk = 2;     // and reaches the disk
constexpr size_t kQueueSeconds = 20;
constexpr uint64_t kMostMissingSeconds = 20;
constexpr std::chrono::seconds kEndLimit{2};

std::string EndText(const std::filesystem::path& file, int error) {
  const std::string name = PathText(file.filename());
  if (error == ENOENT) return "The recording has ended: " + name + " was deleted or moved.";
  return "The recording " + name + " has ended: " + ErrorText(error) + ".";
}

}  // namespace

// One recording. Lives as long as its thread or its writer does.
class WavWriter::Job : public std::enable_shared_from_this<Job> {
 public:
  Job(WavWriter& writer, const std::filesystem::path& file, int32_t rateHz, uint64_t mostFrames)
      : wanted_(file),
        writer_(writer.self_),
        queue_(kQueueSeconds * SamplesOfSecond(rateHz)),
        mostMissing_(kMostMissingSeconds * SamplesOfSecond(rateHz)),
        file_(file, rateHz, mostFrames),
        scheduler_(&writer.scheduler_) {}

  // False: the system has no thread left.
  bool Start() {
    try {
      std::thread([self = shared_from_this()] { self->Run(); }).detach();
    } catch (const std::system_error&) {
      return false;
    }
    return true;
  }

  void Write(std::span<const int16_t> samples) { Check(queue_.Write(samples)); }
  void WriteSilence(size_t count) { Check(queue_.WriteSilence(count)); }

  void End() {
    {
      const std::lock_guard lock(mutex_);
      ending_ = true;
    }
    changed_.notify_all();
  }
  // Nothing is told any more.
  void LeaveAlone() {
    const std::lock_guard lock(mutex_);
    scheduler_ = nullptr;
  }
  bool Done() {
    const std::lock_guard lock(mutex_);
    return done_;
  }
  void Tell(const WriterEvent& event) {
    const std::lock_guard lock(mutex_);
    if (scheduler_ == nullptr) return;
    scheduler_->Post([writer = writer_, job = shared_from_this(), event] {
      if (const auto alive = writer.lock()) (*alive)->Told(job, event);
    });
  }
  // Until the file is closed, or the time is over.
  void AwaitDone(std::chrono::steady_clock::time_point limit) {
    std::unique_lock lock(mutex_);
    changed_.wait_until(lock, limit, [this] { return done_; });
  }

 private:
  static size_t SamplesOfSecond(int32_t rateHz) { return static_cast<size_t>(rateHz) * kChannels; }

  void Check(uint64_t missing) {
    if (missing <= mostMissing_ || std::exchange(hung_, true)) return;
    Tell({WriterEvent::Kind::Failed, wanted_,
          "The recording " + PathText(wanted_.filename()) +
              " has ended: the disk does not answer."});
    End();
  }

  void Run() {
    int error = file_.Create();
    if (error != 0) {
      Tell({WriterEvent::Kind::Failed,
            {},
            "The recording could not be saved in " + PathText(wanted_.parent_path()) + ": " +
                ErrorText(error) + "."});
    } else {
      Tell({WriterEvent::Kind::Created, file_.Path()});
      error = WriteToTheEnd();
      const std::filesystem::path last = file_.Path();
      const int atEnd = file_.Finish();
      if (error == 0) error = atEnd;
      Tell({Ending() ? WriterEvent::Kind::Finished : WriterEvent::Kind::Failed, last,
            error == 0 ? std::string() : EndText(last, error)});
    }
    {
      const std::lock_guard lock(mutex_);
      done_ = true;
    }
    changed_.notify_all();
  }

  int WriteToTheEnd() {
    for (int period = 1;; ++period) {
      const bool ending = AwaitPeriod();
      const std::filesystem::path before = file_.Path();
      while (const size_t count = queue_.Take(buffer_)) {
        if (const int error = file_.Append({buffer_.data(), count})) return error;
      }
      if (file_.Path() != before) Tell({WriterEvent::Kind::NextFile, file_.Path()});
      if (const int error = file_.Commit(period % kPeriodsToDisk == 0)) return error;
      if (ending) return 0;
    }
  }

  // Whether this is the last one.
  bool AwaitPeriod() {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, kPeriod, [this] { return ending_; });
  }
  bool Ending() {
    const std::lock_guard lock(mutex_);
    return ending_;
  }

  const std::filesystem::path wanted_;
  const std::weak_ptr<WavWriter*> writer_;
  FrameQueue queue_;
  const uint64_t mostMissing_;
  bool hung_ = false;  // of the sound's thread

  // The thread's own.
  WavFile file_;
  std::array<int16_t, 16384> buffer_{};

  std::mutex mutex_;
  std::condition_variable changed_;
  Scheduler* scheduler_;
  bool ending_ = false;
  bool done_ = false;
};

WavWriter::WavWriter(Scheduler& scheduler, uint64_t mostFrames)
    : scheduler_(scheduler), mostFrames_(mostFrames), self_(std::make_shared<WavWriter*>(this)) {}

WavWriter::~WavWriter() {
  End();
  const auto limit = std::chrono::steady_clock::now() + kEndLimit;
  for (const auto& job : ending_) {
    job->AwaitDone(limit);
    job->LeaveAlone();
  }
}

void WavWriter::Begin(const std::filesystem::path& file, int32_t rateHz) {
  End();
  auto job = std::make_shared<Job>(*this, file, rateHz, mostFrames_);
  {
    const std::lock_guard lock(mutex_);
    job_ = job;
  }
  if (job->Start()) return;
  job->Tell({WriterEvent::Kind::Failed, {}, "The system has no thread left for a recording."});
}

std::shared_ptr<WavWriter::Job> WavWriter::Current() const {
  const std::lock_guard lock(mutex_);
  return job_;
}

void WavWriter::Write(std::span<const int16_t> samples) {
  if (const auto job = Current()) job->Write(samples);
}

void WavWriter::WriteSilence(size_t samples) {
  if (const auto job = Current()) job->WriteSilence(samples);
}

void WavWriter::End() {
  std::shared_ptr<Job> job;
  {
    const std::lock_guard lock(mutex_);
    job = std::exchange(job_, nullptr);
  }
  std::erase_if(ending_, [](const auto& ended) { return ended->Done(); });
  if (!job) return;
  job->End();
  ending_.push_back(std::move(job));
}

void WavWriter::Told(const std::shared_ptr<Job>& job, const WriterEvent& event) {
  const bool current = job == job_;
  if (event.kind == WriterEvent::Kind::Failed && current) End();
  if (current || event.kind == WriterEvent::Kind::Finished) {
    happened.Raise(event);
  } else if (event.kind == WriterEvent::Kind::Failed) {
    // It was on its way when the end was asked for.
    happened.Raise({WriterEvent::Kind::Finished, event.file, event.text});
  }
}

}  // namespace velt
