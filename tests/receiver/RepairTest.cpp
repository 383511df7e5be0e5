// Documents that were repaired before they were stored.
#include <gtest/gtest.h>

#include "receiver/Samples.h"
#include "xml/Mending.h"

namespace wenlolib::tests {
namespace {

using receiver::Fault;
using receiver::Layer;
using receiver::Layout;

/// A document as it is stored: the checksum is made first, then stray markup is escaped.
std::string stored(const ExpectedDocument& document) {
  return xml::mend(document.text());
}

ExpectedDocument printerWith(const std::string& deviceId, const std::string& serialNumber) {
  ExpectedDocument document = sample(Layout::printerOlderTag);
  document.printer->deviceId = deviceId;
  document.printer->serialNumber = serialNumber;
  return document;
}

Finding checksumFault(const std::string& text, Fault fault) {
  return {Layer::checksum, fault, text.find("SUM=\"") + 5, "SUM"};
}

struct Values {
  std::string deviceId, serialNumber;
};

TEST(ReceiverRepair, IsRecognised) {
  const std::vector<Values> all = {
      {"A&B", ""},
      {"", "a < b"},
      {"A&B", "a < b && c <= d"},
      {"&", "<"},
      {"&nbsp;", "&amp"},
      {"R&amp;D", "A&B"},    // a reference and a stray ampersand, in two values
      {"R&amp;D, R&D", ""},  // and in the same value
      {"&amp;&lt;&&lt;&", ""},
      {"&&&&&&&&&&&&&&&&&&&&", "a<=b"},  // too many to try one by one; all are stray
      {"&&&&&&&&&&", "R&amp;D"},         // stray in one value, references in the other
      {"&lt;&lt;&lt;&lt;&lt;&lt;&lt;&lt;", "A&B"},
      {std::string(100000, '&'), ""},
      {"]]>", ""},
      {"a]]>b & c", "]]]>"},
      {"]]&gt; and ]]>", "&lt;]]>"},  // a reference and stray markup
      {"]]>]]>]]>]]>]]>]]>]]>]]>", "]]&gt;"},
  };
  for (const Values& values : all) {
    const std::string text = stored(printerWith(values.deviceId, values.serialNumber));
    ASSERT_EQ(findingOf(text), checksumFault(text, Fault::repaired))
        << values.deviceId.substr(0, 100) << " and " << values.serialNumber;
    const receiver::Report report = receiver::examine(text);
    ASSERT_TRUE(report.document);
    EXPECT_EQ(receiver::contentsOf(*report.document), "some contents");
  }
}

TEST(ReceiverRepair, GivesTheValueBack) {
  const std::string text = stored(printerWith("A&B", "a < b ]]> c"));
  const receiver::Report report = receiver::examine(text);
  ASSERT_TRUE(report.document);
  EXPECT_EQ(report.document->value("DeviceID"), "A&B");
  EXPECT_EQ(report.document->value("SN"), "a < b ]]> c");
}

TEST(ReceiverRepair, InEveryValueOfEveryLayout) {
  const auto check = [](const ExpectedDocument& document) {
    const std::string text = stored(document);
    EXPECT_EQ(findingOf(text), checksumFault(text, Fault::repaired)) << text;
  };
  for (const Layout layout : layouts) {
    for (std::string ExpectedDocument::*field :
         {&ExpectedDocument::version, &ExpectedDocument::osVersion, &ExpectedDocument::locale,
          &ExpectedDocument::identifier}) {
      ExpectedDocument document = sample(layout);
      document.*field = "A&B < C ]]>";
      check(document);
    }
  }
  ExpectedDocument document = printerWith("", "");
  document.printer->romVersion = "2 & 3";
  check(document);
}

TEST(ReceiverRepair, IsNotMistakenForAnything) {
  // References that were there from the start: nothing was repaired.
  EXPECT_EQ(findingOf(stored(printerWith("R&amp;D", "&lt;"))), Finding{});
  // Damaged after the repair.
  const std::string repaired = stored(printerWith("A&B", "12345"));
  const std::string damaged = replaced(repaired, "12345", "12346");
  EXPECT_EQ(findingOf(damaged), checksumFault(damaged, Fault::altered));
  // References of other kinds are written by nobody.
  EXPECT_EQ(findingOf(stored(printerWith("]]&gt;", "]]"))), Finding{});
  const std::string numbered = replaced(printerWith("A&B", "C").text(), "A&B", "A&#38;B");
  EXPECT_EQ(findingOf(numbered), checksumFault(numbered, Fault::altered));
}

TEST(ReceiverRepair, EndsItsSearchWhereThereIsTooMuchToTry) {
  // One value holds seven, some of them stray: too many to try each one by itself.
  const std::string mixed = stored(printerWith("&amp;&&&&&&", ""));
  EXPECT_EQ(findingOf(mixed), checksumFault(mixed, Fault::altered));
  const std::string six = stored(printerWith("&amp;&&&&&", ""));
  EXPECT_EQ(findingOf(six), checksumFault(six, Fault::repaired));
}

TEST(ReceiverRepair, EndsItsSearchWhereTooManyValuesHoldReferences) {
  // One was a reference from the start; the others were stray and have been escaped.
  ExpectedDocument document = printerWith("R&D", "R&D");
  document.version = "R&amp;D";
  document.osVersion = document.locale = document.identifier = "R&D";
  const std::string six = stored(document);
  EXPECT_EQ(findingOf(six), checksumFault(six, Fault::repaired));
  document.printer->romVersion = "R&D";
  const std::string seven = stored(document);
  EXPECT_EQ(findingOf(seven), checksumFault(seven, Fault::altered));
}

TEST(ReceiverRepair, TakesFourAttemptsAtALargeDocument) {
  ExpectedDocument document = printerWith("&amp;&amp;&", "");  // found at the fourth
  document.contents = std::string(std::size_t{6} << 20, 'x');
  const std::string fourth = stored(document);
  EXPECT_EQ(findingOf(fourth), checksumFault(fourth, Fault::repaired));
  document.printer->deviceId = "&&&amp;";  // at the fifth
  const std::string fifth = stored(document);
  EXPECT_EQ(findingOf(fifth), checksumFault(fifth, Fault::altered));
  document.contents = "x";
  const std::string small = stored(document);
  EXPECT_EQ(findingOf(small), checksumFault(small, Fault::repaired));
}

TEST(ReceiverRepair, TakesFewAttemptsAtALargeDocument) {
  ExpectedDocument document = printerWith("A&B", "R&amp;D");
  document.contents = std::string(std::size_t{6} << 20, 'x');
  const std::string text = stored(document);
  EXPECT_EQ(findingOf(text), checksumFault(text, Fault::repaired));
  // Some were references from the start and others were not, so the right combination is far down
  // the list.
  document.printer = ExpectedPrinter{"&amp;&amp;&amp;&amp;&amp;&", "", ""};
  const std::string many = stored(document);
  EXPECT_EQ(findingOf(many), checksumFault(many, Fault::altered));
  document.contents = "x";
  const std::string small = stored(document);
  EXPECT_EQ(findingOf(small), checksumFault(small, Fault::repaired));
}

}  // namespace
}  // namespace wenlolib::tests
