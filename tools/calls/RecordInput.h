/// What `preview` and `record` both take: options and contents.
#ifndef WENLOLIB_TOOLS_CALLS_RECORDINPUT_H
#define WENLOLIB_TOOLS_CALLS_RECORDINPUT_H

#include <CLI/CLI.hpp>
#include <cstddef>
#include <string>

#include "library/Recording.h"
#include "terminal/Output.h"
#include "wenlolib/Text.h"

namespace wenlolib::tools {

struct RecordArguments {
  RecordKind kind = RecordKind::application;
  std::string name;
  std::string option = "0";
  Text deviceId, serialNumber, romVersion;  // of a printer
  bool newTagType = false;
  bool keep = false;  // of `record`
  Text file;          // "-" for standard input
};

/// Adds the options of a record of this kind; `arguments` must outlive the command line.
void addRecordArguments(CLI::App& call, RecordArguments& arguments);

/// The record without its contents. Says which options the layout has no place for.
[[nodiscard]] RecordRequest requestOf(const RecordArguments& arguments, Output& output);

/// Says which values keep the library from writing a document. `what` says what did not happen.
void complainOfValues(const RecordArguments& arguments, const std::string& what, Output& output);

/// Contents, or what is wrong with them.
struct ContentsInput {
  std::string contents;
  std::string complaint;  // "" if nothing is wrong
};

/// The library refuses contents of 2 GiB and more.
inline constexpr std::size_t mostContents = (std::size_t{1} << 31) - 1;

/// The whole file at `path`, or standard input for "-". It must be UTF-8 of at most `most` bytes.
[[nodiscard]] ContentsInput readContents(const std::string& path, std::size_t most = mostContents);

}  // namespace wenlolib::tools

#endif
