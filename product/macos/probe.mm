// Shows what the macOS port gets from the system it runs on. scripts/check-mac builds and runs it.
//
//   probe container GROUP  the container of an app group, or "none"
//   probe version          the OS version by Gestalt, three numbers
//   probe architecture     the processor by Gestalt
//   probe tidy XML         a document as the library stores it, or "none"
#include <CoreServices/CoreServices.h>

#include <cstdio>
#include <string>
#include <string_view>

#include "platform/apple/Foundation.h"

namespace {

/// -1 if the system refuses.
int gestalt(OSType selector) {
  SInt32 answer = 0;
  return Gestalt(selector, &answer) == noErr ? static_cast<int>(answer) : -1;
}

void print(const wenlolib::Text& text) {
  std::printf("%s\n", text.value_or("none").c_str());
}

}  // namespace

int main(int count, char** arguments) {
  namespace foundation = wenlolib::platform::apple::foundation;
  const std::string_view question = count > 1 ? arguments[1] : "";
  if (question == "container" && count == 3) {
    print(foundation::groupContainer(arguments[2]).path);
  } else if (question == "version" && count == 2) {
    std::printf("%d.%d.%d\n", gestalt('sys1'), gestalt('sys2'), gestalt('sys3'));
  } else if (question == "architecture" && count == 2) {
    std::printf("%d\n", gestalt('sysa'));
  } else if (question == "tidy" && count == 3) {
    print(foundation::tidied(arguments[2]));
  } else {
    std::fputs("usage: probe container GROUP | version | architecture | tidy XML\n", stderr);
    return 2;
  }
  return 0;
}
