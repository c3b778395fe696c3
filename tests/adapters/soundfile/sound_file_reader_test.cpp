#include "adapters/soundfile/sound_file_reader.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <csignal>
#include <cstring>
#include <limits>
#include <numbers>

#include "adapters/soundfile/repeated_file.h"
#include "support/temp_folder.h"

namespace velt {
namespace {

using Block = std::array<int16_t, kBlockSamples>;

// Interleaved samples as a file of that kind.
template <class Sample>
void WriteSound(const std::filesystem::path& path, int format, int rateHz, int channels,
                const std::vector<Sample>& samples) {
  SF_INFO info{};
  info.samplerate = rateHz;
  info.channels = channels;
  info.format = format;
  SNDFILE* sound = sf_open(path.c_str(), SFM_WRITE, &info);
  ASSERT_NE(sound, nullptr) << sf_strerror(nullptr);
  const auto count = static_cast<sf_count_t>(samples.size());
  if constexpr (std::is_same_v<Sample, float>) {
    EXPECT_EQ(sf_write_float(sound, samples.data(), count), count);
  } else {
    EXPECT_EQ(sf_write_short(sound, samples.data(), count), count);
  }
  sf_close(sound);
}

std::vector<int16_t> Ramp(size_t count) {
  std::vector<int16_t> samples(count);
  for (size_t i = 0; i < count; ++i) samples[i] = static_cast<int16_t>(i * 37);
  return samples;
}

std::vector<int16_t> ReadAll(SoundFileReader& reader) {
  std::vector<int16_t> all;
  Block block{};
  while (reader.ReadBlock(block)) all.insert(all.end(), block.begin(), block.end());
  return all;
}

std::vector<int16_t> First(std::vector<int16_t> samples, size_t count) {
  samples.resize(count);
  return samples;
}

constexpr int kWav16 = SF_FORMAT_WAV | SF_FORMAT_PCM_16;

TEST(SoundFileReader, WholeBlocksOfOneChannelUntouched) {
  const TempFolder folder;
  const auto samples = Ramp(20 * kBlockSamples + 511);
  for (const int format : {kWav16, SF_FORMAT_FLAC | SF_FORMAT_PCM_16,
                           SF_FORMAT_AIFF | SF_FORMAT_PCM_16, SF_FORMAT_WAV | SF_FORMAT_PCM_24}) {
    WriteSound(folder / "sound", format, 44100, 1, samples);
    SoundFileReader reader;
    ASSERT_EQ(reader.Open(folder / "sound"), "");
    EXPECT_EQ(reader.Info().frames, static_cast<int64_t>(samples.size()));
    EXPECT_EQ(ReadAll(reader), First(samples, 20 * kBlockSamples)) << std::hex << format;
    ASSERT_TRUE(reader.Rewind());
    EXPECT_EQ(ReadAll(reader).size(), 20 * kBlockSamples);
    EXPECT_EQ(reader.Warning(), "");
  }
}

TEST(SoundFileReader, ChannelsAreAveragedRoundedAndLimited) {
  const TempFolder folder;
  constexpr float kStep = 1.0F / 32768;
  struct Case {
    float left, right;
    int16_t mono;
  };
  for (const Case& c :
       {Case{3 * kStep, 2 * kStep, 2}, Case{3 * kStep, 4 * kStep, 4}, Case{-kStep, -2 * kStep, -2},
        Case{0.5F, -0.5F, 0}, Case{1.0F, 1.0F, 32767}, Case{-1.5F, -9.0F, -32768},
        Case{std::numeric_limits<float>::infinity(), 0, 32767},
        Case{std::numeric_limits<float>::quiet_NaN(), 0, 0}}) {
    std::vector<float> samples;
    for (size_t i = 0; i < kBlockSamples; ++i) samples.insert(samples.end(), {c.left, c.right});
    WriteSound(folder / "f.wav", SF_FORMAT_WAV | SF_FORMAT_FLOAT, 44100, 2, samples);
    SoundFileReader reader;
    ASSERT_EQ(reader.Open(folder / "f.wav"), "");
    EXPECT_EQ(reader.Info().channels, 2);
    EXPECT_EQ(ReadAll(reader), std::vector<int16_t>(kBlockSamples, c.mono)) << c.left;
  }
}

TEST(SoundFileReader, OtherRatesKeepPitchAndLength) {
  const TempFolder folder;
  for (const int rateHz : {8000, 22050, 48000, 96000}) {
    std::vector<float> samples(static_cast<size_t>(rateHz) * 2);
    for (size_t i = 0; i < samples.size(); ++i) {
      samples[i] = 0.5F * static_cast<float>(std::sin(2 * std::numbers::pi * 1000 *
                                                      static_cast<double>(i) / rateHz));
    }
    WriteSound(folder / "r.wav", kWav16, rateHz, 1, samples);
    SoundFileReader reader;
    ASSERT_EQ(reader.Open(folder / "r.wav"), "");
    EXPECT_EQ(reader.Info().rateHz, rateHz);
    EXPECT_DOUBLE_EQ(reader.Info().DurationSeconds(), 2.0);
    for (int round = 0; round < 2; ++round) {
      const auto read = ReadAll(reader);
      EXPECT_EQ(read.size() / kBlockSamples, 2 * 44100 / kBlockSamples) << rateHz;
      // Against the same tone made at the wanted rate, away from the edges of the file.
      double worst = 0;
      for (size_t i = 2000; i < 84000; ++i) {
        const double wanted =
            16384 * std::sin(2 * std::numbers::pi * 1000 * static_cast<double>(i) / 44100);
        worst = std::max(worst, std::abs(read.at(i) - wanted));
      }
      EXPECT_LT(worst, 30) << rateHz;
      ASSERT_TRUE(reader.Rewind());
    }
  }
}

TEST(SoundFileReader, AFileThatCannotBeUsedGivesOneClearLine) {
  const TempFolder folder;
  folder.Write("empty.wav", "");
  folder.Write("text.wav", "this is no sound\n");
  folder.Write("header.wav", "RIFF\x24\xF0\xFF\x7FWAVEfmt ");
  WriteSound(folder / "short.wav", kWav16, 44100, 1, Ramp(511));
  WriteSound(folder / "short48.wav", kWav16, 48000, 1, Ramp(550));
  WriteSound(folder / "none.wav", kWav16, 44100, 1, Ramp(0));
  WriteSound(folder / "slow.wav", kWav16, 100, 1, Ramp(5000));
  std::filesystem::create_directory(folder / "folder.wav");
  ::mkfifo((folder / "pipe.wav").c_str(), 0600);
  struct Case {
    const char* name;
    const char* reason;
  };
  SoundFileReader reader;
  for (const Case& c : {Case{"missing.wav", "no such file"},
                        Case{"folder.wav", "this is a folder, not a sound file"},
                        Case{"empty.wav", "the file is empty"},
                        Case{"text.wav", "not a sound file that can be read"},
                        Case{"header.wav", "not a sound file that can be read"},
                        Case{"pipe.wav", "not a sound file"},
                        Case{"short.wav", "there is less than one block of 512 samples"},
                        Case{"short48.wav", "there is less than one block of 512 samples"},
                        Case{"none.wav", "there is less than one block of 512 samples"},
                        Case{"slow.wav", "a rate of 100 Hz cannot be used"}}) {
    EXPECT_EQ(reader.Open(folder / c.name), (folder / c.name).string() + ": " + c.reason);
  }
}

TEST(SoundFileReader, UnfinishedAndCutOffFilesAreReadAsFarAsTheyGo) {
  const TempFolder folder;
  const auto samples = Ramp(3 * kBlockSamples + 100);
  WriteSound(folder / "whole.wav", kWav16, 44100, 1, samples);
  const std::string whole = folder.Read("whole.wav");
  const std::string unfinished = "the recording was never finished";
  const std::string cut = "the file is cut off, 1024 bytes of sound are missing";
  const auto length = static_cast<uint32_t>(whole.size());
  struct Case {
    const char* name;
    uint32_t riffSize, dataSize;
    size_t bytes;  // of the file that are there
    std::string warning;
  };
  for (const Case& c : {Case{"all zero", 0, 0, length, unfinished},
                        Case{"as first written", 36, 0, length, unfinished},
                        Case{"only the last size missing", length - 8, 0, length, unfinished},
                        Case{"unknown length", 0xFFFFFFFF, 0xFFFFFFFF, length, unfinished},
                        Case{"two gigabytes", 0x7FFFF024, 0x7FFFF000, length, unfinished},
                        Case{"half a sample", 0, 0, length - 1, unfinished},
                        Case{"cut off", length - 8, length - 44, length - 1024, cut},
                        Case{"as it should be", length - 8, length - 44, length, ""}}) {
    std::string bytes = whole.substr(0, c.bytes);
    std::memcpy(&bytes[4], &c.riffSize, 4);
    std::memcpy(&bytes[40], &c.dataSize, 4);
    folder.Write("w.wav", bytes);
    SoundFileReader reader;
    ASSERT_EQ(reader.Open(folder / "w.wav"), "") << c.name;
    const size_t there = (c.bytes - 44) / 2;
    EXPECT_EQ(reader.Info().frames, static_cast<int64_t>(there)) << c.name;
    EXPECT_EQ(ReadAll(reader), First(samples, there / kBlockSamples * kBlockSamples)) << c.name;
    EXPECT_NE(reader.Warning().find(c.warning), std::string::npos) << reader.Warning();
    EXPECT_EQ(reader.Warning().empty(), c.warning.empty()) << c.name;
    ASSERT_TRUE(reader.Rewind());
    EXPECT_EQ(ReadAll(reader).size(), there / kBlockSamples * kBlockSamples) << c.name;
  }
  // Sound of no length with its title behind it is no unfinished recording.
  std::string titled = whole.substr(0, 44) + std::string("LIST\x04\0\0\0INFO", 12);
  std::memset(&titled[40], 0, 4);
  folder.Write("w.wav", titled);
  SoundFileReader reader;
  EXPECT_NE(reader.Open(folder / "w.wav"), "");
}

TEST(SoundFileReader, AFlacFileWithoutItsEndTellsSoAtTheEnd) {
  const TempFolder folder;
  WriteSound(folder / "c.flac", SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 44100, 1, Ramp(100000));
  const std::string bytes = folder.Read("c.flac");
  folder.Write("c.flac", bytes.substr(0, bytes.size() / 2));
  SoundFileReader reader;
  ASSERT_EQ(reader.Open(folder / "c.flac"), "");
  EXPECT_EQ(reader.Warning(), "");
  EXPECT_GT(ReadAll(reader).size(), 10000U);
  EXPECT_NE(reader.Warning().find("cut off"), std::string::npos);
}

TEST(SoundFileReader, AKilledWritersFileIsReadToItsLastSample) {
  const TempFolder folder;
  std::array<int, 2> written{};
  ASSERT_EQ(::pipe(written.data()), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    SF_INFO info{};
    info.samplerate = 44100;
    info.channels = 1;
    info.format = kWav16;
    SNDFILE* sound = sf_open((folder / "k.wav").c_str(), SFM_WRITE, &info);
    const auto samples = Ramp(4 * kBlockSamples);
    sf_write_short(sound, samples.data(), static_cast<sf_count_t>(samples.size()));
    sf_write_sync(sound);
    const bool told = ::write(written[1], "x", 1) == 1;
    while (told) ::pause();
    ::_exit(1);
  }
  char ready = 0;
  EXPECT_EQ(::read(written[0], &ready, 1), 1);
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  for (const int end : written) ::close(end);

  SoundFileReader reader;
  ASSERT_EQ(reader.Open(folder / "k.wav"), "");
  EXPECT_EQ(ReadAll(reader), Ramp(4 * kBlockSamples));
  EXPECT_NE(reader.Warning(), "");
}

TEST(RepeatedFile, BeginsAgainAtItsEnd) {
  const TempFolder folder;
  const auto samples = Ramp(3 * kBlockSamples + 7);
  WriteSound(folder / "r.wav", kWav16, 44100, 1, samples);
  RepeatedFile file(folder / "r.wav");
  ASSERT_EQ(file.Open(), "");
  const auto at = [&](uint64_t position) { return samples[position % (3 * kBlockSamples)]; };
  uint64_t position = 0;
  for (const size_t skipped : {0U, 1U, 511U, 512U, 5000U}) {
    ASSERT_TRUE(file.Skip(skipped));
    position += skipped;
    std::array<int16_t, 700> read{};
    ASSERT_TRUE(file.Read(read));
    EXPECT_EQ(read.front(), at(position));
    EXPECT_EQ(read.back(), at(position + 699));
    position += 700;
  }
  EXPECT_NE(RepeatedFile(folder / "none").Open(), "");
}

}  // namespace
}  // namespace velt
