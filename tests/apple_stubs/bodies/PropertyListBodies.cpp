#include <string>
#include <string_view>

#include "apple_stubs/bodies/Conversion.h"
#include "apple_stubs/bodies/Stubs.h"
#include "platform/linux/PropertyListReader.h"
#include "platform/linux/PropertyListWriter.h"

// Property lists are read and written by the other port's code, which is tested on its own. A lone
// value goes inside a dictionary there, and comes out of it here.

using namespace wenlolib;
using namespace wenlolib::tests::stubs;

namespace {

bool isPropertyList(CFTypeRef object) {
  const CFTypeID type = CFGetTypeID(object);
  return type <= dateType || type == uidType;
}

}  // namespace

CFPropertyListRef CFPropertyListCreateWithData(CFAllocatorRef /*allocator*/, CFDataRef data,
                                               CFOptionFlags /*options*/,
                                               CFPropertyListFormat* /*format*/,
                                               CFErrorRef* /*error*/) {
  if (refused("CFPropertyListCreateWithData")) return nullptr;
  const auto& bytes = behind<DataObject>(data, dataType)->bytes;
  std::string text(bytes.begin(), bytes.end());
  if (const auto whole = platform::gnulinux::parsePropertyList(text)) return made(Value(*whole));
  const std::size_t start = text.find('>', text.find("<plist"));
  const std::size_t end = text.rfind("</plist>");
  if (start == std::string::npos || end == std::string::npos) return nullptr;
  text.insert(end, "</dict>").insert(start + 1, "<dict><key>lone</key>");
  const auto lone = platform::gnulinux::parsePropertyList(text);
  return lone ? made(lone->at("lone")) : nullptr;
}

CFDataRef CFPropertyListCreateData(CFAllocatorRef /*allocator*/, CFPropertyListRef list,
                                   CFPropertyListFormat format, CFOptionFlags /*options*/,
                                   CFErrorRef* /*error*/) {
  if (refused("CFPropertyListCreateData") || format != kCFPropertyListXMLFormat_v1_0 ||
      !isPropertyList(list)) {
    return nullptr;
  }
  const Value value = valueBehind(list);
  const auto* whole = value.dictionary();
  const Dictionary lone{{"lone", value}};
  const auto xml = platform::gnulinux::propertyListXml(whole != nullptr ? *whole : lone);
  if (!xml) return nullptr;
  return reference<CFDataRef>(new DataObject(reinterpret_cast<const UInt8*>(xml->data()),
                                             static_cast<CFIndex>(xml->size())));
}
