/// A system, its clock and its calendar, set by a test.
#ifndef WENLOLIB_TESTS_SUPPORT_MEMORYSYSTEM_H
#define WENLOLIB_TESTS_SUPPORT_MEMORYSYSTEM_H

#include <cstdint>
#include <map>
#include <optional>
#include <string_view>

#include "platform/System.h"
#include "platform/Time.h"
#include "support/Recorder.h"

namespace wenlolib::tests {

class MemorySystem : public platform::System {
 public:
  explicit MemorySystem(Recorder recorder) : recorder_(recorder) {}

  /// A selector that is not in here fails.
  std::map<platform::Selector, std::int32_t> answers;

  /// Sets the three parts of the OS version.
  void setVersion(std::int32_t major, std::int32_t minor, std::int32_t bugFix);

  std::optional<std::int32_t> gestalt(platform::Selector selector) override;

 private:
  Recorder recorder_;
};

class MemoryClock : public platform::Clock {
 public:
  explicit MemoryClock(Recorder recorder) : recorder_(recorder) {}

  Instant time{};

  Instant now() override;

 private:
  Recorder recorder_;
};

/// The Gregorian calendar at a fixed offset from GMT, for the years that std::chrono holds.
class MemoryCalendar : public platform::Calendar {
 public:
  explicit MemoryCalendar(Recorder recorder) : recorder_(recorder) {}

  std::int32_t secondsFromGMT = 0;

  std::optional<platform::LocalTime> localTime(Instant date) override;
  Text formatted(Instant date, std::string_view format) override;

 private:
  Recorder recorder_;
};

/// A date in GMT.
[[nodiscard]] Instant dateOf(int year, unsigned month, unsigned day, int hour = 0, int minute = 0,
                             double second = 0);

}  // namespace wenlolib::tests

#endif
