// Which records are meant.
#include <gtest/gtest.h>

#include "records/OwnRecords.h"

namespace wenlolib::tools {
namespace {

RecordFacts printerLog() {
  RecordFacts facts;
  facts.date = 1000;
  facts.kind = RecordKind::printerLog;
  facts.name = "Office";
  facts.deviceId = "MFG:Orvan;MDL:QX 200;";
  facts.serialNumber = "QX200-0004711";
  return facts;
}

TEST(Choice, IncludesEverythingUntilSomethingIsSet) {
  Choice choice;
  EXPECT_TRUE(choice.everything());
  EXPECT_TRUE(choice.includes(printerLog()));
  choice.kind = RecordKind::application;
  EXPECT_FALSE(choice.everything());
  EXPECT_FALSE(choice.includes(printerLog()));
}

TEST(Choice, CountsTheFirstMomentButNotTheOneAfterTheLast) {
  for (const auto& [since, before, included] :
       {std::tuple{1000, 1001, true}, {1001, 2000, false}, {0, 1000, false}, {0, 999, false}}) {
    Choice choice;
    choice.since = since;
    choice.before = before;
    EXPECT_EQ(choice.includes(printerLog()), included) << since << " " << before;
  }
}

TEST(Choice, FindsAPrinterInItsTextsWhateverTheCapitals) {
  for (const auto& [text, included] : {std::pair{"qx200-0004711", true},
                                       {"mdl:qx 200", true},
                                       {"offic", true},
                                       {"QX200-0004712", false}}) {
    Choice choice;
    choice.printer = text;
    EXPECT_EQ(choice.includes(printerLog()), included) << text;
    RecordFacts application = printerLog();
    application.kind = RecordKind::application;
    EXPECT_FALSE(choice.includes(application)) << text;
  }
}

}  // namespace
}  // namespace wenlolib::tools
