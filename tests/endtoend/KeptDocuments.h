/// Documents kept for a verifier outside this program.
#ifndef WENLOLIB_TESTS_ENDTOEND_KEPTDOCUMENTS_H
#define WENLOLIB_TESTS_ENDTOEND_KEPTDOCUMENTS_H

#include <string>

#include "endtoend/World.h"

namespace wenlolib::tests {

// Documents go to the folder named by the variable WENLOLIB_DOCUMENTS. If it is not set, nothing
// happens. The folder's manifest has one line per document, with four parts separated by tabs: its
// file's name, the name of a file with the contents that it must hold (empty: any contents), its
// wrapper's layout and its cipher's marker.
//
// Whatever a test leaves in the folders of records is kept at its end (see `WorldTest`). So a test
// calls one of these functions only to have the contents compared, or for a document that is gone
// before the test ends.

/// Keeps the document at `path`, which must have this kind and this marker.
void keepDocument(const std::string& path, RecordKind kind, char marker,
                  const std::string& contents);

/// Keeps a document with whatever contents, layout and marker it has.
void keepBytes(const std::string& document);

/// Keeps every document in a folder and below it that this test has not kept yet. A file counts as
/// a document if it begins like one.
void keepAllBelow(const std::string& folder);

}  // namespace wenlolib::tests

#endif
