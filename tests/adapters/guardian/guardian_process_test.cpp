// The guardian as a process of its own: it releases the rig of a real server, peers that behave
// badly, and a device.
#include "adapters/guardian/guardian_process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <algorithm>
#include <csignal>
#include <set>

#include "adapters/qt/qt_scheduler.h"
#include "adapters/rigctld/live_loop.h"
#include "support/rig_recipe.h"

namespace velt {
namespace {

// Everything of this test's own process: the program's side.
struct GuardianProcessTest : testing::Test {
  QtScheduler scheduler;
  std::unique_ptr<GuardianProcess> guardian;
  std::vector<GuardianNews> news;
  Connection connection;
  pid_t first = 0;

  void SetUp() override {
    EnsureLoop();
    GuardianSpawn spawn = SpawnGuardian();
    first = spawn.process;
    Use(std::move(spawn));
  }
  void TearDown() override {
    guardian.reset();
    // Everything is released by now or given up soon.
    while (::waitpid(-1, nullptr, 0) > 0) {
    }
  }
  void Use(GuardianSpawn spawn) {
    guardian = std::make_unique<GuardianProcess>(scheduler, std::move(spawn));
    connection = guardian->told.Listen([this](const GuardianNews& told) { news.push_back(told); });
  }
  static pid_t Present() { return static_cast<pid_t>(GuardianOf(::getpid())); }
  uint32_t Hold(const ReleaseRecipe& recipe) {
    uint32_t ticket = 0;
    EXPECT_TRUE(LoopUntil([&] { return ticket != 0 || (ticket = guardian->Hold(recipe)) != 0; }));
    return ticket;
  }
  void HoldKeyed(DummyRig& rig) {
    Hold(RigRecipe(rig.Port()));
    ASSERT_EQ(rig.Ask("T 1"), "RPRT 0");
  }
  auto Count(GuardianNews::Kind kind) const {
    return std::ranges::count(news, kind, &GuardianNews::kind);
  }
};

TEST_F(GuardianProcessTest, SilenceEndsATransmissionAndABeatKeepsIt) {
  DummyRig rig;
  for (int round = 1; round <= 2; ++round) {
    HoldKeyed(rig);
    const auto ends = [&] {
      guardian->Beat();
      return rig.Ask("t") != "1";
    };
    EXPECT_FALSE(LoopUntil(ends, std::chrono::milliseconds(3000)));
    EXPECT_TRUE(LoopUntil([&] { return rig.Ask("t") == "0"; }));
    EXPECT_TRUE(LoopUntil([&] { return Count(GuardianNews::Kind::ReleasedInSilence) == round; }));
  }
  guardian->Forget(Hold(RigRecipe(rig.Port())));
  ASSERT_EQ(rig.Ask("T 1"), "RPRT 0");
  guardian.reset();
  EXPECT_EQ(::waitpid(first, nullptr, 0), first);
  EXPECT_EQ(rig.Ask("t"), "1") << "none of ours any more";
}

// A server with its rig, keyed.
struct Peer {
  std::string name;
  bool released = false;  // what the guardian has to make of it
  int leastReleases = 1;  // until then
  bool answers = true;
  bool hangsUp = false;  // after each answer
  std::string greeting = {};
  int releases = 0;
  QTcpServer server{};

