/// Documents to examine. None of the receiver's code builds them.
#ifndef WENLOLIB_TESTS_RECEIVER_SAMPLES_H
#define WENLOLIB_TESTS_RECEIVER_SAMPLES_H

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "support/ExpectedDocument.h"
#include "wenlolib/Receiver.h"

namespace wenlolib::tests {

/// One wrapper for each layout, in the order of receiver::Layout.
inline const std::vector<std::string>& wrappers() {
  static const std::vector<std::string> names = {"OrvanQXApplication", "OrvanQX2Application",
                                                 "OrvanQXPrinter"};
  return names;
}

inline ExpectedDocument sample(receiver::Layout layout, char marker = 'R',
                               std::string contents = "some contents") {
  ExpectedDocument document;
  document.wrapper = wrappers().at(static_cast<std::size_t>(layout));
  if (layout == receiver::Layout::printerOlderTag) {
    document.printer = ExpectedPrinter{"MFG:Orvan;MDL:QX 200;", "QX200-0004711", "2.14"};
  }
  document.marker = marker;
  document.contents = std::move(contents);
  return document;
}

inline constexpr receiver::Layout layouts[] = {
    receiver::Layout::application, receiver::Layout::printer, receiver::Layout::printerOlderTag};

/// `text` with its first `old` replaced by `replacement`; `old` must be there.
inline std::string replaced(std::string text, std::string_view old, std::string_view replacement) {
  return text.replace(text.find(old), old.size(), replacement);
}

/// The document with the right checksum of its content.
inline std::string sealed(const std::string& document) {
  const std::size_t begin = document.find('>') + 1;
  const std::size_t end = document.rfind("</");
  return replaced(document, attributeIn(document, "SUM"),
                  checksumOf(document.substr(begin, end - begin)));
}

/// A document of the layout whose content was changed before the checksum was made.
inline std::string edited(receiver::Layout layout, std::string_view old,
                          std::string_view replacement) {
  return sealed(replaced(sample(layout).text(), old, replacement));
}

/// The part of a verdict that programs use.
struct Finding {
  receiver::Layer layer = receiver::Layer::none;
  receiver::Fault fault = receiver::Fault::none;
  std::size_t offset = 0;
  std::string field;

  bool operator==(const Finding&) const = default;
};

inline Finding findingOf(std::string_view document) {
  const receiver::Verdict verdict = receiver::examine(document).verdict;
  return {verdict.layer, verdict.fault, verdict.offset, verdict.field};
}

inline void PrintTo(const Finding& finding, std::ostream* out) {
  *out << "layer " << static_cast<int>(finding.layer) << ", fault "
       << static_cast<int>(finding.fault) << ", byte " << finding.offset << ", field \""
       << finding.field << '"';
}

}  // namespace wenlolib::tests

#endif
