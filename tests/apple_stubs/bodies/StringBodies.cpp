#include <algorithm>
#include <cstring>

#include "apple_stubs/bodies/Objects.h"
#include "apple_stubs/bodies/Stubs.h"
#include "base/Utf8.h"

using namespace wenlolib::tests::stubs;

// Seen: AppleUser.HasNoLocaleWhereTheSettingIsNotText.
CFTypeID CFStringGetTypeID() {
  return stringType;
}

// Lengths are in bytes here; the callers cannot tell them from UTF-16 units. Bytes that are not
// UTF-8 stand for a string with half of a surrogate pair in it.
// Seen: CoreFoundationStrings.AreGivenWholeWhateverTheirLength.
CFIndex CFStringGetLength(CFStringRef string) {
  return static_cast<CFIndex>(behind<StringObject>(string, stringType)->text.size());
}

// Seen: CoreFoundationStrings.GivePairsAndRefuseHalves.
CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding /*encoding*/,
                         UInt8 /*lossByte*/, Boolean /*mark*/, UInt8* buffer, CFIndex room,
                         CFIndex* used) {
  const std::string& all = behind<StringObject>(string, stringType)->text;
  if (!wenlolib::isUtf8(all)) return range.length - 1;
  const std::string text =
      all.substr(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length));
  *used = static_cast<CFIndex>(text.size());
  if (buffer != nullptr) {
    *used = std::min(*used, room);
    std::memcpy(buffer, text.data(), static_cast<std::size_t>(*used));
  }
  return range.length;
}

CFStringRef stubConstantString(const char* text) {
  static auto& constants = *new std::map<std::string, StringObject*>;  // never freed
  StringObject*& constant = constants[text];
  if (constant == nullptr) constant = new StringObject(text, true);
  return reference<CFStringRef>(constant);
}

// Seen: TransformCipher.RefusesAResultThatIsNotDataOrHasAnotherLength.
CFTypeID CFDataGetTypeID() {
  return dataType;
}

// Seen: TransformCipher.Encrypts.
CFDataRef CFDataCreate(CFAllocatorRef /*allocator*/, const UInt8* bytes, CFIndex length) {
  if (refused("CFDataCreate")) return nullptr;
  return reference<CFDataRef>(new DataObject(bytes, length));
}

// Seen: TransformCipher.Encrypts.
CFIndex CFDataGetLength(CFDataRef data) {
  return static_cast<CFIndex>(behind<DataObject>(data, dataType)->bytes.size());
}

// Seen: TransformCipher.Encrypts.
const UInt8* CFDataGetBytePtr(CFDataRef data) {
  return behind<DataObject>(data, dataType)->bytes.data();
}
