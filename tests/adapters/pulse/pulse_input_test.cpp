// The sound capture against a sound server that each test starts, and then mistreats.
#include "adapters/pulse/pulse_input.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "adapters/pulse/pulse_device_lister.h"
#include "support/pulse_server.h"
#include "support/virtual_scheduler.h"

namespace velt {
namespace {

using namespace std::chrono_literals;
using Block = std::array<int16_t, kBlockSamples>;

class PulseInputTest : public testing::Test {
 protected:
  void StartServer(PulseServer::Sound sound = PulseServer::Sound::NullSink) {
    server = std::make_unique<PulseServer>(sound);
    server->ExportEnvironment();
    MakeInput();
  }

  void MakeInput() {
    input = std::make_unique<PulseInput>(scheduler);
    input->onEvent = [this](const AudioEvent& event) {
      constexpr const char* kinds[] = {"Opened ", "OpenFailed ", "Lost ", "Returned "};
      events.push_back(kinds[static_cast<int>(event.kind)] + event.text);
    };
  }

  // The next event, as "Kind text".
  std::string Next(std::chrono::milliseconds limit = 1s) {
    const auto happened = [this] { return scheduler.RunPosted(), !events.empty(); };
    if (!WaitUntil(happened, limit)) return "nothing in time";
    const std::string event = events.front();
    events.erase(events.begin());
    return event;
  }

  void Capture(const std::string& device, const std::string& name) {
    input->Open(device);
    ASSERT_EQ(Next(), "Opened " + name);
    input->Start();
    ASSERT_TRUE(WaitUntil([this] { return Take() == TakeResult::Block; }, 2s));
  }

  void ExpectGone() { EXPECT_EQ(Take(), TakeResult::Gone); }

  TakeResult Take() { return input->TakeNewest(block); }

  template <class Call>
  static void ExpectQuick(Call call) {
    const auto start = std::chrono::steady_clock::now();
    call();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 100ms);
  }

  // The user takes the sound elsewhere.
  void MoveStreamTo(const std::string& source) {
    const std::string outputs = server->Pactl({"list", "short", "source-outputs"});
    server->Pactl({"move-source-output", outputs.substr(0, outputs.find('\t')), source});
  }

