#include "adapters/soundfile/sound_file_reader.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <cmath>

#include "support/temp_folder.h"

namespace velt {
namespace {

constexpr int kWav16 = SF_FORMAT_WAV | SF_FORMAT_PCM_16;

// Sample i of the ramp is 37 * i, wrapped to 16 bits.
std::vector<int16_t> Ramp(size_t count) {
  std::vector<int16_t> samples(count);
  for (size_t i = 0; i < count; ++i) samples[i] = static_cast<int16_t>(i * 37);
  return samples;
}

struct SoundFileTest : testing::Test {
  // Interleaved samples as a file of that kind keeps them.
  template <class Sample>
  void WriteSound(const std::vector<Sample>& samples, int rateHz = 44100, int format = kWav16,
                  int channels = 1) {
    SF_INFO info{0, rateHz, channels, format, 0, 0};
    SNDFILE* sound = sf_open(file.c_str(), SFM_WRITE, &info);
    sf_command(sound, SFC_SET_NORM_DOUBLE, nullptr, SF_FALSE);
    const std::vector<double> values(samples.begin(), samples.end());
    sf_write_double(sound, values.data(), static_cast<sf_count_t>(values.size()));
    sf_close(sound);
  }
  void WriteAt(int64_t position, const void* bytes, std::streamsize count) {
    std::fstream stream(file, std::ios::binary | std::ios::in | std::ios::out);
    stream.seekp(position).write(static_cast<const char*>(bytes), count);
  }
  std::vector<int16_t> ReadAll() {
    std::vector<int16_t> all;
    while (reader.ReadBlock(block)) all.insert(all.end(), block.begin(), block.end());
    return all;
  }

  TempFolder folder;
  std::filesystem::path file = folder / "sound.wav";
  SoundFileReader reader;
  std::array<int16_t, kBlockSamples> block{};
};

TEST_F(SoundFileTest, WholeBlocksOfOneChannelUntouched) {
  for (const int format : {kWav16, SF_FORMAT_FLAC | SF_FORMAT_PCM_16}) {
    WriteSound(Ramp(20 * kBlockSamples + 511), 44100, format);
    ASSERT_EQ(reader.Open(file), "");
    EXPECT_EQ(ReadAll(), Ramp(20 * kBlockSamples)) << std::hex << format;
    EXPECT_EQ(reader.Warning(), "");
  }
}

TEST_F(SoundFileTest, ChannelsAreAveragedRoundedAndLimited) {
  constexpr double kStep = 1.0 / 32768;
  for (const auto& [left, right, mono] : {std::tuple{3 * kStep, 2 * kStep, 2},
                                          {3 * kStep, 4 * kStep, 4},
                                          {-1.5, -9, -32768},
                                          {NAN, 0, 0}}) {
    std::vector<double> samples;
    for (size_t i = 0; i < kBlockSamples; ++i) samples.insert(samples.end(), {left, right});
    WriteSound(samples, 44100, SF_FORMAT_WAV | SF_FORMAT_FLOAT, 2);
    ASSERT_EQ(reader.Open(file), "");
    EXPECT_EQ(ReadAll(), std::vector<int16_t>(kBlockSamples, static_cast<int16_t>(mono))) << left;
  }
}

TEST_F(SoundFileTest, OtherRatesKeepPitchLevelAndLength) {
  const auto tone = [](size_t i, int rateHz) {
    return 16384 * std::sin(6.283185307179586 * 1000 * static_cast<double>(i) / rateHz);
  };
  for (const int rateHz : {8000, 96000}) {
    // Hardly more than 172 blocks, so that the last one needs all that the filter holds back.
    std::vector<double> samples(static_cast<size_t>(rateHz) * (172 * 512 + 8) / 44100 + 1);
    for (size_t i = 0; i < samples.size(); ++i) samples[i] = tone(i, rateHz);
    WriteSound(samples, rateHz);
    ASSERT_EQ(reader.Open(file), "");
    const auto read = ReadAll();
    ASSERT_EQ(read.size(), 172 * kBlockSamples) << rateHz;
    // Away from the edges of the file.
    for (size_t i = 2000; i < 84000; ++i) ASSERT_NEAR(read[i], tone(i, 44100), 30) << rateHz;
  }
}

TEST_F(SoundFileTest, AFileThatCannotBeUsedGivesOneClearLine) {
  ::mkfifo(file.c_str(), 0600);
  EXPECT_EQ(reader.Open(file), file.string() + ": not a sound file");
  std::filesystem::remove(file);
  WriteSound(Ramp(511));
  EXPECT_EQ(reader.Open(file), file.string() + ": there is less than one block of 512 samples");
  WriteSound(Ramp(5000), 100);
  EXPECT_EQ(reader.Open(file), file.string() + ": a rate of 100 Hz cannot be used");
  // Nothing but a begin: what a copy that was broken off leaves.
  folder.Write("sound.wav", std::string("RIFF\xFF\xFF\xFF\x7FWAVE", 12));
  std::filesystem::resize_file(file, 2'000'000'000);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(reader.Open(file), file.string() + ": not a sound file that can be read");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

TEST_F(SoundFileTest, UnfinishedAndCutOffFilesAreReadAsFarAsTheyGo) {
  WriteSound(Ramp(3 * kBlockSamples + 100));
  const std::string whole = folder.Read("sound.wav");
  const std::string note("LIST\6\0\0\0note. \0", 15);  // no sound
  const std::string unfinished = "the recording was never finished";
  const auto length = static_cast<uint32_t>(whole.size());
  using Case = std::tuple<uint32_t, std::string, std::string>;
  for (const auto& [dataSize, bytes, warning] :
       {Case{0, whole.substr(0, length - 1), unfinished}, Case{UINT32_MAX, whole, unfinished},
        Case{length - 44, whole.substr(0, length - 1024), "1024 bytes of sound are missing"},
        Case{length - 44, whole + note, ""}, Case{1024, whole, "longer than its header says"}}) {
    folder.Write("sound.wav", bytes);
    WriteAt(40, &dataSize, 4);
    ASSERT_EQ(reader.Open(file), "") << dataSize;
    const size_t blocks = bytes.size() < length - 1 ? 2 : 3;
    EXPECT_EQ(ReadAll(), Ramp(blocks * kBlockSamples)) << dataSize;
    EXPECT_NE(reader.Warning().find(warning), std::string::npos) << reader.Warning();
    EXPECT_EQ(reader.Warning().empty(), warning.empty()) << reader.Warning();
  }
}

TEST_F(SoundFileTest, SoundBeyondFourGigabytesIsNotLost) {
  constexpr int64_t kFrames = 2200000000;
  // A plain header cannot tell such a length; its writers went on all the same. Most of the file
  // takes no place on the disk.
  WriteSound(Ramp(kBlockSamples));
  const auto dataSize = static_cast<uint32_t>(kFrames * 2);
  WriteAt(40, &dataSize, 4);
  WriteAt(44 + (kFrames - 1) * 2, "ab", 2);
  ASSERT_EQ(reader.Open(file), "");
  EXPECT_EQ(reader.Info().frames, kFrames);
  EXPECT_NE(reader.Warning(), "");
}

}  // namespace
}  // namespace velt
