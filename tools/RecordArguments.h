/// What `preview` and `record` take alike.
#ifndef WENLOLIB_TOOLS_RECORDARGUMENTS_H
#define WENLOLIB_TOOLS_RECORDARGUMENTS_H

#include <CLI/CLI.hpp>
#include <string>

#include "Recording.h"
#include "wenlolib/Text.h"

namespace wenlolib::tools {

struct RecordArguments {
  RecordKind kind = RecordKind::application;
  std::string name;
  std::string option = "0";
  Text deviceId, serialNumber, romVersion;  // of a printer
  bool newTagType = false;
  Text file;  // "-" for standard input
};

/// Makes a call say which kind of record it means, by one of its two subcommands.
void requireKind(CLI::App& call);

/// Adds the options of a record of this kind; `arguments` must outlive the command line.
void addRecordArguments(CLI::App& call, RecordArguments& arguments);

/// The record without its contents.
[[nodiscard]] RecordRequest requestOf(const RecordArguments& arguments);

}  // namespace wenlolib::tools

#endif
