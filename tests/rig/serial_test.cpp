// The serial port as a way to key and as the rig's counter.
#include "rig/count_reader.h"
#include "rig/shown_frequency.h"
#include "rig_fixture.h"
#include "support/story.h"
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
  // What came to the port by each of these.
  std::string PortAfter(const std::function<void()>& action) {
    serialPort.Take();
    action();
    Pass(Milliseconds(0));
    std::string all;
    for (const std::string& what : serialPort.Take()) all += (all.empty() ? "" : ", ") + what;
    return all;
  }
  std::string Configure(const std::string& text) {
    files.files["/opt/engine/RS232.cfg"] = text;
    return PortAfter([this] { rig.serial.ReadRS232(); });
  }
  std::string On() {
    return PortAfter([this] { form.mnuPTT_ON.Click(); });
  }
  std::string Off() {
    return PortAfter([this] { form.mnuPTT_OFF.Click(); });
  }
  std::string PortWithin(Milliseconds span) {
    return PortAfter([this, span] { Pass(span); });
  }
  bool ShowsTransmit() { return form.optTXRX[0].value && !form.optTXRX[1].value; }
};

TEST_F(SerialTest, TheLinesKeyOnlyWhatTheGuardianHoldsAndTheOpenPortIsTheTransmitState) {
  // At the moment when a line goes up the guardian knows how to lower it.
  const auto connection = serialPort.happened.Listen([this](const std::string& what) {
    if (!what.ends_with(" up")) return;
    const ReleaseRecipe& held = guardian.held.at(guardian.last);
    EXPECT_TRUE(held.lowersLines && held.descriptor == serialPort.Descriptor());
  });
  Link();
  for (const auto& [line, keyed, released] :
       {std::tuple{"DTR", "open, DTR up", "DTR down, close"},
        {"RTS", "open, RTS up", "RTS down, close"},
        {"X", "open, DTR up, RTS up", "DTR down, RTS down, close"}}) {
    SCOPED_TRACE(line);
    EXPECT_EQ(Configure(Config("COM", line)), "");
    EXPECT_EQ(On(), keyed);
    EXPECT_TRUE(serialPort.number == 3 && serialPort.settings == "9600,N,8,1");
    EXPECT_TRUE(ShowsTransmit() && sleepLock.held);
    EXPECT_EQ(form.lblTRXMode.caption.Get(), "RX") << "the status poller's to set";
    EXPECT_EQ(On(), "");
    form.lblTRXMode.caption = "TX";
    EXPECT_EQ(Off(), released);
    EXPECT_EQ(form.lblTRXMode.caption.Get(), "TX");
    form.lblTRXMode.caption = "RX";
    EXPECT_FALSE(ShowsTransmit());
    // Keyed again before the first release is confirmed: the guardian gets the new port.
    EXPECT_EQ(On(), keyed);
    Off();
    Pass(seconds(2));
    EXPECT_FALSE(!guardian.held.empty() || sleepLock.held);
  }
  EXPECT_EQ(writes1.Take(), Texts{}) << "the CAT link has no part in it";
  // The player keys by CAT and ends only that.
  rig.ptt.PTT_ON(TransmitOwner::Engine);
  rig.ptt.PTT_ON(TransmitOwner::Player);
  EXPECT_TRUE(rig1.Transmits() && serialPort.Lines());
  rig.ptt.PTT_OFF(TransmitOwner::Player);
  scheduler.RunPosted();
  EXPECT_TRUE(!rig1.Transmits() && serialPort.Lines() && ShowsTransmit());
  rig.ptt.PTT_ON(TransmitOwner::Player);
  Off();
  EXPECT_FALSE(rig1.Transmits() || serialPort.Lines() || ShowsTransmit());
}

TEST_F(SerialTest, WhatCannotBeKeyedSafelyIsNotKeyedAndWhatIsLostStaysClosed) {
  Configure(Config("COM"));
  guardian.present = false;
  EXPECT_EQ(On(), "open, close") << "no line was raised";
  EXPECT_EQ(Message(), "Not keyed: nothing would release the transmitter after a crash");
  guardian.present = true;
  serialPort.openError = EACCES;
  for (const std::string method : {"COM", "ARDUINO"}) {
    Configure(Config(method));
    On();
    EXPECT_EQ(Message(), Notice());
    EXPECT_EQ(Notice(), "Not keyed: the serial port could not be opened: Permission denied");
  }
  Configure("3,9600,N,8,1");  // cut off: the method is CAT
  On();
  EXPECT_EQ(Message(), "No link to the rig: nothing was sent");
  EXPECT_FALSE(ShowsTransmit() || !guardian.held.empty());

  serialPort.openError = 0;
  Configure(Config("COM"));
  On();
  Pass(seconds(1));
  EXPECT_EQ(PortAfter([this] { serialPort.HangUp(); }), "DTR down, RTS down, close");
  EXPECT_FALSE(ShowsTransmit());
  EXPECT_EQ(Notice(), TransmitGuard::kLostWhileKeyed);
  EXPECT_EQ(PortWithin(minutes(11)), "");
  EXPECT_EQ(Off(), "");
  On();
  EXPECT_TRUE(serialPort.Lines() && guardian.held.size() == 1U);
  Off();
  Pass(seconds(2));
  EXPECT_EQ(Notice(), "") << "seen to be released";
  EXPECT_TRUE(guardian.held.empty());
}

