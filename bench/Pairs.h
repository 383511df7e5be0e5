/// Two pieces of work measured side by side.
#ifndef WENLOLIB_BENCH_PAIRS_H
#define WENLOLIB_BENCH_PAIRS_H

#include <benchmark/benchmark.h>

#include <functional>
#include <vector>

namespace wenlolib::bench {

/// Runs both once per iteration, in turn, so that whatever else the machine does affects both
/// alike. The time shown is that of `work`.
struct Pairs {
  std::vector<double> work;  // seconds
  std::vector<double> bare;

  Pairs(benchmark::State& state, const std::function<void()>& measured,
        const std::function<void()>& yardstick);

  /// How many times as long as the yardstick the work took, compared pair by pair: the median over
  /// all pairs.
  [[nodiscard]] double timesBare() const;
};

[[nodiscard]] double median(std::vector<double> values);

}  // namespace wenlolib::bench

#endif
