#include "OptionWord.h"

#include <charconv>
#include <optional>

namespace wenlolib::tools {
namespace {

std::optional<std::uint32_t> parsed(const std::string& text) {
  std::uint32_t number = 0;
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number);
  if (result.ec != std::errc() || result.ptr != end) return std::nullopt;
  return number;
}

std::string complaint(const std::string& text) {
  return parsed(text) ? "" : text + " is no option word: a number from 0 to 4294967295";
}

}  // namespace

void addOptionWord(CLI::App& call, std::string& text) {
  call.add_option("--option", text, "The option word; its low four bits are the mode")
      ->type_name("N")
      ->capture_default_str()
      ->check(CLI::Validator(complaint, ""));
}

std::uint32_t optionWord(const std::string& text) {
  return parsed(text).value_or(0);
}

}  // namespace wenlolib::tools
