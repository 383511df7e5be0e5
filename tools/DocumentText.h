/// A document for a person to read.
#ifndef WENLOLIB_TOOLS_DOCUMENTTEXT_H
#define WENLOLIB_TOOLS_DOCUMENTTEXT_H

#include <optional>
#include <string>
#include <string_view>

#include "Redaction.h"
#include "Terminal.h"
#include "wenlolib/Receiver.h"

namespace wenlolib::tools {

/// How it is shown. `columns` is 0 where lines are not to be broken.
struct Style {
  Paint paint;
  std::size_t columns;
};

/// The path, the verdict, every field that could be read, and the contents behind "|", whole.
[[nodiscard]] std::string documentText(std::string_view path, std::size_t bytes,
                                       const receiver::Report& report,
                                       const std::optional<std::string>& contents,
                                       const Redaction& redaction, const Style& style);

}  // namespace wenlolib::tools

#endif
