/// XML property lists, taken apart token by token and put together again without one feature.
#ifndef WENLOLIB_TESTS_COREFOUNDATION_LISTS_XMLFORM_H
#define WENLOLIB_TESTS_COREFOUNDATION_LISTS_XMLFORM_H

#include <string>

namespace wenlolib::tests::lists::xml {

/// What expat says against the bytes; empty for well-formed XML.
[[nodiscard]] std::string fault(const std::string& bytes);

// Each returns the document without what its name says, so that both readers can agree about the
// rest. A document that has no such thing, or is not well-formed, is returned as it is.

[[nodiscard]] std::string withoutOtherEncoding(const std::string& bytes);
[[nodiscard]] std::string withoutProlog(const std::string& bytes);
[[nodiscard]] std::string withoutHalves(const std::string& bytes);
[[nodiscard]] std::string withoutInnerLists(const std::string& bytes);
[[nodiscard]] std::string withoutKeysAsValues(const std::string& bytes);
[[nodiscard]] std::string withoutAttributes(const std::string& bytes);
[[nodiscard]] std::string withoutTextBetween(const std::string& bytes);
[[nodiscard]] std::string withoutComments(const std::string& bytes);
[[nodiscard]] std::string withoutCarriageReturns(const std::string& bytes);
[[nodiscard]] std::string withoutLongReferences(const std::string& bytes);
[[nodiscard]] std::string withoutEscapesInNumbers(const std::string& bytes);
[[nodiscard]] std::string withoutBlanksInNumbers(const std::string& bytes);
[[nodiscard]] std::string withoutBlanksInBooleans(const std::string& bytes);
[[nodiscard]] std::string withoutEmptyDataTags(const std::string& bytes);
[[nodiscard]] std::string withoutSignsOfNan(const std::string& bytes);
[[nodiscard]] std::string withoutFarYears(const std::string& bytes);
/// Leaves out the elements `name` that this project leaves out, with their keys.
[[nodiscard]] std::string withoutLost(const std::string& bytes, const std::string& name);
[[nodiscard]] std::string withoutOtherRoot(const std::string& bytes);

}  // namespace wenlolib::tests::lists::xml

#endif
