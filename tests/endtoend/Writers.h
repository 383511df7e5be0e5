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

/// No two records are the same; some are of many pages, so that a part of one would show.
std::string contentsOfRecord(int writer, int record);

/// One writer's work; answers how many of its records were refused.
int writeAll(RecordKind kind, int writer);

/// Runs `work` for every writer, `meanwhile` here for as long as they run. Answers how many of them
/// did not end as they should, which is with 0.
using Runner = int (*)(const std::function<int(int)>& work, const std::function<void()>& meanwhile);

/// Every writer is a process of its own.
int inProcesses(const std::function<int(int)>& work, const std::function<void()>& meanwhile);

/// Every writer is a thread.
int inThreads(const std::function<int(int)>& work, const std::function<void()>& meanwhile);

}  // namespace wenlolib::tests

#endif
