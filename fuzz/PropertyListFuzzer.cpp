// Any bytes at all, as a property list that somebody has left in the library's way.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "Require.h"
#include "platform/linux/PlainXml.h"
#include "platform/linux/PropertyListPrologue.h"
#include "platform/linux/PropertyListReader.h"
#include "platform/linux/PropertyListWriter.h"
#include "platform/linux/XmlPropertyListDocument.h"

namespace {

using namespace wenlolib::platform::gnulinux;
using wenlolib::Dictionary;
using wenlolib::Text;
using wenlolib::fuzz::require;

bool holds(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

/// What was read is written so that it is read as the same again. No number that is none equals
/// itself, and a date of the binary form loses its fraction; the document has to be the same then.
void checkWritten(const Dictionary& dictionary) {
  const Text written = propertyListXml(dictionary);
  if (!written) return;
  const auto again = parsePropertyList(*written);
  require(again.has_value(), "what was written is read");
  require(propertyListXml(*again) == written, "and written as it was");
  const bool unequal = holds(*written, "<real>nan<") || holds(*written, "<date>");
  require(unequal || *again == dictionary, "and is what it was");
}

/// What the plain reader makes of a document, where it takes it.
std::optional<Dictionary> plainReading(std::string_view bytes) {
  if (!bytes.starts_with(propertyListPrologue)) return std::nullopt;
  XmlPropertyListDocument document(bytes.size());
  if (!readPlainXml(bytes.substr(propertyListPrologue.size()), document)) return std::nullopt;
  return std::move(document).finish();
}

/// The comment keeps the plain reader away.
void checkAgainstParser(std::string_view bytes) {
  const auto plain = plainReading(bytes);
  if (!plain) return;
  const auto parsed = parsePropertyList(std::string(bytes) + "<!-- -->");
  require(parsed.has_value(), "what is read as plain is read by the parser");
  require(*parsed == *plain || propertyListXml(*parsed) == propertyListXml(*plain), "as the same");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  if (const auto dictionary = parsePropertyList(bytes)) checkWritten(*dictionary);
  checkAgainstParser(bytes);
  // The plain reader takes only what begins to the letter: few changes would get that far.
  checkAgainstParser(std::string(propertyListPrologue) + std::string(bytes));
  return 0;
}
