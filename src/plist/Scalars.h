/// The values of property lists that hold no others, as text and as bytes.
#ifndef WENLOLIB_PLIST_SCALARS_H
#define WENLOLIB_PLIST_SCALARS_H

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "wenlolib/Instant.h"
#include "wenlolib/Text.h"
#include "wenlolib/Value.h"

namespace wenlolib::plist {

// --- Numbers ---

/// A signed integer if it fits one, else an unsigned one: property lists do not tell the two apart,
/// and readers mostly ask for the signed one.
[[nodiscard]] Value naturalValue(std::uint64_t number);

/// An optional sign and decimal digits, or hexadecimal ones after "0x", such as "-12" or "0xFF".
/// Nothing if the text is anything else or the number needs more than 64 bits.
[[nodiscard]] std::optional<Value> integerFromText(std::string_view text);

/// A decimal number such as "-1.5e3", or "nan", "inf" or "infinity" in any case with an optional
/// sign. Nothing if the text is anything else or the number is beyond a double.
[[nodiscard]] std::optional<double> realFromText(std::string_view text);

/// The shortest text that reads back as the same number; "nan", "infinity", "-infinity".
[[nodiscard]] std::string realText(double number);

// --- Dates ---

/// Whether a property list can represent `date`: it must be finite and within some hundred thousand
/// million years, beyond which the calendar arithmetic would overflow.
[[nodiscard]] bool isCarriedDate(Instant date);

/// `date` in GMT, fractions of a second cut towards the past, such as "2024-02-29T23:59:59Z". A
/// year beyond four digits is written in full, one before year 0 as "-0044". Null if the date
/// cannot be represented.
[[nodiscard]] Text dateText(Instant date);

/// The date that the whole of `text` spells in the form above, a year of fewer digits included;
/// nothing if there is no such date.
[[nodiscard]] std::optional<Instant> dateFromText(std::string_view text);

// --- Data: base64 (RFC 4648, the standard alphabet) ---

/// Appends the characters for `bytes`, padded with "=" to a multiple of four.
void appendBase64(std::string& text, std::span<const std::uint8_t> bytes);

/// The bytes that `text` spells; blanks are ignored. Nothing if it holds any other character, or is
/// not padded to a multiple of four.
[[nodiscard]] std::optional<Value::Data> dataFromBase64(std::string_view text);

// --- Texts of the binary form ---

/// The UTF-8 text of `bytes`, an even number of them, which are UTF-16 with the higher byte first.
/// Null if a surrogate has no partner.
[[nodiscard]] Text utf8FromUtf16(std::string_view bytes);

}  // namespace wenlolib::plist

#endif
