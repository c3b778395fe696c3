// The link's parts, and one rig over a scripted channel, in virtual time.
#include <gtest/gtest.h>

#include "adapters/rigctld/fake_rig.h"
#include "adapters/rigctld/rigctld_rig.h"
#include "adapters/rigctld/server_address.h"
#include "adapters/rigctld/write_queue.h"
#include "support/virtual_scheduler.h"

namespace velt {
namespace {

using namespace std::string_literals;
using Lines = std::vector<std::string>;
using State = RigLink::State;
using Cause = RigLink::Cause;

TEST(ServerAddress, TakesHostAndPortAndNothingElse) {
  EXPECT_EQ(ParseServerAddress(" shack-1.lan:1 ")->Text(), "shack-1.lan:1");
  EXPECT_EQ(ParseServerAddress("[::1]:65535")->Text(), "[::1]:65535");
  for (const char* text : {"", "host", ":4532", "host:", "host:0", "host:65536", "host:-1",
                           "host:12x", "host: 12", "ho st:1", "::1:4532", "[]:4532", "a\nb:1"}) {
    EXPECT_FALSE(ParseServerAddress(text)) << text;
  }
}

RigReply CurrentVfo(const std::string& name, int32_t code = 0) {
  return {{"get_vfo:", "VFO: " + name}, code};
}

// Sends everything that waits to a rig on the VFO `current` that refuses one line.
Lines Drain(WriteQueue& queue, const std::string& current = "VFOA", const std::string& no = "") {
  Lines sent;
  for (auto command = queue.Next(); command && sent.size() < 50; command = queue.Next()) {
    sent.push_back(command->line.substr(0, command->line.size() - 1));
    queue.Answered(*command, CurrentVfo(current, sent.back() == no ? -6 : 0));
  }
  return sent;
}

TEST(WriteQueue, NewerReplacesWaitingAndReleaseGoesFirst) {
  WriteQueue queue;
  queue.Put(RigProperty::Freq, 1);
  queue.Put(RigProperty::Mode, PM_AM);
  queue.PutKey();
  queue.Put(RigProperty::Freq, 2);
  EXPECT_EQ(Drain(queue), (Lines{"+M AM -1", "+T 1", "+F 2"}));
  queue.Put(RigProperty::Freq, 3);
  queue.PutKey();
  queue.PutRelease();
  EXPECT_EQ(Drain(queue), (Lines{"+T 0", "+F 3"}));
  queue.PutRelease();
  queue.PutKey();
  EXPECT_EQ(Drain(queue), (Lines{"+T 0", "+T 1"}));
  queue.PutRelease();
  queue.Next();
  queue.Interrupt();
  EXPECT_EQ(Drain(queue), Lines{"+T 0"}) << "a release under way goes again";
}

TEST(WriteQueue, WritesAVfoWhereItIsAndReturns) {
  struct Case {
    std::string current, refused;
    Lines sent;
  };
  for (const Case& c :
       {Case{"VFOA", "", {"+v", "+V VFOB", "+F 7", "+V VFOA", "+v", "+F 9"}},
        Case{"Sub", "", {"+v", "+F 7", "+v", "+V VFOA", "+F 9", "+V Sub"}},
        Case{"MEM", "", {"+v", "+V VFOB", "+F 7", "+V MEM", "+v", "+V VFOA", "+F 9", "+V MEM"}},
        // Nothing is written to the wrong VFO; the return is tried again, but not for ever.
        Case{"Main", "+V VFOB", {"+v", "+V VFOB", "+V Main", "+v", "+F 9"}},
        Case{"VFOA",
             "+V VFOA",
             {"+v", "+V VFOB", "+F 7", "+V VFOA", "+V VFOA", "+V VFOA", "+v", "+F 9"}}}) {
    WriteQueue queue;
    queue.Put(RigProperty::FreqB, 7);
    queue.Put(RigProperty::FreqA, 9);
    EXPECT_EQ(Drain(queue, c.current, c.refused), c.sent) << c.current;
  }
}

TEST(WriteQueue, ReleaseWaitsForTheWayBackAndSurvivesABreak) {
  // What follows a release asked for after 0, 1, 2, 3 commands of a VFO write: on a link that
  // holds, and after one that breaks.
  const std::pair<Lines, Lines> cases[] = {{{"+T 0", "+v", "+V VFOB", "+F 7", "+V VFOA"}, {"+T 0"}},
                                           {{"+T 0", "+V VFOB", "+F 7", "+V VFOA"}, {"+T 0"}},
                                           {{"+F 7", "+V VFOA", "+T 0"}, {"+T 0", "+V VFOA"}},
                                           {{"+V VFOA", "+T 0"}, {"+T 0", "+V VFOA"}}};
  for (int sentBefore = 0; sentBefore < 4; ++sentBefore) {
    for (const bool breaks : {false, true}) {
      WriteQueue queue;
      queue.Put(RigProperty::FreqB, 7);
      for (int i = 0; i < sentBefore; ++i) queue.Answered(*queue.Next(), CurrentVfo("VFOA"));
      queue.PutRelease();
      if (breaks) queue.Interrupt();
      const auto& [held, broken] = cases[sentBefore];
      EXPECT_EQ(Drain(queue), breaks ? broken : held) << sentBefore;
    }
  }
  WriteQueue queue;
  queue.PutRelease();
  queue.Next();
  queue.Interrupt();
  EXPECT_EQ(Drain(queue), Lines{"+T 0"}) << "a release under way goes again";
  queue.Put(RigProperty::FreqB, 7);
  for (int i = 0; i < 3; ++i) queue.Answered(*queue.Next(), CurrentVfo("VFOA"));
  queue.PutRelease();
  EXPECT_EQ(Drain(queue, "VFOA", "+V VFOA"), (Lines{"+V VFOA", "+T 0", "+V VFOA", "+V VFOA"}))
      << "nor does it wait for a way back that is refused";
}

enum class Mood { Answers, Accepts, Refuses, Unreachable };

class ScriptedChannel : public ByteChannel {
 public:
  explicit ScriptedChannel(VirtualScheduler& scheduler) : scheduler_(scheduler) {}

