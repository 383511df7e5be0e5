#include "platform/posix/AtomicFile.h"

#include <sys/resource.h>

#include <algorithm>
#include <cerrno>
#include <optional>

#include "base/Integer.h"
#include "platform/posix/Errors.h"
#include "platform/posix/Random.h"

// How a file takes a name that must not be taken from anybody
//
// By a rename that does not replace. If the kernel or the file system has none, by a second link.
// If there are no links either, under a claim: a hidden file whose name is made from the wanted
// one. Only one writer at a time can create it, and the writer that has it checks once more that
// the wanted name is free. A claim left by a process that was killed counts for a minute.

namespace wenlolib::platform::posix {
namespace {

constexpr std::size_t longestName = 255;
constexpr time_t claimSeconds = 60;

/// An unfinished file. It is removed when the scope ends, unless it was renamed by then.
struct Unfinished {
  SystemCalls& calls;
  int folder;
  std::string name;
  bool present = false;
  ~Unfinished() {
    if (present) static_cast<void>(calls.remove(folder, name.c_str()));
  }
};

std::optional<std::string> unguessableName() {
  const auto bytes = randomBytes();
  if (!bytes) return std::nullopt;
  std::string name(unfinishedPrefix);
  for (const std::uint8_t byte : *bytes) {
    name.append({hexadecimalDigits[byte >> 4], hexadecimalDigits[byte & 15]});
  }
  return name.append(unfinishedSuffix);
}

/// The same for every writer that wants `name`. If `name` is too long to add to, only its end is
/// used, where a number stands.
std::string claimName(std::string_view name) {
  constexpr std::size_t room = longestName - unfinishedPrefix.size() - unfinishedSuffix.size();
  name.remove_prefix(name.size() - std::min(name.size(), room));
  return std::string(unfinishedPrefix).append(name).append(unfinishedSuffix);
}

/// Writing past the process's limit would not only fail but raise a signal that ends the host.
bool withinFileSizeLimit(std::size_t length) {
  rlimit limit{};
  // A sandbox that does not tell the limit counts as having none.
  if (getrlimit(RLIMIT_FSIZE, &limit) != 0) return isAnswer(errno);
  return limit.rlim_cur == RLIM_INFINITY || length <= limit.rlim_cur;
}

Outcome failedAt(Step step, int error = errno) {
  return {Outcome::failed, {step, error}};
}

bool writeWhole(SystemCalls& calls, int file, std::string_view bytes) {
  errno = 0;
  while (!bytes.empty()) {
    const ssize_t written =
        uninterrupted([&] { return calls.write(file, bytes.data(), bytes.size()); });
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

Outcome fill(SystemCalls& calls, int number, std::string_view bytes, mode_t mode) {
  Descriptor file(calls, number);
  if (!writeWhole(calls, file.number(), bytes)) return failedAt(Step::writeFile);
  // Some file systems have no permissions; a record is worth more than its mode.
  static_cast<void>(uninterrupted([&] { return calls.changeMode(file.number(), mode); }));
  if (uninterrupted([&] { return calls.flush(file.number()); }) != 0) {
    return failedAt(Step::flushFile);
  }
  if (!file.close()) return failedAt(Step::writeFile);
  return Outcome::written;
}

Outcome rename(Unfinished& file, const std::string& name) {
  const int result = uninterrupted(
      [&] { return file.calls.rename(file.folder, file.name.c_str(), name.c_str()); });
  if (result != 0) return failedAt(Step::nameFile);
  file.present = false;
  return Outcome::written;
}

/// Whether nothing stands at a name. A link that leads nowhere counts as nothing.
bool isFree(SystemCalls& calls, int folder, const std::string& name) {
  struct stat status {};
  const int result =
      uninterrupted([&] { return calls.status(folder, name.c_str(), Links::followed, status); });
  if (result != 0) throwUnlessAnswer(Step::nameFile, errno);
  return result != 0;
}

/// The status of what is at a name itself; nothing if nothing is there.
std::optional<struct stat> statusOf(SystemCalls& calls, int folder, const std::string& name) {
  struct stat status {};
  const int result =
      uninterrupted([&] { return calls.status(folder, name.c_str(), Links::notFollowed, status); });
  return result == 0 ? std::optional(status) : std::nullopt;
}

/// Whether the unfinished file has its second name although the call failed: over a network, a
/// request may be repeated because its first answer was lost.
bool isLinked(const Unfinished& file) {
  const auto status = statusOf(file.calls, file.folder, file.name);
  return status && status->st_nlink == 2;
}

/// The right to take a name, for as long as the object lives. The claim does not get in any
/// reader's way.
class Claim {
 public:
  Claim(const Unfinished& file, const std::string& name)
      : file_(file), name_(claimName(name)), state_(made()) {
    if (state_ == Outcome::taken && brokenStale()) state_ = made();
  }
  ~Claim() {
    if (state_ == Outcome::written) {
      static_cast<void>(file_.calls.remove(file_.folder, name_.c_str()));
    }
  }
  Claim(const Claim&) = delete;
  Claim& operator=(const Claim&) = delete;

  /// `taken` while another writer has it; `failed` if none can be made.
  [[nodiscard]] const Outcome& state() const { return state_; }

 private:
  Outcome made() {
    const int number =
        uninterrupted([&] { return file_.calls.create(file_.folder, name_.c_str()); });
    if (number < 0 && errno == EEXIST) return Outcome::taken;
    if (number < 0) return failedAt(Step::nameFile);
    const Descriptor claim(file_.calls, number);
    return Outcome::written;
  }

  /// Judged by the clock of the file system, which dated the unfinished file a moment ago.
  bool isStale(const struct stat& claim) const {
    const auto now = statusOf(file_.calls, file_.folder, file_.name);
    return now && claim.st_mtime + claimSeconds < now->st_mtime;
  }

  /// Removes a claim that nobody holds any more. Only a writer that has locked that very file may
  /// do so. Otherwise, if two writers saw it, one would remove it, and the other would then remove
  /// the first one's fresh claim.
  bool brokenStale() {
    const auto seen = statusOf(file_.calls, file_.folder, name_);
    if (!seen || !isStale(*seen)) return false;
    const Descriptor claim(
        file_.calls, uninterrupted([&] { return file_.calls.open(file_.folder, name_.c_str()); }));
    if (!claim.valid() || file_.calls.lock(claim.number()) != 0) return false;
    const auto still = statusOf(file_.calls, file_.folder, name_);
    if (!still || still->st_ino != seen->st_ino || !isStale(*still)) return false;
    return file_.calls.remove(file_.folder, name_.c_str()) == 0;
  }

  const Unfinished& file_;
  std::string name_;
  Outcome state_;
};

Outcome publishUnderClaim(Unfinished& file, const std::string& name) {
  const Claim claim(file, name);
  if (claim.state() != Outcome::written) return claim.state();
  if (!isFree(file.calls, file.folder, name)) return Outcome::taken;
  return rename(file, name);
}

Outcome publishAsNew(Unfinished& file, const std::string& name) {
  SystemCalls& calls = file.calls;
  const auto taking = [&](auto call) {
    return uninterrupted(
        [&] { return (calls.*call)(file.folder, file.name.c_str(), name.c_str()); });
  };
  if (taking(&SystemCalls::renameWithoutReplacing) == 0) {
    file.present = false;
    return Outcome::written;
  }
  bool exists = errno == EEXIST;
  if (!exists) {
    if (taking(&SystemCalls::link) == 0) return Outcome::written;
    exists = errno == EEXIST;
    if (exists && isLinked(file)) return Outcome::written;
  }
  if (exists && !isFree(calls, file.folder, name)) return Outcome::taken;
  return publishUnderClaim(file, name);
}

}  // namespace

Outcome writeAtomically(SystemCalls& calls, const std::string& path, std::string_view bytes,
                        mode_t mode, Publication publication) {
  const std::size_t slash = path.rfind('/');
  const std::string folderPath =
      slash == std::string::npos ? "." : path.substr(0, std::max<std::size_t>(slash, 1));
  const std::string name = path.substr(slash + 1);
  if (name.empty()) return failedAt(Step::nameFile, EISDIR);
  if (!withinFileSizeLimit(bytes.size())) return failedAt(Step::writeFile, EFBIG);
  const auto unfinishedName = unguessableName();
  if (!unfinishedName) return failedAt(Step::takeRandomness);
  const Descriptor folder(calls,
                          uninterrupted([&] { return calls.openFolder(folderPath.c_str()); }));
  if (!folder.valid()) return failedAt(Step::findFolder);
  Unfinished file{calls, folder.number(), *unfinishedName};
  const int number =
      uninterrupted([&] { return calls.create(folder.number(), file.name.c_str()); });
  if (number < 0) return failedAt(Step::makeFile);
  file.present = true;
  Outcome filled = fill(calls, number, bytes, mode);
  if (filled != Outcome::written) return filled;
  return publication == Publication::asNew ? publishAsNew(file, name) : rename(file, name);
}

}  // namespace wenlolib::platform::posix
