#include "support/MemoryFiles.h"

#include <cerrno>
#include <utility>

namespace wenlolib::tests {
namespace {

using platform::Kind;
using platform::Outcome;
using platform::Publication;

std::string octal(std::uint32_t mode) {
  std::string digits;
  for (; mode != 0; mode /= 8) digits.insert(digits.begin(), static_cast<char>('0' + mode % 8));
  return "0" + digits;
}

}  // namespace

std::string parentOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return "";
  return slash == 0 ? "/" : path.substr(0, slash);
}

MemoryFiles::MemoryFiles(Recorder recorder) : recorder_(recorder) {
  entries_["/"] = {Type::folder, 0755, ""};
}

const MemoryFiles::Entry* MemoryFiles::find(const std::string& path) const {
  const auto found = entries_.find(path);
  return found == entries_.end() ? nullptr : &found->second;
}

bool MemoryFiles::isFolder(const std::string& path) const {
  const Entry* entry = find(path);
  return entry != nullptr && entry->type == Type::folder;
}

void MemoryFiles::addFolder(const std::string& path, std::uint32_t mode) {
  if (path.empty() || at(path)) return;
  addFolder(parentOf(path), mode);
  const std::lock_guard lock(mutex_);
  entries_[path] = {Type::folder, mode, ""};
}

void MemoryFiles::addFile(const std::string& path, std::string bytes, std::uint32_t mode) {
  addFolder(parentOf(path));
  const std::lock_guard lock(mutex_);
  entries_[path] = {Type::file, mode, std::move(bytes)};
}

void MemoryFiles::addDanglingLink(const std::string& path) {
  addFolder(parentOf(path));
  const std::lock_guard lock(mutex_);
  entries_[path] = {Type::danglingLink, 0777, ""};
}

void MemoryFiles::remove(const std::string& path) {
  const std::lock_guard lock(mutex_);
  entries_.erase(path);
}

std::optional<MemoryFiles::Entry> MemoryFiles::at(const std::string& path) const {
  const std::lock_guard lock(mutex_);
  const Entry* entry = find(path);
  if (entry == nullptr) return std::nullopt;
  return *entry;
}

MemoryFiles::Entries MemoryFiles::all() const {
  const std::lock_guard lock(mutex_);
  return entries_;
}

std::string MemoryFiles::bytesAt(const std::string& path) const {
  const auto entry = at(path);
  return entry ? entry->bytes : "";
}

Kind MemoryFiles::kindAt(const std::string& path) {
  if (recorder_.fails("files.kindAt", path)) return Kind::nothing;
  const std::lock_guard lock(mutex_);
  const Entry* entry = find(path);
  if (entry == nullptr || entry->type == Type::danglingLink) return Kind::nothing;
  return entry->type == Type::folder ? Kind::folder : Kind::other;
}

bool MemoryFiles::isExecutable(const std::string& path) {
  if (recorder_.fails("files.isExecutable", path)) return false;
  const std::lock_guard lock(mutex_);
  const Entry* entry = find(path);
  return entry != nullptr && entry->type == Type::file && (entry->mode & 0111U) != 0;
}

Outcome MemoryFiles::writeAtomically(const std::string& path, std::string_view bytes,
                                     std::uint32_t mode, Publication publication) {
  const bool asNew = publication == Publication::asNew;
  if (recorder_.fails("files.writeAtomically", path + (asNew ? " asNew" : " replacing"))) {
    return {Outcome::failed, {platform::Step::writeFile, ENOSPC}};
  }
  const std::lock_guard lock(mutex_);
  if (!isFolder(parentOf(path)) || path.find('\0') != std::string::npos) return Outcome::failed;
  const Entry* earlier = find(path);
  if (asNew && earlier != nullptr && earlier->type != Type::danglingLink) return Outcome::taken;
  if (earlier != nullptr && earlier->type == Type::folder) return Outcome::failed;
  Entry finished{Type::file, mode, std::string(bytes)};
  entries_.insert_or_assign(path, std::move(finished));
  return Outcome::written;
}

bool MemoryFiles::setPermissions(const std::string& path, std::uint32_t mode) {
  if (recorder_.fails("files.setPermissions", path + " " + octal(mode))) return false;
  const std::lock_guard lock(mutex_);
  const auto found = entries_.find(path);
  if (found == entries_.end() || found->second.type == Type::danglingLink) return false;
  found->second.mode = mode;
  return true;
}

platform::Reason MemoryFiles::createFolder(const std::string& path, std::uint32_t mode) {
  constexpr auto step = platform::Step::makeFolder;
  if (recorder_.fails("files.createFolder", path + " " + octal(mode))) return {step, ENOSPC};
  if (path.empty() || path.find('\0') != std::string::npos) return {step, EINVAL};
  // The nearest existing level must be a folder.
  std::string existing = path;
  while (!existing.empty() && !at(existing)) existing = parentOf(existing);
  const auto base = at(existing);
  if (!base || base->type != Type::folder) return {step, ENOTDIR};
  addFolder(path, mode);
  return {};
}

}  // namespace wenlolib::tests
