#include "wenlolib/plugin.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/Answered.h"
#include "base/Trace.h"
#include "base/Utf8.h"
#include "record/Record.h"
#include "toolkit/HeaderText.h"
#include "wenlolib/WENLOLIB.h"
#include "wenlolib/version.h"

namespace {

using wenlolib::Dictionary;
using wenlolib::Text;
using wenlolib::WENLOLIB;

Text textFrom(const char* text) {
  return text == nullptr ? Text() : Text(text);
}

std::optional<Dictionary> dictionaryFrom(const WENLOLIBEntry* entries, std::size_t count) {
  if (entries == nullptr) return std::nullopt;
  Dictionary dictionary;
  for (const WENLOLIBEntry& entry : std::span(entries, count)) {
    if (entry.key == nullptr || entry.value == nullptr) continue;
    if (!wenlolib::isUtf8(entry.key) || !wenlolib::isUtf8(entry.value)) continue;
    dictionary.insert_or_assign(entry.key, wenlolib::Value(entry.value));
  }
  return dictionary;
}

}  // namespace

int WENLOLIB_isSupported(uint32_t option) {
  return WENLOLIB::isSupported(option) ? 1 : 0;
}

int WENLOLIB_isSupportedPlm(uint32_t option) {
  return WENLOLIB::isSupportedPlm(option) ? 1 : 0;
}

int WENLOLIB_writeAppInfoWithContents(const char* contents, const char* name, uint32_t option) {
  WENLOLIB_TRACE(" writeAppInfoWithContents %s\n", name == nullptr ? "(null)" : name);
  if (!WENLOLIB::isSupported(option)) return 0;
  return wenlolib::answered(0, [&] {
    return wenlolib::writeContents(textFrom(contents), textFrom(name), option,
                                   wenlolib::applicationFileType, std::nullopt);
  });
}

int WENLOLIB_writePrinterLogInfoWithContents(const char* contents, const char* name,
                                             uint32_t option, const WENLOLIBEntry* otherInfo,
                                             size_t otherInfoCount) {
  if (!WENLOLIB::isSupportedPlm(option)) return 0;
  return wenlolib::answered(0, [&] {
    return wenlolib::writeContents(textFrom(contents), textFrom(name), option,
                                   wenlolib::printerLogFileType,
                                   dictionaryFrom(otherInfo, otherInfoCount));
  });
}

size_t WENLOLIB_convertStrToHeaderStr(const char* string, char* buffer, size_t size) {
  if (buffer == nullptr || size == 0) return 0;
  const std::string_view text = string == nullptr ? "" : string;
  const size_t length = wenlolib::fillHeaderText(text, std::span(buffer, size - 1));
  buffer[length] = '\0';
  return length;
}

const char* WENLOLIB_version(void) {
  return WENLOLIB_VERSION;
}
