/// What has to hold of every input.
#ifndef WENLOLIB_FUZZ_REQUIRE_H
#define WENLOLIB_FUZZ_REQUIRE_H

#include <string>

namespace wenlolib::fuzz {

/// Ends the run with `what` as its finding, unless it holds.
void require(bool holds, const std::string& what);

}  // namespace wenlolib::fuzz

#endif
