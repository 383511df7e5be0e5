/// Documents that a verifier outside this program is to see.
#ifndef WENLOLIB_TESTS_ENDTOEND_KEPTDOCUMENTS_H
#define WENLOLIB_TESTS_ENDTOEND_KEPTDOCUMENTS_H

#include <string>

#include "endtoend/World.h"

namespace wenlolib::tests {

// Documents go to the folder that the variable WENLOLIB_DOCUMENTS names; nothing happens where it
// is not set. The folder's manifest has one line a document: the names of its file and of the file
// with the contents that it must hold (empty: any contents), the layout that its wrapper names and
// its cipher's marker, divided by tabs.
//
// What a test leaves in the folders of records is kept at its end (see `WorldTest`). So a test
// calls one of these only for a document whose contents are to be compared, and for one that goes
// before the test ends.

/// Keeps the document at `path`, which has to be of this kind and this marker.
void keepDocument(const std::string& path, RecordKind kind, char marker,
                  const std::string& contents);

/// Keeps a document with whatever contents, layout and marker it has.
void keepBytes(const std::string& document);

/// Keeps every document at and below a folder that this test has not kept yet. A document is a file
/// that begins like one.
void keepAllBelow(const std::string& folder);

}  // namespace wenlolib::tests

#endif
