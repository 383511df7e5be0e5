// The line that shows how far a long run has come.
#include "terminal/Output.h"

#include <gtest/gtest.h>

namespace wenlolib::tools {
namespace {

TEST(Progress, BarAndCounts) {
  EXPECT_EQ(progressText(0, 1000, 0, 80),
            "[                ]   0%  0 of 1,000 documents, 0 a second");
  EXPECT_EQ(progressText(400, 1000, 90, 80),
            "[######          ]  40%  400 of 1,000 documents, 90 a second");
  EXPECT_EQ(progressText(1000000, 1000000, 160000, 80),
            "[################] 100%  1,000,000 of 1,000,000 documents, 160,000 a second");
}

TEST(Progress, NoBarWhileTheTotalIsNotKnown) {
  EXPECT_EQ(progressText(1, std::nullopt, 5, 80), "1 document, 5 a second");
  EXPECT_EQ(progressText(2, 0, 5, 80), "2 documents, 5 a second");
}

TEST(Progress, DocumentsThatHaveComeSinceDoNotExceedTheTotal) {
  EXPECT_EQ(progressText(11, 10, 1, 80), "[################] 100%  10 of 10 documents, 1 a second");
}

TEST(Progress, KeepsWithinItsColumns) {
  EXPECT_EQ(progressText(400, 1000, 90, 20), "[######          ]  ");
}

}  // namespace
}  // namespace wenlolib::tools
