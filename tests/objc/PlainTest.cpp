// Plain values, which carry arrays and dictionaries of any depth.
#include <gtest/gtest.h>

#include <cstdlib>

#include "objc/Private.h"
#include "support/SmallStack.h"

namespace wenlolib::tests {
namespace {

Value nested(int levels) {
  Value value("innermost");
  for (int level = 0; level < levels; ++level) {
    value = level % 2 == 0 ? Value(Value::Array{1, value, true}) : Value(Dictionary{{"k", value}});
  }
  return value;
}

TEST(Plain, DeepDictionariesCrossBothWaysOnASmallStack) {
  const Dictionary deep{{"a", nested(511)}, {"b", "text"}, {"c", Value::Data{1, 2}}};
  std::optional<Dictionary> back;
  onStack(smallStack, [&] {
    Plain plain = objc::plain(std::optional(deep));
    back = objc::dictionaryIn(plain);
    plainFree(&plain);
  });
  EXPECT_TRUE(back == deep);
}

TEST(Plain, WhatCannotBeReadIsLeftOut) {
  Plain items[6] = {};
  items[0] = objc::plain(Text("kept"));
  items[1].kind = plainBoolean;
  items[2] = objc::plain(Text("without a value"));
  items[4].kind = plainBoolean;  // has no key
  items[5] = objc::plain(std::optional(Dictionary{{"lost", 1}}));
  Plain dictionary{};
  dictionary.kind = plainDictionary;
  dictionary.count = 6;
  dictionary.as.items = items;
  EXPECT_TRUE(objc::dictionaryIn(dictionary) == (Dictionary{{"kept", false}}));
  for (Plain& item : items) plainFree(&item);
}

TEST(Plain, AMillionLevelsAreFreedOnASmallStack) {
  Plain plain = objc::plain(Text("innermost"));
  for (int level = 0; level < 1'000'000; ++level) {
    Plain around{};
    around.kind = plainArray;
    around.count = 1;
    around.as.items = static_cast<Plain*>(std::malloc(sizeof(Plain)));
    ASSERT_NE(around.as.items, nullptr);
    *around.as.items = plain;
    plain = around;
  }
  onStack(smallStack, [&] { plainFree(&plain); });
  EXPECT_EQ(plain.kind, plainNothing);
}

}  // namespace
}  // namespace wenlolib::tests
