// The link to servers that misbehave, over real sockets.
#include <gtest/gtest.h>

#include "adapters/qt/qt_scheduler.h"
#include "adapters/rigctld/fake_rig.h"
#include "adapters/rigctld/live_loop.h"
#include "adapters/rigctld/rigctld_server.h"

namespace velt {
namespace {

using State = RigLink::State;

// Serves a rig to every client; `reply` sends what it has made of an answer.
class FakeServer {
 public:
  FakeServer() {
    EnsureLoop();
    server_.listen(QHostAddress::LocalHost);
    QObject::connect(&server_, &QTcpServer::newConnection, [this] {
      while (QTcpSocket* client = server_.nextPendingConnection()) {
        ++connections;
        const auto read = [this, client] {
          while (client->canReadLine()) {
            const QByteArray line = client->readLine().chopped(1);
            reply(*client, rig.Answer(line.toStdString()));
          }
        };
        QObject::connect(client, &QTcpSocket::readyRead, client, read);
        read();
      }
    });
  }
  // Cuts every connection; `deaf` refuses new ones.
  void Cut(bool deaf) {
    const uint16_t port = server_.serverPort();
    for (auto* client : server_.findChildren<QTcpSocket*>()) client->abort();
    server_.close();
    if (!deaf) server_.listen(QHostAddress::LocalHost, port);
    port_ = port;
  }
  void ListenAgain() { server_.listen(QHostAddress::LocalHost, port_); }
  std::string Address() const { return "127.0.0.1:" + std::to_string(server_.serverPort()); }

  FakeRig rig;
  int connections = 0;
  std::function<void(QTcpSocket&, const std::string&)> reply =
      [](QTcpSocket& to, const std::string& text) { to.write(text.c_str()); };

 private:
  QTcpServer server_;
  uint16_t port_ = 0;
};

struct FakeServerTest : testing::Test {
  QtScheduler scheduler;
  FakeServer peer;
  RigctldServer server{scheduler};
  IRigX& rig = server.Rig1();

  void SetUp() override {
    server.SetAddress(1, peer.Address());
    server.Open(1, {});
  }
  void Key() {
    ASSERT_TRUE(LoopUntil([&] { return rig.Link().state == State::Linked; }));
    ASSERT_TRUE(rig.SetTx(PM_TX));
    ASSERT_TRUE(LoopUntil([&] { return rig.Tx() == PM_TX; }));
    peer.rig.lines.clear();
  }
};

TEST_F(FakeServerTest, GivesUpOnNonsenseWithoutHurry) {
  const std::string megabyte(1 << 20, 'x');
  const std::pair<const char*, std::function<void(QTcpSocket&, const std::string&)>> cases[] = {
      {"silence", [](QTcpSocket&, const std::string&) {}},
      {"half a line", [](QTcpSocket& to, const std::string& text) { to.write(text.c_str(), 12); }},
      {"garbage",
       [](QTcpSocket& to, const std::string&) { to.write("\xff\xfe?\n\n\nRPRT x\nRPRT 0\n"); }},
      {"a flood", [&](QTcpSocket& to, const std::string&) { to.write(megabyte.c_str()); }},
      {"the end", [](QTcpSocket& to, const std::string&) { to.abort(); }},
  };
  for (const auto& [name, reply] : cases) {
    peer.reply = reply;
    peer.connections = 0;
    server.Close();
    server.Open(1, {});
    ASSERT_TRUE(
        LoopUntil([&] { return rig.Link().retryInSeconds > 0; }, std::chrono::milliseconds(2500)))
        << name;
    EXPECT_EQ(rig.Freq(), 0) << name;
    EXPECT_FALSE(LoopUntil([&] { return peer.connections > 3; }, std::chrono::milliseconds(300)))
        << name;
  }
}

TEST_F(FakeServerTest, TakesRepliesByteByByte) {
  peer.reply = [](QTcpSocket& to, const std::string& text) {
    for (const char c : text) {
      to.write(&c, 1);
      to.flush();
    }
  };
  EXPECT_TRUE(LoopUntil([&] { return rig.FreqB() == 7074000 && rig.Mode() == PM_SSB_U; }));
}

TEST_F(FakeServerTest, AReleaseAskedForWithoutALinkComesFirst) {
  ASSERT_NO_FATAL_FAILURE(Key());
  peer.Cut(false);
  ASSERT_TRUE(LoopUntil([&] { return rig.Link().state == State::Reconnecting; }));
  peer.rig.lines.clear();
  ASSERT_TRUE(rig.SetTx(PM_RX));
  ASSERT_TRUE(LoopUntil([&] { return rig.Link().state == State::Linked; }));
  EXPECT_EQ(peer.rig.lines.front(), "+T 0");
  EXPECT_EQ(peer.rig.Writes(), std::vector<std::string>{"+T 0"});
}

TEST_F(FakeServerTest, ReleaseNowLeavesWithinItsCall) {
  ASSERT_NO_FATAL_FAILURE(Key());
  peer.reply = [](QTcpSocket&, const std::string&) {};  // hangs from now on
  ASSERT_TRUE(LoopUntil([&] { return !peer.rig.lines.empty(); }));
  server.ReleaseNow(1, 500);
  server.Close();
  EXPECT_TRUE(LoopUntil([&] { return peer.rig.keyed == 0; }));
}

TEST_F(FakeServerTest, ReleaseNowMakesItsOwnWayWhileTheLinkIsLost) {
  ASSERT_NO_FATAL_FAILURE(Key());
  peer.Cut(true);
  ASSERT_TRUE(LoopUntil([&] { return rig.Link().retryInSeconds > 0; }));
  server.ReleaseNow(1, 200);
  EXPECT_EQ(peer.rig.keyed, 1) << "nobody listens";
  peer.ListenAgain();
  server.ReleaseNow(1, 200);
  server.Close();
  EXPECT_TRUE(LoopUntil([&] { return peer.rig.keyed == 0; }));
}

TEST_F(FakeServerTest, ACrashReleasesOnlyWhatWasKeyedHere) {
  ASSERT_TRUE(LoopUntil([&] { return rig.FreqB() > 0; }));
  EXPECT_GE(server.CrashReleaseDescriptor(1), 0);
  EXPECT_EQ(server.CrashReleaseDescriptor(2), -1);
  peer.rig.keyed = 1;  // by somebody else
  ASSERT_TRUE(LoopUntil([&] { return rig.Tx() == PM_TX; }));
  server.ReleaseInCrash();
  EXPECT_FALSE(LoopUntil([&] { return peer.rig.keyed == 0; }, std::chrono::milliseconds(200)));
  ASSERT_NO_FATAL_FAILURE(Key());
  server.ReleaseInCrash();
  EXPECT_TRUE(LoopUntil([&] { return peer.rig.keyed == 0; }));
  server.Close();
  EXPECT_EQ(server.CrashReleaseDescriptor(1), -1);
}

}  // namespace
}  // namespace velt
