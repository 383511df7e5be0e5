/// A page about all that is recorded of a user. It needs nothing but itself: no script, no network.
#ifndef WENLOLIB_TOOLS_REPORT_PAGE_H
#define WENLOLIB_TOOLS_REPORT_PAGE_H

#include <ctime>

#include "library/ToolPlatform.h"
#include "records/OwnRecords.h"
#include "report/Overview.h"
#include "terminal/Output.h"

namespace wenlolib::tools {

struct PageSubject {
  const ToolPlatform& platform;  // the one in use
  const OwnRecords& found;
  const Overview& overview;  // of these records
  bool redact = false;       // leave out identifier, serial numbers and the user's folder
  std::time_t now = 0;
};

/// Writes the page, one record at a time.
void writePage(const PageSubject& subject, Output& page);

}  // namespace wenlolib::tools

#endif
