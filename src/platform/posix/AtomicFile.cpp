#include "platform/posix/AtomicFile.h"

#include <sys/resource.h>

#include <algorithm>
#include <cerrno>
#include <optional>

#include "platform/posix/Random.h"

namespace wenlolib::platform::posix {
namespace {

/// Repeats a call for as long as a signal interrupts it.
template <class Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

class Descriptor {
 public:
  Descriptor(SystemCalls& calls, int number) : calls_(calls), number_(number) {}
  ~Descriptor() { static_cast<void>(close()); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  [[nodiscard]] bool valid() const { return number_ >= 0; }
  [[nodiscard]] int number() const { return number_; }

  /// False when the system reports that what was written may be lost. An interrupted close has
  /// closed all the same, and must not be repeated: the number may be somebody else's by then.
  [[nodiscard]] bool close() {
    if (!valid()) return true;
    const int result = calls_.close(number_);
    number_ = -1;
    return result == 0 || errno == EINTR;
  }

 private:
  SystemCalls& calls_;
  int number_;
};

/// An unfinished file; gone again when the scope ends, unless it has taken its name by then.
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
    name.append({"0123456789abcdef"[byte >> 4], "0123456789abcdef"[byte & 15]});
  }
  return name + ".tmp";
}

/// Writing past the process's limit would not only fail but raise a signal that ends the host.
bool withinFileSizeLimit(std::size_t length) {
  rlimit limit{};
  return getrlimit(RLIMIT_FSIZE, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY ||
         length <= limit.rlim_cur;
}

bool writeWhole(SystemCalls& calls, int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written =
        uninterrupted([&] { return calls.write(file, bytes.data(), bytes.size()); });
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool fill(SystemCalls& calls, int number, std::string_view bytes, mode_t mode) {
  Descriptor file(calls, number);
  if (!writeWhole(calls, file.number(), bytes)) return false;
  // Some file systems know no permissions; a record is worth more than its mode.
  static_cast<void>(uninterrupted([&] { return calls.changeMode(file.number(), mode); }));
  if (uninterrupted([&] { return calls.flush(file.number()); }) != 0) return false;
  return file.close();
}

bool replaced(Unfinished& file, const std::string& name) {
  if (file.calls.rename(file.folder, file.name.c_str(), name.c_str()) != 0) return false;
  file.present = false;
  return true;
}

Outcome publishAsNew(Unfinished& file, const std::string& name) {
  SystemCalls& calls = file.calls;
  if (calls.renameWithoutReplacing(file.folder, file.name.c_str(), name.c_str()) == 0) {
    file.present = false;
    return Outcome::written;
  }
  // Old kernels and some file systems cannot do that; a second link has the same effect.
  if (errno != EEXIST && calls.link(file.folder, file.name.c_str(), name.c_str()) == 0) {
    return Outcome::written;
  }
  // A link that leads nowhere counts as free, and so is replaced.
  if (errno == EEXIST && !calls.isDanglingLink(file.folder, name.c_str())) return Outcome::taken;
  // A dangling link, or a file system without links: no better way is left.
  return replaced(file, name) ? Outcome::written : Outcome::failed;
}

}  // namespace

Outcome writeAtomically(SystemCalls& calls, const std::string& path, std::string_view bytes,
                        mode_t mode, Publication publication) {
  const std::size_t slash = path.rfind('/');
  const std::string folderPath =
      slash == std::string::npos ? "." : path.substr(0, std::max<std::size_t>(slash, 1));
  const std::string name = path.substr(slash + 1);
  const auto unfinishedName = unguessableName();
  if (name.empty() || !unfinishedName || !withinFileSizeLimit(bytes.size())) {
    return Outcome::failed;
  }
  const Descriptor folder(calls,
                          uninterrupted([&] { return calls.openFolder(folderPath.c_str()); }));
  if (!folder.valid()) return Outcome::failed;
  Unfinished file{calls, folder.number(), *unfinishedName};
  const int number =
      uninterrupted([&] { return calls.create(folder.number(), file.name.c_str()); });
  if (number < 0) return Outcome::failed;
  file.present = true;
  if (!fill(calls, number, bytes, mode)) return Outcome::failed;
  if (publication == Publication::asNew) return publishAsNew(file, name);
  return replaced(file, name) ? Outcome::written : Outcome::failed;
}

}  // namespace wenlolib::platform::posix
