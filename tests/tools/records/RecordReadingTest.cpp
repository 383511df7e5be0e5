// What is a document of this library, and what is taken from it.
#include "records/RecordReading.h"

#include <gtest/gtest.h>

namespace wenlolib::tools {
namespace {

TEST(IsOurs, TellsDocumentsFromForeignFiles) {
  for (const char* ours :
       {"<OrvanQXApplication SUM=\"", "<OrvanQX2Application>", "<OrvanQXPrinter SUM='x'/>",
        "\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<OrvanQXPrinter\n", " \r\n\t<OrvanQXApplication ",
        "?OrvanQXApplication SUM=\"\"></OrvanQXApplication>\n"}) {
    EXPECT_TRUE(isOurs(ours)) << ours;
  }
  for (const char* foreign :
       {"", " ", "<", "<OrvanQX", "<OrvanQXApplication", "<OrvanQXApplications>", "<html>",
        "<html><OrvanQXApplication SUM=\"\"></OrvanQXApplication></html>", "<?xml version=\"1.0\"",
        "x<OrvanQXPrinter ", "OrvanQXApplication"}) {
    EXPECT_FALSE(isOurs(foreign)) << foreign;
  }
}

TEST(Printer, IsModelAndSerialNumber) {
  RecordFacts facts;
  EXPECT_EQ(facts.printer(), "");
  facts.serialNumber = "4711";
  EXPECT_EQ(facts.printer(), "4711");
  facts.deviceId = "MFG:Orvan; MDL:QX 200 ;SN:1";
  EXPECT_EQ(facts.printer(), "QX 200 4711");
  facts.deviceId = "MFG:Orvan;MODEL:QX 500";
  EXPECT_EQ(facts.printer(), "QX 500 4711");
  facts.deviceId = "anything";
  facts.serialNumber.clear();
  EXPECT_EQ(facts.printer(), "anything");
}

}  // namespace
}  // namespace wenlolib::tools
