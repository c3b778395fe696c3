#include "adapters/pulse/sound_feed.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace velt {
namespace {

// 1 MB: 2.7 s of two channels at 48 kHz.
constexpr size_t kValuesAhead = 262144;
constexpr size_t kValuesAtOnce = 8192;  // whole frames of one and of two channels

}  // namespace

struct SoundFeed::Store {
  std::mutex mutex;
  std::condition_variable changed;
  Sound sound;
  std::vector<float> values = std::vector<float>(kValuesAhead);
  uint64_t written = 0;
  uint64_t taken = 0;
  bool ended = false;      // nothing more is written
  bool brokenOff = false;  // because the file became shorter, or cannot be read any more
  bool abandoned = false;  // nobody takes any more
};

SoundFeed::SoundFeed(std::unique_ptr<PlayedSound> sound, const std::filesystem::path& file)
    : store_(std::make_shared<Store>()) {
  try {
    std::thread([store = store_, sound = std::move(sound), file] {
      Fill(*store, *sound, file);
    }).detach();
  } catch (const std::system_error&) {
    store_->sound = {.state = State::Failed, .text = "The system has no thread left"};
  }
}

SoundFeed::~SoundFeed() {
  const std::lock_guard lock(store_->mutex);
  store_->abandoned = true;
  store_->changed.notify_all();
}

void SoundFeed::Fill(Store& store, PlayedSound& sound, const std::filesystem::path& file) {
  std::string failure = sound.Open(file);
  std::vector<float> piece(kValuesAtOnce);
  for (bool first = true;; first = false) {
    const size_t got = failure.empty() ? sound.Read(piece) : 0;
    std::unique_lock lock(store.mutex);
    if (first) {
      if (got == 0 && failure.empty()) failure = "There is no sound in the file";
      if (failure.empty()) {
        store.sound = {State::Ready, sound.Warning(), sound.RateHz(), sound.Channels(),
                       sound.LengthSeconds()};
      } else {
        store.sound = {.state = State::Failed, .text = failure};
      }
    }
    store.changed.wait(lock, [&store, got] {
      return store.abandoned || store.written - store.taken + got <= kValuesAhead;
    });
    for (const float value : std::span(piece).first(got)) {
      store.values[store.written++ % kValuesAhead] = value;
    }
    store.ended = got < piece.size();
    store.brokenOff = failure.empty() && sound.Warning() != store.sound.text;
    if (store.ended || store.abandoned) return;
  }
}

SoundFeed::Sound SoundFeed::Look() const {
  const std::lock_guard lock(store_->mutex);
  return store_->sound;
}

size_t SoundFeed::Take(std::span<float> values) {
  const std::lock_guard lock(store_->mutex);
  const size_t got = std::min<size_t>(values.size(), store_->written - store_->taken);
  for (float& value : values.first(got)) value = store_->values[store_->taken++ % kValuesAhead];
  store_->changed.notify_all();
  return got;
}

bool SoundFeed::Ended() const {
  const std::lock_guard lock(store_->mutex);
  return store_->ended && store_->taken == store_->written;
}

bool SoundFeed::BrokenOff() const {
  const std::lock_guard lock(store_->mutex);
  return store_->brokenOff;
}

}  // namespace velt
