#include "reading/Archive.h"

#include <archive.h>
#include <archive_entry.h>
#include <fcntl.h>
#include <locale.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <new>
#include <utility>

#include "reading/InputFile.h"

namespace wenlolib {
namespace {

constexpr std::size_t pieceSize = std::size_t{64} << 10;
constexpr std::size_t beginningSize = 512;

/// libarchive converts names to and from the charset of the locale. While an object lives, this
/// thread has the C locale, which leaves their bytes as they are; the program's own is untouched.
class CLocale {
 public:
  CLocale() : locale_(newlocale(LC_ALL_MASK, "C", nullptr)), before_(uselocale(locale_)) {}
  ~CLocale() {
    uselocale(before_);
    if (locale_ != nullptr) freelocale(locale_);
  }
  CLocale(const CLocale&) = delete;
  CLocale& operator=(const CLocale&) = delete;

 private:
  locale_t locale_;
  locale_t before_;
};

/// As the archive has it.
std::string nameOf(archive_entry* entry) {
  const char* const text = archive_entry_pathname_utf8(entry);
  const char* const bytes = text == nullptr ? archive_entry_pathname(entry) : text;
  return bytes == nullptr ? "" : bytes;
}

}  // namespace

bool looksLikeArchive(std::string_view beginning) {
  constexpr std::size_t tarMarkAt = 257;
  return beginning.starts_with("\x1F\x8B") || beginning.starts_with("\x28\xB5\x2F\xFD") ||
         (beginning.size() > tarMarkAt && beginning.substr(tarMarkAt).starts_with("ustar"));
}

// --- One archive ---

/// The documents in one archive.
class ArchiveWalk::Members {
 public:
  /// `beginning` has been read from the file already.
  Members(std::string path, std::unique_ptr<InputFile> file, std::string beginning)
      : path_(std::move(path)), file_(std::move(file)), piece_(std::move(beginning)) {}

  /// Nothing at the end. What went wrong with the archive comes last, as a complaint.
  std::optional<Candidate> next(PassedOver& passed);

 private:
  struct Free {
    void operator()(archive* opened) const { archive_read_free(opened); }
  };

  static la_ssize_t readPiece(archive* opened, void* members, const void** bytes);
  bool open();
  std::optional<Candidate> ending();
  Candidate member(std::string name, archive_entry* entry);
  std::optional<std::string> readMember(std::uint64_t size);
  std::optional<Candidate> failure(std::string complaint);
  [[nodiscard]] bool swells() const;
  [[nodiscard]] std::string reason() const;

