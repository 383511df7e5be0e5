#include "platform/apple/AppleCrypto.h"
#include "platform/apple/AppleServices.h"
#include "platform/apple/StubTest.h"

namespace wenlolib::tests {
namespace {

class AppleServices : public StubTest {};

TEST_F(AppleServices, TellTheTime) {
  EXPECT_EQ(platform::apple::AppleClock().now(), Instant(Seconds(1710461107.25)));
}

TEST_F(AppleServices, DigestByCommonCrypto) {
  const platform::Md5Digest ofNothing = {0xD4, 0x1D, 0x8C, 0xD9, 0x8F, 0x00, 0xB2, 0x04,
                                         0xE9, 0x80, 0x09, 0x98, 0xEC, 0xF8, 0x42, 0x7E};
  EXPECT_EQ(platform::apple::AppleDigest().md5({}), ofNothing);
  EXPECT_EQ(world.calls, std::vector<std::string>{"CC_MD5"});
}

TEST_F(AppleServices, MakeIdentifiers) {
  platform::apple::AppleUuids uuids;
  EXPECT_EQ(uuids.create(), "3F2A9C41-7B0D-4E6A-9D15-C08E2B7F4A63");
  const std::size_t runs = refusingEachCall(
      [&](const std::string& refused) { EXPECT_EQ(uuids.create().has_value(), refused.empty()); });
  EXPECT_GE(runs, 2U);
}

}  // namespace
}  // namespace wenlolib::tests
