// One rig behind a server: answers reads from its picture of the rig, queues writes, and keeps the
// picture fresh.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "adapters/rigctld/poll_plan.h"
#include "adapters/rigctld/rig_picture.h"
#include "adapters/rigctld/server_session.h"
#include "adapters/rigctld/write_queue.h"
#include "ports/omnirig.h"

namespace velt {

class RigctldRig : public IRigX, private ServerSession::Client {
 public:
  RigctldRig(ByteChannel& channel, Scheduler& scheduler);
  ~RigctldRig() override;

  // These may be raised from within a call.
  Event<> statusChanged;
  Event<int32_t> paramsChanged;
  Event<> keyRefused;
  Event<const RefusedWrite&> writeRefused;

  // `answered` as in IOmniRigX::Open(); it may be called from within.
  void Open(const ServerAddress& address, std::function<void(bool)> answered);
  // Off at once; what was written before still goes to the server, for a short while.
  void Close();
  bool IsOpen() const { return link_.state != RigLink::State::Off; }
  // Another server from now on, connected to, if the rig is open, once the old one was left as by
  // Close(); nothing that waits is sent to the new one.
  void Move(const ServerAddress& address);
  // The last SetTx() was PM_TX, and refused by the rig.
  bool KeyRefused() const { return keyRefused_; }
  // True once a server has answered since the rig was opened.
  bool HasAnswered() const { return hasAnswered_; }
  void ReleaseNow(Milliseconds limit);

  RigLink Link() const override;
  std::string StatusStr() const override;
  std::string RigType() const override { return type_; }
  int32_t Freq() const override { return shown_.freq; }
  int32_t FreqA() const override { return shown_.freqA; }
  int32_t FreqB() const override { return shown_.freqB; }
  int32_t GetRxFrequency() const override { return shown_.freq; }
  int32_t GetTxFrequency() const override { return shown_.txFreq; }
  int32_t Mode() const override { return shown_.mode; }
  bool SetFreq(int32_t frequencyHz) override;
  bool SetFreqA(int32_t frequencyHz) override;
  bool SetFreqB(int32_t frequencyHz) override;
  bool SetMode(int32_t mode) override;
  bool SetTx(int32_t value) override;
  TxReport Transmitter() const override { return picture_.Now().told; }
  bool ReleaseAccepted() const override { return queue_.ReleaseAccepted(); }
  bool WritesWait() const override;
  std::optional<ReleaseRecipe> Recipe() const override;

 private:
  std::optional<RigCommand> NextCommand() override;
  Milliseconds Pause() override;
  void Connected() override;
  void Replied(const RigCommand& command, const RigReply& reply) override;
  void Lost(RigLink::Cause cause, const RigCommand* unanswered) override;
  bool IsUrgent() const override { return queue_.ReleaseWaits(); }
  void CountdownChanged() override;

  void Connect();
  bool Write(RigProperty property, int32_t value);
  bool WriteFrequency(RigProperty property, int32_t frequencyHz);
  void Leave();
  void FinishLeaving();
  void JudgeRig(const RigCommand& command, const RigReply& reply);
  void TakeReading(const RigCommand& command, const RigReply& reply);
  void TakeOutcome(const RigCommand& command, const RigReply& reply);
  void SetState(RigLink::State state, RigLink::Cause cause);
  void Answer(bool reached);
  void ShowPicture();

  Scheduler& scheduler_;
  WriteQueue queue_;
  PollPlan plan_;
  RigPicture picture_;
  RigPicture::Values shown_;
  RigLink link_;
  std::string type_;
  bool keyRefused_ = false;
  bool hasAnswered_ = false;
  int32_t failures_ = 0;  // of the rig, in a row
  std::vector<std::function<void(bool)>> waiting_;
  // What still goes to the server that is being left. The next one is connected to when it has.
  std::optional<WriteQueue> left_;
  bool forgetsLeft_ = false;  // what could not be sent is for no other server
  std::optional<ServerAddress> next_;
  Scheduler::Handle leaving_;
  ServerSession session_;
};

}  // namespace velt
