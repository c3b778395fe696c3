// What the program does for one movement of the mouse over the display, without painting.
#include <benchmark/benchmark.h>

#include "support/doubles.h"

namespace velt {
namespace {

void MouseMove(benchmark::State& state) {
  ProgramFixture fixture;
  fixture.Reachable(true);
  fixture.Start();
  fixture.Form().lblFrequency.caption = "14.074.00";
  std::vector<Control*> changed;
  int x = 0;
  for (auto _ : state) {
    fixture.Form().Scope.UserMove(++x % 485);
    fixture.Form().TakeChanged(changed);
  }
  if (fixture.Form().lblFreq.caption.Get().empty()) state.SkipWithError("nothing was shown");
}
BENCHMARK(MouseMove)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace velt
