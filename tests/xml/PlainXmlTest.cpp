// The quick reader: what it takes, and that it never takes a text that expat refuses or reads
// differently.
#include "xml/PlainXml.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "xml/HostileValues.h"
#include "xml/Parser.h"

namespace wenlolib::tests {
namespace {

using namespace xml;

/// What was read, on one line. Text that came in pieces is joined again.
class Written : public Events {
 public:
  bool start(std::string_view name) override { return add("(" + std::string(name) + ":"); }
  bool end(std::string_view name) override { return add(":" + std::string(name) + ")"); }
  bool characters(std::string_view text) override { return add(text); }
  std::string seen;

 private:
  bool add(std::string_view more) {
    seen += more;
    return true;
  }
};

struct Reading {
  bool taken = false;
  std::string events;
};

Reading plain(std::string_view text) {
  Written written;
  const bool taken = readPlain(text, written);
  return {taken, written.seen};
}

Written& writtenBy(void* self) {
  return *static_cast<Written*>(self);
}

Reading strict(std::string_view text) {
  Written written;
  Parser parser("UTF-8");
  XML_SetUserData(parser.handle(), &written);
  XML_SetElementHandler(
      parser.handle(),
      [](void* self, const char* name, const char**) { std::ignore = writtenBy(self).start(name); },
      [](void* self, const char* name) { std::ignore = writtenBy(self).end(name); });
  XML_SetCharacterDataHandler(parser.handle(), [](void* self, const char* bytes, int count) {
    std::ignore = writtenBy(self).characters({bytes, static_cast<std::size_t>(count)});
  });
  const bool taken = parser.feed(text, true);
  return {taken, written.seen};
}

struct Case {
  const char* text;
  const char* events;
};

TEST(PlainXml, TakesThePlainForms) {
  const Case cases[] = {
      {"<a/>", "(a::a)"},
      {"<a></a>", "(a::a)"},
      {" \n\t<a/>\n", "(a::a)"},
      {"<a>x</a>", "(a:x:a)"},
      {"<a b=\"c\">x</a>", "(a:x:a)"},
      {"<a b=\"\"/>", "(a::a)"},
      {"<a><b/><c>1 \"2'\n\t]]</c>]</a>", "(a:(b::b)(c:1 \"2'\n\t]]:c)]:a)"},
      {"<A1B2>~ !</A1B2>", "(A1B2:~ !:A1B2)"},
  };
  for (const Case& each : cases) {
    EXPECT_TRUE(plain(each.text).taken) << each.text;
    EXPECT_EQ(plain(each.text).events, each.events);
    EXPECT_EQ(strict(each.text).events, each.events);
  }
}

TEST(PlainXml, LeavesEverythingElseToExpat) {
  const char* const texts[] = {
      "",
      " ",
      "x",
      "<",
      "<a",
      "<a>",
      "</a>",
      "<a></b>",
      "<a><b></a>",
      "<a/><a/>",
      "x<a/>",
      "<a/>x",
      "<a>&amp;",
      "<a>></a>",
      "<a>]]></a>",
      "<a>\r</a>",
      "<a>\x7F</a>",
      "<a>\xC3\xA9</a>",
      "<a\n/>",
      "<a  b=\"\">",
      "<a b=''/>",
      "<a b =\"\"/>",
      "<a b>",
      "<a b=\"<\"/>",
      "<a b=\"",
      "<a b=\">\"/>",
      "<a b=\"\n\"/>",
      "<a b=\"&\"/>",
      "<a b=\"\" c=\"\"/>",
      "<a />",
      "<a></a >",
      "<a-b/>",
      "<a:b/>",
      "<_a/>",
      "<1/>",
      "<?xml version=\"1.0\"?><a/>",
      "<!---->",
      "<a><!----></a>",
      "<a><![CDATA[]]></a>",
      "<!DOCTYPE a><a/>",
      "<a>\x01</a>",
  };
  for (const char* text : texts) EXPECT_FALSE(plain(text).taken) << text;
  EXPECT_FALSE(plain(std::string("<a>\0</a>", 8)).taken);
}

TEST(PlainXml, LooksAtNothingLongerThanItsBound) {
  const std::string rest = "</a>";
  std::string text = "<a>" + std::string(plainBytes - 7, 'x') + rest;
  EXPECT_TRUE(plain(text).taken);
  text.insert(3, 1, 'x');
  EXPECT_FALSE(plain(text).taken);
}

TEST(PlainXml, EndsWhereAnEventIsNotTaken) {
  class Refusing : public Written {
   public:
    explicit Refusing(int steps) : left_(steps) {}
    bool start(std::string_view name) override { return left_-- > 0 && Written::start(name); }
    bool end(std::string_view name) override { return left_-- > 0 && Written::end(name); }
    bool characters(std::string_view text) override {
      return left_-- > 0 && Written::characters(text);
    }

   private:
    int left_;
  };
  const std::vector<std::string> stages = {"", "(a:", "(a:(b:", "(a:(b::b)", "(a:(b::b)x"};
  for (std::size_t steps = 0; steps < stages.size(); ++steps) {
    Refusing events(static_cast<int>(steps));
    EXPECT_FALSE(readPlain("<a><b/>x</a>", events));
    EXPECT_EQ(events.seen, stages[steps]);
  }
}

/// If the quick reader takes a text, expat must take it too and read the same from it.
void expectAgreement(const std::string& text, int& taken) {
  const Reading quick = plain(text);
  if (!quick.taken) return;
  ++taken;
  const Reading thorough = strict(text);
  EXPECT_TRUE(thorough.taken) << text;
  EXPECT_EQ(quick.events, thorough.events) << text;
}

TEST(PlainXml, TakesNoHostileValueThatExpatRefuses) {
  int taken = 0;
  for (const std::string& first : hostileValues()) {
    for (const std::string& second : hostileValues()) {
      expectAgreement("<W SUM=\"" + first + "\"><A>" + second + "</A></W>", taken);
      expectAgreement("<W SUM=\"0\"><A>" + first + "</A><B C=\"R\">" + second + "</B></W>", taken);
    }
  }
  EXPECT_GT(taken, 100);
}

TEST(PlainXml, TakesNoChangedByteThatExpatRefuses) {
  const std::string sound = "<W SUM=\"0A\"><A>x y</A><B C=\"R\"></B><D/>\n</W>\n";
  int taken = 0;
  for (std::size_t i = 0; i <= sound.size(); ++i) {
    for (int byte = 0; byte < 256; ++byte) {
      std::string inserted = sound;
      inserted.insert(i, 1, static_cast<char>(byte));
      expectAgreement(inserted, taken);
      if (i == sound.size()) continue;
      std::string replaced = sound;
      replaced[i] = static_cast<char>(byte);
      expectAgreement(replaced, taken);
      for (std::size_t j = i; j < sound.size() && byte == 0; ++j) {
        expectAgreement(sound.substr(0, i) + sound.substr(j), taken);
      }
    }
  }
  EXPECT_GT(taken, 1000);
}

}  // namespace
}  // namespace wenlolib::tests
