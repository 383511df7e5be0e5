// The most memory that one large record takes, measured in a process of its own.
#include <benchmark/benchmark.h>

#include <optional>
#include <string>

#include "ChildFigure.h"
#include "TemporaryInstallation.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::bench {
namespace {

constexpr std::size_t contentsSize = std::size_t{32} << 20;

/// The memory that a record takes at its peak, as a multiple of its contents, the host's own copy
/// included.
double peakOfOneRecord() {
  const double before = statusKiB("VmRSS:");
  const std::string contents(contentsSize, 'x');
  if (!WENLOLIB::writeAppInfoWithContents(contents, "App", 1)) return 0;
  return (statusKiB("VmHWM:") - before) * 1024 / static_cast<double>(contentsSize);
}

void peakMemoryOf32MiB(benchmark::State& state) {
  const TemporaryInstallation installation(WENLOLIB_BENCH_DISK);
  std::optional<double> peak;
  for (auto _ : state) peak = inChild(peakOfOneRecord);
  if (!peak) return state.SkipWithError("no figure");
  state.counters["times_contents"] = *peak;
  state.counters["at_most"] = 9;
}
BENCHMARK(peakMemoryOf32MiB)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace wenlolib::bench
