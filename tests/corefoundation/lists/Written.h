/// What one side writes and both read.
#ifndef WENLOLIB_TESTS_COREFOUNDATION_LISTS_WRITTEN_H
#define WENLOLIB_TESTS_COREFOUNDATION_LISTS_WRITTEN_H

#include <optional>

#include "Explanation.h"
#include "wenlolib/Value.h"

namespace wenlolib::tests::lists {

enum class Writer { ours, theirsInXml, theirsInBinary };

/// The bytes that `writer` writes; none if it refuses.
[[nodiscard]] std::string written(const Dictionary& list, Writer writer);

/// Why not both read from the bytes what was written: empty if they do, nothing if no known
/// difference accounts for it. A difference accounts for it if both read the same list without the
/// values that the difference is about.
[[nodiscard]] std::optional<Names> writtenExplanation(const Dictionary& list, Writer writer);

[[nodiscard]] std::vector<std::string> allWrittenNames();

}  // namespace wenlolib::tests::lists

#endif