  std::unique_ptr<PulseServer> server;
  VirtualScheduler scheduler;
  std::unique_ptr<PulseInput> input;
  std::vector<std::string> events;
  Block block{};
};

const std::string kLabel = "Sound source Monitor of Null Output";

TEST_F(PulseInputTest, CapturesATone) {
  StartServer();
  const auto player = server->PlayTone(1000);
  EXPECT_EQ(input->Devices().size(), 0U);
  input->Open("");
  ASSERT_EQ(Next(), "Opened test.monitor");
  ASSERT_EQ(input->Devices().size(), 1U);
  EXPECT_EQ(input->Devices()[0].name, "test.monitor");
  EXPECT_EQ(input->Devices()[0].description, "Monitor of Null Output");
  input->Start();

  // Each sample of a pure tone follows from the two before it: 2 cos(w) x[n-1] - x[n-2].
  const double twiceCosine = 2 * std::cos(2 * std::numbers::pi * 1000 / kSampleRateHz);
  const auto pure = [&] {
    for (size_t i = 2; i < block.size(); ++i) {
      if (std::abs(block[i] - twiceCosine * block[i - 1] + block[i - 2]) > 8) return false;
    }
    return *std::ranges::max_element(block) > 15000;
  };
  // The player needs some blocks to begin, and may be late on a busy machine.
  int pureInARow = 0;
  const auto heard = [&] {
    if (Take() == TakeResult::Block) pureInARow = pure() ? pureInARow + 1 : 0;
    return pureInARow == 20;
  };
  EXPECT_TRUE(WaitUntil(heard, 5s)) << pureInARow;
}

TEST_F(PulseInputTest, SaysWhyNothingCanBeOpened) {
  StartServer(PulseServer::Sound::None);
  input->Open("");
  EXPECT_EQ(Next(), "OpenFailed Sound server has no source.");
  server->LoadModule({"module-null-sink", "sink_name=test"});
  input->Open("nowhere");
  EXPECT_EQ(Next(), "OpenFailed Sound source nowhere does not exist.");
  ExpectGone();

  server->Kill();
  input->Open("");
  EXPECT_EQ(Next(), "OpenFailed No sound server: Connection refused.");

  // What could not be opened is waited for too.
  input->WatchForReturn();
  server->Restart();
  server->LoadModule({"module-null-sink", "sink_name=late", "norewinds=1"});
  EXPECT_EQ(Next(3s), "Returned late.monitor");
  Capture("", "late.monitor");
}

TEST_F(PulseInputTest, NoticesTheServersDeathAndItsReturn) {
  StartServer();
  Capture("", "test.monitor");
  for (int round = 0; round < 2; ++round) {
    server->Kill();
    EXPECT_EQ(Next(), "Lost Sound server is gone.");
    ExpectGone();
    EXPECT_TRUE(input->Devices().empty());
    input->WatchForReturn();
    server->Restart();
    ASSERT_EQ(Next(3s), "Returned test.monitor");
    Capture("test.monitor", "test.monitor");
  }
}

TEST_F(PulseInputTest, NoticesARemovedSourceAndItsReturn) {
  StartServer();
  const auto removeAndReturn = [this] {
    Capture("test.monitor", "test.monitor");
    server->UnloadModule("module-null-sink");
    EXPECT_EQ(Next(), "Lost " + kLabel + " was removed.");
    ExpectGone();
    input->WatchForReturn();
    server->LoadModule({"module-null-sink", "sink_name=test", "norewinds=1"});
    ASSERT_EQ(Next(), "Returned test.monitor");
  };
  removeAndReturn();
  // With another source there the server moves the stream instead of ending it.
  server->LoadModule({"module-null-source", "source_name=other"});
  removeAndReturn();
}

TEST_F(PulseInputTest, LeavesAMovedStreamUntilItsSourceWasAway) {
  StartServer();
  server->LoadModule({"module-null-source", "source_name=other", "description=Other"});
  Capture("test.monitor", "test.monitor");
  MoveStreamTo("other");
  EXPECT_EQ(Next(), "Lost Sound moved to Other.");
  ExpectGone();
  input->Close();
  input->WatchForReturn();
  for (size_t sources = 3; sources < 6; ++sources) {
    server->LoadModule({"module-null-source", "source_name=more" + std::to_string(sources)});
    ASSERT_TRUE(WaitUntil([&] { return input->Devices().size() == sources; }, 1s));
  }
  scheduler.RunPosted();
  EXPECT_TRUE(events.empty()) << events[0];
  server->UnloadModule("module-null-sink");
  server->LoadModule({"module-null-sink", "sink_name=test", "norewinds=1"});
  EXPECT_EQ(Next(), "Returned test.monitor");
}

TEST_F(PulseInputTest, NoticesSuspensionAndResumption) {
  StartServer();
  server->LoadModule({"module-null-source", "source_name=quiet", "description=Quiet"});
  // An idle source that the server itself has put to sleep is nobody's wish.
  server->LoadModule({"module-suspend-on-idle", "timeout=0"});
  Capture("quiet", "quiet");
  server->Pactl({"suspend-source", "quiet", "1"});
  EXPECT_EQ(Next(), "Lost Sound source Quiet is suspended.");
  ExpectGone();
  input->Open("quiet");
  EXPECT_EQ(Next(), "OpenFailed Sound source Quiet is suspended.");
  input->WatchForReturn();
  server->LoadModule({"module-null-source", "source_name=other"});
  ASSERT_TRUE(WaitUntil([&] { return input->Devices().size() == 3; }, 1s));
  scheduler.RunPosted();
  EXPECT_TRUE(events.empty()) << events[0];
  server->Pactl({"suspend-source", "quiet", "0"});
  EXPECT_EQ(Next(2s), "Returned quiet");
  Capture("quiet", "quiet");
}

TEST_F(PulseInputTest, AFrozenServerBlocksNothing) {
  StartServer();
  Capture("", "test.monitor");
  server->Freeze();
  ExpectQuick([this] { input->Close(); });
  ExpectGone();
  ExpectQuick([this] { input->Open(""); });
  EXPECT_EQ(Next(4s), "OpenFailed Sound server does not answer.");
  ExpectQuick([this] { input->Open(""); });
  ExpectQuick([this] { input->WatchForReturn(); });
  ExpectQuick([this] { EXPECT_TRUE(input->Devices().size() <= 1); });
  server->Thaw();
  EXPECT_EQ(Next(2s), "Returned test.monitor");
  Capture("", "test.monitor");
  server->Freeze();
  ExpectQuick([this] { input.reset(); });
  MakeInput();
  input->Open("");
  ExpectQuick([this] { input.reset(); });
}

TEST_F(PulseInputTest, ASourceRemovedWhileOpeningEndsTheOpening) {
  StartServer();
  for (int round = 0; round < 6; ++round) {
    // The server finds both wishes when it wakes up, in either order.
    server->Freeze();
    if (round % 2 == 0) input->Open("test.monitor");
    Process remover({"pactl", "unload-module", "module-null-sink"}, {server->Environment()});
    if (round % 2 == 1) input->Open("test.monitor");
    server->Thaw();
    std::string outcome = Next(4s);
    if (outcome == "Opened test.monitor") outcome = Next(4s);
    EXPECT_TRUE(outcome.starts_with("OpenFailed Sound source ") ||
                outcome.starts_with("Lost " + kLabel))
        << outcome;
    EXPECT_TRUE(remover.WaitForEnd(2s));
    server->LoadModule({"module-null-sink", "sink_name=test", "norewinds=1"});
  }
}

TEST_F(PulseInputTest, TellsNothingOfWhatWasClosed) {
  StartServer();
  input->Open("nowhere");
  input->Close();
  // An event that is on its way already is dropped.
  input->Open("");
  ASSERT_TRUE(WaitUntil([this] { return Take() == TakeResult::NotYet; }, 1s));
  input->Close();
  scheduler.RunPosted();
  ExpectGone();
  // A stream that was closed before the server had made it ends all the same. Asking without a
  // pause finds that short moment.
  const auto listed = [this] {
    for (int i = 0; i < 10000; ++i) {
      if (!input->Devices().empty()) return true;
    }
    return false;
  };
  const auto released = [this] {
    return server->Pactl({"list", "short", "source-outputs"}).empty();
  };
  for (int round = 0; round < 4; ++round) {
    server->Kill();
    ASSERT_TRUE(WaitUntil([this] { return input->Devices().empty(); }, 1s));
    server->Restart();
    input->Open("");
    ASSERT_TRUE(WaitUntil(listed, 1s));
    input->Close();
    EXPECT_TRUE(WaitUntil(released, 1s));
  }
  scheduler.RunPosted();
  EXPECT_TRUE(events.empty()) << events[0];
}

TEST_F(PulseInputTest, EndsWithAWatchOrAnEventUnderWay) {
  StartServer();
  Capture("", "test.monitor");
  server->Kill();
  ASSERT_EQ(Next(), "Lost Sound server is gone.");
  input->WatchForReturn();
  ExpectQuick([this] { input.reset(); });
  server->Restart();
  MakeInput();
  input->Open("");
  ASSERT_TRUE(WaitUntil([this] { return Take() == TakeResult::NotYet; }, 1s));
  input.reset();
  scheduler.RunPosted();
  EXPECT_TRUE(events.empty()) << events[0];
  // The receiver of an event may end it.
  MakeInput();
  input->onEvent = [this](const AudioEvent& event) {
    input.reset();
    events.push_back(event.text);
  };
  input->Open("");
  EXPECT_EQ(Next(), "test.monitor");
}

TEST_F(PulseInputTest, ListsDevicesWithoutOpeningOne) {
  StartServer();
  PulseDeviceLister lister(scheduler);
  const auto list = [&](std::chrono::milliseconds limit) {
    std::optional<DeviceListing> listing;
    lister.List([&](const DeviceListing& answer) { listing = answer; });
    EXPECT_TRUE(WaitUntil([&] { return scheduler.RunPosted(), listing.has_value(); }, limit));
    return listing.value_or(DeviceListing{});
  };
  const DeviceListing listing = list(1s);
  ASSERT_EQ(listing.devices.size(), 1U);
  EXPECT_EQ(listing.devices[0].name, "test.monitor");
  EXPECT_EQ(listing.defaultName, "test.monitor");
  EXPECT_EQ(listing.error, "");
  server->Freeze();
  EXPECT_EQ(list(4s).error, "Sound server does not answer.");
  server->Kill();
  EXPECT_EQ(list(1s).error, "No sound server: Connection refused.");
}

}  // namespace
}  // namespace velt
