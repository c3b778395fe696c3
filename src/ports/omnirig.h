// The CAT server and its two rigs. Reads answer at once from the last known picture of the rig,
// writes are queued: no call waits for the server. All calls and callbacks are on the window's
// thread; callbacks never come from within a call.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "event/event.h"
#include "ports/guardian.h"

namespace velt {

// Parameters of the rig interface, one bit each: modes and transmit values, and what else an event
// may say has changed.
inline constexpr int32_t PM_UNKNOWN = 0x00000001;
inline constexpr int32_t PM_FREQ = 0x00000002;
inline constexpr int32_t PM_FREQA = 0x00000004;
inline constexpr int32_t PM_FREQB = 0x00000008;
inline constexpr int32_t PM_SPLITON = 0x00008000;
inline constexpr int32_t PM_SPLITOFF = 0x00010000;
inline constexpr int32_t PM_RX = 0x00200000;
inline constexpr int32_t PM_TX = 0x00400000;
inline constexpr int32_t PM_CW_U = 0x00800000;
inline constexpr int32_t PM_CW_L = 0x01000000;
inline constexpr int32_t PM_SSB_U = 0x02000000;
inline constexpr int32_t PM_SSB_L = 0x04000000;
inline constexpr int32_t PM_DIG_U = 0x08000000;
inline constexpr int32_t PM_AM = 0x20000000;
inline constexpr int32_t PM_FM = 0x40000000;

// How the link to one rig stands.
struct RigLink {
  enum class State {
    Off,           // not opened
    Connecting,    // first attempt since it was opened
    Linked,        // the server answers and the rig too
    Silent,        // the server answers, the rig does not
    Reconnecting,  // lost or refused; tried again by itself
  };
  // Why it is Silent or Reconnecting; while that lasts, of the last attempt.
  enum class Cause {
    None,          // in all other states
    HostNotFound,  // the name stands for no address, or nobody tells which
    Refused,       // nothing listens there
    Unreachable,   // no way there, or no connection in time
    Closed,        // the server ended the connection
    NoAnswer,      // the server took a command and did not answer in time
    WrongAnswer,   // what listens there is no such server
    RigSilent,     // the server answers, the rig does not
    RigOff,        // the server says that the rig is turned off
  };
  State state = State::Off;
  int32_t retryInSeconds = 0;  // until the next attempt, while Reconnecting
  bool stale = false;          // the values are the last ones of a link that is not Linked now
  Cause cause = Cause::None;
};

// What the rig says of its transmitter.
enum class TxReport {
  Receives,
  Transmits,
  Untold,  // it cannot tell, or has not told yet on this connection
};

// A frequency or mode that the rig did not take; reads return what the rig has again.
struct RefusedWrite {
  bool isMode = false;
  int32_t value = 0;  // Hz, or one of PM_...
};

class IRigX {
 public:
  virtual ~IRigX() = default;

  virtual RigLink Link() const = 0;
  virtual std::string StatusStr() const = 0;  // "On-line", "Rig is not responding", ...
  virtual std::string RigType() const = 0;    // maker and model as the server tells; may be empty

  // Frequencies in Hz; 0 while there is none or it is unknown. A value just written is what reads
  // return.
  virtual int32_t Freq() const = 0;
  virtual int32_t FreqA() const = 0;
  virtual int32_t FreqB() const = 0;
  virtual int32_t GetRxFrequency() const = 0;
  virtual int32_t GetTxFrequency() const = 0;  // 0 while the rig receives
  virtual int32_t Mode() const = 0;            // one of PM_...; 0 while unknown

  // Writes are queued; false when they are refused at once: no link, or (frequencies) outside
  // 10 kHz to 2 GHz, or (modes) not one of PM_.... A newer write replaces one still waiting.
  virtual bool SetFreq(int32_t frequencyHz) = 0;
  virtual bool SetFreqA(int32_t frequencyHz) = 0;
  virtual bool SetFreqB(int32_t frequencyHz) = 0;
  virtual bool SetMode(int32_t mode) = 0;
  // PM_RX is never refused: without a link it is the first command after the reconnect, at this
  // address only. Each call sends it again.
  virtual bool SetTx(int32_t value) = 0;

  // As reported, not as asked for. GetTxFrequency() may follow a second later: it leaves out what
  // was reported late, from before a release.
  virtual TxReport Transmitter() const = 0;
  // The server has accepted the latest release, and nothing was keyed since.
  virtual bool ReleaseAccepted() const = 0;
  // Something that was written, keyed or released has not been answered yet, and may still be:
  // false without a connection. While a server is left it is about that one.
  virtual bool WritesWait() const = 0;
  // How the transmitter is released without this program; empty unless the server is connected.
  virtual std::optional<ReleaseRecipe> Recipe() const = 0;
};

class IOmniRigX {
 public:
  virtual ~IOmniRigX() = default;

  // What a server of this kind can.
  struct Capabilities {
    bool addresses = true;   // each rig's server has an address that can be changed
    bool simulated = false;  // there is no real transmitter behind it
  };
  virtual Capabilities Can() const = 0;

  // Events by rig number, 1 or 2.
  Event<int32_t> statusChanged;
  Event<int32_t, int32_t> paramsChanged;  // and the PM_... bits of what changed
  // The rig did not take the last SetTx(PM_TX). Not raised when that is not known: the link broke,
  // or the rig did not answer in time and may have taken it.
  Event<int32_t> keyRefused;
  // Not raised for a write that a newer one of the same kind follows, nor when the link broke.
  Event<int32_t, const RefusedWrite&> writeRefused;

  // Where the server of a rig is, "HOST:PORT". A change reconnects that rig if it was open, once
  // the old server was left as Close() does; what waits for the old one is never sent to the new
  // one.
  virtual std::string Address(int32_t rigNumber) const = 0;
  virtual bool IsAddress(const std::string& text) const = 0;
  // False when the text is no address.
  virtual bool SetAddress(int32_t rigNumber, const std::string& hostAndPort) = 0;

  // Connects the rig's link; it keeps itself connected from then on. `answered` is called once:
  // true when the server answered, false when it could not be reached (it is tried on).
  virtual void Open(int32_t rigNumber, std::function<void(bool reached)> answered) = 0;
  // Both rigs; a waiting `answered` is dropped, and nothing is told any more. What was written
  // before still goes out, for at most 1 s and while this object lives; a waiting key does not.
  virtual void Close() = 0;

  // Inside 0x101 to 0x299 when a server has answered, else 0.
  virtual int32_t InterfaceVersion() const = 0;
  virtual IRigX& Rig1() = 0;
  virtual IRigX& Rig2() = 0;

  // Sends the release of the transmitter as directly as possible, waiting at most `limitMs` for it
  // to leave; with 0 only if it is connected. For the end of the program or of a connection.
  virtual void ReleaseNow(int32_t rigNumber, int32_t limitMs) = 0;
};

}  // namespace velt
