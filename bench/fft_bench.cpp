// The analyser's transform beside two general complex ones of 1024 points, on the same samples and
// interleaved in one run. RunFFT takes 16-bit samples; the general ones are measured without and
// with the conversion to complex singles that they need. A table of ratios closes the output.
#include <benchmark/benchmark.h>
#include <fftw3.h>
#include <kiss_fft.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "processor.h"
#include "spectrum/fft.h"

namespace velt {
namespace {

constexpr size_t kSize = Fft::kSize;
constexpr size_t kBlocks = 8;
constexpr const char* kYardstick = "FFTW3f/transform";

// Several blocks in turn, so that the branch predictor does not learn one by heart.
class Blocks {
 public:
  explicit Blocks(int amplitude) {
    std::mt19937 random(1);
    std::uniform_int_distribution<int> sample(-amplitude, amplitude);
    for (int16_t& value : samples_) value = static_cast<int16_t>(sample(random));
  }

  std::span<const int16_t, kSize> Next() {
    next_ = (next_ + 1) % kBlocks;
    return std::span<const int16_t, kSize>(samples_.data() + next_ * kSize, kSize);
  }

 private:
  std::array<int16_t, kBlocks * kSize> samples_;
  size_t next_ = 0;
};

void RunFFT(benchmark::State& state, FftPath path, int amplitude) {
  Fft fft(path);
  Blocks blocks(amplitude);
  alignas(64) std::array<float, kSize> real;
  for (auto _ : state) {
    fft.RunFFT(blocks.Next(), real);
    benchmark::DoNotOptimize(real.data());
    benchmark::ClobberMemory();
  }
}

template <class Complex, class Execute, class Store>
void Compare(benchmark::State& state, std::span<Complex> input, bool convert, Execute execute,
             Store store) {
  Blocks blocks(32767);
  const auto fill = [&] {
    const auto samples = blocks.Next();
    for (size_t i = 0; i < kSize; ++i) store(input[i], samples[i]);
  };
  fill();
  for (auto _ : state) {
    if (convert) fill();
    execute();
    benchmark::ClobberMemory();
  }
}

void Fftw(benchmark::State& state, bool convert) {
  using Array = std::unique_ptr<fftwf_complex[], decltype(&fftwf_free)>;
  const Array input(fftwf_alloc_complex(kSize), fftwf_free);
  const Array output(fftwf_alloc_complex(kSize), fftwf_free);
  const std::unique_ptr<std::remove_pointer_t<fftwf_plan>, decltype(&fftwf_destroy_plan)> plan(
      fftwf_plan_dft_1d(kSize, input.get(), output.get(), FFTW_BACKWARD, FFTW_MEASURE),
      fftwf_destroy_plan);
  Compare<fftwf_complex>(
      state, {input.get(), kSize}, convert, [&] { fftwf_execute(plan.get()); },
      [](fftwf_complex& to, float value) {
        to[0] = value;
        to[1] = 0;
      });
}

void Kiss(benchmark::State& state, bool convert) {
  std::vector<kiss_fft_cpx> input(kSize);
  std::vector<kiss_fft_cpx> output(kSize);
  const std::unique_ptr<kiss_fft_state, decltype(&std::free)> plan(
      kiss_fft_alloc(kSize, 1, nullptr, nullptr), std::free);
  Compare<kiss_fft_cpx>(
      state, input, convert, [&] { kiss_fft(plan.get(), input.data(), output.data()); },
      [](kiss_fft_cpx& to, float value) {
        to = {value, 0};
      });
}

// The usual lines, and at the end every median against the yardstick's.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.aggregate_name == "median") medians_[run.run_name.function_name] = Nanoseconds(run);
    }
  }
  void Finalize() override {
    const auto yardstick = medians_.find(kYardstick);
    if (yardstick == medians_.end()) return;
    std::printf("\nMedian CPU time against %s\n", kYardstick);
    for (const auto& [name, median] : medians_) {
      std::printf("%-28s %8.0f ns %7.2f\n", name.c_str(), median, median / yardstick->second);
    }
  }

 private:
  static double Nanoseconds(const Run& run) {
    return run.GetAdjustedCPUTime() / benchmark::GetTimeUnitMultiplier(run.time_unit) * 1e9;
  }

  std::map<std::string, double> medians_;
};

void Register() {
  const auto add = [](const std::string& name, auto... arguments) {
    benchmark::RegisterBenchmark(name.c_str(), arguments...)
        ->Repetitions(15)
        ->MinTime(0.05)
        ->ReportAggregatesOnly();
  };
  for (const FftPath path : kFftPaths) {
    if (!FftPathAvailable(path)) continue;
    const std::string name = path == FftPath::Avx2 ? "RunFFT/avx2" : "RunFFT/baseline";
    add(name + "/loud", RunFFT, path, 32767);
    add(name + "/quiet", RunFFT, path, 3);
  }
  add(kYardstick, Fftw, false);
  add("FFTW3f/with_conversion", Fftw, true);
  add("KissFFT/transform", Kiss, false);
  add("KissFFT/with_conversion", Kiss, true);
}

}  // namespace
}  // namespace velt

int main(int argc, char** argv) {
  std::vector<char*> arguments(argv, argv + argc);
  std::string interleave = "--benchmark_enable_random_interleaving=true";
  arguments.insert(arguments.begin() + 1, interleave.data());
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;
  benchmark::AddCustomContext("processor", velt::ProcessorName());
  velt::Register();
  velt::RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
}