  uint16_t Listen() {
    server.listen(QHostAddress::LocalHost);
    QObject::connect(&server, &QTcpServer::newConnection, [this] {
      QTcpSocket* socket = server.nextPendingConnection();
      QObject::connect(socket, &QTcpSocket::readyRead, [this, socket] { Read(*socket); });
      socket->write(greeting.c_str());
    });
    return server.serverPort();
  }
  void Read(QTcpSocket& socket) {
    while (socket.canReadLine()) {
      const bool release = socket.readLine() == "+T 0\n";
      if (release) ++releases;
      if (answers) socket.write(release ? "set_ptt: 0\nRPRT 0\n" : "PTT: 0\nRPRT 0\n");
      if (hangsUp) socket.disconnectFromHost();
    }
  }
};

TEST_F(GuardianProcessTest, PeersThatBehaveBadly) {
  Peer peers[] = {
      {.name = "hangs up after each answer", .released = true, .hangsUp = true},
      {.name = "answers nothing", .leastReleases = 3, .answers = false},
      {.name = "says megabytes", .answers = false, .greeting = std::string(8'000'000, 'R')}};
  std::map<uint32_t, Peer*> tickets;
  for (Peer& peer : peers) tickets[Hold(RigRecipe(peer.Listen()))] = &peer;
  for (const auto& entry : tickets) guardian->Follow(entry.first);
  ASSERT_TRUE(LoopUntil([&] { return news.size() == tickets.size(); }));
  for (const GuardianNews& told : news) {
    const Peer& peer = *tickets.at(told.ticket);
    SCOPED_TRACE(peer.name);
    EXPECT_EQ(told.kind, peer.released ? GuardianNews::Kind::FollowUpDone
                                       : GuardianNews::Kind::FollowUpFailed);
    EXPECT_GE(peer.releases, peer.leastReleases);
    EXPECT_LE(peer.releases, peer.released ? 1 : 4);
  }
  EXPECT_EQ(Present(), first) << "the same as ever";
}

TEST_F(GuardianProcessTest, IsReplacedHoldsAgainAndTellsTheLogHowItEnded) {
  const TempFolder folder;
  DummyRig rig;
  guardian->SetLogFile((folder / "log").string());
  HoldKeyed(rig);
  Hold(RigRecipe(FreePort()));  // nobody is there
  pid_t now = first;
  for (const int signal : {SIGKILL, SIGSTOP}) {  // one that is stopped is none either
    const auto back = Count(GuardianNews::Kind::Back) + 1;
    ::kill(now, signal);
    EXPECT_TRUE(LoopUntil([&] {
      guardian->Beat();
      return Count(GuardianNews::Kind::Back) == back;
    }));
    EXPECT_NE(Present(), now);
    now = Present();
  }
  EXPECT_EQ(rig.Ask("t"), "1");
  for (const int harmless : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGPIPE}) ::kill(now, harmless);
  guardian.reset();
  EXPECT_TRUE(LoopUntil([&] { return rig.Ask("t") == "0"; }));
  EXPECT_TRUE(LoopUntil([&] { return !IsAlive(now); }));
  const std::string log = folder.Read("log");
  for (const char* said : {"velt.guardian released", "may still be on"}) {
    EXPECT_NE(log.find(said), std::string::npos) << log;
  }
}

TEST_F(GuardianProcessTest, NothingIsHeldWhileThereIsNone) {
  const uint16_t port = FreePort();
  for (const char* host : {"", "localhost", "127.0.0.1 ", "::g", "fe80::1%nowhere"}) {
    ReleaseRecipe recipe = RigRecipe(port);
    recipe.host = host;
    EXPECT_EQ(guardian->Hold(recipe), 0U) << host;
  }
  rlimit before{};
  ::getrlimit(RLIMIT_NOFILE, &before);
  rlimit none = before;
  none.rlim_cur = 0;  // no socket can be had
  ::setrlimit(RLIMIT_NOFILE, &none);
  Use({});
  EXPECT_EQ(guardian->Hold(RigRecipe(port)), 0U);
  ::setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_TRUE(LoopUntil([&] { return Count(GuardianNews::Kind::Back) == 1; }));
  const uint32_t ticket = guardian->Hold(RigRecipe(port));
  EXPECT_NE(ticket, 0U);
  guardian->Forget(ticket);
}

TEST_F(GuardianProcessTest, ADeviceIsReleasedAndClosed) {
  for (const bool programGone : {false, true}) {
    int master = -1, slave = -1;
    ASSERT_EQ(::openpty(&master, &slave, nullptr, nullptr, nullptr), 0);
    const Descriptor reader(master);
    ::fcntl(master, F_SETFL, O_NONBLOCK);
    const uint32_t ticket =
        Hold({.descriptor = slave, .lowersLines = true, .release = std::string("R")});
    ::close(slave);
    std::string written;
    const auto isClosed = [&] {
      for (char byte = 0; ::read(master, &byte, 1) == 1;) written += byte;
      return errno == EIO;
    };
    EXPECT_FALSE(isClosed());
    programGone ? guardian.reset() : guardian->Follow(ticket);
    EXPECT_TRUE(LoopUntil(isClosed));
    EXPECT_EQ(written, "R");
    EXPECT_TRUE(LoopUntil([&] { return Count(GuardianNews::Kind::FollowUpDone) == 1; }));
  }
}

TEST(TheProgramsGuardian, HasNothingOfTheProgramAndEndsWithIt) {
  const TempFolder home;
  Process program({VELT_PROGRAM, "--headless", "--seconds", "60"},
                  {.environment = {"HOME=" + home.Path().string(),
                                   "DISPLAY=", "XDG_CONFIG_HOME=", "PULSE_SERVER=unix:/nowhere"}});
  int64_t guardian = 0;
  ASSERT_TRUE(LoopUntil([&] { return (guardian = GuardianOf(program.Id())) != 0; }));
  const auto hasNothing = [&guardian] {
    std::set<std::string> open;
    for (const auto& entry :
         std::filesystem::directory_iterator("/proc/" + std::to_string(guardian) + "/fd")) {
      open.insert(entry.path().filename().string());
    }
    return open == std::set<std::string>{"2", "3"};
  };
  EXPECT_TRUE(LoopUntil(hasNothing));
  EXPECT_EQ(::getsid(static_cast<pid_t>(guardian)), guardian);
  program.Kill();
  EXPECT_TRUE(LoopUntil([&] { return !IsAlive(guardian); }));
}

}  // namespace
}  // namespace velt
