// Any bytes, as a property list that somebody has put where the library reads one.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "Require.h"
#include "plist/PropertyList.h"

namespace {

namespace plist = wenlolib::plist;
using wenlolib::Dictionary;
using wenlolib::Text;
using wenlolib::fuzz::require;

bool holds(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

/// What was read and written again reads as the same dictionary. But a NaN does not equal itself,
/// and a date of the binary form loses its fraction; then the documents must be the same.
void checkWritten(const Dictionary& dictionary) {
  const Text written = plist::write(dictionary);
  if (!written) return;
  const auto again = plist::read(*written).dictionary;
  require(again.has_value(), "what was written can be read");
  require(plist::write(*again) == written, "and is written as before");
  const bool unequal = holds(*written, "<real>nan<") || holds(*written, "<date>");
  require(unequal || *again == dictionary, "and is the same dictionary");
}

/// Compares what the parser makes of a document with what is made of it without one, if it is
/// plain.
void checkAgainstParser(std::string_view bytes) {
  const auto plain = plist::readXml(bytes);
  const auto parsed = plist::readXml(bytes, false);
  require(parsed.state == plain.state, "both say the same of the file");
  require(parsed.dictionary.has_value() == plain.dictionary.has_value(),
          "both have the same outcome");
  if (!parsed.dictionary) return;
  require(*parsed.dictionary == *plain.dictionary ||
              plist::write(*parsed.dictionary) == plist::write(*plain.dictionary),
          "both read the same dictionary");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  if (const auto reading = plist::read(bytes); reading.dictionary) {
    checkWritten(*reading.dictionary);
  }
  checkAgainstParser(bytes);
  // The plain reader takes only documents that begin exactly so: few mutations would get that far.
  checkAgainstParser(std::string(plist::prologue) + std::string(bytes));
  return 0;
}
