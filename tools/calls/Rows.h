/// `wenlolib rows`.
#ifndef WENLOLIB_TOOLS_CALLS_ROWS_H
#define WENLOLIB_TOOLS_CALLS_ROWS_H

#include "documents/Jobs.h"
#include "terminal/Output.h"

namespace wenlolib::tools {

struct RowsOptions {
  DocumentOptions documents;
  bool csv = false;
  bool redact = false;
};

/// Writes a row for each document. Returns the exit status.
int rows(const RowsOptions& options, Output& output);

}  // namespace wenlolib::tools

#endif
