#include "Pairs.h"

#include <algorithm>
#include <chrono>

namespace wenlolib::bench {
namespace {

double secondsFor(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

Pairs::Pairs(benchmark::State& state, const std::function<void()>& measured,
             const std::function<void()>& yardstick) {
  for (auto _ : state) {
    bare.push_back(secondsFor(yardstick));
    work.push_back(secondsFor(measured));
    state.SetIterationTime(work.back());
  }
}

double Pairs::timesBare() const {
  std::vector<double> times;
  for (std::size_t i = 0; i < work.size(); ++i) times.push_back(work[i] / bare[i]);
  return median(times);
}

double median(std::vector<double> values) {
  if (values.empty()) return 0;
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::ranges::nth_element(values, middle);
  return *middle;
}

}  // namespace wenlolib::bench
