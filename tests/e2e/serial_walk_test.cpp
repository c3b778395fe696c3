// An Arduino on a serial line, and a transmitter that is keyed by such a line's own wires, with the
// program in a real window.
#include <gtest/gtest.h>

#include "adapters/rigctld/live_loop.h"
#include "e2e/window_driver.h"
#include "support/arduino_stand_in.h"

namespace velt {
namespace {

using std::chrono::seconds;

struct SerialWalk : testing::Test {
  std::optional<ArduinoStandIn> arduino;
  std::unique_ptr<WindowDriver> window;
  int64_t guardian = 0;

  void Start(const std::string& method) {
    window.reset();
    arduino.emplace();
    const auto home = std::make_shared<const TempFolder>();
    home->Write("RS232.cfg", "1\n9600\nN\n8\n1\n0\nNONE\n" + method + "\nBOTH\n");
    home->Write("KALVARO/VELT-SA.ini", "[VELT-SA]\nArduinoFreq=True\n");
    window = std::make_unique<WindowDriver>(
        std::vector<std::string>{"--rig1", "127.0.0.1:" + std::to_string(FreePort()),
                                 "--engine-folder", home->Path().string(), "--serial-port",
                                 arduino->Path()},
        std::vector<std::string>{}, home);
    WaitUntil([this] { return (guardian = GuardianOf(window->Program().Id())) != 0; }, seconds(10));
    ASSERT_TRUE(window->Dismiss("OmniRig not Configured for CAT"));
  }
  bool Shows(const std::string& text) const {
    return window->Reads(window->form.lblFrequency, 21, text, seconds(8));
  }
  void Press(int button) const { window->Click(window->form.optTXRX[button]); }
  bool Hears(const std::string& letters) {
    return WaitUntil([&] { return arduino->Heard() == letters; }, seconds(5));
  }
};

TEST_F(SerialWalk, AnArduinoCountsAndKeysAndComesBack) {
  Start("ARDUINO");
  EXPECT_TRUE(Shows("007.100.00"));
  EXPECT_EQ(arduino->Heard(), "");
  Press(0);
  EXPECT_TRUE(Hears("T"));
  Press(1);
  EXPECT_TRUE(Hears("TR"));
  Press(0);
  EXPECT_TRUE(Hears("TRT"));
  arduino->HangUp();
  EXPECT_TRUE(Shows("Com error"));
  arduino->Connect();
  EXPECT_TRUE(Hears("TRTR")) << "the release goes first";
  EXPECT_TRUE(Shows("007.100.00"));
}

TEST_F(SerialWalk, WhateverEndsTheProgramReleasesAndCloses) {
  constexpr int kClose = 0;
  const auto closed = [this] { return arduino->IsClosed(); };
  const std::vector<std::pair<bool, int>> cases{{true, SIGKILL},  {true, SIGTERM},
                                                {true, SIGSTOP},  {true, kClose},
                                                {false, SIGKILL}, {false, SIGTERM}};
  for (const auto& [letters, end] : cases) {
    SCOPED_TRACE(std::to_string(end) + (letters ? " letters" : " lines"));
    Start(letters ? "ARDUINO" : "COM");
    EXPECT_EQ(arduino->IsClosed(), !letters) << "open means transmitting";
    Press(0);
    ASSERT_TRUE(letters ? Hears("T") : WaitUntil([&] { return !closed(); }, seconds(5)));
    end == kClose ? (void)window->Close() : (void)window->Program().Signal(end);
    const auto released = [&] { return letters ? arduino->Heard().find('R') == 1 : closed(); };
    EXPECT_TRUE(WaitUntil(released, seconds(9)));
    if (end == SIGSTOP) window->Program().Kill();
    EXPECT_TRUE(WaitUntil([&] { return closed() && !IsAlive(guardian); }, seconds(9)));
    EXPECT_EQ(window->Said().find("may still be on"), std::string::npos);
  }
}

}  // namespace
}  // namespace velt
