// Sound capture: 16-bit mono PCM at 44100 samples per second, taken in blocks of 512 samples.
// No call waits for a device or a server; what takes time is told by an event.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "event/event.h"

namespace velt {

inline constexpr int32_t kSampleRateHz = 44100;
inline constexpr size_t kBlockSamples = 512;

struct AudioDevice {
  std::string name;         // what Open takes
  std::string description;  // for people
};

struct AudioEvent {
  enum class Kind {
    Opened,      // after Open: blocks will come once started; `text` is the source's name
    Moved,       // after Opened: the stream goes on from another source; `text` is its name
    OpenFailed,  // after Open: nothing is open; `text` says why, as a sentence for people
    Lost,        // after Opened: the stream has ended by itself; `text` says why, likewise
    Returned,    // once after WatchForReturn: Open has good prospects; `text` is the source's name
  };
  Kind kind = Kind::Opened;
  std::string text;
  std::string description = {};  // Opened, Moved: the source for people
};

enum class TakeResult {
  Block,   // the newest 512 samples not used yet were copied
  NotYet,  // fewer than 512 new samples so far
  Gone,    // nothing is open
};

class AudioInput {
 public:
  virtual ~AudioInput() = default;

  // Receives the events, on the window's thread, never from within a call below. Events of a
  // stream that was closed meanwhile are dropped.
  Event<const AudioEvent&> happened;

  // The devices known at the moment; may be empty while the server has not answered yet.
  virtual std::vector<AudioDevice> Devices() const = 0;

  // Asks for the devices without opening any; the answer is what Devices tells some time later.
  virtual void FindDevices() = 0;

  // Starts to open the device of that name and no other, or the system's default when empty. The
  // latter goes along when the default changes or the user moves the stream (Moved); a source that
  // the user has chosen so is kept for later calls, as long as it is there. Closes what was open.
  // One of Opened and OpenFailed follows within 4 s.
  virtual void Open(const std::string& device) = 0;

  // Lets an opened stream deliver. What came before is not kept.
  virtual void Start() = 0;

  // Copies the newest 512 samples that no earlier call has copied; older ones are dropped.
  virtual TakeResult TakeNewest(std::span<int16_t, kBlockSamples> block) = 0;

  // Ends the stream, the opening or the watch, whichever is under way. Returns at once, whatever
  // state the device or the server is in.
  virtual void Close() = 0;

  // After Lost, OpenFailed or Close: tells Returned once the source that was open, or asked for,
  // can be heard (again), however long that takes. Where the user has ended the stream from a
  // source that is still there, the source must go and come back first. For the system's default
  // any default source does after 3 s, and at once where a stand-in for missing devices was lost;
  // such a stand-in itself is no return.
  virtual void WatchForReturn() = 0;
};

}  // namespace velt
