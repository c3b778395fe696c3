// Reads a sound file ahead on a thread of its own, about as much as is heard in seconds, so that a
// disk that takes its time holds nobody up.
#pragma once

#include <memory>

#include "ports/played_sound.h"

namespace velt {

// All functions return at once.
class SoundFeed {
 public:
  // The thread begins to open the file.
  SoundFeed(std::unique_ptr<PlayedSound> sound, const std::filesystem::path& file);
  ~SoundFeed();  // the thread ends on its own, as soon as the disk lets it
  SoundFeed(const SoundFeed&) = delete;
  SoundFeed& operator=(const SoundFeed&) = delete;

  enum class State {
    Opening,
    Failed,  // there is nothing to be played
    Ready,   // the first of it is there
  };
  struct Sound {
    State state = State::Opening;
    std::string text = {};  // Failed: why, as a line for people; Ready: what is wrong all the same
    int32_t rateHz = 0;
    int32_t channels = 0;
    double lengthSeconds = 0.0;
  };
  Sound Look() const;

  // Takes up to as many values as there is place for; fewer when the disk has not given more yet.
  size_t Take(std::span<float> values);
  bool Ended() const;  // all of the file was taken
  // Of one that has ended: it gave less than it had promised when it was opened.
  bool BrokenOff() const;

 private:
  struct Store;
  static void Fill(Store& store, PlayedSound& sound, const std::filesystem::path& file);

  std::shared_ptr<Store> store_;
};

}  // namespace velt