  Mood mood = Mood::Answers;
  FakeRig rig;
  Milliseconds delay{10};
  int attempts = 0;
  int underWay = 0;
  bool lookingUp = false;

  void Connect(const ServerAddress&) override {
    ++attempts;
    Disconnect();
    if (mood == Mood::Unreachable) return;
    later_.push_back(scheduler_.After(Milliseconds(1), [this] {
      mood == Mood::Refuses ? closed.Raise(Cause::Refused) : connected.Raise();
    }));
  }
  bool LooksUp() const override { return lookingUp; }
  void Disconnect() override {
    underWay = 0;
    later_.clear();
  }
  void Send(std::string_view bytes) override {
    EXPECT_EQ(underWay, 0) << "one command after the other";
    SendNow({}, bytes, {});
  }
  std::optional<ServerAddress> Peer() const override { return ServerAddress{"192.0.2.7", 1}; }
  bool SendNow(const ServerAddress&, std::string_view bytes, Milliseconds) override {
    ++underWay;
    if (mood == Mood::Accepts) return true;
    const std::string reply = rig.Answer(std::string(bytes.substr(0, bytes.size() - 1)));
    later_.push_back(scheduler_.After(delay, [this, reply] {
      received.Raise(reply.substr(0, reply.size() / 2));
      if (--underWay < 0) return;
      received.Raise(reply.substr(reply.size() / 2));
    }));
    return true;
  }
  void Break() {
    Disconnect();
    closed.Raise(Cause::Closed);
  }

 private:
  VirtualScheduler& scheduler_;
  std::vector<Scheduler::Handle> later_;
};

struct RigTest : testing::Test {
  VirtualScheduler time;
  ScriptedChannel channel{time};
  int statusEvents = 0;
  int32_t params = 0;
  int refusals = 0;
  RigctldRig rig{channel, time};
  FakeRig& peer = channel.rig;
  std::vector<bool> reached;

