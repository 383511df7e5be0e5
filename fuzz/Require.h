/// What must hold for every input.
#ifndef WENLOLIB_FUZZ_REQUIRE_H
#define WENLOLIB_FUZZ_REQUIRE_H

#include <string>

namespace wenlolib::fuzz {

/// Ends the run with `what` as its finding if `holds` is false.
void require(bool holds, const std::string& what);

}  // namespace wenlolib::fuzz

#endif
