// A CAT server with two rigs for tests. Like the real ones it answers reads at once from the last
// picture, reports what was written at once except for the transmit state, and raises its events
// in later turns of the loop. While a link is lost the rig goes on by itself and the picture stays.
#pragma once

#include <array>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "ports/omnirig.h"
#include "ports/scheduler.h"

namespace velt {

class FakeRig : public IRigX {
 public:
  // What a rig really is, or is believed to be.
  struct Picture {
    int32_t freq = 0;
    int32_t freqA = 0;
    int32_t freqB = 0;
    int32_t rx = 0;
    std::optional<int32_t> txOverride;  // told as the transmit frequency whatever the rig does
    int32_t mode = 0;
    int32_t tx = PM_RX;
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
  int32_t Tx() const override { return shown.tx; }

  bool SetFreq(int32_t hz) override {
    if (!Takes("Freq", hz)) return false;
    shown.freq = shown.rx = hz;
    return true;
  }
  bool SetFreqA(int32_t hz) override {
    if (!Takes("FreqA", hz)) return false;
    shown.freqA = hz;
    return true;
  }
  bool SetFreqB(int32_t hz) override {
    if (!Takes("FreqB", hz)) return false;
    shown.freqB = hz;
    return true;
  }
  bool SetMode(int32_t mode) override {
    static const std::set<int32_t> kModes = {PM_CW_U,  PM_CW_L, PM_SSB_U, PM_SSB_L,
                                             PM_DIG_U, PM_AM,   PM_FM};
    if (!IsLinked() || !kModes.contains(mode)) return false;
    writes.push_back("Mode " + std::to_string(mode));
    shown.mode = mode;
    changed();
    return true;
  }
  bool SetTx(int32_t value) override {
    if (!IsLinked()) {
      releaseFirst_ = value == PM_RX;
      return releaseFirst_;
    }
    Key(value);
    return true;
  }

  bool IsLinked() const { return link.state == RigLink::State::Linked; }
  void Lose() {
    link = {.state = RigLink::State::Reconnecting, .retryInSeconds = 4, .stale = true};
    status = "Rig is not responding";
  }
  void Return() {
    link = {.state = RigLink::State::Linked, .retryInSeconds = 0, .stale = false};
    status = "On-line";
    if (releaseFirst_) Key(PM_RX);
    releaseFirst_ = false;
    Report();
  }
  // The next poll: the picture becomes what the rig really does.
  void Report() {
    if (!IsLinked() || shown.tx == txReally) return;
    shown.tx = txReally;
    changed();
  }
  void Close() {
    link = {};
    releaseFirst_ = false;
  }
  std::vector<std::string> TakeWrites() { return std::exchange(writes, {}); }

 private:
  bool Takes(const char* property, int32_t hz) {
    if (!IsLinked() || hz < 10'000 || hz > 2'000'000'000) return false;
    writes.push_back(property + (" " + std::to_string(hz)));
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
  int32_t version = 0x101;  // once a server has answered
  std::vector<int32_t> releasedNow;

  std::string Address(int32_t rigNumber) const override { return addresses_.at(Index(rigNumber)); }
  bool SetAddress(int32_t rigNumber, const std::string& hostAndPort) override {
    const size_t colon = hostAndPort.find(':');
    if (colon == 0 || colon == std::string::npos || colon + 1 == hostAndPort.size()) return false;
    addresses_.at(Index(rigNumber)) = hostAndPort;
    return true;
  }
  void Open(int32_t rigNumber, std::function<void(bool)> answered) override {
    FakeRig& rig = rigs.at(Index(rigNumber));
    rig.link = {.state = RigLink::State::Connecting, .retryInSeconds = 0, .stale = false};
    scheduler_.Post([this, rigNumber, answered, opened = opening_] {
      if (opened != opening_) return;
      const bool reached = reachable.at(Index(rigNumber));
      if (reached) Return(rigNumber);
      if (!reached) Lose(rigNumber);
      answered(reached);
    });
  }
  void Close() override {
    ++opening_;
    for (FakeRig& rig : rigs) rig.Close();
    answered_ = false;
  }
  int32_t InterfaceVersion() const override { return answered_ ? version : 0; }
  IRigX& Rig1() override { return rigs[0]; }
  IRigX& Rig2() override { return rigs[1]; }
  void ReleaseInCrash() noexcept override { ++crashReleases; }
  int crashReleases = 0;
  void ReleaseNow(int32_t rigNumber, int32_t) override {
    releasedNow.push_back(rigNumber);
    if (rigs.at(Index(rigNumber)).IsLinked()) rigs.at(Index(rigNumber)).SetTx(PM_RX);
  }

  void Lose(int32_t rigNumber) {
    rigs.at(Index(rigNumber)).Lose();
    RaiseStatus(rigNumber);
  }
  void Return(int32_t rigNumber) {
    answered_ = true;
    rigs.at(Index(rigNumber)).Return();
    RaiseStatus(rigNumber);
    RaiseParams(rigNumber);
  }
  void RaiseStatus(int32_t rigNumber) {
    scheduler_.Post([this, rigNumber] {
      if (onStatusChange) onStatusChange(rigNumber);
    });
  }
  void RaiseParams(int32_t rigNumber) {
    scheduler_.Post([this, rigNumber] {
      if (onParamsChange) onParamsChange(rigNumber, 0);
    });
  }

 private:
  static size_t Index(int32_t rigNumber) { return static_cast<size_t>(rigNumber) - 1; }

  Scheduler& scheduler_;
  std::array<std::string, 2> addresses_ = {"127.0.0.1:4532", "127.0.0.1:4534"};
  int opening_ = 0;
  bool answered_ = false;
};

}  // namespace velt
