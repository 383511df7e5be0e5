#include "records/Removal.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <utility>

#include "library/Wording.h"
#include "reading/InputFile.h"
#include "record/Identifier.h"
#include "toolkit/Folders.h"
#include "toolkit/SharedNames.h"

namespace wenlolib::tools {
namespace {

/// A folder that is open, and closed at the end of the scope.
class OpenFolder {
 public:
  explicit OpenFolder(const std::string& path)
      : number_(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)) {}
  ~OpenFolder() { close(); }
  OpenFolder(const OpenFolder&) = delete;
  OpenFolder& operator=(const OpenFolder&) = delete;

  /// Goes on to one of its folders, unless that is a link.
  void enter(const std::string& name) {
    const int below =
        ::openat(number_, name.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    const int error = errno;
    close();
    number_ = below;
    errno = error;
  }

  /// Below 0 if it could not be opened; `errno` then says why.
  [[nodiscard]] int number() const { return number_; }

 private:
  void close() const {
    if (number_ >= 0) ::close(number_);
  }

  int number_;
};

std::string whyNotEntered() {
  return errno == ENOTDIR || errno == ELOOP ? "its folder is a link" : systemMessage(errno);
}

std::string removeIn(const OpenFolder& folder, const std::string& name, const FileState& seen) {
  struct stat status {};
  if (::fstatat(folder.number(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
    return errno == ENOENT ? "" : systemMessage(errno);
  }
  if (!S_ISREG(status.st_mode) || FileState(status) != seen) return "changed since it was shown";
  const bool gone = ::unlinkat(folder.number(), name.c_str(), 0) == 0 || errno == ENOENT;
  return gone ? "" : systemMessage(errno);
}

}  // namespace

std::string removeRecord(const std::string& folder, const OwnRecord& record) {
  OpenFolder open(folder);
  std::string_view rest = record.place;
  for (std::size_t end = rest.find('/'); end != std::string_view::npos; end = rest.find('/')) {
    if (open.number() >= 0) open.enter(std::string(rest.substr(0, end)));
    if (open.number() < 0) return whyNotEntered();
    rest.remove_prefix(end + 1);
  }
  return removeIn(open, std::string(rest), record.state);
}

// --- The identifier ---

namespace {

struct Configuration {
  std::string path;  // the library's own
  std::string real;
  struct stat status {};
  platform::ListReading reading;
};

/// The file is a regular one, and not a link to one. If it is not, `errno` is 0 or says why.
bool isOwnFile(const std::string& path, struct stat& status) {
  errno = 0;
  return ::lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

/// The configuration as it is, and what keeps it from being changed.
StoredIdentifier look(const ToolPlatform& platform, Configuration& configuration) {
  const Text path = configurationPath(configurationFile);
  if (!path) return {IdentifierState::kept, "HOME", "the home folder is not known", true};
  configuration.path = *path;
  configuration.real = platform.real(*path);
  StoredIdentifier found{IdentifierState::kept, configuration.real, "", false};
  if (!isOwnFile(found.path, configuration.status)) {
    if (errno == ENOENT) return {IdentifierState::none, found.path, "", false};
    found.unreadable = errno != 0;
    found.why = found.unreadable ? systemMessage(errno) : "not a regular file";
    return found;
  }
  configuration.reading = platform::current().propertyLists->read(*path);
  if (!configuration.reading.dictionary) {
    found.why = listTrouble(configuration.reading);
    found.unreadable = configuration.reading.state == platform::ListState::notRead;
  } else if (!configuration.reading.dictionary->contains(identifierKey)) {
    found.state = IdentifierState::none;
  } else if (configuration.reading.state == platform::ListState::partial) {
    found.why = "other entries would be lost: " + listTrouble(configuration.reading);
  } else {
    found.state = IdentifierState::stored;
  }
  return found;
}

}  // namespace

StoredIdentifier findIdentifier(const ToolPlatform& platform) {
  Configuration configuration;
  return look(platform, configuration);
}

std::string removeIdentifier(const ToolPlatform& platform) {
  Configuration configuration;
  const StoredIdentifier found = look(platform, configuration);
  if (found.state != IdentifierState::stored) return found.why;
  Dictionary entries = std::move(*configuration.reading.dictionary);
  entries.erase(entries.find(identifierKey));
  const Text xml = platform::current().propertyLists->asXml(entries);
  if (!xml) return "other entries would be lost: they do not fit into an XML property list";
  struct stat status {};
  if (!isOwnFile(found.path, status) || FileState(status) != FileState(configuration.status)) {
    return "changed in the meantime";
  }
  const platform::Outcome outcome = platform::current().files->writeAtomically(
      configuration.path, *xml, status.st_mode & 0777U, platform::Publication::replacing);
  return outcome == platform::Outcome::written ? "" : whyNotWritten(outcome.reason);
}

}  // namespace wenlolib::tools
