/// The program through which a terminal shows long output.
#ifndef WENLOLIB_TOOLS_TERMINAL_PAGER_H
#define WENLOLIB_TOOLS_TERMINAL_PAGER_H

#include <sys/types.h>

namespace wenlolib::tools {

/// Standard output goes through $PAGER, or else through `less -FRX`, as long as this object lives:
/// only on a terminal, and only if the program exists. An empty $PAGER means none.
///
/// Ask for colours and columns before: while it lives, standard output is a pipe. A user who leaves
/// the pager early shows as EPIPE.
class Pager {
 public:
  Pager();
  ~Pager() { close(); }
  Pager(const Pager&) = delete;
  Pager& operator=(const Pager&) = delete;

  /// Waits for the pager to end. False if it could not be run, so that nobody has seen the output.
  bool close();

  [[nodiscard]] bool active() const { return process_ > 0; }

 private:
  using Handler = void (*)(int);

  void divert(const int (&ends)[2]);

  pid_t process_ = 0;
  int terminal_ = -1;  // standard output as it was
  Handler interrupt_ = nullptr;
  Handler brokenPipe_ = nullptr;
};

}  // namespace wenlolib::tools

#endif
