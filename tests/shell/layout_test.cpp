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
        const Rectangle& a = rules[i].control->place.Get();
        if (a.width == 0) continue;  // no room for it at this size
        ASSERT_TRUE(a.left >= 0 && a.top >= 0 && a.left + a.width <= width &&
                    a.top + a.height <= height && a.width > 0 && a.height > 0)
            << i << " at " << width << "x" << height;
        for (size_t j = i + 1; j + 1 < rules.size(); ++j) {
          const Rectangle& b = rules[j].control->place.Get();
          ASSERT_FALSE(b.width > 0 && a.Overlaps(b))
              << i << " and " << j << " at " << width << "x" << height;
        }
      }
      ASSERT_GE(form.Scope.place.Get().height, 35);
      ASSERT_GE(form.lblFreqDetect.place.Get().width, 60);
      ASSERT_GE(form.lblMessage.place.Get().width, 100);
      ASSERT_EQ(form.optTXRX[0].place.Get().width > 0, width >= 540);
    }
  }
}

TEST(WindowLayout, SnapsToItsLimitsOnlyWhileTheSizeIsRemembered) {
  ProgramFixture f;
  f.Start();
  WindowFrame& window = f.Form().Window;
  window.widthTwips = 9000;
  EXPECT_EQ(window.widthTwips, 9000);
  f.Form().mnusettings[3].Click();
  EXPECT_TRUE(window.sizeable);
  EXPECT_EQ(window.widthTwips, 8385);
  window.widthTwips = 9000;
  window.heightTwips = 3000;
  EXPECT_EQ(window.widthTwips, 8385);
  EXPECT_EQ(window.heightTwips, 2460);
  window.panelShown = true;
  window.widthTwips = 14000;
  EXPECT_EQ(window.widthTwips, 13140);
  window.panelShown = false;
  EXPECT_EQ(window.widthTwips, 8385);
  window.widthTwips = 4000;
  window.heightTwips = 1499;
  EXPECT_EQ(window.widthTwips, 5000);
  EXPECT_EQ(window.heightTwips, 1500);
  f.Form().mnusettings[3].Click();
  EXPECT_FALSE(window.sizeable);
}

TEST(WindowLayout, AMinimisedWindowIsLaidOutWhenItIsRestored) {
  ProgramFixture f;
  f.Start();
  WindowFrame& window = f.Form().Window;
  window.minimised = true;
  window.widthTwips = 6000;
  const int before = f.Form().Scope.scaleWidth;
  window.minimised = false;
  EXPECT_EQ(f.Form().Scope.scaleWidth, before - (8385 - 6000) / 15);
}

TEST(WindowLayout, ScaleLabelsFollowTheMode) {
  struct Case {
    int32_t mode;
    bool absolute;
    const char* first;
    const char* last;
  };
  const Case cases[] = {{0, true, "0kHz", "22kHz"},
                        {0, false, "0kHz", "22kHz"},
                        {1, true, "0kHz", "22kHz"},
                        {1, false, "-12kHz", "10kHz"},
                        {69, true, "-6kc", "5kc"}};
  for (const Case& c : cases) {
    ProgramFixture f;
    f.Start();
    Main& form = f.Form();
    if (!c.absolute) form.mnusettings[4].Click();
    form.mnuzokamodes[c.mode].Click();
    EXPECT_EQ(form.lblScales[0].caption.Get(), c.first);
    EXPECT_EQ(form.lblScales[11].caption.Get(), c.last);
    const int step = form.picScales.place.Get().width / 11;
    EXPECT_EQ(form.lblScales[4].place.Get().left, form.picScales.place.Get().left + 4 * step);
    EXPECT_EQ(form.Scope.markers.Get()[0].visible, c.mode != 0);
    EXPECT_EQ(form.Scope.verticalGrid.Get()[5].x1, form.Scope.scaleWidth / 2);
  }
}

TEST(Menus, APopupStopsCaptureAndLetsItGoOnAfterTheChosenItem) {
  ProgramFixture f;
  f.Start();
  f.StartCapture();
  bool runningDuringChoice = true;
  int focused = 0;
  Connections connections;
  connections += f.Form().mnuzokamodes[1].clicked.Listen(
      [&] { runningDuringChoice = !f.Form().StartButton.enabled; });
  connections += f.Form().Scope.focusWanted.Listen([&] { ++focused; });
  f.Form().cmdOptions.Click();
  EXPECT_FALSE(f.audio.open);
  f.Form().Image2.Click();  // a second pop-up while one is open
  f.prompts.Choose("Full Spectrum");
  f.scheduler.RunPosted();
  EXPECT_FALSE(runningDuringChoice);
  EXPECT_TRUE(f.Form().mnuzokamodes[1].checked);
  EXPECT_TRUE(f.audio.open);
  EXPECT_EQ(focused, 1);
  EXPECT_EQ(f.audio.opened, 2);
  for (const int side : {0, 1}) f.Form().optTXRX[side].UserPress(1);
  EXPECT_EQ(focused, 3);
}

TEST(Menus, EachLineReachesWhatItNames) {
  ProgramFixture f;
  f.Reachable(true);
  f.Start();
  Main& form = f.Form();
  form.lblMode.enabled = form.mnuArduinoFreq.enabled = true;
  const auto dialogOpens = [&f] {
    const bool opened = f.program->catForm.Window.visible;
    f.program->rig.dialog.Close();
    return opened;
  };
  struct Row {
    const Event<>& opener;
    std::string line;
    std::function<bool()> reached;
  };
  for (const Row& row :
       {Row{form.cmdOptions.clicked, form.mnunorig.caption, dialogOpens},
        {form.cmdOptions.clicked, form.mnuOmniRigStatus.caption, dialogOpens},
        {form.cmdOptions.clicked, form.mnuArduinoFreq.caption,
         [&] { return form.mnuArduinoFreq.checked.Get(); }},
        {form.cmdOptions.clicked, form.mnusettings[2].caption,
         [&] { return f.program->display.options.analysis.oscillosMode; }},
        {form.cmdOptions.clicked, form.mnuexit.caption, [] { return true; }},
        {form.lblMode.clicked, "LSB",
         [&] { return f.prompts.popup.at(1).checked && f.rig1.Mode() == PM_SSB_L; }},
        {form.lblTRXMode.clicked, "&TX", [&] { return f.rig1.Transmits(); }},
        {form.lblTRXMode.clicked, "&RX", [&] { return !f.rig1.Transmits(); }}}) {
    row.opener.Raise();
    EXPECT_TRUE(f.prompts.Choose(row.line)) << row.line;
    f.scheduler.RunPosted();
    EXPECT_TRUE(row.reached()) << row.line;
  }
}

}  // namespace
}  // namespace velt
