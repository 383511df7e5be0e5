/// How an XML property list begins, to the letter, when a program of our time wrote it.
#ifndef WENLOLIB_PLATFORM_LINUX_PROPERTYLISTPROLOGUE_H
#define WENLOLIB_PLATFORM_LINUX_PROPERTYLISTPROLOGUE_H

#include <string_view>

namespace wenlolib::platform::gnulinux {

inline constexpr std::string_view propertyListPrologue =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n";

}  // namespace wenlolib::platform::gnulinux

#endif
