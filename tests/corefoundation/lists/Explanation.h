/// The differences between this project's property lists and Core Foundation's, each by its name.
#ifndef WENLOLIB_TESTS_COREFOUNDATION_LISTS_EXPLANATION_H
#define WENLOLIB_TESTS_COREFOUNDATION_LISTS_EXPLANATION_H

#include <optional>
#include <set>
#include <string>
#include <vector>

namespace wenlolib::tests::lists {

using Names = std::set<std::string>;

/// Why the two read different things from these bytes: empty if they do not, nothing if no known
/// difference accounts for it.
///
/// A difference accounts for it if the two agree about the same file without the feature that the
/// difference is about, and if taking the feature out changes nothing for the reader that takes it
/// for what it is.
[[nodiscard]] std::optional<Names> explanation(std::string bytes);

/// All names there are, as docs/macos.md lists them.
[[nodiscard]] std::vector<std::string> allNames();

}  // namespace wenlolib::tests::lists

#endif
