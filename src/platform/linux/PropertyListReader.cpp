#include "platform/linux/PropertyListReader.h"

#include "platform/linux/BinaryPropertyListReader.h"
#include "platform/linux/PropertyListBounds.h"
#include "platform/linux/XmlPropertyListReader.h"

namespace wenlolib::platform::gnulinux {

std::optional<Dictionary> parsePropertyList(std::string_view bytes) {
  if (bytes.size() > propertyListBounds.bytes) return std::nullopt;
  const bool binary = bytes.starts_with("bplist");
  return binary ? readBinaryPropertyList(bytes) : readXmlPropertyList(bytes);
}

}  // namespace wenlolib::platform::gnulinux
