// Changes every single byte of sound documents, and cuts them at every place.
#include <gtest/gtest.h>

#include <numeric>

#include "receiver/Samples.h"

namespace wenlolib::tests {
namespace {

using receiver::Fault;
using receiver::Layer;
using receiver::Layout;

/// Small documents of plain values, one for each layout.
std::vector<std::string> smallDocuments() {
  std::vector<std::string> documents;
  for (const Layout layout : layouts) documents.push_back(sample(layout, 'R', "ab").text());
  return documents;
}

/// Longer documents, with both markers. Their values hold references and characters beyond ASCII,
/// which need the parser.
std::vector<std::string> fullDocuments() {
  using namespace std::string_literals;
  std::vector<std::string> documents;
  for (const Layout layout : layouts) {
    for (const char marker : {'R', 'X'}) {
      const std::string contents =
          "line\r\n\0 \u6771\u4EAC \U0001F5A8 <&> "s + std::string(200, 'x');
      ExpectedDocument document = sample(layout, marker, contents);
      document.locale = "\u00E9\u6771\U0001F5A8 a]b > \"'";
      document.identifier = "&lt;A&amp;B&#x41;&gt;\r\n";
      if (document.printer) document.printer->deviceId = "";
      documents.push_back(document.text());
    }
  }
  return documents;
}

std::vector<char> allBytes() {
  std::vector<char> bytes(256);
  std::iota(bytes.begin(), bytes.end(), '\0');
  return bytes;
}

/// Bytes that a reader might mistake for others or for markup.
const std::vector<char>& tellingBytes() {
  static const std::vector<char> bytes = {'\0', '\n',   ' ',    '"',    '&', '\'', '/', '<',
                                          '>',  '0',    'A',    'a',    'G', ']',  'R', 'X',
                                          ';',  '\x7F', '\x80', '\xC3', '-', '!',  '?', '\xFF'};
  return bytes;
}

/// Counts changed documents by what was found. None may be sound: the checksum covers each byte of
/// the content, and each byte around it is fixed.
class Tally {
 public:
  /// `position` is where the document was changed. Everything before it is unchanged.
  void examine(const std::string& changed, std::size_t position) {
    ++examined_;
    const Finding finding = findingOf(changed);
    if (finding.layer == Layer::none) {
      ADD_FAILURE() << "sound, though changed at byte " << position << ": " << changed;
    }
    EXPECT_NE(finding.fault, Fault::none) << position << ": " << changed;
    EXPECT_NE(finding.fault, Fault::repaired) << position << ": " << changed;
    EXPECT_NE(finding.fault, Fault::foreign) << position << ": " << changed;
    EXPECT_LE(finding.offset, changed.size());
    if (finding.fault == Fault::truncated) {
      EXPECT_EQ(finding.offset, changed.size());
    }
    if (finding.fault == Fault::altered) {
      EXPECT_EQ(finding.layer, Layer::checksum);
    }
    faults_[static_cast<std::size_t>(finding.fault)] += 1;
    latest_ = finding;
  }

  [[nodiscard]] const Finding& latest() const { return latest_; }

  /// `documents` is how many there must have been.
  void record(std::size_t documents) const {
    EXPECT_EQ(examined_, documents);
    testing::Test::RecordProperty("documents_examined", static_cast<int>(examined_));
    testing::Test::RecordProperty("found_sound", static_cast<int>(faults_[0]));
    testing::Test::RecordProperty("truncated", static_cast<int>(faults_[1]));
    testing::Test::RecordProperty("damaged", static_cast<int>(faults_[2]));
    testing::Test::RecordProperty("altered", static_cast<int>(faults_[3]));
    EXPECT_EQ(faults_[0], 0U);
  }

