#include "ListFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <system_error>

#include "Format.h"
#include "platform/posix/PosixPropertyLists.h"
#include "plist/PropertyList.h"

namespace wenlolib::tools {
namespace {

/// Why the file at `path` has no dictionary that can be read.
std::string trouble(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) {
    return "cannot be looked at: " + std::generic_category().message(errno);
  }
  if (S_ISDIR(status.st_mode)) return "is a folder";
  if (!S_ISREG(status.st_mode)) return "is no regular file";
  if (::faccessat(AT_FDCWD, path.c_str(), R_OK, AT_EACCESS) != 0) {
    return "cannot be read: " + std::generic_category().message(errno);
  }
  constexpr std::size_t most = plist::bounds.bytes;
  if (static_cast<std::uint64_t>(status.st_size) > most) return "is larger than " + sizeText(most);
  return "is no property list with a dictionary at its root";
}

}  // namespace

ListFile readListFile(const std::string& path) {
  ListFile file;
  file.dictionary = platform::posix::readList(path).dictionary;
  if (file.dictionary) return file;
  struct stat status {};
  file.missing = ::lstat(path.c_str(), &status) != 0 && errno == ENOENT;
  file.trouble = file.missing ? "is not there" : trouble(path);
  return file;
}

}  // namespace wenlolib::tools
