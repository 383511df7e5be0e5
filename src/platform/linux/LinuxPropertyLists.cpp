#include "platform/linux/LinuxPropertyLists.h"

#include "platform/linux/PropertyListBounds.h"
#include "platform/linux/PropertyListReader.h"
#include "platform/linux/PropertyListWriter.h"
#include "platform/posix/BoundedRead.h"
#include "platform/posix/CancellationHold.h"

namespace wenlolib::platform::gnulinux {

std::optional<Dictionary> dictionaryInFile(const std::string& path) {
  const auto bytes = posix::readWhole(path, propertyListBounds.bytes);
  return bytes ? parsePropertyList(*bytes) : std::nullopt;
}

std::optional<Dictionary> LinuxPropertyLists::read(const std::string& path) {
  const posix::CancellationHold hold;
  const Text real = root_.below(path);
  return real ? dictionaryInFile(*real) : std::nullopt;
}

Text LinuxPropertyLists::asXml(const Dictionary& dictionary) {
  return propertyListXml(dictionary);
}

}  // namespace wenlolib::platform::gnulinux
