#include "ValueText.h"

#include <charconv>
#include <cmath>
#include <ctime>
#include <type_traits>

#include "Format.h"
#include "VisibleText.h"
#include "base/Integer.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tools {
namespace {

constexpr std::size_t longest = 60;

/// In quotes and on one line, long ones cut.
std::string quoted(const std::string& text) {
  std::string shown = visibleInLine(text.substr(0, longest));
  return "\"" + shown + (text.size() > longest ? "\"..." : "\"");
}

template <class Number>
std::string numberText(Number number) {
  char digits[32];
  const auto result = std::to_chars(digits, digits + sizeof digits, number);
  return {digits, result.ptr};
}

struct Describe {
  std::string operator()(bool value) const { return value ? "boolean true" : "boolean false"; }
  std::string operator()(std::int64_t value) const { return "integer " + numberText(value); }
  std::string operator()(std::uint64_t value) const { return "integer " + numberText(value); }
  std::string operator()(double value) const { return "real " + numberText(value); }
  std::string operator()(Instant value) const { return "date " + instantText(value); }
  std::string operator()(const std::string& value) const { return "text " + quoted(value); }
  std::string operator()(const Value::Data& value) const {
    return "data, " + counted(value.size(), "byte");
  }
  std::string operator()(const Value::Array& value) const {
    return "array, " + counted(value.size(), "value");
  }
  std::string operator()(const Dictionary& value) const {
    return "dictionary, " + counted(value.size(), "key");
  }
};

}  // namespace

std::string valueText(const Value& value) {
  return value.visit(Describe());
}

std::string valueText(const Value* value) {
  return value == nullptr ? "nothing" : valueText(*value);
}

std::string instantText(Instant instant) {
  constexpr double limit = sizeof(std::time_t) > 4 ? 1e18 : 2e9;
  const double seconds = std::floor(instant.time_since_epoch().count());
  if (!(std::abs(seconds) < limit)) return "(no date)";
  return localTime(static_cast<std::time_t>(seconds));
}

std::string versionText(std::int32_t number) {
  if (number == -1) return "unknown";
  const Text text = CommonTooWenlolib::convertVersionNumToStr(number);
  return text ? *text + " (" + decimal(number) + ")" : decimal(number);
}

std::string versionText(const Text& text, std::int32_t number) {
  if (!text) return "nothing";
  return quoted(*text) + (number == -1 ? ", which is no version" : " (" + decimal(number) + ")");
}

}  // namespace wenlolib::tools
