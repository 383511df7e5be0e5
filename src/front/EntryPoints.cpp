#include "front/EntryPoints.h"

#include <utility>

#include "base/Trace.h"
#include "policy/SupportDecision.h"
#include "policy/Task.h"

namespace wenlolib {

bool written(RecordArguments arguments, std::uint32_t option, std::uint32_t fileType) {
  if (!arguments.contents || !arguments.name) return false;
  const auto record =
      WENLOLIB::initWithContents(std::move(arguments.contents), std::move(arguments.name), option);
  if (!record) return false;
  record->setFileType(fileType);
  record->serOtherInfo(std::move(arguments.otherInfo));
  return record->writeAppInfo();
}

bool WENLOLIB::writeAppInfoWithContents(Text contents, Text name, std::uint32_t option) noexcept {
  WENLOLIB_TRACE(" writeAppInfoWithContents %s\n", name ? name->c_str() : "(null)");
  return recordApplicationUsage(option, [&] {
    return RecordArguments{std::move(contents), std::move(name), std::nullopt};
  });
}

bool WENLOLIB::writePrinterLogInfoWithContents(Text contents, Text name, std::uint32_t option,
                                               std::optional<Dictionary> otherInfo) noexcept {
  return recordPrinterLog(option, [&] {
    return RecordArguments{std::move(contents), std::move(name), std::move(otherInfo)};
  });
}

bool WENLOLIB::isSupported(std::uint32_t option) noexcept {
  return answered(false, [&] {
    PlatformFacts facts;
    const bool supported = refusal(facts, RecordKind::application, option) == Gate::none;
    if (!supported) WENLOLIB_TRACE(" NOT Supported \n");
    return supported;
  });
}

bool WENLOLIB::isSupportedPlm(std::uint32_t /*option*/) noexcept {
  return answered(false, [] {
    PlatformFacts facts;
    return refusal(facts, RecordKind::printerLog, 0) == Gate::none;
  });
}

std::int32_t WENLOLIB::createTask(const Text& path,
                                  const std::optional<std::vector<std::string>>& args,
                                  std::uint8_t wait) noexcept {
  return answered(std::int32_t{0}, [&] { return runTask(path, args, wait); });
}

}  // namespace wenlolib
