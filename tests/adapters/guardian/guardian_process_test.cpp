// The guardian as a process of its own: it outlives what ends the program, and releases the rig of
// a real server, peers that behave badly, and a device.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <QElapsedTimer>
#include <algorithm>
#include <csignal>
#include <set>

#include "adapters/guardian/holder.h"
#include "adapters/rigctld/live_loop.h"

namespace velt {
namespace {

namespace fs = std::filesystem;

uint16_t PortOf(const DummyRig& rig) {
  return static_cast<uint16_t>(std::stoi(rig.Address().substr(rig.Address().find(':') + 1)));
}

// A program that keyed the transmitter at the port.
struct Holder {
  TempFolder folder;
  Process process;
  pid_t guardian = 0;

  explicit Holder(uint16_t port)
      : process({"/proc/self/exe", "--holder", std::to_string(port), (folder / "log").string()},
                {.output = folder / "output"}) {
    EXPECT_TRUE(WaitUntil([this] { return folder.Read("output").starts_with("holds"); },
                          std::chrono::seconds(10)));
    guardian = static_cast<pid_t>(GuardianOf(process.Id()));
    EXPECT_NE(guardian, 0);
  }
  bool GuardianEnds() const {
    return WaitUntil([this] { return !IsAlive(guardian); }, std::chrono::seconds(10));
  }
};

TEST(Guardian, ReleasesWhatAKilledProgramKeyed) {
  DummyRig rig;
  for (const int signal : {SIGKILL, SIGHUP}) {
    Holder holder(PortOf(rig));
    ASSERT_EQ(rig.Ask("t"), "1");
    for (const int harmless : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGPIPE}) {
      ::kill(holder.guardian, harmless);
    }
    QElapsedTimer since;
    since.start();
    ::kill(-holder.process.Id(), signal);  // the whole group
    EXPECT_TRUE(LoopUntil([&] { return rig.Ask("t") == "0"; })) << signal;
    RecordProperty("released_after_ms", static_cast<int>(since.elapsed()));
    EXPECT_TRUE(holder.GuardianEnds());
    EXPECT_NE(holder.folder.Read("log").find("velt.guardian released"), std::string::npos);
    EXPECT_EQ(holder.folder.Read("output"), "holds\n") << "all went well: nothing to be said";
  }
}

TEST(Guardian, ReleasesWhatAFrozenProgramKeyed) {
  DummyRig rig;
  Holder holder(PortOf(rig));
  ASSERT_EQ(rig.Ask("t"), "1");
  holder.process.Signal(ProcessSignal::Stop);
  EXPECT_TRUE(LoopUntil([&] { return rig.Ask("t") == "0"; }));
  EXPECT_TRUE(IsAlive(holder.guardian)) << "the program may come back";
}

TEST(Guardian, SaysWhenTheTransmitterMayStillBeOn) {
  Holder holder(FreePort());
  holder.process.Kill();
  EXPECT_TRUE(holder.GuardianEnds());
  for (const char* where : {"output", "log"}) {
    const std::string said = holder.folder.Read(where);
    EXPECT_NE(said.find("may still be on"), std::string::npos) << where << ": " << said;
  }
}

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
  uint32_t Hold(const ReleaseRecipe& recipe) {
    uint32_t ticket = 0;
    EXPECT_TRUE(LoopUntil([&] { return ticket != 0 || (ticket = guardian->Hold(recipe)) != 0; }));
    return ticket;
  }
  auto Count(GuardianNews::Kind kind) const {
    return std::ranges::count(news, kind, &GuardianNews::kind);
  }
};

