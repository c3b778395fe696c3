// What of the window's looks is decided below the widgets.
#include <gtest/gtest.h>

#include "spectrum/s_meter.h"
#include "support/doubles.h"

namespace velt {
namespace {

TEST(SMeter, TwiceTheLevelIsOneUnitAndTheScaleHasTwelve) {
  // The bar is of a frame 96 pixels high.
  for (const auto& [twips, bar] :
       {std::pair{-5, 0}, {390, 0}, {3125, 24}, {200000, 72}, {400000, 80}, {2147483647, 96}}) {
    EXPECT_EQ(SMeterBar(twips, 96), bar) << twips;
  }
}

TEST(Appearance, NoLevelLinesLieAcrossTheWaterfallAndThePeakOfASoundThatIsOverIsStale) {
  ProgramFixture f;
  f.Start();
  for (const bool waterfall : {true, false}) {
    f.Form().chkSpecMode.UserPick(waterfall);
    EXPECT_EQ(f.Form().Scope.horizontalGrid.Get().at(0).visible, !waterfall);
    EXPECT_TRUE(f.Form().Scope.verticalGrid.Get().at(0).visible);
  }
  f.audio.samples[0] = 10000;
  f.StartCapture();
  f.audio.Tell(AudioEvent::Kind::Lost, "Unplugged.");
  f.scheduler.RunPosted();
  EXPECT_TRUE(f.Form().lblFreqDetect.stale);
  f.audio.Tell(AudioEvent::Kind::Returned, "usb");
  f.scheduler.Advance(Milliseconds(60));
  EXPECT_FALSE(f.Form().lblFreqDetect.stale);
}

TEST(WindowScale, IsChosenInTheMenuToldAndKept) {
  for (const auto& [stored, shown] : {std::pair{"175", 175}, {"130", 100}, {"1e2", 100}}) {
    ProgramFixture f;
    f.store.Save("Window", "Scale", stored);
    f.Start();
    EXPECT_TRUE(f.Form().mnuscales[shown].checked) << stored;
    f.Form().cmdOptions.Click();
    EXPECT_TRUE(f.prompts.Choose("150 %"));
    EXPECT_TRUE(f.Form().mnuscales[150].checked && !f.Form().mnuscales[shown].checked);
    EXPECT_EQ(f.prompts.told.size(), 1U);  // that it holds from the next start
    f.Form().mnuscales[200].Click();
    f.Close();
    EXPECT_EQ(f.store.Get("Window", "Scale"), "200");
  }
}

}  // namespace
}  // namespace velt
