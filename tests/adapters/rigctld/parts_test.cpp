#include <gtest/gtest.h>

#include "adapters/rigctld/key_watch.h"
#include "adapters/rigctld/mode_names.h"
#include "adapters/rigctld/poll_plan.h"
#include "adapters/rigctld/rig_picture.h"
#include "adapters/rigctld/server_address.h"
#include "adapters/rigctld/write_queue.h"
#include "ports/omnirig.h"

namespace velt {
namespace {

using Lines = std::vector<std::string>;

TEST(ServerAddress, TakesHostAndPortAndNothingElse) {
  const std::map<std::string, std::string> good = {{"127.0.0.1:4532", "127.0.0.1:4532"},
                                                   {" shack.lan:1 ", "shack.lan:1"},
                                                   {"[::1]:65535", "[::1]:65535"}};
  for (const auto& [text, canonical] : good) {
    const auto address = ParseServerAddress(text);
    ASSERT_TRUE(address) << text;
    EXPECT_EQ(address->Text(), canonical);
  }
  for (const char* text : {"", "host", ":4532", "host:", "host:0", "host:65536", "host:-1",
                           "host:12x", "host: 12", "ho st:1", "::1:4532", "[]:4532", "a\nb:1"}) {
    EXPECT_FALSE(ParseServerAddress(text)) << text;
  }
}

TEST(ModeNames, EachModeComesBackFromItsName) {
  for (const int32_t mode : {PM_CW_U, PM_CW_L, PM_SSB_U, PM_SSB_L, PM_DIG_U, PM_AM, PM_FM}) {
    EXPECT_EQ(ModeOfName(ModeName(mode)), mode);
  }
  EXPECT_EQ(ModeName(PM_CW_L), "CWR");
  EXPECT_EQ(ModeOfName("RTTY"), 0);
  EXPECT_EQ(ModeOfName(""), 0);
  EXPECT_EQ(ModeName(PM_TX), "");
}

TEST(ReplyReader, CutsTheStreamWhereverItIsSplit) {
  const std::string stream = "get_freq:\nFrequency: 145000000\nRPRT 0\nset_vfo: MEM\r\nRPRT -1\r\n";
  for (size_t piece = 1; piece <= stream.size(); ++piece) {
    ReplyReader reader;
    std::vector<RigReply> replies;
    for (size_t at = 0; at < stream.size(); at += piece) {
      for (auto& reply : reader.Feed(std::string_view(stream).substr(at, piece))) {
        replies.push_back(std::move(reply));
      }
    }
    ASSERT_EQ(replies.size(), 2u) << "pieces of " << piece;
    EXPECT_EQ(replies[0].Field("Frequency"), "145000000");
    EXPECT_EQ(replies[0].Field("Freq"), "");
    EXPECT_EQ(replies[1].lines, Lines{"set_vfo: MEM"});
    EXPECT_EQ(replies[1].code, -1);
  }
}

TEST(ReplyReader, StopsAtTooMuchWithoutAnEnd) {
  for (const std::string& flood : {std::string(4096, 'x'), std::string(2048, '\n')}) {
    ReplyReader reader;
    size_t fed = 0;
    while (!reader.Overflowed() && fed < 1'000'000) {
      EXPECT_TRUE(reader.Feed(flood).empty());
      fed += flood.size();
    }
    EXPECT_LE(fed, ReplyReader::kMostBytes + 4096);
    EXPECT_TRUE(reader.Feed("\nRPRT 0\n").empty());
    reader.Reset();
    EXPECT_EQ(reader.Feed("set_ptt: 0\nRPRT 0\n").size(), 1u);
  }
}

// Sends everything that waits; `replies` stand in for the usual "done".
Lines Drain(WriteQueue& queue, std::map<std::string, RigReply> replies = {}) {
  Lines sent;
  while (const auto command = queue.Next()) {
    sent.push_back(command->line.substr(0, command->line.size() - 1));
    const auto reply = replies.find(sent.back());
    queue.Answered(*command, reply == replies.end() ? RigReply{} : reply->second);
    if (sent.size() > 50) break;
  }
  return sent;
}

RigReply CurrentVfo(const std::string& name) {
  return {{"get_vfo:", "VFO: " + name}, 0};
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
}

TEST(WriteQueue, WritesAVfoWhereItIsAndReturns) {
  struct Case {
    std::string current;
    Lines sent;
  };
  for (const Case& c :
       {Case{"VFOA", {"+v", "+V VFOB", "+F 7", "+V VFOA", "+v", "+F 9"}},
        Case{"Main", {"+v", "+V VFOB", "+F 7", "+V Main", "+v", "+F 9"}},
        Case{"Sub", {"+v", "+F 7", "+v", "+V VFOA", "+F 9", "+V Sub"}},
        Case{"MEM", {"+v", "+V VFOB", "+F 7", "+V MEM", "+v", "+V VFOA", "+F 9", "+V MEM"}},
        Case{"a b", {"+v", "+V VFOB", "+F 7", "+V VFOA", "+v", "+F 9"}}}) {
    WriteQueue queue;
    queue.Put(RigProperty::FreqB, 7);
    queue.Put(RigProperty::FreqA, 9);
    EXPECT_EQ(Drain(queue, {{"+v", CurrentVfo(c.current)}}), c.sent) << c.current;
  }
  WriteQueue unknowing;
  unknowing.SetVfoKnowable(false);
  unknowing.Put(RigProperty::FreqB, 7);
  unknowing.Put(RigProperty::FreqA, 9);
  EXPECT_EQ(Drain(unknowing), (Lines{"+V VFOB", "+F 7", "+V VFOA", "+F 9"}));
}

TEST(WriteQueue, NeverWritesToTheWrongVfo) {
  WriteQueue queue;
  queue.Put(RigProperty::FreqB, 7);
  EXPECT_EQ(Drain(queue, {{"+v", CurrentVfo("VFOA")}, {"+V VFOB", {{}, -5}}}),
            (Lines{"+v", "+V VFOB", "+V VFOA"}));
  // A refused return is tried again, but not for ever.
  queue.Put(RigProperty::FreqB, 7);
  EXPECT_EQ(Drain(queue, {{"+v", CurrentVfo("VFOA")}, {"+V VFOA", {{}, -6}}}),
            (Lines{"+v", "+V VFOB", "+F 7", "+V VFOA", "+V VFOA", "+V VFOA"}));
}

TEST(WriteQueue, ReleaseWaitsForTheWayBackAndSurvivesABreak) {
  // After how many commands of a VFO write the release is asked for, and what follows it.
  const Lines whole = {"+v", "+V VFOB", "+F 7", "+V VFOA"};
  for (size_t sentBefore = 0; sentBefore <= 4; ++sentBefore) {
    for (const bool breaks : {false, true}) {
      WriteQueue queue;
      queue.Put(RigProperty::FreqB, 7);
      for (size_t i = 0; i < sentBefore; ++i) {
        const auto command = queue.Next();
        ASSERT_EQ(command->line, whole[i] + "\n");
        queue.Answered(*command, i == 0 ? CurrentVfo("VFOA") : RigReply{});
      }
      queue.PutRelease();
      if (breaks) queue.Interrupt();
      Lines expected;
      const bool left = sentBefore == 2 || sentBefore == 3;
      if (breaks) {
        expected = left ? Lines{"+T 0", "+V VFOA"} : Lines{"+T 0"};
      } else if (left) {
        expected.assign(whole.begin() + static_cast<long>(sentBefore), whole.end());
        expected.push_back("+T 0");
      } else {
        expected = {"+T 0"};
        expected.insert(expected.end(), whole.begin() + static_cast<long>(sentBefore), whole.end());
      }
      EXPECT_EQ(Drain(queue, {{"+v", CurrentVfo("VFOA")}}), expected)
          << sentBefore << (breaks ? " broken" : "");
    }
  }
  // A select that was under way may have arrived; a release under way goes again.
  WriteQueue queue;
  queue.SetVfoKnowable(false);
  queue.Put(RigProperty::FreqB, 7);
  queue.Next();
  queue.Interrupt();
  EXPECT_EQ(Drain(queue), Lines{"+V VFOA"});
  queue.PutRelease();
  queue.Next();
  queue.Interrupt();
  EXPECT_EQ(Drain(queue), Lines{"+T 0"});
}

TEST(RigPicture, SettlesAfterAWrite) {
  SettledValue value;
  value.Reported(5);
  value.Written(7);
  value.Reported(5);  // asked before the write was sent
  value.Written(8);
  value.Acknowledged(7, true);  // the older write
  value.Reported(7);
  EXPECT_EQ(value.Value(), 8);
  value.Acknowledged(8, true);
  for (int i = 0; i < kSettlingReports; ++i) {
    value.Reported(5);
    EXPECT_EQ(value.Value(), 8);
  }
  value.Reported(5);
  EXPECT_EQ(value.Value(), 5) << "what the rig really has";
  value.Written(9);
  value.Acknowledged(9, false);
  EXPECT_EQ(value.Value(), 5) << "refused";
}

TEST(RigPicture, LateEchoesOfTransmittingDoNotCount) {
  TransmitState state;
  state.KeyAsked();
  EXPECT_FALSE(state.Transmitting()) << "only what the rig reports";
  state.Reported(true);
  state.ReleaseAsked();
  state.Reported(true);
  state.ReleaseAnswered();
  state.Reported(true);
  EXPECT_TRUE(state.Transmitting()) << "not released until the rig says so";
  state.Reported(false);
  for (int i = 2; i <= kSettlingReports; ++i) {
    state.Reported(true);
    EXPECT_FALSE(state.Transmitting());
  }
  state.Reported(true);
  EXPECT_TRUE(state.Transmitting()) << "somebody has keyed it again";
}

TEST(PollPlan, AsksOnlyWhatTheServerKnowsAndGentlyUnderPower) {
  SteadyTime now;
  const auto round = [&](PollPlan& plan) {
    std::vector<CommandKind> kinds;
    while (const auto kind = plan.Next(now)) {
      kinds.push_back(*kind);
      plan.Answered(*kind, *kind == CommandKind::GetVfoB ? -11 : 0, now);
    }
    return kinds;
  };
  using enum CommandKind;
  PollPlan plan;
  plan.Unanswered(GetType);
  EXPECT_EQ(round(plan),
            (std::vector{GetFreq, GetVfo, GetMode, GetTransmit, GetSplit, GetVfoA, GetVfoB}));
  EXPECT_EQ(round(plan), std::vector<CommandKind>());
  now += plan.Pause(now);
  plan.SetSplit(true);
  EXPECT_EQ(round(plan), (std::vector{GetFreq, GetMode, GetTransmit, GetSplit}));
  now += Milliseconds(2000);
  plan.SetTransmitting(true);
  EXPECT_EQ(round(plan), (std::vector{GetFreq, GetMode, GetTransmit, GetSplit, GetSplitFreq}));
  plan.SetTransmitting(false);
  plan.SetSplit(false);
  plan.HurryVfos();
  for (int i = 0; i < kSettlingReports + 2; ++i) {
    now += plan.Pause(now);
    const auto kinds = round(plan);
    EXPECT_EQ(std::count(kinds.begin(), kinds.end(), GetVfoA), i <= kSettlingReports) << i;
    EXPECT_EQ(std::count(kinds.begin(), kinds.end(), GetVfoB), 0);
  }
}

TEST(KeyWatch, KnowsWhoseTransmissionItIs) {
  KeyWatch watch;
  watch.Reported(true);
  EXPECT_FALSE(watch.Keyed()) << "somebody else's";
  watch.Reported(false);
  watch.KeySent();
  watch.Reported(false);
  EXPECT_TRUE(watch.Keyed()) << "not there yet";
  watch.Reported(true);
  watch.ReleaseAnswered(true, true);
  EXPECT_TRUE(watch.Keyed()) << "until it is seen";
  watch.Reported(false);
  EXPECT_FALSE(watch.Keyed());
  watch.KeySent();
  watch.KeyAnswered(true);
  EXPECT_FALSE(watch.Keyed()) << "refused";
  watch.KeySent();
  watch.ReleaseAnswered(true, false);
  EXPECT_FALSE(watch.Keyed()) << "a rig that cannot report";
}

}  // namespace
}  // namespace velt
