// Records sound into a WAV file: 16-bit stereo PCM. Its calls stand for those of a media device:
// open, record, save under a name, close. No call waits for a device, a server or a disk; what
// takes time, and what goes wrong, is told by an event.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "event/event.h"

namespace velt {

struct RecordingSource {
  std::string device;  // its name, and no other; empty: the system's default
  std::string heard;   // for the default: what is heard now, where the user may have moved it
};

struct RecorderEvent {
  enum class Kind {
    Started,   // there is a file, and sound is written into it
    Moved,     // the sound goes on from another source; `text` is its description
    NextFile,  // the file is as long as one can be: the sound goes on in another one
    Failed,    // could not begin, or has ended by itself; `text` says why, as a sentence for people
    Finished,  // after Close: the file is complete; `text` is empty, or says why its end is missing
  };
  Kind kind = Kind::Started;
  std::string text = {};
  std::filesystem::path file = {};  // that is written; empty when none was made
};

class SoundRecorder {
 public:
  virtual ~SoundRecorder() = default;

  // Receives the events, on the window's thread, never from within a call below. After Close only
  // Finished follows, where there was a file.
  Event<const RecorderEvent&> happened;

  // Opens the source at that rate (samples per second of each channel). Closes what was open. It
  // goes along when the default changes or the user moves the stream, as AudioInput does; without
  // its source or the server a recording fails, and what there is of it is a whole file.
  virtual void Open(const RecordingSource& source, int32_t rateHz) = 0;

  // Records from now on, or as soon as the source is open.
  virtual void Record() = 0;

  // What the file is called. It is written as the recording goes on, and brought up to date at
  // least once a second, so that it can be played whatever happens to the program. Another file is
  // never replaced: a number is added to the name then. The folder has to exist.
  virtual void SaveAs(const std::filesystem::path& file) = 0;

  // Ends the recording; the rest is written while the program goes on, and at its end the
  // destructor gives that a moment.
  virtual void Close() = 0;
};

}  // namespace velt
