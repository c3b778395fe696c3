// Two rigs inside the program, for demonstrations and tests. To those who use them they are what
// rigs behind real servers are; from outside they can be tuned, keyed, made to drift, to vanish and
// to misbehave.
#pragma once

#include <array>
#include <memory>

#include "ports/omnirig.h"
#include "ports/scheduler.h"

namespace velt {

class SimulatedRig : public IRigX {
 public:
  SimulatedRig(Scheduler& scheduler, int32_t frequencyHz, int32_t mode);

  // These may be raised from within a call.
  Event<> statusChanged;
  Event<int32_t> paramsChanged;
  Event<> keyRefused;
  Event<const RefusedWrite&> writeRefused;
  // What has come to the rig's server, in this order: "Freq HZ", "FreqA HZ", "FreqB HZ",
  // "Mode NUMBER", "TX", "RX".
  Event<const std::string&> written;

  // The rig's own front panel; works while the link is lost too. VFO A is the current one.
  void Tune(int32_t frequencyHz);
  void TuneB(int32_t frequencyHz);
  void Select(int32_t mode);  // 0: one that the interface has no name for
  void Key(bool on);
  // Transmits there while the split is on; 0: off.
  void Split(int32_t frequencyHz);
  // Moves the frequency by so many Hz every second; 0 stops.
  void Drift(int32_t hertzPerSecond);
  // What it does, told or not.
  bool Transmits() const { return transmitting_; }

  // Faults, each until it is taken back. What the rig was doing goes on.
  void Vanish();  // its server goes away
  void ComeBack();
  void BeSilent(bool on);  // the server goes on, the rig takes nothing and tells nothing
  void RefuseKeys(bool on) { refusesKeys_ = on; }
  void RefuseWrites(bool on) { refusesWrites_ = on; }
  void IgnoreReleases(bool on) { ignoresReleases_ = on; }  // but accept them
  void HideTransmitter(bool on);                           // cannot tell whether it transmits
  // How long it takes until it tells whether it transmits.
  void ReportAfter(Milliseconds delay) { reportDelay_ = delay; }

  // How long it takes until a write counts as answered; it acts at once.
  void AnswerAfter(Milliseconds delay) { answerDelay_ = delay; }

  // For its server. What is open connects at the next Decide(); with Move() an open link begins
  // anew and nothing waits any more.
  void Open();
  void Decide();
  void Close();
  void Move();
  bool HasAnswered() const { return hasAnswered_; }
  bool Reachable() const { return Linked() || link_.state == RigLink::State::Silent; }

  RigLink Link() const override { return link_; }
  std::string StatusStr() const override;
  std::string RigType() const override { return "Simulated rig"; }
  int32_t Freq() const override { return shown_.freq; }
  int32_t FreqA() const override { return shown_.freq; }
  int32_t FreqB() const override { return shown_.freqB; }
  int32_t GetRxFrequency() const override { return shown_.freq; }
  int32_t GetTxFrequency() const override;
  int32_t Mode() const override { return shown_.mode; }
  bool SetFreq(int32_t frequencyHz) override;
  bool SetFreqA(int32_t frequencyHz) override;
  bool SetFreqB(int32_t frequencyHz) override;
  bool SetMode(int32_t mode) override;
  bool SetTx(int32_t value) override;
  TxReport Transmitter() const override { return told_; }
  bool ReleaseAccepted() const override { return releaseAccepted_; }
  bool WritesWait() const override { return Reachable() && scheduler_.Now() < answeredAt_; }
  // An empty one: what is simulated ends with the program.
  std::optional<ReleaseRecipe> Recipe() const override;

 private:
  struct Panel {
    int32_t freq = 0;
    int32_t freqB = 0;
    int32_t mode = 0;
    int32_t split = 0;
  };

  bool IsOpen() const { return link_.state != RigLink::State::Off; }
  bool Linked() const { return link_.state == RigLink::State::Linked; }
  bool Write(const char* name, int32_t Panel::*target, int32_t value);
  void Send(int32_t transmit);
  void Answered(int32_t transmit, bool refused);
  void Connect();
  void Lose();
  void CountDown();
  void SetState(RigLink::State state, RigLink::Cause cause);
  void Show();
  void ReportSoon();
  void Report();
  void DriftStep();

  Scheduler& scheduler_;
  Panel panel_;  // what the rig is set to
  Panel shown_;  // what the link last told
  bool transmitting_ = false;
  bool shownTransmitting_ = false;
  TxReport told_ = TxReport::Untold;
  RigLink link_;
  bool hasAnswered_ = false;
  bool reachable_ = true;
  bool silent_ = false;
  bool releaseWaits_ = false;
  bool releaseAccepted_ = false;
  bool refusesKeys_ = false;
  bool refusesWrites_ = false;
  bool ignoresReleases_ = false;
  bool hidesTransmitter_ = false;
  Milliseconds reportDelay_;
  Milliseconds answerDelay_;
  SteadyTime answeredAt_;  // the last write
  int32_t driftHertz_ = 0;
  Scheduler::Handle drift_;
  Scheduler::Handle countdown_;
  Scheduler::Handle answer_;   // to the last key or release
  Scheduler::Handle refusal_;  // of the last write
  Scheduler::Handle report_;   // the rig's own report of its transmit state
};

class SimulatedRigServer : public IOmniRigX {
 public:
  explicit SimulatedRigServer(Scheduler& scheduler)
      : SimulatedRigServer(scheduler, {false, true}) {}
  SimulatedRigServer(Scheduler& scheduler, Capabilities capabilities);

  void SetInterfaceVersion(int32_t version) { version_ = version; }

  std::string Address(int32_t rigNumber) const override;
  bool IsAddress(const std::string& text) const override;
  bool SetAddress(int32_t rigNumber, const std::string& hostAndPort) override;
  void Open(int32_t rigNumber, std::function<void(bool reached)> answered) override;
  void Close() override;
  int32_t InterfaceVersion() const override;
  SimulatedRig& Rig1() override { return *rigs_[0]; }
  SimulatedRig& Rig2() override { return *rigs_[1]; }
  Capabilities Can() const override { return capabilities_; }
  void ReleaseNow(int32_t rigNumber, int32_t limitMs) override;

 private:
  std::unique_ptr<SimulatedRig> MakeRig(int32_t rigNumber, int32_t frequencyHz, int32_t mode);
  SimulatedRig* Of(int32_t rigNumber) const;
  void PostSafely(std::function<void()> f);

  Scheduler& scheduler_;
  Capabilities capabilities_;
  int32_t version_ = 0x101;
  std::shared_ptr<char> open_;  // what was posted before Close() is dropped
  std::array<std::string, 2> addresses_{"127.0.0.1:4532", "127.0.0.1:4534"};
  Connections connections_;
  std::array<std::unique_ptr<SimulatedRig>, 2> rigs_;
};

}  // namespace velt
