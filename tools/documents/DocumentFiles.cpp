#include "documents/DocumentFiles.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

#include "documents/InputFile.h"

namespace wenlolib::tools {

bool hasDocumentName(std::string_view name) {
  return name.ends_with(".PLM") || name.ends_with(".ALM");
}

namespace {

bool isItselfOrParent(std::string_view name) {
  return name == "." || name == "..";
}

/// Whether an entry is a folder, if the file system did not say so along with its name.
bool isFolder(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// Unlike `isFolder`, follows links.
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

/// Reads one entry of the innermost open folder; nothing if it led to no document.
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

DocumentCount::DocumentCount(std::vector<std::string> paths)
    : thread_([this, paths = std::move(paths)]() mutable { count(std::move(paths)); }) {}

DocumentCount::~DocumentCount() {
  stopped_ = true;
  thread_.join();
}

std::optional<std::uint64_t> DocumentCount::total() const {
  return done_ ? std::optional(documents_) : std::nullopt;
}

void DocumentCount::count(std::vector<std::string> paths) {
  DocumentWalk walk(std::move(paths));
  std::uint64_t documents = 0;
  while (!stopped_ && walk.next()) ++documents;
  if (stopped_) return;
  documents_ = documents;
  done_ = true;
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
  if (number == ENOENT && !candidate.named && isGone(candidate.path)) return {{}, "", true};
  return failure(number);
}

/// Room for the expected bytes and one more. If that one stays free, the end is known without
/// another call.
void makeRoom(std::string& buffer, std::size_t room) {
  if (buffer.size() > keptBytes && room <= keptBytes) std::string().swap(buffer);
  if (buffer.size() < room) buffer.resize(room);
}

DocumentReading readAll(const InputFile& file, std::size_t expected, std::string& buffer) {
  makeRoom(buffer, expected + 1);
  const auto [length, error] = file.readAll(expected, largestDocument, buffer);
  if (error == EFBIG) return tooLarge();
  if (error != 0) return failure(error);
  return {{buffer.data(), length}, "", false};
}

}  // namespace

DocumentReading readDocument(const Candidate& candidate, std::string& buffer) {
  struct stat status {};
  // Just opening a device can do something to it, so the type is looked up first.
  if (!candidate.regular) {
    if (stat(candidate.path.c_str(), &status) != 0) return openFailure(candidate, errno);
    if (!S_ISREG(status.st_mode)) return notRegular(status.st_mode);
  }
  const InputFile file(candidate.path, O_NONBLOCK);
  if (file.number() < 0) return openFailure(candidate, errno);
  if (fstat(file.number(), &status) != 0) return failure(errno);
  if (!S_ISREG(status.st_mode)) return notRegular(status.st_mode);
  const auto size = static_cast<std::size_t>(status.st_size);
  if (size > largestDocument) return tooLarge();
  return readAll(file, size, buffer);
}

}  // namespace wenlolib::tools
