// One rig behind a server: answers reads from its picture of the rig, queues writes, and keeps the
// picture fresh.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "adapters/rigctld/key_watch.h"
#include "adapters/rigctld/poll_plan.h"
#include "adapters/rigctld/rig_picture.h"
#include "adapters/rigctld/server_session.h"
#include "adapters/rigctld/write_queue.h"
#include "ports/omnirig.h"

namespace velt {

class RigctldRig : public IRigX, private ServerSession::Client {
 public:
  struct Events {
    std::function<void()> statusChanged;
    std::function<void(int32_t params)> paramsChanged;
  };

  // The events may come from within a call.
  RigctldRig(ByteChannel& channel, Scheduler& scheduler, Events events);

  // `answered` as in IOmniRigX::Open(); it may be called from within.
  void Open(const ServerAddress& address, std::function<void(bool)> answered);
  void Close();
  bool IsOpen() const { return link_.state != RigLink::State::Off; }
  // Another server for an open rig; a release that waits is sent to the old one.
  void Move(const ServerAddress& address);
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
  int32_t Tx() const override { return shown_.transmitting ? PM_TX : PM_RX; }
  bool SetFreq(int32_t frequencyHz) override;
  bool SetFreqA(int32_t frequencyHz) override;
  bool SetFreqB(int32_t frequencyHz) override;
  bool SetMode(int32_t mode) override;
  bool SetTx(int32_t value) override;
  TxReport Transmitter() const override {
    return shown_.transmitting ? TxReport::Transmits : TxReport::Receives;
  }
  bool ReleaseAccepted() const override { return !keyWatch_.Keyed(); }
  std::optional<ReleaseRecipe> Recipe() const override { return std::nullopt; }

 private:
  std::optional<RigCommand> NextCommand() override;
  Milliseconds Pause() override;
  void Connected() override;
  void Replied(const RigCommand& command, const RigReply& reply) override;
  void Lost(ServerSession::Fault fault, const RigCommand* unanswered) override;
  void CountdownChanged() override;

  bool Write(RigProperty property, int32_t value);
  bool WriteFrequency(RigProperty property, int32_t frequencyHz);
  void Leave();
  void JudgeRig(const RigCommand& command, int32_t code);
  void TakeReading(const RigCommand& command, const RigReply& reply);
  void TakeOutcome(const RigCommand& command, const RigReply& reply);
  void SetState(RigLink::State state);
  void Answer(bool reached);
  void ShowPicture();

  Scheduler& scheduler_;
  Events events_;
  WriteQueue queue_;
  PollPlan plan_;
  RigPicture picture_;
  RigPicture::Values shown_;
  KeyWatch keyWatch_;
  RigLink link_;
  ServerSession::Fault fault_ = ServerSession::Fault::NoServer;
  std::string type_;
  bool poweredOff_ = false;
  bool hasAnswered_ = false;
  int32_t failures_ = 0;  // of the rig, in a row
  std::vector<std::function<void(bool)>> waiting_;
  ServerSession session_;
};

}  // namespace velt
