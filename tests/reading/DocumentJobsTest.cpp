// Many threads give results in one order.
#include "reading/DocumentJobs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>

namespace wenlolib {
namespace {

constexpr std::size_t large = std::size_t{5} << 20;

struct Echo {
  std::string path;
  std::string bytes;
};

std::size_t heldBy(const Echo& echo) {
  return echo.bytes.size();
}

using Jobs = DocumentJobs<Echo>;

/// Gives candidates whose names are their numbers.
Jobs::Source numbered(int count) {
  return [count, next = 0]() mutable -> std::optional<Candidate> {
    if (next == count) return std::nullopt;
    return Candidate{std::to_string(next++), "", false, true};
  };
}

Echo echo(const Candidate& candidate, std::string& /*buffer*/) {
  return {candidate.path, std::string(100, 'x')};
}

TEST(DocumentJobs, ResultsComeInTheOrderOfTheCandidates) {
  for (const int count : {1, 2, 16}) {
    Jobs jobs(count, numbered(20000), echo);
    int taken = 0;
    while (const auto result = jobs.next()) EXPECT_EQ(result->path, std::to_string(taken++));
    EXPECT_EQ(taken, 20000);
    EXPECT_FALSE(jobs.next());
  }
}

TEST(DocumentJobs, LargeResultsWaitForTheirTurnAndNotTooManyOfThem) {
  std::atomic<int> made = 0;
  int taken = 0;
  int mostAhead = 0;
  Jobs jobs(2, numbered(100), [&](const Candidate& candidate, std::string&) {
    ++made;
    return Echo{candidate.path, std::string(large, 'x')};
  });
  while (const auto result = jobs.next()) {
    EXPECT_EQ(result->path, std::to_string(taken));
    EXPECT_EQ(result->bytes.size(), large);
    mostAhead = std::max(mostAhead, made - taken);
    ++taken;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  EXPECT_EQ(taken, 100);
  EXPECT_LT(mostAhead, 50);
}

TEST(DocumentJobs, EndsWhereItsUserGivesUp) {
  std::atomic<int> made = 0;
  {
    Jobs jobs(4, numbered(100000), [&](const Candidate& candidate, std::string& buffer) {
      ++made;
      return echo(candidate, buffer);
    });
    for (int taken = 0; taken < 700; ++taken) ASSERT_TRUE(jobs.next());
  }
  EXPECT_LT(made, 100000);
}

TEST(DocumentJobs, WithNothingToDo) {
  for (const int count : {1, 3}) {
    Jobs jobs(count, numbered(0), echo);
    EXPECT_FALSE(jobs.next());
  }
}

}  // namespace
}  // namespace wenlolib
