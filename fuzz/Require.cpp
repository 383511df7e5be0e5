#include "Require.h"

#include <cstdio>
#include <cstdlib>

namespace wenlolib::fuzz {

void require(bool holds, const std::string& what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what.c_str());
  std::abort();
}

}  // namespace wenlolib::fuzz
