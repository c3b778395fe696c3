// A sound file as it is played: at its own rate, in one or two channels. May wait for a disk; used
// on a thread that may.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

namespace velt {

class PlayedSound {
 public:
  virtual ~PlayedSound() = default;

  // Returns one line for people, with the file's name, when there is nothing to be played; empty on
  // success.
  virtual std::string Open(const std::filesystem::path& file) = 0;

  // Valid after a successful Open.
  virtual int32_t RateHz() const = 0;
  virtual int32_t Channels() const = 0;      // 1 or 2
  virtual double LengthSeconds() const = 0;  // absurdly long where the file does not tell
  virtual std::string Warning() const = 0;   // what is wrong with the file; empty when nothing is

  // Reads up to as many values as there is place for, whole frames, -1.0 to 1.0; fewer only at the
  // end.
  virtual size_t Read(std::span<float> values) = 0;
};

}  // namespace velt
