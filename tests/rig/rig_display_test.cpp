#include "rig_fixture.h"

namespace velt {
namespace {

using RigDisplayTest = RigFixture;

TEST_F(RigDisplayTest, FrequencyAndTransmitStateFollowTheRig) {
  Link();
  struct Case {
    int32_t rx, tx;
    int16_t offsetKHz;
    const char* shown;
    const char* trx;
    int32_t real, anchor;
  };
  for (const Case& c : {Case{7100000, 0, 0, "7.100.00", "RX", 7100000, 7100005},
                        {14250000, 2, 0, "14.250.00", "RX", 14250000, 14250005},
                        {14250000, 3, 0, "..", "TX", 3, 8},
                        {7100000, 7105000, 2, "7.107.00", "TX", 7105000, 7107005},
                        {7100000, 0, 33, "7.067.46", "RX", 7100000, 7067469},
                        {475000, 0, 0, ".475.00", "RX", 475000, 475005},
                        {0, 0, 2, "RigOffLine", "RX", 0, 2005},
                        {0, 1, 0, "..", "RX", 0, 5}}) {
    rig.engine.scaleOffset = 5;
    rig.state.offsetKHz = c.offsetKHz;
    rig1.shown.rx = c.rx;
    rig1.shown.txOverride = c.tx;
    rig.display.ShowRigParams();
    EXPECT_EQ(Frequency(), c.shown);
    EXPECT_EQ(form.lblFrequencyExpand.caption.Get(), c.shown);
    EXPECT_EQ(form.lblTRXMode.caption.Get(), c.trx) << c.shown;
    EXPECT_EQ(rig.state.RealRigFrequency, c.real) << c.shown;
    EXPECT_EQ(rig.state.scaleAnchorHz, c.anchor) << c.shown;
    EXPECT_EQ(statusWrites.back(), c.real) << c.shown;
    const bool offLine = Frequency() == "RigOffLine";
    EXPECT_EQ(form.lblTRXMode.enabled, !offLine);
    EXPECT_EQ(form.mnunorig.checked, offLine);
  }
}

TEST_F(RigDisplayTest, LockedToTheTransceiverTheTransmitterFollowsTheLabel) {
  Link();
  rig.state.offsetKHz = 2;
  rig.engine.transmitterModeLine = "Lock_To_TXCR";
  rig1.shown.txOverride = 7098000;
  form.lblFrequency.caption = "7.100.00";
  EXPECT_EQ(WritesAfter([this] {
              rig.display.ShowRigParams();
              EXPECT_EQ(Frequency(), "7.098.00");  // without the offset
              rig1.changed = [] {};
            }),
            Texts{"Freq 7100000"});
  EXPECT_EQ(WritesAfter([this] { rig.display.ShowRigParams(); }), Texts{});
  rig.state.offsetKHz = 0;
  form.lblFrequency.caption = "7.200.00";
  EXPECT_EQ(WritesAfter([this] { rig.display.ShowRigParams(); }), Texts{});
  rig.state.offsetKHz = 2;
  rig.engine.transmitterModeLine = "off";
  rig.display.ShowRigParams();
  EXPECT_EQ(Frequency(), "7.100.00");
}

TEST_F(RigDisplayTest, TheCounterAloneWritesTheStatusWhileItRuns) {
  Link();
  statusWrites.clear();
  form.tmrFreqcount.enabled = true;
  rig.display.ShowRigParams();
  EXPECT_TRUE(statusWrites.empty());
}

TEST_F(RigDisplayTest, WindowAndDialogNameModesTheirOwnWay) {
  Link();
  rig.engine.modeText = "drm";
  rig.dialog.Open();
  struct Case {
    int32_t mode;
    const char* window;
    const char* dialog;
  };
  for (const Case& c : {Case{PM_AM, "AM", "AM"},
                        {PM_FM, "FM", "FM"},
                        {PM_SSB_L, "LSB", "LSB"},
                        {PM_SSB_U, "USB", "USB"},
                        {PM_CW_U, "CWu", "CW LSB"},
                        {PM_CW_L, "CWl", "CW USB"},
                        {PM_DIG_U, "drm", "Other"},
                        {0, "drm", ""}}) {
    rig1.shown.mode = c.mode;
    server.RaiseParams(1);
    clock.RunPosted();
    EXPECT_EQ(form.lblMode.caption.Get(), c.window);
    EXPECT_EQ(dialogForm.Label6.caption.Get(), c.dialog);
  }
}

}  // namespace
}  // namespace velt
