// The ring between server and analysis; the capture against a sound server that each test starts,
// and then mistreats.
#include "adapters/pulse/pulse_input.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <regex>

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
    input.reset();
    server = std::make_unique<PulseServer>(sound);
    server->ExportEnvironment();
    input = std::make_unique<PulseInput>(scheduler);
    listening = input->happened.Listen([this](const AudioEvent& event) {
      constexpr const char* kinds[] = {"Opened ", "Moved ", "OpenFailed ", "Lost ", "Returned "};
      events.push_back(kinds[static_cast<int>(event.kind)] + event.text);
      if (event.description.empty()) return;
      EXPECT_TRUE(event.text.ends_with(".monitor") ? event.description.starts_with("Monitor of ")
                                                   : event.description == "Mic-" + event.text)
          << event.description;
    });
  }

  // The next event, as "Kind text".
  std::string Next() {
    const auto happened = [this] { return scheduler.RunPosted(), !events.empty(); };
    if (!WaitUntil(happened, 3500ms)) return "nothing in time";
    const std::string event = events.front();
    events.erase(events.begin());
    const bool runs = event.starts_with("Opened") || event.starts_with("Moved") || !input;
    EXPECT_TRUE(runs || Take() == TakeResult::Gone) << event;
    return event;
  }

  TakeResult Take() { return input->TakeNewest(block); }

  void Move(const std::string& name) {
    const std::string outputs = server->Pactl({"list", "short", "source-outputs"});
    server->Pactl({"move-source-output", outputs.substr(0, outputs.find('\t')), name});
  }
  // What the user or the devices do.
  void Act(const std::string& verb, const std::string& name, const std::string& device) {
    if (verb == "sink") {
      server->LoadModule({"module-null-sink", "sink_name=" + name, "norewinds=1"});
    }
    if (verb == "source") {
      server->LoadModule({"module-null-source", "source_name=" + name, "description=Mic-" + name});
    }
    if (verb == "load") server->LoadModule({name});
    if (verb == "doze") server->LoadModule({"module-suspend-on-idle", "timeout=0"});
    if (verb == "unload") server->Pactl({"unload-module", name});
    if (verb == "default") server->Pactl({"set-default-source", name});
    if (verb == "suspend") server->Pactl({"suspend-source", name, "1"});
    if (verb == "resume") server->Pactl({"suspend-source", name, "0"});
    if (verb == "move") Move(name);
    if (verb == "cannot-move") {
      EXPECT_THROW(Move(name), std::runtime_error);
    }
    if (verb == "kill") server->Kill();
    if (verb == "restart") server->Restart();
    if (verb == "freeze") server->Freeze();
    if (verb == "thaw") server->Thaw();
    const auto start = std::chrono::steady_clock::now();
    if (verb == "open") input->Open(device);
    if (verb == "close") input->Close();
    if (verb == "watch") input->WatchForReturn();
    if (verb == "end") input.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 100ms) << verb;
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
  input->Open("");
  ASSERT_EQ(Next(), "Opened test.monitor");
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

