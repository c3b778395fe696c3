// Writes sound into a file beside the thread that it comes from, which never waits for the disk.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

#include "event/event.h"

namespace velt {

struct WriterEvent {
  enum class Kind {
    Created,   // `file` is being written
    NextFile,  // the one before is complete; `file` is being written
    Failed,    // writing has ended by itself, with a whole file if any; `text` says why
    Finished,  // after End; `text` is empty, or says why the end of the file is missing
  };
  Kind kind = Kind::Created;
  std::filesystem::path file = {};
  std::string text = {};  // a sentence for people
};

class SoundWriter {
 public:
  static constexpr int32_t kChannels = 2;

  virtual ~SoundWriter() = default;

  // Receives the events, on the window's thread, never from within a call below. After End only
  // Finished follows.
  Event<const WriterEvent&> happened;

  // Makes the file, with a number added to its name when there is one of that name.
  virtual void Begin(const std::filesystem::path& file, int32_t rateHz) = 0;

  // From any thread: appends samples of both channels in turns. Ignored while nothing is written.
  virtual void Write(std::span<const int16_t> samples) = 0;
  virtual void WriteSilence(size_t samples) = 0;

  // Writes what is left and closes the file, later.
  virtual void End() = 0;
};

}  // namespace velt
