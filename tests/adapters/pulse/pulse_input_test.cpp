// The ring between server and analysis; the capture against a sound server that each test starts,
// and then mistreats.
#include "adapters/pulse/pulse_input.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

#include "adapters/pulse/pulse_device_lister.h"
#include "adapters/pulse/sample_ring.h"
#include "support/pulse_server.h"
#include "support/virtual_scheduler.h"

namespace velt {
namespace {

using namespace std::chrono_literals;

std::vector<int16_t> Ramp(int first, size_t count) {
  std::vector<int16_t> ramp(count);
  std::iota(ramp.begin(), ramp.end(), static_cast<int16_t>(first));
  return ramp;
}

TEST(SampleRing, GivesTheNewestBlockThatWasNotUsedYet) {
  SampleRing ring;
  std::array<int16_t, kBlockSamples> block{};
  ring.Write(Ramp(0, 1024));
  EXPECT_EQ(ring.TakeNewest(block), TakeResult::Gone);
  ring.Hold();
  ring.Write(Ramp(0, 1024));
  ring.Deliver();
  ring.Write(Ramp(0, 511));
  EXPECT_EQ(ring.TakeNewest(block), TakeResult::NotYet);
  int at = 511;
  for (const int piece : {1, 2, 551, 3000}) {
    for (const int end = at + 1102; at < end; at += piece) {
      ring.Write(Ramp(at, static_cast<size_t>(piece)));
    }
    ASSERT_EQ(ring.TakeNewest(block), TakeResult::Block);
    EXPECT_EQ(std::vector(block.begin(), block.end()), Ramp(at - 512, kBlockSamples)) << piece;
    EXPECT_EQ(ring.TakeNewest(block), TakeResult::NotYet);
  }
  ring.WriteSilence(5000);
  ring.Write(Ramp(1, 112));
  ASSERT_EQ(ring.TakeNewest(block), TakeResult::Block);
  EXPECT_EQ(std::count(block.begin(), block.begin() + 400, 0), 400);
  EXPECT_EQ(std::vector(block.begin() + 400, block.end()), Ramp(1, 112));
}

struct PulseInputTest : testing::Test {
  void StartServer(PulseServer::Sound sound = PulseServer::Sound::NullSink) {
    server = std::make_unique<PulseServer>(sound);
    server->ExportEnvironment();
    MakeInput();
  }

  void MakeInput() {
    input = std::make_unique<PulseInput>(scheduler);
    listening = input->happened.Listen([this](const AudioEvent& event) {
      constexpr const char* kinds[] = {"Opened ", "Moved ", "OpenFailed ", "Lost ", "Returned "};
      events.push_back(kinds[static_cast<int>(event.kind)] + event.text);
      if (!event.description.empty()) events.back() += " = " + event.description;
    });
  }

  // The next event, as "Kind text".
  std::string Next(std::chrono::milliseconds limit = 1s) {
    const auto happened = [this] { return scheduler.RunPosted(), !events.empty(); };
    if (!WaitUntil(happened, limit)) return "nothing in time";
    const std::string event = events.front();
    events.erase(events.begin());
    const bool runs = event.starts_with("Opened") || event.starts_with("Moved") || !input;
    EXPECT_TRUE(runs || Take() == TakeResult::Gone) << event;
    return event;
  }

  void Capture(const std::string& device, const std::string& name) {
    input->Open(device);
    const std::string event = Next();
    ASSERT_EQ(event.substr(0, event.find(" = ")), "Opened " + name);
    input->Start();
    ExpectBlock(2s);
  }
  void ExpectBlock(std::chrono::milliseconds limit) {
    EXPECT_TRUE(WaitUntil([this] { return Take() == TakeResult::Block; }, limit));
  }

  TakeResult Take() { return input->TakeNewest(block); }

  template <class Call>
  static void ExpectQuick(Call call) {
    const auto start = std::chrono::steady_clock::now();
    call();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 100ms);
  }

  void AddSink(const std::string& name) {
    server->LoadModule({"module-null-sink", "sink_name=" + name, "norewinds=1"});
  }
  void AddSource(const std::string& name) {
    server->LoadModule({"module-null-source", "source_name=" + name, "description=Mic-" + name});
  }

