/// Every operation of the C++ classes, called once with usual arguments.
#ifndef WENLOLIB_TESTS_ENDTOEND_OPERATIONS_H
#define WENLOLIB_TESTS_ENDTOEND_OPERATIONS_H

#include <vector>

namespace wenlolib::tests {

struct Operation {
  const char* name;
  void (*call)();  // throws std::runtime_error for an answer that shows that it did not do its work
};

const std::vector<Operation>& toolkitOperations();

/// In the order given: on one record, then by the entry points. They expect the world of `World` in
/// mode 1, a user whose locale is de_DE, and a program "/bin/answer" whose exit status is 7.
const std::vector<Operation>& recordOperations();

}  // namespace wenlolib::tests

#endif
