/// How many system calls a piece of work makes.
#ifndef WENLOLIB_BENCH_SYSTEMCALLCOUNT_H
#define WENLOLIB_BENCH_SYSTEMCALLCOUNT_H

#include <functional>
#include <optional>

namespace wenlolib::bench {

/// Counted in a child process that is traced; nothing if tracing is not permitted.
[[nodiscard]] std::optional<int> systemCallsOf(const std::function<void()>& work);

}  // namespace wenlolib::bench

#endif