TEST_F(GuardianProcessTest, SilenceEndsATransmissionAndABeatKeepsIt) {
  DummyRig rig;
  for (int round = 1; round <= 2; ++round) {
    Hold(RigRecipe(PortOf(rig)));
    ASSERT_EQ(rig.Ask("T 1"), "RPRT 0");
    const auto beatFor = std::chrono::milliseconds(3000);
    EXPECT_FALSE(LoopUntil(
        [&] {
          guardian->Beat();
          return rig.Ask("t") != "1";
        },
        beatFor));
    EXPECT_TRUE(LoopUntil([&] { return rig.Ask("t") == "0"; }));
    EXPECT_TRUE(LoopUntil([&] { return Count(GuardianNews::Kind::ReleasedInSilence) == round; }));
  }
  guardian->Forget(Hold(RigRecipe(PortOf(rig))));
  ASSERT_EQ(rig.Ask("T 1"), "RPRT 0");
  guardian.reset();
  EXPECT_EQ(::waitpid(first, nullptr, 0), first);
  EXPECT_EQ(rig.Ask("t"), "1") << "none of ours any more";
}

// A server with its rig.
class Peer {
 public:
  struct Manner {
    std::string name;
    bool released = false;            // what the guardian has to make of it
    int leastReleases, mostReleases;  // until then
    std::function<std::string(Peer&, bool release)> answer;
    std::string greeting = {};
    bool splits = false;
    bool hangsUp = false;
  };

  explicit Peer(const Manner& itsManner) : manner(itsManner) {
    server_.listen(QHostAddress::LocalHost);
    QObject::connect(&server_, &QTcpServer::newConnection, [this] {
      QTcpSocket* socket = server_.nextPendingConnection();
      socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
      QObject::connect(socket, &QTcpSocket::readyRead, [this, socket] { Read(*socket); });
      Write(*socket, manner.greeting);
    });
  }
  uint16_t Port() const { return server_.serverPort(); }

  std::string Usual(bool release) {
    if (release) keyed = false;
    return release ? "set_ptt: 0\nRPRT 0\n"
                   : "get_ptt:\nPTT: " + std::to_string(keyed ? 1 : 0) + "\nRPRT 0\n";
  }

  const Manner manner;
  bool keyed = true;
  int releases = 0;
  int asks = 0;

 private:
  void Read(QTcpSocket& socket) {
    while (socket.canReadLine()) {
      const bool release = socket.readLine() == "+T 0\n";
      ++(release ? releases : asks);
      Write(socket, manner.answer(*this, release));
      if (manner.hangsUp) socket.disconnectFromHost();
    }
  }
  void Write(QTcpSocket& socket, const std::string& bytes) const {
    const size_t piece = manner.splits ? 1 : bytes.size();
    for (size_t i = 0; i < bytes.size(); i += piece) {
      socket.write(bytes.substr(i, piece).c_str());
      socket.flush();
    }
  }

  QTcpServer server_;
};

TEST_F(GuardianProcessTest, PeersThatBehaveBadly) {
  const auto usual = [](Peer& peer, bool release) { return peer.Usual(release); };
  const auto nothing = [](Peer&, bool) { return std::string(); };
  const auto lateKey = [](Peer& peer, bool release) {
    std::string answer = peer.Usual(release);
    if (peer.asks == 1 && peer.releases == 1) peer.keyed = true;
    return answer;
  };
  const auto ignored = [](Peer& peer, bool release) {
    std::string answer = peer.Usual(release);
    peer.keyed = true;
    return answer;
  };
  const auto cannotTell = [](Peer& peer, bool release) {
    return release ? peer.Usual(true) : "get_ptt:\nRPRT -11\n";
  };
  std::vector<std::unique_ptr<Peer>> peers;
  std::map<uint32_t, Peer*> tickets;
  for (const Peer::Manner& manner : {
           Peer::Manner{"splits its answers", true, 1, 1, usual, {}, true},
           Peer::Manner{"hangs up after each answer", true, 1, 1, usual, {}, false, true},
           Peer::Manner{"the key arrives late", true, 2, 2, lateKey},
           Peer::Manner{"cannot tell", true, 2, 2, cannotTell},
           Peer::Manner{"ignores releases", false, 5, 12, ignored},
           Peer::Manner{"answers nothing", false, 3, 4, nothing},
           Peer::Manner{"says megabytes", false, 1, 4, nothing, std::string(8'000'000, 'R')},
       }) {
    peers.push_back(std::make_unique<Peer>(manner));
    tickets[Hold(RigRecipe(peers.back()->Port()))] = peers.back().get();
  }
  const uint32_t refused = Hold(RigRecipe(FreePort()));
  for (const auto& [ticket, peer] : tickets) guardian->Follow(ticket);
  guardian->Follow(refused);
  ASSERT_TRUE(LoopUntil([&] { return news.size() == tickets.size() + 1; }));
  for (const GuardianNews& told : news) {
    const bool released = told.kind == GuardianNews::Kind::FollowUpDone;
    EXPECT_TRUE(released || told.kind == GuardianNews::Kind::FollowUpFailed);
    if (told.ticket == refused) {
      EXPECT_FALSE(released);
      continue;
    }
    const Peer& peer = *tickets.at(told.ticket);
    SCOPED_TRACE(peer.manner.name);
    EXPECT_EQ(released, peer.manner.released);
    EXPECT_NE(peer.keyed, released);
    EXPECT_GE(peer.releases, peer.manner.leastReleases);
    EXPECT_LE(peer.releases, peer.manner.mostReleases);
  }
  EXPECT_EQ(GuardianOf(::getpid()), first) << "the same as ever";
}

