#include "base/Path.h"

#include <string>

namespace wenlolib {

Text join(Text base, std::string_view part) {
  if (!base) return std::nullopt;
  if (base->empty()) return std::string(part);
  while (base->ends_with('/')) base->pop_back();
  while (part.starts_with('/')) part.remove_prefix(1);
  base->append("/").append(part);
  return base;
}

}  // namespace wenlolib
