/// Work in child processes, which a hostile file may end.
#ifndef WENLOLIB_TESTS_COREFOUNDATION_LISTS_CHILDREN_H
#define WENLOLIB_TESTS_COREFOUNDATION_LISTS_CHILDREN_H

#include <cstddef>
#include <functional>
#include <string>

namespace wenlolib::tests::lists {

/// One line for each number: what came of it.
using Work = std::function<std::string(std::size_t number)>;

/// Calls `work` for all numbers below `count`, `batch` to a child. Children have limits for memory
/// and time, and nothing on standard error. `done` gets each line. For a number that ends its
/// child, `died` is called with what ended it; the next child goes on after that number.
void inChildren(std::size_t count, std::size_t batch, const Work& work,
                const std::function<void(std::size_t number, const std::string& line)>& done,
                const std::function<void(std::size_t number, const std::string& end)>& died);

}  // namespace wenlolib::tests::lists

#endif
