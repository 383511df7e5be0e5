/// `wenlolib verify`.
#ifndef WENLOLIB_TOOLS_CALLS_VERIFY_H
#define WENLOLIB_TOOLS_CALLS_VERIFY_H

#include <string>
#include <vector>

#include "terminal/Output.h"

namespace wenlolib::tools {

struct VerifyOptions {
  std::vector<std::string> paths;
  bool json = false;
  bool quiet = false;
  int jobs = 1;
};

/// Writes what verification finds. Returns the exit status.
int verify(const VerifyOptions& options, Output& output);

}  // namespace wenlolib::tools

#endif
