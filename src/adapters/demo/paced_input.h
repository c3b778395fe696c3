// Serves any source of samples as if it were a sound device: at the pace of the clock, without a
// thread. What the caller was too late for is dropped.
#pragma once

#include <chrono>
#include <concepts>
#include <memory>
#include <string>
#include <utility>

#include "ports/audio_input.h"
#include "ports/scheduler.h"

namespace velt {

// Open starts at the beginning and tells in one line why it cannot, empty on success; Read gives
// the next samples, Skip passes over them, false when there are no more.
template <class Source>
concept SampleSource = requires(Source source, std::span<int16_t> samples, uint64_t count) {
  { source.Open() } -> std::same_as<std::string>;
  { source.Read(samples) } -> std::same_as<bool>;
  { source.Skip(count) } -> std::same_as<bool>;
};

template <SampleSource Source>
class PacedInput : public AudioInput {
 public:
  // `device` is what the list of devices shows. Whatever name Open is given, there is only this.
  PacedInput(Source source, AudioDevice device, Scheduler& scheduler)
      : source_(std::move(source)), device_(std::move(device)), scheduler_(scheduler) {}

  const Source& Samples() const { return source_; }

  std::vector<AudioDevice> Devices() const override { return {device_}; }

  void FindDevices() override {}

  void Open(const std::string& /*device*/) override {
    Close();
    std::string failure = source_.Open();
    open_ = failure.empty();
    if (open_) {
      Tell({AudioEvent::Kind::Opened, device_.name, device_.description});
    } else {
      Tell({AudioEvent::Kind::OpenFailed, std::move(failure)});
    }
  }

  void Start() override {
    started_ = open_;
    from_ = scheduler_.Now();
    used_ = 0;
  }

  TakeResult TakeNewest(std::span<int16_t, kBlockSamples> block) override {
    if (!open_) return TakeResult::Gone;
    if (!started_) return TakeResult::NotYet;
    const int64_t due = SamplesSince(from_);
    if (due - used_ < kBlock) return TakeResult::NotYet;
    // After a long sleep the source goes on where it was, save for the last part of a second:
    // passing over hours of a file would hold the window.
    const int64_t late = (due - used_ - kBlock) % kSampleRateHz;
    if (!source_.Skip(static_cast<uint64_t>(late)) || !source_.Read(block)) {
      Close();
      Tell({AudioEvent::Kind::Lost, device_.description + " cannot be read any more."});
      return TakeResult::Gone;
    }
    // Counted from the last whole second, so that no number grows with the time.
    const std::chrono::seconds whole(due / kSampleRateHz);
    from_ += whole;
    used_ = due % kSampleRateHz;
    return TakeResult::Block;
  }

  void Close() override {
    open_ = false;
    started_ = false;
    watch_.Cancel();
    stream_ = std::make_shared<char>();
  }

  void WatchForReturn() override {
    watch_ = scheduler_.After(std::chrono::seconds(1), [this] {
      if (source_.Open().empty()) {
        Tell({AudioEvent::Kind::Returned, device_.name});
      } else {
        WatchForReturn();
      }
    });
  }

 private:
  static constexpr auto kBlock = static_cast<int64_t>(kBlockSamples);

  int64_t SamplesSince(SteadyTime begin) const {
    // By seconds and their rest: nanoseconds times the rate would overflow after two days.
    const auto passed =
        std::chrono::duration_cast<std::chrono::nanoseconds>(scheduler_.Now() - begin);
    const auto whole = std::chrono::duration_cast<std::chrono::seconds>(passed);
    return whole.count() * kSampleRateHz +
           (passed - whole).count() * kSampleRateHz / std::nano::den;
  }

  // In a later turn of the loop, and only while this stream is the one at hand.
  void Tell(AudioEvent event) {
    scheduler_.Post([this, stream = std::weak_ptr(stream_), event = std::move(event)] {
      if (!stream.expired()) happened.Raise(event);
    });
  }

  Source source_;
  AudioDevice device_;
  Scheduler& scheduler_;
  bool open_ = false;
  bool started_ = false;
  SteadyTime from_;
  int64_t used_ = 0;  // samples since from_ that are given out or dropped
  std::shared_ptr<char> stream_ = std::make_shared<char>();
  Scheduler::Handle watch_;
};

}  // namespace velt
