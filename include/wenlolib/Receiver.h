/// Reading survey documents: for receiving services and tools. Programs link the archive
/// libWENLOLIB_receiver or the shared library libwenlolib-receiver, which also has the C functions
/// of <wenlolib/receiver_c.h>.
#ifndef WENLOLIB_RECEIVER_H
#define WENLOLIB_RECEIVER_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "wenlolib/Export.h"

namespace wenlolib::receiver {

/// The three layouts, named by what they carry.
enum class Layout : std::uint8_t {
  application,      // OrvanQXApplication
  printer,          // OrvanQX2Application: printer log, newer tag type
  printerOlderTag,  // OrvanQXPrinter: printer log, older tag type
};

/// What a document is examined for, in this order. The first layer that does not hold is reported.
enum class Layer : std::uint8_t {
  none,          // all of them hold
  xml,           // well-formed XML in UTF-8
  whiteSpace,    // no white space between the parts
  layout,        // the elements of one layout, each once, in order, with its attributes only
  cipherMarker,  // "R" or "X"
  hexadecimal,   // the payload and the checksum: digits and capital letters A to F, in pairs
  checksum,      // the digest of the content
  contents,      // the decrypted contents are text in UTF-8, and there is a date to decrypt them by
};

/// What has happened to a document.
enum class Fault : std::uint8_t {
  none,
  truncated,  // it begins well, but its end is missing
  damaged,    // its form is broken inside
  altered,    // its form is whole, but the checksum is that of other content
  repaired,   // stray markup was escaped before it was stored; the checksum is that of the content
              // before the repair; the document can still be relied on
  foreign,    // it is a file of another kind, such as a web page or an archive
};

struct Verdict {
  Layer layer = Layer::none;
  Fault fault = Fault::none;
  std::size_t offset = 0;   // of the first wrong byte; the document's length if it is truncated;
                            // 0 if it is foreign
  std::string field;        // the element or attribute concerned, such as "Date" or "SUM"; or ""
  std::string explanation;  // one sentence for a person; it repeats neither offset nor field

  [[nodiscard]] bool sound() const { return layer == Layer::none; }
};

/// One value of a document, without the payload.
struct Field {
  std::string name;        // of its element
  std::string value;       // the text with references such as &amp; resolved. Line ends are kept
                           // as they are, and so is the whole date, whose bytes give the key
  std::size_t offset = 0;  // of the value's first byte in the document
};

/// What a document says. Views point into the examined bytes and are valid as long as those are.
struct Document {
  Layout layout = Layout::application;
  std::string_view checksum;  // as it is in the document
  std::vector<Field> fields;  // in order: Version, OSVersion, Date, Locale, ID; for the older tag
                              // type DeviceID, SN, ROMVER as well
  char marker = 'R';
  std::string_view digits;  // the payload
  std::size_t digitsOffset = 0;
  std::optional<std::string> contents;  // decrypted, if the examination got that far; if not,
                                        // contentsOf decrypts them

  /// The value of a field, or "" if the layout has no field of this name.
  [[nodiscard]] WENLOLIB_RECEIVER_EXPORT std::string_view value(std::string_view name) const;
};

struct Report {
  Verdict verdict;
  /// What the document says. Present if every layer up to and including `hexadecimal` holds, so
  /// that an altered or repaired document can still be read.
  std::optional<Document> document;
  /// What can be found of a document that is not present: truncated, or damaged in a layer before
  /// `checksum`. Nobody vouches for it. `fields` has the fields whose values were found, in order.
  /// `digits` ends before the first character that is not a digit. `marker` is '\0' if there is no
  /// payload with a marker, and `checksum` is empty if there is none. `contents` is never present:
  /// contentsOf decrypts what there is.
  std::optional<Document> found;
};

/// Examines a document. Any bytes give a report, in time and memory proportional to their number.
/// Throws only std::bad_alloc. Any thread may call.
[[nodiscard]] WENLOLIB_RECEIVER_EXPORT Report examine(std::string_view bytes);

/// The record's contents, decrypted. Nothing if the document has no date, and so no key, or if its
/// cipher is not available. The second form moves them out of a document that is no longer needed,
/// without a copy.
[[nodiscard]] WENLOLIB_RECEIVER_EXPORT std::optional<std::string> contentsOf(
    const Document& document);
[[nodiscard]] WENLOLIB_RECEIVER_EXPORT std::optional<std::string> contentsOf(Document&& document);

/// The name of a layout's wrapper element.
[[nodiscard]] WENLOLIB_RECEIVER_EXPORT std::string_view wrapperName(Layout layout);

}  // namespace wenlolib::receiver

#endif
