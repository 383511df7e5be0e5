#include "platform/posix/PosixPropertyLists.h"

#include <cerrno>

#include "platform/posix/BoundedRead.h"
#include "platform/posix/CancellationHold.h"
#include "plist/PropertyList.h"

namespace wenlolib::platform::posix {

ListReading readList(const std::string& path) {
  const WholeFile file = readWhole(path, plist::bounds.bytes);
  if (file.bytes) return plist::read(*file.bytes);
  ListReading reading;
  reading.state = file.reason.error == EFBIG ? ListState::tooLarge : ListState::notRead;
  reading.reason = file.reason;
  return reading;
}

ListReading PosixPropertyLists::read(const std::string& path) {
  const CancellationHold hold;
  const Text real = root_.below(path);
  if (real) return readList(*real);
  ListReading reading;
  reading.reason = {Step::findFile, EINVAL};
  return reading;
}

Text PosixPropertyLists::asXml(const Dictionary& dictionary) {
  return plist::write(dictionary);
}

}  // namespace wenlolib::platform::posix
