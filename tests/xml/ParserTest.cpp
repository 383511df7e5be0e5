#include "xml/Parser.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "support/FailingAllocations.h"

namespace wenlolib::xml {
namespace {

/// Writes down what a parser reports. Texts that come in several pieces are joined.
struct Events {
  explicit Events(Parser& owner) : parser(owner) {
    XML_SetUserData(parser.handle(), this);
    XML_SetElementHandler(parser.handle(), onStart, onEnd);
    XML_SetCharacterDataHandler(parser.handle(), onCharacters);
  }

  static Events& from(void* self) { return *static_cast<Events*>(self); }

  static void XMLCALL onStart(void* self, const XML_Char* name, const XML_Char** attributes) {
    ++from(self).calls;
    from(self).parser.run([&] {
      from(self).log += std::string("<") + name;
      for (; *attributes != nullptr; attributes += 2) {
        from(self).log += std::string(" ") + attributes[0] + "=" + attributes[1];
      }
      from(self).log += ">";
      if (std::string_view(name) == "throw") throw std::runtime_error("from a handler");
      return std::string_view(name) != "stop";
    });
  }
  static void XMLCALL onEnd(void* self, const XML_Char* name) {
    from(self).parser.run([&] {
      from(self).log += std::string("</") + name + ">";
      return true;
    });
  }
  static void XMLCALL onCharacters(void* self, const XML_Char* text, int length) {
    from(self).parser.run([&] {
      from(self).log.append(text, static_cast<std::size_t>(length));
      return true;
    });
  }

  Parser& parser;
  std::string log;
  int calls = 0;  // of onStart, even after the parser was stopped
};

constexpr std::string_view document =
    "<?xml version=\"1.0\"?><r a=\"1\">one &amp; \xC3\xA9<e/>\r\n<![CDATA[<x>]]></r>";
constexpr std::string_view documentEvents = "<r a=1>one & \xC3\xA9<e></e>\n<x></r>";

TEST(Parser, ReportsTheSameWhateverThePiecesAre) {
  for (const std::size_t piece : {1U, 2U, 3U, 7U, 64U, 1U << 30}) {
    Parser parser(nullptr, piece);
    ASSERT_TRUE(parser.valid());
    Events events(parser);
    EXPECT_TRUE(parser.feed(document, true)) << piece;
    EXPECT_EQ(events.log, documentEvents) << piece;
  }
}

TEST(Parser, TakesADocumentInSeveralFeeds) {
  for (std::size_t split = 0; split <= document.size(); ++split) {
    Parser parser(nullptr);
    Events events(parser);
    EXPECT_TRUE(parser.feed(document.substr(0, split), false)) << split;
    EXPECT_TRUE(parser.feed(document.substr(split), false)) << split;
    EXPECT_TRUE(parser.feed("", true)) << split;
    EXPECT_EQ(events.log, documentEvents) << split;
  }
}

TEST(Parser, RefusesMalformedInputInWhicheverPieceItStands) {
  for (const std::string_view bytes :
       {"", " ", "<r>", "<r></s>", "<r/><r/>", "<r>&</r>", "<r a=1/>", "<r>\x01</r>", "<r>\xFF</r>",
        "text", "<r>]]></r>", "<r>&unknown;</r>"}) {
    for (const std::size_t piece : {1U, 1024U}) {
      Parser parser(nullptr, piece);
      EXPECT_FALSE(parser.feed(bytes, true)) << bytes;
    }
  }
}

TEST(Parser, StaysRefusedAfterAnError) {
  Parser parser(nullptr);
  EXPECT_FALSE(parser.feed("<r></s>", false));
  EXPECT_FALSE(parser.feed("<r/>", true));
}

TEST(Parser, TakesTheEncodingItIsGivenForTheOneThatTheDocumentNames) {
  constexpr std::string_view latin =
      "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><r>\xC3\xA9</r>";
  Parser detecting(nullptr);
  Events detected(detecting);
  EXPECT_TRUE(detecting.feed(latin, true));
  EXPECT_EQ(detected.log, "<r>\xC3\x83\xC2\xA9</r>");
  Parser told("UTF-8");
  Events asTold(told);
  EXPECT_TRUE(told.feed(latin, true));
  EXPECT_EQ(asTold.log, "<r>\xC3\xA9</r>");
}

TEST(Parser, StopsWhereAHandlerSaysSoAndRunsNoHandlerAfterIt) {
  Parser parser(nullptr);
  Events events(parser);
  // Expat still reports the end of an empty element if it was stopped at the element's start.
  EXPECT_FALSE(parser.feed("<r>a<stop/>b<e/></r>", true));
  EXPECT_EQ(events.log, "<r>a<stop>");
  EXPECT_FALSE(parser.feed("<r/>", true));
  EXPECT_EQ(events.log, "<r>a<stop>");
}

TEST(Parser, DoesNotGoOnReadingOnceItWasStopped) {
  Parser parser(nullptr);
  Events events(parser);
  std::string bytes = "<r><stop/>";
  for (int i = 0; i < 1000; ++i) bytes += "<e/>";
  EXPECT_FALSE(parser.feed(bytes + "</r>", true));
  EXPECT_EQ(events.calls, 2);
}

TEST(Parser, StopsAtTheVeryEndOfTheDocument) {
  Parser parser(nullptr);
  Events events(parser);
  EXPECT_FALSE(parser.feed("<stop/>", true));
  EXPECT_EQ(events.log, "<stop>");
}

TEST(Parser, ThrowsFromFeedWhatAHandlerThrew) {
  for (const std::size_t piece : {1U, 1024U}) {
    Parser parser(nullptr, piece);
    Events events(parser);
    EXPECT_THROW(static_cast<void>(parser.feed("<r>a<throw/>b</r>", true)), std::runtime_error);
    EXPECT_EQ(events.log, "<r>a<throw>");
    EXPECT_FALSE(parser.feed("c", true))
        << "an exception is thrown once; after that everything is refused";
    EXPECT_EQ(events.log, "<r>a<throw>");
  }
}

/// Deeply nested, with long texts and names and many attributes, so that expat's buffers must grow.
struct Demanding {
  std::string document;
  std::string events;

