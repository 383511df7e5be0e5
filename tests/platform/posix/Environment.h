/// Sets variables of the process's environment for a test.
#ifndef WENLOLIB_TESTS_PLATFORM_POSIX_ENVIRONMENT_H
#define WENLOLIB_TESTS_PLATFORM_POSIX_ENVIRONMENT_H

#include <time.h>

#include <cstdlib>
#include <optional>
#include <string>

namespace wenlolib::tests {

/// Sets a variable for a scope, or removes it if the value is null.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    if (const char* previous = std::getenv(name)) previous_ = previous;
    put(value);
  }
  ~Variable() { put(previous_ ? previous_->c_str() : nullptr); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  void put(const char* value) const {
    static_cast<void>(value == nullptr ? ::unsetenv(name_) : ::setenv(name_, value, 1));
  }

  const char* name_;
  std::optional<std::string> previous_;
};

/// Sets the process's time zone for a scope, from a POSIX zone text such as
/// "CET-1CEST,M3.5.0,M10.5.0/3". Its offsets count to the west.
class Zone {
 public:
  explicit Zone(const char* zone) : variable_("TZ", zone) { ::tzset(); }

 private:
  struct Reset {
    ~Reset() { ::tzset(); }
  };

  Reset afterwards_;  // once the variable is what it was
  Variable variable_;
};

}  // namespace wenlolib::tests

#endif
