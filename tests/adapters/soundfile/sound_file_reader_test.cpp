#include "adapters/soundfile/sound_file_reader.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>
#include <cstring>

#include "adapters/soundfile/repeated_file.h"
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
  void WriteSound(const std::string& name, int format, int rateHz, int channels,
                  const std::vector<double>& samples) {
    SF_INFO info{0, rateHz, channels, format, 0, 0};
    SNDFILE* sound = sf_open((folder / name).c_str(), SFM_WRITE, &info);
    ASSERT_NE(sound, nullptr) << sf_strerror(nullptr);
    sf_command(sound, SFC_SET_NORM_DOUBLE, nullptr, SF_FALSE);
    sf_write_double(sound, samples.data(), static_cast<sf_count_t>(samples.size()));
    sf_close(sound);
  }
  void WriteRamp(const std::string& name, int format, int rateHz, size_t count) {
    const auto ramp = Ramp(count);
    WriteSound(name, format, rateHz, 1, {ramp.begin(), ramp.end()});
  }
  std::vector<int16_t> ReadAll() {
    std::vector<int16_t> all;
    std::array<int16_t, kBlockSamples> block{};
    while (reader.ReadBlock(block)) all.insert(all.end(), block.begin(), block.end());
    return all;
  }
  std::string Open(const std::string& name) { return reader.Open(folder / name); }

  TempFolder folder;
  SoundFileReader reader;
};

TEST_F(SoundFileTest, WholeBlocksOfOneChannelUntouched) {
  for (const int format : {kWav16, SF_FORMAT_FLAC | SF_FORMAT_PCM_16}) {
    WriteRamp("sound", format, 44100, 20 * kBlockSamples + 511);
    ASSERT_EQ(Open("sound"), "");
    EXPECT_EQ(reader.Info().frames, 20 * kBlockSamples + 511);
    for (int round = 0; round < 2; ++round) {
      EXPECT_EQ(ReadAll(), Ramp(20 * kBlockSamples)) << std::hex << format;
      ASSERT_TRUE(reader.Rewind());
    }
    EXPECT_EQ(reader.Warning(), "");
  }
}

TEST_F(SoundFileTest, ChannelsAreAveragedRoundedAndLimited) {
  constexpr double kStep = 1.0 / 32768;
  struct Case {
    double left, right;
    int16_t mono;
  };
  for (const Case& c : {Case{3 * kStep, 2 * kStep, 2}, Case{3 * kStep, 4 * kStep, 4},
                        Case{1, 1, 32767}, Case{-1.5, -9, -32768}, Case{NAN, 0, 0}}) {
    std::vector<double> samples;
    for (size_t i = 0; i < kBlockSamples; ++i) samples.insert(samples.end(), {c.left, c.right});
    WriteSound("f.wav", SF_FORMAT_WAV | SF_FORMAT_FLOAT, 44100, 2, samples);
    ASSERT_EQ(Open("f.wav"), "");
    EXPECT_EQ(ReadAll(), std::vector<int16_t>(kBlockSamples, c.mono)) << c.left;
  }
}

TEST_F(SoundFileTest, OtherRatesKeepPitchLevelAndLength) {
  const auto tone = [](size_t i, int rateHz) {
    return 16384 * std::sin(6.283185307179586 * 1000 * static_cast<double>(i) / rateHz);
  };
  for (const int rateHz : {8000, 48000, 96000}) {
    // Hardly more than 172 blocks, so that the last one needs all that the filter holds back.
    std::vector<double> samples(static_cast<size_t>(rateHz) * (172 * 512 + 8) / 44100 + 1);
    for (size_t i = 0; i < samples.size(); ++i) samples[i] = tone(i, rateHz);
    WriteSound("r.wav", kWav16, rateHz, 1, samples);
    ASSERT_EQ(Open("r.wav"), "");
    EXPECT_NEAR(reader.Info().DurationSeconds(), 2.0, 0.01);
    for (int round = 0; round < 2; ++round) {
      const auto read = ReadAll();
      ASSERT_EQ(read.size(), 172 * kBlockSamples) << rateHz;
      // Away from the edges of the file.
      for (size_t i = 2000; i < 84000; ++i) ASSERT_NEAR(read[i], tone(i, 44100), 30) << rateHz;
      ASSERT_TRUE(reader.Rewind());
    }
  }
}

