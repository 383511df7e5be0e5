/// `wenlolib verify`.
#ifndef WENLOLIB_TOOLS_VERIFY_H
#define WENLOLIB_TOOLS_VERIFY_H

#include <string>
#include <string_view>
#include <vector>

#include "DocumentText.h"
#include "Output.h"
#include "wenlolib/Receiver.h"

namespace wenlolib::tools {

struct VerifyOptions {
  std::vector<std::string> paths;
  bool json = false;
  bool quiet = false;
  int jobs = 1;
};

/// What a person is told of one document: a line, broken where `style` has columns.
[[nodiscard]] std::string verdictLine(std::string_view path, const receiver::Verdict& verdict,
                                      const Style& style);

/// Writes what verification finds. Returns the exit status.
int verify(const VerifyOptions& options, Output& output);

}  // namespace wenlolib::tools

#endif
