/// `wenlolib verify`.
#ifndef WENLOLIB_TOOLS_CALLS_VERIFY_H
#define WENLOLIB_TOOLS_CALLS_VERIFY_H

#include "documents/Jobs.h"
#include "terminal/Output.h"

namespace wenlolib::tools {

struct VerifyOptions {
  DocumentOptions documents;
  bool json = false;
  bool quiet = false;
  bool list = false;  // only the paths of documents that are not sound
};

/// Writes what verification finds. Returns the exit status.
int verify(const VerifyOptions& options, Output& output);

}  // namespace wenlolib::tools

#endif
