#include "xml/WellFormed.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <set>
#include <string>
#include <vector>

#include "platform/posix/TemporaryFolder.h"
#include "record/Document.h"
#include "xml/HostileValues.h"

namespace wenlolib::tests {
namespace {

using platform::DigitRun;
using xml::isWellFormed;
using xml::Service;

constexpr std::size_t lengths[] = {0, 1, 2, 63, 64, 65, 66, 1000};

struct Sample {
  std::string text;
  DigitRun digits;
};

Payload payloadOf(std::size_t length) {
  Payload payload;
  for (std::size_t i = 0; i < length; ++i) payload.digits += "0123456789ABCDEF"[i * 7 % 16];
  return payload;
}

constexpr Field fields[] = {Field::version,      Field::osVersion,  Field::date,
                            Field::locale,       Field::identifier, Field::deviceId,
                            Field::serialNumber, Field::romVersion};

Sample documentOf(const Header& header, std::size_t length) {
  SurveyDocument document = assemble(Layout::printerOlderTag, header, payloadOf(length));
  return {std::move(document.text), document.digits};
}

/// Any text before and after an element with digits in it.
Sample between(const std::string& before, std::size_t length, const std::string& after) {
  Sample sample{"<a>" + before + "<p C=\"R\">", {}};
  const std::string digits = payloadOf(length).digits;
  sample.digits = {sample.text.size(), digits.size()};
  sample.text += digits + "</p>" + after + "</a>";
  return sample;
}

/// Counts how many samples were well formed. If all or none were, the test shows nothing.
struct Tally {
  int accepted = 0;
  int refused = 0;

