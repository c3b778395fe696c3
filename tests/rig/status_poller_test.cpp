// The whole program with an engine beside it: its window and its files are doubles that the test
// writes, the rig is simulated.
#include "rig_fixture.h"

namespace velt {
namespace {

using std::chrono::seconds;

constexpr const char* kRequest = "/opt/engine/transmitter.cfg";
constexpr const char* kSiblingRequest = "/opt/engine_SA/transmitter.cfg";
constexpr const char* kStatusRx = "/opt/engine/STATUSRX.CFG";

struct StatusPollerTest : RigFixture {
  StatusPollerTest() {
    files.files["/opt/engine/velt.jar"] = "";
    files.files[kRequest] = "off\n0\n";
    Status("USB", "");
    Start();
    engineWindow.Open("VELT V2.5.");
    Pass(seconds(4));
  }
  void Status(const std::string& mode, const std::string& transmitter,
              const std::string& inverted = "") {
    files.files["/opt/engine/status.cfg"] =
        mode + "\n300\n2700\n0\n" + transmitter + "\n" + inverted + "\n";
  }
  Texts WritesOf(int rounds = 2) { return WritesWithin(Milliseconds(350) * rounds); }
  // What is sent when the engine asks for that.
  Texts Engine(const std::string& state, const std::string& frequency = "0") {
    files.files[kRequest] = state + "\n" + frequency + "\n";
    return WritesOf(4);
  }
  std::string Trx() { return form.lblTRXMode.caption; }
};

TEST_F(StatusPollerTest, ARequestIsMetOnceAndTakenBack) {
  for (const char* file : {kRequest, kSiblingRequest}) {
    files.files[file] = "off\n7074000\n";
    EXPECT_EQ(WritesOf(4), Texts{"Freq 7074000"}) << file;
    EXPECT_EQ(files.files[file], "off\r\n\r\n");
    files.files[file] = "off\n1\n";
    EXPECT_EQ(WritesOf(), Texts{});
    EXPECT_EQ(files.files[file], "off\n1\n") << "no request, nothing to take back";
    files.files[file] = "off\n70740";
    EXPECT_EQ(WritesOf(1), Texts{}) << "it may be the beginning of a number";
    files.files[file] = "off\n7074000";
    EXPECT_EQ(WritesOf(3), Texts{"Freq 7074000"});
    files.files[file] = "off\n7050000";
    ++files.number;
    EXPECT_EQ(WritesOf(1), Texts{"Freq 7050000"}) << "replaced, it is looked at again at once";
  }
  files.writable = false;
  EXPECT_EQ(Engine("off", "7050000"), Texts{"Freq 7050000"}) << "once, though not taken back";
}

TEST_F(StatusPollerTest, KeysAndReleasesWithTheEngine) {
  EXPECT_EQ(Engine("on"), Texts{"TX"});
  EXPECT_EQ(Trx(), "TX");
  // Its files are read on while it transmits, whatever becomes of the capture.
  StartCapture();
  form.imgStartStop.Click();
  EXPECT_EQ(Engine("off"), Texts{"RX"});
  EXPECT_EQ(Trx(), "RX");

  // What was asked for while nobody looked is not done later.
  form.tmrStatus.enabled = false;
  Engine("on");
  form.tmrStatus.enabled = true;
  EXPECT_EQ(WritesOf(), Texts{});
  Engine("off");

  // The operator's receive ends the engine's transmission, and only a new "on" begins another.
  Pass(seconds(3));
  StartCapture();
  EXPECT_EQ(Engine("on"), Texts{"TX"});
  rig.ptt.PTT_OFF();
  EXPECT_EQ(WritesOf(4), Texts{}) << "the release went before";
  EXPECT_FALSE(rig1.Transmits());
  EXPECT_EQ(Trx(), "RX");

  // What the operator keyed is not the engine's to release.
  Engine("off");
  rig.ptt.PTT_ON();
  for (const char* state : {"on", "off"}) Engine(state);
  EXPECT_TRUE(rig1.Transmits());
  EXPECT_EQ(Trx(), "TX");
  rig.ptt.PTT_OFF();

  files.files["/opt/engine/RS232.cfg"] = "3,9600,N,8,1,0,NONE,COM\nDTR\n";
  rig.serial.ReadRS232();
  for (const bool on : {true, false}) {
    Engine(on ? "on" : "off");
    EXPECT_EQ(serialPort.Lines(), on);
    EXPECT_EQ(Trx(), on ? "TX" : "RX");
  }
}

TEST_F(StatusPollerTest, AVanishedEngineLeavesNothingOnTheAir) {
  Engine("on");
  engineWindow.Vanish();
  EXPECT_EQ(WritesOf(), Texts{"RX"});
  engineWindow.Open("VELT V2.5.");
  EXPECT_EQ(WritesOf(5), Texts{}) << "the file still says on";
}

TEST_F(StatusPollerTest, ATransmitterModeGoesToTheRigOnce) {
  using Case = std::tuple<const char*, const char*, Texts, const char*>;
  const auto mode = [](int32_t number) { return Texts{"Mode " + std::to_string(number)}; };
  for (const auto& [status, line, writes, shown] :
       std::vector<Case>{{"USB", " USB ", mode(PM_SSB_U), "USB"},
                         {"USB", "lsb", mode(PM_SSB_L), "USB"},
                         {"CW-LSB", "cw-lsb", mode(PM_CW_L), "cw-l"},
                         {"USB", "cw-usb", mode(PM_CW_U), "USB"},
                         {"USB", "rtty", {}, "USB"},
                         {"LSB", "lock_to_txcr", mode(PM_SSB_L), "LSB"},
                         {"USB", "lock_to_txcr", mode(PM_SSB_U), "USB"}}) {
    Status(status, line);
    EXPECT_EQ(WritesOf(4), writes) << line;
    EXPECT_EQ(form.lblMode.caption.Get(), shown) << line;
  }
  engineWindow.Vanish();
  WritesOf();
  EXPECT_EQ(form.lblMode.caption.Get(), "N/A");
  EXPECT_EQ(rig.engine.passbandHigh, 0);
  rig1.Select(PM_AM);
  Status("USB", "lsb", "on");
  EXPECT_EQ(WritesOf(4), Texts{}) << "a mode of an engine that is not there";
  EXPECT_EQ(form.lblMode.caption.Get(), "AM") << "the rig's own";
}

TEST_F(StatusPollerTest, CalibrationAndSidebandAreFollowed) {
  int layouts = 0;
  const auto connection = rig.poller.displayChanged.Listen([&] { ++layouts; });
  files.files["/opt/engine/calall.cfg"] = "100,2,30\nUSB,200,3,40\nLSB,300,4,50\n";
  Status("USB", "", "on");
  WritesOf();
  EXPECT_TRUE(rig.engine.scaleOffset == 100 && rig.engine.passbandHigh == 2700);
  EXPECT_TRUE(rig.state.offsetKHz == 2 && rig.state.invertedSideband == "on");
  Status("LSB", "lock_to_txcr", "off");
  WritesOf(6);
  EXPECT_TRUE(rig.engine.scaleOffset == 300 && rig.state.offsetKHz == 4);
  EXPECT_EQ(rig.engine.calibrationC, 38) << "12 is taken off once";
  EXPECT_EQ(rig.state.invertedSideband, "off");
  EXPECT_EQ(layouts, 2);
}

TEST_F(StatusPollerTest, TheEngineIsToldWhereTheRigIs) {
  const std::string& told = files.files[kStatusRx];
  files.writable = false;
  rig1.Tune(7040000);
  Pass(seconds(1));
  files.writable = true;
  Pass(seconds(1));
  EXPECT_EQ(told, "7040000\r\nRX\r\n0\r\n") << "once it can be written";
  rig1.Tune(0);
  Pass(seconds(1));
  EXPECT_EQ(told, "\"no-com\"\r\nRX\r\n0\r\n");
  Close();
  EXPECT_EQ(told, "0\r\nOFF\r\n0\r\n");
}

TEST_F(StatusPollerTest, WithoutAnEngineNothingIsReadOrWritten) {
  files.files = {{kRequest, "off\n7074000\n"}};
  Restart();
  Start();
  EXPECT_EQ(WritesOf(12), Texts{});
  EXPECT_FALSE(Form().tmrStatus.enabled || files.files.contains(kStatusRx));
}

}  // namespace
}  // namespace velt
