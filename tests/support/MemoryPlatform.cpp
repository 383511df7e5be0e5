#include "support/MemoryPlatform.h"

namespace wenlolib::tests {

MemoryPlatform::MemoryPlatform()
    : services{&system, &clock,  &calendar, &files, &propertyLists, &bundles,
               &user,   &digest, &cipher,   &xml,   &uuids,         &programs} {
  system.setVersion(10, 15, 7);
  system.answers[platform::Selector::systemArchitecture] = 10;
  clock.time = dateOf(2024, 3, 15, 0, 5, 7);
  calendar.secondsFromGMT = 9 * 3600;
  user.login = "ada";
  user.home = "/Users/ada";
  user.library = "/Users/ada/Library";
  user.localeSetting = "en_US";
}

}  // namespace wenlolib::tests
