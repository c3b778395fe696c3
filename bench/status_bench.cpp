// What a round over the engine's files costs: looked at when nothing changed, and read and
// understood when all of them did.
#include <benchmark/benchmark.h>

#include <vector>

#include "adapters/files/disk_files.h"
#include "adapters/system/local_clock.h"
#include "platform/watched_file.h"
#include "rig/engine_files.h"
#include "support/temp_folder.h"

namespace velt {
namespace {

struct Folder {
  TempFolder folder;
  DiskFiles files;
  LocalClock clock;
  std::vector<WatchedFile> watched;

  Folder() {
    for (const char* name : {"status.cfg", "calall.cfg", "transmitter.cfg", "sibling.cfg"}) {
      folder.Write(name, "USB\n300\n2700\n0\nlock_to_txcr\noff\n");
      watched.emplace_back(files, clock, folder / name);
    }
  }
};

void UnchangedFiles(benchmark::State& state) {
  Folder f;
  const SteadyTime until = f.clock.Elapsed() + WatchedFile::kCoarsestTime + Milliseconds(300);
  while (f.clock.Elapsed() < until) {
    for (WatchedFile& file : f.watched) file.Look();
  }
  for (auto _ : state) {
    for (WatchedFile& file : f.watched) benchmark::DoNotOptimize(file.Look());
  }
}
BENCHMARK(UnchangedFiles)->Unit(benchmark::kMicrosecond);

void ChangedFiles(benchmark::State& state) {
  Folder f;
  EngineStatus status;
  Calibrations calibrations;
  for (auto _ : state) {
    for (WatchedFile& file : f.watched) file.Look();
    status = ReadEngineStatus(f.watched[0].Reader(), status);
    calibrations = ReadCalibrations(f.watched[1].Reader(), calibrations);
    benchmark::DoNotOptimize(ReadTransmitFile(f.watched[2].Reader()));
    benchmark::DoNotOptimize(ReadTransmitFile(f.watched[3].Reader()));
    f.files.Publish(f.folder / "STATUSRX.CFG", StatusRxText(7074000, "RX", 1500));
  }
}
BENCHMARK(ChangedFiles)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace velt
