/// The survey document: a wrapper with a checksum around the header and the protected contents.
#ifndef WENLOLIB_RECORD_DOCUMENT_H
#define WENLOLIB_RECORD_DOCUMENT_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/EnumTable.h"
#include "codec/Layouts.h"
#include "platform/Time.h"
#include "platform/Xml.h"
#include "wenlolib/Text.h"

namespace wenlolib {

// --- The date ---

/// The calendar format of a date on systems that format it by directives. `zone` is the "%z" text
/// of that date, such as "+0900"; it goes into the format with a colon inserted. If it cannot be
/// split, the format holds "%z" itself, which gives the offset without a colon.
[[nodiscard]] std::string dateFormat(const Text& zone);

/// The current date with its offset from GMT, such as "2024-03-15T09:05:07+09:00"; null if the
/// calendar cannot show it.
[[nodiscard]] Text currentDateText(platform::Calendar& calendar);

// --- The payload ---

/// The memory that protecting `n` bytes of contents takes. It is allocated before anything else is
/// done for a document, so that a lack of memory shows early.
struct WorkingBuffers {
  std::unique_ptr<std::uint8_t[]> input;   // n bytes
  std::unique_ptr<std::uint8_t[]> cipher;  // 2 * n bytes
  std::string digits;                      // 2 * n characters

  /// Nothing if the memory is not available, or if n is 2 GiB or more: lengths are 32 bits wide in
  /// the codec.
  [[nodiscard]] static std::optional<WorkingBuffers> allocate(std::size_t n) noexcept;
};

struct Payload {
  char marker = 'R';   // 'R' for RC4, 'X' for the cycling XOR
  std::string digits;  // upper-case hexadecimal, two digits a byte
};

/// Encrypts `contents` under the MD5 digest of `date`, with RC4 or, if that is refused, with the
/// cycling XOR, and writes it as hexadecimal text. Without a date nothing is encrypted, and the
/// payload is all zeros. `buffers` must have been allocated for the length of `contents`; each is
/// freed as soon as it is no longer needed.
[[nodiscard]] Payload protect(WorkingBuffers buffers, const Text& date, std::string_view contents);

// --- The document around it ---

/// What a document says about where it comes from; "" for a value that is not known. Values go in
/// as they are, without escaping.
using Header = EnumTable<Field, std::string>;

struct SurveyDocument {
  std::string text;
  platform::DigitRun digits;  // where the payload stands in the text
};

/// Puts a document together. Nothing stands between its parts: no white space, no declaration. The
/// checksum is the MD5 digest, in upper-case hexadecimal, of the text between the wrapper's tags.
[[nodiscard]] SurveyDocument assemble(Layout layout, const Header& header, const Payload& payload);

}  // namespace wenlolib

#endif
