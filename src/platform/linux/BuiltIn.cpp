#include "platform/linux/BuiltIn.h"

#include <expat.h>
#include <mbedtls/version.h>

#include <string_view>

namespace wenlolib::platform::gnulinux {
namespace {

std::string line(const std::string& library, std::string_view package) {
  if (package.empty()) return library + "\n";
  return library + " (" + std::string(package) + ")\n";
}

}  // namespace

std::string builtInLibraries() {
  const XML_Expat_Version expat = XML_ExpatVersionInfo();
  return line("expat " + std::to_string(expat.major) + "." + std::to_string(expat.minor) + "." +
                  std::to_string(expat.micro),
              WENLOLIB_EXPAT_PACKAGE) +
         line("mbedTLS " MBEDTLS_VERSION_STRING, WENLOLIB_MBEDTLS_PACKAGE);
}

}  // namespace wenlolib::platform::gnulinux
