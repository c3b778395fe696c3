#include "display/color_dialog.h"

#include <gtest/gtest.h>

#include <numeric>

#include "support/doubles.h"

namespace velt {
namespace {

struct ColorDialogTest : testing::Test, ProgramFixture {
  Main& main = program->form;
  ColorsForm& form = program->colorsForm;

  ColorDialogTest() {
    Start();
    Open();
  }
  void Open() { main.mnueditcolorshemes.Click(); }
  // What the display shows is the background and the spectrum's trace.
  bool Shows(uint32_t background, uint32_t trace) const {
    const Raster& shown = program->display.tick.Shown();
    return main.Scope.backColour == background && shown.Row(0)[100] == background &&
           shown.Row(shown.Height() - 1)[100] == trace;
  }
};

TEST_F(ColorDialogTest, OnlyOKKeepsWhatIsSeenAtOnce) {
  EXPECT_EQ(Told(form.Window.forwardWanted, [&] { Open(); }), 1);
  EXPECT_FALSE(main.Window.topMost);
  std::iota(audio.samples.begin(), audio.samples.end(), int16_t{-256});
  StartCapture();
  scheduler.Advance(Milliseconds(60));
  main.imgStartStop.Click();  // what stands still follows, too
  ASSERT_TRUE(Shows(0xFF001764, 0xFF2D81FF));

  form.cmdColor[0].Click();
  EXPECT_TRUE(chooser.title == "Display background" && chooser.initial == 0xFF001764);
  chooser.pointedAt.Raise(0xFF102030);
  EXPECT_TRUE(Shows(0xFF102030, 0xFF2D81FF));
  chooser.choose(std::nullopt);
  chooser.pointedAt.Raise(0xFF102030);  // of one that is no longer asked
  EXPECT_TRUE(Shows(0xFF001764, 0xFF2D81FF));
  form.cmdColor[0].Click();
  chooser.choose(0xFF010203);
  form.cmdColor[3].Click();
  chooser.pointedAt.Raise(0xFF00FF00);
  form.cmdColor[4].Click();  // before that was chosen
  chooser.choose(0xFFAABBCC);
  EXPECT_TRUE(Shows(0xFF010203, 0xFF2D81FF));
  form.Window.closeAsked.Raise();
  EXPECT_TRUE(Shows(0xFF001764, 0xFF2D81FF) && main.Window.topMost);

  Open();
  for (const int32_t index : {0, 1, 2, 3, 4, 5}) {
    form.cmdColor[index].Click();
    chooser.choose(0xFF302010U + static_cast<uint32_t>(index));
  }
  form.cmdDefault[1].Click();
  form.cmdOK.Click();
  EXPECT_TRUE(Shows(0xFF302010, 0xFF302013));
  Open();
  form.cmdDefaults.Click();
  EXPECT_TRUE(Shows(0xFF001764, 0xFF2D81FF));
  form.cmdCancel.Click();
  EXPECT_TRUE(Shows(0xFF302010, 0xFF302013));
  Open();
  form.cmdColor[5].Click();
  chooser.pointedAt.Raise(0xFF777777);
  Close();  // the program, with all that open
  EXPECT_TRUE(chooser.title.empty() && !form.Window.visible);
  EXPECT_EQ(Stored("ScopeColor") + Stored("GridColor"), std::to_string(0x102030) + "0");
  EXPECT_EQ(Stored("BandWidthColor"), std::to_string(0x152030));
}

TEST_F(ColorDialogTest, TheDesktopsOwnColourComesAgainAndThePaletteIsAsItIsNow) {
  EXPECT_FALSE(form.cmdDefault[2].enabled || form.cmdDefaults.enabled);
  form.cmdColor[2].Click();
  EXPECT_EQ(chooser.initial, 0U);
  chooser.choose(0xFF000000);  // not to be mixed up with it
  EXPECT_EQ(form.cmdColor[2].value.Get(), "#000000");
  form.cmdDefault[2].Click();
  EXPECT_EQ(main.Window.faceColour, 0U);
  EXPECT_EQ(form.cmdColor[2].value.Get(), "Desktop's own");
  program->display.options.waterGrey = 5;
  program->display.options.InitWaterColor();
  EXPECT_EQ(form.picPalette.colours.Get().at(131), 0xFF0000FF);
}

}  // namespace
}  // namespace velt
