/// `wenlolib verify`.
#ifndef WENLOLIB_TOOLS_CALLS_VERIFY_H
#define WENLOLIB_TOOLS_CALLS_VERIFY_H

#include <string>
#include <vector>

#include "documents/Jobs.h"
#include "terminal/Output.h"

namespace wenlolib::tools {

struct VerifyOptions {
  std::vector<std::string> paths;
  bool json = false;
  bool quiet = false;
  int jobs = defaultJobs;
};

/// Writes what verification finds. Returns the exit status.
int verify(const VerifyOptions& options, Output& output);

}  // namespace wenlolib::tools

#endif
