#include <gtest/gtest.h>

#include "shell/window_places.h"
#include "support/doubles.h"

namespace velt {
namespace {

TEST(WindowLayout, NothingOverlapsOrLeavesTheWindowAtAnySize) {
  Main form;
  const std::vector<PlaceRule> rules = PlaceRules(form);
  for (int width = 333; width <= 876; ++width) {
    for (const int height : {100, 101, 130, 164}) {
      const int main = width > 560 ? width - WindowGrid::kPanelWidth : width;
      WindowGrid grid(width, height, width > 560);
      if (main < 333) continue;
      std::vector<Rectangle> placed;
      for (const PlaceRule& rule : rules) {
        SCOPED_TRACE(std::to_string(width) + " " + std::to_string(placed.size()));
        const Rectangle a = rule.place(grid);
        rule.control->place = a;
        // There may be no room for it; two lie over the display, the message over the cursor's row.
        const bool over = rule.control == &form.lblNotice || rule.control == &form.lblListen ||
                          rule.control == &form.lblMessage || rule.control == &form.picExpand;
        if (a.width == 0 || over) continue;
        ASSERT_TRUE(a.left >= 0 && a.top >= 0 && a.left + a.width <= width &&
                    a.top + a.height <= height && a.width > 0 && a.height > 0);
        for (const Rectangle& b : placed) ASSERT_FALSE(a.Overlaps(b));
        placed.push_back(a);
      }
      ASSERT_GE(form.Scope.place.Get().height, 35);
      ASSERT_EQ(form.optTXRX[0].place.Get().width > 0, main >= 555);
    }
  }
}

struct WindowTest : testing::Test, ProgramFixture {
  Main& form = program->form;
  WindowTest() { Start(); }
};

TEST_F(WindowTest, SnapsToItsLimitsWhileTheSizeIsRememberedAndIsLaidOutOnceItIsUp) {
  WindowFrame& window = form.Window;
  using Row = std::tuple<bool, bool, WindowSize, WindowSize>;
  for (const auto& [remembered, panel, wanted, taken] :
       {Row{false, false, {9000, 2460}, {9000, 2460}}, Row{true, false, {9000, 2460}, {8385, 2460}},
        Row{true, true, {14000, 2460}, {13140, 2460}}, Row{true, false, {4000, 1499}, {5000, 1500}},
        Row{false, false, {9000, 1499}, {9000, 1499}}}) {
    if (form.mnusettings[3].checked != remembered) form.mnusettings[3].Click();
    EXPECT_EQ(window.sizeable, remembered);
    window.panelShown = panel;
    window.widthTwips = wanted.width;
    window.heightTwips = wanted.height;
    EXPECT_TRUE(window.widthTwips == taken.width && window.heightTwips == taken.height);
  }
  const int before = form.Scope.scaleWidth;
  window.minimised = true;
  window.widthTwips = 6000;
  EXPECT_EQ(form.Scope.scaleWidth, before);
  window.minimised = false;
  EXPECT_EQ(form.Scope.scaleWidth, before - 200);
}

TEST_F(WindowTest, APopupStopsCaptureAndLetsItGoOnAfterTheChosenItem) {
  StartCapture();
  bool runningDuringChoice = true;
  int focused = 0;
  const Connection chosen =
      form.mnuzokamodes[1].clicked.Listen([&] { runningDuringChoice = !form.StartButton.enabled; });
  const Connection focus = form.Scope.focusWanted.Listen([&] { ++focused; });
  form.cmdOptions.Click();
  EXPECT_FALSE(audio.open);
  EXPECT_EQ(prompts.popupPlace.left, form.cmdOptions.place.Get().left);
  form.Image2.Click();  // a second pop-up while one is open
  prompts.Choose("Full Spectrum");
  scheduler.RunPosted();
  EXPECT_TRUE(audio.open && !runningDuringChoice);
  EXPECT_EQ(focused, 1);
  for (const int side : {0, 1}) form.optTXRX[side].UserPress(1);
  EXPECT_EQ(focused, 3);
}

// "Item, item = shortcut, submenu [item, item], -": the last is a separator.
std::string TextOf(const std::vector<MenuEntry>& menu) {
  std::string text;
  for (const MenuEntry& entry : menu) {
    text += text.empty() ? "" : ", ";
    text += entry.item == nullptr ? "-" : entry.item->caption.Get();
    if (!entry.shortcut.empty()) text += " = " + entry.shortcut;
    if (!entry.entries.empty()) text += " [" + TextOf(entry.entries) + "]";
  }
  return text;
}

TEST_F(WindowTest, TheMenusHoldWhatTheyAreKnownFor) {
  EXPECT_EQ(
      TextOf(program->menus.options),
      "PTT [&TX, &RX], Set TRX Frequency [160m, 80m, 40m, 30m, 20m, 17m, 15m, 12m, 10m, 6m, &Enter "
      "Frequency..., -, Setup Frequencies Presets..., Setup Rig...], -, "
      "&Automation [Run VELT Engine, Close VELT Engine, Start Spectrum Analyzer at startup, Start "
      "VELT Engine at startup], Spectrum Mode [Normal, Full Spectrum, Zoom Spectrum], Stay on "
      "&top, Spectrum Bars, &Oscilloscope, Remember Screen Size, Absolute Grid Labels, Dominant "
      "&Frequency Detection, Arduino Frequency Counter Mode, Expanded Rig Control View, "
      "&Resolution [Normal, Median, Averaging, Minimum], Edit User Colors..., Window Scale [100 %, "
      "125 %, 150 %, 175 %, 200 %], -, Calibration and Customization... = F9, -, &OmniRig "
      "Configuration && Status..., -, E&xit menu");
  EXPECT_EQ(TextOf(program->menus.file),
            "&Open & Play Recordings..., Spectrogram of a recording..., Profile Manager..., Browse "
            "BMP's..., &Save BMP... = F2, -, Copy Spectrum to Clipboard = F5, -, &Run VELT Engine "
            "= F11, &Close VELT Engine = F12, -, Run &Java Spectrum Analyzer, -, &Manual VELT-SA = "
            "F1, Manual VELT-J Engine, &About, -, Close VELT-SA ");
}

TEST_F(WindowTest, EachLineOfTheMenusReachesWhatItNames) {
  Reachable(true);
  scheduler.RunPosted();
  form.lblMode.enabled = true;
  const auto catOpens = [this] { return program->catForm.Window.visible && !form.Window.topMost; };
  using Row = std::tuple<const Event<>&, std::string, std::function<bool()>>;
  const Event<>& options = form.cmdOptions.clicked;
  for (const auto& [opener, line, reached] : {
           Row{options, form.mnunorig.caption, catOpens},
           {options, form.mnuOmniRigStatus.caption, catOpens},
           {options, form.mnuexit.caption, [] { return true; }},
           {form.lblFrequency.clicked, "12m", [&] { return rig1.Freq() == 24900000; }},
           {form.lblMode.clicked, "LSB", [&] { return rig1.Mode() == PM_SSB_L; }},
           {form.lblTRXMode.clicked, "&TX", [&] { return rig1.Transmits(); }},
           {form.lblTRXMode.clicked, "&RX", [&] { return !rig1.Transmits(); }},
       }) {
    opener.Raise();
    EXPECT_TRUE(prompts.Choose(line)) << line;
    scheduler.RunPosted();
    EXPECT_TRUE(reached()) << line;
    program->rig.dialog.Close();
    EXPECT_TRUE(form.Window.topMost);
  }
}

}  // namespace
}  // namespace velt