TEST_F(SoundFileTest, AFileThatCannotBeUsedGivesOneClearLine) {
  WriteRamp("short.wav", kWav16, 44100, 511);
  WriteRamp("slow.wav", kWav16, 100, 5000);
  ::mkfifo((folder / "pipe.wav").c_str(), 0600);
  for (const auto& [name, reason] : std::initializer_list<std::array<const char*, 2>>{
           {"pipe.wav", "not a sound file"},
           {"short.wav", "there is less than one block of 512 samples"},
           {"slow.wav", "a rate of 100 Hz cannot be used"}}) {
    EXPECT_EQ(Open(name), (folder / name).string() + ": " + reason);
  }
}

TEST_F(SoundFileTest, UnfinishedAndCutOffFilesAreReadAsFarAsTheyGo) {
  WriteRamp("w.wav", kWav16, 44100, 3 * kBlockSamples + 100);
  const std::string whole = folder.Read("w.wav");
  const std::string note("LIST\6\0\0\0note. \0", 15);  // no sound
  const std::string unfinished = "the recording was never finished";
  const auto length = static_cast<uint32_t>(whole.size());
  struct Case {
    uint32_t dataSize;
    std::string bytes;
    std::string warning;
  };
  for (const Case& c :
       {Case{0, whole.substr(0, length - 1), unfinished}, Case{UINT32_MAX, whole, unfinished},
        Case{0x7FFFF000, whole, unfinished},
        Case{length - 44, whole.substr(0, length - 1024), "1024 bytes of sound are missing"},
        Case{length - 44, whole + note, ""}, Case{1024, whole, "longer than its header says"}}) {
    folder.Write("w.wav", c.bytes);
    std::fstream(folder / "w.wav", std::ios::binary | std::ios::in | std::ios::out)
        .seekp(40)
        .write(reinterpret_cast<const char*>(&c.dataSize), 4);
    ASSERT_EQ(Open("w.wav"), "") << c.dataSize;
    const size_t blocks = c.bytes.size() < length - 1 ? 2 : 3;
    EXPECT_EQ(ReadAll(), Ramp(blocks * kBlockSamples)) << c.dataSize;
    EXPECT_NE(reader.Warning().find(c.warning), std::string::npos) << reader.Warning();
    EXPECT_EQ(reader.Warning().empty(), c.warning.empty()) << reader.Warning();
  }
}

TEST_F(SoundFileTest, SoundBeyondFourGigabytesIsNotLost) {
  constexpr int64_t kFrames = 2200000000;
  const std::array<int16_t, 3> last{11, -22, 33};
  // A plain header cannot tell such a length; its writers went on all the same. Most of the file
  // takes no place on the disk.
  WriteRamp("long.wav", kWav16, 44100, kBlockSamples);
  std::fstream file(folder / "long.wav", std::ios::binary | std::ios::in | std::ios::out);
  for (const uint32_t dataSize : {static_cast<uint32_t>(kFrames * 2), UINT32_MAX}) {
    file.seekp(40).write(reinterpret_cast<const char*>(&dataSize), 4);
    file.seekp(44 + (kFrames - 3) * 2).write(reinterpret_cast<const char*>(last.data()), 6).flush();
    ASSERT_EQ(Open("long.wav"), "") << dataSize;
    EXPECT_EQ(reader.Info().frames, kFrames);
    EXPECT_NE(reader.Warning(), "");
    std::array<int16_t, kBlockSamples> block{};
    ASSERT_TRUE(reader.ReadBlock(block));
    EXPECT_EQ(block[511], Ramp(kBlockSamples)[511]);
    // The reader itself would take seconds to its end.
    PatchedFile patched(folder / "long.wav", *FindWavRepair(folder / "long.wav"));
    SF_INFO info{};
    SNDFILE* sound = patched.OpenSound(info);
    std::array<int16_t, 4> end{};
    sf_seek(sound, kFrames - 3, SEEK_SET);
    EXPECT_EQ(sf_readf_short(sound, end.data(), 4), 3);
    EXPECT_TRUE(std::equal(last.begin(), last.end(), end.begin()));
    sf_close(sound);
  }
}

TEST_F(SoundFileTest, ARepeatedFileBeginsAgainAtItsEnd) {
  WriteRamp("r.wav", kWav16, 44100, 3 * kBlockSamples + 7);
  RepeatedFile file(folder / "r.wav");
  ASSERT_EQ(file.Open(), "");
  const auto ramp = Ramp(3 * kBlockSamples);
  size_t position = 0;
  for (const size_t skipped : {0U, 511U, 512U, 5000U}) {
    ASSERT_TRUE(file.Skip(skipped));
    position += skipped;
    std::array<int16_t, 700> read{};
    ASSERT_TRUE(file.Read(read));
    for (const int16_t sample : read) ASSERT_EQ(sample, ramp[position++ % ramp.size()]);
  }
}

}  // namespace
}  // namespace velt
