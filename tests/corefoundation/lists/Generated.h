/// Random values, and files that are damaged at random. The same seed always gives the same.
#ifndef WENLOLIB_TESTS_COREFOUNDATION_LISTS_GENERATED_H
#define WENLOLIB_TESTS_COREFOUNDATION_LISTS_GENERATED_H

#include <cstdint>
#include <string>
#include <vector>

#include "wenlolib/Value.h"

namespace wenlolib::tests::lists {

[[nodiscard]] Dictionary randomList(std::uint64_t seed);

/// One of `originals`, changed in a few places.
[[nodiscard]] std::string damaged(const std::vector<std::string>& originals, std::uint64_t seed);

}  // namespace wenlolib::tests::lists

#endif
