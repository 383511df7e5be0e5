#include <utility>

#include "base/Answered.h"
#include "base/Trace.h"
#include "front/WENLOLIB.h"
#include "policy/SupportDecision.h"
#include "policy/Task.h"

namespace wenlolib {

bool WENLOLIB::writeAppInfoWithContents(Text contents, Text name, std::uint32_t option) noexcept {
  WENLOLIB_TRACE(" writeAppInfoWithContents %s\n", name ? name->c_str() : "(null)");
  if (!isSupported(option)) return false;
  if (!contents || !name) return false;
  const auto record = initWithContents(std::move(contents), std::move(name), option);
  if (!record) return false;
  record->setFileType(2);
  return record->writeAppInfo();
}

bool WENLOLIB::writePrinterLogInfoWithContents(Text contents, Text name, std::uint32_t option,
                                               std::optional<Dictionary> otherInfo) noexcept {
  if (!isSupportedPlm(option)) return false;
  if (!contents || !name) return false;
  const auto record = initWithContents(std::move(contents), std::move(name), option);
  if (!record) return false;
  record->setFileType(1);
  record->serOtherInfo(std::move(otherInfo));
  return record->writeAppInfo();
}

bool WENLOLIB::isSupported(std::uint32_t option) noexcept {
  return answered(false, [&] {
    PlatformFacts facts;
    const bool supported = applicationRefusal(facts, option) == Gate::none;
    if (!supported) WENLOLIB_TRACE(" NOT Supported \n");
    return supported;
  });
}

bool WENLOLIB::isSupportedPlm(std::uint32_t /*option*/) noexcept {
  return answered(false, [] {
    PlatformFacts facts;
    return printerLogRefusal(facts) == Gate::none;
  });
}

std::int32_t WENLOLIB::createTask(const Text& path,
                                  const std::optional<std::vector<std::string>>& args,
                                  std::uint8_t wait) noexcept {
  return answered(std::int32_t{0}, [&] { return runTask(path, args, wait); });
}

}  // namespace wenlolib
