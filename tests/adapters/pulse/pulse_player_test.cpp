// Files of all kinds through a sound server that each test starts, and then mistreats.
#include "adapters/pulse/pulse_player.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include "adapters/soundfile/played_file.h"
#include "support/pulse_server.h"
#include "support/virtual_scheduler.h"

namespace velt {
namespace {

using namespace std::chrono_literals;

struct PulsePlayerTest : testing::Test {
  PulsePlayerTest() {
    server.ExportEnvironment();
    player =
        std::make_unique<PulsePlayer>(scheduler, [] { return std::make_unique<PlayedFile>(); });
    listening = player->happened.Listen([this](const PlayerEvent& event) {
      constexpr const char* kinds[] = {"Ready", "Drained", "Failed "};
      events.push_back(kinds[static_cast<int>(event.kind)] + event.text);
    });
  }
  std::string Next(Milliseconds limit = 3000ms) {
    const auto happened = [this] { return scheduler.RunPosted(), !events.empty(); };
    if (!WaitUntil(happened, limit)) return "nothing in time";
    const std::string event = events.front();
    events.erase(events.begin());
    return event;
  }
  // Tells what comes of it, once it plays if it can.
  std::string Play(const std::filesystem::path& file) {
    player->Prepare(file);
    const std::string event = Next();
    if (event != "Ready") return event;
    player->Start();
    return WaitUntil([&] { return player->Heard().position > 50ms; }, 2s) ? "plays" : "is still";
  }

  TempFolder folder;
  PulseServer server;
  VirtualScheduler scheduler;
  std::unique_ptr<PulsePlayer> player;
  Connection listening;
  std::vector<std::string> events;
};

TEST_F(PulsePlayerTest, FilesOfAllKindsAreHeardAsTheyAreAndEnd) {
  for (const auto& [rateHz, channels, format] :
       {std::tuple{44100, 2, SF_FORMAT_WAV | SF_FORMAT_PCM_16},
        {8000, 1, SF_FORMAT_WAV | SF_FORMAT_PCM_U8},
        {96000, 6, SF_FORMAT_WAV | SF_FORMAT_PCM_24},
        {1000000, 2, SF_FORMAT_WAV | SF_FORMAT_FLOAT},
        {22050, 1, SF_FORMAT_FLAC | SF_FORMAT_PCM_16}}) {
    SCOPED_TRACE(rateHz);
    const auto file = folder / "tone.wav";
    WriteToneFile(file, 1000, 2.0, rateHz, channels, format);
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(Play(file), "plays");
    EXPECT_NEAR(server.MonitorHz(), 1000, 40);
    EXPECT_EQ(Next(), "Drained");
    EXPECT_GT(std::chrono::steady_clock::now() - start, 1950ms);
    EXPECT_EQ(player->Heard().position, 2000ms);
  }
}

TEST_F(PulsePlayerTest, WhatCannotBePlayedIsToldAndNothingWaits) {
  folder.Write("text.wav", "not a sound");
  WriteToneFile(folder / "header.wav", 1000, 0, 8000);
  WriteToneFile(folder / "long.wav", 1000, 600, 8000);
  EXPECT_EQ(Play(folder / "text.wav"), "Failed text.wav: not a sound file that can be read.");
  EXPECT_EQ(Play(folder / "header.wav"), "Failed There is no sound in the file.");
  ASSERT_EQ(Play(folder / "long.wav"), "plays");
  WriteToneFile(folder / "cut.wav", 1000, 30, 44100, 2);
  ASSERT_EQ(Play(folder / "cut.wav"), "plays");
  std::filesystem::resize_file(folder / "cut.wav", 1000);
  EXPECT_EQ(Next(6s), "Failed The file ended too early: it cannot be read further.");
  ASSERT_EQ(Play(folder / "long.wav"), "plays");
  server.Pactl({"unload-module", "module-null-sink"});
  EXPECT_EQ(Next().substr(0, 32), "Failed The sound output was lost");
  EXPECT_EQ(Play(folder / "long.wav"), "Failed There is no sound output.");
  server.Restart();
  ASSERT_EQ(Play(folder / "long.wav"), "plays");
  server.Signal(SIGSTOP);
  EXPECT_EQ(Next(6s), "Failed The sound output stands still.");
  server.Signal(SIGCONT);
  ASSERT_EQ(Play(folder / "long.wav"), "plays");
  server.Kill();
  EXPECT_EQ(Next(), "Failed Sound server is gone.");
  EXPECT_EQ(Play(folder / "long.wav"), "Failed No sound server: Connection refused.");
}

}  // namespace
}  // namespace velt
