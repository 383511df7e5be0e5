/// What `list` and `forget` both take: which of the user's own records are meant.
#ifndef WENLOLIB_TOOLS_CALLS_RECORDCHOICE_H
#define WENLOLIB_TOOLS_CALLS_RECORDCHOICE_H

#include <CLI/CLI.hpp>

#include "records/OwnRecords.h"

namespace wenlolib::tools {

/// Adds the options of a choice; `choice` must outlive the command line.
void addRecordChoice(CLI::App& call, Choice& choice);

}  // namespace wenlolib::tools

#endif
