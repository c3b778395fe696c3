#include "adapters/soundfile/sound_file_reader.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <csignal>
#include <cstring>
#include <limits>

#include "adapters/soundfile/repeated_file.h"
#include "support/temp_folder.h"

namespace velt {
namespace {

constexpr int kWav16 = SF_FORMAT_WAV | SF_FORMAT_PCM_16;

struct SoundFileTest : testing::Test {
  // Interleaved samples, 1.0 being full scale, as a file of that kind.
  void WriteSound(const std::string& name, int format, int rateHz, int channels,
                  const std::vector<float>& samples) {
    SF_INFO info{0, rateHz, channels, format, 0, 0};
    SNDFILE* sound = sf_open((folder / name).c_str(), SFM_WRITE, &info);
    ASSERT_NE(sound, nullptr) << sf_strerror(nullptr);
    // The library would scale numbers of floating point by 32767 for the others.
    if ((format & SF_FORMAT_SUBMASK) == SF_FORMAT_FLOAT) {
      sf_write_float(sound, samples.data(), static_cast<sf_count_t>(samples.size()));
    } else {
      for (const float sample : samples) {
        const auto whole = static_cast<int16_t>(sample * 32768);
        sf_write_short(sound, &whole, 1);
      }
    }
    sf_close(sound);
  }
  std::vector<int16_t> ReadAll() {
    std::vector<int16_t> all;
    std::array<int16_t, kBlockSamples> block{};
    while (reader.ReadBlock(block)) all.insert(all.end(), block.begin(), block.end());
    return all;
  }
  std::string Open(const std::string& name) { return reader.Open(folder / name); }

