#include "reading/DocumentFiles.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

#include "base/Integer.h"
#include "platform/posix/AtomicFile.h"

namespace wenlolib {

bool hasDocumentName(std::string_view name) {
  return name.ends_with(".PLM") || name.ends_with(".ALM");
}

std::string hostName(std::string_view place) {
  constexpr std::string_view applicationPrefix = "Quillmere_Log_";
  std::string_view name = place.substr(place.find('/') + 1);
  const bool application = name.ends_with(".ALM");
  if (hasDocumentName(name)) name.remove_suffix(4);
  const std::size_t line = name.rfind('_');
  if (line != std::string_view::npos && line + 1 < name.size() &&
      std::ranges::all_of(name.substr(line + 1), isDigit)) {
    name = name.substr(0, line);
  }
  if (application && name.starts_with(applicationPrefix)) {
    name.remove_prefix(applicationPrefix.size());
  }
  return std::string(name);
}

namespace {

bool isItselfOrParent(std::string_view name) {
  return name == "." || name == "..";
}

bool isStandardInput(const Candidate& candidate) {
  return candidate.named && candidate.path == "-";
}

/// The type of an entry, if the file system did not say so along with its name. A link is not
/// followed.
unsigned char typeOf(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 ? static_cast<unsigned char>(IFTODT(status.st_mode))
                                           : static_cast<unsigned char>(DT_UNKNOWN);
}

/// Follows links.
bool leadsToFolder(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

void Listing::add(std::string_view name, unsigned char type) {
  entries_.push_back({names_.size(), type});
  names_ += name;
  names_ += '\0';
}

void Listing::sort() {
  std::ranges::sort(entries_, [this](const Entry& a, const Entry& b) {
    return std::strcmp(nameOf(a), nameOf(b)) < 0;
  });
}

const Listing::Entry* Listing::next() {
  return position_ < entries_.size() ? &entries_[position_++] : nullptr;
}

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
  if (path == "-" || !leadsToFolder(path)) return Candidate{std::move(path), ""};
  found_ = 0;
  passedBefore_ = passed_;
  return enter(std::move(path), true);
}

/// Takes one entry of the innermost open folder; nothing if it led to no document.
std::optional<Candidate> DocumentWalk::nextInFolder() {
  Folder& folder = open_.back();
  const Listing::Entry* const entry = folder.listing.next();
  if (entry == nullptr) return leave();
  std::string path = folder.path + folder.listing.nameOf(*entry);
  if (entry->type == DT_DIR) return enter(std::move(path), false);
  ++found_;
  return Candidate{std::move(path), "", false, entry->type == DT_REG};
}

/// Lists a folder, so that the walk goes on in it.
std::optional<Candidate> DocumentWalk::enter(std::string path, bool named) {
  const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(path.c_str()), closedir);
  if (!stream) {
    const int failure = errno;
    if (failure == ENOENT && !named) return std::nullopt;
    ++found_;
    return Candidate{std::move(path), systemMessage(failure), named};
  }
  if (!path.ends_with('/')) path += '/';
  open_.push_back({std::move(path), {}, 0});
  list(stream.get(), open_.back());
  return std::nullopt;
}

void DocumentWalk::list(DIR* stream, Folder& folder) {
  errno = 0;
  while (const dirent* const entry = readdir(stream)) {
    consider(*entry, folder);
    errno = 0;
  }
  folder.failure = errno;
  folder.listing.sort();
}

void DocumentWalk::consider(const dirent& entry, Folder& folder) {
  const std::string_view name = entry.d_name;
  if (isItselfOrParent(name)) return;
  unsigned char type = entry.d_type;
  if (type == DT_UNKNOWN) type = typeOf(folder.path + entry.d_name);
  if (type == DT_LNK && leadsToFolder(folder.path + entry.d_name)) {
    ++passed_.links;
  } else if (type == DT_DIR || hasDocumentName(name) || (counts_ != nullptr && counts_(name))) {
    folder.listing.add(name, type);
  } else {
    ++(platform::posix::isUnfinished(name) ? passed_.unfinished : passed_.otherEnding);
  }
}

/// Goes back to the folder around this one. Tells of entries that could not be listed, and of an
/// outermost folder in which there was nothing.
std::optional<Candidate> DocumentWalk::leave() {
  const std::string path = open_.back().path;
  const int failure = open_.back().failure;
  open_.pop_back();
  if (failure != 0) {
    ++found_;
    return Candidate{path, systemMessage(failure)};
  }
  if (!open_.empty() || found_ > 0) return std::nullopt;
  Candidate empty{named_[position_ - 1],
                  "no documents: there is no *.PLM and no *.ALM in this folder"};
  empty.nothing = true;
  empty.passed = passed_ - passedBefore_;
  passed_ = passedBefore_;
  return empty;
}

namespace {

constexpr std::size_t keptBytes = std::size_t{1} << 20;

DocumentReading complaint(std::string text) {
  return {{}, std::move(text), false};
}

DocumentReading failure(int number) {
  return complaint(systemMessage(number));
}

DocumentReading tooLarge() {
  return complaint("larger than any document can be");
}

const char* kindName(mode_t mode) {
  if (S_ISDIR(mode)) return "a folder";
  if (S_ISFIFO(mode)) return "a pipe";
  if (S_ISSOCK(mode)) return "a socket";
  return "a device";
}

DocumentReading notRegular(mode_t mode) {
  return complaint(std::string("skipped: it is ") + kindName(mode) + ", not a regular file");
}

/// Whether there is nothing at the path any more, not even a link that leads nowhere.
bool isGone(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) != 0 && errno == ENOENT;
}

DocumentReading openFailure(const Candidate& candidate, int number) {
  if (candidate.path.empty()) return complaint("the path is empty");
  if (number == ENOENT && !candidate.named && isGone(candidate.path)) return {{}, "", true};
  return failure(number);
}

/// Room for the expected bytes and one more. If that one stays free, the end is known without
/// another call.
void makeRoom(std::string& buffer, std::size_t room) {
  if (buffer.size() > keptBytes && room <= keptBytes) std::string().swap(buffer);
  if (buffer.size() < room) buffer.resize(room);
}

/// `expected` is 0 if the size is not known; `room` is for more than that.
DocumentReading readAll(const InputFile& file, std::size_t expected, std::size_t room,
                        std::string& buffer) {
  makeRoom(buffer, room);
  const auto [length, error] = file.readAll(expected, largestDocument, buffer);
  if (error == EFBIG) return tooLarge();
  if (error != 0) return failure(error);
  return {{buffer.data(), length}, "", false};
}

/// Reads what comes from somebody who writes it now.
DocumentReading readStream(const InputFile& stream, std::string& buffer) {
  if (stream.number() < 0) return failure(errno);
  constexpr std::size_t piece = std::size_t{64} << 10;
  return readAll(stream, 0, piece, buffer);
}

}  // namespace

DocumentReading readDocument(const Candidate& candidate, std::string& buffer, Stop stop) {
  if (candidate.bytes) return {*candidate.bytes, "", false};
  if (isStandardInput(candidate)) return readStream(InputFile::standardInput(stop), buffer);
  struct stat status {};
  // Just opening a device can do something to it, so the type is looked up first.
  if (!candidate.regular) {
    if (stat(candidate.path.c_str(), &status) != 0) return openFailure(candidate, errno);
    if (S_ISFIFO(status.st_mode) && candidate.named) {
      return readStream(InputFile(candidate.path, stop), buffer);
    }
    if (!S_ISREG(status.st_mode)) return notRegular(status.st_mode);
  }
  const InputFile file(candidate.path, stop, O_NONBLOCK);
  if (file.number() < 0) return openFailure(candidate, errno);
  if (fstat(file.number(), &status) != 0) return failure(errno);
  if (!S_ISREG(status.st_mode)) return notRegular(status.st_mode);
  const auto size = static_cast<std::size_t>(status.st_size);
  if (size > largestDocument) return tooLarge();
  return readAll(file, size, size + 1, buffer);
}

}  // namespace wenlolib
