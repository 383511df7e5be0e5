#include "records/RecordReading.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <new>

#include "base/EnumTable.h"
#include "base/Integer.h"
#include "reading/DateText.h"
#include "reading/DocumentFiles.h"
#include "reading/InputFile.h"
#include "reading/Readable.h"
#include "terminal/Format.h"
#include "terminal/Interrupt.h"

namespace wenlolib::tools {
namespace {

std::int64_t nanoseconds(const timespec& time) {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

}  // namespace

FileState::FileState(const struct stat& status)
    : device(status.st_dev),
      number(status.st_ino),
      size(static_cast<std::uint64_t>(status.st_size)),
      modified(nanoseconds(status.st_mtim)),
      changed(nanoseconds(status.st_ctim)) {}

// --- Whose document it is ---

namespace {

constexpr std::string_view blanks = " \t\r\n";

std::string_view withoutLeadingBlanks(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(blanks), text.size()));
}

std::string_view trimmed(std::string_view text) {
  text = withoutLeadingBlanks(text);
  return text.substr(0, text.find_last_not_of(blanks) + 1);
}

/// Without a byte order mark and an XML declaration.
std::string_view withoutProlog(std::string_view text) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
  text = withoutLeadingBlanks(text);
  if (!text.starts_with("<?xml")) return text;
  const std::size_t end = text.find("?>");
  return end == std::string_view::npos ? text : withoutLeadingBlanks(text.substr(end + 2));
}

bool hasWrapper(std::string_view text, std::string_view name) {
  if (trimmed(text).ends_with(std::string("</").append(name).append(">"))) return true;
  const std::string start = std::string("<").append(name);
  return text.starts_with(start) && text.size() > start.size() &&
         std::string_view(" \t\r\n/>").find(text[start.size()]) != std::string_view::npos;
}

}  // namespace

bool isOurs(std::string_view bytes) {
  const std::string_view text = withoutProlog(bytes);
  return std::ranges::any_of(enumerators<receiver::Layout>, [&](receiver::Layout layout) {
    return hasWrapper(text, receiver::wrapperName(layout));
  });
}

// --- What it says ---

namespace {

/// What follows a key such as "MDL:" in a device identifier; "" without the key.
std::string_view deviceValue(std::string_view deviceId, std::string_view key) {
  while (!deviceId.empty()) {
    const std::size_t end = std::min(deviceId.find(';'), deviceId.size());
    const std::string_view part = trimmed(deviceId.substr(0, end));
    if (part.starts_with(key)) return trimmed(part.substr(key.size()));
    deviceId.remove_prefix(std::min(end + 1, deviceId.size()));
  }
  return {};
}

}  // namespace

std::string RecordFacts::printer() const {
  std::string_view model = deviceValue(deviceId, "MDL:");
  if (model.empty()) model = deviceValue(deviceId, "MODEL:");
  std::string text(model.empty() ? std::string_view(deviceId) : model);
  if (!text.empty() && !serialNumber.empty()) text += ' ';
  return text + serialNumber;
}

namespace {

RecordFacts factsOf(const std::string& place, const receiver::Report& report,
                    const FileState& state) {
  RecordFacts facts;
  facts.date = static_cast<std::time_t>(state.modified / 1'000'000'000);
  facts.name = hostName(place);
  facts.kind = place.ends_with(".PLM") ? RecordKind::printerLog : RecordKind::application;
  if (readable(report) == nullptr) return facts;
  const receiver::Document& document = *readable(report);
  const bool application = document.layout == receiver::Layout::application;
  facts.kind = application ? RecordKind::application : RecordKind::printerLog;
  facts.deviceId = document.value("DeviceID");
  facts.serialNumber = document.value("SN");
  if (const auto moment = momentOf(document.value("Date"))) {
    facts.date = *moment;
    facts.dated = true;
  }
  return facts;
}

}  // namespace

// --- Reading it ---

namespace {

RecordReading failure(std::string complaint) {
  RecordReading reading;
  reading.complaint = std::move(complaint);
  reading.unreadable = true;
  return reading;
}

RecordReading openFailure(int error) {
  RecordReading reading = failure(error == ELOOP ? "a link" : systemMessage(error));
  reading.vanished = error == ENOENT;
  reading.unreadable = error != ELOOP;
  return reading;
}

/// One document of the largest kind does not keep its memory while the others are read.
void makeRoom(std::string& buffer, std::size_t room) {
  constexpr std::size_t keptBytes = std::size_t{1} << 20;
  if (buffer.size() > keptBytes && room <= keptBytes) std::string().swap(buffer);
  if (buffer.size() < room) buffer.resize(room);
}

RecordReading readOpen(const InputFile& file, const std::string& place, std::string& buffer) {
  struct stat status {};
  if (::fstat(file.number(), &status) != 0) return failure(systemMessage(errno));
  RecordReading reading;
  reading.state = FileState(status);
  if (!S_ISREG(status.st_mode)) {
    reading.complaint = "not a regular file";
    return reading;
  }
  if (reading.state.size > largestDocument) return failure("larger than any document can be");
  makeRoom(buffer, reading.state.size + 1);
  const auto [length, error] = file.readAll(reading.state.size, largestDocument, buffer);
  if (error != 0) return failure(systemMessage(error));
  const std::string_view bytes(buffer.data(), length);
  if (!isOurs(bytes)) {
    reading.complaint = length == 0 ? "empty" : "not a document of this library";
    return reading;
  }
  reading.report = receiver::examine(bytes);
  reading.facts = factsOf(place, reading.report, reading.state);
  return reading;
}

}  // namespace

RecordReading readRecord(const std::string& folder, const std::string& place, std::string& buffer) {
  try {
    const InputFile file(folder + place, interrupted, O_NONBLOCK | O_NOFOLLOW);
    return file.number() < 0 ? openFailure(errno) : readOpen(file, place, buffer);
  } catch (const std::bad_alloc&) {
    std::string().swap(buffer);
    return failure("too large for the available memory");
  }
}

}  // namespace wenlolib::tools
