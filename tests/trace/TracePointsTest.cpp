// The texts of the debug trace points. Sources with trace points are built into this program again,
// with the points on. The rest of the library is the same as in the other tests.
#include <gtest/gtest.h>

#include "support/ExpectedDocument.h"
#include "support/FailingAllocations.h"
#include "support/PlatformTest.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::tests {
namespace {

class TracePoints : public InstalledTest {
 protected:
  const std::string document = [] {
    ExpectedDocument expected;
    expected.contents = "contents";
    return expected.text();
  }();

  static bool recorded(std::uint32_t option = 0) {
    return WENLOLIB::writeAppInfoWithContents("contents", "App", option);
  }

  /// What `work` prints to standard error.
  template <class Work>
  static std::string printedBy(Work work) {
    testing::internal::CaptureStderr();
    work();
    return testing::internal::GetCapturedStderr();
  }

  /// What creating a document prints if its k-th allocation fails. The first is the input buffer;
  /// the output buffers follow.
  static std::string printedWithoutMemoryFor(long k) {
    const auto record = WENLOLIB::initWithContents(std::string(100, 'c'), "App");
    bool made = true;
    const std::string printed = printedBy([&] {
      const FailingAllocations failing(k);
      made = record->WENLOLIBCreateXMLDocument();
    });
    EXPECT_FALSE(made) << k;
    return printed;
  }
};

TEST_F(TracePoints, FollowARecordToItsFile) {
  EXPECT_EQ(printedBy([] { EXPECT_TRUE(recorded()); }),
            " writeAppInfoWithContents App\noutBuffLen  = 8xmlCheckSumStr = " + document +
                "xmlDoc desc =" + document + "  writeToFile ret = [1] ");
}

TEST_F(TracePoints, TellThatAWriteFailed) {
  world.faults.failAlways("files.writeAtomically");
  const std::string printed = printedBy([] { EXPECT_FALSE(recorded()); });
  EXPECT_TRUE(printed.ends_with("  writeToFile ret = [0] ")) << printed;
}

TEST_F(TracePoints, ShowNoParsedDocumentWhereThereIsNone) {
  world.faults.failAlways("xml.serialised");
  EXPECT_EQ(printedBy([] { EXPECT_TRUE(recorded()); }),
            " writeAppInfoWithContents App\noutBuffLen  = 8xmlCheckSumStr = " + document);
}

TEST_F(TracePoints, TellThatRecordingIsRefused) {
  EXPECT_EQ(printedBy([] { EXPECT_FALSE(recorded(3)); }),
            " writeAppInfoWithContents App\n NOT Supported \n");
}

TEST_F(TracePoints, ShowANullNameAsNull) {
  EXPECT_EQ(printedBy([] { EXPECT_FALSE(WENLOLIB::writeAppInfoWithContents({}, {}, 0)); }),
            " writeAppInfoWithContents (null)\n");
}

TEST_F(TracePoints, NameTheBufferThatThereIsNoMemoryFor) {
  EXPECT_EQ(printedWithoutMemoryFor(1), " inBuff memory error \n");
  EXPECT_EQ(printedWithoutMemoryFor(2), " outBuff memory error \n");
  EXPECT_EQ(printedWithoutMemoryFor(3), " outBuff memory error \n");
}

}  // namespace
}  // namespace wenlolib::tests
