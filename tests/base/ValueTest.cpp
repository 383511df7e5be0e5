#include "wenlolib/Value.h"

#include <gtest/gtest.h>

#include <barrier>
#include <cmath>
#include <limits>
#include <new>
#include <optional>
#include <thread>
#include <type_traits>
#include <vector>

#include "support/FailingAllocations.h"
#include "support/SmallStack.h"

namespace wenlolib::tests {
namespace {

template <class Expected>
bool holds(const Value& value) {
  return value.visit([](const auto& held) {
    return std::is_same_v<std::remove_cvref_t<decltype(held)>, Expected>;
  });
}

TEST(Value, ALiteralIsATextAndNotABoolean) {
  const Value value("YES");
  EXPECT_TRUE(holds<std::string>(value));
  ASSERT_NE(value.text(), nullptr);
  EXPECT_EQ(*value.text(), "YES");
}

TEST(Value, APointerDoesNotBecomeABoolean) {
  static_assert(!std::is_convertible_v<int*, Value>);
  static_assert(!std::is_convertible_v<const void*, Value>);
  static_assert(!std::is_convertible_v<std::nullptr_t, bool>);
  static_assert(std::is_convertible_v<bool, Value>);
  EXPECT_TRUE(holds<bool>(Value(true)));
}

TEST(Value, KeepsTheTypeItWasMadeFrom) {
  EXPECT_TRUE(holds<bool>(Value(false)));
  EXPECT_TRUE(holds<std::int64_t>(Value(1)));
  EXPECT_TRUE(holds<std::int64_t>(Value(std::int64_t{-1})));
  EXPECT_TRUE(holds<std::uint64_t>(Value(1U)));
  EXPECT_TRUE(holds<std::uint64_t>(Value(std::numeric_limits<std::uint64_t>::max())));
  EXPECT_TRUE(holds<double>(Value(1.5)));
  EXPECT_TRUE(holds<std::string>(Value(std::string("text"))));
  EXPECT_TRUE(holds<Instant>(Value(Instant(Seconds(1.5)))));
  EXPECT_TRUE(holds<Value::Data>(Value(Value::Data{1, 2})));
  EXPECT_TRUE(holds<Value::Array>(Value(Value::Array{1, 2})));
  EXPECT_TRUE(holds<Dictionary>(Value(Dictionary{{"a", 1}})));
}

TEST(Value, AnswersOnlyForTheTypeThatItHolds) {
  const Value text("text");
  EXPECT_NE(text.text(), nullptr);
  EXPECT_EQ(text.date(), nullptr);
  EXPECT_EQ(text.data(), nullptr);
  EXPECT_EQ(text.array(), nullptr);
  EXPECT_EQ(text.dictionary(), nullptr);
  const Value number(1);
  EXPECT_EQ(number.text(), nullptr);
  EXPECT_NE(Value(Instant()).date(), nullptr);
  EXPECT_NE(Value(Value::Data{}).data(), nullptr);
  EXPECT_NE(Value(Value::Array{}).array(), nullptr);
  EXPECT_NE(Value(Dictionary{}).dictionary(), nullptr);
}

TEST(Value, TruthIsTheBooleanReadingOfANumber) {
  const struct {
    Value value;
    std::optional<bool> truth;
  } table[] = {
      {true, true},
      {false, false},
      {0, false},
      {1, true},
      {-1, true},
      {2, true},
      {0U, false},
      {std::numeric_limits<std::uint64_t>::max(), true},
      {0.0, false},
      {-0.0, false},
      {0.25, true},
      {std::nan(""), true},
      {"YES", std::nullopt},
      {"1", std::nullopt},
      {Instant(Seconds(1)), std::nullopt},
      {Value::Data{1}, std::nullopt},
      {Value::Array{true}, std::nullopt},
      {Dictionary{{"a", true}}, std::nullopt},
  };
  for (const auto& row : table) EXPECT_EQ(row.value.truth(), row.truth);
}

Dictionary deep(const char* leaf) {
  return {{"list", Value::Array{1, Dictionary{{"leaf", leaf}}}}, {"flag", true}};
}

TEST(Value, EqualityGoesAllTheWayDown) {
  EXPECT_TRUE(Value(deep("a")) == Value(deep("a")));
  EXPECT_FALSE(Value(deep("a")) == Value(deep("b")));
  EXPECT_TRUE(Value(Value::Array{1, 2}) == Value(Value::Array{1, 2}));
  EXPECT_FALSE(Value(Value::Array{1, 2}) == Value(Value::Array{2, 1}));
  EXPECT_FALSE(Value(Value::Array{1, 2}) == Value(Value::Array{1}));
  EXPECT_FALSE(Value(Value::Array{1}) == Value(Value::Array{1, 2}));
  EXPECT_FALSE(Value(Dictionary{{"a", 1}, {"b", 2}}) == Value(Dictionary{{"a", 1}}));
  EXPECT_FALSE(Value(Dictionary{{"a", 1}}) == Value(Dictionary{{"a", 1}, {"b", 2}}));
  EXPECT_FALSE(Value(Dictionary{{"a", 1}}) == Value(Dictionary{{"b", 1}}));
  const Value noNumber(Value::Array{std::nan("")});
  EXPECT_FALSE(noNumber == noNumber);
}

TEST(Value, ValuesOfDifferentTypesDiffer) {
  const std::vector<Value> values = {true,
                                     1,
                                     1U,
                                     1.0,
                                     "1",
                                     Instant(Seconds(1)),
                                     Value::Data{1},
                                     Value::Array{1},
                                     Dictionary{{"1", 1}}};
  for (std::size_t i = 0; i < values.size(); ++i) {
    for (std::size_t j = 0; j < values.size(); ++j) {
      EXPECT_EQ(values[i] == values[j], i == j) << i << " and " << j;
    }
  }
}

TEST(Value, CopiesShareWhatTheyHold) {
  const Value original(Value::Array{1, 2, 3});
  const Value copy = original;
  EXPECT_EQ(copy.array(), original.array());
  EXPECT_TRUE(copy == original);
}

TEST(Value, CopyingNeedsNoMemory) {
  const std::vector<Value> values = {std::string(100, 'x'), Value::Data(100, 1), Value::Array{1, 2},
                                     Dictionary{{"a", 1}}};
  for (const Value& value : values) {
    std::optional<Value> copy;
    FailingAllocations failing(1);
    copy.emplace(value);
    failing.stop();
    EXPECT_FALSE(failing.struck());
    EXPECT_TRUE(*copy == value);
  }
}

TEST(Value, ComparingWithoutMemoryThrows) {
  const Value value(Value::Array{1});
  const FailingAllocations failing(1);
  EXPECT_THROW(static_cast<void>(value == value), std::bad_alloc);
}

TEST(Value, TakesTheValueOfAnElementOfItself) {
  Value value(Value::Array{Dictionary{{"a", Value::Array{"text"}}}});
  value = value.array()->front();
  value = value.dictionary()->at("a");
  value = value.array()->front();
  EXPECT_EQ(value, Value("text"));
}

/// `value` inside `levels` arrays and dictionaries, in turn.
Value nested(int levels, Value value) {
  for (int level = 0; level < levels; ++level) {
    if (level % 2 == 0) {
      value = Value::Array{std::move(value)};
    } else {
      value = Dictionary{{"k", std::move(value)}};
    }
  }
  return value;
}

TEST(Value, AMillionLevelsTakeNoMoreStackThanOne) {
  constexpr int levels = 1'000'000;
  bool same = false;
  bool other = true;
  onStack(smallStack, [&] {
    const Value value = nested(levels, "a");
    const Value copy = value;
    same = copy == nested(levels, "a");
    other = copy == nested(levels, "b");
  });
  EXPECT_TRUE(same);
  EXPECT_FALSE(other);
}

TEST(Value, ReleasingNeedsNoMemory) {
  std::optional<Value> value = nested(1000, Value::Array{"a", Value::Array{1}, Dictionary{}});
  const FailingAllocations failing(1, FailingAllocations::Span::onwards);
  value.reset();
  EXPECT_EQ(failing.seen(), 0);
}

/// Each part of the tree is owned twice by the part above it.
Value branching(int levels) {
  Value value("leaf");
  for (int level = 0; level < levels; ++level) value = Value::Array{value, nested(3, value)};
  return value;
}

TEST(Value, SeveralThreadsCopyAndReleaseWhatTheyShare) {
  constexpr int threads = 4;
  constexpr int copies = 200'000;
  std::vector<Value> shares(threads, branching(8));
  std::barrier together(threads);
  std::vector<std::thread> running;
  for (Value& share : shares) {
    running.emplace_back([&] {
      together.arrive_and_wait();
      for (int i = 0; i < copies; ++i) {
        const Value copy = share;
        const Value part = copy.array()->front();
      }
      together.arrive_and_wait();
      share = 0;
    });
  }
  for (std::thread& thread : running) thread.join();
  EXPECT_EQ(shares.front(), Value(0));
}

}  // namespace
}  // namespace wenlolib::tests
