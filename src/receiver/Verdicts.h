/// What to say of documents that are no whole document of a layout.
#ifndef WENLOLIB_RECEIVER_VERDICTS_H
#define WENLOLIB_RECEIVER_VERDICTS_H

#include "receiver/Walk.h"
#include "wenlolib/Receiver.h"
#include "xml/WellFormed.h"

namespace wenlolib::receiver {

/// Of a document that the parser refuses. It may be one that the walk went through.
[[nodiscard]] Verdict refused(const Walk& walk, const xml::Finding& finding);

/// Of a document that the walk did not get through.
[[nodiscard]] Verdict misfit(const Walk& walk);

}  // namespace wenlolib::receiver

#endif
