/// What is checked of a report, whatever the bytes were.
#ifndef WENLOLIB_FUZZ_CHECKS_H
#define WENLOLIB_FUZZ_CHECKS_H

#include <string_view>

#include "wenlolib/Receiver.h"

namespace wenlolib::fuzz {

/// The verdict is of one piece, everything that is said of the document can be found in the bytes,
/// and the document built anew from what is said of it is the same, byte for byte.
void checkReport(std::string_view bytes, const receiver::Report& report);

/// What the command shows of it, as text and as JSON, redacted or not, is fit to be shown.
void checkShown(std::string_view bytes, const receiver::Report& report);

/// The verdict alone, as a line and as JSON, is the report's.
void checkShownVerdict(std::string_view bytes, const receiver::Verdict& verdict);

}  // namespace wenlolib::fuzz

#endif
