// What the port's tests set up in the system, in Apple's own Core Foundation.
#include <CoreFoundation/CoreFoundation.h>

#include <chrono>

#include "apple_stubs/bodies/Stubs.h"
#include "base/Utf8.h"
#include "platform/apple/Objects.h"

namespace wenlolib::tests::stubs {

using platform::apple::Owned;

void useTimeZone(int secondsFromGMT) {
  const Owned<CFTimeZoneRef> zone(CFTimeZoneCreateWithTimeIntervalFromGMT(nullptr, secondsFromGMT));
  CFTimeZoneSetDefault(zone.get());
}

namespace {

Owned<CFPropertyListRef> settingOf(const Text& text) {
  constexpr UniChar highHalf = 0xD800;
  const SInt32 number = 1;
  if (!text) return Owned<CFPropertyListRef>(CFNumberCreate(nullptr, kCFNumberSInt32Type, &number));
  if (*text == halfAPair) {
    return Owned<CFPropertyListRef>(CFStringCreateWithCharacters(nullptr, &highHalf, 1));
  }
  return Owned<CFPropertyListRef>(
      CFStringCreateWithCString(nullptr, text->c_str(), kCFStringEncodingUTF8));
}

}  // namespace

void useLocaleSetting(const std::optional<Text>& setting) {
  CFPropertyListRef value = nullptr;
  const Owned<CFPropertyListRef> made = setting ? settingOf(*setting) : Owned<CFPropertyListRef>();
  value = made.get();
  CFPreferencesSetAppValue(CFSTR("AppleLocale"), value, kCFPreferencesCurrentApplication);
}

double systemTime() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration<double>(now).count();
}

}  // namespace wenlolib::tests::stubs