TEST_F(PulseInputTest, ItComesFromWhereItShouldAndSaysWhyNot) {
  using Sound = PulseServer::Sound;
  struct Case {
    Sound sound;
    std::string device;
    std::string steps;  // "action name > event; ..."
  };
  const std::string micIsBack =
      "unload module-null-source > Lost Sound source Mic-mic was removed.; watch; source mic > "
      "Returned mic; open > Opened mic";
  // What could not be opened is waited for as what was lost is.
  std::string comesAndGoes =
      "open > OpenFailed Sound server has no source.; kill; open > OpenFailed No sound server: "
      "Connection refused.";
  for (int times = 0; times < 2; ++times) {
    comesAndGoes +=
        "; watch; restart; sink late > Returned late.monitor; open > Opened late.monitor; kill > "
        "Lost Sound server is gone.";
  }
  for (const Case& c : {
           Case{Sound::None, "", comesAndGoes},
           Case{Sound::None, "late.monitor",
                std::regex_replace(comesAndGoes, std::regex("server has no source"),
                                   "source late.monitor does not exist")},
           Case{Sound::NullSink, "",
                "open > Opened test.monitor; freeze; close; open > OpenFailed Sound server does "
                "not answer.; watch; thaw > Returned test.monitor; freeze; watch; end"},
           // The default is followed; where the user moved the stream it stays while that is there.
           Case{Sound::NullSink, "",
                "open > Opened test.monitor; source mic > Moved mic; default test.monitor > Moved "
                "test.monitor; move mic > Moved mic; open > Opened mic; " +
                    micIsBack +
                    "; move test.monitor > Moved test.monitor; default mic > Moved mic; move "
                    "test.monitor > Moved test.monitor; default test.monitor; default mic; source "
                    "line; move line > Moved line"},
           // A stand-in gives way at once, and does not replace what was lost; another default does
           // when that is not back after 3 s.
           Case{Sound::None, "",
                "load module-always-sink; open > Opened auto_null.monitor; sink usb > Moved "
                "usb.monitor; unload module-null-sink > Lost Sound source Monitor of Null Output "
                "was removed.; watch > nothing in time; source mic > Returned mic; open > Opened "
                "mic"},
           // A source chosen by name is nobody's to take away.
           Case{Sound::NullSink, "mic",
                "source mic; open > Opened mic; default test.monitor; cannot-move test.monitor; "
                "default mic; " +
                    micIsBack},
           // An idle source that the server itself has put to sleep is nobody's wish.
           Case{Sound::NullSink, "mic",
                "source mic; doze; open > Opened mic; suspend mic > Lost "
                "Sound source Mic-mic is suspended.; open > OpenFailed Sound source Mic-mic is "
                "suspended.; watch > nothing in time; resume mic > Returned mic; open > Opened "
                "mic"},
       }) {
    SCOPED_TRACE(c.steps);
    StartServer(c.sound);
    static const std::regex pattern("([a-z-]+) ?([^ ;]*)( > ([^;]*))?(; |$)");
    std::ptrdiff_t understood = 0;
    for (std::sregex_iterator step(c.steps.begin(), c.steps.end(), pattern), end; step != end;
         ++step) {
      understood += step->length();
      Act((*step)[1], (*step)[2], c.device);
      const std::string event = (*step)[4];
      if (event.empty()) continue;
      ASSERT_EQ(Next(), event) << step->str();
      if (event.starts_with("Opened")) {
        input->Start();
        EXPECT_TRUE(std::ranges::any_of(
            input->Devices(), [&](const AudioDevice& d) { return event.ends_with(" " + d.name); }));
      }
      // Some null sinks need 2 s for their first block.
      if (Take() != TakeResult::Gone) {
        EXPECT_TRUE(WaitUntil([this] { return Take() == TakeResult::Block; }, 3s));
      }
    }
    EXPECT_EQ(understood, std::ssize(c.steps));
  }
}

TEST_F(PulseInputTest, TellsNothingOfWhatWasClosedOrHasEnded) {
  StartServer();
  for (const bool ends : {false, true}) {
    input->Open("");
    // The event is on its way.
    ASSERT_TRUE(WaitUntil([this] { return Take() == TakeResult::NotYet; }, 5s));
    ends ? input.reset() : input->Close();
    scheduler.RunPosted();
    EXPECT_EQ(events, std::vector<std::string>());
  }
  // The receiver of an event may end it.
  StartServer();
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
  DeviceListing listing;
  bool listed = false;
  const auto list = [&] {
    listed = false;
    lister.List([&](const DeviceListing& answer) {
      listing = answer;
      listed = true;
    });
    return WaitUntil([&] { return scheduler.RunPosted(), listed; }, 4s);
  };
  ASSERT_TRUE(list() && listing.devices.size() == 1U) << listing.error;
  EXPECT_EQ(listing.devices[0].description, "Monitor of Null Output");
  EXPECT_EQ(listing.defaultName, "test.monitor");
  server->Freeze();
  EXPECT_TRUE(list());
  EXPECT_EQ(listing.error, "Sound server does not answer.");
}

}  // namespace
}  // namespace velt
