// Whatever ends the program, or makes it stand still, while it transmits: the rig receives.
#include <gtest/gtest.h>

#include <QElapsedTimer>

#include "adapters/rigctld/fake_rig.h"
#include "adapters/rigctld/live_loop.h"
#include "e2e/window_driver.h"
#include "support/login_manager.h"
#include "support/x_desktop.h"

namespace velt {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr seconds kAtOnce{2};
constexpr seconds kWithACore{6};

// A program of its own, linked to the rig at the address.
class Station {
 public:
  Station(const std::string& address, const std::vector<std::string>& environment = {})
      : address_(address), window(Start(environment)) {}

  Process& Program() { return window->Program(); }
  void PressTransmit() const { window->Click(window->form.optTXRX[0].place); }
  void PressReceive() const { window->Click(window->form.optTXRX[1].place); }
  bool Linked(const std::string& frequency = "145.000.00") const {
    return Reads(window->form.lblFrequency, 21, frequency);
  }
  bool ShowsReceive() const { return Reads(window->form.lblTRXMode, 12, "RX"); }
  bool Reads(const Label& label, int pixelSize, const std::string& text) const {
    const auto reads = [&] {
      return window->ReadLabel(label.place, pixelSize, Qt::AlignCenter, {text}) == text;
    };
    return LoopUntil(reads, seconds(5));
  }
  bool OpenDialog() const {
    window->Click(window->form.Image3.place);
    return window->WaitForWindow("OmniRig Configuration & Status");
  }
  // Chooses the last item of the File menu, "Close VELT-SA ".
  void ChooseClose() const {
    window->Click(window->form.Image2.place);
    window->Press({"Up", "Return"});
  }
  // The program is gone, and with it, after its work, the guardian.
  bool Ends() {
    const int64_t guardian = guardian_;
    return Program().WaitForEnd(seconds(5)) &&
           LoopUntil([guardian] { return !IsAlive(guardian); }, seconds(15));
  }

 private:
  std::unique_ptr<WindowDriver> Start(const std::vector<std::string>& environment) {
    std::vector<std::string> all{
        "HOME=" + home_.Path().string(), "XDG_RUNTIME_DIR=" + home_.Path().string(),
        "XDG_CONFIG_HOME=" + home_.Path().string(), "PULSE_SERVER=unix:/nowhere"};
    all.insert(all.end(), environment.begin(), environment.end());
    auto driver = std::make_unique<WindowDriver>(std::vector<std::string>{"--rig1", address_}, all);
    guardian_ = GuardianOf(driver->Program().Id());
    return driver;
  }

  const TempFolder home_;
  const std::string address_;
  int64_t guardian_ = 0;

