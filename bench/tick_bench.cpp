// One whole tick (transform, picture, peak, meter) on a display 110 pixels high. The argument is
// the display's width; 524 is the design's.
#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <random>

#include "spectrum/analysis.h"

namespace velt {
namespace {

using Block = std::array<int16_t, Analyser::blockSamples>;

// Band noise with a few carriers, several blocks, so that no branch learns one by heart.
std::vector<Block> Band() {
  std::mt19937 random(1);
  std::normal_distribution<double> noise(0.0, 400.0);
  std::vector<Block> blocks(64);
  int at = 0;
  for (Block& block : blocks) {
    for (int16_t& sample : block) {
      double value = noise(random);
      for (const double turns : {0.02, 0.051, 0.13}) {
        value += 3000 * std::sin(6.283185307 * turns * at);
      }
      sample = static_cast<int16_t>(value);
      ++at;
    }
  }
  return blocks;
}

enum class Picture { None, Columns, Drawn };

void Run(benchmark::State& state, AnalysisSettings settings, Picture picture) {
  settings.plotWidth = static_cast<int16_t>(state.range(0));
  const std::vector<Block> blocks = Band();
  WaterPalette palette;
  palette.InitWaterColor(1, 10);
  AnalysisOutput output;
  if (picture == Picture::Drawn) output.display.emplace();
  if (picture == Picture::Columns) output.columns.emplace();
  Analyser analyser;
  const Tuning tuning{14074000, {300.0F, 2700.0F}};
  size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(analyser.Analyse(blocks[next], settings, tuning, palette, output));
    next = (next + 1) % blocks.size();
  }
}

void TickBars(benchmark::State& state) {
  Run(state, {}, Picture::Drawn);
}

void TickLine(benchmark::State& state) {
  Run(state, {.useLines = false}, Picture::Drawn);
}

void TickBarsAndOscilloscope(benchmark::State& state) {
  Run(state, {.oscillosMode = true}, Picture::Drawn);
}

void TickWaterfall(benchmark::State& state) {
  Run(state, {.waterfall = true}, Picture::Drawn);
}

void TickWaterfallMovingAlways(benchmark::State& state) {
  Run(state, {.waterfall = true, .waterSpeed = 0}, Picture::Drawn);
}

void TickWithoutDrawing(benchmark::State& state) {
  Run(state, {}, Picture::None);
}

void TickWithColumnValues(benchmark::State& state) {
  Run(state, {}, Picture::Columns);
}

void Widths(benchmark::internal::Benchmark* bench) {
  bench->Arg(524)->Arg(1048)->Arg(2096)->Unit(benchmark::kMicrosecond);
}

BENCHMARK(TickBars)->Apply(Widths);
BENCHMARK(TickLine)->Apply(Widths);
BENCHMARK(TickBarsAndOscilloscope)->Apply(Widths);
BENCHMARK(TickWaterfall)->Apply(Widths);
BENCHMARK(TickWaterfallMovingAlways)->Apply(Widths);
BENCHMARK(TickWithoutDrawing)->Apply(Widths);
BENCHMARK(TickWithColumnValues)->Apply(Widths);

}  // namespace
}  // namespace velt
