/// What every in-memory service does first in every call.
#ifndef WENLOLIB_TESTS_SUPPORT_RECORDER_H
#define WENLOLIB_TESTS_SUPPORT_RECORDER_H

#include <string_view>

#include "support/FaultPlan.h"
#include "support/Journal.h"

namespace wenlolib::tests {

struct Recorder {
  Journal& journal;
  FaultPlan& faults;

  /// Notes a call. True if the plan makes it fail.
  [[nodiscard]] bool fails(std::string_view kind, std::string_view detail = {}) const {
    journal.note(kind, detail);
    return faults.strikes(kind);
  }
};

}  // namespace wenlolib::tests

#endif
