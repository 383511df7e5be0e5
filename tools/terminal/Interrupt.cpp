#include "terminal/Interrupt.h"

#include <unistd.h>

#include <array>
#include <charconv>
#include <csignal>
#include <cstddef>
#include <string_view>

namespace wenlolib::tools {
namespace {

volatile std::sig_atomic_t arrived = 0;
const std::string* callName = nullptr;
const std::atomic<std::uint64_t>* documentCount = nullptr;

// What a signal handler calls takes no lock and no memory.

void tell(std::string_view text) {
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text.data(), text.size());
}

void tellNumber(std::uint64_t number) {
  std::array<char, 20> digits{};
  const auto result = std::to_chars(digits.begin(), digits.end(), number);
  tell({digits.data(), static_cast<std::size_t>(result.ptr - digits.data())});
}

void endHere() {
  if (isatty(STDERR_FILENO) == 1) tell("\r\x1B[K");
  tell("wenlolib ");
  tell(*callName);
  tell(": interrupted after ");
  const std::uint64_t documents = documentCount->load();
  tellNumber(documents);
  tell(documents == 1 ? " document\n" : " documents\n");
  dieOfInterrupt();
}

void onSignal(int signal) {
  if (arrived != 0) endHere();
  arrived = signal;
  alarm(1);
}

void onAlarm(int) {
  if (arrived != 0) endHere();
}

constexpr std::array signals = {SIGINT, SIGTERM, SIGALRM};
std::array<struct sigaction, signals.size()> before;

bool isIgnored(const struct sigaction& action) {
  return action.sa_handler == SIG_IGN;
}

}  // namespace

InterruptHandling::InterruptHandling(const std::string& call,
                                     const std::atomic<std::uint64_t>& documents) {
  static_assert(std::atomic<std::uint64_t>::is_always_lock_free);
  callName = &call;
  documentCount = &documents;
  for (std::size_t i = 0; i < signals.size(); ++i) {
    // Without SA_RESTART: calls that wait, such as `read`, return when the signal arrives.
    struct sigaction action {};
    action.sa_handler = signals[i] == SIGALRM ? onAlarm : onSignal;
    sigemptyset(&action.sa_mask);
    sigaction(signals[i], nullptr, &before[i]);
    if (!isIgnored(before[i])) sigaction(signals[i], &action, nullptr);
  }
}

InterruptHandling::~InterruptHandling() {
  for (std::size_t i = 0; i < signals.size(); ++i) sigaction(signals[i], &before[i], nullptr);
}

bool interrupted() {
  return arrived != 0;
}

void dieOfInterrupt() {
  const int signal = arrived;
  std::signal(signal, SIG_DFL);
  sigset_t only;
  sigemptyset(&only);
  sigaddset(&only, signal);
  sigprocmask(SIG_UNBLOCK, &only, nullptr);  // it is blocked while it is handled
  std::raise(signal);
  _exit(128 + signal);
}

}  // namespace wenlolib::tools
