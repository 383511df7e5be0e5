// Many threads answer in one order.
#include "documents/Jobs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>

namespace wenlolib::tools {
namespace {

constexpr std::size_t large = std::size_t{5} << 20;

/// Gives candidates whose names are their numbers.
DocumentJobs::Source numbered(int count) {
  return [count, next = 0]() mutable -> std::optional<Candidate> {
    if (next == count) return std::nullopt;
    return Candidate{std::to_string(next++), "", false, true};
  };
}

Answer echo(const Candidate& candidate, std::size_t bytes) {
  Answer answer;
  answer.path = candidate.path;
  answer.output.assign(bytes, 'x');
  return answer;
}

TEST(DocumentJobs, AnswersInTheOrderOfTheCandidates) {
  for (const int jobs : {1, 2, 16}) {
    DocumentJobs pool(
        jobs, [](const Candidate& candidate, std::string&) { return echo(candidate, 100); });
    int taken = 0;
    pool.run(numbered(20000),
             [&](const Answer& answer) { EXPECT_EQ(answer.path, std::to_string(taken++)); });
    EXPECT_EQ(taken, 20000);
  }
}

TEST(DocumentJobs, LargeAnswersWaitForTheirTurnAndNotTooManyOfThem) {
  std::atomic<int> made = 0;
  int taken = 0;
  int mostAhead = 0;
  DocumentJobs pool(2, [&](const Candidate& candidate, std::string&) {
    ++made;
    return echo(candidate, large);
  });
  pool.run(numbered(100), [&](const Answer& answer) {
    EXPECT_EQ(answer.path, std::to_string(taken));
    EXPECT_EQ(answer.output.size(), large);
    mostAhead = std::max(mostAhead, made - taken);
    ++taken;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  });
  EXPECT_EQ(taken, 100);
  EXPECT_LT(mostAhead, 50);
}

TEST(DocumentJobs, EndsWhereItsUserGivesUp) {
  DocumentJobs pool(4, [](const Candidate& candidate, std::string&) { return echo(candidate, 1); });
  int taken = 0;
  EXPECT_THROW(pool.run(numbered(100000),
                        [&](const Answer&) {
                          if (++taken == 700) throw std::runtime_error("nobody listens");
                        }),
               std::runtime_error);
}

TEST(DocumentJobs, WithNothingToDo) {
  DocumentJobs pool(3, [](const Candidate& candidate, std::string&) { return echo(candidate, 1); });
  pool.run(numbered(0), [](const Answer&) { FAIL(); });
}

}  // namespace
}  // namespace wenlolib::tools
