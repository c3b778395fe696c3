// Recordings on the disk, and what becomes of them when the disk or their folder does not do.
#include "adapters/soundfile/wav_writer.h"

#include <gtest/gtest.h>

#include <numeric>

#include "../files/full_disk.h"
#include "adapters/soundfile/frame_queue.h"
#include "support/process.h"
#include "support/virtual_scheduler.h"

namespace velt {
namespace {

using namespace std::chrono_literals;

constexpr size_t kSamples = 8000;  // half a second of 8000 Hz, both channels

std::vector<int16_t> Ramp(size_t count) {
  std::vector<int16_t> ramp(count);
  std::iota(ramp.begin(), ramp.end(), int16_t{1});
  return ramp;
}

struct WavWriterTest : testing::Test {
  explicit WavWriterTest(uint64_t mostFrames = WavFile::kMostFrames)
      : writer(std::make_unique<WavWriter>(scheduler, mostFrames)),
        listening(writer->happened.Listen([this](const WriterEvent& event) {
          constexpr const char* kinds[] = {"Created ", "NextFile ", "Failed ", "Finished "};
          told += kinds[static_cast<int>(event.kind)] + event.file.filename().string() +
                  (event.text.empty() ? "; " : ": " + event.text + "; ");
        })) {}

  bool Tells(const std::string& text) {
    const bool happened =
        WaitUntil([&] { return scheduler.RunPosted(), told.find(text) != std::string::npos; }, 5s);
    EXPECT_TRUE(happened) << text << " not in " << told;
    return happened;
  }
  // As any other program reads it; the lengths in the header have to be those of the file.
  std::vector<int16_t> Sound(const std::string& file) const {
    SF_INFO info{};
    SNDFILE* sound = sf_open((folder / file).c_str(), SFM_READ, &info);
    EXPECT_NE(sound, nullptr) << file;
    EXPECT_EQ(info.format, SF_FORMAT_WAV | SF_FORMAT_PCM_16);
    EXPECT_EQ(std::pair(info.channels, info.samplerate), std::pair(2, 8000));
    EXPECT_EQ(std::filesystem::file_size(folder / file),
              44 + 4 * static_cast<uint64_t>(info.frames));
    std::vector<int16_t> samples(static_cast<size_t>(info.frames) * 2);
    sf_read_short(sound, samples.data(), std::ssize(samples));
    sf_close(sound);
    return samples;
  }

  TempFolder folder;
  VirtualScheduler scheduler;
  std::unique_ptr<WavWriter> writer;
  Connection listening;
  std::string told;
};

TEST_F(WavWriterTest, AFileIsWholeWhileItGrowsAndNeverTakesTheNameOfAnother) {
  folder.Write("a.wav", "mine");
  writer->Begin(folder / "a.wav", 8000);
  writer->Write(Ramp(kSamples));
  ASSERT_TRUE(Tells("Created a_2.wav; "));
  EXPECT_TRUE(WaitUntil([&] { return Sound("a_2.wav") == Ramp(kSamples); }, 5s));
  writer->WriteSilence(200);
  writer->End();
  writer->Write(Ramp(kSamples));  // nobody wants it any more
  writer->Begin(folder / "a.wav", 8000);
  EXPECT_TRUE(Tells("Finished a_2.wav; ") && Tells("Created a_3.wav; "));
  EXPECT_EQ(Sound("a_2.wav").size(), kSamples + 200);
  EXPECT_EQ(folder.Read("a.wav"), "mine");
  // The program ends: the file is finished before the writer is gone.
  writer->Write(Ramp(kSamples));
  writer.reset();
  EXPECT_EQ(Sound("a_3.wav"), Ramp(kSamples));
}

struct SmallWavWriterTest : WavWriterTest {
  SmallWavWriterTest() : WavWriterTest(1500) {}
};

TEST_F(SmallWavWriterTest, GoesOnInAnotherFileWhenOneIsAsLongAsItCanBe) {
  writer->Begin(folder / "a.wav", 8000);
  writer->Write(Ramp(kSamples));
  writer->End();
  ASSERT_TRUE(Tells("Finished a_3.wav; "));
  std::vector<int16_t> all;
  for (const char* file : {"a.wav", "a_2.wav", "a_3.wav"}) {
    const auto part = Sound(file);
    all.insert(all.end(), part.begin(), part.end());
  }
  EXPECT_EQ(all, Ramp(kSamples));
}

TEST_F(WavWriterTest, WhatTheDiskDoesNotTakeEndsItWithAWholeFile) {
  writer->Begin(folder / "gone/a.wav", 8000);
  EXPECT_TRUE(Tells("Failed : The recording could not be saved in "));
  const auto record = [this](const char* file) {
    writer->Begin(folder / file, 8000);
    writer->Write(Ramp(kSamples));
    return WaitUntil(
        [&] {
          return std::filesystem::exists(folder / file) &&
                 std::filesystem::file_size(folder / file) > 44;
        },
        5s);
  };
  ASSERT_TRUE(record("full.wav"));
  {
    // A part of a frame fits.
    const rlimit room{44 + 2 * kSamples + 1002, RLIM_INFINITY};
    const FullDisk disk;
    ::setrlimit(RLIMIT_FSIZE, &room);
    writer->Write(Ramp(kSamples));
    EXPECT_TRUE(Tells("Failed full.wav: The recording full.wav has ended: File too large.; "));
  }
  EXPECT_EQ(Sound("full.wav").size(), kSamples + 500);

  ASSERT_TRUE(record("moved.wav"));
  std::filesystem::rename(folder / "moved.wav", folder / "kept.wav");
  EXPECT_TRUE(
      Tells("Failed moved.wav: The recording has ended: moved.wav was deleted or moved.; "));
  EXPECT_EQ(Sound("kept.wav"), Ramp(kSamples));
}

TEST(FrameQueue, KeepsTheTimeOfWhatItHasNoRoomFor) {
  FrameQueue queue(1000);
  EXPECT_EQ(queue.Write(Ramp(600)), 0U);
  std::vector<int16_t> taken(700);
  EXPECT_EQ(queue.Take(taken), 600U);
  EXPECT_EQ(queue.Write(Ramp(900)), 0U);  // around its end
  EXPECT_EQ(queue.Write(Ramp(200)), 200U);
  EXPECT_EQ(queue.WriteSilence(50), 250U);  // there was room for it, but not before what is missing
  std::vector<int16_t> all;
  while (const size_t count = queue.Take(taken)) {
    all.insert(all.end(), taken.begin(), taken.begin() + static_cast<ptrdiff_t>(count));
  }
  std::vector<int16_t> expected = Ramp(900);
  expected.resize(1150);
  EXPECT_EQ(all, expected);
}

}  // namespace
}  // namespace velt
