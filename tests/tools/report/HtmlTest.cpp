// Whatever a value holds, it is text.
#include "report/Html.h"

#include <gtest/gtest.h>

#include "base/Utf8.h"

namespace wenlolib::tools {
namespace {

TEST(Html, EscapesWhatCouldBeMarkup) {
  EXPECT_EQ(html("&<>\"'"), "&amp;&lt;&gt;&quot;&#39;");
  EXPECT_EQ(html("&lt;script&gt;"), "&amp;lt;script&amp;gt;");
  EXPECT_EQ(isolated("</bdi>"), "<bdi>&lt;/bdi&gt;</bdi>");
}

TEST(Html, SpellsOutWhatCouldHideOrTurnText) {
  EXPECT_EQ(html("a\xE2\x80\xAE"
                 "b"),
            "a\\u{202E}b");
  EXPECT_EQ(html(std::string_view("\0\x1B", 2)), "\\x00\\x1B");
}

TEST(Html, IsUtf8WhateverTheBytes) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  const std::string text = html(all);
  EXPECT_TRUE(isUtf8(text));
  EXPECT_EQ(text.find_first_of("<>\"'"), std::string::npos);
}

}  // namespace
}  // namespace wenlolib::tools
