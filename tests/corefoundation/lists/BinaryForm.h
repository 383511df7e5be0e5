/// Binary property lists, taken apart object by object and put together again without one feature.
#ifndef WENLOLIB_TESTS_COREFOUNDATION_LISTS_BINARYFORM_H
#define WENLOLIB_TESTS_COREFOUNDATION_LISTS_BINARYFORM_H

#include <string>

namespace wenlolib::tests::lists::binary {

/// Whether the list can be walked from its root to its ends.
[[nodiscard]] bool isWhole(const std::string& bytes);

/// Whether this project's bounds end that walk.
[[nodiscard]] bool isBeyondBounds(const std::string& bytes);

// Each returns the list without what its name says, so that both readers can agree about the rest.
// A list that has no such thing, or that cannot be walked from its root to its ends, is returned as
// it is.

[[nodiscard]] std::string withoutOtherVersion(const std::string& bytes);
[[nodiscard]] std::string withoutWideFrame(const std::string& bytes);
/// The same objects, each in its own place, with a table and a trailer that fit them.
[[nodiscard]] std::string withoutLooseFrame(const std::string& bytes);
[[nodiscard]] std::string withoutSets(const std::string& bytes);
[[nodiscard]] std::string withoutDuplicateKeys(const std::string& bytes);
[[nodiscard]] std::string withoutContainersAsKeys(const std::string& bytes);
[[nodiscard]] std::string withoutWideIntegers(const std::string& bytes);
[[nodiscard]] std::string withoutLargeUids(const std::string& bytes);
[[nodiscard]] std::string withoutOddSimples(const std::string& bytes);
[[nodiscard]] std::string withoutOddIntegers(const std::string& bytes);
[[nodiscard]] std::string withoutOddReals(const std::string& bytes);
[[nodiscard]] std::string withoutOddDates(const std::string& bytes);
[[nodiscard]] std::string withoutOddTexts(const std::string& bytes);
[[nodiscard]] std::string withoutEmptyUtf16(const std::string& bytes);
[[nodiscard]] std::string withoutOtherRoot(const std::string& bytes);

}  // namespace wenlolib::tests::lists::binary

#endif
