// Plays sound files on the user's default sound output. No call waits for a disk, a device or a
// server; what takes time is told by an event.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "event/event.h"
#include "ports/scheduler.h"

namespace velt {

struct PlayerEvent {
  enum class Kind {
    Ready,    // after Prepare: the file is decoded and the server waits for Start; `text` says what
              // is wrong with the file that can be played all the same, empty when nothing is
    Drained,  // after Start: all of the file was heard
    Failed,   // nothing is played any more; `text` says why, as a sentence for people
  };
  Kind kind = Kind::Ready;
  std::string text;
};

class SoundPlayer {
 public:
  virtual ~SoundPlayer() = default;

  // Receives the events, on the window's thread, never from within a call below. Events of a file
  // that was stopped or replaced meanwhile are dropped.
  Event<const PlayerEvent&> happened;

  // Makes the file ready to be heard at once; what was played before ends. One of Ready and Failed
  // follows within 10 s, by which a disk or a server that does not answer is given up.
  virtual void Prepare(const std::filesystem::path& file) = 0;

  // Lets the file be heard, after Ready.
  virtual void Start() = 0;

  // Ends the sound at once, whatever state the file, the device or the server is in.
  virtual void Stop() = 0;

  struct Progress {
    Milliseconds position{0};
    std::optional<Milliseconds> length = {};  // empty where the file does not tell
  };
  // What was heard of the file that is played or was played last.
  virtual Progress Heard() const = 0;
};

}  // namespace velt
