#include "platform/linux/LinuxSystem.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <regex>
#include <set>
#include <vector>

namespace wenlolib::tests {
namespace {

using platform::gnulinux::LinuxUuids;

TEST(LinuxUuids, AreRandomOnesInStandardForm) {
  const std::regex form("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
  for (int i = 0; i < 100; ++i) {
    const Text uuid = LinuxUuids().create();
    ASSERT_TRUE(uuid);
    EXPECT_TRUE(std::regex_match(*uuid, form)) << *uuid;
  }
}

TEST(LinuxUuids, AreDifferentEveryTime) {
  std::set<std::string> different;
  for (int i = 0; i < 10'000; ++i) different.insert(LinuxUuids().create().value_or(""));
  EXPECT_EQ(different.size(), 10'000U);
}

TEST(LinuxUuids, EveryOtherBitIsRandom) {
  // Each of the 122 random bits must be 0 and 1 at some time. The chance of a wrong failure is
  // about 1 in 2^1000.
  std::string everSet(36, 0);
  std::string everClear(36, 0);
  for (int i = 0; i < 1000; ++i) {
    const std::string uuid = LinuxUuids().create().value_or("");
    for (std::size_t at = 0; at < uuid.size(); ++at) {
      if (uuid[at] == '-') continue;
      const int nibble = std::stoi(uuid.substr(at, 1), nullptr, 16);
      everSet[at] = static_cast<char>(everSet[at] | nibble);
      everClear[at] = static_cast<char>(everClear[at] | (nibble ^ 15));
    }
  }
  for (std::size_t at = 0; at < 36; ++at) {
    if (at == 8 || at == 13 || at == 18 || at == 23 || at == 14) continue;
    EXPECT_EQ(int{everSet[at]}, at == 19 ? 11 : 15) << at;
    EXPECT_EQ(int{everClear[at]}, at == 19 ? 7 : 15) << at;
  }
}

TEST(LinuxUuids, LeaveTheSequenceOfTheHostsRandomNumbersAlone) {
  const auto sequence = [](bool disturbed) {
    ::srandom(4711);
    ::srand48(4711);
    std::vector<long> numbers;
    for (int i = 0; i < 20; ++i) {
      if (disturbed) static_cast<void>(LinuxUuids().create());
      numbers.push_back(::random());
      numbers.push_back(::lrand48());
    }
    return numbers;
  };
  EXPECT_EQ(sequence(true), sequence(false));
}

}  // namespace
}  // namespace wenlolib::tests