  ScratchFolder folder;
  SoundFileReader reader;
};

// Sample i of the ramp is 37 * i, wrapped to 16 bits.
std::vector<int16_t> Ramp16(size_t count) {
  std::vector<int16_t> samples(count);
  for (size_t i = 0; i < count; ++i) samples[i] = static_cast<int16_t>(i * 37);
  return samples;
}
std::vector<float> Ramp(size_t count) {
  std::vector<float> samples;
  for (const int16_t sample : Ramp16(count)) samples.push_back(sample / 32768.0F);
  return samples;
}

TEST_F(SoundFileTest, WholeBlocksOfOneChannelUntouched) {
  for (const int format : {kWav16, SF_FORMAT_FLAC | SF_FORMAT_PCM_16,
                           SF_FORMAT_AIFF | SF_FORMAT_PCM_24, SF_FORMAT_WAV | SF_FORMAT_FLOAT}) {
    WriteSound("sound", format, 44100, 1, Ramp(20 * kBlockSamples + 511));
    ASSERT_EQ(Open("sound"), "");
    EXPECT_EQ(reader.Info().frames, 20 * kBlockSamples + 511);
    for (int round = 0; round < 2; ++round) {
      EXPECT_EQ(ReadAll(), Ramp16(20 * kBlockSamples)) << std::hex << format;
      ASSERT_TRUE(reader.Rewind());
    }
    EXPECT_EQ(reader.Warning(), "");
  }
}

TEST_F(SoundFileTest, ChannelsAreAveragedRoundedAndLimited) {
  constexpr float kStep = 1.0F / 32768;
  struct Case {
    float left, right;
    int16_t mono;
  };
  for (const Case& c :
       {Case{3 * kStep, 2 * kStep, 2}, Case{3 * kStep, 4 * kStep, 4}, Case{-kStep, -2 * kStep, -2},
        Case{1.0F, 1.0F, 32767}, Case{-1.5F, -9.0F, -32768}, Case{0.5F, -0.5F, 0},
        Case{std::numeric_limits<float>::quiet_NaN(), 0, 0}}) {
    std::vector<float> samples;
    for (size_t i = 0; i < kBlockSamples; ++i) samples.insert(samples.end(), {c.left, c.right});
    WriteSound("f.wav", SF_FORMAT_WAV | SF_FORMAT_FLOAT, 44100, 2, samples);
    ASSERT_EQ(Open("f.wav"), "");
    EXPECT_EQ(ReadAll(), std::vector<int16_t>(kBlockSamples, c.mono)) << c.left;
  }
}

TEST_F(SoundFileTest, OtherRatesKeepPitchLevelAndLength) {
  const auto tone = [](size_t i, int rateHz) {
    return 0.5 * std::sin(6.283185307179586 * 1000 * static_cast<double>(i) / rateHz);
  };
  for (const int rateHz : {8000, 48000, 96000}) {
    // Hardly more than 172 blocks, so that the last one needs all that the filter holds back.
    std::vector<float> samples(static_cast<size_t>(rateHz) * (172 * 512 + 8) / 44100 + 1);
    for (size_t i = 0; i < samples.size(); ++i) samples[i] = static_cast<float>(tone(i, rateHz));
    WriteSound("r.wav", kWav16, rateHz, 1, samples);
    ASSERT_EQ(Open("r.wav"), "");
    EXPECT_EQ(reader.Info().rateHz, rateHz);
    EXPECT_NEAR(reader.Info().DurationSeconds(), 2.0, 0.01);
    for (int round = 0; round < 2; ++round) {
      const auto read = ReadAll();
      ASSERT_EQ(read.size(), 172 * kBlockSamples) << rateHz;
      double worst = 0;  // away from the edges of the file
      for (size_t i = 2000; i < 84000; ++i) {
        worst = std::max(worst, std::abs(read[i] - 32768 * tone(i, 44100)));
      }
      EXPECT_LT(worst, 30) << rateHz;
      ASSERT_TRUE(reader.Rewind());
    }
  }
}

TEST_F(SoundFileTest, AFileThatCannotBeUsedGivesOneClearLine) {
  folder.Write("empty.wav", "");
  folder.Write("text.wav", "this is no sound\n");
  folder.Write("header.wav", "RIFF\x24\xF0\xFF\x7FWAVEfmt ");
  WriteSound("short.wav", kWav16, 44100, 1, Ramp(511));
  WriteSound("short48.wav", kWav16, 48000, 1, Ramp(550));
  WriteSound("slow.wav", kWav16, 100, 1, Ramp(5000));
  // Sound of no length with a title behind it is no unfinished recording.
  WriteSound("none.wav", kWav16, 44100, 1, {});
  folder.Write("none.wav", folder.Read("none.wav") + std::string("LIST\xD0\x07\0\0", 8) +
                               std::string(2000, 'x'));
  std::filesystem::create_directory(folder / "folder.wav");
  ::mkfifo((folder / "pipe.wav").c_str(), 0600);
  const char* const tooShort = "there is less than one block of 512 samples";
  const char* const noSound = "not a sound file that can be read";
  for (const auto& [name, reason] : std::initializer_list<std::array<const char*, 2>>{
           {"missing.wav", "no such file"},
           {"folder.wav", "this is a folder, not a sound file"},
           {"empty.wav", "the file is empty"},
           {"text.wav", noSound},
           {"header.wav", noSound},
           {"pipe.wav", "not a sound file"},
           {"short.wav", tooShort},
           {"short48.wav", tooShort},
           {"none.wav", tooShort},
           {"slow.wav", "a rate of 100 Hz cannot be used"}}) {
    EXPECT_EQ(Open(name), (folder / name).string() + ": " + reason);
  }
}

TEST_F(SoundFileTest, UnfinishedAndCutOffFilesAreReadAsFarAsTheyGo) {
  WriteSound("whole.wav", kWav16, 44100, 1, Ramp(3 * kBlockSamples + 100));
  const std::string whole = folder.Read("whole.wav");
  const std::string unfinished = "the recording was never finished";
  const auto length = static_cast<uint32_t>(whole.size());
  struct Case {
    uint32_t riffSize, dataSize;
    size_t bytes;  // of the file that are there
    std::string warning;
  };
  for (const Case& c :
       {Case{0, 0, length, unfinished}, Case{36, 0, length, unfinished},
        Case{length - 8, 0, length, unfinished}, Case{UINT32_MAX, UINT32_MAX, length, unfinished},
        Case{0x7FFFF024, 0x7FFFF000, length, unfinished}, Case{0, 0, length - 1, unfinished},
        Case{length - 8, length - 44, length - 1024, "1024 bytes of sound are missing"},
        Case{length - 8, length - 44, length, ""}}) {
    std::string bytes = whole.substr(0, c.bytes);
    std::memcpy(&bytes[4], &c.riffSize, 4);
    std::memcpy(&bytes[40], &c.dataSize, 4);
    folder.Write("w.wav", bytes);
    ASSERT_EQ(Open("w.wav"), "") << c.riffSize;
    const size_t there = (c.bytes - 44) / 2;
    EXPECT_EQ(reader.Info().frames, static_cast<int64_t>(there)) << c.riffSize;
    EXPECT_EQ(ReadAll(), Ramp16(there / kBlockSamples * kBlockSamples)) << c.riffSize;
    EXPECT_NE(reader.Warning().find(c.warning), std::string::npos) << reader.Warning();
    EXPECT_EQ(reader.Warning().empty(), c.warning.empty());
    ASSERT_TRUE(reader.Rewind());
    EXPECT_EQ(ReadAll().size(), there / kBlockSamples * kBlockSamples);
  }
  // A kind of file whose missing end shows only when it is reached.
  WriteSound("c.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 44100, 1, Ramp(100000));
  folder.Write("c.flac", folder.Read("c.flac").substr(0, folder.Read("c.flac").size() / 2));
  ASSERT_EQ(Open("c.flac"), "");
  EXPECT_GT(ReadAll().size(), 10000U);
  EXPECT_NE(reader.Warning().find("cut off"), std::string::npos);
}

TEST_F(SoundFileTest, AKilledWritersFileIsReadToItsLastSample) {
  std::array<int, 2> written{};
  ASSERT_EQ(::pipe(written.data()), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    SF_INFO info{0, 44100, 1, kWav16, 0, 0};
    SNDFILE* sound = sf_open((folder / "k.wav").c_str(), SFM_WRITE, &info);
    sf_write_short(sound, Ramp16(4 * kBlockSamples).data(), 4 * kBlockSamples);
    sf_write_sync(sound);
    while (::write(written[1], "x", 1) == 1) ::pause();
  }
  char ready = 0;
  EXPECT_EQ(::read(written[0], &ready, 1), 1);
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  for (const int end : written) ::close(end);
  ASSERT_EQ(Open("k.wav"), "");
  EXPECT_EQ(ReadAll(), Ramp16(4 * kBlockSamples));
  EXPECT_NE(reader.Warning(), "");
}

TEST_F(SoundFileTest, ARepeatedFileBeginsAgainAtItsEnd) {
  WriteSound("r.wav", kWav16, 44100, 1, Ramp(3 * kBlockSamples + 7));
  RepeatedFile file(folder / "r.wav");
  ASSERT_EQ(file.Open(), "");
  const auto ramp = Ramp16(3 * kBlockSamples);
  uint64_t position = 0;
  for (const size_t skipped : {0U, 1U, 511U, 512U, 5000U}) {
    ASSERT_TRUE(file.Skip(skipped));
    position += skipped;
    std::array<int16_t, 700> read{};
    ASSERT_TRUE(file.Read(read));
    EXPECT_EQ(read.front(), ramp[position % ramp.size()]);
    EXPECT_EQ(read.back(), ramp[(position + 699) % ramp.size()]);
    position += 700;
  }
}

}  // namespace
}  // namespace velt