  std::unique_ptr<PulseServer> server;
  VirtualScheduler scheduler;
  std::unique_ptr<PulseInput> input;
  Connection listening;
  std::vector<std::string> events;
  std::array<int16_t, kBlockSamples> block{};
};

TEST_F(PulseInputTest, CapturesATone) {
  StartServer();
  const auto player = server->PlayTone(1000);
  Capture("", "test.monitor");

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

  // A tick every 25 ms hardly ever comes too early for its block.
  constexpr int kTicks = 80;
  int tooEarly = 0;
  auto due = std::chrono::steady_clock::now();
  for (int tick = 0; tick < kTicks; ++tick) {
    due += 25ms;
    WaitUntil([due] { return std::chrono::steady_clock::now() >= due; }, 1s);
    if (Take() == TakeResult::NotYet) ++tooEarly;
  }
  EXPECT_LE(tooEarly, kTicks / 10);
}

TEST_F(PulseInputTest, SaysWhyNothingCanBeOpenedAndNoticesTheServersReturn) {
  StartServer(PulseServer::Sound::None);
  input->Open("");
  EXPECT_EQ(Next(), "OpenFailed Sound server has no source.");
  input->Open("nowhere");
  EXPECT_EQ(Next(), "OpenFailed Sound source nowhere does not exist.");
  server->Kill();
  // What could not be opened is waited for as what was lost is.
  for (const char* device : {"late.monitor", ""}) {
    input->Open(device);
    EXPECT_EQ(Next(), "OpenFailed No sound server: Connection refused.");
    for (const char* end : {"first", "second"}) {
      input->WatchForReturn();
      server->Restart();
      AddSink("late");
      ASSERT_EQ(Next(3s), "Returned late.monitor") << end;
      Capture(device, "late.monitor");
      EXPECT_EQ(input->Devices().at(0).name, "late.monitor");
      server->Kill();
      EXPECT_EQ(Next(), "Lost Sound server is gone.") << end;
      EXPECT_TRUE(input->Devices().empty());
    }
  }
}

struct PlaceStep {
  const char* action;  // of the user or the devices
  const char* event;   // that follows; null: none until the next one
};
struct PlaceCase {
  const char* name;
  PulseServer::Sound sound;
  const char* device;
  std::vector<PlaceStep> steps;
};
class PulseInputPlaceTest : public PulseInputTest, public testing::WithParamInterface<PlaceCase> {
 protected:
  void Act(const std::string& action) {
    const size_t blank = action.find(' ');
    const std::string verb = action.substr(0, blank);
    const std::string name = blank == std::string::npos ? "" : action.substr(blank + 1);
    const auto move = [&] {
      const std::string outputs = server->Pactl({"list", "short", "source-outputs"});
      server->Pactl({"move-source-output", outputs.substr(0, outputs.find('\t')), name});
    };
    if (verb == "sink") AddSink(name);
    if (verb == "source") AddSource(name);
    if (verb == "module") server->LoadModule({name});
    if (verb == "remove") server->UnloadModule(name);
    if (verb == "default") server->Pactl({"set-default-source", name});
    if (verb == "move") move();
    if (verb == "cannot-move") {
      EXPECT_THROW(move(), std::runtime_error);
    }
    if (verb == "open") input->Open(GetParam().device);
    if (verb == "watch") input->WatchForReturn();
  }
};

TEST_P(PulseInputPlaceTest, ItComesFromWhereItShould) {
  StartServer(GetParam().sound);
  for (const auto& [action, event] : GetParam().steps) {
    Act(action);
    if (event == nullptr) continue;
    ASSERT_EQ(Next(std::string_view(event).starts_with("nothing") ? 3500ms : 1s), event) << action;
    const bool opened = std::string_view(event).starts_with("Opened");
    if (opened) input->Start();
    // Some null sinks need 2 s for their first block.
    if (Take() != TakeResult::Gone) ExpectBlock(opened ? 3s : 500ms);
  }
}

constexpr const char* kMicLost = "Lost Sound source Mic-mic was removed.";

INSTANTIATE_TEST_SUITE_P(
    , PulseInputPlaceTest,
    testing::Values(
        // The default is followed; where the user moved the stream it stays while that is there.
        PlaceCase{"Default",
                  PulseServer::Sound::NullSink,
                  "",
                  {{"open", "Opened test.monitor = Monitor of Null Output"},
                   {"source mic", "Moved mic = Mic-mic"},  // it becomes the default
                   {"default test.monitor", "Moved test.monitor = Monitor of Null Output"},
                   {"move mic", "Moved mic = Mic-mic"},
                   {"open", "Opened mic = Mic-mic"},
                   {"remove module-null-source", kMicLost},
                   {"watch", nullptr},
                   {"source mic", "Returned mic"},
                   {"open", "Opened mic = Mic-mic"},
                   {"move test.monitor", "Moved test.monitor = Monitor of Null Output"},
                   {"default mic", "Moved mic = Mic-mic"},
                   {"move test.monitor", "Moved test.monitor = Monitor of Null Output"},
                   {"default test.monitor", nullptr},
                   {"default mic", nullptr},
                   {"source line", nullptr},
                   {"move line", "Moved line = Mic-line"}}},
        // A stand-in gives way at once, and does not replace what was lost; another default does
        // when that is not back after 3 s.
        PlaceCase{
            "StandIn",
            PulseServer::Sound::None,
            "",
            {{"module module-always-sink", nullptr},
             {"open", "Opened auto_null.monitor = Monitor of Dummy Output"},
             {"sink usb", "Moved usb.monitor = Monitor of Null Output"},
             {"remove module-null-sink", "Lost Sound source Monitor of Null Output was removed."},
             {"watch", "nothing in time"},
             {"source mic", "Returned mic"},
             {"open", "Opened mic = Mic-mic"}}},
        // A source chosen by name is nobody's to take away.
        PlaceCase{"Named",
                  PulseServer::Sound::NullSink,
                  "mic",
                  {{"source mic", nullptr},
                   {"open", "Opened mic = Mic-mic"},
                   {"default test.monitor", nullptr},
                   {"cannot-move test.monitor", nullptr},
                   {"default mic", nullptr},
                   {"remove module-null-source", kMicLost},
                   {"watch", nullptr},
                   {"source mic", "Returned mic"},
                   {"open", "Opened mic = Mic-mic"}}}),
    [](const auto& place) { return std::string(place.param.name); });

TEST_F(PulseInputTest, NoticesSuspensionAndResumption) {
  StartServer();
  AddSource("quiet");
  // An idle source that the server itself has put to sleep is nobody's wish.
  server->LoadModule({"module-suspend-on-idle", "timeout=0"});
  Capture("quiet", "quiet");
  server->Pactl({"suspend-source", "quiet", "1"});
  EXPECT_EQ(Next(), "Lost Sound source Mic-quiet is suspended.");
  input->Open("quiet");
  EXPECT_EQ(Next(), "OpenFailed Sound source Mic-quiet is suspended.");
  input->WatchForReturn();
  EXPECT_EQ(Next(500ms), "nothing in time");
  server->Pactl({"suspend-source", "quiet", "0"});
  EXPECT_EQ(Next(2s), "Returned quiet");
  Capture("quiet", "quiet");
}

TEST_F(PulseInputTest, AFrozenServerBlocksNothing) {
  StartServer();
  Capture("", "test.monitor");
  server->Freeze();
  ExpectQuick([this] { input->Close(); });
  ExpectQuick([this] { input->Open(""); });
  EXPECT_EQ(Next(4s), "OpenFailed Sound server does not answer.");
  ExpectQuick([this] { input->WatchForReturn(); });
  ExpectQuick([this] { EXPECT_TRUE(input->Devices().size() <= 1); });
  server->Thaw();
  EXPECT_EQ(Next(2s), "Returned test.monitor");
  server->Freeze();
  input->WatchForReturn();
  ExpectQuick([this] { input.reset(); });
}

TEST_F(PulseInputTest, ASourceRemovedWhileOpeningEndsTheOpening) {
  StartServer();
  for (const bool openedFirst : {true, false}) {
    // The server finds both wishes when it wakes up, in either order.
    server->Freeze();
    if (openedFirst) input->Open("test.monitor");
    Process remover({"pactl", "unload-module", "module-null-sink"}, {server->Environment()});
    if (!openedFirst) input->Open("test.monitor");
    server->Thaw();
    std::string outcome = Next(4s);
    if (outcome.starts_with("Opened test.monitor")) outcome = Next(4s);
    EXPECT_TRUE(outcome.starts_with("OpenFailed Sound source ") ||
                outcome.starts_with("Lost Sound source "))
        << outcome;
    EXPECT_TRUE(remover.WaitForEnd(2s));
    AddSink("test");
  }
}

TEST_F(PulseInputTest, TellsNothingOfWhatWasClosedOrHasEnded) {
  StartServer();
  for (const bool ends : {false, true}) {
    input->Open("");
    // The event is on its way.
    ASSERT_TRUE(WaitUntil([this] { return Take() == TakeResult::NotYet; }, 1s));
    if (ends) input.reset();
    if (!ends) input->Close();
    scheduler.RunPosted();
    EXPECT_EQ(events, std::vector<std::string>());
  }
  // The receiver of an event may end it.
  MakeInput();
  listening = input->happened.Listen([this](const AudioEvent& event) {
    input.reset();
    events.push_back(event.text);
  });
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
  ASSERT_EQ(listing.devices.size(), 1U) << listing.error;
  EXPECT_EQ(listing.devices[0].description, "Monitor of Null Output");
  EXPECT_EQ(listing.defaultName, "test.monitor");
  server->Freeze();
  EXPECT_EQ(list(4s).error, "Sound server does not answer.");
  server->Kill();
  EXPECT_EQ(list(1s).error, "No sound server: Connection refused.");
}

}  // namespace
}  // namespace velt
