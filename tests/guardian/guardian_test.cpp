// The guardian's decisions, with no process and no socket: when it releases, repeats and gives up,
// and what it understands.
#include <gtest/gtest.h>

#include <sstream>

#include "guardian/answer_reader.h"
#include "guardian/follow_up.h"
#include "guardian/guardian_message.h"
#include "guardian/holdings.h"
#include "support/rig_recipe.h"
#include "support/story.h"

namespace velt {
namespace {

using namespace std::string_literals;

const SteadyTime kBegin = SteadyTime() + std::chrono::hours(1);

// A step: "270 connected", when and what; only the time passes: "270".
std::string Happens(FollowUp& followUp, const std::string& step, const std::string& ordered) {
  using Told = FollowUp::Told;
  static const std::map<std::string, FollowUp::Answer> answers{
      {"accepted", {true, Told::Nothing}},
      {"refused", {false, Told::Nothing}},
      {"RX", {true, Told::Receives}},
      {"TX", {true, Told::Transmits}},
      {"tells nothing", {false, Told::Nothing}}};
  static const std::vector<std::string> names{"",    "connect", "drop",  "release",
                                              "ask", "done",    "failed"};
  size_t digits = 0;
  const SteadyTime now = kBegin + Milliseconds(std::stoi(step, &digits));
  const std::string what = digits < step.size() ? step.substr(digits + 1) : "";
  const auto happened = [&] {
    if (answers.contains(what)) return followUp.Answered(now, answers.at(what));
    if (what == "connected") return followUp.Connected(now);
    if (what == "left") return followUp.Left(now);
    if (what == "lost") return followUp.Lost(now), FollowUp::Order::Nothing;
    EXPECT_EQ(followUp.Due() <= now, !ordered.empty());  // the loop sleeps until then
    return followUp.Tick(now);
  };
  return names.at(static_cast<size_t>(happened()));
}

TEST(FollowUp, ReleasesUntilItIsSeenToReceive) {
  const FollowUp::Peer usual{}, silent{.tells = false},
      late{.keyMayComeUntil = kBegin + Milliseconds(1000)};
  const FollowUp::Peer mute{.answers = false, .tells = false};
  const std::vector<std::pair<FollowUp::Peer, std::vector<std::string>>> stories{
      {usual,
       {// The key came late.
        "20 accepted > ask; 25 RX; 624; 625 > ask; 630 TX; 630 > release; 640 accepted > ask; 641 "
        "RX; 1240; 1241 > ask; 1242 RX > done",
        // Ignores releases.
        "20 accepted > ask; 30 TX; 259; 260 > release; 270 accepted > ask; 9999 TX; 10000 > failed",
        // Answers nothing.
        "3009; 3010 > drop; 3259; 3260 > connect; 3300 connected > release; 6300 > drop; 6300 "
        "lost; 6550 > connect; 9550 > drop; 10000 > failed",
        // A connection lost after the release asks first, one before its answer releases again.
        "20 accepted > ask; 21 lost; 271 > connect; 272 connected > ask; 273 TX; 273 > release",
        "20 lost; 270 > connect; 272 connected > release",
        // The end comes before it is seen a second time.
        "20 accepted > ask; 30 TX; 260 > release; 300 accepted > ask; 9900 RX; 10000 > done"}},
      // Was keyed just before: that comes late, never, or cannot be told.
      {late,
       {"20 accepted > ask; 25 RX; 625 > ask; 630 RX; 999; 1000 > ask; 1010 RX > done",
        "20 accepted > ask; 25 RX; 625 > ask; 630 TX; 630 > release; 631 refused > ask; 632 TX; "
        "10629 > release; 10630 > failed",
        "20 accepted > ask; 30 tells nothing; 609; 610 > release; 620 accepted > ask; 625 tells "
        "nothing; 999; 1000 > release; 1010 accepted > ask; 1020 tells nothing > done"}},
      {silent, {"20 accepted > done"}},
      {mute, {"20 left > done"}}};
  for (const auto& [peer, all] : stories) {
    for (const std::string& steps : all) {
      FollowUp followUp(kBegin, peer, {});
      Play("0 > connect; 10 connected > release; " + steps,
           [&](auto& step, auto& ordered) { return Happens(followUp, step, ordered); });
    }
  }
}

// "silence release1 finished"
std::string TextOf(const Holdings::Orders& orders, const Holdings& holdings) {
  std::string text = orders.tellSilence ? " silence" : "";
  const auto add = [&text](const std::string& word, const std::vector<uint32_t>& tickets) {
    for (const uint32_t ticket : tickets) text += " " + word + std::to_string(ticket);
  };
  add("done", orders.done);
  add("failed", orders.failed);
  add("drop", orders.drop);
  add("release", orders.release);
  if (holdings.Finished()) text += " finished";
  return text.substr(text.empty() ? 0 : 1);
}

// "hold 1 rig", "forget 1", "follow 1", "beat", "" (time), "end", "released 1", "gave-up 1".
std::string Happens(Holdings& holdings, const std::string& step, const std::string& ordered) {
  std::istringstream words(step);
  std::string word, transmitter;
  int ms = 0;
  uint32_t ticket = 0;
  words >> ms >> word >> ticket >> transmitter;
  const SteadyTime now = kBegin + Milliseconds(ms);
  Holdings::Orders orders;
  if (word.empty()) {
    EXPECT_EQ(holdings.Due().value_or(SteadyTime::max()) <= now, !ordered.empty());
    orders = holdings.Tick(now);
  }
  if (word == "end") orders = holdings.Ended();
  const bool released = word == "released";
  if (released || word == "gave-up") orders = holdings.FollowedUp(ticket, released);
  if (word == "hold") orders = holdings.Hold(now, ticket, transmitter);
  if (word == "forget") orders = holdings.Forget(ticket);
  if (word == "follow") orders = holdings.Follow(ticket);
  const bool heard = word == "hold" || word == "forget" || word == "follow" || word == "beat";
  if (heard) std::ranges::copy(holdings.Heard(now).drop, std::back_inserter(orders.drop));
  return TextOf(orders, holdings);
}

TEST(Holdings, AreReleasedWhenTheProgramCannot) {
  const std::string silence = "0 hold 1 rig; 4000 beat; 8999; 9000 > silence release1; ";
  for (const std::string& steps : {
           // The end.
           "0 hold 1 rig; 0 hold 2 other; 1 end > release1 release2; 9000; 9000 released 1 > "
           "drop1; 9001 gave-up 2 > drop2 finished"s,
           // Handed over, and in vain.
           "0 hold 1 rig; 1 follow 1 > release1; 9000; 9000 released 1 > done1 drop1; 9000 end > "
           "finished"s,
           "0 hold 1 rig; 1 follow 1 > release1; 2 end; 10001 gave-up 1 > failed1 drop1 finished"s,
           // Keyed again while it is followed up.
           "0 hold 1 rig; 1 follow 1 > release1; 2 hold 2 other; 3 hold 3 rig > done1 drop1; 4 "
           "released 1; 5 end > release2 release3"s,
           // Two that want the same rig.
           "0 hold 1 rig; 0 hold 2 rig; 1 forget 1 > drop1; 2 end > release2"s,
           // What becomes of a silence.
           silence + "20000; 20000 released 1 > drop1; 20001 hold 2 rig; 25000; 25001 > silence "
                     "release2",
           silence + "9001 hold 2 rig > drop1",
           silence + "9500 end; 9600 released 1 > drop1 finished",
           silence + "19000 gave-up 1; 60000; 60000 end > release1; 70000 gave-up 1 > drop1 "
                     "finished",
           silence + "19000 gave-up 1; 60000 beat > drop1; 70000 end > finished",
           silence + "19000 gave-up 1; 60000 follow 1 > release1; 60001 released 1 > done1 drop1",
       }) {
    Holdings holdings(Milliseconds(5000));
    Play(steps, [&](auto& step, auto& ordered) { return Happens(holdings, step, ordered); });
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
  const GuardianMessage read = Decode(bytes).value();
  EXPECT_TRUE(read.kind == hold.kind && read.ticket == hold.ticket);
  EXPECT_EQ(FieldsOf(read.recipe), FieldsOf(hold.recipe));
  for (size_t size = 0; size < bytes.size(); ++size) EXPECT_FALSE(Decode(bytes.substr(0, size)));
  EXPECT_FALSE(Decode(bytes + '\0'));
  const std::string noMore = bytes.substr(1, 4);
  EXPECT_TRUE(Decode('\2' + noMore) && Decode('\x9' + noMore));
  for (const char kind : {'\0', '\1', '\5', '\xa', '\xff'}) EXPECT_FALSE(Decode(kind + noMore));
  hold.recipe.ask.assign(70000, 'x');
  EXPECT_TRUE(Encode(hold).empty());
}

TEST(AnswerReader, UnderstandsAnswersHoweverTheyAreSplit) {
  const ReleaseRecipe recipe = RigRecipe(1);
  // Of each answer: whether it accepts, and what it tells.
  using Row = std::pair<std::string, std::string>;
  for (const auto& [bytes, expected] :
       {Row{"set_ptt: 0\nRPRT 0\n", "+- "}, Row{"get_ptt:\r\nPTT: 0\r\nRPRT 0\r\n", "+R "},
        Row{"get_ptt:\nPTT: 1\nRPRT 0\nRPRT -11\n", "+T -- "}, Row{"PTT: 01\nRPRT -5\n", "-T "},
        Row{"PTT: 0\nRPRT 0", ""}, Row{"xPTT: 0\n RPRT 0\nRPRT 00\n", "-- "},
        Row{std::string(1000000, 'R') + "\nPTT: 0\nRPRT 0\n", "+R "}}) {
    AnswerReader reader(recipe);
    std::string understood;
    for (size_t i = 0; i < bytes.size(); i += 7) {
      const auto answer = reader.Read(std::string_view(bytes).substr(i, 7));
      if (!answer) continue;
      understood += {answer->accepted ? '+' : '-', "-RT"[static_cast<int>(answer->told)], ' '};
    }
    EXPECT_EQ(understood, expected) << bytes.substr(0, 80);
  }
}

}  // namespace
}  // namespace velt