  std::string path_;
  std::unique_ptr<InputFile> file_;
  std::string piece_;
  bool begun_ = false;
  bool ended_ = false;
  int error_ = 0;  // of reading the file; libarchive does not pass it on
  std::uint64_t found_ = 0;
  la_int64_t made_ = 0;  // bytes of members: with their holes these can be more than the archive's
  std::unique_ptr<archive, Free> archive_;
};

/// The first piece is what had to be read to tell an archive.
la_ssize_t ArchiveWalk::Members::readPiece(archive* opened, void* members, const void** bytes) {
  auto& self = *static_cast<Members*>(members);
  *bytes = self.piece_.data();
  if (!std::exchange(self.begun_, true) && !self.piece_.empty()) {
    return static_cast<la_ssize_t>(self.piece_.size());
  }
  self.piece_.resize(pieceSize);
  *bytes = self.piece_.data();
  const ssize_t count = self.file_->readSome(self.piece_.data(), self.piece_.size());
  if (count < 0) self.error_ = errno;
  if (count >= 0 && !self.swells()) return count;
  archive_set_error(opened, EIO, "no more is read");
  return -1;
}

bool ArchiveWalk::Members::open() {
  archive_.reset(archive_read_new());
  if (!archive_) throw std::bad_alloc();
  archive* const opened = archive_.get();
  return archive_read_support_filter_gzip(opened) == ARCHIVE_OK &&
         archive_read_support_filter_zstd(opened) == ARCHIVE_OK &&
         archive_read_support_format_tar(opened) == ARCHIVE_OK &&
         archive_read_set_option(opened, "tar", "read_concatenated_archives", "1") == ARCHIVE_OK &&
         archive_read_open(opened, this, nullptr, readPiece, nullptr) == ARCHIVE_OK;
}

std::string ArchiveWalk::Members::reason() const {
  if (error_ != 0) return systemMessage(error_);
  if (swells()) return "it unpacks to more than 200 times its size";
  const char* const text = archive_error_string(archive_.get());
  return text == nullptr ? "not a tar archive" : text;
}

std::optional<Candidate> ArchiveWalk::Members::failure(std::string complaint) {
  ended_ = true;
  return Candidate{path_, std::move(complaint)};
}

/// Documents are at most a few times smaller when compressed. What grows without end is an attack.
bool ArchiveWalk::Members::swells() const {
  constexpr la_int64_t harmless = la_int64_t{1} << 30;
  constexpr la_int64_t mostTimes = 200;
  const la_int64_t unpacked = std::max(archive_filter_bytes(archive_.get(), 0), made_);
  const la_int64_t packed = archive_filter_bytes(archive_.get(), -1);
  return unpacked > harmless && unpacked / mostTimes > packed;
}

std::optional<Candidate> ArchiveWalk::Members::next(PassedOver& passed) {
  if (ended_) return std::nullopt;
  if (!archive_ && !open()) return failure("the archive cannot be read: " + reason());
  for (;;) {
    archive_entry* entry = nullptr;
    const int status = archive_read_next_header(archive_.get(), &entry);
    if (status == ARCHIVE_EOF) return ending();
    if (status != ARCHIVE_OK && status != ARCHIVE_WARN) {
      return failure("the archive is broken or cut off: " + reason());
    }
    if (archive_entry_filetype(entry) == AE_IFDIR) continue;
    std::string name = nameOf(entry);
    if (archive_entry_filetype(entry) != AE_IFREG || archive_entry_hardlink(entry) != nullptr) {
      ++passed.links;
    } else if (!hasDocumentName(name)) {
      ++passed.otherEnding;
    } else {
      return member(std::move(name), entry);
    }
  }
}

std::optional<Candidate> ArchiveWalk::Members::ending() {
  ended_ = true;
  if (found_ > 0) return std::nullopt;
  Candidate empty{path_, "no documents: there is no *.PLM and no *.ALM in this archive"};
  empty.nothing = true;
  return empty;
}

/// The member that the archive has come to.
Candidate ArchiveWalk::Members::member(std::string name, archive_entry* entry) {
  ++found_;
  Candidate found{path_, ""};
  found.member = std::move(name);
  found.bytes = readMember(static_cast<std::uint64_t>(archive_entry_size(entry)));
  if (error_ != 0) {
    // Nothing is wrong with the member. The next run may be able to read the archive.
    found.member.reset();
    found.complaint = "the archive cannot be read to its end: " + reason();
  } else if (ended_) {
    found.complaint = "the archive is broken or cut off here: " + reason();
  } else if (!found.bytes) {
    found.forGood = true;
    found.complaint = "larger than 64 MiB, too large for an archive's member; unpack it first";
  }
  return found;
}

/// Its bytes, with zeros for its holes; nothing if it is too large, or if the archive ends here.
/// A large one is read to its end without being kept.
std::optional<std::string> ArchiveWalk::Members::readMember(std::uint64_t size) {
  std::optional<std::string> bytes;
  if (size <= largestMember) bytes.emplace();
  for (;;) {
    const void* piece = nullptr;
    std::size_t length = 0;
    la_int64_t offset = 0;
    const int status = archive_read_data_block(archive_.get(), &piece, &length, &offset);
    if (status == ARCHIVE_EOF) break;
    ended_ = status != ARCHIVE_OK && status != ARCHIVE_WARN;
    if (ended_) return std::nullopt;
    const auto start = static_cast<std::uint64_t>(offset);
    if (start > largestMember || length > largestMember - start) bytes.reset();
    if (!bytes) continue;
    bytes->resize(start);
    bytes->append(static_cast<const char*>(piece), length);
  }
  if (!bytes) return bytes;
  if (bytes->size() < size) bytes->resize(size);
  made_ += static_cast<la_int64_t>(bytes->size());
  if (swells()) ended_ = true;
  return bytes;
}

// --- The walk ---

namespace {

bool hasArchiveName(std::string_view path) {
  constexpr std::array<std::string_view, 4> endings = {".tar", ".tar.gz", ".tgz", ".tar.zst"};
  return std::ranges::any_of(endings, [&](std::string_view end) { return path.ends_with(end); });
}

/// A regular file, a pipe or standard input; null if it is something else or cannot be opened,
/// which reading it will tell.
std::unique_ptr<InputFile> openInput(const Candidate& candidate, Stop stop) {
  if (candidate.named && candidate.path == "-") {
    return std::unique_ptr<InputFile>(new InputFile(InputFile::standardInput(stop)));
  }
  struct stat status {};
  if (stat(candidate.path.c_str(), &status) != 0) return nullptr;
  const bool pipe = S_ISFIFO(status.st_mode) && candidate.named;
  if (!pipe && !S_ISREG(status.st_mode)) return nullptr;
  auto file = std::make_unique<InputFile>(candidate.path, stop);
  return file->number() < 0 ? nullptr : std::move(file);
}

/// The first bytes of a file, as many as it takes to tell an archive.
std::string beginningOf(const InputFile& file) {
  std::string bytes(beginningSize, '\0');
  std::size_t length = 0;
  while (length < bytes.size()) {
    const ssize_t count = file.readSome(bytes.data() + length, bytes.size() - length);
    if (count <= 0) break;
    length += static_cast<std::size_t>(count);
  }
  bytes.resize(length);
  return bytes;
}

/// Reads what is left of a pipe that brings one document.
void readOn(const InputFile& file, std::string beginning, Candidate& candidate) {
  std::string rest(pieceSize, '\0');
  const auto [length, error] = file.readAll(0, largestDocument, rest);
  if (error != 0) {
    candidate.complaint = systemMessage(error);
    return;
  }
  candidate.bytes = std::move(beginning);
  candidate.bytes->append(rest, 0, length);
}

}  // namespace

ArchiveWalk::ArchiveWalk(std::vector<std::string> paths, bool archives, Skip skip, Stop stop)
    : walk_(std::move(paths), archives ? hasArchiveName : nullptr),
      archives_(archives),
      skip_(std::move(skip)),
      stop_(stop) {}

ArchiveWalk::~ArchiveWalk() = default;

PassedOver ArchiveWalk::passedOver() const {
  return passed_ + walk_.passedOver();
}

std::optional<Candidate> ArchiveWalk::next() {
  const CLocale locale;
  for (;;) {
    if (members_) {
      if (std::optional<Candidate> member = members_->next(passed_)) return member;
      members_.reset();
    }
    std::optional<Candidate> candidate = walk_.next();
    if (!candidate || !candidate->complaint.empty()) return candidate;
    if (skip_ && skip_(*candidate)) continue;
    const bool mayBeArchive =
        candidate->named ? !hasDocumentName(candidate->path) : hasArchiveName(candidate->path);
    if (!archives_ || !mayBeArchive) return candidate;
    if ((candidate = opened(*std::move(candidate)))) return candidate;
  }
}

/// The candidate itself; nothing if it is an archive, whose members come next.
std::optional<Candidate> ArchiveWalk::opened(Candidate candidate) {
  std::unique_ptr<InputFile> file = openInput(candidate, stop_);
  if (!file) return candidate;
  std::string beginning = beginningOf(*file);
  // One that is empty or cut off early does not begin like one.
  if (looksLikeArchive(beginning) || hasArchiveName(candidate.path)) {
    members_ = std::make_unique<Members>(candidate.path, std::move(file), std::move(beginning));
    return std::nullopt;
  }
  const bool again = candidate.path != "-" && lseek(file->number(), 0, SEEK_CUR) >= 0;
  if (!again) readOn(*file, std::move(beginning), candidate);
  return candidate;
}

}  // namespace wenlolib
