#include <gtest/gtest.h>

#include "support/doubles.h"

namespace velt {
namespace {

TEST(MessageLine, BlinksFourTimesAndLeavesTheRecordingText) {
  ProgramFixture f;
  f.program->messages.recFileName = "a.wav";
  f.program->messages.Show("Updating VFO...");
  std::string seen;
  for (int tick = 0; tick < 8; ++tick) {
    if (tick == 3) f.program->messages.Show("Another one");  // takes the remaining ticks
    f.scheduler.Advance(Milliseconds(250));
    seen += f.Form().lblMessage.visible ? '1' : '0';
  }
  EXPECT_EQ(seen, "10101010");
  EXPECT_EQ(f.Form().lblMessage.caption.Get(), "recording ''a.wav...");
  EXPECT_FALSE(f.Form().Timer2.enabled);
}

TEST(Notices, TheTransmitterComesFirstAndDismissingShowsTheNext) {
  ProgramFixture f;
  NoticeLabel& label = f.Form().lblNotice;
  f.program->notices.Raise(NoticeKind::Sound, "sound");
  f.program->notices.Raise(NoticeKind::Transmitter, "keyed");
  f.program->notices.Raise(NoticeKind::Sound, "sound again");
  f.program->notices.Raise(NoticeKind::Transmission, "ended");
  EXPECT_TRUE(label.caption.Get() == "keyed" && label.urgent);
  label.Click();
  EXPECT_FALSE(label.urgent);
  f.program->notices.Over(NoticeKind::Transmission);
  EXPECT_TRUE(label.caption.Get() == "sound again" && label.visible);
  f.program->notices.Over(NoticeKind::Sound);
  EXPECT_FALSE(label.visible);
}

}  // namespace
}  // namespace velt