 private:
  std::size_t examined_ = 0;
  std::size_t faults_[6] = {};
  Finding latest_;
};

void replaceEverywhere(const std::vector<std::string>& documents, const std::vector<char>& bytes) {
  Tally tally;
  std::size_t expected = 0;
  for (const std::string& sound : documents) {
    ASSERT_EQ(findingOf(sound), Finding{}) << sound;
    std::string changed = sound;
    for (std::size_t i = 0; i < sound.size(); ++i) {
      for (const char byte : bytes) {
        if (byte == sound[i]) continue;
        changed[i] = byte;
        tally.examine(changed, i);
        ++expected;
      }
      changed[i] = sound[i];
    }
  }
  tally.record(expected);
}

void insertEverywhere(const std::vector<std::string>& documents, const std::vector<char>& bytes) {
  Tally tally;
  std::size_t expected = 0;
  for (const std::string& sound : documents) {
    for (std::size_t i = 0; i <= sound.size(); ++i) {
      for (const char byte : bytes) {
        std::string changed = sound;
        changed.insert(i, 1, byte);
        tally.examine(changed, i);
      }
    }
    expected += (sound.size() + 1) * bytes.size();
  }
  tally.record(expected);
}

TEST(ReceiverChanges, EveryOtherByteAtEveryPositionOfSmallDocuments) {
  replaceEverywhere(smallDocuments(), allBytes());
}

TEST(ReceiverChanges, TellingBytesAtEveryPositionOfFullDocuments) {
  replaceEverywhere(fullDocuments(), tellingBytes());
}

TEST(ReceiverChanges, EveryByteInsertedAtEveryPositionOfSmallDocuments) {
  insertEverywhere(smallDocuments(), allBytes());
}

TEST(ReceiverChanges, TellingBytesInsertedAtEveryPositionOfFullDocuments) {
  insertEverywhere(fullDocuments(), tellingBytes());
}

TEST(ReceiverChanges, EveryBitAtEveryPosition) {
  Tally tally;
  std::size_t expected = 0;
  for (const std::string& sound : fullDocuments()) {
    std::string changed = sound;
    for (std::size_t i = 0; i < sound.size(); ++i) {
      for (unsigned bit = 0; bit < 8; ++bit) {
        changed[i] = static_cast<char>(static_cast<unsigned char>(sound[i]) ^ (1U << bit));
        tally.examine(changed, i);
      }
      changed[i] = sound[i];
    }
    expected += 8 * sound.size();
  }
  tally.record(expected);
}

TEST(ReceiverChanges, EveryByteTakenOut) {
  Tally tally;
  std::size_t expected = 0;
  for (const auto& documents : {smallDocuments(), fullDocuments()}) {
    for (const std::string& sound : documents) {
      for (std::size_t i = 0; i < sound.size(); ++i) {
        std::string changed = sound;
        changed.erase(i, 1);
        tally.examine(changed, i);
      }
      expected += sound.size();
    }
  }
  tally.record(expected);
}

TEST(ReceiverChanges, TheFirstWrongByteOfATagIsNamed) {
  for (const std::string& sound : smallDocuments()) {
    for (std::size_t i = sound.find("<Version>"); i < sound.size(); ++i) {
      const bool inTag = sound.rfind('<', i) >= sound.rfind('>', i - 1) + 1;
      if (!inTag) continue;
      std::string changed = sound;
      changed[i] = '\x01';  // not allowed in XML
      const Finding finding = findingOf(changed);
      EXPECT_EQ(finding.offset, i) << changed;
      EXPECT_EQ(finding.fault, Fault::damaged) << changed;
    }
  }
}

TEST(ReceiverChanges, EveryBeginningIsTruncated) {
  Tally tally;
  std::size_t expected = 0;
  for (const auto& documents : {smallDocuments(), fullDocuments()}) {
    for (const std::string& sound : documents) {
      for (std::size_t length = 0; length < sound.size(); ++length) {
        const std::string beginning = sound.substr(0, length);
        tally.examine(beginning, length);
        ASSERT_EQ(tally.latest().layer, Layer::xml) << beginning;
        ASSERT_EQ(tally.latest().fault, Fault::truncated) << beginning;
        ASSERT_EQ(tally.latest().offset, length);
      }
      expected += sound.size();
    }
  }
  tally.record(expected);
}

TEST(ReceiverChanges, ATruncatedDocumentNamesTheFieldWhereItEnds) {
  const std::string text = sample(Layout::printerOlderTag).text();
  const auto cutAfter = [&](std::string_view part) {
    EXPECT_NE(text.find(part), std::string::npos) << part;
    return findingOf(text.substr(0, text.find(part) + part.size())).field;
  };
  EXPECT_EQ(findingOf("").field, "");
  EXPECT_EQ(cutAfter("<OrvanQ"), "");
  EXPECT_EQ(cutAfter("<OrvanQXPrinter"), "SUM");
  EXPECT_EQ(cutAfter("SUM=\""), "SUM");
  EXPECT_EQ(cutAfter("<Date>2024"), "Date");
  EXPECT_EQ(cutAfter("</Date"), "Date");
  EXPECT_EQ(cutAfter("</Date>"), "Locale");
  EXPECT_EQ(cutAfter("<SN>QX200"), "SN");
  EXPECT_EQ(cutAfter("C=\""), "C");
  EXPECT_EQ(cutAfter("C=\"R\">"), "PLI");
  EXPECT_EQ(cutAfter("</PLI>"), "Printer");
  EXPECT_EQ(cutAfter("</Printer>"), "OrvanQXPrinter");
}

TEST(ReceiverChanges, ATruncatedDocumentThatWasWrongBeforeIsTruncatedOrDamaged) {
  const std::string text = sample(Layout::application).text();
  const std::string pretty = replaced(text, "<Version>", "\n  <Version>");
  const std::size_t half = pretty.size() / 2;
  EXPECT_EQ(findingOf(pretty.substr(0, half)).fault, Fault::truncated);
  const std::string declared = "<?xml version=\"1.0\"?>" + text;
  EXPECT_EQ(findingOf(declared.substr(0, half)).fault, Fault::truncated);
  const std::string control = replaced(text, "3.1", "3\x01");
  EXPECT_EQ(findingOf(control.substr(0, half)).fault, Fault::damaged);
  const std::size_t locale = text.find("<Locale>") + 8;
  EXPECT_EQ(findingOf(text.substr(0, locale) + "f\x01r"),
            (Finding{Layer::xml, Fault::damaged, locale + 1, "Locale"}));
  const std::string lastByte = text.substr(0, text.size() - 1) + "X";
  EXPECT_EQ(findingOf(lastByte),
            (Finding{Layer::xml, Fault::damaged, text.size() - 1, "OrvanQXApplication"}));
}

}  // namespace
}  // namespace wenlolib::tests
