#include "platform/apple/Foundation.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include "platform/Reason.h"
#include "platform/apple/FoundationDoubles.h"

// The port's Objective-C on this system's Foundation, which is not Apple's. What only Apple's does
// (find containers, repair documents) is replaced or left out.

namespace wenlolib::tests {
namespace {

namespace foundation = platform::apple::foundation;

TEST(Foundation, TellsUserAndFolders) {
  EXPECT_EQ(foundation::userName(), ::getpwuid(::geteuid())->pw_name);
  EXPECT_TRUE(foundation::homeFolder().value_or("").starts_with('/'));
  EXPECT_TRUE(foundation::libraryFolder().value_or("").starts_with('/'));
  EXPECT_TRUE(foundation::libraryFolder().value_or("").ends_with("/Library"));
}

TEST(Foundation, OffersContainersOnlyWhereTheSystemDoes) {
  const platform::Container absent = foundation::groupContainer("group");
  EXPECT_FALSE(absent.offered);
  EXPECT_EQ(absent.path, std::nullopt);

  offerContainer("/private/\xC3\xA9 container");
  const platform::Container found = foundation::groupContainer("gr\xC3\xBCp");
  EXPECT_TRUE(found.offered);
  EXPECT_EQ(found.path, "/private/\xC3\xA9 container");
  EXPECT_EQ(askedContainer(), "gr\xC3\xBCp");

  offerContainer(std::nullopt);
  const platform::Container null = foundation::groupContainer("group");
  EXPECT_TRUE(null.offered);
  EXPECT_EQ(null.path, std::nullopt);
}

TEST(Foundation, LetsNothingThroughThatItRaises) {
  offerContainer("/private/container");
  raiseInContainerLookup(true);
  EXPECT_THROW(static_cast<void>(foundation::groupContainer("group")), platform::NoAnswer);
  raiseInContainerLookup(false);
  EXPECT_EQ(foundation::groupContainer("group").path, "/private/container");
}

TEST(Foundation, FormatsDatesByDirectives) {
  const Instant date{Seconds(1710461107)};  // 15 March 2024, 00:05:07 GMT
  for (const auto& [offset, expected] :
       {std::pair(9 * 3600, "2024-03-15T09:05:07 %"), std::pair(-3600, "2024-03-14T23:05:07 %")}) {
    useTimeZone(offset);
    EXPECT_EQ(foundation::calendarFormatted(date, "%Y-%m-%dT%H:%M:%S %%"), expected);
  }
}

TEST(Foundation, FormatsNothingWhereTheSystemNoLongerDoes) {
  hideCalendarFormat(true);
  EXPECT_EQ(foundation::calendarFormatted(Instant(), "%Y"), std::nullopt);
  hideCalendarFormat(false);
  EXPECT_TRUE(foundation::calendarFormatted(Instant(), "%Y"));
}

TEST(Foundation, ParsesAndSerialisesDocuments) {
  const Text text = foundation::tidied("<A SUM=\"0F\"><SN>\xC3\xA9</SN><ID>{x}</ID></A>");
  ASSERT_TRUE(text);
  EXPECT_NE(text->find("<A SUM=\"0F\"><SN>\xC3\xA9</SN><ID>{x}</ID></A>"), std::string::npos);
}

TEST(Foundation, AsksForTheTidyOption) {
  static_cast<void>(foundation::tidied("<A/>"));
  EXPECT_EQ(askedXmlOptions(), 1024U);
}

TEST(Foundation, RefusesWhatIsNotADocument) {
  for (const char* text : {"", "no markup", "<A>", "\xFF", "<A>\xFF</A>"}) {
    EXPECT_EQ(foundation::tidied(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace wenlolib::tests