  void Open() {
    rig.Open({"host", 1}, [this](bool ok) { reached.push_back(ok); });
  }
  void Pass(int64_t ms) { time.Advance(Milliseconds(ms)); }
  void OpenAndSettle() {
    Open();
    Pass(30 * channel.delay.count());
    ASSERT_EQ(rig.Link().state, State::Linked);
    peer.lines.clear();
  }
  auto Count(const std::string& line) const { return std::ranges::count(peer.lines, line); }
  void ExpectLink(State state, Cause cause, const std::string& status) const {
    EXPECT_EQ(rig.Link().state, state) << status;
    EXPECT_EQ(rig.Link().cause, cause) << status;
    EXPECT_EQ(rig.StatusStr(), status);
  }

  Connection statuses = rig.statusChanged.Listen([this] { ++statusEvents; });
  Connection changes = rig.paramsChanged.Listen([this](int32_t bits) { params |= bits; });
  Connection refusing = rig.keyRefused.Listen([this] { ++refusals; });
};

TEST_F(RigTest, FollowsTheRigWithinHalfASecond) {
  OpenAndSettle();
  params = 0;
  peer.freq["VFOA"] = 3573000;
  peer.mode = "RTTY";
  peer.keyed = peer.split = 1;
  Pass(500);
  EXPECT_EQ(params, PM_FREQ | PM_FREQA | PM_UNKNOWN | PM_TX | PM_SPLITON);
  EXPECT_EQ(rig.Mode(), 0);
  EXPECT_EQ(rig.GetTxFrequency(), 7074000);
  peer.split = 0;
  Pass(300);
  EXPECT_EQ(rig.GetTxFrequency(), 3573000);
}

TEST_F(RigTest, WritesGoAheadOfPollsWhichNeverPileUp) {
  channel.delay = Milliseconds(400);
  Open();
  Pass(5000);
  peer.lines.clear();
  for (int32_t hz = 7000000; hz < 7000100; ++hz) ASSERT_TRUE(rig.SetFreq(hz));
  Pass(900);
  EXPECT_EQ(peer.lines.front().substr(0, 2), "+F");
  EXPECT_LE(peer.Writes().size(), 2u);
  EXPECT_EQ(peer.freq["VFOA"], 7000099);
  channel.delay = Milliseconds(1);
  Pass(1000);
  peer.lines.clear();
  Pass(1000);
  EXPECT_TRUE(Count("+f") >= 5 && Count("+f") <= 10) << Count("+f");
}

TEST_F(RigTest, AnOldValueDoesNotComeBackForASecondAndTheRealOneIsShown) {
  for (const int delay : {10, 300}) {
    for (const std::string vfo : {"VFOA", "VFOB"}) {
      channel.delay = Milliseconds(delay);
      OpenAndSettle();
      const bool b = vfo == "VFOB";
      const auto value = [&] { return b ? rig.FreqB() : rig.Freq(); };
      const auto write = [&](int32_t hz) { return b ? rig.SetFreqB(hz) : rig.SetFreq(hz); };
      const auto report = [&](const std::string& hz) {
        peer.instead["+\\get_vfo_info VFOB"] = FakeRig::Done("get_vfo_info: VFOB\nFreq: " + hz);
        if (!b) peer.instead["+f"] = FakeRig::Done("get_freq:\nFrequency: " + hz);
      };
      report("14074000");
      ASSERT_TRUE(write(14075001) && write(14075003));
      while (peer.freq[vfo] != 14075003) Pass(1);
      for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(value(), 14075003) << i * 10 << " ms";
        Pass(10);
      }
      report("14075000");
      Pass(200 + 15 * delay);
      EXPECT_EQ(value(), 14075000) << "the rig rounds: asked as soon as it is believed";
      peer.errors = {{"+F", -9}};
      ASSERT_TRUE(write(7000000));
      Pass(100 + 10 * delay);
      EXPECT_EQ(value(), 14075000) << "refused";
      peer.BeUsual();
      rig.Close();
    }
  }
}

TEST_F(RigTest, AWriteForAVfoThatWasLeftMeanwhileHoldsNothingUp) {
  OpenAndSettle();
  peer.vfo = "VFOB";
  while (peer.lines.empty() || peer.lines.back() != "+v") Pass(1);
  ASSERT_TRUE(rig.SetFreq(7010000));
  Pass(5000);
  EXPECT_EQ(rig.FreqA(), 14074000);
  EXPECT_TRUE(rig.Freq() == 7010000 && rig.FreqB() == 7010000);
}

TEST_F(RigTest, WhatIsNoFrequencyIsToldAsNone) {
  OpenAndSettle();
  for (const std::string bad : {"0", "9", "-7074000", "nan", "", "2147483648", "1e300"}) {
    peer.instead["+f"] = FakeRig::Done("get_freq:\nFrequency: " + bad);
    Pass(150);
    EXPECT_TRUE(rig.Freq() == 0 && rig.FreqA() == 0) << bad;
    peer.instead["+f"] = FakeRig::Done("get_freq:\nFrequency: 10");
    Pass(150);
    EXPECT_EQ(rig.Freq(), 10);
  }
  peer.instead = {{"+f", "get_freq:\nRPRT -9\n"}};
  Pass(1000);
  EXPECT_EQ(rig.Freq(), 10) << "an error is no report";
}

TEST_F(RigTest, ALateReportOfTransmittingIsNotShownAfterARelease) {
  OpenAndSettle();
  ASSERT_TRUE(rig.SetTx(PM_TX));
  Pass(40);
  EXPECT_EQ(rig.GetTxFrequency(), 14074000) << "asked at once";
  peer.instead["+T 0"] = FakeRig::Done("set_ptt: 0");
  rig.SetTx(PM_RX);
  Pass(1500);
  EXPECT_EQ(rig.GetTxFrequency(), 14074000) << "a release that is ignored";
  peer.BeUsual();
  rig.SetTx(PM_RX);
  Pass(40);
  peer.keyed = 1;
  Pass(900);
  EXPECT_TRUE(rig.Transmitter() == TxReport::Transmits && rig.GetTxFrequency() == 0);
  Pass(300);
  EXPECT_EQ(rig.GetTxFrequency(), 14074000) << "that is no echo any more";
}

TEST_F(RigTest, ErrorsMakeAReadSeldomAndAnAnswerMakesItOftenAgain) {
  OpenAndSettle();
  peer.errors = {{"+t", -11}, {"+m", -5}, {"+s", -1}};
  Pass(250);
  EXPECT_EQ(rig.Transmitter(), TxReport::Receives) << "one error says nothing";
  Pass(2500);
  EXPECT_EQ(rig.Transmitter(), TxReport::Untold);
  EXPECT_EQ(rig.Recipe()->ask, "");
  peer.lines.clear();
  Pass(8000);
  for (const char* line : {"+t", "+m", "+s"}) EXPECT_EQ(Count(line), 4) << line;
  peer.BeUsual();
  Pass(2000);
  EXPECT_EQ(rig.Transmitter(), TxReport::Receives);
  peer.lines.clear();
  Pass(1000);
  for (const char* line : {"+t", "+m", "+s"}) EXPECT_GE(Count(line), 6) << line;
}

TEST_F(RigTest, EveryReleaseIsSentWhateverBecameOfTheOneBefore) {
  OpenAndSettle();
  for (const bool silent : {false, true}) {
    peer.errors["+T"] = -5;
    if (silent) peer.errors["+f"] = -5;
    Pass(1000);
    EXPECT_EQ(rig.Link().state, silent ? State::Silent : State::Linked);
    peer.lines.clear();
    for (int call = 1; call <= 20; ++call) {
      EXPECT_TRUE(rig.SetTx(PM_RX));
      Pass(500);
      EXPECT_EQ(Count("+T 0"), call);
    }
    EXPECT_FALSE(rig.ReleaseAccepted());
  }
  peer.BeUsual();
  channel.delay = Milliseconds(600);
  for (int call = 0; call < 4; ++call) {
    rig.SetTx(PM_RX);
    Pass(500);
  }
  rig.SetTx(PM_RX);
  EXPECT_TRUE(rig.ReleaseAccepted()) << "though the next are on their way";
  EXPECT_GE(Count("+T 0"), 20 + 2);
}

TEST_F(RigTest, AReleaseIsAcceptedUntilTheNextKeyAndAKeyIsRefusedOnlyForCertain) {
  for (const auto& [code, refused] :
       {std::pair{-1, 1}, {-9, 1}, {-11, 1}, {-5, 0}, {-6, 0}, {-8, 0}}) {
    OpenAndSettle();
    rig.SetTx(PM_RX);
    EXPECT_FALSE(rig.ReleaseAccepted());
    Pass(40);
    EXPECT_TRUE(rig.ReleaseAccepted());
    refusals = 0;
    peer.instead["+T 1"] = "set_ptt: 1\nRPRT " + std::to_string(code) + "\n";
    ASSERT_TRUE(rig.SetTx(PM_TX));
    EXPECT_FALSE(rig.ReleaseAccepted());
    Pass(200);
    EXPECT_EQ(refusals, refused) << code;
    EXPECT_EQ(rig.KeyRefused(), refused == 1) << code;
    EXPECT_FALSE(rig.ReleaseAccepted());
    // A key that was taken back before its answer came is no news.
    ASSERT_TRUE(rig.SetTx(PM_TX));
    while (peer.lines.back() != "+T 1") Pass(1);
    rig.SetTx(PM_RX);
    Pass(200);
    EXPECT_EQ(refusals, refused) << code;
    peer.BeUsual();
    rig.Close();
  }
}

TEST_F(RigTest, AfterABreakTheReleaseComesFirstThenTheVfo) {
  OpenAndSettle();
  ASSERT_TRUE(rig.SetTx(PM_TX) && rig.SetFreqB(7010000));
  while (peer.vfo != "VFOB") Pass(1);
  channel.Break();
  EXPECT_TRUE(rig.SetTx(PM_RX));
  peer.lines.clear();
  Pass(1000);
  EXPECT_EQ(peer.lines.at(0), "+T 0");
  EXPECT_EQ(peer.Writes(), (Lines{"+T 0", "+V VFOA"}));
  // One that is not answered goes again, and soon however long the server has been away.
  channel.mood = Mood::Accepts;
  rig.SetTx(PM_RX);
  Pass(60'000);
  EXPECT_EQ(rig.Link().cause, Cause::NoAnswer);
  channel.mood = Mood::Answers;
  peer.lines.clear();
  Pass(2001);
  EXPECT_EQ(peer.lines.at(0), "+T 0");
}

TEST_F(RigTest, RetriesForEverEverSlowerAndCountsDown) {
  channel.mood = Mood::Refuses;
  Open();
  for (const int64_t gap : {500, 1000, 2000, 4000, 8000, 10000, 10000, 10000}) {
    const int before = channel.attempts;
    Pass(gap - 20);
    EXPECT_EQ(channel.attempts, before) << gap;
    Pass(21);  // a refusal takes one
    EXPECT_EQ(channel.attempts, before + 1) << gap;
  }
  EXPECT_EQ(reached, std::vector{false});
  Pass(2500);
  EXPECT_EQ(rig.Link().retryInSeconds, 8);
  statusEvents = 0;
  Pass(3000);
  EXPECT_EQ(rig.Link().retryInSeconds, 5);
  EXPECT_EQ(statusEvents, 3);
  const int before = channel.attempts;
  rig.SetTx(PM_RX);
  Pass(1001);
  EXPECT_EQ(channel.attempts, before + 1) << "a release does not wait that long";
  channel.mood = Mood::Answers;
  Pass(10000);
  EXPECT_EQ(rig.Link().state, State::Linked);
  channel.Break();
  Pass(700);
  EXPECT_EQ(rig.Link().state, State::Linked) << "after a good link it starts from the shortest";
}

TEST_F(RigTest, GivesUpWithinEachKindsLimit) {
  for (const auto& [mood, lookingUp, limit, cause, status] :
       {std::tuple{Mood::Unreachable, false, 3000, Cause::Unreachable, "Port is not available"},
        std::tuple{Mood::Unreachable, true, 3000, Cause::HostNotFound, "Port is not available"},
        std::tuple{Mood::Accepts, false, 2001, Cause::NoAnswer, "Rig is not responding"}}) {
    rig.Close();
    channel.mood = mood;
    channel.lookingUp = lookingUp;
    Open();
    Pass(limit - 1);
    EXPECT_EQ(rig.Link().state, State::Connecting);
    Pass(2);
    ExpectLink(State::Reconnecting, cause, status);
  }
  rig.SetTx(PM_RX);
  while (!channel.underWay) Pass(1);
  Pass(999);
  EXPECT_EQ(rig.Link().retryInSeconds, 0);
  Pass(1);
  EXPECT_GT(rig.Link().retryInSeconds, 0) << "of transmitting, sooner";
}

TEST_F(RigTest, AForeignAnswerEndsTheConnection) {
  for (const std::string& answer : {"RPRT 0\n"s, "get_mode:\nMode: USB\nRPRT 0\n"s,
                                    "HTTP/1.1 400\r\nRPRT 0\r\n"s, std::string(100'000, 'x')}) {
    OpenAndSettle();
    peer.instead["+f"] = answer;
    Pass(200);
    EXPECT_EQ(rig.Link().cause, Cause::WrongAnswer) << answer.substr(0, 20);
    EXPECT_EQ(rig.Freq(), 14074000);
    peer.BeUsual();
    rig.Close();
  }
}

TEST_F(RigTest, IsNotRespondingOnlyAfterSeveralFailures) {
  OpenAndSettle();
  peer.errors = {{"+m", -6}, {"+t", -5}};
  Pass(2000);
  EXPECT_EQ(rig.StatusStr(), "On-line") << "its frequency comes";
  peer.errors = {{"+f", -5}};
  Pass(200);
  EXPECT_EQ(rig.StatusStr(), "On-line");
  Pass(300);
  ExpectLink(State::Silent, Cause::RigSilent, "Rig is not responding");
  EXPECT_TRUE(rig.Link().stale && rig.Transmitter() == TxReport::Untold);
  EXPECT_FALSE(rig.SetFreq(7000000));
  peer.instead["+\\get_powerstat"] = FakeRig::Done("get_powerstat:\nPower Status: 0");
  Pass(2000);
  ExpectLink(State::Silent, Cause::RigOff, "Rig is turned off");
  peer.BeUsual();
  while (rig.StatusStr() != "On-line") Pass(1);
  Pass(200);
  EXPECT_EQ(rig.Transmitter(), TxReport::Receives) << "everything is asked at once";
}

TEST_F(RigTest, LivesWithAServerThatDoesNotAnswerACommand) {
  for (const char* line : {"+\\get_vfo_info VFOA", "+\\dump_caps", "+v"}) peer.instead[line] = "";
  Open();
  Pass(60000);
  peer.lines.clear();
  Pass(8000);
  EXPECT_EQ(rig.Link().state, State::Linked);
  EXPECT_EQ(Count("+v"), 0);
  ASSERT_TRUE(rig.SetFreqB(7010000));
  Pass(200);
  EXPECT_EQ(peer.Writes(), (Lines{"+V VFOB", "+F 7010000", "+V VFOA"}));
}

// What waits is a release, a key or a write; the server that is left is there or not.
TEST_F(RigTest, MovingToAnotherServerTakesNothingAlong) {
  for (const bool connected : {true, false}) {
    for (const bool open : {true, false}) {
      OpenAndSettle();
      ASSERT_TRUE(rig.SetTx(PM_TX) && rig.SetFreqA(7000000) && rig.SetFreqB(3600000));
      if (!connected) channel.Break();
      if (!open) rig.Close();
      const Lines before = peer.Writes();
      rig.SetTx(PM_RX);
      rig.Move({"other", 2});
      EXPECT_EQ(rig.Freq(), 0);
      const bool releases = connected && open;
      EXPECT_EQ(peer.Writes().size(), before.size() + (releases ? 1 : 0));
      EXPECT_EQ(peer.lines.back() == "+T 0", releases);
      EXPECT_FALSE(rig.ReleaseAccepted());
      peer.lines.clear();
      Open();
      Pass(1000);
      EXPECT_EQ(rig.Freq(), 14074000);
      EXPECT_EQ(peer.Writes(), Lines());
      rig.Close();
    }
  }
}

}  // namespace
}  // namespace velt
