// Any bytes, as a document that has been received.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "Checks.h"
#include "Require.h"

namespace {

using wenlolib::fuzz::require;
using wenlolib::receiver::examine;
using wenlolib::receiver::Report;
using wenlolib::receiver::Verdict;

bool same(const Verdict& a, const Verdict& b) {
  return a.layer == b.layer && a.fault == b.fault && a.offset == b.offset && a.field == b.field &&
         a.explanation == b.explanation;
}

/// A report depends only on the bytes, not on where they lie or what was examined before.
void checkRepeated(std::string_view bytes, const Report& report) {
  const std::string copy(bytes);
  const Report again = examine(copy);
  require(same(report.verdict, again.verdict), "the same verdict again");
  require(report.document.has_value() == again.document.has_value(), "a document again");
  require(report.found.has_value() == again.found.has_value(), "the same search again");
  if (report.found) require(report.found->digits == again.found->digits, "the same digits again");
  if (!report.document) return;
  require(report.document->digits == again.document->digits, "the same payload again");
  require(report.document->contents == again.document->contents, "the same contents again");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const Report report = examine(bytes);
  wenlolib::fuzz::checkReport(bytes, report);
  checkRepeated(bytes, report);
  wenlolib::fuzz::checkShown(bytes, report);
  return 0;
}
