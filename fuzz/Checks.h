/// Checks that hold for every report, whatever the bytes were.
#ifndef WENLOLIB_FUZZ_CHECKS_H
#define WENLOLIB_FUZZ_CHECKS_H

#include <string_view>

#include "wenlolib/Receiver.h"

namespace wenlolib::fuzz {

/// The verdict is consistent, everything that the report says of the document is found in the
/// bytes, and the document rebuilt from the report is the same, byte for byte, but for an XML
/// declaration before it.
void checkReport(std::string_view bytes, const receiver::Report& report);

/// What the command shows of the report, as text and as JSON, redacted or not, is safe to show.
void checkShown(std::string_view bytes, const receiver::Report& report);

/// What the command shows of the verdict alone, as a line and as JSON, is the report's verdict.
void checkShownVerdict(std::string_view bytes, const receiver::Verdict& verdict);

}  // namespace wenlolib::fuzz

#endif
