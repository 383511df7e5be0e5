/// The user's locale, as a survey document carries it.
#ifndef WENLOLIB_PROBES_LOCALE_H
#define WENLOLIB_PROBES_LOCALE_H

#include <cstdint>
#include <string>

namespace wenlolib {

/// Without its modifier ("@" and what follows), and cut before its second "_". Texts longer than
/// 32,767 characters give "".
[[nodiscard]] std::string normalisedLocale(std::string locale);

/// The locale for an option word. The low four bits choose the source: 1 the language last selected
/// in the host, with no other to fall back on; 0 and 2 the user's own setting; others none.
[[nodiscard]] std::string surveyLocale(std::uint32_t option);

}  // namespace wenlolib

#endif
