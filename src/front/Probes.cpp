#include "base/Answered.h"
#include "probes/ClientVersion.h"
#include "probes/Identifier.h"
#include "probes/Locale.h"
#include "probes/PrinterIdentity.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib {
namespace {

template <class Probe>
std::string probed(Probe probe) noexcept {
  return answered(std::string(), probe);
}

}  // namespace

std::string WENLOLIB::getCliantVersion() const noexcept {
  return probed(clientVersion);
}

std::string WENLOLIB::getCliantVersionforALM() const noexcept {
  return probed(libraryVersion);
}

std::string WENLOLIB::getOSVersion() const noexcept {
  return probed(markedOSVersion);
}

std::string WENLOLIB::getLocale() const noexcept {
  return probed([&] { return surveyLocale(_options); });
}

std::string WENLOLIB::getWENLOLIBId() noexcept {
  return probed([&] { return cachedIdentifier(_libUUID); });
}

std::string WENLOLIB::getDevId() const noexcept {
  return probed([&] { return identityText(_otherInfoDict, deviceIdKey); });
}

std::string WENLOLIB::getSerialNum() const noexcept {
  return probed([&] { return identityText(_otherInfoDict, serialNumberKey); });
}

std::string WENLOLIB::getRomVersion() const noexcept {
  return probed([&] { return identityText(_otherInfoDict, romVersionKey); });
}

bool WENLOLIB::isNewTagTypePrinter() const noexcept {
  return answered(false, [&] { return hasNewTagType(_otherInfoDict); });
}

}  // namespace wenlolib
