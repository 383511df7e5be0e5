// The most memory that one large record takes, measured in a process of its own.
#include <benchmark/benchmark.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <optional>
#include <string>

#include "TemporaryInstallation.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::bench {
namespace {

constexpr std::size_t contentsSize = std::size_t{32} << 20;

/// A figure in KiB from the process's status, such as "VmHWM:", its largest size in memory so far.
double statusKiB(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    double value = 0;
    if (word == name && status >> value) return value;
  }
  return 0;
}

/// The memory that a record takes at its peak, as a multiple of its contents, the host's own copy
/// included.
double peakOfOneRecord() {
  const double before = statusKiB("VmRSS:");
  const std::string contents(contentsSize, 'x');
  if (!WENLOLIB::writeAppInfoWithContents(contents, "App", 1)) return 0;
  return (statusKiB("VmHWM:") - before) * 1024 / static_cast<double>(contentsSize);
}

std::optional<double> inChild(double (*figure)()) {
  int ends[2];
  if (pipe(ends) != 0) return std::nullopt;
  const pid_t child = fork();
  if (child == 0) {
    std::ofstream("/proc/self/clear_refs") << "5";  // the peak counts from here
    const double value = figure();
    const bool sent = write(ends[1], &value, sizeof value) == ssize_t{sizeof value};
    _exit(sent ? 0 : 1);
  }
  close(ends[1]);
  double value = 0;
  const bool received = read(ends[0], &value, sizeof value) == ssize_t{sizeof value};
  close(ends[0]);
  if (child > 0) waitpid(child, nullptr, 0);
  return received && value > 0 ? std::optional(value) : std::nullopt;
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