  Demanding() {
    std::string ends;
    for (int i = 0; i < 40; ++i) {
      const std::string name =
          "element" + std::to_string(i) + std::string(static_cast<std::size_t>(i * 20), 'n');
      document += "<" + name;
      events += "<" + name;
      for (int j = 0; j <= i; ++j) {
        const std::string attribute = " a" + std::to_string(j) + "=";
        document += attribute + "'" + std::string(100, 'a') + "&lt;'";
        events += attribute + std::string(100, 'a') + "<";
      }
      document += ">\xC3\xA9&gt;";
      events += ">\xC3\xA9>";
      ends = "</" + name + ">" + ends;
    }
    document += std::string(5000, 'x') + ends;
    events += std::string(5000, 'x') + ends;
  }
};

TEST(Parser, KeepsWhatStandsInBuffersThatHaveToGrow) {
  const Demanding demanding;
  for (const std::size_t piece : {1U, 100U, 1U << 30}) {
    Parser parser(nullptr, piece);
    Events events(parser);
    EXPECT_TRUE(parser.feed(demanding.document, true)) << piece;
    EXPECT_EQ(events.log, demanding.events) << piece;
  }
}

TEST(Parser, AnswersEveryFailedAllocationAndLeavesNothingBehind) {
  const Demanding demanding;
  long failures = 0;
  for (bool struck = true; struck;) {
    bool parsed = false;
    tests::FailingAllocations failing(failures + 1);
    {
      Parser parser(nullptr, 100);
      try {
        parsed = parser.valid() && parser.feed(demanding.document, true);
      } catch (const std::bad_alloc&) {
        EXPECT_FALSE(parser.feed("", true))
            << "an exception is thrown once; after that everything is refused";
      }
    }
    failing.stop();
    struck = failing.struck();
    EXPECT_EQ(parsed, !struck) << failures + 1;
    if (struck) ++failures;
  }
  EXPECT_GT(failures, 20) << "expat must take its memory from operator new";
}

}  // namespace
}  // namespace wenlolib::xml
