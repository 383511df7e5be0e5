/// Ending on SIGINT and SIGTERM with a clean line and a word on how far the run came.
#ifndef WENLOLIB_TOOLS_TERMINAL_INTERRUPT_H
#define WENLOLIB_TOOLS_TERMINAL_INTERRUPT_H

#include <atomic>
#include <cstdint>
#include <string>

namespace wenlolib::tools {

/// As long as this lives a signal only sets a mark, so that the run can write what is finished and
/// then end. If it has not ended a second later, or at the next signal, it ends where it is, with
/// the number in `documents`. Signals that were ignored stay ignored. There may be one at a time.
class InterruptHandling {
 public:
  /// `call` is the name of the subcommand. Both must outlive this.
  InterruptHandling(const std::string& call, const std::atomic<std::uint64_t>& documents);
  ~InterruptHandling();
  InterruptHandling(const InterruptHandling&) = delete;
  InterruptHandling& operator=(const InterruptHandling&) = delete;
};

/// Whether one of the signals has arrived.
[[nodiscard]] bool interrupted();

/// Ends the process by the signal that has arrived, as its parent expects.
[[noreturn]] void dieOfInterrupt();

}  // namespace wenlolib::tools

#endif
