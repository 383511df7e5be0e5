// Which digits and values the parser need not see, and what it says about the others.
#include "receiver/Damage.h"

#include <gtest/gtest.h>

#include "receiver/Contents.h"
#include "receiver/Samples.h"
#include "xml/HostileValues.h"
#include "xml/WellFormed.h"

namespace wenlolib::tests {
namespace {

using platform::DigitRun;
using receiver::Layer;
using receiver::Layout;
using xml::Finding;

Finding wholeParse(const std::string& text) {
  return xml::parse(text, {text.size(), 0});
}

/// Counts how many samples were well formed. If all or none were, the test shows nothing.
struct Tally {
  int accepted = 0;
  int refused = 0;

  void compare(const std::string& text, DigitRun digits) {
    const Finding whole = wholeParse(text);
    const Finding part = xml::parse(text, digits);
    EXPECT_EQ(part.kind, whole.kind) << text.substr(0, 300);
    EXPECT_EQ(part.message, whole.message) << text.substr(0, 300);
    EXPECT_EQ(part.offset, whole.offset) << text.substr(0, 300);
    (whole.kind == Finding::wellFormed ? accepted : refused) += 1;
  }
  ~Tally() {
    EXPECT_GT(accepted, 0);
    EXPECT_GT(refused, 0);
  }
};

TEST(ReceiverParser, SaysTheSameWithoutMostOfTheDigits) {
  Tally tally;
  for (const std::size_t length : {0U, 1U, 63U, 64U, 65U, 1000U}) {
    const std::string digits(length, 'A');
    for (const std::string& before : hostileValues()) {
      for (const std::string& after : hostileValues()) {
        const std::string head = "<a>" + before + "<p>";
        tally.compare(head + digits + after + "</p></a>", {head.size(), length});
      }
    }
  }
}

/// `form` with `text` in place of each "%".
std::string filled(std::string_view form, const std::string& text) {
  std::string result;
  for (const char character : form) result += character == '%' ? text : std::string(1, character);
  return result;
}

TEST(ReceiverParser, SaysTheSameWhereverTheLongestRunStands) {
  Tally tally;
  const std::string run = ">" + std::string(500, '7');
  for (const char* form : {"<a>%</a>",
                           "<a b=\"%\"/>",
                           "<a b='%'></a>",
                           "<a><!--%--></a>",
                           "<a><!--%-></a>",
                           "<a><![CDATA[%]]></a>",
                           "<a><?b %?></a>",
                           "<a/>%",
                           "%<a/>",
                           "<?x %?><a/>",
                           "<a%></a>",
                           "<a>&%;</a>",
                           "<a>&#6%;</a>",
                           "<a>]]%</a>",
                           "<a b%=\"\"/>",
                           "</%",
                           "<!--%--><a/>",
                           "<a><b%</b></a>",
                           "<a><b/%&amp;</a>",
                           "<a>%&%;</a>",
                           "<a",
                           "<!DOCTYPE a SYSTEM \"%\"><a/>",
                           "<!DOCTYPE a PUBLIC \"%\" \"\"><a/>",
                           "<a>%\xC3</a>",
                           "<a>%"}) {
    const std::string text = filled(form, run);
    tally.compare(text, receiver::longestRunAfterTag(text));
  }
}

TEST(ReceiverParser, IsAskedWhereverAValueIsNotPlain) {
  int wellFormed = 0;
  int others = 0;
  for (const std::string& value : hostileValues()) {
    for (std::string ExpectedDocument::*field :
         {&ExpectedDocument::version, &ExpectedDocument::date, &ExpectedDocument::identifier}) {
      ExpectedDocument document = sample(Layout::application, 'R', std::string(100, 'x'));
      document.*field = value;
      const std::string text = document.text();
      const Finding::Kind kind = wholeParse(text).kind;
      const bool accepted = kind == Finding::wellFormed || kind == Finding::typeDeclared;
      EXPECT_EQ(findingOf(text).layer != Layer::xml, accepted) << value;
      (accepted ? wellFormed : others) += 1;
    }
  }
  EXPECT_GT(wellFormed, 20);
  EXPECT_GT(others, 20);
}

TEST(ReceiverParser, CallsPlainOnlyWhatStandsForItself) {
  int plain = 0;
  for (int byte = 0; byte < 256; ++byte) {
    const std::string value(1, static_cast<char>(byte));
    if (!receiver::isPlain(value)) continue;
    ++plain;
    EXPECT_EQ(wholeParse("<a b=\"" + (value == "\"" ? "" : value) + "\">" + value + "</a>").kind,
              Finding::wellFormed)
        << byte;
  }
  EXPECT_EQ(plain, 95 - 3);  // the printable characters of ASCII except < & ]
  EXPECT_TRUE(receiver::isPlain(""));
  EXPECT_FALSE(receiver::isPlain("abc&"));
}

TEST(ReceiverParser, TellsWhatIsMissing) {
  for (const char* text : {"", "<", "<a", "<a>", "<a><b></b>", "<a>&am", "<a>\xE2\x82", "<!--",
                           "<a><![CDATA[x", "<?a"}) {
    EXPECT_EQ(wholeParse(text).kind, Finding::endMissing) << text;
  }
  EXPECT_EQ(wholeParse("<a></b>").kind, Finding::tagMismatch);
  EXPECT_EQ(wholeParse("<a>&b;</a>").kind, Finding::malformed);
  EXPECT_EQ(wholeParse("<!DOCTYPE a><a>").kind, Finding::typeDeclared);
}

}  // namespace
}  // namespace wenlolib::tests
