#include "rig_fixture.h"

namespace velt {
namespace {

using OmniRigDialogTest = RigFixture;

TEST_F(OmniRigDialogTest, ItStartsAndStopsTheOneLink) {
  form.Image3.Click();
  ASSERT_TRUE(dialogForm.Window.visible);
  EXPECT_EQ(dialogForm.lblLink.caption.Get(), "Stopped");
  rig1.shown = {.freq = 1, .freqA = 2, .freqB = 3, .rx = 4, .txOverride = {}, .mode = PM_FM};
  dialogForm.cmdStartStop.Click();
  EXPECT_EQ(dialogForm.cmdStartStop.caption.Get(), "Stop");
  EXPECT_EQ(dialogForm.lblLink.caption.Get(), "Connecting");
  clock.RunPosted();
  EXPECT_EQ(dialogForm.lblLink.caption.Get(), "Linked");
  EXPECT_EQ(dialogForm.Label8.caption.Get(), "On-line");
  EXPECT_EQ(dialogForm.Label3.caption.Get(), "1");
  EXPECT_EQ(dialogForm.Label4.caption.Get(), "2");
  EXPECT_EQ(dialogForm.Label10.caption.Get(), "3");
  server.Lose(1);
  clock.RunPosted();
  rig1.link.retryInSeconds = 3;  // a countdown is no event
  clock.Advance(Milliseconds(500));
  EXPECT_EQ(dialogForm.lblLink.caption.Get(), "Stale values, reconnecting in 3 s");
  EXPECT_FALSE(dialogForm.Combo1.enabled);
  EXPECT_EQ(LinkText({RigLink::State::Silent, 0, false}), "Rig is silent");
  dialogForm.cmdStartStop.Click();
  EXPECT_EQ(dialogForm.cmdStartStop.caption.Get(), "Start");
  EXPECT_EQ(rig1.link.state, RigLink::State::Off);
}

TEST_F(OmniRigDialogTest, AServerThatIsNotThereIsTold) {
  server.reachable = {false, false};
  rig.dialog.Open();
  dialogForm.cmdStartStop.Click();
  clock.RunPosted();
  EXPECT_EQ(prompts.told, Texts{"OmniRig is not installed or has a wrong version number"});
  EXPECT_TRUE(prompts.asked.empty());
  EXPECT_EQ(dialogForm.cmdStartStop.caption.Get(), "Stop");  // it is tried on
}

TEST_F(OmniRigDialogTest, RigAndVfoHoldForTheMainWindowAtOnce) {
  Link();
  int changes = 0;
  rig.dialog.settingsChanged = [&] { ++changes; };
  rig.state.vfo = 3;
  rig.dialog.Open();
  EXPECT_TRUE(dialogForm.optVFO[3].value);
  EXPECT_TRUE(dialogForm.Option1.value);
  EXPECT_EQ(changes, 0);
  dialogForm.Option2.UserPick();
  clock.RunPosted();
  EXPECT_FALSE(dialogForm.Option1.value);
  EXPECT_EQ(rig.state.rigChoice, 2);
  EXPECT_EQ(Frequency(), "14.250.00");
  EXPECT_EQ(dialogForm.Label3.caption.Get(), "14250000");
  dialogForm.optVFO[1].UserPick();
  EXPECT_FALSE(dialogForm.optVFO[3].value);
  EXPECT_EQ(rig.state.vfo, 1);
  EXPECT_EQ(changes, 2);
  dialogForm.Option1.UserPick();
  EXPECT_EQ(Frequency(), "7.100.00");
}

TEST_F(OmniRigDialogTest, TheModeListSetsTheRig) {
  Link();
  const std::vector<int32_t> modes = {PM_SSB_L, PM_SSB_U, PM_CW_U, PM_AM, PM_FM};
  for (int index = 0; index < 5; ++index) {
    const std::string sent = "Mode " + std::to_string(modes[static_cast<size_t>(index)]);
    for (int again = 0; again < 2; ++again) {
      EXPECT_EQ(WritesAfter([&] { dialogForm.Combo1.UserPick(index); }), Texts{sent});
    }
  }
}

TEST_F(OmniRigDialogTest, ABadAddressOrLimitLosesNothing) {
  rig.dialog.Open();
  dialogForm.txtAddress1.UserText("radio.local:4532");
  dialogForm.txtAddress2.UserText("nonsense");
  EXPECT_TRUE(dialogForm.cmdApplyAddresses.enabled);
  dialogForm.Command1.Click();
  EXPECT_TRUE(dialogForm.Window.visible);
  EXPECT_EQ(server.Address(1), "radio.local:4532");
  EXPECT_EQ(server.Address(2), "127.0.0.1:4534");
  EXPECT_EQ(dialogForm.txtAddress2.text.Get(), "nonsense");
  EXPECT_EQ(dialogForm.lblAddressMessage.caption.Get(),
            "Rig 2: \"nonsense\" is no address. Use HOST:PORT, for example 127.0.0.1:4532");
  dialogForm.txtAddress2.UserText(" 10.0.0.2:4534 ");
  EXPECT_EQ(dialogForm.lblAddressMessage.caption.Get(), "");
  dialogForm.Command1.Click();
  EXPECT_EQ(server.Address(2), "10.0.0.2:4534");
  EXPECT_FALSE(dialogForm.Window.visible);

  rig.dialog.Open();
  for (const auto& [typed, minutes] :
       {std::pair{"0", 10}, {"1", 1}, {"60", 60}, {"61", 60}, {"", 60}, {"5.5", 60}, {" 7 ", 7}}) {
    dialogForm.txtLimit.UserText(typed);
    EXPECT_EQ(rig.guard.LimitMinutes(), minutes) << typed;
    EXPECT_EQ(dialogForm.lblLimitMessage.caption.Get().empty(), minutes == std::atoi(typed))
        << typed;
  }
}

}  // namespace
}  // namespace velt
