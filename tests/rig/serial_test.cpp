// The serial port as a way to key and as the rig's counter.
#include "rig/count_reader.h"
#include "rig/shown_frequency.h"
#include "rig_fixture.h"
#include "text/formats.h"

namespace velt {
namespace {

using std::chrono::minutes;
using std::chrono::seconds;

struct SerialTest : RigFixture {
  static std::string Config(const std::string& method, const std::string& line = "BOTH",
                            int port = 3) {
    return std::to_string(port) + "\r\n9600\r\nN\r\n8\r\n1\r\n0\r\nNONE\r\n" + method + "\r\n" +
           line + "\r\n";
  }
  void Configure(const std::string& text) {
    files.files["/opt/engine/RS232.cfg"] = text;
    rig.serial.ReadRS232();
  }
  // With the Arduino ready for letters.
  void ConfigureArduino() {
    Configure(Config("ARDUINO"));
    Pass(seconds(2));
    serialPort.Take();
  }
  void On() { form.mnuPTT_ON.Click(); }
  void Off() { form.mnuPTT_OFF.Click(); }
  bool ShowsTransmit() { return form.optTXRX[0].value && !form.optTXRX[1].value; }
  Texts PortAfter(const std::function<void()>& action) {
    serialPort.Take();
    action();
    scheduler.RunPosted();
    return serialPort.Take();
  }
};

TEST_F(SerialTest, TheLinesKeyOnlyWhatTheGuardianHoldsAndTheOpenPortIsTheTransmitState) {
  struct Case {
    std::string line;
    Texts keyed, released;
  };
  // At the moment when a line goes up the guardian knows how to lower it.
  const auto connection = serialPort.happened.Listen([this](const std::string& what) {
    if (!what.ends_with(" up")) return;
    ASSERT_EQ(guardian.held.size(), 1U);
    EXPECT_EQ(guardian.held.begin()->second.descriptor, serialPort.Descriptor());
    EXPECT_TRUE(guardian.held.begin()->second.lowersLines);
  });
  Link();
  for (const Case& c :
       {Case{"DTR", {"open", "DTR up"}, {"DTR down", "close"}},
        Case{"RTS", {"open", "RTS up"}, {"RTS down", "close"}},
        Case{"X", {"open", "DTR up", "RTS up"}, {"DTR down", "RTS down", "close"}}}) {
    EXPECT_EQ(PortAfter([&] { Configure(Config("COM", c.line)); }), Texts{}) << c.line;
    EXPECT_EQ(PortAfter([this] { On(); }), c.keyed) << c.line;
    EXPECT_EQ(serialPort.device, "COM3 9600,N,8,1");
    EXPECT_TRUE(ShowsTransmit());
    EXPECT_EQ(form.lblTRXMode.caption.Get(), "RX") << "the status poller's to set";
    EXPECT_TRUE(sleepLock.held);
    EXPECT_EQ(PortAfter([this] { On(); }), Texts{});
    form.lblTRXMode.caption = "TX";
    EXPECT_EQ(PortAfter([this] { Off(); }), c.released) << c.line;
    EXPECT_EQ(form.lblTRXMode.caption.Get(), "TX");
    EXPECT_FALSE(ShowsTransmit());
    form.lblTRXMode.caption = "RX";
    // Keyed again before the first release is confirmed: the guardian gets the new port.
    EXPECT_EQ(PortAfter([this] { On(); }), c.keyed);
    Off();
    Pass(seconds(2));
    EXPECT_TRUE(guardian.held.empty());
    EXPECT_FALSE(sleepLock.held);
  }
  EXPECT_EQ(writes1.Take(), Texts{}) << "the CAT link has no part in it";
}

TEST_F(SerialTest, WhatCannotBeKeyedSafelyIsNotKeyed) {
  Configure(Config("COM"));
  guardian.present = false;
  EXPECT_EQ(PortAfter([this] { On(); }), (Texts{"open", "close"})) << "no line was raised";
  EXPECT_EQ(Message(), "Not keyed: nothing would release the transmitter after a crash");
  guardian.present = true;
  serialPort.openError = EACCES;
  On();
  EXPECT_EQ(Message(), "Not keyed: the serial port could not be opened: Permission denied");
  Configure(Config("ARDUINO"));
  On();
  EXPECT_EQ(Message(), "Not keyed: the serial port could not be opened: Permission denied");
  Configure("3,9600,N,8,1");  // cut off: the method is CAT
  On();
  EXPECT_EQ(Message(), "No link to the rig: nothing was sent");
  EXPECT_FALSE(ShowsTransmit());
  EXPECT_TRUE(guardian.held.empty());
}

TEST_F(SerialTest, ALineKeyedPortThatIsLostStaysClosedUntilSomebodyKeys) {
  Configure(Config("COM"));
  On();
  Pass(seconds(1));
  EXPECT_EQ(PortAfter([this] { serialPort.HangUp(); }), (Texts{"DTR down", "RTS down", "close"}));
  EXPECT_FALSE(ShowsTransmit());
  EXPECT_EQ(Message(), "The serial port was lost while transmitting");
  EXPECT_EQ(Notice(), TransmitGuard::kLostWhileKeyed);
  EXPECT_EQ(PortAfter([this] { Pass(minutes(11)); }), Texts{});
  EXPECT_EQ(PortAfter([this] { Off(); }), Texts{});
  On();
  EXPECT_TRUE(serialPort.Lines());
  EXPECT_EQ(guardian.held.size(), 1U);
  Off();
  Pass(seconds(2));
  EXPECT_EQ(Notice(), "") << "seen to be released";
  EXPECT_TRUE(guardian.held.empty());
}

TEST_F(SerialTest, LettersWaitUntilTheArduinoIsReady) {
  struct Step {
    std::function<void()> happens;
    std::string letters;  // that go out then
  };
  const auto on = [this] { On(); };
  const auto off = [this] { Off(); };
  const auto pass = [this](int milliseconds) {
    return [this, milliseconds] { Pass(Milliseconds(milliseconds)); };
  };
  const auto say = [this](const std::string& text) {
    return [this, text] { serialPort.Say(text); };
  };
  const auto stand = [this] { scheduler.Pass(seconds(20)); };
  for (const std::vector<Step>& steps : std::vector<std::vector<Step>>{
           {{on, ""}, {on, ""}, {pass(1999), ""}, {pass(1), "TT"}, {off, "R"}},
           // Its first line, but not one that was on its way before the reset.
           {{on, ""}, {say("1\r\n"), ""}, {pass(400), ""}, {say("rea"), ""}, {say("dy\n"), "T"}},
           {{on, ""}, {off, ""}, {pass(2000), "R"}},
           {{on, ""}, {off, ""}, {on, ""}, {pass(2000), "RT"}},
           {{on, ""}, {stand, "R"}}}) {  // too late for the key
    Configure(Config("ARDUINO"));
    for (size_t i = 0; i < steps.size(); ++i) {
      serialPort.Take();
      steps[i].happens();
      scheduler.Advance(Milliseconds(0));
      std::string letters;
      for (const std::string& what : serialPort.Take()) {
        if (what.find_first_not_of("TR") == std::string::npos) letters += what;
      }
      EXPECT_EQ(letters, steps[i].letters) << "step " << i << " of " << steps.size();
    }
    Off();
    Pass(seconds(5));
    EXPECT_TRUE(guardian.held.empty());
    Configure("0");
  }
}

TEST_F(SerialTest, AnArduinoKeysByLettersOverOneOpenPort) {
  ConfigureArduino();
  EXPECT_EQ(PortAfter([this] { On(); }), Texts{"T"});
  ASSERT_EQ(guardian.held.size(), 1U);
  EXPECT_EQ(guardian.held.begin()->second.release, "R");
  EXPECT_FALSE(guardian.held.begin()->second.lowersLines);
  EXPECT_TRUE(ShowsTransmit());
  EXPECT_EQ(PortAfter([this] { On(); }), Texts{"T"});
  EXPECT_EQ(PortAfter([this] { Off(); }), Texts{"R"});
  Pass(seconds(2));
  EXPECT_TRUE(guardian.held.empty());
  EXPECT_EQ(PortAfter([this] { Off(); }), Texts{"R"}) << "the operator's always goes out";

  // A port that takes nothing: one "R" waits in it, and it may still be on.
  serialPort.takes = false;
  On();
  EXPECT_EQ(PortAfter([this] {
              Off();
              Pass(seconds(11));
            }),
            (Texts{"R"}));
  EXPECT_EQ(Notice(), TransmitGuard::kMayStillBeOn);
}

TEST_F(SerialTest, AnArduinoThatIsLostWhileKeyedIsReleasedFirstWhenItIsBack) {
  ConfigureArduino();
  On();
  const uint32_t ticket = guardian.held.begin()->first;
  serialPort.HangUp(ENOENT);
  Pass(seconds(7));
  EXPECT_EQ(Notice(), TransmitGuard::kLostWhileKeyed);
  EXPECT_FALSE(ShowsTransmit());
  serialPort.openError = 0;
  serialPort.Take();
  Pass(Milliseconds(1400));
  EXPECT_TRUE(serialPort.IsOpen());
  ASSERT_EQ(guardian.held.size(), 1U);
  EXPECT_NE(guardian.held.begin()->first, ticket) << "held by the port that is open now";
  Pass(seconds(2));
  EXPECT_EQ(serialPort.Take(), (Texts{"open", "DTR up", "RTS up", "R"}));
  Pass(seconds(2));
  EXPECT_EQ(Notice(), "");
  EXPECT_TRUE(guardian.held.empty());
}

TEST_F(SerialTest, WhatWasKeyedIsReleasedTheWayItWasKeyed) {
  Link();
  struct Case {
    std::string before, after;
    Texts port;
    bool byGuardian;  // it follows up what is left behind
  };
  const Texts down{"DTR down", "RTS down", "close"};
  const Texts letter{"R", "DTR down", "RTS down", "close"};
  for (const Case& c :
       {Case{Config("COM"), Config("ARDUINO"), down, true},
        Case{Config("COM"), Config("COM", "DTR"), down, true}, Case{Config("COM"), "", down, true},
        Case{Config("COM"), Config("COM"), {}, false},
        Case{Config("ARDUINO"), Config("COM"), letter, true},
        Case{Config("ARDUINO"), Config("ARDUINO", "BOTH", 4), letter, true},
        Case{Config("ARDUINO"), Config("ARDUINO"), {}, false},
        Case{"0", Config("COM"), {}, false}}) {
    SCOPED_TRACE(c.before + c.after);
    Configure(c.before);
    Pass(seconds(3));
    On();
    scheduler.RunPosted();
    guardian.followed = 0;
    Texts seen = PortAfter([&] { Configure(c.after); });
    if (c.port.size() < seen.size()) seen.resize(c.port.size());  // then the new one may open
    EXPECT_EQ(seen, c.port);
    EXPECT_EQ(guardian.followed, c.byGuardian ? 1U : 0U);
    EXPECT_EQ(ShowsTransmit(), !c.byGuardian);
    Off();
    scheduler.RunPosted();
    EXPECT_FALSE(rig1.Transmits());
    EXPECT_FALSE(ShowsTransmit());
    Pass(seconds(5));
    EXPECT_FALSE(serialPort.Lines() && rig.state.pttMethod == "COM");
    EXPECT_TRUE(guardian.held.empty());
    Configure("0");
  }
}

TEST_F(SerialTest, ThePlayerKeysByCatAndEndsOnlyThat) {
  Link();
  Configure(Config("COM"));
  rig.ptt.PTT_ON(TransmitOwner::Player);
  rig.ptt.PTT_ON(TransmitOwner::Engine);
  EXPECT_TRUE(rig1.Transmits());
  EXPECT_TRUE(serialPort.Lines());
  rig.ptt.PTT_OFF(TransmitOwner::Player);
  scheduler.RunPosted();
  EXPECT_FALSE(rig1.Transmits());
  EXPECT_TRUE(serialPort.Lines());
  EXPECT_TRUE(ShowsTransmit());
  rig.ptt.PTT_ON(TransmitOwner::Player);
  Off();
  scheduler.RunPosted();
  EXPECT_FALSE(rig1.Transmits());
  EXPECT_FALSE(serialPort.Lines());
  EXPECT_FALSE(ShowsTransmit());
}

TEST_F(SerialTest, EveryEndOfAKeyedProgramLowersAndCloses) {
  for (const std::string method : {"COM", "ARDUINO"}) {
    for (const bool immediate : {false, true}) {
      Restart();
      Main& main = Form();
      files.files["/opt/engine/RS232.cfg"] = Config(method);
      Start();
      scheduler.Advance(seconds(3));
      main.mnuPTT_ON.Click();
      scheduler.RunPosted();
      serialPort.Take();
      immediate ? main.mnucloseme.Click() : (void)Close();
      const Texts seen = serialPort.Take();
      EXPECT_EQ(seen.front(), method == "COM" ? "DTR down" : "R");
      EXPECT_EQ(serialPort.IsOpen(), method == "ARDUINO" && immediate);
      scheduler.Advance(seconds(10));
      EXPECT_TRUE(ended);
      serialPort.Close();
    }
  }
}

TEST(CountReader, ShowsNoPieceOfANumber) {
  // "|" is a pause.
  struct Case {
    std::string sent, count;
  };
  for (const Case& c :
       std::vector<Case>{{"00000\r\n", ""},  // the rest of a number, as the port is opened
                         {"00000\r\n7100000\r\n", "7100000"},
                         {"|7100000\r\n", "7100000"},
                         {"|7100\r\n7200", "7100"},
                         {"\n71|00000", ""},  // it ends its lines: the rest is still to come
                         {"\n71|00000\n", "7100000"},
                         {"|7100000", ""},
                         {"|7100000|", "7100000"},  // no line ends: whole once nothing follows
                         {"7100000|", ""},
                         {"|7100000|14250000|", "14250000"},
                         {"\n 7100000 \n", "7100000"},
                         {"\n7100000\n\r\n\n", "7100000"},
                         {"\n7100000\nnoise\n", "7100000"},
                         {"\n7 100 000\n", ""},
                         {"\n7,100,000\n", ""},
                         {"\n7.1\n", ""},
                         {"\n-7100000\n", ""},
                         {"\n+7100000\n", ""},
                         {"\nF7100000\n", ""},
                         {"\n2147483647\n", "2147483647"},
                         {"\n2147483648\n", ""},
                         {"\n" + std::string(100'000, '7') + "\n", ""},
                         {"\n" + std::string(100'000, '7') + "\n42\n", "42"},
                         {std::string("\n71\0\n", 5), ""},
                         {"\n0\n", "0"}}) {
    CountReader whole, bytewise;
    for (const char b : c.sent) {
      const std::string_view byte(&b, 1);
      b == '|' ? bytewise.Pause() : bytewise.Feed(byte);
    }
    EXPECT_EQ(bytewise.Take(), c.count) << c.sent.substr(0, 40);
    EXPECT_EQ(bytewise.Take(), "");
  }
}

TEST(CountText, IsWhatTheLabelShows) {
  struct Case {
    int64_t hertz;
    int format;
    std::string text;
  };
  for (const Case& c : {Case{7100000, 0, "7100000"},
                        {7100000, 1, "007.100.00"},
                        {14250009, 1, "014.250.00"},
                        {475000, 1, "000.475.00"},
                        {0, 1, "000.000.00"},
                        {1296100000, 1, "1296.100.00"},
                        {-50, 1, "-000.000.05"},
                        {7100000, 2, "7.100.00"},
                        {475004, 2, "0.475.00"}}) {
    EXPECT_EQ(CountText(c.hertz, c.format), c.text);
  }
}

struct CounterTest : SerialTest {
  CounterTest() {
    files.files["/opt/engine/velt.jar"] = "";
    files.files["/opt/engine/RS232.cfg"] = Config("ARDUINO");
    store.Save("VELT-SA", "ArduinoFreq", "True");
    Reachable(false);
    Start();
    Pass(seconds(1));
  }
  std::string Status() {
    const std::string text = files.files["/opt/engine/STATUSRX.CFG"];
    return text.substr(0, text.find_first_of("\r\n"));
  }
  void Tick() { Pass(Milliseconds(150)); }
  void Say(const std::string& text) {
    serialPort.Say(text);
    Tick();
  }
};

TEST_F(CounterTest, TakesTheRigsPlaceAndTellsTheEngine) {
  form.tmrStatus.enabled = false;  // each of its rounds tells the engine too
  EXPECT_EQ(Frequency(), "Arduino");
  EXPECT_EQ(form.lblFrequency.toolTip.Get(), "Arduino Chip Readout Frequency in kHz");
  EXPECT_TRUE(form.mnuArduinoFreq.enabled);
  Say("\r\n71");
  EXPECT_EQ(Frequency(), "Arduino");
  Tick();
  Say("00000\r\n");
  EXPECT_EQ(Frequency(), "007.100.00");
  EXPECT_EQ(form.lblFrequencyExpand.caption.Get(), "007.100.00");
  EXPECT_EQ(rig.state.scaleAnchorHz, 7100000);
  EXPECT_EQ(Status(), "7100000");
  // Every third count is written, if it is another one.
  const std::vector<std::pair<int, int>> counts{
      {7200000, 7100000}, {7300000, 7100000}, {7300000, 7300000},
      {7400000, 7300000}, {7300000, 7300000}, {7300000, 7300000},
      {7500000, 7300000}, {7500000, 7300000}, {7600000, 7600000}};
  for (const auto& [count, written] : counts) {
    Say("1000000\n" + std::to_string(count) + "\n");
    EXPECT_EQ(Status(), std::to_string(written)) << count;
  }
  EXPECT_EQ(Frequency(), "007.600.00");
  EXPECT_FALSE(form.lblFrequency.stale);
  Pass(seconds(6));
  EXPECT_EQ(Frequency(), "007.600.00");
  EXPECT_TRUE(form.lblFrequency.stale) << "nothing was counted for a while";
  Say("7500000\n");
  EXPECT_FALSE(form.lblFrequency.stale);

  // A server comes whose rig is off, and then is switched on.
  rig1.Tune(0);
  Reachable(true);
  Pass(seconds(15));
  rig1.Select(PM_SSB_U);  // and is heard
  EXPECT_EQ(Frequency(), "007.500.00");
  rig1.Tune(14250000);
  Pass(seconds(1));
  EXPECT_EQ(rig.state.RealRigFrequency, 14250000);
  int32_t last = 0;
  connections += program->shutdown.lastFrequency.Listen([&](int32_t hertz) { last = hertz; });
  EXPECT_TRUE(Close());
  EXPECT_EQ(last, 7500000);
  EXPECT_FALSE(serialPort.IsOpen());
  EXPECT_EQ(PortAfter([this] { Pass(seconds(9)); }), Texts{}) << "it stays closed";
}

TEST_F(CounterTest, AnErrorIsShownAndTheAnalyserGoesOn) {
  StartCapture();
  Say("\n7100000\n");
  serialPort.HangUp(ENOENT);
  Tick();
  EXPECT_EQ(Frequency(), "Com error");
  EXPECT_TRUE(form.Timer1.enabled);
  EXPECT_TRUE(form.tmrFreqcount.enabled);
  serialPort.openError = 0;
  Pass(Milliseconds(1855));
  Say("00000\n");  // the rest of a number
  EXPECT_EQ(Frequency(), "Arduino") << "there again, nothing counted yet";
  Say("7100000\n");
  EXPECT_EQ(Frequency(), "007.100.00");

  // Keying and counting share the port.
  On();
  Off();
  Say("7200000\n");
  EXPECT_EQ(Frequency(), "007.200.00");
  form.mnuArduinoFreq.Click();
  EXPECT_EQ(Frequency(), kRigOffLine);
  EXPECT_TRUE(serialPort.IsOpen()) << "for the letters";
  Say("7300000\n");
  EXPECT_EQ(Frequency(), kRigOffLine);
  form.mnuArduinoFreq.Click();
  Say("7\n7400000\n");
  EXPECT_EQ(Frequency(), "007.400.00");
  Configure(Config("COM"));
  EXPECT_EQ(Frequency(), kRigOffLine);
  EXPECT_FALSE(form.tmrFreqcount.enabled);
  EXPECT_FALSE(form.mnuArduinoFreq.enabled);
  Configure(Config("ARDUINO"));
  EXPECT_EQ(Frequency(), "Arduino") << "the rig is off line still";
}

// A rig that is linked is not replaced, nor one where the port has no Arduino.
TEST_F(CounterTest, IsOfferedOnlyWhereItIsNeeded) {
  for (const auto& [reachable, method, offered] :
       {std::tuple{true, "ARDUINO", false}, {false, "COM", false}, {false, "ARDUINO", true}}) {
    serialPort.Close();
    Reachable(reachable);
    files.files["/opt/engine/RS232.cfg"] = Config(method);
    Restart();
    Main& main = Form();
    Start();
    scheduler.Advance(seconds(1));
    EXPECT_EQ(main.mnuArduinoFreq.enabled, offered) << method;
    EXPECT_EQ(main.tmrFreqcount.enabled, offered) << method;
  }
}

}  // namespace
}  // namespace velt
