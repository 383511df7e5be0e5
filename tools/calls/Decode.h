/// `wenlolib decode`.
#ifndef WENLOLIB_TOOLS_CALLS_DECODE_H
#define WENLOLIB_TOOLS_CALLS_DECODE_H

#include "documents/Jobs.h"
#include "terminal/Output.h"

namespace wenlolib::tools {

struct DecodeOptions {
  DocumentOptions documents;
  bool json = false;
  bool contents = false;
  bool redact = false;
};

/// Writes what documents say. Returns the exit status.
int decode(const DecodeOptions& options, Output& output);

}  // namespace wenlolib::tools

#endif
