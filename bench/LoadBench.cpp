// Loading the plug-in, up to its first answer.
#include <benchmark/benchmark.h>

#include <cstdio>

namespace wenlolib::bench {
namespace {

/// How long a host that has loaded nothing yet waits; in a new process each time. 0 on failure.
double secondsToFirstAnswer() {
  double seconds = 0;
  FILE* output = popen(WENLOLIB_FIRST_ANSWER, "r");
  if (output == nullptr) return 0;
  const int found = std::fscanf(output, "%lf", &seconds);
  return pclose(output) == 0 && found == 1 ? seconds : 0;
}

void loadToFirstAnswer(benchmark::State& state) {
  for (auto _ : state) {
    const double seconds = secondsToFirstAnswer();
    if (seconds <= 0) return state.SkipWithError("no answer");
    state.SetIterationTime(seconds);
  }
}
BENCHMARK(loadToFirstAnswer)->UseManualTime()->Iterations(100)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace wenlolib::bench
