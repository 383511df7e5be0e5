// What is found of documents that are not sound, and documents that only a serialiser has changed.
#include <gtest/gtest.h>

#include <list>
#include <utility>

#include "receiver/Samples.h"

namespace wenlolib::tests {
namespace {

using receiver::Document;
using receiver::Fault;
using receiver::Layer;
using receiver::Layout;
using receiver::Report;

std::string lowered(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'F') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

/// What is around the document or broken in it, while all that it says is still there.
std::vector<std::string> readableForms(const std::string& text) {
  const std::string sum = attributeIn(text, "SUM");
  return {" \n" + text,
          text + "\n",
          "\xEF\xBB\xBF" + text,
          "<?xml version=\"1.0\"?>\n" + text,
          "<?xml version=\"1.0\" encoding=\"latin1\"?>" + text,
          text.substr(0, text.size() - 1),
          replaced(text, sum, lowered(sum)),
          replaced(text, "<Orvan", "<0rvan"),
          replaced(text, "</Orvan", "</0rvan"),
          replaced(text, "</Version>", "</Versi0n>"),
          replaced(text, "<Locale>", "<Loca1e>")};
}

TEST(ReceiverSearch, FindsAllThatOneBrokenThingLeaves) {
  for (const Layout layout : layouts) {
    for (const char marker : {'R', 'X'}) {
      const std::string text = sample(layout, marker).text();
      const Report whole = receiver::examine(text);
      EXPECT_FALSE(whole.found);
      for (const std::string& form : readableForms(text)) {
        const Report report = receiver::examine(form);
        EXPECT_FALSE(report.verdict.sound()) << form;
        EXPECT_FALSE(report.document);
        ASSERT_TRUE(report.found) << form;
        EXPECT_EQ(report.found->layout, layout) << form;
        EXPECT_EQ(receiver::contentsOf(*report.found), "some contents") << form;
        for (const receiver::Field& field : whole.document->fields) {
          const bool lost = field.name == "Locale" && form.find("<Loca1e>") != std::string::npos;
          EXPECT_EQ(report.found->value(field.name), lost ? "" : field.value) << form;
        }
        for (const receiver::Field& field : report.found->fields) {
          EXPECT_EQ(form.substr(field.offset, field.value.size()), field.value);
        }
      }
    }
  }
}

TEST(ReceiverSearch, GivesThePayloadUpToWhatIsNotADigit) {
  const std::string text = sample(Layout::application).text();
  const std::string digits = sample(Layout::application).payload();
  std::list<std::string> kept;  // what is found points into the bytes
  const auto foundIn = [&](std::string bytes) {
    return *receiver::examine(kept.emplace_back(std::move(bytes))).found;
  };
  const Document odd = foundIn(replaced(text, digits, digits + "0"));
  EXPECT_EQ(odd.digits, digits);
  EXPECT_EQ(receiver::contentsOf(odd), "some contents");
  const Document wrong = foundIn(replaced(text, digits, digits.substr(0, 9) + "g"));
  EXPECT_EQ(wrong.digits, digits.substr(0, 8));
  EXPECT_EQ(receiver::contentsOf(wrong), "some");
  const Document cut = foundIn(text.substr(0, text.find(digits) + 10));
  EXPECT_EQ(receiver::contentsOf(cut), "some ");
  const Document unmarked = foundIn(replaced(text, "C=\"R\"", "C=\"Z\""));
  EXPECT_EQ(unmarked.marker, '\0');
  EXPECT_EQ(unmarked.digits, "");
  EXPECT_EQ(receiver::contentsOf(unmarked), std::nullopt);
  const Document undated = foundIn(replaced(text, "<Date>", "<Dote>"));
  EXPECT_EQ(receiver::contentsOf(undated), std::nullopt);
}

TEST(ReceiverSearch, GivesACutValueToNobody) {
  const std::string text = sample(Layout::printerOlderTag).text();
  const std::string cut = text.substr(0, text.find("QX200-") + 4);
  const Report report = receiver::examine(cut);
  ASSERT_TRUE(report.found);
  EXPECT_EQ(report.found->fields.size(), 6U);
  EXPECT_EQ(report.found->fields.back().name, "DeviceID");
  EXPECT_EQ(report.found->marker, '\0');
}

TEST(ReceiverSearch, ResolvesReferencesWhereTheValueIsWellFormed) {
  const std::string text = sample(Layout::printerOlderTag).text();
  const auto serialNumber = [&](const std::string& value) {
    const std::string bytes = replaced(text, "QX200-0004711", value) + "\n";
    const Report report = receiver::examine(bytes);
    return report.found ? std::string(report.found->value("SN")) : "nothing found";
  };
  EXPECT_EQ(serialNumber("A&amp;B &#x41;"), "A&B A");
  EXPECT_EQ(serialNumber("A&B"), "A&B");
  EXPECT_EQ(serialNumber("&amp;&nbsp;"), "&amp;&nbsp;");
  EXPECT_EQ(serialNumber("&#0;"), "&#0;");
  EXPECT_EQ(serialNumber("\xFF"), "\xFF");
}

TEST(ReceiverSearch, FindsNothingWithoutALayout) {
  EXPECT_FALSE(receiver::examine("<OrvanQXApplication").found);
  EXPECT_FALSE(receiver::examine("<Other><OSVersion>1</OSVersion></Other>").found);
  EXPECT_TRUE(receiver::examine("<Other><OSVersion>1</OSVersion><PLI C=\"R\">").found);
}

TEST(ReceiverSerialisers, AnXmlDeclarationIsSound) {
  for (const Layout layout : layouts) {
    const std::string text = sample(layout).text();
    for (const std::string declaration :
         {"<?xml version=\"1.0\"?>", "<?xml version='1.0' encoding='utf-8' ?>",
          "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>"}) {
      const std::string declared = declaration + text;
      const Report report = receiver::examine(declared);
      EXPECT_TRUE(report.verdict.sound()) << declared << report.verdict.explanation;
      ASSERT_TRUE(report.document);
      EXPECT_EQ(receiver::contentsOf(*report.document), "some contents");
      for (const receiver::Field& field : report.document->fields) {
        EXPECT_EQ(declared.substr(field.offset, field.value.size()), field.value);
      }
      const std::string altered = replaced(declared, "en_US", "en_UK");
      EXPECT_EQ(findingOf(altered),
                (Finding{Layer::checksum, Fault::altered, altered.find("SUM=\"") + 5, "SUM"}));
      const std::size_t wrong = declared.find("</Date>") + 2;
      EXPECT_EQ(findingOf(replaced(declared, "</Date>", "</date>")),
                (Finding{Layer::xml, Fault::damaged, wrong, "Date"}));
    }
    for (const std::string other :
         {"<?xml?>", "<?xml version=\"1.0\" encoding=\"latin1\"?>", "<?XML version=\"1.0\"?>",
          "<?xml version=\"1.0\"?> ", "<?xml version=\"1.0\"?><?xml version=\"1.0\"?>",
          "<?xml-stylesheet href=\"a\"?>", "\xEF\xBB\xBF<?xml version=\"1.0\"?>"}) {
      EXPECT_EQ(findingOf(other + text).fault, Fault::damaged) << other;
    }
  }
}

TEST(ReceiverSerialisers, AnEscapedBracketIsRepaired) {
  ExpectedDocument document = sample(Layout::printerOlderTag);
  document.printer->deviceId = "A>B";
  document.locale = "a -> b & c";
  std::string text = document.text();
  text = replaced(text, "A>B", "A&gt;B");
  text = replaced(text, "a -> b & c", "a -&gt; b &amp; c");
  EXPECT_EQ(findingOf(text),
            (Finding{Layer::checksum, Fault::repaired, text.find("SUM=\"") + 5, "SUM"}));
  text.insert(0, "<?xml version=\"1.0\"?>");
  const Report report = receiver::examine(text);
  EXPECT_EQ(report.verdict.fault, Fault::repaired);
  ASSERT_TRUE(report.document);
  EXPECT_EQ(report.document->value("DeviceID"), "A>B");
  EXPECT_EQ(receiver::contentsOf(*report.document), "some contents");
}

}  // namespace
}  // namespace wenlolib::tests