TEST_F(GuardianProcessTest, IsReplacedAndHoldsAgain) {
  DummyRig rig;
  Hold(RigRecipe(PortOf(rig)));
  ASSERT_EQ(rig.Ask("T 1"), "RPRT 0");
  pid_t now = first;
  for (const int signal : {SIGKILL, SIGSTOP}) {  // one that is stopped is none either
    const auto back = Count(GuardianNews::Kind::Back) + 1;
    ::kill(now, signal);
    EXPECT_TRUE(LoopUntil([&] {
      guardian->Beat();
      return Count(GuardianNews::Kind::Back) == back;
    }));
    EXPECT_NE(GuardianOf(::getpid()), now);
    now = static_cast<pid_t>(GuardianOf(::getpid()));
  }
  EXPECT_EQ(rig.Ask("t"), "1");
  guardian.reset();
  EXPECT_TRUE(LoopUntil([&] { return rig.Ask("t") == "0"; }));
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
      char byte = 0;
      while (::read(master, &byte, 1) == 1) written += byte;
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
  const std::vector<std::string> environment{
      "HOME=" + home.Path().string(), "DISPLAY=", "XDG_CONFIG_HOME=", "PULSE_SERVER=unix:/nowhere"};
  Process program({VELT_PROGRAM, "--headless", "--seconds", "60"}, {.environment = environment});
  int64_t guardian = 0;
  ASSERT_TRUE(WaitUntil([&] { return (guardian = GuardianOf(program.Id())) != 0; },
                        std::chrono::seconds(10)));
  const fs::path folder = "/proc/" + std::to_string(guardian);
  const auto open = [&folder] {
    std::set<std::string> numbers;
    for (const auto& entry : fs::directory_iterator(folder / "fd")) {
      numbers.insert(entry.path().filename().string());
    }
    return numbers;
  };
  EXPECT_TRUE(WaitUntil(
      [&] {
        return open() == std::set<std::string>{"2", "3"};
      },
      std::chrono::seconds(2)));
  EXPECT_EQ(::getsid(static_cast<pid_t>(guardian)), guardian);
  EXPECT_NE(ReadText(folder / "cmdline").find("--guardian"), std::string::npos);
  program.Kill();
  EXPECT_TRUE(WaitUntil([&] { return !IsAlive(guardian); }, std::chrono::seconds(2)));

  Process demo({VELT_PROGRAM, "--demo", "--headless", "--seconds", "1"},
               {.environment = environment});
  while (demo.Running()) ASSERT_EQ(GuardianOf(demo.Id()), 0);
}

}  // namespace
}  // namespace velt
