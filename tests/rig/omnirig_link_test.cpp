#include "rig_fixture.h"

namespace velt {
namespace {

using OmniRigLinkTest = RigFixture;

struct SilentRunTest : RigFixture {
  SilentRunTest() : RigFixture(OmniRigLink::Questions::Never) {}
};

TEST_F(OmniRigLinkTest, OnlyVersionsInsideTheGateStart) {
  for (const auto& [version, accepted] :
       {std::pair{0x100, false}, {0x101, true}, {0x299, true}, {0x29A, false}}) {
    server.version = version;
    rig.link.StartOmniRig();
    EXPECT_EQ(rig.current.Exists(), false);  // the answer comes later
    clock.RunPosted();
    EXPECT_EQ(rig.link.Started(), accepted) << version;
    EXPECT_EQ(rig.link.On(), accepted) << version;
    EXPECT_EQ(rig.state.omniRigActive, accepted) << version;
    EXPECT_EQ(rig.current.Exists(), accepted) << version;
    rig.link.StopOmniRig();
    EXPECT_FALSE(rig.current.Exists());
  }
  EXPECT_EQ(prompts.asked.size(), 1U);  // two failures, one question
}

TEST_F(OmniRigLinkTest, AServerOutOfReachAsksOnceAndStartsWhenItAnswers) {
  int started = 0;
  int failed = 0;
  rig.link.started = [&] { ++started; };
  rig.link.failed = [&] { ++failed; };
  server.reachable = {false, false};
  form.lblFrequency.caption = "1.00";
  Link();
  EXPECT_EQ(failed, 1);
  EXPECT_EQ(Frequency(), "RigOffLine");
  ASSERT_EQ(prompts.asked.size(), 1U);
  EXPECT_EQ(prompts.asked[0].title, "OmniRig not Configured for CAT");
  EXPECT_EQ(prompts.asked[0].text,
            "OmniRig is not yet configured (or incompatible version number).\n"
            "Do you want to configure OmniRig now?");
  EXPECT_EQ(prompts.asked[0].icon, BoxIcon::Information);
  prompts.answer(false);
  EXPECT_FALSE(dialogForm.Window.visible);
  prompts.answer(true);
  EXPECT_TRUE(dialogForm.Window.visible);
  EXPECT_EQ(dialogForm.lblLink.caption.Get(), "Stale values, reconnecting in 4 s");

  server.Return(2);  // not the one to start with
  clock.RunPosted();
  EXPECT_EQ(started, 0);
  server.Return(1);
  clock.RunPosted();
  EXPECT_EQ(started, 1);
  EXPECT_TRUE(rig.state.omniRigActive);
  EXPECT_EQ(Frequency(), "7.100.00");
  EXPECT_EQ(form.lblFrequency.toolTip.Get(),
            "Transceiver Frequency. Click to set TRX. RIG STATUS: On-line");
}

TEST_F(SilentRunTest, WithoutAUserNothingIsAsked) {
  server.reachable = {false, false};
  Link();
  EXPECT_TRUE(prompts.asked.empty());
  EXPECT_EQ(Frequency(), "RigOffLine");
}

TEST_F(OmniRigLinkTest, EventsOfTheOtherRigChangeNothing) {
  Link();
  rig2.status = "other";
  rig2.shown.mode = PM_FM;
  server.RaiseStatus(2);
  server.RaiseParams(2);
  clock.RunPosted();
  EXPECT_EQ(form.lblMode.caption.Get(), "LSB");
  rig1.shown.mode = PM_AM;
  rig1.status = "busy";
  rig.link.SelectRig(3);
  EXPECT_EQ(rig.state.rigNumber, 3);
  EXPECT_EQ(form.lblMode.caption.Get(), "AM");  // still rig 1's object
  rig1.shown.mode = PM_FM;
  for (const int number : {1, 2}) {
    server.RaiseParams(number);
    server.RaiseStatus(number);
  }
  clock.RunPosted();
  EXPECT_EQ(form.lblMode.caption.Get(), "AM");
  EXPECT_EQ(WritesAfter([this] { rig.control.SetTRXFrequency(7000000); }), Texts{"Freq 7000000"});
  rig.link.SelectRig(2);
  clock.RunPosted();
  EXPECT_EQ(Frequency(), "14.250.00");
}

TEST_F(OmniRigLinkTest, TheRigToStartWithIsTwoOrElseOne) {
  for (const auto& [choice, number] : {std::pair{2, 2}, {1, 1}, {0, 1}, {7, 1}}) {
    rig.state.rigChoice = static_cast<int16_t>(choice);
    Link();
    EXPECT_EQ(rig.current.Number(), number) << choice;
    rig.link.StopOmniRig();
  }
}

TEST_F(OmniRigLinkTest, ALostLinkKeepsTheLastValuesAsStale) {
  Link();
  server.Lose(1);
  clock.RunPosted();
  EXPECT_EQ(Frequency(), "7.100.00");
  for (const RigLabel* label :
       {&form.lblFrequency, &form.lblFrequencyExpand, &form.lblMode, &form.lblTRXMode}) {
    EXPECT_TRUE(label->stale);
  }
  EXPECT_EQ(form.lblFrequency.toolTip.Get(),
            "Transceiver Frequency. Click to set TRX. RIG STATUS: Rig is not responding");
  rig1.shown.rx = 7200000;
  server.Return(1);
  clock.RunPosted();
  EXPECT_EQ(Frequency(), "7.200.00");
  EXPECT_FALSE(form.lblFrequency.stale);
}

TEST_F(OmniRigLinkTest, AnotherRigChosenWhileOpeningIsTheOneThatStarts) {
  int started = 0;
  rig.link.started = [&] { ++started; };
  server.reachable = {false, true};
  rig.link.StartOmniRig();
  rig.link.ChooseRig(2);
  clock.RunPosted();
  EXPECT_TRUE(prompts.asked.empty());
  EXPECT_EQ(started, 1);
  EXPECT_EQ(rig.current.Number(), 2);
}

}  // namespace
}  // namespace velt
