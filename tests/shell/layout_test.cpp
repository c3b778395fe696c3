#include <gtest/gtest.h>

#include "shell/window_places.h"
#include "support/doubles.h"

namespace velt {
namespace {

TEST(WindowLayout, NothingOverlapsOrLeavesTheWindowAtAnySize) {
  Main form;
  const std::vector<PlaceRule> rules = PlaceRules(form);
  for (int width = 333; width <= 560; ++width) {
    for (const int height : {100, 101, 130, 164}) {
      WindowGrid grid(width, height);
      for (const PlaceRule& rule : rules) rule.control->place = rule.place(grid);
      for (size_t i = 0; i + 1 < rules.size(); ++i) {  // the notice, at the end, lies over the rest
        SCOPED_TRACE(std::to_string(i) + " at " + std::to_string(width));
        const Rectangle& a = rules[i].control->place.Get();
        if (a.width == 0) continue;  // no room for it at this size
        ASSERT_TRUE(a.left >= 0 && a.top >= 0 && a.left + a.width <= width &&
                    a.top + a.height <= height && a.width > 0 && a.height > 0);
        for (size_t j = i + 1; j + 1 < rules.size(); ++j) {
          const Rectangle& b = rules[j].control->place.Get();
          ASSERT_FALSE(b.width > 0 && a.Overlaps(b)) << j;
        }
      }
      ASSERT_GE(form.Scope.place.Get().height, 35);
      ASSERT_GE(form.lblFreqDetect.place.Get().width, 60);
      ASSERT_GE(form.lblMessage.place.Get().width, 100);
      ASSERT_EQ(form.optTXRX[0].place.Get().width > 0, width >= 540);
    }
  }
}

struct WindowTest : testing::Test, ProgramFixture {
  Main& form = program->form;
  WindowTest() { Start(); }
};

TEST_F(WindowTest, SnapsToItsLimitsWhileTheSizeIsRememberedAndIsLaidOutOnceItIsUp) {
  WindowFrame& window = form.Window;
  struct Row {
    bool remembered, panel;
    WindowSize wanted, taken;
  };
  for (const Row& row : {Row{false, false, {9000, 2460}, {9000, 2460}},
                         {true, false, {9000, 2460}, {8385, 2460}},
                         {true, false, {8385, 3000}, {8385, 2460}},
                         {true, true, {14000, 2460}, {13140, 2460}},
                         {true, false, {13140, 2460}, {8385, 2460}},
                         {true, false, {4000, 1499}, {5000, 1500}},
                         {false, false, {9000, 1499}, {9000, 1499}}}) {
    if (form.mnusettings[3].checked != row.remembered) form.mnusettings[3].Click();
    EXPECT_EQ(window.sizeable, row.remembered);
    window.panelShown = row.panel;
    window.widthTwips = row.wanted.width;
    window.heightTwips = row.wanted.height;
    EXPECT_EQ(window.widthTwips, row.taken.width);
    EXPECT_EQ(window.heightTwips, row.taken.height);
  }
  const int before = form.Scope.scaleWidth;
  window.minimised = true;
  window.widthTwips = 6000;
  EXPECT_EQ(form.Scope.scaleWidth, before);
  window.minimised = false;
  EXPECT_EQ(form.Scope.scaleWidth, before - 200);
}

TEST_F(WindowTest, ScaleLabelsFollowTheMode) {
  struct Case {
    int32_t mode;
    bool absolute;
    const char *first, *last;
  };
  for (const Case& c : {Case{0, true, "0kHz", "22kHz"},
                        {0, false, "0kHz", "22kHz"},
                        {1, true, "0kHz", "22kHz"},
                        {1, false, "-12kHz", "10kHz"},
                        {69, true, "-6kc", "5kc"}}) {
    form.mnusettings[4].checked = c.absolute;
    form.mnuzokamodes[c.mode].Click();
    EXPECT_EQ(form.lblScales[0].caption.Get(), c.first);
    EXPECT_EQ(form.lblScales[11].caption.Get(), c.last);
    EXPECT_EQ(form.Scope.markers.Get()[0].visible, c.mode != 0);
  }
  const Rectangle strip = form.picScales.place;
  EXPECT_EQ(form.lblScales[4].place.Get().left, strip.left + 4 * (strip.width / 11));
  EXPECT_EQ(form.Scope.verticalGrid.Get()[5].x1, form.Scope.scaleWidth / 2);
}

TEST_F(WindowTest, APopupStopsCaptureAndLetsItGoOnAfterTheChosenItem) {
  StartCapture();
  bool runningDuringChoice = true;
  int focused = 0;
  connections +=
      form.mnuzokamodes[1].clicked.Listen([&] { runningDuringChoice = !form.StartButton.enabled; });
  connections += form.Scope.focusWanted.Listen([&] { ++focused; });
  form.cmdOptions.Click();
  EXPECT_FALSE(audio.open);
  form.Image2.Click();  // a second pop-up while one is open
  prompts.Choose("Full Spectrum");
  scheduler.RunPosted();
  EXPECT_FALSE(runningDuringChoice);
  EXPECT_TRUE(form.mnuzokamodes[1].checked);
  EXPECT_TRUE(audio.open);
  EXPECT_EQ(focused, 1);
  for (const int side : {0, 1}) form.optTXRX[side].UserPress(1);
  EXPECT_EQ(focused, 3);
}

TEST_F(WindowTest, EachLineOfTheMenusReachesWhatItNames) {
  Reachable(true);
  scheduler.RunPosted();
  form.lblMode.enabled = form.mnuArduinoFreq.enabled = true;
  const auto dialogOpens = [this] {
    const bool opened = program->catForm.Window.visible;
    program->rig.dialog.Close();
    return opened;
  };
  struct Row {
    const Event<>& opener;
    std::string line;
    std::function<bool()> reached;
  };
  for (const Row& row : {Row{form.cmdOptions.clicked, form.mnunorig.caption, dialogOpens},
                         {form.cmdOptions.clicked, form.mnuOmniRigStatus.caption, dialogOpens},
                         {form.cmdOptions.clicked, form.mnuArduinoFreq.caption,
                          [&] { return form.mnuArduinoFreq.checked.Get(); }},
                         {form.cmdOptions.clicked, form.mnusettings[2].caption,
                          [&] { return program->display.options.analysis.oscillosMode; }},
                         {form.cmdOptions.clicked, form.mnuexit.caption, [] { return true; }},
                         {form.lblFrequency.clicked, "12m",
                          [&] { return form.lblFrequency.caption.Get() == "24.900.00"; }},
                         {form.lblMode.clicked, "LSB",
                          [&] { return prompts.popup.at(1).checked && rig1.Mode() == PM_SSB_L; }},
                         {form.lblTRXMode.clicked, "&TX", [&] { return rig1.Transmits(); }},
                         {form.lblTRXMode.clicked, "&RX", [&] { return !rig1.Transmits(); }}}) {
    row.opener.Raise();
    EXPECT_TRUE(prompts.Choose(row.line)) << row.line;
    scheduler.RunPosted();
    EXPECT_TRUE(row.reached()) << row.line;
  }
}

}  // namespace
}  // namespace velt
