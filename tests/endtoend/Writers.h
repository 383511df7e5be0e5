/// Several writers of records at once.
#ifndef WENLOLIB_TESTS_ENDTOEND_WRITERS_H
#define WENLOLIB_TESTS_ENDTOEND_WRITERS_H

#include <functional>
#include <string>

#include "endtoend/World.h"

namespace wenlolib::tests {

inline constexpr int writers = 8;
inline constexpr int recordsEach = 25;
inline constexpr int records = writers * recordsEach;

/// Every record's contents are different. Some are many pages long, so that a part would be
/// noticed.
std::string contentsOfRecord(int writer, int record);

/// One writer's work; answers how many of its records were refused.
int writeAll(RecordKind kind, int writer);

/// Runs `work` for every writer, and `meanwhile` here as long as they run. Answers how many writers
/// ended with anything but 0.
using Runner = int (*)(const std::function<int(int)>& work, const std::function<void()>& meanwhile);

/// Every writer is a process of its own.
int inProcesses(const std::function<int(int)>& work, const std::function<void()>& meanwhile);

/// Every writer is a thread.
int inThreads(const std::function<int(int)>& work, const std::function<void()>& meanwhile);

}  // namespace wenlolib::tests

#endif
