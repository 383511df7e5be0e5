/// All operations of the C++ classes, each called once with usual arguments.
#ifndef WENLOLIB_TESTS_ENDTOEND_OPERATIONS_H
#define WENLOLIB_TESTS_ENDTOEND_OPERATIONS_H

#include <vector>

namespace wenlolib::tests {

struct Operation {
  const char* name;
  void (*call)();  // throws std::runtime_error if the answer shows that it did not do its work
};

const std::vector<Operation>& toolkitOperations();

/// First the operations on one record, then the entry points. They need a `World` and mode 1, a
/// user whose locale is de_DE, and a program "/bin/answer" that exits with 7.
const std::vector<Operation>& recordOperations();

}  // namespace wenlolib::tests

#endif
