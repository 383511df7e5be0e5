/// The system calls that write a file, watched and made to fail.
#ifndef WENLOLIB_TESTS_PLATFORM_POSIX_WATCHEDCALLS_H
#define WENLOLIB_TESTS_PLATFORM_POSIX_WATCHEDCALLS_H

#include <algorithm>
#include <cerrno>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/posix/SystemCalls.h"

namespace wenlolib::tests {

/// Notes every call by name. A call that must fail does nothing first. Only close still closes when
/// it fails, as the system's does.
class WatchedCalls : public platform::posix::SystemCalls {
 public:
  std::vector<std::string> journal;
  std::map<std::string, int> failing;        // by name: the error that every such call ends with
  std::map<std::string, int> interruptions;  // by name: how many more calls a signal interrupts
  std::size_t longestWrite = ~std::size_t{0};
  std::function<void()> beforePublishing;  // what another process does at that moment

  [[nodiscard]] long count(const std::string& name) const {
    return std::ranges::count(journal, name);
  }

  int openFolder(const char* path) override {
    return strikes("openFolder") ? -1 : SystemCalls::openFolder(path);
  }
  int create(int folder, const char* name) override {
    return strikes("create") ? -1 : SystemCalls::create(folder, name);
  }
  ssize_t write(int file, const void* bytes, std::size_t length) override {
    return strikes("write") ? -1 : SystemCalls::write(file, bytes, std::min(length, longestWrite));
  }
  int changeMode(int file, mode_t mode) override {
    return strikes("changeMode") ? -1 : SystemCalls::changeMode(file, mode);
  }
  int flush(int file) override { return strikes("flush") ? -1 : SystemCalls::flush(file); }
  int close(int file) override {
    const bool struck = strikes("close");
    const int error = errno;
    const int result = SystemCalls::close(file);
    errno = error;
    return struck ? -1 : result;
  }
  int rename(int folder, const char* from, const char* to) override {
    if (beforePublishing) beforePublishing();
    return strikes("rename") ? -1 : SystemCalls::rename(folder, from, to);
  }
  int renameWithoutReplacing(int folder, const char* from, const char* to) override {
    if (beforePublishing) beforePublishing();
    if (strikes("renameWithoutReplacing")) return -1;
    return SystemCalls::renameWithoutReplacing(folder, from, to);
  }
  int link(int folder, const char* from, const char* to) override {
    return strikes("link") ? -1 : SystemCalls::link(folder, from, to);
  }
  int remove(int folder, const char* name) override {
    return strikes("remove") ? -1 : SystemCalls::remove(folder, name);
  }
  int open(int folder, const char* name) override {
    return strikes("open") ? -1 : SystemCalls::open(folder, name);
  }
  int lock(int file) override { return strikes("lock") ? -1 : SystemCalls::lock(file); }
  int status(int folder, const char* name, platform::posix::Links links,
             struct stat& status) override {
    return strikes("status") ? -1 : SystemCalls::status(folder, name, links, status);
  }

 private:
  bool strikes(const std::string& name) {
    journal.push_back(name);
    if (interruptions[name] > 0) {
      --interruptions[name];
      errno = EINTR;
      return true;
    }
    const auto failure = failing.find(name);
    if (failure == failing.end()) return false;
    errno = failure->second;
    return true;
  }
};

}  // namespace wenlolib::tests

#endif
