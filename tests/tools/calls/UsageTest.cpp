#include "calls/Usage.h"

#include <gtest/gtest.h>

namespace wenlolib::tests {
namespace {

using tools::nearestWord;

TEST(NearestWord, IsTheOneThatWasProbablyMeant) {
  const std::vector<std::string> words = {"verify", "decode", "diff", "explain", "record"};
  const std::pair<const char*, const char*> table[] = {
      {"verfy", "verify"},
      {"verfiy", "verify"},
      {"recrod", "record"},
      {"decoder", "decode"},
      {"explian", "explain"},
      {"ver", "verify"},
      {"expl", "explain"},
      {"dif", "diff"},
      {"xxxxxx", ""},
      {"v", ""},
      {"", ""},
      {"re", ""},
      {"recording", "record"},
  };
  for (const auto& [typed, meant] : table) EXPECT_EQ(nearestWord(typed, words), meant) << typed;
}

TEST(NearestWord, OfAnOptionIgnoresHyphensAndValue) {
  const std::vector<std::string> options = {"--json", "--jobs", "--support-list"};
  EXPECT_EQ(nearestWord("--jsno", options), "--json");
  EXPECT_EQ(nearestWord("-jobs", options), "--jobs");
  EXPECT_EQ(nearestWord("--job=4", options), "--jobs");
  EXPECT_EQ(nearestWord("--suport_list", options), "--support-list");
  EXPECT_EQ(nearestWord("--" + std::string(100, 'j'), options), "");
}

}  // namespace
}  // namespace wenlolib::tests
