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

// One channel as any other program reads it.
std::vector<double> Read(const std::filesystem::path& file, SF_INFO& info) {
  SNDFILE* sound = sf_open(file.c_str(), SFM_READ, &info);
  std::vector<int16_t> all(static_cast<size_t>(info.frames * info.channels));
  sf_readf_short(sound, all.data(), info.frames);
  sf_close(sound);
  std::vector<double> left;
  for (size_t i = 0; i < all.size(); i += 2) left.push_back(all[i]);
  return left;
}

// A sine is known by s[n - 1] + s[n + 1] = 2 cos(w) s[n]: w is its frequency, and what does not fit
// is where something is missing.
void ExpectTone(const std::filesystem::path& file, int rateHz, bool finished) {
  SCOPED_TRACE(file);
  SF_INFO info{};
  const std::vector<double> s = Read(file, info);
  EXPECT_EQ(std::tuple(info.format, info.channels, info.samplerate),
            std::tuple(SF_FORMAT_WAV | SF_FORMAT_PCM_16, 2, rateHz));
  EXPECT_TRUE(!finished || std::filesystem::file_size(file) == 44 + 4 * s.size());
  ASSERT_GT(s.size(), 4000U);
  double product = 0, square = 0;
  for (size_t n = 1; n + 1 < s.size(); ++n) {
    product += s[n] * (s[n - 1] + s[n + 1]);
    square += s[n] * s[n];
  }
  const double cosine = product / 2 / square;
  EXPECT_NEAR(std::acos(cosine) / (2 * std::numbers::pi) * rateHz, 1000, 1);
  // The server's change of rates begins with a swing.
  for (size_t n = static_cast<size_t>(rateHz) / 50; n + 1 < s.size(); ++n) {
    ASSERT_NEAR(s[n - 1] + s[n + 1], 2 * cosine * s[n], 100) << "a gap at " << n;
  }
}

struct Station {
  int rateHz;
  std::shared_ptr<const TempFolder> home = std::make_shared<const TempFolder>();
  std::unique_ptr<WindowDriver> window = {};

  std::vector<std::filesystem::path> Files() const { return FilesIn(*home / "VELT/WAV"); }
  // Presses the record button and waits until that much was recorded.
  bool Record(double wanted) const {
    const size_t before = Files().size();
    window->Click(window->form.imgRecOnOff[0]);
    return WaitUntil([&] { return Files().size() > before && Has(wanted); }, seconds(9));
  }
  bool Has(double wanted) const {
    SF_INFO info{};
    return static_cast<double>(Read(Files().back(), info).size()) >= wanted * rateHz;
  }
};

TEST(RecordingWalk, ATonesRecordingIsWholeWhateverEndsIt) {
  PulseServer sound;
  sound.Pactl({"load-module", "module-sine", "sink=test", "frequency=1000", "rate=44100"});
  std::array<Station, 3> stations{{{11025}, {22050}, {44100}}};
  for (Station& station : stations) {
    station.home->Write("KALVARO/VELT-SA.ini",
                        "[VELT-SA]\nAutoStartSA=True\nVersion=3.0.0\nRecSampleRate=" +
                            std::to_string(station.rateHz) + "\n");
    station.window = std::make_unique<WindowDriver>(
        std::vector<std::string>(), std::vector{sound.Environment().front()}, station.home);
    ASSERT_TRUE(station.window->Dismiss("OmniRig not Configured for CAT"));
    ASSERT_TRUE(station.Record(0.1));
  }
  const auto& [stopped, killed, deprived] = stations;
  const auto& form = stopped.window->form;
  stopped.window->Click(form.imgStartStop);
  const auto heardFrom = std::chrono::steady_clock::now();
  EXPECT_TRUE(WaitUntil([&] { return stopped.Has(2); }, seconds(9)));
  stopped.window->Click(form.imgRecOnOff[0]);
  killed.window->Program().Kill();
  const std::chrono::duration<double> heard = std::chrono::steady_clock::now() - heardFrom;
  EXPECT_TRUE(killed.Has(heard.count() - 1));

  EXPECT_TRUE(stopped.Record(0.5));
  stopped.window->Program().Signal(SIGTERM);
  EXPECT_TRUE(stopped.window->Program().WaitForEnd(seconds(5)));
  sound.Kill();
  EXPECT_TRUE(WaitUntil([&] { return deprived.window->ShowsNotice(); }, seconds(5)));
  EXPECT_EQ(stopped.Files().size(), 2U);
  for (const Station& station : stations) {
    for (const auto& file : station.Files()) {
      ExpectTone(file, station.rateHz, &station != &killed);
    }
  }
}

}  // namespace
}  // namespace velt
