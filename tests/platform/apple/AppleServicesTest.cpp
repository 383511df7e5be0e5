#include "platform/apple/AppleServices.h"

#include <algorithm>

#include "platform/apple/AppleCrypto.h"
#include "platform/apple/StubTest.h"

namespace wenlolib::tests {
namespace {

class AppleServices : public PortTest {};

TEST_F(AppleServices, TellTheTime) {
  const double now = platform::apple::AppleClock().now().time_since_epoch().count();
  EXPECT_NEAR(now, stubs::systemTime(), 2);
}

TEST_F(AppleServices, DigestByCommonCrypto) {
  const platform::Md5Digest ofNothing = {0xD4, 0x1D, 0x8C, 0xD9, 0x8F, 0x00, 0xB2, 0x04,
                                         0xE9, 0x80, 0x09, 0x98, 0xEC, 0xF8, 0x42, 0x7E};
  EXPECT_EQ(platform::apple::AppleDigest().md5({}), ofNothing);
  EXPECT_EQ(world.calls, std::vector<std::string>{"CC_MD5"});
}

/// `text` with an x for each upper-case hexadecimal digit.
std::string formOf(std::string text) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::ranges::replace_if(
      text, [&](char each) { return digits.find(each) != digits.npos; }, 'x');
  return text;
}

TEST_F(AppleServices, MakeRandomIdentifiers) {
  const std::string identifier = platform::apple::AppleUuids().create().value_or("(null)");
  EXPECT_EQ(formOf(identifier), "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx");
  EXPECT_EQ(identifier.substr(14, 1), "4") << "the version of RFC 4122 that is random";
}

}  // namespace
}  // namespace wenlolib::tests
