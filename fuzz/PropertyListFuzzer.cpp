// Any bytes at all, as a property list that somebody has left in the library's way.
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

/// What was read is written so that it is read as the same again. No number that is none equals
/// itself, and a date of the binary form loses its fraction; the document has to be the same then.
void checkWritten(const Dictionary& dictionary) {
  const Text written = plist::write(dictionary);
  if (!written) return;
  const auto again = plist::read(*written).dictionary;
  require(again.has_value(), "what was written is read");
  require(plist::write(*again) == written, "and written as it was");
  const bool unequal = holds(*written, "<real>nan<") || holds(*written, "<date>");
  require(unequal || *again == dictionary, "and is what it was");
}

/// What the parser makes of a document, and what is made of it without one where it is plain.
void checkAgainstParser(std::string_view bytes) {
  const auto plain = plist::readXml(bytes);
  const auto parsed = plist::readXml(bytes, false);
  require(parsed.state == plain.state, "both say what the file is");
  require(parsed.dictionary.has_value() == plain.dictionary.has_value(), "with the same outcome");
  if (!parsed.dictionary) return;
  require(*parsed.dictionary == *plain.dictionary ||
              plist::write(*parsed.dictionary) == plist::write(*plain.dictionary),
          "and as the same");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  if (const auto reading = plist::read(bytes); reading.dictionary) {
    checkWritten(*reading.dictionary);
  }
  checkAgainstParser(bytes);
  // The plain reader takes only what begins to the letter: few changes would get that far.
  checkAgainstParser(std::string(plist::prologue) + std::string(bytes));
  return 0;
}