 public:
  const std::unique_ptr<WindowDriver> window;
};

bool Answers(DummyRig& rig, const std::string& answer, milliseconds limit = seconds(5)) {
  return WaitUntil([&] { return rig.Ask("t") == answer; }, limit);
}

bool Key(Station& station, DummyRig& rig) {
  if (!station.Linked()) return false;
  station.PressTransmit();
  return Answers(rig, "1");
}

TEST(EndsWalk, EveryEndOfTheProgramReleasesTheTransmitter) {
  std::unique_ptr<XDesktop> display;  // for the one that loses it
  const auto signal = [](ProcessSignal which) {
    return [which](Station& station) { station.Program().Signal(which); };
  };
  struct End {
    const char* name;
    std::function<void(Station&)> happens;
    seconds limit = kAtOnce;
  };
  const std::vector<End> ends{
      {"the display's server dies", [&](Station&) { display->Kill(); }},
      {"the server takes its client away", [](Station& s) { s.window->KillClient(); }},
      {"SIGTERM", signal(ProcessSignal::Terminate)},
      {"SIGINT", signal(ProcessSignal::Interrupt)},
      {"SIGHUP", signal(ProcessSignal::HangUp)},
      {"SIGQUIT", signal(ProcessSignal::Quit), kWithACore},
      {"SIGUSR1", signal(ProcessSignal::User)},
      {"SIGALRM", signal(ProcessSignal::Alarm)},
      {"SIGSEGV", signal(ProcessSignal::Crash), kWithACore},
      {"SIGKILL", signal(ProcessSignal::Kill)},
      {"its group of processes killed", [](Station& s) { s.Program().KillGroup(); }},
      {"Alt+F4", [](Station& s) { s.window->Close(); }},
      {"\"Close VELT-SA \"", [](Station& s) { s.ChooseClose(); }},
  };
  for (const End& end : ends) {
    SCOPED_TRACE(end.name);
    DummyRig rig;
    std::vector<std::string> environment;
    if (&end == &ends.front()) {
      display = std::make_unique<XDesktop>();
      environment = display->Environment();
    }
    Station station(rig.Address(), environment);
    ASSERT_TRUE(Key(station, rig));
    QElapsedTimer since;
    since.start();
    end.happens(station);
    EXPECT_TRUE(Answers(rig, "0", end.limit));
    std::printf("%5lld ms: %s\n", static_cast<long long>(since.elapsed()), end.name);
    EXPECT_TRUE(station.Ends());
    EXPECT_EQ(rig.Ask("t"), "0");
    EXPECT_EQ(station.window->Said().find("may still be on"), std::string::npos);
  }
}

TEST(EndsWalk, LeavingTheRigReleasesItAndNoOther) {
  DummyRig rig, strangers;
  strangers.Ask("F 7074000");
  strangers.Ask("T 1");
  {
    Station station(rig.Address());
    ASSERT_TRUE(Key(station, rig));
    ASSERT_TRUE(station.OpenDialog());
    station.window->Press({"alt+s"});
    EXPECT_TRUE(Answers(rig, "0", kAtOnce)) << "Stop";
    station.window->Press({"alt+s"});
    ASSERT_TRUE(station.window->Dismiss("OmniRig Configuration & Status"));

    ASSERT_TRUE(Key(station, rig));
    ASSERT_TRUE(station.OpenDialog());
    station.window->Press({"alt+v"});
    station.window->Type(strangers.Address());
    station.window->Press({"alt+a"});
    EXPECT_TRUE(Answers(rig, "0", kAtOnce)) << "another address";
    ASSERT_TRUE(station.window->Dismiss("OmniRig Configuration & Status"));
    EXPECT_TRUE(station.Linked("7.074.00"));
    station.window->Close();
    EXPECT_TRUE(station.Ends());
  }
  EXPECT_EQ(rig.Ask("t"), "0");
  EXPECT_EQ(strangers.Ask("t"), "1") << "what others key is theirs";
}

TEST(EndsWalk, AProgramThatStoodStillSaysSoAndKeysAgain) {
  DummyRig rig;
  Station station(rig.Address());
  ASSERT_TRUE(Key(station, rig));
  station.Program().Signal(ProcessSignal::Stop);
  EXPECT_FALSE(Answers(rig, "0", seconds(4))) << "a program may be busy for a moment";
  EXPECT_TRUE(Answers(rig, "0", seconds(3)));
  // The guardian has looked twice before the program comes back.
  EXPECT_FALSE(Answers(rig, "1", seconds(1)));
  station.Program().Signal(ProcessSignal::Continue);
  EXPECT_TRUE(station.Reads(station.window->form.lblNotice, 11,
                            "Transmission ended: the program had stood still"));
  EXPECT_TRUE(station.ShowsReceive());
  EXPECT_EQ(rig.Ask("t"), "0");

  station.PressTransmit();
  EXPECT_TRUE(Answers(rig, "1"));
  EXPECT_FALSE(Answers(rig, "0", milliseconds(1500))) << "it is a transmission of its own";
  station.PressReceive();
  EXPECT_TRUE(Answers(rig, "0"));
  EXPECT_TRUE(station.ShowsReceive());
}

TEST(EndsWalk, TheComputersSleepWaitsForTheRelease) {
  LoginManager manager;
  DummyRig rig;
  Station station(rig.Address(), manager.Environment());
  ASSERT_TRUE(Key(station, rig));
  ASSERT_TRUE(LoopUntil([&] { return manager.Locked(); }));
  manager.GoToSleep();
  ASSERT_TRUE(LoopUntil([&] { return !manager.Locked(); }, kWithACore));
  EXPECT_EQ(rig.Ask("t"), "0");
  EXPECT_TRUE(station.ShowsReceive());
}

TEST(EndsWalk, ARefusedKeyShowsReceiveAgain) {
  DummyRig rig;
  rig.Kill();
  ASSERT_TRUE(rig.Start(false));
  Station station(rig.Address());
  ASSERT_TRUE(station.Linked());
  station.PressTransmit();
  EXPECT_TRUE(station.Reads(station.window->form.lblMessage, 11, "The rig refused to transmit"));
  EXPECT_TRUE(station.ShowsReceive());
}

// A server whose rig says yes to a release and goes on transmitting.
class DeafRig {
 public:
  DeafRig() {
    EnsureLoop();
    server_.listen(QHostAddress::LocalHost);
    rig_.instead["+T 0"] = FakeRig::Done("set_ptt: 0");
    QObject::connect(&server_, &QTcpServer::newConnection, [this] {
      QTcpSocket* socket = server_.nextPendingConnection();
      QObject::connect(socket, &QTcpSocket::readyRead, [this, socket] {
        while (socket->canReadLine()) {
          socket->write(rig_.Answer(socket->readLine().trimmed().toStdString()).c_str());
        }
      });
    });
  }
  std::string Address() const { return "127.0.0.1:" + std::to_string(server_.serverPort()); }
  bool Keyed() const { return rig_.keyed == 1; }
  auto Releases() const { return std::ranges::count(rig_.lines, "+T 0"); }

 private:
  QTcpServer server_;
  FakeRig rig_;
};

TEST(EndsWalk, ARigThatStaysKeyedIsTold) {
  DeafRig rig;
  Station station(rig.Address());
  ASSERT_TRUE(station.Linked("14.074.00"));
  station.PressTransmit();
  ASSERT_TRUE(LoopUntil([&] { return rig.Keyed(); }));
  station.Program().Signal(ProcessSignal::Terminate);
  const auto told = [&] {
    return station.window->Said().find("velt-sa: the transmitter at " + rig.Address() +
                                       " could not be released and may still be on") !=
           std::string::npos;
  };
  EXPECT_TRUE(LoopUntil(told, seconds(12))) << station.window->Said();
  EXPECT_GT(rig.Releases(), 20);
  EXPECT_TRUE(station.Ends());
}

}  // namespace
}  // namespace velt
