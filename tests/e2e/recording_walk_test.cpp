// Recordings of a real sound server's tone, made and mistreated in real windows.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <array>
#include <cmath>
#include <numbers>

#include "e2e/window_driver.h"
#include "support/pulse_server.h"

namespace velt {
namespace {

using std::chrono::seconds;
using Steady = std::chrono::steady_clock;

constexpr double kToneHz = 1000;

struct Recording {
  SF_INFO info{};
  std::vector<int16_t> left;
  double Seconds() const { return static_cast<double>(info.frames) / info.samplerate; }
};

Recording Read(const std::filesystem::path& file) {
  Recording recording;
  SNDFILE* sound = sf_open(file.c_str(), SFM_READ, &recording.info);
  if (sound == nullptr) return recording;
  std::vector<int16_t> frame(2);
  while (sf_readf_short(sound, frame.data(), 1) == 1) recording.left.push_back(frame[0]);
  sf_close(sound);
  return recording;
}

// A sine is known by s[n - 1] + s[n + 1] = 2 cos(w) s[n]: w is its frequency, and whatever does not
// fit is where something is missing.
void ExpectTone(const Recording& recording, int rateHz) {
  EXPECT_EQ(recording.info.format, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
  EXPECT_EQ(recording.info.channels, 2);
  EXPECT_EQ(recording.info.samplerate, rateHz);
  const std::vector<int16_t>& s = recording.left;
  ASSERT_GT(s.size(), 1000U);
  double product = 0, square = 0;
  for (size_t n = 1; n + 1 < s.size(); ++n) {
    product += double(s[n]) * (s[n - 1] + s[n + 1]);
    square += double(s[n]) * s[n];
  }
  EXPECT_GT(square / static_cast<double>(s.size()), 1e6);
  const double cosine = product / 2 / square;
  EXPECT_NEAR(std::acos(cosine) / (2 * std::numbers::pi) * rateHz, kToneHz, 1);
  // The server's change of rates begins with a swing.
  for (size_t n = static_cast<size_t>(rateHz) / 50; n + 1 < s.size(); ++n) {
    ASSERT_NEAR(s[n - 1] + s[n + 1], 2 * cosine * s[n], 100) << "a gap at " << n;
  }
}

struct Station {
  int rateHz;
  std::shared_ptr<const TempFolder> home = std::make_shared<const TempFolder>();
  std::unique_ptr<WindowDriver> window = {};
  Steady::time_point began = {};

  void Open(const PulseServer& sound) {
    std::filesystem::create_directory(*home / "KALVARO");
    home->Write("KALVARO/VELT-SA.ini",
                "[VELT-SA]\nAutoStartSA=True\nVersion=3.0.0\nRecSampleRate=" +
                    std::to_string(rateHz) + "\n");
    window = std::make_unique<WindowDriver>(std::vector<std::string>(),
                                            std::vector{sound.Environment().front()}, home);
    ASSERT_TRUE(window->Dismiss("OmniRig not Configured for CAT"));
  }
  std::vector<std::filesystem::path> Files() const {
    std::vector<std::filesystem::path> files;
    for (const auto& file : std::filesystem::directory_iterator(*home / "VELT/WAV")) {
      files.push_back(file.path());
    }
    std::ranges::sort(files);
    return files;
  }
  // Presses the record button; the file is there soon.
  bool Record() {
    const size_t before = Files().size();
    window->Click(window->form.imgRecOnOff[0]);
    began = Steady::now();
    return WaitUntil([&] { return Files().size() > before; }, seconds(5));
  }
  bool HasSeconds(double wanted) const {
    return WaitUntil([&] { return Read(Files().back()).Seconds() >= wanted; }, seconds(10));
  }
};

TEST(RecordingWalk, ATonesRecordingIsWholeWhateverEndsIt) {
  PulseServer sound;
  sound.Pactl({"load-module", "module-sine", "sink=test", "frequency=1000", "rate=44100"});
  std::array<Station, 3> stations{{{11025}, {22050}, {44100}}};
  for (Station& station : stations) station.Open(sound);
  auto& [stopped, killed, deprived] = stations;
  for (Station& station : stations) ASSERT_TRUE(station.Record());
  // The analyser is stopped and started, and the recording goes on.
  stopped.window->Click(stopped.window->form.imgStartStop);
  ASSERT_TRUE(stopped.HasSeconds(1));
  stopped.window->Click(stopped.window->form.imgStartStop);
  for (Station& station : stations) ASSERT_TRUE(station.HasSeconds(2));

  stopped.window->Click(stopped.window->form.imgRecOnOff[0]);
  killed.window->Program().Kill();
  const double most = std::chrono::duration<double>(Steady::now() - killed.began).count();
  EXPECT_GT(Read(killed.Files().front()).Seconds(), most - 1.5);
  // A signal ends a second one: not a frame that was written is left out of its header.
  ASSERT_TRUE(stopped.Record() && stopped.HasSeconds(0.5));
  stopped.window->Program().Signal(SIGTERM);
  EXPECT_TRUE(stopped.window->Program().WaitForEnd(seconds(5)));
  for (const auto& file : stopped.Files()) {
    EXPECT_EQ(std::filesystem::file_size(file),
              44 + 4 * static_cast<uint64_t>(Read(file).info.frames));
  }
  sound.Kill();
  const auto notice = [&] {
    const Rectangle place = deprived.window->form.lblNotice.place;
    return deprived.window->Picture().pixel(place.left + 2, place.top + 2) ==
           qRgb(0xFF, 0xD4, 0x5E);
  };
  EXPECT_TRUE(WaitUntil(notice, seconds(5)));
  for (const Station& station : stations) {
    for (const auto& file : station.Files()) {
      SCOPED_TRACE(file);
      ExpectTone(Read(file), station.rateHz);
    }
  }
}

}  // namespace
}  // namespace velt
