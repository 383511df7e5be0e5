#include "base/Answered.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>

namespace wenlolib::tests {
namespace {

TEST(Answered, HandsOnTheAnswer) {
  EXPECT_EQ(answered(1, [] { return 2; }), 2);
  EXPECT_EQ(answered(std::string("fallback"), [] { return std::string("work"); }), "work");
}

TEST(Answered, AnswersTheFallbackWhateverIsThrown) {
  EXPECT_EQ(answered(1, []() -> int { throw std::bad_alloc(); }), 1);
  EXPECT_EQ(answered(1, []() -> int { throw std::runtime_error("x"); }), 1);
  EXPECT_EQ(answered(1, []() -> int { throw 42; }), 1);
}

}  // namespace
}  // namespace wenlolib::tests
