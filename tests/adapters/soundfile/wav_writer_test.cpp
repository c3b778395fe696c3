// Recordings on the disk, and what becomes of them when the disk or their folder does not do.
#include "adapters/soundfile/wav_writer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <numeric>

#include "../files/full_disk.h"
#include "adapters/soundfile/frame_queue.h"
#include "support/process.h"
#include "support/virtual_scheduler.h"

namespace velt {
namespace {

using namespace std::chrono_literals;

std::vector<int16_t> Ramp(size_t count) {
  std::vector<int16_t> ramp(count);
  std::iota(ramp.begin(), ramp.end(), int16_t{1});
  return ramp;
}

TEST(WavWriter, FilesAreWholeWhateverEndsThemAndNeverReplaceAnother) {
  const TempFolder folder;
  VirtualScheduler scheduler;
  auto writer = std::make_unique<WavWriter>(scheduler, 5000);
  std::string told;
  const auto listening = writer->happened.Listen([&told](const WriterEvent& event) {
    told += event.file.filename().string() + (event.text.empty() ? "" : ": " + event.text) + "; ";
  });
  const auto tells = [&](const std::string& text) {
    EXPECT_TRUE(WaitUntil([&] { return scheduler.RunPosted(), told.ends_with(text); }, 5s)) << told;
  };
  const auto record = [&](const std::string& file) {
    writer->Begin(folder / file, 8000);
    writer->Write(Ramp(8000));
    return [=, &folder] { return folder.Read(file).size() == 44 + 16000; };
  };
  // Its header tells the length that it has: readers may make up for one that does not, or not.
  const auto expectSound = [&](const std::string& file, size_t samples) {
    const std::string bytes = folder.Read(file);
    uint32_t length = 0;
    std::memcpy(&length, bytes.data() + 40, 4);
    EXPECT_EQ(length, 2 * samples) << file;
    EXPECT_EQ(bytes.size(), 44 + 2 * samples) << file;
  };

  folder.Write("a.wav", "mine");
  EXPECT_TRUE(
      WaitUntil([&, there = record("a.wav")] { return folder.Read("a_2.wav").size() > 44; }, 5s));
  expectSound("a_2.wav", 8000);  // while it grows
  writer->Write(Ramp(8000));     // more than one file takes
  writer->End();
  tells("a_3.wav; ");
  expectSound("a_2.wav", 10000);
  expectSound("a_3.wav", 6000);
  EXPECT_EQ(folder.Read("a.wav"), "mine");

  record("gone/b.wav");
  tells("gone: No such file or directory.; ");
  EXPECT_TRUE(WaitUntil(record("full.wav"), 5s));
  {
    const FullDisk disk;
    const rlimit room{44 + 16000 + 1002, RLIM_INFINITY};  // for a part of a frame at the end
    ::setrlimit(RLIMIT_FSIZE, &room);
    writer->Write(Ramp(2000));
    tells("full.wav: The recording full.wav has ended: File too large.; ");
  }
  expectSound("full.wav", 8500);
  EXPECT_TRUE(WaitUntil(record("moved.wav"), 5s));
  std::filesystem::rename(folder / "moved.wav", folder / "kept.wav");
  folder.Write("moved.wav", "another");
  tells("moved.wav: The recording has ended: moved.wav was deleted or moved.; ");
  expectSound("kept.wav", 8000);
  EXPECT_TRUE(WaitUntil(record("deleted.wav"), 5s));
  std::filesystem::remove(folder / "deleted.wav");
  tells("deleted.wav: The recording has ended: deleted.wav was deleted or moved.; ");
  record("last.wav");
  writer.reset();  // the program ends
  expectSound("last.wav", 8000);
}

TEST(FrameQueue, KeepsTheTimeOfWhatItHasNoRoomFor) {
  FrameQueue queue(1000);
  std::vector<int16_t> all(2000);
  queue.Write(Ramp(600));
  EXPECT_EQ(queue.Take(all), 600U);
  EXPECT_EQ(queue.Write(Ramp(900)), 0U);    // around its end
  EXPECT_EQ(queue.Write(Ramp(200)), 200U);  // later ones must not come before these
  EXPECT_EQ(queue.WriteSilence(50), 250U);
  size_t taken = 0;
  while (const size_t count = queue.Take(std::span(all).subspan(taken))) taken += count;
  all.resize(taken);
  std::vector<int16_t> expected = Ramp(900);
  expected.resize(1150);
  EXPECT_EQ(all, expected);
}

}  // namespace
}  // namespace velt