TEST_F(SerialTest, LettersWaitUntilTheArduinoIsReady) {
  for (const char* story : {"on; on; 1999; 1 > TT; off > R",
                            // Its first line, but not one that was on its way before the reset.
                            "on; say 1\n; 400; say rea; say dy\n > T", "on; off; on; 2000 > RT",
                            "on; stand > R"}) {  // too late for the key
    Configure(Config("ARDUINO"));
    Play(story, [this](const std::string& step, const std::string&) {
      if (step == "on") return On();
      if (step == "off") return Off();
      if (step == "stand") return PortAfter([this] { scheduler.Pass(seconds(20)); });
      if (!step.starts_with("say ")) return PortWithin(Milliseconds(std::stoi(step)));
      return PortAfter([&] { serialPort.Say(step.substr(4)); });
    });
    Off();
    Pass(seconds(5));
    EXPECT_TRUE(guardian.held.empty());
    Configure("0");
  }
}

TEST_F(SerialTest, AnArduinoIsReleasedByLettersAlsoWhenItWasLost) {
  Configure(Config("ARDUINO"));
  Pass(seconds(2));
  EXPECT_EQ(On(), "T");
  const uint32_t ticket = guardian.last;
  const ReleaseRecipe& promise = guardian.held.at(ticket);
  EXPECT_TRUE(promise.release == "R" && !promise.lowersLines);
  serialPort.HangUp(ENOENT);
  Pass(seconds(7));
  EXPECT_EQ(Notice(), TransmitGuard::kLostWhileKeyed);
  EXPECT_FALSE(ShowsTransmit());
  serialPort.openError = 0;
  EXPECT_EQ(PortWithin(Milliseconds(1400)), "open, DTR up, RTS up");
  EXPECT_NE(guardian.last, ticket) << "held by the port that is open now";
  EXPECT_EQ(guardian.held.size(), 1U);
  EXPECT_EQ(PortWithin(seconds(2)), "R");
  Pass(seconds(2));
  EXPECT_EQ(Notice(), "");
  EXPECT_TRUE(guardian.held.empty());
  EXPECT_EQ(Off(), "R") << "the operator's always goes out";

  // A port that takes nothing: one "R" waits in it, and it may still be on.
  serialPort.takes = false;
  On();
  EXPECT_EQ(Off(), "R");
  EXPECT_EQ(PortWithin(seconds(11)), "");
  EXPECT_EQ(Notice(), TransmitGuard::kMayStillBeOn);
}

TEST_F(SerialTest, WhatWasKeyedIsReleasedTheWayItWasKeyed) {
  Link();
  const std::string down = "DTR down, RTS down, close", letter = "R, " + down;
  for (const auto& [before, after, port] :
       {std::tuple{Config("COM"), Config("ARDUINO"), down},
        {Config("COM"), Config("COM", "DTR"), down},
        {Config("COM"), Config("COM"), ""},
        {Config("ARDUINO"), Config("COM"), letter},
        {Config("ARDUINO"), Config("ARDUINO", "BOTH", 4), letter},
        {Config("ARDUINO"), Config("ARDUINO"), ""}}) {
    SCOPED_TRACE(before + after);
    Configure(before);
    Pass(seconds(3));
    On();
    guardian.followed = 0;
    EXPECT_TRUE(Configure(after).starts_with(port));  // then the new one may open
    EXPECT_EQ(guardian.followed, port.empty() ? 0U : 1U) << "it follows up what is left behind";
    EXPECT_EQ(ShowsTransmit(), port.empty());
    Off();
    EXPECT_FALSE(rig1.Transmits() || ShowsTransmit());
    Pass(seconds(5));
    EXPECT_TRUE(guardian.held.empty());
    Configure("0");
  }
}

