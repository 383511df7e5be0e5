#include "RecordedDocument.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "wenlolib/CommonTooWenlolib.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::bench {

std::string recordedDocument(std::size_t contentsSize) {
  const bool recorded =
      WENLOLIB::writeAppInfoWithContents(std::string(contentsSize, 'x'), "App", 1);
  if (!recorded) throw std::runtime_error("not recorded");
  const std::filesystem::directory_iterator folder(*CommonTooWenlolib::almDirPath());
  std::ifstream file(begin(folder)->path(), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace wenlolib::bench
