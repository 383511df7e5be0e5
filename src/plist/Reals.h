/// Doubles and their spelling in decimal digits, whatever the host's locale is.
#ifndef WENLOLIB_PLIST_REALS_H
#define WENLOLIB_PLIST_REALS_H

#include <optional>
#include <string>
#include <string_view>

namespace wenlolib::plist {

/// The finite number that the whole of `digits` spells, which starts with a digit or a point.
/// Nothing if it does not spell a number, or spells one that no double can hold.
[[nodiscard]] std::optional<double> realSpelled(std::string_view digits);

/// As few digits as it takes to read the finite `number` back.
[[nodiscard]] std::string spelled(double number);

}  // namespace wenlolib::plist

#endif
