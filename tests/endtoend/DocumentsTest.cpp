// From the entry points to files that a receiver can read.
#include <string>
#include <tuple>

#include "endtoend/KeptDocuments.h"
#include "endtoend/World.h"
#include "platform/posix/Environment.h"
#include "support/ExpectedDocument.h"

namespace wenlolib::tests {
namespace {

using namespace std::string_literals;

struct NamedContents {
  const char* name;
  std::string contents;
};

void PrintTo(const NamedContents& contents, std::ostream* stream) {
  *stream << contents.name;
}

std::string manyBytes(std::size_t count) {
  std::string bytes(count, '\0');
  for (std::size_t i = 0; i < count; ++i) bytes[i] = static_cast<char>((i * 7 + i / 251) & 0x7F);
  return bytes;
}

const std::vector<NamedContents>& allContents() {
  static const std::vector<NamedContents> all = {
      {"Empty", ""},
      {"OneByte", "x"},
      {"BeyondAscii", "Größe A4, 印刷 12 \xF0\x9D\x84\x9E \xF4\x8F\xBF\xBF"},
      {"EmbeddedNul", "before\0after\0"s},
      {"Markup", "<a href=\"&amp;\">]]>--></a>"},
      {"OneBlockMoreThanAPage", manyBytes(4097)},
  };
  return all;
}

const char* wrapperOf(RecordKind kind) {
  if (kind == RecordKind::application) return "<OrvanQXApplication SUM=\"";
  return kind == RecordKind::printer ? "<OrvanQX2Application SUM=\"" : "<OrvanQXPrinter SUM=\"";
}

std::string fileOf(const World& world, RecordKind kind) {
  return world.real(kind == RecordKind::application ? marchFile : printerLog(1));
}

/// Records, then reads the file back as a receiver would. The verifier reads it again later.
void recordAndCheck(World& world, RecordKind kind, char marker, const std::string& contents) {
  if (marker == 'X') world.services.cipher = &world.refusing;
  const std::string path = fileOf(world, kind);
  ASSERT_TRUE(recordAs(kind, contents));
  const std::string document = readFile(path);
  EXPECT_EQ(modeOf(path), 0666U);
  EXPECT_TRUE(document.starts_with(wrapperOf(kind))) << document.substr(0, 80);
  EXPECT_TRUE(verifies(document));
  EXPECT_NE(document.find(std::string(" C=\"") + marker + "\">"), std::string::npos);
  EXPECT_TRUE(contentsOf(document) == contents);
  keepDocument(path, kind, marker, contents);
}

using Case = std::tuple<RecordKind, char, NamedContents>;
class Documents : public WorldTest, public testing::WithParamInterface<Case> {};

TEST_P(Documents, HoldTheContents) {
  const auto& [kind, marker, contents] = GetParam();
  recordAndCheck(world, kind, marker, contents.contents);
}

INSTANTIATE_TEST_SUITE_P(All, Documents,
                         testing::Combine(testing::Values(RecordKind::application,
                                                          RecordKind::printer,
                                                          RecordKind::printerOlderTag),
                                          testing::Values('R', 'X'),
                                          testing::ValuesIn(allContents())),
                         [](const auto& each) {
                           return std::string(nameOf(std::get<0>(each.param))) +
                                  std::get<1>(each.param) + std::get<2>(each.param).name;
                         });

constexpr std::size_t largeSize = std::size_t{32} << 20;

class LargeDocument : public WorldTest {};

TEST_F(LargeDocument, ApplicationOf32MiB) {
  recordAndCheck(world, RecordKind::application, 'R', manyBytes(largeSize));
}

TEST_F(LargeDocument, OlderPrinterOf32MiBWithoutTheCipher) {
  recordAndCheck(world, RecordKind::printerOlderTag, 'X', manyBytes(largeSize));
}

TEST_F(LargeDocument, NewerPrinterOf32MiB) {
  recordAndCheck(world, RecordKind::printer, 'R', manyBytes(largeSize));
}

class DocumentValues : public WorldTest {};

TEST_F(DocumentValues, ComeFromWhereTheyBelong) {
  ASSERT_TRUE(recordAs(RecordKind::printerOlderTag, "contents"));
  const std::string document = readFile(world.real(printerLog(1)));
  EXPECT_EQ(elementIn(document, "Version"), "2.1");
  EXPECT_EQ(elementIn(document, "OSVersion"), "M.10.15.7");
  EXPECT_EQ(elementIn(document, "Locale"), "fr_FR");
  EXPECT_EQ(Value(elementIn(document, "ID")), world.configuration().at("WENLIBUUID"));
  EXPECT_EQ(elementIn(document, "DeviceID"), "MFG:Orvan;MDL:QX 200;");
  EXPECT_EQ(elementIn(document, "SN"), "4711");
  EXPECT_EQ(elementIn(document, "ROMVER"), "2.14");
}

TEST_F(DocumentValues, AStrayAmpersandIsMendedAndTheChecksumNoLongerMatches) {
  documentsAreSound = false;
  ASSERT_TRUE(
      WENLOLIB::writePrinterLogInfoWithContents("contents", "App", 1, Dictionary{{"SN", "A&B"}}));
  const std::string document = readFile(world.real(printerLog(1)));
  EXPECT_EQ(elementIn(document, "SN"), "A&amp;B");
  EXPECT_FALSE(verifies(document));
  EXPECT_EQ(contentsOf(document), "contents");
}

TEST_F(DocumentValues, ATagThatIsNeverClosedGivesTrueAndNoFile) {
  EXPECT_TRUE(WENLOLIB::writePrinterLogInfoWithContents("contents", "App", 1,
                                                        Dictionary{{"SN", "<open>"}}));
  EXPECT_TRUE(world.printerLogs().empty());
}

struct ZoneCase {
  const char* name;
  const char* zone;
  const char* date;
};

void PrintTo(const ZoneCase& zone, std::ostream* stream) {
  *stream << zone.name;
}

class DocumentDates : public WorldTest, public testing::WithParamInterface<ZoneCase> {};

TEST_P(DocumentDates, AreLocalOnBothSidesOfTheOSBound) {
  const Zone zone(GetParam().zone);
  for (const int minor : {8, 9}) {
    world.memory.system.setVersion(10, minor, 5);
    ASSERT_TRUE(recordAs(RecordKind::application, GetParam().name));
    const auto names = namesIn(world.real(applicationFolder));
    ASSERT_EQ(names.size(), 1U);
    const std::string path = world.real(applicationFolder + "/" + names[0]);
    EXPECT_EQ(elementIn(readFile(path), "Date"), GetParam().date) << "OS 10." << minor;
    keepDocument(path, RecordKind::application, 'R', GetParam().name);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Zones, DocumentDates,
    testing::Values(ZoneCase{"Greenwich", "GMT0", "2024-03-15T00:05:07+00:00"},
                    ZoneCase{"East", "JST-9", "2024-03-15T09:05:07+09:00"},
                    ZoneCase{"West", "EST5", "2024-03-14T19:05:07-05:00"},
                    ZoneCase{"HalfAnHour", "IST-5:30", "2024-03-15T05:35:07+05:30"},
                    ZoneCase{"ThreeQuarters", "NPT-5:45", "2024-03-15T05:50:07+05:45"},
                    ZoneCase{"HalfAnHourWest", "NST3:30", "2024-03-14T20:35:07-03:30"},
                    ZoneCase{"DaylightSaving", "PST8PDT,M3.2.0,M11.1.0",
                             "2024-03-14T17:05:07-07:00"},
                    ZoneCase{"NotYetDaylightSaving", "CET-1CEST,M3.5.0,M10.5.0/3",
                             "2024-03-15T01:05:07+01:00"}),
    [](const auto& each) { return std::string(each.param.name); });

}  // namespace
}  // namespace wenlolib::tests
