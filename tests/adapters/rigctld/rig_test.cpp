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

// What the queue sends to a rig on the VFO `current` that refuses one line, after what the letters
// do: F, A, B write a frequency, 1, 2, 3 ... Hz; M a mode, K keys, R releases; a dot is one command
// sent and answered, X a break. In the end everything is sent.
std::string Sent(const std::string& script, const std::string& current,
                 const std::string& refused) {
  WriteQueue queue;
  std::string sent;
  int32_t hz = 0;
  const auto next = [&] {
    const auto command = queue.Next();
    if (!command || sent.size() > 500) return false;
    const std::string line = command->line.substr(0, command->line.size() - 1);
    sent += (sent.empty() ? "" : ", ") + line;
    queue.Answered(*command, {{"get_vfo:", "VFO: " + current}, line == refused ? -6 : 0});
    return true;
  };
  const std::map<char, std::function<void()>> acts{
      {'F', [&] { queue.Put(RigProperty::Freq, ++hz); }},
      {'A', [&] { queue.Put(RigProperty::FreqA, ++hz); }},
      {'B', [&] { queue.Put(RigProperty::FreqB, ++hz); }},
      {'M', [&] { queue.Put(RigProperty::Mode, PM_AM); }},
      {'K', [&] { queue.PutKey(); }},
      {'R', [&] { queue.PutRelease(); }},
      {'X', [&] { queue.Interrupt(); }},
      {'.', next}};
  for (const char letter : script) acts.at(letter)();
  while (next()) {
  }
  return sent;
}

TEST(WriteQueue, ReleasesFirstWritesAVfoWhereItIsAndReturns) {
  struct Case {
    std::string script, sent, current = "VFOA", refused = {};
  };
  for (const Case& c : {
           Case{"FMKF", "+M AM -1, +T 1, +F 2"},
           Case{"FKRK", "+T 0, +F 1, +T 1"},
           Case{"BA", "+v, +V VFOB, +F 1, +V VFOA, +v, +F 2"},
           Case{"BA", "+v, +V VFOB, +F 1, +V MEM, +v, +V VFOA, +F 2, +V MEM", "MEM"},
           // Nothing is written to the wrong VFO; the return is tried again, but not for ever.
           Case{"BA", "+v, +V VFOB, +V Main, +v, +F 2", "Main", "+V VFOB"},
           Case{"BA", "+v, +V VFOB, +F 1, +V VFOA, +V VFOA, +V VFOA, +v, +F 2", "VFOA", "+V VFOA"},
           // A release waits for the way back, unless that is refused, and survives a break.
           Case{"B.R", "+v, +T 0, +V VFOB, +F 1, +V VFOA"},
           Case{"B..R", "+v, +V VFOB, +F 1, +V VFOA, +T 0"},
           Case{"B..RX", "+v, +V VFOB, +T 0, +V VFOA"},
           Case{"B...R", "+v, +V VFOB, +F 1, +V VFOA, +T 0"},
           Case{"B...RX", "+v, +V VFOB, +F 1, +T 0, +V VFOA"},
           Case{"B...R", "+v, +V VFOB, +F 1, +V VFOA, +T 0, +V VFOA, +V VFOA", "VFOA", "+V VFOA"},
       }) {
    EXPECT_EQ(Sent(c.script, c.current, c.refused), c.sent) << c.script;
  }
}

struct ScriptedChannel : ByteChannel {
  VirtualScheduler& scheduler;
  bool answers = true;
  std::map<std::string, FakeRig> rigs;  // by their servers' hosts
  FakeRig* rig = nullptr;               // of the present one
  int underWay = 0;
  std::vector<Scheduler::Handle> later;

