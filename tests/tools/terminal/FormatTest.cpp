#include "terminal/Format.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace wenlolib::tools {
namespace {

TEST(SizeText, EveryUnitAndItsEdges) {
  struct Case {
    std::uint64_t bytes;
    const char* text;
  };
  constexpr Case cases[] = {
      {0, "0 B"},
      {1023, "1,023 B"},
      {1024, "1.0 KiB"},
      {2150, "2.0 KiB"},
      {2151, "2.1 KiB"},
      {(1 << 20) - 1, "1,023.9 KiB"},
      {1 << 20, "1.0 MiB"},
      {std::uint64_t{5} << 30, "5.0 GiB"},
      {std::uint64_t{3} << 40, "3.0 TiB"},
      {UINT64_MAX, "16,777,215.9 TiB"},
  };
  for (const Case& c : cases) EXPECT_EQ(sizeText(c.bytes), c.text) << c.bytes;
}

TEST(Grouped, ThousandsAreSetApart) {
  EXPECT_EQ(groupDigits(0), "0");
  EXPECT_EQ(groupDigits(999), "999");
  EXPECT_EQ(groupDigits(1000), "1,000");
  EXPECT_EQ(groupDigits(1234567), "1,234,567");
}

TEST(Counted, OneAndMany) {
  EXPECT_EQ(countText(0, "document"), "0 documents");
  EXPECT_EQ(countText(1, "document"), "1 document");
  EXPECT_EQ(countText(2000, "document"), "2,000 documents");
}

TEST(LocalTime, OffsetsOfTheReadersZone) {
  const char* const before = std::getenv("TZ");
  const std::string kept = before == nullptr ? "" : before;
  struct Case {
    const char* zone;
    const char* text;
  };
  constexpr Case cases[] = {{"UTC0", "2024-03-15 00:05:07 +00:00"},
                            {"JST-9", "2024-03-15 09:05:07 +09:00"},
                            {"NST3:30", "2024-03-14 20:35:07 -03:30"}};
  for (const Case& c : cases) {
    setenv("TZ", c.zone, 1);
    tzset();
    EXPECT_EQ(localTime(1710461107), c.text);
  }
  before == nullptr ? unsetenv("TZ") : setenv("TZ", kept.c_str(), 1);
  tzset();
}

}  // namespace
}  // namespace wenlolib::tools
