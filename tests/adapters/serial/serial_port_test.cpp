// What a serial port promises, kept by the system's port on a line that hangs up and comes back.
#include <gtest/gtest.h>

#include "adapters/files/memory_store.h"
#include "adapters/qt/qt_scheduler.h"
#include "adapters/rigctld/live_loop.h"
#include "adapters/serial/qt_serial_port.h"
#include "support/serial_line.h"

namespace velt {
namespace {

struct SystemPort : testing::Test {
  SystemPort() { EnsureLoop(); }
  SerialLine line;
  QtScheduler scheduler;
  MemoryStore settings;
  QtSerialPort port{scheduler, DeviceNames(settings, line.Path())};
};

TEST_F(SystemPort, KeepsThePromises) {
  int receptions = 0, drains = 0;
  std::vector<int> failures;
  Connections connections;
  connections += port.received.Listen([&] { ++receptions; });
  connections += port.drained.Listen([&] { ++drains; });
  connections += port.failed.Listen([&](int error) {
    EXPECT_FALSE(port.IsOpen());
    failures.push_back(error);
  });
  port.Output("lost");
  port.SetDTREnable(true);
  ASSERT_EQ(port.Open(), 0);
  EXPECT_EQ(port.Open(), 0) << "an open port stays as it is";
  port.SetDTREnable(false);  // a device without lines is none the worse
  port.Output("T");
  port.Output("R");
  EXPECT_TRUE(LoopUntil([&] { return drains > 0; }));
  EXPECT_EQ(line.Heard(), "TR");
  EXPECT_EQ(port.OutBufferCount(), 0U);

  line.Say("7100");
  EXPECT_TRUE(LoopUntil([&] { return receptions > 0 && port.InBufferCount() == 4; }));
  EXPECT_EQ(port.Input(1), "7");
  EXPECT_EQ(port.Input(99), "100");
  line.Say("unread");
  port.Close();
  EXPECT_EQ(port.Input(1), "");
  for (size_t round = 1; round <= 3; ++round) {
    ASSERT_EQ(port.Open(), 0);
    line.HangUp();
    EXPECT_TRUE(LoopUntil([&] { return failures.size() == round; }));
    EXPECT_EQ(failures.back(), EIO);
    EXPECT_EQ(port.Open(), ENOENT);
    line.Connect();
  }
  // What failed just before it was closed by hand is no failure any more.
  ASSERT_EQ(port.Open(), 0);
  line.HangUp();
  port.Close();
  EXPECT_FALSE(LoopUntil([] { return false; }, Milliseconds(100)));
  EXPECT_EQ(failures.size(), 3U);
}

TEST_F(SystemPort, TakesTheSettingsThatMakeSenseAndClosesAtTheirSpeed) {
  for (const auto& [good, speed] :
       {std::pair{"9600,N,8,1", B9600}, {"115200,E,7,2", B115200}, {"300,O,5,1", B300}}) {
    port.SetSettings(good);
    ASSERT_EQ(port.Open(), 0) << good << ": not locked by the one before";
    port.Output("R");
    termios now{};
    EXPECT_EQ(::tcgetattr(port.Descriptor(), &now), 0);
    EXPECT_NE(now.c_cflag & HUPCL, 0U) << "whatever closes it lowers its lines";
    EXPECT_NE(::fcntl(port.Descriptor(), F_GETFD) & FD_CLOEXEC, 0) << "nobody inherits it";
    port.Close();
    EXPECT_TRUE(line.IsClosed());
    // The last letter leaves at the speed that it was written for, and so does the guardian's.
    const int device = ::open(line.Path().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    EXPECT_EQ(::tcgetattr(device, &now), 0);
    ::close(device);
    EXPECT_EQ(::cfgetospeed(&now), static_cast<speed_t>(speed));
  }
  EXPECT_EQ(line.Heard(), "RRR");
  for (const char* bad : {"", "9600,N,8", "0,N,8,1", "9600,X,8,1", "9600,N,9,1", "9600,N,8,3",
                          "9600,N,8,1,1", "99999999999,N,8,1"}) {
    port.SetSettings(bad);
    EXPECT_EQ(port.Open(), EINVAL) << bad;
  }
}

TEST(DeviceNames, FindTheDeviceOfAPort) {
  const TempFolder devices;
  MemoryStore settings;
  settings.Save("SerialPorts", "COM5", "/elsewhere/radio");
  settings.Save("SerialPorts", "COM6", " ttyS3 ");
  settings.Save("SerialPorts", "COM7", "");
  for (const char* name : {"ttyACM0", "ttyACM1", "ttyUSB1"}) devices.Write(name, "");
  const DeviceNames names(settings, {}, devices.Path());
  const std::vector<std::pair<int16_t, std::filesystem::path>> devicesOf{
      {1, devices / "ttyACM0"}, {2, devices / "ttyUSB1"}, {3, devices / "ttyUSB2"},
      {5, "/elsewhere/radio"},  {6, devices / "ttyS3"},   {7, devices / "ttyUSB6"}};
  for (const auto& [number, name] : devicesOf) EXPECT_EQ(names.Of(number), name) << number;
  EXPECT_EQ(DeviceNames(settings, "/dev/mine", devices.Path()).Of(5), "/dev/mine");
  EXPECT_EQ(DeviceNames(settings, "ttyS9", devices.Path()).Of(5), devices / "ttyS9");
}

}  // namespace
}  // namespace velt
