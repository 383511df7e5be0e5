/// Rows as text: JSON Lines and CSV.
#ifndef WENLOLIB_TOOLS_DOCUMENTS_ROWTEXT_H
#define WENLOLIB_TOOLS_DOCUMENTS_ROWTEXT_H

#include <string>

#include "reading/Row.h"

namespace wenlolib::tools {

/// One JSON object on a line, with all columns.
[[nodiscard]] std::string rowJson(const Row& row);

/// The names of the columns, as RFC 4180 wants a line.
[[nodiscard]] std::string csvHeading();

/// One record of RFC 4180: nothing stands for null, "" for an empty text; every text is quoted.
[[nodiscard]] std::string rowCsv(const Row& row);

}  // namespace wenlolib::tools

#endif