  void compare(const Sample& sample) {
    const bool full = isWellFormed(sample.text, DigitRun{});
    EXPECT_EQ(isWellFormed(sample.text, sample.digits), full) << sample.text.substr(0, 300);
    ++(full ? accepted : refused);
  }
};

TEST(DigitsNotShown, ChangeNoVerdictWhateverAHeaderFieldHolds) {
  Tally tally;
  for (const Field field : fields) {
    for (const std::string& value : hostileValues()) {
      for (const std::size_t length : lengths) {
        Header header;
        header[field] = value;
        tally.compare(documentOf(header, length));
      }
    }
  }
  EXPECT_GT(tally.accepted, 1000);
  EXPECT_GT(tally.refused, 1000);
}

TEST(DigitsNotShown, ChangeNoVerdictWhateverTwoHeaderFieldsHold) {
  Tally tally;
  for (const std::string& first : hostileValues()) {
    for (const std::string& second : hostileValues()) {
      for (const std::size_t length : {std::size_t{1}, std::size_t{66}}) {
        Header header;
        header[Field::version] = first;
        header[Field::romVersion] = second;
        tally.compare(documentOf(header, length));
      }
    }
  }
  EXPECT_GT(tally.accepted, 500);
  EXPECT_GT(tally.refused, 5000);
}

TEST(DigitsNotShown, ChangeNoVerdictWhateverStandsOnBothSides) {
  Tally tally;
  for (const std::string& before : hostileValues()) {
    for (const std::string& after : hostileValues()) {
      for (const std::size_t length : lengths) tally.compare(between(before, length, after));
    }
  }
  EXPECT_GT(tally.accepted, 2000);
  EXPECT_GT(tally.refused, 20000);
}

/// Something is opened before the digits and closed after them, so the digits are in every place
/// where they can be.
TEST(DigitsNotShown, MayLieInAnyPlace) {
  for (const std::size_t length : lengths) {
    for (const auto& [before, after] : {std::pair("<!-- ", " -->"),
                                        {"<![CDATA[", "]]>"},
                                        {"<?pi ", "?>"},
                                        {"<b>", "</b>"},
                                        {"", ""}}) {
      const Sample sample = between(before, length, after);
      EXPECT_TRUE(isWellFormed(sample.text, sample.digits)) << sample.text.substr(0, 300);
    }
    for (const auto& [before, after] : {std::pair("<!-- ", ""),
                                        {"<![CDATA[", "]]"},
                                        {"<?pi ", ">"},
                                        {"<b>", ""},
                                        {"", "</b>"},
                                        {"<b c=\"", "\"/>"}}) {
      const Sample sample = between(before, length, after);
      EXPECT_FALSE(isWellFormed(sample.text, sample.digits)) << sample.text.substr(0, 300);
    }
  }
}

/// The first digits are shown to the parser, since it can matter that there are any.
TEST(DigitsNotShown, AreNotAllOfThem) {
  struct Case {
    const char* before;
    const char* after;
    bool wellFormed;
  };
  for (const std::size_t length : {std::size_t{1}, std::size_t{66}, std::size_t{1000}}) {
    for (const Case& each : {Case{"<a>]]", "></a>", true},
                             {"<a><!-- -", "- --></a>", true},
                             {"<a>&", "amp;</a>", false},
                             {"<a></a>", "", false},
                             {"", "<a></a>", false}}) {
      const std::string digits = payloadOf(length).digits;
      const std::string text = each.before + digits + each.after;
      EXPECT_EQ(isWellFormed(text, {std::string(each.before).size(), length}), each.wellFormed)
          << text.substr(0, 100);
    }
  }
}

/// The files that the xmllint command reports as not well formed.
std::set<std::string> refusedByXmllint(const TemporaryFolder& folder) {
  const std::string command = "cd '" + folder.path() +
                              "' && ls | grep -v '^report$' | xargs xmllint --noout --nonet"
                              " > report 2>&1";
  EXPECT_NE(::system(command.c_str()), -1);
  std::set<std::string> refused;
  std::ifstream report(folder / "report");
  for (std::string line; std::getline(report, line);) {
    if (line.find(": parser error :") == std::string::npos) continue;
    refused.insert(line.substr(0, line.find(':')));
  }
  return refused;
}

TEST(IsWellFormed, TheXmllintCommandSaysTheSame) {
  if (::system("command -v xmllint >/dev/null 2>&1") != 0) {
    GTEST_SKIP() << "xmllint is not installed";
  }
  const TemporaryFolder folder;
  std::vector<Sample> samples;
  for (const std::string& value : hostileValues()) {
    for (const std::size_t length : {std::size_t{0}, std::size_t{66}}) {
      samples.push_back(between(value, length, ""));
      samples.push_back(between("", length, value));
      samples.push_back(between(value, length, "--><c/>"));
      samples.push_back(between(value, length, "]]>"));
      samples.push_back(between(value, length, "?>"));
    }
  }
  for (std::size_t i = 0; i < samples.size(); ++i) {
    writeFile(folder / ("sample" + std::to_string(i)), samples[i].text);
  }
  const std::set<std::string> refused = refusedByXmllint(folder);
  EXPECT_GT(refused.size(), 100U);
  EXPECT_LT(refused.size(), samples.size() - 100);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    EXPECT_EQ(isWellFormed(samples[i].text, samples[i].digits),
              !refused.contains("sample" + std::to_string(i)))
        << samples[i].text.substr(0, 300);
  }
}

Text serialised(const Sample& sample) {
  return Service().serialised(sample.text, sample.digits);
}

TEST(Service, AWellFormedDocumentIsItsOwnSerialisation) {
  for (const std::size_t length : lengths) {
    const Sample sample = documentOf(Header{}, length);
    EXPECT_EQ(serialised(sample), sample.text);
  }
}

TEST(Service, StrayMarkupIsMendedOnBothSidesOfTheDigits) {
  for (const std::size_t length : lengths) {
    const std::string digits = payloadOf(length).digits;
    EXPECT_EQ(serialised(between("A & B < C", length, " D & E")),
              Text("<a>A &amp; B &lt; C<p C=\"R\">" + digits + "</p> D &amp; E</a>"));
  }
}

TEST(Service, TheEndOfASectionThatNothingBeganIsMendedOnBothSidesOfTheDigits) {
  for (const std::size_t length : lengths) {
    const std::string digits = payloadOf(length).digits;
    EXPECT_EQ(serialised(between("]]>", length, "a]]]>b")),
              Text("<a>]]&gt;<p C=\"R\">" + digits + "</p>a]]]&gt;b</a>"));
  }
}

TEST(Service, WhatIsOpenedBeforeTheDigitsAndClosedAfterThemIsNotMended) {
  for (const std::size_t length : lengths) {
    const std::string digits = payloadOf(length).digits;
    for (const auto& [open, close] : {std::pair("<![CDATA[ < & ", " < & ]]>"),
                                      {"<!-- ]]> < & ", " ]]> < & -->"},
                                      {"<?p ]]> < & ", " ]]> < & ?>"}}) {
      const std::string kept = "<p C=\"R\">" + digits + "</p>" + close;
      EXPECT_EQ(serialised(between(std::string("]]>").append(open), length,
                                   std::string(close).append(" & ]]>"))),
                Text(std::string("<a>]]&gt;").append(open) + kept + " &amp; ]]&gt;</a>"))
          << open;
    }
  }
}

TEST(Service, TheDigitsAreFoundAgainAfterMuchThatWasMended) {
  std::string strays;
  std::string mended;
  for (int i = 0; i < 100; ++i) {
    strays += "& ";
    mended += "&amp; ";
  }
  for (const std::size_t length : lengths) {
    EXPECT_EQ(serialised(between(strays, length, "")), between(mended, length, "").text);
  }
}

TEST(Service, WhatCannotBeMendedIsNull) {
  for (const char* value : {"<b>", "</b>", "<b c=\"", "<!--", "<![CDATA[", "<?pi", "\x01", "\xFF",
                            "&#0;", "& <b>", "]]>\x01", "\xEF\xBF\xBE", "&\uFFFF"}) {
    EXPECT_EQ(serialised(between(value, 66, "")), std::nullopt) << value;
  }
}

TEST(Service, AValueOfAnyLengthIsLookedAt) {
  const std::string filler(200'000, 'x');
  EXPECT_EQ(serialised(between(filler, 66, "")), between(filler, 66, "").text);
  EXPECT_EQ(serialised(between(filler + "<b>", 66, "")), std::nullopt);
  EXPECT_EQ(serialised(between("", 66, filler)), between("", 66, filler).text);
  EXPECT_EQ(serialised(between("", 66, "<b>" + filler)), std::nullopt);
}

TEST(Service, ADoctypeIsNeverTaken) {
  EXPECT_EQ(serialised(between("<!DOCTYPE a [<!ENTITY e \"x\">]>", 2, "&e;")), std::nullopt);
}

TEST(Service, TextWithoutAnElementIsNotADocument) {
  EXPECT_EQ(Service().serialised("", {}), std::nullopt);
  EXPECT_EQ(Service().serialised("plain", {}), std::nullopt);
}

}  // namespace
}  // namespace wenlolib::tests
