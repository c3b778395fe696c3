// The ring between server and analysis; the capture against a sound server that each test starts,
// and then mistreats.
#include "adapters/pulse/pulse_input.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <numeric>

#include "adapters/pulse/pulse_device_lister.h"
#include "adapters/pulse/sample_ring.h"
#include "support/pulse_server.h"
#include "support/story.h"
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
    const std::map<std::string, std::vector<std::string>> commands{
        {"sink", {"load-module", "module-null-sink", "sink_name=" + name, "norewinds=1"}},
        {"source",
         {"load-module", "module-null-source", "source_name=" + name, "description=Mic-" + name}},
        {"load", {"load-module", name}},
        {"unload", {"unload-module", name}},
        {"default", {"set-default-source", name}}};
    if (commands.contains(verb)) server->Pactl(commands.at(verb));
    if (verb == "move") Move(name);
    if (verb == "cannot-move") {
      EXPECT_THROW(Move(name), std::runtime_error);
    }
    if (verb == "kill") server->Kill();
    if (verb == "restart") server->Restart();
    if (verb == "freeze") server->Signal(SIGSTOP);
    if (verb == "thaw") server->Signal(SIGCONT);
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

TEST_F(PulseInputTest, ItComesFromWhereItShouldAndSaysWhyNot) {
  using Sound = PulseServer::Sound;
  // Steps are "action name > event".
  using Case = std::tuple<Sound, std::string, std::string>;
  const std::string micIsBack =
      "unload module-null-source > Lost Sound source Mic-mic was removed.; watch; source mic > "
      "Returned mic; open > Opened mic";
  // What could not be opened is waited for as what was lost is.
  const std::string comesAndGoes =
      "watch; restart; sink late > Returned late.monitor; open > Opened late.monitor; kill > Lost "
      "Sound server is gone.";
  for (const auto& [sound, device, steps] : {
           Case{Sound::None, "",
                "open > OpenFailed Sound server has no source.; kill; open > OpenFailed No sound "
                "server: Connection refused.; " +
                    comesAndGoes + "; " + comesAndGoes},
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
       }) {
    StartServer(sound);
    Play(steps, [&](const std::string& step, const std::string& expected) {
      const size_t space = std::min(step.find(' '), step.size() - 1);
      Act(step.substr(0, step.find(' ')), step.substr(space + 1), device);
      if (expected.empty()) return expected;
      const std::string event = Next();
      if (event.starts_with("Opened")) {
        input->Start();
        EXPECT_TRUE(std::ranges::any_of(
            input->Devices(), [&](const AudioDevice& d) { return event.ends_with(" " + d.name); }));
      }
      // Some null sinks need 2 s for their first block.
      if (Take() != TakeResult::Gone) {
        EXPECT_TRUE(WaitUntil([this] { return Take() == TakeResult::Block; }, 3s));
      }
      return event;
    });
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
}

TEST_F(PulseInputTest, ListsDevicesWithoutOpeningOne) {
  StartServer();
  PulseDeviceLister lister(scheduler);
  std::optional<DeviceListing> listing;
  const auto list = [&] {
    listing.reset();
    lister.List([&](const DeviceListing& answer) { listing = answer; });
    return WaitUntil([&] { return scheduler.RunPosted(), listing.has_value(); }, 4s);
  };
  ASSERT_TRUE(list() && listing->devices.size() == 1U) << listing->error;
  EXPECT_EQ(listing->defaultName, "test.monitor");
  input->FindDevices();
  const auto known = [this] { return scheduler.RunPosted(), !input->Devices().empty(); };
  EXPECT_TRUE(WaitUntil(known, 4s) && input->Devices().front().name == "test.monitor");
  EXPECT_TRUE(events.empty() && Take() == TakeResult::Gone);
  server->Signal(SIGSTOP);
  EXPECT_TRUE(list());
  EXPECT_EQ(listing->error, "Sound server does not answer.");
}

}  // namespace
}  // namespace velt