  explicit ScriptedChannel(VirtualScheduler& of) : scheduler(of) {}
  void Connect(const ServerAddress& address) override {
    Disconnect();
    rig = &rigs[address.host];
    later.push_back(scheduler.After(Milliseconds(1), [this] { connected.Raise(); }));
  }
  bool LooksUp() const override { return false; }
  void Disconnect() override {
    underWay = 0;
    later.clear();
  }
  void Send(std::string_view bytes) override {
    EXPECT_EQ(underWay, 0) << "one command after the other";
    SendNow({}, bytes, {});
  }
  std::optional<ServerAddress> Peer() const override { return ServerAddress{"192.0.2.7", 1}; }
  bool SendNow(const ServerAddress&, std::string_view bytes, Milliseconds) override {
    ++underWay;
    const std::string reply = rig->Answer(std::string(bytes.substr(0, bytes.size() - 1)));
    if (!answers) return true;
    later.push_back(scheduler.After(Milliseconds(10), [this, reply] {
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
};

struct RigTest : testing::Test {
  VirtualScheduler time;
  ScriptedChannel channel{time};
  int refusals = 0;
  Lines notTaken;
  RigctldRig rig{channel, time};
  FakeRig& peer = channel.rigs["host"];
  FakeRig& other = channel.rigs["other"];

  void Open() { rig.Open({"host", 1}, {}); }
  const RigctldRig& After(int64_t ms) {
    time.Advance(Milliseconds(ms));
    return rig;
  }
  void OpenAndSettle() {
    rig.Close();
    peer.instead.clear();
    Open();
    ASSERT_EQ(After(300).Link().state, State::Linked);
    peer.lines.clear();
  }
  void SetUp() override { OpenAndSettle(); }
  void Report(const std::string& hz) {
    peer.instead["+f"] = FakeRig::Done("get_freq:\nFrequency: " + hz);
    peer.instead["+\\get_vfo_info VFOB"] = FakeRig::Done("get_vfo_info: VFOB\nFreq: " + hz);
  }

  Connection refusing = rig.keyRefused.Listen([this] { ++refusals; });
  Connection refusing2 = rig.writeRefused.Listen([this](const RefusedWrite& write) {
    notTaken.push_back((write.isMode ? "mode " : "") + std::to_string(write.value));
  });
};

TEST_F(RigTest, FollowsTheRigAndTellsWhereItTransmitsButNothingThatIsNoFrequency) {
  peer.freq["VFOA"] = 3573000;
  peer.mode = "RTTY";
  peer.keyed = peer.split = 1;
  EXPECT_EQ(After(500).GetTxFrequency(), 7074000);
  EXPECT_TRUE(rig.Freq() == 3573000 && rig.Mode() == 0);
  peer.split = 0;
  EXPECT_EQ(After(300).GetTxFrequency(), 3573000);

  for (const std::string bad : {"0", "9", "-7074000", "nan", "", "2147483648", "1e300"}) {
    Report(bad);
    EXPECT_TRUE(After(150).Freq() == 0 && rig.FreqA() == 0) << bad;
    Report("10");
    EXPECT_EQ(After(150).Freq(), 10);
  }
}

TEST_F(RigTest, AnOldValueDoesNotComeBackForASecondAndTheRealOneIsShown) {
  for (const bool b : {false, true}) {
    OpenAndSettle();
    const auto value = [&] { return b ? rig.FreqB() : rig.Freq(); };
    const auto write = [&](int32_t hz) { return b ? rig.SetFreqB(hz) : rig.SetFreq(hz); };
    Report("14074000");
    ASSERT_TRUE(write(14075001) && write(14075003));
    while (peer.freq[b ? "VFOB" : "VFOA"] != 14075003) After(1);
    for (int i = 0; i < 100; ++i, After(10)) EXPECT_EQ(value(), 14075003) << i * 10 << " ms";
    Report("14075000");
    After(350);
    EXPECT_EQ(value(), 14075000) << "the rig rounds: asked as soon as it is believed";
    peer.instead["+F"] = FakeRig::Error("set_freq: 7000000", -9);
    notTaken.clear();
    ASSERT_TRUE(write(7000000));
    while (peer.lines.back() != "+F 7000000") After(1);
    ASSERT_TRUE(write(7000001));
    After(200);
    EXPECT_EQ(value(), 14075000) << "refused";
    EXPECT_EQ(notTaken, Lines{"7000001"}) << "the newest is told";
  }
}

TEST_F(RigTest, EveryReleaseIsSentWhateverBecameOfTheOneBefore) {
  for (const State state : {State::Linked, State::Silent}) {
    const bool silent = state == State::Silent;
    peer.instead["+T"] = FakeRig::Error("set_ptt: 0", -5);
    if (silent) peer.instead["+f"] = FakeRig::Error("get_freq:", -5);
    EXPECT_EQ(After(1000).Link().state, state);
    EXPECT_EQ(rig.Transmitter() == TxReport::Untold, silent) << "not from memory";
    peer.lines.clear();
    for (int call = 1; call <= 20; ++call, After(500)) EXPECT_TRUE(rig.SetTx(PM_RX));
    EXPECT_EQ(std::ranges::count(peer.lines, "+T 0"), 20);
    EXPECT_FALSE(rig.ReleaseAccepted());
  }
}

TEST_F(RigTest, AKeyIsRefusedOnlyForCertain) {
  for (const auto& [code, refused] :
       {std::pair{-1, true}, {-9, true}, {-11, true}, {-5, false}, {-6, false}}) {
    SCOPED_TRACE(code);
    OpenAndSettle();
    refusals = 0;
    peer.instead["+T"] = FakeRig::Error("set_ptt: 1", code);
    ASSERT_TRUE(rig.SetTx(PM_TX));
    EXPECT_EQ(After(200).KeyRefused(), refused);
    // A key that was taken back before its answer came is no news.
    ASSERT_TRUE(rig.SetTx(PM_TX));
    while (peer.lines.back() != "+T 1") After(1);
    rig.SetTx(PM_RX);
    After(200);
    EXPECT_EQ(refusals, refused);
  }
}

TEST_F(RigTest, AReleaseThatIsNotAnsweredGoesAgainFirst) {
  ASSERT_TRUE(rig.SetTx(PM_TX) && rig.SetFreqB(7010000));
  while (peer.vfo != "VFOB") After(1);
  channel.answers = false;
  rig.SetTx(PM_RX);
  EXPECT_EQ(After(60'000).Link().cause, Cause::NoAnswer);
  channel.answers = true;
  peer.lines.clear();
  After(3000);  // soon, however long the server has been away
  EXPECT_EQ(peer.lines.at(0), "+T 0");
  EXPECT_EQ(peer.Writes(), (Lines{"+T 0", "+V VFOA"}));
}

TEST_F(RigTest, AForeignAnswerEndsTheConnection) {
  for (const std::string& answer : {"RPRT 0\n"s, "get_mode:\nMode: USB\nRPRT 0\n"s,
                                    "HTTP/1.1 400\r\nRPRT 0\r\n"s, std::string(100'000, 'x')}) {
    OpenAndSettle();
    peer.instead["+f"] = answer;
    EXPECT_EQ(After(200).Link().cause, Cause::WrongAnswer) << answer.substr(0, 20);
    EXPECT_EQ(rig.Freq(), 14074000);
  }
}

TEST_F(RigTest, IsNotRespondingOnlyAfterSeveralFailures) {
  peer.instead = {{"+t", FakeRig::Error("get_ptt:", -5)}};
  EXPECT_EQ(After(250).Transmitter(), TxReport::Receives) << "one error says nothing";
  EXPECT_EQ(After(2500).StatusStr(), "On-line") << "its frequency comes";
  EXPECT_TRUE(rig.Transmitter() == TxReport::Untold && rig.Recipe()->ask.empty());
  peer.instead["+f"] = FakeRig::Error("get_freq:", -5);
  EXPECT_EQ(After(420).StatusStr(), "Rig is not responding");
  EXPECT_TRUE(rig.Link().stale);
  EXPECT_FALSE(rig.SetFreq(7000000));
  peer.instead["+\\get_powerstat"] = FakeRig::Done("get_powerstat:\nPower Status: 0");
  EXPECT_EQ(After(2000).StatusStr(), "Rig is turned off");
  peer.instead.clear();
  EXPECT_EQ(After(3000).Transmitter(), TxReport::Receives);
}

TEST_F(RigTest, LivesWithAServerThatDoesNotAnswerACommand) {
  rig.Close();
  for (const char* line : {"+\\get_vfo_info VFOA", "+\\dump_caps", "+v"}) peer.instead[line] = "";
  Open();
  EXPECT_EQ(After(68000).Link().state, State::Linked);
  ASSERT_TRUE(rig.SetFreqB(7010000));
  After(200);
  EXPECT_EQ(peer.Writes(), (Lines{"+V VFOB", "+F 7010000", "+V VFOA"}));
}

// At any moment of a write to the other VFO, with a release and a write waiting behind it; the
// server answers, stands still or is not there.
TEST_F(RigTest, LeavingAServerFinishesWhatWasWrittenThereAndTakesNothingAlong) {
  enum { Answers, Stands, Broken };
  for (const int server : {Answers, Stands, Broken}) {
    for (int moment = 0; moment < 2 * 24; ++moment) {
      const bool moves = moment % 2 == 0;
      SCOPED_TRACE(moment);
      peer = other = {};
      OpenAndSettle();
      ASSERT_TRUE(rig.SetFreqB(7100000) && rig.SetTx(PM_TX));
      After(moment / 2 * 3);
      ASSERT_TRUE(rig.SetFreq(14084000));
      if (server == Broken) channel.Break();
      channel.answers = server != Stands;
      rig.SetTx(PM_RX);
      const Lines before = peer.lines;
      moves ? rig.Move({"other", 2}) : rig.Close();
      EXPECT_TRUE(server == Broken || peer.lines.back() == "+T 0") << "at once";
      EXPECT_TRUE(rig.WritesWait() == (server != Broken) && !rig.Recipe() && !rig.Link().stale);
      EXPECT_TRUE(!moves || rig.Freq() == 0);
      const bool releases = moves && server != Broken;
      if (releases) rig.ReleaseNow(Milliseconds(0));  // not there any more
      After(890);
      channel.answers = true;
      After(300);
      EXPECT_FALSE(rig.WritesWait());
      if (server == Answers) {
        EXPECT_TRUE(peer.freq["VFOA"] == 14084000 && peer.freq["VFOB"] == 7100000);
      }
      EXPECT_TRUE(server == Broken ? peer.lines == before : peer.vfo == "VFOA" && peer.keyed == 0);
      EXPECT_EQ(other.Writes(), releases ? Lines{"+T 0"} : Lines());
      EXPECT_TRUE(!moves || rig.Freq() == 14074000);
      rig.Close();
    }
  }
}

}  // namespace
}  // namespace velt
