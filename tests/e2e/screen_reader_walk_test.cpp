// The window for somebody who does not see it: what a screen reader reads, and what is done through
// it.
#include <gtest/gtest.h>

#include <regex>

#include "adapters/rigctld/live_loop.h"
#include "e2e/window_driver.h"
#include "support/pulse_server.h"
#include "support/screen_reader.h"

namespace velt {
namespace {

using std::chrono::seconds;

TEST(ScreenReaderWalk, TheWindowIsReadAndTheRigKeyedThroughIt) {
  ScreenReader reader;
  PulseServer sound;
  DummyRig rig;
  // What is heard begins so, and is announced as that.
  const auto heardAs = [&](const char* name) {
    const auto found = reader.Find(name);
    return found ? found->role : "nothing";
  };
  const auto act = [&](const char* name) {
    const auto found = reader.Find(name);
    ASSERT_TRUE(found) << name;
    reader.Act(*found);
  };
  std::vector<std::string> environment = sound.Environment();
  for (const auto& entry : reader.Environment()) environment.push_back(entry);
  const WindowDriver window({"--rig1", rig.Address()}, environment);

  EXPECT_EQ(heardAs("VELT-SA"), "frame");
  EXPECT_TRUE(reader.Hears("Frequency 145.000.00"));
  EXPECT_TRUE(reader.Hears("Link to the rig: linked"));
  EXPECT_TRUE(reader.Hears("CAT configuration: linked"));
  EXPECT_TRUE(reader.Hears("Press \u25B6 to listen to "));
  rig.Ask("F 7074000");
  rig.Ask("M LSB 2400");
  EXPECT_EQ(heardAs("Frequency 7.074.00"), "button menu");
  EXPECT_TRUE(reader.Hears("Mode LSB"));

  const auto tone = sound.PlayTone(2000);
  act("Start or stop the spectrum");
  std::string peak;
  const auto peakIsNear = [&] {
    const auto found = reader.Find("Peak ");
    peak = found ? found->name : "nothing";
    return std::regex_match(peak, std::regex("Peak (19|20)..Hz"));
  };
  EXPECT_TRUE(WaitUntil(peakIsNear, seconds(8))) << peak;
  EXPECT_EQ(heardAs("Peak "), "push button");
  EXPECT_EQ(heardAs("Sound source: Monitor of "), "label");
  const auto meter = reader.Find("S-meter");
  ASSERT_TRUE(meter);
  EXPECT_EQ(meter->role, "progress bar");
  EXPECT_TRUE(WaitUntil([&] { return reader.Value(*meter) > 10; }, seconds(5)));
  EXPECT_EQ(heardAs("Spectrum display"), "graphic");

  const auto transmit = reader.Find("Transmit");
  ASSERT_TRUE(transmit);
  EXPECT_FALSE(reader.IsChecked(*transmit));
  reader.Act(*transmit);
  EXPECT_TRUE(rig.Has("t", "1"));
  EXPECT_TRUE(WaitUntil([&] { return reader.IsChecked(*transmit); }, seconds(5)));
  act("Receive");
  EXPECT_TRUE(rig.Has("t", "0"));

  reader.Act(*transmit);
  EXPECT_TRUE(rig.Has("t", "1"));
  rig.Kill();
  EXPECT_EQ(heardAs("Notice, click to dismiss: Link lost while transmitting."), "alert message");
  EXPECT_TRUE(reader.Hears("Frequency 7.074.00 (last known)"));
  EXPECT_TRUE(reader.Hears("Link to the rig: reconnecting"));
}

}  // namespace
}  // namespace velt
