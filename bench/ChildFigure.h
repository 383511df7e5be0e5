/// A figure that is measured in a process of its own.
#ifndef WENLOLIB_BENCH_CHILDFIGURE_H
#define WENLOLIB_BENCH_CHILDFIGURE_H

#include <functional>
#include <optional>
#include <string>

namespace wenlolib::bench {

/// A figure in KiB from the process's status, such as "VmHWM:", its largest size in memory so far.
[[nodiscard]] double statusKiB(const std::string& name);

/// What `figure` returns in a child process, whose largest size counts from there on. Nothing if it
/// is not above 0.
[[nodiscard]] std::optional<double> inChild(const std::function<double()>& figure);

}  // namespace wenlolib::bench

#endif
