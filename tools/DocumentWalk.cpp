#include <sys/stat.h>

#include <cerrno>
#include <system_error>

#include "Documents.h"

namespace wenlolib::tools {
namespace {

/// Unfinished documents are called .wenlolib-*.tmp, and so are none yet.
bool hasDocumentName(std::string_view name) {
  return name.ends_with(".PLM") || name.ends_with(".ALM");
}

bool isItselfOrParent(std::string_view name) {
  return name == "." || name == "..";
}

std::string systemMessage(int number) {
  return std::generic_category().message(number);
}

/// The type of a folder's entry, where the file system did not say it along with the name.
bool isFolder(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// What a link leads to.
bool leadsToFolder(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

std::optional<Candidate> DocumentWalk::next() {
  for (;;) {
    if (!open_.empty()) {
      if (auto found = nextInFolder()) return found;
    } else if (position_ < named_.size()) {
      if (auto found = nextNamed()) return found;
    } else {
      return std::nullopt;
    }
  }
}

std::optional<Candidate> DocumentWalk::nextNamed() {
  std::string path = named_[position_++];
  if (leadsToFolder(path)) return enter(std::move(path), true);
  return Candidate{std::move(path), "", true, false};
}

/// Reads on in the innermost folder that is open; nothing when that has led to no document yet.
std::optional<Candidate> DocumentWalk::nextInFolder() {
  errno = 0;
  const dirent* const entry = readdir(open_.back().stream.get());
  if (entry != nullptr) return consider(*entry);
  const int failure = errno;
  const std::string path = open_.back().path;
  open_.pop_back();
  if (failure == 0) return std::nullopt;
  return Candidate{path, systemMessage(failure), true, false};
}

std::optional<Candidate> DocumentWalk::consider(const dirent& entry) {
  const std::string_view name = entry.d_name;
  if (isItselfOrParent(name)) return std::nullopt;
  std::string path = open_.back().path;
  path += name;
  const bool folder = entry.d_type == DT_UNKNOWN ? isFolder(path) : entry.d_type == DT_DIR;
  if (folder) return enter(std::move(path), false);
  if (!hasDocumentName(name)) return std::nullopt;
  const bool mayBeLink = entry.d_type == DT_LNK || entry.d_type == DT_UNKNOWN;
  if (mayBeLink && leadsToFolder(path)) return std::nullopt;
  return Candidate{std::move(path), "", false, entry.d_type == DT_REG};
}

/// Opens a folder, so that reading goes on in it.
std::optional<Candidate> DocumentWalk::enter(std::string path, bool named) {
  std::unique_ptr<DIR, CloseFolder> stream(opendir(path.c_str()));
  if (!stream) {
    const int failure = errno;
    if (failure == ENOENT && !named) return std::nullopt;
    return Candidate{std::move(path), systemMessage(failure), named, false};
  }
  if (!path.ends_with('/')) path += '/';
  open_.push_back({std::move(path), std::move(stream)});
  return std::nullopt;
}

}  // namespace wenlolib::tools
