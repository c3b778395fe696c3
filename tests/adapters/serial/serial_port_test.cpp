// What a serial port promises, kept by the double and by the system's port; and what only the
// system has: names of devices, lines that hang up.
#include <gtest/gtest.h>
#include <sys/ioctl.h>

#include <ctime>

#include "adapters/files/memory_store.h"
#include "adapters/qt/qt_scheduler.h"
#include "adapters/rigctld/live_loop.h"
#include "adapters/serial/qt_serial_port.h"
#include "support/fake_serial_port.h"
#include "support/serial_line.h"
#include "support/virtual_scheduler.h"

namespace velt {
namespace {

// A port and what is connected to it.
class Wire {
 public:
  virtual ~Wire() = default;
  virtual SerialPort& Port() = 0;
  virtual void Say(const std::string& text) = 0;
  virtual std::string Heard() = 0;
  virtual void HangUp() = 0;
  virtual void ComeBack() = 0;
  virtual bool Until(const std::function<bool()>& condition,
                     std::chrono::milliseconds limit = std::chrono::seconds(5)) = 0;
};

class DoubleWire : public Wire {
 public:
  SerialPort& Port() override { return port_; }
  void Say(const std::string& text) override { port_.Say(text); }
  std::string Heard() override { return heard_; }
  void HangUp() override { port_.HangUp(ENOENT); }
  void ComeBack() override { port_.openError = 0; }
  bool Until(const std::function<bool()>& condition, std::chrono::milliseconds) override {
    scheduler_.Advance(Milliseconds(100));
    return condition();
  }

 private:
  VirtualScheduler scheduler_;
  FakeSerialPort port_{scheduler_};
  std::string heard_;
  Connection connection_ = port_.happened.Listen([this](const std::string& what) {
    if (what != "open" && what != "close" && what.find(" ") == std::string::npos) heard_ += what;
  });
};

class SystemWire : public Wire {
 public:
  SystemWire() { EnsureLoop(); }
  SerialPort& Port() override { return port_; }
  void Say(const std::string& text) override { EXPECT_TRUE(line_.Say(text)); }
  std::string Heard() override { return line_.Heard(); }
  void HangUp() override { line_.HangUp(); }
  void ComeBack() override { line_.Connect(); }
  bool Until(const std::function<bool()>& condition, std::chrono::milliseconds limit) override {
    return LoopUntil(condition, limit);
  }

 private:
  SerialLine line_;
  QtScheduler scheduler_;
  MemoryStore settings_;
  QtSerialPort port_{scheduler_, DeviceNames(settings_, line_.Path())};
};

using MakeWire = std::unique_ptr<Wire> (*)();
struct SerialContract : testing::TestWithParam<MakeWire> {
  std::unique_ptr<Wire> wire = GetParam()();
  SerialPort& port = wire->Port();
  int receptions = 0, drains = 0;
  std::vector<int> failures;
  Connections connections;

