// A CAT server with two rigs for tests. Like the real ones it answers reads at once from the last
// picture, reports what was written at once except for the transmit state, and raises its events
// in later turns of the loop. While a link is lost the rig goes on by itself and the picture stays.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ports/omnirig.h"
#include "ports/scheduler.h"

namespace velt {

class FakeRig : public IRigX {
 public:
  // What a rig really is, or is believed to be.
  struct Picture {
    int32_t freq = 0, freqA = 0, freqB = 0, rx = 0;
    int32_t mode = 0;
    int32_t tx = PM_RX;
    std::optional<int32_t> txOverride{};  // told as the transmit frequency whatever the rig does
  };

  Picture shown;
  RigLink link;
  std::string status = "On-line";
  std::vector<std::string> writes;  // in the order in which they reached the rig
  bool ignoresRelease = false;
  int32_t txReally = PM_RX;  // what the transmitter does, told or not
  std::function<void()> changed;

  RigLink Link() const override { return link; }
  std::string StatusStr() const override { return status; }
  std::string RigType() const override { return "Maker Model"; }
  int32_t Freq() const override { return shown.freq; }
  int32_t FreqA() const override { return shown.freqA; }
  int32_t FreqB() const override { return shown.freqB; }
  int32_t GetRxFrequency() const override { return shown.rx; }
  int32_t GetTxFrequency() const override {
    return shown.txOverride.value_or(shown.tx == PM_TX ? shown.freq : 0);
  }
  int32_t Mode() const override { return shown.mode; }

  bool SetFreq(int32_t hz) override {
    if (IsLinked()) shown.rx = hz;
    return Takes("Freq", hz, shown.freq);
  }
  bool SetFreqA(int32_t hz) override { return Takes("FreqA", hz, shown.freqA); }
  bool SetFreqB(int32_t hz) override { return Takes("FreqB", hz, shown.freqB); }
  bool SetMode(int32_t mode) override { return Takes("Mode", mode, shown.mode); }
  bool SetTx(int32_t value) override {
    releaseFirst_ = !IsLinked() && value == PM_RX;
    // The server takes it, the rig does not.
    if (link.state == RigLink::State::Silent) writes.push_back("RX");
    if (IsLinked()) Key(value);
    return IsLinked() || releaseFirst_;
  }

  TxReport Transmitter() const override {
    return shown.tx == PM_TX ? TxReport::Transmits : TxReport::Receives;
  }
  bool ReleaseAccepted() const override { return txReally == PM_RX; }
  std::optional<ReleaseRecipe> Recipe() const override { return ReleaseRecipe{}; }

  bool IsLinked() const { return link.state == RigLink::State::Linked; }
  void Return() {
    link.state = RigLink::State::Linked;
    link.stale = false;
    status = "On-line";
    if (std::exchange(releaseFirst_, false)) Key(PM_RX);
    Report();
  }
  // The next poll: the picture becomes what the rig really does.
  void Report() {
    if (IsLinked() && std::exchange(shown.tx, txReally) != txReally) changed();
  }
  std::vector<std::string> TakeWrites() { return std::exchange(writes, {}); }

 private:
  bool Takes(const char* property, int32_t value, int32_t& target) {
    if (!IsLinked()) return false;
    writes.push_back(property + (" " + std::to_string(value)));
    target = value;
    changed();
    return true;
  }
  void Key(int32_t value) {
    writes.push_back(value == PM_TX ? "TX" : "RX");
    if (value == PM_TX || !ignoresRelease) txReally = value;
    changed();
  }

  bool releaseFirst_ = false;
};

class FakeOmniRig : public IOmniRigX {
 public:
  explicit FakeOmniRig(Scheduler& scheduler) : scheduler_(scheduler) {
    rigs[0].changed = [this] { RaiseParams(1); };
    rigs[1].changed = [this] { RaiseParams(2); };
  }

  std::array<FakeRig, 2> rigs;
  std::array<bool, 2> reachable = {true, true};
  int32_t version = 0x101;
  std::function<void()> releasing = [] {};

  std::string Address(int32_t rigNumber) const override { return addresses_.at(Index(rigNumber)); }
  bool IsAddress(const std::string& text) const override {
    return text.find(':') != std::string::npos;
  }
  bool SetAddress(int32_t rigNumber, const std::string& hostAndPort) override {
    const bool good = IsAddress(hostAndPort);
    if (good) addresses_.at(Index(rigNumber)) = hostAndPort;
    return good;
  }
  void Open(int32_t rigNumber, std::function<void(bool)> answered) override {
    RigLink::State& state = rigs.at(Index(rigNumber)).link.state = RigLink::State::Connecting;
    scheduler_.Post([this, rigNumber, answered, &state] {
      if (state != RigLink::State::Connecting) return;  // closed meanwhile
      const bool reached = reachable.at(Index(rigNumber));
      reached ? Return(rigNumber) : Lose(rigNumber);
      answered(reached);
    });
  }
  void Close() override { rigs[0].link = rigs[1].link = {}; }
  int32_t InterfaceVersion() const override { return version; }
  IRigX& Rig1() override { return rigs[0]; }
  IRigX& Rig2() override { return rigs[1]; }
  Capabilities Can() const override { return {}; }
  void ReleaseNow(int32_t rigNumber, int32_t) override {
    releasing();
    rigs.at(Index(rigNumber)).SetTx(PM_RX);
  }

  void RefuseKey(int32_t rigNumber) {
    rigs.at(Index(rigNumber)).txReally = PM_RX;
    scheduler_.Post([this, rigNumber] { keyRefused.Raise(rigNumber); });
  }
  void Silence(int32_t rigNumber) {
    FakeRig& rig = rigs.at(Index(rigNumber));
    rig.link = {.state = RigLink::State::Silent, .retryInSeconds = 0, .stale = true};
    RaiseStatus(rigNumber);
  }
  void Lose(int32_t rigNumber) {
    FakeRig& rig = rigs.at(Index(rigNumber));
    rig.link = {.state = RigLink::State::Reconnecting, .retryInSeconds = 4, .stale = true};
    rig.status = "Rig is not responding";
    RaiseStatus(rigNumber);
  }
  void Return(int32_t rigNumber) {
    rigs.at(Index(rigNumber)).Return();
    RaiseStatus(rigNumber);
    RaiseParams(rigNumber);
  }
  void RaiseStatus(int32_t rigNumber) {
    scheduler_.Post([this, rigNumber] { statusChanged.Raise(rigNumber); });
  }
  void RaiseParams(int32_t rigNumber) {
    scheduler_.Post([this, rigNumber] { paramsChanged.Raise(rigNumber, 0); });
  }

 private:
  static size_t Index(int32_t rigNumber) { return static_cast<size_t>(rigNumber) - 1; }

  Scheduler& scheduler_;
  std::array<std::string, 2> addresses_ = {"127.0.0.1:4532", "127.0.0.1:4534"};
};

}  // namespace velt
