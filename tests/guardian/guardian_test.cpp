// The guardian's decisions, with no process and no socket: when it releases, repeats and gives up,
// and what it understands.
#include <gtest/gtest.h>

#include <sstream>

#include "guardian/answer_reader.h"
#include "guardian/follow_up.h"
#include "guardian/guardian_message.h"
#include "guardian/holdings.h"
#include "support/rig_recipe.h"

namespace velt {
namespace {

const SteadyTime kBegin = SteadyTime() + std::chrono::hours(1);

SteadyTime At(int milliseconds) {
  return kBegin + Milliseconds(milliseconds);
}

struct Step {
  int at = 0;           // milliseconds
  std::string happens;  // empty: only the time passes
  std::string ordered;  // empty: nothing
};

// "0 > connect; 10 connected > release; 20 accepted"
std::vector<Step> StepsOf(const std::string& script) {
  std::vector<Step> steps;
  std::istringstream parts(script);
  for (std::string part; std::getline(parts, part, ';');) {
    Step& step = steps.emplace_back();
    std::istringstream words(part);
    words >> step.at;
    std::string* text = &step.happens;
    for (std::string word; words >> word;) {
      if (word == ">") {
        text = &step.ordered;
      } else {
        *text += (text->empty() ? "" : " ") + word;
      }
    }
  }
  return steps;
}

std::string NameOf(FollowUp::Order order) {
  static const std::vector<std::string> names{"",    "connect", "drop",  "release",
                                              "ask", "done",    "failed"};
  return names.at(static_cast<size_t>(order));
}

FollowUp::Order Happens(FollowUp& followUp, const Step& step) {
  using Told = FollowUp::Told;
  static const std::map<std::string, FollowUp::Answer> answers{
      {"accepted", {true, Told::Nothing}},
      {"refused", {false, Told::Nothing}},
      {"RX", {true, Told::Receives}},
      {"TX", {true, Told::Transmits}},
      {"tells nothing", {false, Told::Nothing}}};
  const SteadyTime now = At(step.at);
  if (answers.contains(step.happens)) return followUp.Answered(now, answers.at(step.happens));
  if (step.happens == "connected") return followUp.Connected(now);
  if (step.happens == "left") return followUp.Left(now);
  if (step.happens == "lost") {
    followUp.Lost(now);
    return FollowUp::Order::Nothing;
  }
  // The loop sleeps until Due.
  EXPECT_EQ(followUp.Due() <= now, !step.ordered.empty()) << step.at;
  return followUp.Tick(now);
}

TEST(FollowUp, ReleasesUntilItIsSeenToReceive) {
  struct Case {
    std::string name;
    FollowUp::Peer peer;
    std::string steps;
  };
  const FollowUp::Peer usual{}, silent{.tells = false}, late{.keyIsUnderWay = true};
  const FollowUp::Peer mute{.answers = false, .tells = false};
  const std::string begin = "0 > connect; 10 connected > release; ";
  for (const Case& c : {
           Case{"seen to receive twice", usual,
                "20 accepted > ask; 25 RX; 624; 625 > ask; 630 RX > done"},
           Case{"the key came late", usual,
                "20 accepted > ask; 25 RX; 625 > ask; 630 TX; 630 > release; 640 accepted > ask; "
                "641 RX; 1240; 1241 > ask; 1242 RX > done"},
           Case{"ignores releases", usual,
                "20 accepted > ask; 30 TX; 259; 260 > release; 270 accepted > ask; 9999 TX; 10000 "
                "> failed"},
           Case{"refuses once", usual,
                "20 refused > ask; 30 tells nothing; 280 > release; 290 accepted > ask; 300 tells "
                "nothing > done"},
           Case{"answers nothing", usual,
                "3009; 3010 > drop; 3259; 3260 > connect; 3300 connected > release; 6300 > drop; "
                "6300 lost; 6550 > connect; 9550 > drop; 10000 > failed"},
           Case{"refuses connections", usual,
                "11 lost; 260; 261 > connect; 261 lost; 511 > connect; 512 RX; 9999 connected > "
                "release; 10000 > failed"},
           Case{"a connection lost after the release asks first", usual,
                "20 accepted > ask; 21 lost; 271 > connect; 272 connected > ask; 273 TX; 273 > "
                "release"},
           Case{"one lost before the answer releases again", usual,
                "20 lost; 270 > connect; 272 connected > release"},
           Case{"cannot tell", usual, "20 accepted > ask; 30 tells nothing > done"},
           Case{"cannot tell, and was keyed just before", late,
                "20 accepted > ask; 30 tells nothing; 629; 630 > release; 640 accepted > ask; 650 "
                "tells nothing > done"},
           Case{"could tell before", usual,
                "20 accepted > ask; 30 RX; 630 > ask; 640 tells nothing; 890 > ask; 900 RX > done"},
           Case{"the end comes before the second time", usual,
                "20 accepted > ask; 30 TX; 260 > release; 300 accepted > ask; 9900 RX; 10000 > "
                "done"},
           Case{"is not asked", silent, "20 accepted > done"},
           Case{"does not answer", mute, "20 left > done"},
           Case{"answers that nobody waits for", usual,
                "15 left; 20 accepted > ask; 25 RX; 30 TX; 40 connected; 625 > ask"},
       }) {
    SCOPED_TRACE(c.name);
    FollowUp followUp(At(0), c.peer, {});
    for (const Step& step : StepsOf(begin + c.steps)) {
      EXPECT_EQ(NameOf(Happens(followUp, step)), step.ordered) << step.at << " " << step.happens;
    }
  }
}

std::string TextOf(const Holdings::Orders& orders) {
  std::string text = orders.tellSilence ? " silence" : "";
  const auto add = [&text](const char* word, const std::vector<uint32_t>& tickets) {
    for (const uint32_t ticket : tickets) text += std::string(" ") + word + std::to_string(ticket);
  };
  add("done", orders.done);
  add("failed", orders.failed);
  add("drop", orders.drop);
  add("release", orders.release);
  return text;
}

// "hold 1 rig", "forget 1", "follow 1", "beat", "" (time), "end", "released 1", "gave-up 1".
std::string Happens(Holdings& holdings, const Step& step) {
  std::istringstream words(step.happens);
  std::string word, transmitter;
  uint32_t ticket = 0;
  words >> word >> ticket >> transmitter;
  if (word.empty()) {
    const auto due = holdings.Due();
    EXPECT_EQ(due && *due <= At(step.at), !step.ordered.empty()) << step.at;
    return TextOf(holdings.Tick(At(step.at)));
  }
  if (word == "end") return TextOf(holdings.Ended());
  if (word == "released") return TextOf(holdings.FollowedUp(ticket, true));
  if (word == "gave-up") return TextOf(holdings.FollowedUp(ticket, false));
  std::string text;
  if (word == "hold") text = TextOf(holdings.Hold(At(step.at), ticket, transmitter));
  if (word == "forget") text = TextOf(holdings.Forget(ticket));
  if (word == "follow") text = TextOf(holdings.Follow(ticket));
  return text + TextOf(holdings.Heard(At(step.at)));
}

TEST(Holdings, AreReleasedWhenTheProgramCannot) {
  struct Case {
    std::string name;
    std::string steps;
    bool finished;
  };
  const std::string silence = "0 hold 1 rig; 4000 beat; 8999; 9000 > silence release1; ";
  for (const Case& c : {
           Case{"nothing held", "90000; 90000 end", true},
           Case{"forgotten", "0 hold 1 rig; 1 forget 1 > drop1; 9000; 9000 end", true},
           Case{"the end",
                "0 hold 1 rig; 0 hold 2 other; 1 end > release1 release2; 9000; 9000 released 1 > "
                "drop1; 9001 gave-up 2 > drop2",
                true},
           Case{"the end, under way", "0 hold 1 rig; 1 end > release1", false},
           Case{
               "handed over",
               "0 hold 1 rig; 1 follow 1 > release1; 9000; 9000 released 1 > done1 drop1; 9000 end",
               true},
           Case{"handed over in vain",
                "0 hold 1 rig; 1 follow 1 > release1; 2 end; 10001 gave-up 1 > failed1 drop1",
                true},
           Case{"keyed again while it is followed up",
                "0 hold 1 rig; 1 follow 1 > release1; 2 hold 2 other; 3 hold 3 rig > done1 drop1; "
                "4 released 1; 5 end > release2 release3",
                false},
           Case{"two that want the same rig",
                "0 hold 1 rig; 0 hold 2 rig; 1 forget 1 > drop1; 2 end > release2", false},
           Case{"silence",
                silence + "20000; 20000 released 1 > drop1; 20001 hold 2 rig; 25000; 25001 > "
                          "silence release2",
                false},
           Case{"silence, then keyed again at once", silence + "9001 hold 2 rig > drop1", false},
           Case{"silence, then the end", silence + "9500 end; 9600 released 1 > drop1", true},
           Case{"silence in vain, then the end",
                silence + "19000 gave-up 1; 60000; 60000 end > release1; 70000 gave-up 1 > drop1",
                true},
           Case{"silence in vain, then awake",
                silence + "19000 gave-up 1; 60000 beat > drop1; 70000 end", true},
           Case{"silence, awake, then in vain",
                silence + "9100 beat; 19000 gave-up 1 > drop1; 19001 end", true},
           Case{"silence in vain, then handed over",
                silence +
                    "19000 gave-up 1; 60000 follow 1 > release1; 60001 released 1 > done1 drop1",
                false},
           Case{"silence, then handed over when it was done",
                silence + "9500 released 1 > drop1; 60000 follow 1 > done1", false},
       }) {
    SCOPED_TRACE(c.name);
    Holdings holdings(Milliseconds(5000));
    for (const Step& step : StepsOf(c.steps)) {
      const std::string ordered = step.ordered.empty() ? "" : " " + step.ordered;
      EXPECT_EQ(Happens(holdings, step), ordered) << step.at << " " << step.happens;
    }
    EXPECT_EQ(holdings.Finished(), c.finished);
  }
}

TEST(GuardianMessage, ArrivesWholeOrNotAtAll) {
  GuardianMessage hold;
  hold.kind = GuardianMessage::Kind::Hold;
  hold.ticket = 0xfedcba98;
  hold.recipe = RigRecipe(45320);
  hold.recipe.lowersLines = true;
  hold.recipe.release = std::string("+T 0\n\0\xff", 7);
  const std::string bytes = Encode(hold);
  const auto read = Decode(bytes);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->kind, hold.kind);
  EXPECT_EQ(read->ticket, hold.ticket);
  const auto fields = [](const ReleaseRecipe& r) {
    return std::tuple(r.host, r.port, r.lowersLines, r.release, r.ask, r.answerEnd, r.accepted,
                      r.tells, r.receives);
  };
  EXPECT_EQ(fields(read->recipe), fields(hold.recipe));
  for (size_t size = 0; size < bytes.size(); ++size) EXPECT_FALSE(Decode(bytes.substr(0, size)));
  EXPECT_FALSE(Decode(bytes + '\0'));
  for (int kind = 0; kind < 256; ++kind) {
    std::string other = bytes.substr(0, 5);
    other[0] = static_cast<char>(kind);
    const bool needsNoMore = kind == 2 || kind == 3 || kind == 4 || (kind >= 6 && kind <= 9);
    EXPECT_EQ(Decode(other).has_value(), needsNoMore) << kind;
  }
  hold.recipe.ask.assign(70000, 'x');
  EXPECT_TRUE(Encode(hold).empty());
}

TEST(AnswerReader, UnderstandsAnswersHoweverTheyAreSplit) {
  struct Case {
    std::string bytes;
    std::string understood;  // of each answer: accepted or not, what it tells
  };
  const ReleaseRecipe recipe = RigRecipe(1);
  for (const Case& c :
       {Case{"set_ptt: 0\nRPRT 0\n", "+- "}, Case{"get_ptt:\r\nPTT: 0\r\nRPRT 0\r\n", "+R "},
        Case{"get_ptt:\nPTT: 1\nRPRT 0\nRPRT -11\n", "+T -- "}, Case{"PTT: 01\nRPRT -5\n", "-T "},
        Case{"PTT: 0\nRPRT 0", ""}, Case{"xPTT: 0\n RPRT 0\nRPRT 00\n", "-- "},
        Case{std::string(1000000, 'R') + "\nPTT: 0\nRPRT 0\n", "+R "}}) {
    for (const size_t piece : {1U, 7U}) {
      AnswerReader reader(recipe);
      std::string understood;
      for (size_t i = 0; i < c.bytes.size(); i += piece) {
        if (const auto answer = reader.Read(std::string_view(c.bytes).substr(i, piece))) {
          understood += answer->accepted ? '+' : '-';
          understood += std::string("-RT").at(static_cast<size_t>(answer->told));
          understood += ' ';
        }
      }
      EXPECT_EQ(understood, c.understood) << c.bytes.substr(0, 80);
    }
  }
}

}  // namespace
}  // namespace velt
