#include <utility>

#include "base/Answered.h"
#include "base/Utf8.h"
#include "platform/Platform.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib {

std::shared_ptr<WENLOLIB> WENLOLIB::init() noexcept {
  return answered(std::shared_ptr<WENLOLIB>(),
                  [] { return std::shared_ptr<WENLOLIB>(new WENLOLIB()); });
}

std::shared_ptr<WENLOLIB> WENLOLIB::initWithContents(Text contents, Text name,
                                                     std::uint32_t option) noexcept {
  std::shared_ptr<WENLOLIB> record = init();
  if (!record) return nullptr;
  record->setContents(std::move(contents));
  record->setApplicationName(std::move(name));
  record->_options = option;
  return record;
}

void WENLOLIB::setContents(Text contents) noexcept {
  _xmlContents = utf8OrNull(std::move(contents));
}

void WENLOLIB::setApplicationName(Text name) noexcept {
  _applicationName = utf8OrNull(std::move(name));
}

void WENLOLIB::setFileType(std::uint32_t fileType) noexcept {
  if (fileType == 1 || fileType == 2) _fileType = fileType;
}

void WENLOLIB::serOtherInfo(std::optional<Dictionary> otherInfo) noexcept {
  if (otherInfo) _otherInfoDict = std::move(otherInfo);
}

Text WENLOLIB::contents() const noexcept {
  return answered(Text(), [&] { return _xmlContents; });
}

Text WENLOLIB::applicationName() const noexcept {
  return answered(Text(), [&] { return _applicationName; });
}

std::uint32_t WENLOLIB::fileType() const noexcept {
  return _fileType;
}

platform::Calendar& WENLOLIB::calendar() const noexcept {
  return _calendar != nullptr ? *_calendar : *platform::current().calendar;
}

}  // namespace wenlolib