  SerialContract() {
    connections += port.received.Listen([this] { ++receptions; });
    connections += port.drained.Listen([this] { ++drains; });
    connections += port.failed.Listen([this](int error) {
      EXPECT_FALSE(port.IsOpen());
      failures.push_back(error);
    });
  }
};
INSTANTIATE_TEST_SUITE_P(
    Ports, SerialContract,
    testing::Values(
        +[]() -> std::unique_ptr<Wire> { return std::make_unique<DoubleWire>(); },
        +[]() -> std::unique_ptr<Wire> { return std::make_unique<SystemWire>(); }),
    [](const auto& made) { return made.index == 0 ? "Double" : "System"; });

TEST_P(SerialContract, BytesGoBothWaysWhileItIsOpen) {
  port.Output("lost");
  EXPECT_EQ(port.Descriptor(), -1);
  port.SetDTREnable(true);
  ASSERT_EQ(port.Open(), 0);
  EXPECT_EQ(port.Open(), 0) << "an open port stays as it is";
  EXPECT_GE(port.Descriptor(), 0);
  port.SetRTSEnable(true);  // a device without lines is none the worse
  port.SetDTREnable(false);
  port.Output("T");
  port.Output("R");
  EXPECT_EQ(drains, 0);
  EXPECT_TRUE(wire->Until([&] { return drains > 0; }));
  EXPECT_EQ(wire->Heard(), "TR");
  EXPECT_EQ(port.OutBufferCount(), 0U);

  wire->Say("7100");
  EXPECT_EQ(receptions, 0);
  EXPECT_TRUE(wire->Until([&] { return receptions > 0 && port.InBufferCount() == 4; }));
  EXPECT_EQ(port.Input(1), "7");
  EXPECT_EQ(port.Input(99), "100");
  EXPECT_EQ(port.Input(1), "");
  wire->Say("unread");
  port.Close();
  EXPECT_FALSE(port.IsOpen());
  EXPECT_EQ(port.InBufferCount(), 0U);
  EXPECT_EQ(port.Input(1), "");
  ASSERT_EQ(port.Open(), 0);
  port.Output("!");
  EXPECT_TRUE(wire->Until([&] { return wire->Heard() == "TR!"; }));
  EXPECT_EQ(failures, std::vector<int>{});
}

TEST_P(SerialContract, AFailureClosesItOnceAndItOpensAgainWhenItIsBack) {
  port.SetSettings("nonsense");
  EXPECT_EQ(port.Open(), EINVAL);
  port.SetSettings("9600,N,8,1");
  for (size_t round = 1; round <= 3; ++round) {
    ASSERT_EQ(port.Open(), 0);
    wire->HangUp();
    EXPECT_TRUE(wire->Until([&] { return failures.size() == round; }));
    EXPECT_EQ(failures.back(), EIO);
    EXPECT_EQ(port.Open(), ENOENT);
    wire->ComeBack();
  }
  // What failed just before it was closed by hand is no failure any more.
  ASSERT_EQ(port.Open(), 0);
  wire->HangUp();
  port.Close();
  EXPECT_FALSE(wire->Until([] { return false; }, std::chrono::milliseconds(100)));
  EXPECT_EQ(failures.size(), 3U);
}

struct SystemPort : testing::Test {
  SystemPort() { EnsureLoop(); }
  SerialLine line;
  QtScheduler scheduler;
  MemoryStore settings;
  QtSerialPort port{scheduler, DeviceNames(settings, line.Path())};
};

TEST_F(SystemPort, TakesTheSettingsThatMakeSense) {
  for (const char* good : {"9600,N,8,1", "115200,E,7,2", "300,O,5,1", "250000,N,8,1"}) {
    port.SetSettings(good);
    EXPECT_EQ(port.Open(), 0) << good;
    termios now{};
    EXPECT_EQ(::tcgetattr(port.Descriptor(), &now), 0);
    EXPECT_NE(now.c_cflag & HUPCL, 0U) << "whatever closes it lowers its lines";
    port.Close();
  }
  for (const char* bad : {"", "9600", "9600,N,8", "0,N,8,1", "-1,N,8,1", "9600,X,8,1", "9600,N,9,1",
                          "9600,N,8,0", "9600,N,8,3", "9600,N,8,1,1", "99999999999,N,8,1"}) {
    port.SetSettings(bad);
    EXPECT_EQ(port.Open(), EINVAL) << bad;
  }
}

// The last letter leaves at the speed that it was written for, and so does the guardian's.
TEST_F(SystemPort, ClosingKeepsTheSpeed) {
  const auto speed = [this] {
    const int device = ::open(line.Path().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios now{};
    ::tcgetattr(device, &now);
    ::close(device);
    return ::cfgetospeed(&now);
  };
  ASSERT_NE(speed(), static_cast<speed_t>(B4800));
  port.SetSettings("4800,N,8,1");
  ASSERT_EQ(port.Open(), 0);
  port.Output("R");
  port.Close();
  EXPECT_TRUE(line.IsClosed());
  EXPECT_EQ(speed(), static_cast<speed_t>(B4800));
  EXPECT_EQ(line.Heard(), "R");
  ASSERT_EQ(port.Open(), 0) << "not locked";
}

// Somebody who was started beside this program, and one that it started, find no open port.
TEST_F(SystemPort, IsNotInherited) {
  ASSERT_EQ(port.Open(), 0);
  EXPECT_NE(::fcntl(port.Descriptor(), F_GETFD) & FD_CLOEXEC, 0);
}

// Neither a line that is gone nor one that says much costs anything.
TEST_F(SystemPort, ADeadOrNoisyLineCostsNothing) {
  ASSERT_EQ(port.Open(), 0);
  const std::string noise(4000, '\xA7');
  for (size_t said = 0; said < 2 * QtSerialPort::kMostInput; said += noise.size()) {
    bool taken = false;
    ASSERT_TRUE(LoopUntil([&] { return taken || (taken = line.Say(noise)); }));
  }
  EXPECT_TRUE(LoopUntil([&] {
    int waiting = 0;
    return ::ioctl(port.Descriptor(), FIONREAD, &waiting) == 0 && waiting == 0;
  }));
  EXPECT_LE(port.InBufferCount(), QtSerialPort::kMostInput);
  EXPECT_GT(port.InBufferCount(), 0U);

  int failures = 0;
  const auto connection = port.failed.Listen([&](int) { ++failures; });
  const std::clock_t before = std::clock();
  line.HangUp();
  EXPECT_FALSE(LoopUntil([] { return false; }, std::chrono::milliseconds(500)));
  EXPECT_EQ(failures, 1);
  EXPECT_LT(std::clock() - before, CLOCKS_PER_SEC / 4);
}

TEST(DeviceNames, FindTheDeviceOfAPort) {
  const TempFolder devices;
  MemoryStore settings;
  settings.Save("SerialPorts", "COM5", "/elsewhere/radio");
  settings.Save("SerialPorts", "COM6", " ttyS3 ");
  settings.Save("SerialPorts", "COM7", "");
  const auto touch = [&](const char* name) { ::close(::creat((devices / name).c_str(), 0600)); };
  touch("ttyACM0");
  touch("ttyACM1");
  touch("ttyUSB1");
  const DeviceNames names(settings, {}, devices.Path());
  for (const auto& [number, name] :
       std::vector<std::pair<int16_t, std::filesystem::path>>{{1, devices / "ttyACM0"},
                                                              {2, devices / "ttyUSB1"},
                                                              {3, devices / "ttyUSB2"},
                                                              {5, "/elsewhere/radio"},
                                                              {6, devices / "ttyS3"},
                                                              {7, devices / "ttyUSB6"}}) {
    EXPECT_EQ(names.Of(number), name) << number;
    EXPECT_EQ(DeviceNames(settings, "/dev/mine", devices.Path()).Of(number), "/dev/mine");
    EXPECT_EQ(DeviceNames(settings, "ttyS9", devices.Path()).Of(number), devices / "ttyS9");
  }
}

}  // namespace
}  // namespace velt
