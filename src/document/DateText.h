/// The date of a survey document.
#ifndef WENLOLIB_DOCUMENT_DATETEXT_H
#define WENLOLIB_DOCUMENT_DATETEXT_H

#include "platform/Time.h"
#include "wenlolib/Text.h"

namespace wenlolib {

/// The calendar format of a date on systems that make it by directives: `zone` is the "%z" text of
/// that date, such as "+0900", and stands in the format with a colon put in. A zone text that
/// cannot be split leaves the offset as the directive gives it, without a colon.
[[nodiscard]] std::string dateFormat(const Text& zone);

/// The current date with its offset from GMT, such as "2024-03-15T09:05:07+09:00"; null when the
/// calendar cannot show it.
[[nodiscard]] Text currentDateText(platform::Calendar& calendar);

}  // namespace wenlolib

#endif