TEST(CountReader, ShowsNoPieceOfANumber) {
  // What is sent ("|" is a pause), and the count.
  using Row = std::pair<std::string, std::string>;
  for (const auto& [sent, count] :
       {Row{"00000\r\n", ""},  // the rest of a number, as the port is opened
        Row{"|7100\r\n7200", "7100"}, Row{"7100000|", ""}, Row{"\n0\n", "0"},
        Row{"\n71|00000", ""},                  // it ends its lines: the rest is still to come
        Row{"|7100000|14250000|", "14250000"},  // no line ends: whole once nothing follows
        Row{"\n 7100000 \n\r\nnoise\n", "7100000"},
        Row{"\n7 100 000\n7,100,000\n7.1\n-7\n+7\nF7\n2147483648\n", ""},
        Row{"\n2147483647\n", "2147483647"}, Row{std::string("\n71\0\n", 5), ""},
        Row{"\n" + std::string(100'000, '7') + "\n", ""}}) {
    CountReader reader;
    for (const char& byte : sent) byte == '|' ? reader.Pause() : reader.Feed({&byte, 1});
    EXPECT_EQ(reader.Take(), count) << sent.substr(0, 40);
    EXPECT_EQ(reader.Take(), "");
  }
  EXPECT_EQ(CountText(475000, 1), "000.475.00");
  EXPECT_EQ(CountText(1296100000, 1), "1296.100.00");
}

struct CounterTest : SerialTest {
  void StartCounter(bool linked) {
    files.files["/opt/engine/velt.jar"] = "";
    files.files["/opt/engine/RS232.cfg"] = Config("ARDUINO");
    store.Save("VELT-SA", "ArduinoFreq", "True");
    Reachable(linked);
    Start();
    Pass(seconds(1));
  }
  // What the window shows then.
  std::string Said(const std::string& text) {
    serialPort.Say(text);
    Pass(Milliseconds(150));
    return Frequency();
  }
};

TEST_F(CounterTest, ALinkedRigIsNotReplaced) {
  StartCounter(true);
  EXPECT_FALSE(form.mnuArduinoFreq.enabled || form.tmrFreqcount.enabled);
}

TEST_F(CounterTest, ARigThatComesGoesFirst) {
  StartCounter(false);
  Said("\n7500000\n");
  rig1.Tune(0);  // it is still off
  Reachable(true);
  Pass(seconds(15));
  rig1.Select(PM_SSB_U);  // and is heard
  EXPECT_EQ(Frequency(), "007.500.00");
  rig1.Tune(14250000);
  Pass(seconds(1));
  EXPECT_EQ(rig.state.RealRigFrequency, 14250000);
}

TEST_F(CounterTest, TakesTheRigsPlaceAndTellsTheEngine) {
  StartCounter(false);
  form.tmrStatus.enabled = false;  // each of its rounds tells the engine too
  EXPECT_EQ(Said("\r\n71"), "Arduino");
  // Every third count is written, if it is another one.
  using Row = std::pair<const char*, const char*>;
  for (const auto& [count, written] :
       {Row{"00000", "7100000"}, Row{"\n7200000", "7100000"}, Row{"\n7300000", "7100000"},
        Row{"\n7300000", "7300000"}, Row{"\n7400000", "7300000"}, Row{"\n7300000", "7300000"}}) {
    Said(count + std::string("\n"));
    EXPECT_TRUE(files.files["/opt/engine/STATUSRX.CFG"].starts_with(written)) << count;
  }
  EXPECT_EQ(Frequency(), "007.300.00");
  form.tmrStatus.enabled = true;
  EXPECT_EQ(Said("7250000\n"), "007.250.00");
  EXPECT_FALSE(form.lblFrequency.stale);
  Pass(seconds(6));
  EXPECT_TRUE(files.files["/opt/engine/STATUSRX.CFG"].starts_with("7250000"));
  EXPECT_TRUE(form.lblFrequency.stale) << "nothing was counted for a while";
  Said("7500000\n");
  EXPECT_FALSE(form.lblFrequency.stale);
  EXPECT_TRUE(On().starts_with("T"));
  EXPECT_TRUE(PortAfter([this] { EXPECT_TRUE(Close()); }).starts_with("R"));
  EXPECT_TRUE(files.files["/opt/engine/STATUSRX.CFG"].starts_with("7500000"));
  EXPECT_EQ(PortWithin(seconds(9)), "") << "it stays closed";
  EXPECT_FALSE(serialPort.IsOpen());
}

TEST_F(CounterTest, AnErrorIsShownAndTheAnalyserGoesOn) {
  StartCounter(false);
  StartCapture();
  Said("\n7100000\n");
  serialPort.HangUp(ENOENT);
  EXPECT_EQ(Said(""), "Com error");
  EXPECT_TRUE(form.Timer1.enabled && form.tmrFreqcount.enabled);
  serialPort.openError = 0;
  Pass(Milliseconds(1855));
  EXPECT_EQ(Said("00000\n"), "Arduino") << "the rest of a number: nothing counted yet";
  EXPECT_EQ(Said("7100000\n"), "007.100.00");
  // Keying and counting share the port.
  On();
  Off();
  EXPECT_EQ(Said("7200000\n"), "007.200.00");
  form.mnuArduinoFreq.Click();
  EXPECT_EQ(Said("7300000\n"), kRigOffLine);
  EXPECT_TRUE(serialPort.IsOpen()) << "for the letters";
  form.mnuArduinoFreq.Click();
  Configure(Config("COM"));
  EXPECT_EQ(Frequency(), kRigOffLine);
  EXPECT_FALSE(form.tmrFreqcount.enabled || form.mnuArduinoFreq.enabled);
}

}  // namespace
}  // namespace velt
