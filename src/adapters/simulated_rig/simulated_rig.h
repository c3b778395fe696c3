// Two rigs inside the program, for demonstrations and tests: they keep what is written, can be
// tuned, keyed, made to drift and to vanish from outside, and raise the events of a real server.
#pragma once

#include <array>
#include <memory>

#include "ports/omnirig.h"
#include "ports/scheduler.h"

namespace velt {

class SimulatedRig : public IRigX {
 public:
  // `changed` is called with the bits of what changed, 0 for the status; never asks back.
  SimulatedRig(Scheduler& scheduler, int32_t frequencyHz, int32_t mode,
               std::function<void(int32_t params)> changed);

  // The rig's own front panel; works while the link is lost too.
  void Tune(int32_t frequencyHz);
  // Moves the frequency by so many Hz every second; 0 stops.
  void Drift(int32_t hertzPerSecond);
  // The server goes away and comes back. What the rig was doing goes on.
  void Vanish();
  void ComeBack();

  void Open();
  void Close();

  RigLink Link() const override;
  std::string StatusStr() const override;
  std::string RigType() const override;
  int32_t Freq() const override { return shown_.freq; }
  int32_t FreqA() const override { return shown_.freq; }
  int32_t FreqB() const override { return shown_.freqB; }
  int32_t GetRxFrequency() const override { return shown_.freq; }
  int32_t GetTxFrequency() const override { return shown_.transmitting ? shown_.freq : 0; }
  int32_t Mode() const override { return shown_.mode; }
  int32_t Tx() const override { return shown_.transmitting ? PM_TX : PM_RX; }
  bool SetFreq(int32_t frequencyHz) override;
  bool SetFreqA(int32_t frequencyHz) override;
  bool SetFreqB(int32_t frequencyHz) override;
  bool SetMode(int32_t mode) override;
  bool SetTx(int32_t value) override;
  TxReport Transmitter() const override {
    return shown_.transmitting ? TxReport::Transmits : TxReport::Receives;
  }
  bool ReleaseAccepted() const override { return !transmitting_; }
  // What is simulated ends with the program.
  std::optional<ReleaseRecipe> Recipe() const override { return ReleaseRecipe{}; }

 private:
  // What the link last told; VFO A is the current one.
  struct Shown {
    int32_t freq = 0;
    int32_t freqB = 0;
    int32_t mode = 0;
    bool transmitting = false;
  };

  bool Linked() const { return link_.state == RigLink::State::Linked; }
  bool WriteFrequency(int32_t& target, int32_t frequencyHz);
  void SetState(RigLink::State state);
  void Show();
  void DriftStep();
  void Lose();
  void CountDown();

  Scheduler& scheduler_;
  std::function<void(int32_t params)> changed_;
  RigLink link_;
  bool reachable_ = true;
  bool releaseWanted_ = false;
  int32_t frequencyHz_;
  int32_t frequencyBHz_;
  int32_t mode_;
  bool transmitting_ = false;
  int32_t driftHertz_ = 0;
  Shown shown_;
  Scheduler::Handle drift_;
  Scheduler::Handle report_;  // the rig's own report of its transmit state
  Scheduler::Handle countdown_;
};

class SimulatedRigServer : public IOmniRigX {
 public:
  explicit SimulatedRigServer(Scheduler& scheduler);

  std::string Address(int32_t rigNumber) const override;
  bool IsAddress(const std::string& text) const override;
  bool SetAddress(int32_t rigNumber, const std::string& hostAndPort) override;
  void Open(int32_t rigNumber, std::function<void(bool reached)> answered) override;
  void Close() override;
  int32_t InterfaceVersion() const override;
  SimulatedRig& Rig1() override { return *rigs_[0]; }
  SimulatedRig& Rig2() override { return *rigs_[1]; }
  Capabilities Can() const override { return {.addresses = false, .simulated = true}; }
  void ReleaseNow(int32_t rigNumber, int32_t limitMs) override;

 private:
  std::unique_ptr<SimulatedRig> MakeRig(int32_t rigNumber, int32_t frequencyHz, int32_t mode);
  SimulatedRig* Of(int32_t rigNumber) const;
  void Changed(int32_t rigNumber, int32_t params);
  void PostSafely(std::function<void()> f);

  Scheduler& scheduler_;
  std::shared_ptr<char> open_;  // what was posted before Close() is dropped
  std::array<std::string, 2> addresses_{"127.0.0.1:4532", "127.0.0.1:4534"};
  bool answered_ = false;
  std::array<std::unique_ptr<SimulatedRig>, 2> rigs_;
};

}  // namespace velt
