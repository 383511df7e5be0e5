// A host that is interrupted every millisecond by a signal that does not restart system calls:
//
//   torture_interrupted RECORDS PROGRAMS
//
// It writes RECORDS records of both kinds, small and large, each under its own name. Then it runs
// PROGRAMS programs and waits for them. It prints one line: how many records were not answered with
// yes, how many programs ended with a wrong status, and how many signals came.
#include <sys/time.h>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string>

#include "wenlolib/WENLOLIB.h"

namespace {

using wenlolib::WENLOLIB;

volatile std::sig_atomic_t signals = 0;

void count(int) {
  signals = signals + 1;
}

bool interruptEveryMillisecond() {
  struct sigaction action {};
  action.sa_handler = count;
  const itimerval interval{{0, 1000}, {0, 1000}};
  return sigaction(SIGALRM, &action, nullptr) == 0 &&
         setitimer(ITIMER_REAL, &interval, nullptr) == 0;
}

bool record(long number) {
  const std::string name = "Interrupted" + std::to_string(number);
  const std::string contents(number % 8 == 0 ? 1U << 16 : 100, 'c');
  if (number % 2 == 0) return WENLOLIB::writeAppInfoWithContents(contents, name, 0);
  return WENLOLIB::writePrinterLogInfoWithContents(contents, name, 0, {});
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3 || !interruptEveryMillisecond()) return 2;
  long refused = 0;
  for (long number = 0; number < std::atol(arguments[1]); ++number)
    refused += record(number) ? 0 : 1;
  long other = 0;
  for (long number = 0; number < std::atol(arguments[2]); ++number) {
    other += WENLOLIB::createTask("/bin/sh", {{"-c", "sleep 0.005; exit 7"}}, 1) == 7 ? 0 : 1;
  }
  std::cout << refused << ' ' << other << ' ' << signals << '\n';
}
