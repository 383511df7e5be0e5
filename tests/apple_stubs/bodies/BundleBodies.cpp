#include "apple_stubs/bodies/Conversion.h"
#include "apple_stubs/bodies/Stubs.h"

using namespace wenlolib::tests::stubs;
using wenlolib::Dictionary;

namespace {

/// Core Foundation notes where it found the information, in an object that no property list holds.
CFTypeRef informationWithItsPlace(const Dictionary& information, const std::string& bundle) {
  const CFTypeRef made = wenlolib::tests::stubs::made(information);
  auto& entries = behind<Container>(made, dictionaryType)->items;
  entries.push_back(reference<CFTypeRef>(new StringObject("CFBundleInfoPlistURL")));
  entries.push_back(
      reference<CFTypeRef>(new PlainObject(urlType, bundle + "/Contents/Info.plist")));
  return made;
}

}  // namespace

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef /*allocator*/, const UInt8* path,
                                                 CFIndex length, Boolean isFolder) {
  if (refused("CFURLCreateFromFileSystemRepresentation") || isFolder == 0) return nullptr;
  std::string text(reinterpret_cast<const char*>(path), static_cast<std::size_t>(length));
  return reference<CFURLRef>(new PlainObject(urlType, std::move(text)));
}

CFBundleRef CFBundleCreate(CFAllocatorRef /*allocator*/, CFURLRef url) {
  const auto found = world().bundles.find(behind<PlainObject>(url, urlType)->text);
  if (refused("CFBundleCreate") || found == world().bundles.end()) return nullptr;
  auto* bundle = new PlainObject(bundleType);
  if (found->second) bundle->other = informationWithItsPlace(*found->second, found->first);
  return reference<CFBundleRef>(bundle);
}

CFDictionaryRef CFBundleGetInfoDictionary(CFBundleRef bundle) {
  return static_cast<CFDictionaryRef>(behind<PlainObject>(bundle, bundleType)->other);
}
