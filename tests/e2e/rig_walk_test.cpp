// The rig through a real CAT server, in a real window.
#include <gtest/gtest.h>

#include "adapters/rigctld/live_loop.h"
#include "e2e/surroundings.h"
#include "e2e/window_driver.h"

namespace velt {
namespace {

using std::chrono::seconds;

struct RigWalk : testing::Test {
  Surroundings around;
  DummyRig rig;

  std::unique_ptr<WindowDriver> Start() {
    return std::make_unique<WindowDriver>(std::vector<std::string>{"--rig1", rig.Address()},
                                          around.Environment());
  }
  static bool Shows(const WindowDriver& window, const Rectangle& place, int pixelSize,
                    const std::string& text) {
    return WaitUntil(
        [&] { return window.ReadLabel(place, pixelSize, Qt::AlignCenter, {text}) == text; },
        seconds(5));
  }
  static bool ShowsFrequency(const WindowDriver& window, const std::string& text) {
    return Shows(window, window.form.lblFrequency.place, 21, text);
  }
  bool Has(const std::string& command, const std::string& answer) {
    return WaitUntil([&] { return rig.Ask(command) == answer; }, seconds(5));
  }
  // Presses the transmit button and waits until the rig transmits.
  bool Key(const WindowDriver& window) {
    window.Click(window.form.optTXRX[0].place);
    return Has("t", "1");
  }
};

TEST_F(RigWalk, TheWindowFollowsTheRigAndTunesIt) {
  const auto window = Start();
  EXPECT_TRUE(ShowsFrequency(*window, "145.000.00"));
  rig.Ask("F 7074000");
  EXPECT_TRUE(ShowsFrequency(*window, "7.074.00"));

  window->Click(window->form.lblFrequency.place);
  window->Press({"Down", "Return"});
  ASSERT_TRUE(window->WaitForWindow("Set Rig Frequency"));
  window->Type("14250");
  window->Press({"Return"});
  EXPECT_TRUE(Has("f", "14250000"));
  EXPECT_TRUE(ShowsFrequency(*window, "14.250.00"));

  window->Click(window->form.lblFrequency.place);
  window->Press({"Down", "Down", "Down", "Down", "Return"});
  EXPECT_TRUE(Has("f", "7000000"));

  window->Click(window->form.imgStartStop.place);
  EXPECT_TRUE(Shows(*window, window->form.lblMode.place, 12, "FM"));
  window->Click(window->form.lblMode.place);
  window->Press({"Down", "Return"});
  EXPECT_TRUE(Has("m", "LSB"));
  EXPECT_TRUE(Shows(*window, window->form.lblMode.place, 12, "LSB"));

  ASSERT_TRUE(Key(*window));
  window->Click(window->form.optTXRX[1].place);
  EXPECT_TRUE(Has("t", "0"));

  rig.Kill();
  // A lost link is shown by a paler frequency.
  const Rectangle place = window->form.lblFrequency.place;
  const auto darkest = [&] {
    const QImage label = window->Picture().copy(place.left, place.top, place.width, place.height);
    int least = 255;
    for (int x = 0; x < label.width(); ++x) {
      least = std::min(least, qGray(label.pixel(x, label.height() / 2)));
    }
    return least;
  };
  EXPECT_TRUE(WaitUntil([&] { return darkest() > 100; }, seconds(5)));
  rig.Start();
  EXPECT_TRUE(WaitUntil([&] { return darkest() < 100; }, seconds(12)));
  EXPECT_TRUE(window->Program().Running());
}

}  // namespace
}  // namespace velt
