#include "platform/linux/ExpatXml.h"

#include <algorithm>
#include <new>
#include <string>
#include <utility>

#include "platform/linux/ExpatParser.h"
#include "platform/linux/MarkupRepair.h"
#include "platform/linux/PlainXml.h"
#include "platform/posix/CancellationHold.h"

// Why the parser need not see every digit
//
// The payload may be tens of millions of hexadecimal digits, and a strict parser takes longer over
// them than the digest does. The run stands right behind the ">" of a start tag that the document
// builder wrote. Whatever the values before it have done to the parser's state, it is then in one
// of few places: in an element's content, or (a value has opened one and not closed it) in a
// comment, a CDATA section or a processing instruction, or it has refused already. In each of these
// a hexadecimal digit is a character that neither ends the place nor begins anything, and after the
// first one the parser is where it is after the second: no delimiter of these places ("<", "&",
// "]]>", "--", "?>") has a digit in it, so what can follow depends on there having been a digit,
// not on how many. One digit shown would do. A few more are, and a run that short is shown whole.

namespace wenlolib::platform::gnulinux {
namespace {

constexpr std::size_t digitsShown = 64;

DigitRun shown(DigitRun digits) {
  return {digits.offset, std::min(digits.length, digitsShown)};
}

/// The document with what can be mended outside its digits mended; `digits` moves along.
std::string repaired(std::string_view document, DigitRun& digits) {
  const std::size_t end = digits.offset + digits.length;
  MarkupRepair repair;
  repair.add(document.substr(0, digits.offset));
  const std::size_t offset = repair.text.size();
  repair.text.append(document.substr(digits.offset, digits.length));
  repair.add(document.substr(end));
  digits.offset = offset;
  return std::move(repair.text);
}

/// Takes every event: the form is all that is asked about.
class AnyContent : public XmlEvents {
 public:
  bool start(std::string_view) override { return true; }
  bool end(std::string_view) override { return true; }
  bool characters(std::string_view) override { return true; }
};

/// Whether the document, of which `head` and `tail` are to be shown, is well-formed in the way that
/// nearly every record is.
bool isPlain(std::string_view head, std::string_view tail) {
  if (head.size() > plainXmlBytes || tail.size() > plainXmlBytes) return false;
  std::string shortened(head);
  shortened += tail;
  AnyContent events;
  return readPlainXml(shortened, events);
}

}  // namespace

bool isWellFormed(std::string_view document, DigitRun digits) {
  const DigitRun beginning = shown(digits);
  const std::string_view head = document.substr(0, beginning.offset + beginning.length);
  const std::string_view tail = document.substr(digits.offset + digits.length);
  if (isPlain(head, tail)) return true;
  ExpatParser parser("UTF-8");
  if (!parser.valid()) throw std::bad_alloc();
  return parser.feed(head, false) && parser.feed(tail, true);
}

Text ExpatXml::serialised(std::string document, DigitRun digits) {
  // Expat asks the system for randomness.
  const posix::CancellationHold hold;
  // A document that stands serialises to itself: it has no declaration, no white space of its own,
  // and its empty elements are written open.
  if (isWellFormed(document, digits)) return document;
  std::string mended = repaired(document, digits);
  if (mended == document || !isWellFormed(mended, digits)) return std::nullopt;
  return mended;
}

}  // namespace wenlolib::platform::gnulinux
