// The guardian as a process of its own: it releases the rig of a real server, peers that behave
// badly, and a device.
#include "adapters/guardian/guardian_process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <csignal>

#include "adapters/qt/qt_scheduler.h"
#include "adapters/rigctld/live_loop.h"
#include "support/rig_recipe.h"
#include "support/serial_line.h"

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
    guardian = std::make_unique<GuardianProcess>(scheduler, std::move(spawn));
    connection = guardian->told.Listen([this](const GuardianNews& told) { news.push_back(told); });
  }
  void TearDown() override {
    guardian.reset();
    // Everything is released by now or given up soon.
    while (::waitpid(-1, nullptr, 0) > 0) {
    }
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
}

TEST_F(GuardianProcessTest, APeerThatDoesNotAnswerOrSaysMegabytesFails) {
  QTcpServer silent, loud;
  QObject::connect(&loud, &QTcpServer::newConnection,
                   [&] { loud.nextPendingConnection()->write(QByteArray(8'000'000, 'R')); });
  for (QTcpServer* server : {&silent, &loud}) {
    server->listen(QHostAddress::LocalHost);
    guardian->Follow(Hold(RigRecipe(server->serverPort())));
  }
  EXPECT_TRUE(LoopUntil([&] { return Count(GuardianNews::Kind::FollowUpFailed) == 2; }));
  EXPECT_EQ(Present(), first) << "the same as ever";
}

TEST_F(GuardianProcessTest, IsReplacedAndHoldsAgain) {
  DummyRig rig;
  HoldKeyed(rig);
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
}

TEST_F(GuardianProcessTest, ADeviceIsReleasedAndClosed) {
  for (const bool programGone : {false, true}) {
    SerialLine line;
    const int device = ::open(line.Path().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    const uint32_t ticket = Hold({.descriptor = device, .lowersLines = true, .release = "R"});
    ::close(device);
    EXPECT_FALSE(line.IsClosed());
    programGone ? guardian.reset() : guardian->Follow(ticket);
    EXPECT_TRUE(LoopUntil([&] { return line.IsClosed(); }));
    EXPECT_EQ(line.Heard(), "R");
    EXPECT_TRUE(LoopUntil([&] { return Count(GuardianNews::Kind::FollowUpDone) == 1; }));
  }
}

TEST(TheProgramsGuardian, HasNothingOfTheProgram) {
  const TempFolder home;
  Process program({VELT_PROGRAM, "--headless", "--seconds", "60"},
                  {.environment = {"HOME=" + home.Path().string(),
                                   "DISPLAY=", "XDG_CONFIG_HOME=", "PULSE_SERVER=unix:/nowhere"}});
  int64_t guardian = 0;
  ASSERT_TRUE(LoopUntil([&] { return (guardian = GuardianOf(program.Id())) != 0; }));
  const auto files = "/proc/" + std::to_string(guardian) + "/fd";
  // The socket and the error output.
  EXPECT_TRUE(LoopUntil([&] { return FilesIn(files).size() == 2; }));
  EXPECT_EQ(::getsid(static_cast<pid_t>(guardian)), guardian);
}

}  // namespace
}  // namespace velt
