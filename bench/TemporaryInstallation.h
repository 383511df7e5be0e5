/// A place to record to, removed afterwards.
#ifndef WENLOLIB_BENCH_TEMPORARYINSTALLATION_H
#define WENLOLIB_BENCH_TEMPORARYINSTALLATION_H

#include <string>

namespace wenlolib::bench {

/// The home of a user who has agreed to the survey: a new folder in `parent`, with the library's
/// folders and the preference file. While this object lives, HOME leads there and the library
/// records there.
class TemporaryInstallation {
 public:
  explicit TemporaryInstallation(const std::string& parent);
  ~TemporaryInstallation();
  TemporaryInstallation(const TemporaryInstallation&) = delete;
  TemporaryInstallation& operator=(const TemporaryInstallation&) = delete;

 private:
  std::string home_;
};

}  // namespace wenlolib::bench

#endif
