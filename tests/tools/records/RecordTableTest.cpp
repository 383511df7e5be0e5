// Rows fit their terminal.
#include "records/RecordTable.h"

#include <gtest/gtest.h>

#include <sstream>

#include "terminal/VisibleText.h"

namespace wenlolib::tools {
namespace {

const std::string folder = "/home/ada/Library/QMR/";

RecordReading logOf(const std::string& name, const std::string& serialNumber) {
  RecordReading reading;
  reading.facts.kind = RecordKind::printerLog;
  reading.facts.dated = true;
  reading.facts.date = 1'700'000'000;
  reading.facts.name = name;
  reading.facts.serialNumber = serialNumber;
  reading.state.size = 360;
  return reading;
}

/// All lines for these records, on a terminal of so many columns.
std::string shown(const std::vector<RecordReading>& readings, std::size_t columns) {
  RecordTable table({Paint(false), columns}, folder);
  for (const RecordReading& reading : readings) table.measure(reading, "PLM/QX200_1.PLM");
  std::string text;
  for (const RecordReading& reading : readings) text += table.row(reading, "PLM/QX200_1.PLM");
  return text;
}

std::size_t widest(const std::string& text) {
  std::size_t columns = 0;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);)
    columns = std::max(columns, displayWidth(line));
  return columns;
}

TEST(RecordTable, StaysWithinTheTerminal) {
  const std::string wide = "\xE5\xB9\xB4\xE5\xB9\xB4\xE5\xB9\xB4\xE5\xB9\xB4\xE5\xB9\xB4";
  const std::vector<RecordReading> readings = {
      logOf("QX200", "QX200-0004711"), logOf(std::string(300, 'n'), std::string(300, 's')),
      logOf(wide + wide + wide + wide + wide, wide), logOf("\x1B[2J\n", "")};
  for (std::size_t columns = 40; columns <= 220; ++columns) {
    const std::string text = shown(readings, columns);
    EXPECT_LE(widest(text), columns) << text;
    EXPECT_EQ(text.find('\x1B'), std::string::npos);
  }
}

TEST(RecordTable, TakesOneTwoOrFourLinesForARecord) {
  const std::vector<RecordReading> readings = {logOf("QX200", "QX200-0004711")};
  const auto lines = [&](std::size_t columns) {
    const std::string text = shown(readings, columns);
    return std::count(text.begin(), text.end(), '\n');
  };
  EXPECT_EQ(lines(200), 1);
  EXPECT_EQ(lines(80), 2);
  EXPECT_EQ(lines(40), 4);
  EXPECT_EQ(lines(0), 1);
}

TEST(RecordTable, ShowsWholePathsToAProgramAndShortOnesOnATerminal) {
  const std::vector<RecordReading> readings = {logOf("QX200", "QX200-0004711")};
  EXPECT_NE(shown(readings, 0).find(folder + "PLM/QX200_1.PLM\n"), std::string::npos);
  EXPECT_NE(shown(readings, 200).find("  QMR/PLM/QX200_1.PLM\n"), std::string::npos);
}

TEST(RecordTable, CutsTheModelRatherThanTheSerialNumber) {
  RecordReading reading = logOf("QX200", "QX200-0004711");
  reading.facts.deviceId = "MDL:A model with a long name;";
  EXPECT_NE(shown({reading}, 80).find("  A model w... QX200-0004711  "), std::string::npos)
      << shown({reading}, 80);
}

TEST(RecordJson, HasATextThatIsNotUtf8AsDigits) {
  EXPECT_NE(recordJson(logOf("a\xFF", ""), "p", false).find(R"("name":null,"name_hex":"61FF")"),
            std::string::npos);
}

}  // namespace
}  // namespace wenlolib::tools
