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
    Transmitter("off", "0");
    Status("USB", "");
    Start();
    engineWindow.Open("VELT V2.5.");
    scheduler.Advance(seconds(4));
    writes1.Take();
  }
  void Status(const std::string& mode, const std::string& transmitter,
              const std::string& inverted = "") {
    files.files["/opt/engine/status.cfg"] =
        mode + "\n300\n2700\n0\n" + transmitter + "\n" + inverted + "\n";
  }
  void Transmitter(const std::string& state, const std::string& frequency) {
    files.files[kRequest] = state + "\n" + frequency + "\n";
  }
  Texts WritesOf(int rounds = 2) { return WritesWithin(Milliseconds(350) * rounds); }
  std::string Trx() { return Form().lblTRXMode.caption; }
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
  Transmitter("off", "7050000");
  EXPECT_EQ(WritesOf(5), Texts{"Freq 7050000"}) << "once, though it cannot be taken back";
}

TEST_F(StatusPollerTest, KeysAndReleasesWithTheEngine) {
  Transmitter("on", "0");
  EXPECT_EQ(WritesOf(), Texts{"TX"});
  EXPECT_EQ(Trx(), "TX");
  // Its files are read on while it transmits, whatever becomes of the capture.
  StartCapture();
  Form().imgStartStop.Click();
  scheduler.RunPosted();
  Transmitter("off", "0");
  EXPECT_EQ(WritesOf(), Texts{"RX"});
  EXPECT_EQ(Trx(), "RX");

  // What was asked for while nobody looked is not done later.
  Form().tmrStatus.enabled = false;
  Transmitter("on", "0");
  Form().tmrStatus.enabled = true;
  EXPECT_EQ(WritesOf(), Texts{});
  Transmitter("off", "0");

  // The operator's receive ends the engine's transmission, and only a new "on" begins another.
  scheduler.Advance(seconds(3));
  StartCapture();
  WritesOf();
  Transmitter("on", "0");
  EXPECT_EQ(WritesOf(), Texts{"TX"});
  program->rig.ptt.PTT_OFF();
  EXPECT_EQ(WritesOf(4), Texts{}) << "the release went before";
  EXPECT_FALSE(rig1.Transmits());
  EXPECT_EQ(Trx(), "RX");

  // What the operator keyed is not the engine's to release.
  Transmitter("off", "0");
  WritesOf();
  program->rig.ptt.PTT_ON();
  Transmitter("on", "0");
  WritesOf();
  Transmitter("off", "0");
  WritesOf();
  EXPECT_TRUE(rig1.Transmits());
  EXPECT_EQ(Trx(), "TX");
  program->rig.ptt.PTT_OFF();

  files.files["/opt/engine/RS232.cfg"] = "3,9600,N,8,1,0,NONE,COM\nDTR\n";
  program->rig.serial.ReadRS232();
  for (const bool on : {true, false}) {
    Transmitter(on ? "on" : "off", "0");
    WritesOf();
    EXPECT_EQ(serialPort.Lines(), on);
    EXPECT_EQ(Trx(), on ? "TX" : "RX");
  }
}

TEST_F(StatusPollerTest, AVanishedEngineLeavesNothingOnTheAir) {
  Transmitter("on", "0");
  WritesOf();
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
    EXPECT_EQ(Form().lblMode.caption.Get(), shown) << line;
  }
  engineWindow.Vanish();
  WritesOf();
  EXPECT_EQ(Form().lblMode.caption.Get(), "N/A");
  EXPECT_EQ(program->rig.engine.passbandHigh, 0);
  rig1.Select(PM_AM);
  Status("USB", "lsb", "on");
  EXPECT_EQ(WritesOf(4), Texts{}) << "a mode of an engine that is not there";
  EXPECT_EQ(Form().lblMode.caption.Get(), "AM") << "the rig's own";
}

TEST_F(StatusPollerTest, CalibrationAndSidebandAreFollowed) {
  int layouts = 0;
  const auto connection = program->rig.poller.displayChanged.Listen([&] { ++layouts; });
  files.files["/opt/engine/calall.cfg"] = "100,2,30\nUSB,200,3,40\nLSB,300,4,50\n";
  Status("USB", "", "on");
  WritesOf();
  const EngineState& engine = program->rig.engine;
  const RigState& state = program->rig.state;
  EXPECT_TRUE(engine.scaleOffset == 100 && engine.passbandHigh == 2700);
  EXPECT_TRUE(state.offsetKHz == 2 && state.invertedSideband == "on");
  Status("LSB", "lock_to_txcr", "off");
  WritesOf(6);
  EXPECT_TRUE(engine.scaleOffset == 300 && state.offsetKHz == 4);
  EXPECT_EQ(engine.calibrationC, 38) << "12 is taken off once";
  EXPECT_EQ(state.invertedSideband, "off");
  EXPECT_EQ(layouts, 2);
}

TEST_F(StatusPollerTest, TheEngineIsToldWhereTheRigIs) {
  const std::string& told = files.files[kStatusRx];
  rig1.Tune(7050000);
  scheduler.Advance(seconds(1));
  EXPECT_EQ(told, "7050000\r\nRX\r\n0\r\n");
  files.writable = false;
  rig1.Tune(7040000);
  scheduler.Advance(seconds(1));
  files.writable = true;
  scheduler.Advance(seconds(1));
  EXPECT_TRUE(told.starts_with("7040000")) << "once it can be written";
  rig1.Tune(0);
  scheduler.Advance(seconds(1));
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
