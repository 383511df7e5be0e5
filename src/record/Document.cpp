#include "record/Document.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>
#include <span>
#include <utility>

#include "base/Answered.h"
#include "base/Trace.h"
#include "codec/Encryption.h"
#include "platform/Platform.h"
#include "toolkit/DateLayouts.h"
#include "toolkit/SharedNames.h"
#include "wenlolib/CommonTooWenlolib.h"
#include "wenlolib/codec.h"

namespace wenlolib {

// --- The date ---

std::string dateFormat(const Text& zone) {
  const std::string format = "%Y-%m-%dT%H:%M:%S";
  if (!zone || zone->size() < 2) return format + "%z";
  const std::size_t head = zone->size() - 2;
  return format + zone->substr(0, head) + ":" + zone->substr(head);
}

Text currentDateText(platform::Calendar& calendar) {
  const std::int32_t system = CommonTooWenlolib::systemVersionNum();
  const Instant now = platform::current().clock->now();
  if (system == -1 || system >= componentDatesOSVersion) {
    return zonedDate(calendar, now);
  }
  // Both use the same instant, so the offset is the one in force at that date.
  const Text zone = calendar.formatted(now, "%z");
  return calendar.formatted(now, dateFormat(zone));
}

// --- The payload ---

namespace {

constexpr char encryptedLabel[] = "EncryptedData \n= ";

}  // namespace

std::optional<WorkingBuffers> WorkingBuffers::allocate(std::size_t n) noexcept {
  if (n > std::size_t{std::numeric_limits<std::int32_t>::max()}) return std::nullopt;
  WorkingBuffers buffers;
  buffers.input.reset(new (std::nothrow) std::uint8_t[n]);
  if (!buffers.input) {
    WENLOLIB_TRACE(" inBuff memory error \n");
    return std::nullopt;
  }
  buffers.cipher.reset(new (std::nothrow) std::uint8_t[2 * n]);
  const bool complete = buffers.cipher && answered(false, [&] {
                          buffers.digits.resize(2 * n);
                          return true;
                        });
  if (!complete) {
    WENLOLIB_TRACE(" outBuff memory error \n");
    return std::nullopt;
  }
  return buffers;
}

Payload protect(WorkingBuffers buffers, const Text& date, std::string_view contents) {
  const auto length = static_cast<std::int32_t>(contents.size());
  Payload payload;
  if (date) {
    std::ranges::copy(contents, buffers.input.get());
    std::array<std::uint8_t, 16> key{};
    CreateDigestMD5_CC(date->c_str(), key.data());
    payload.marker = encrypt(key, {buffers.input.get(), contents.size()}, buffers.cipher.get());
  } else {
    // Whatever the host's memory held before must not get into a file.
    std::fill_n(buffers.cipher.get(), contents.size(), std::uint8_t{0});
  }
  buffers.input.reset();
  if (payload.marker == 'R') hexPrint(encryptedLabel, buffers.cipher.get(), length);
  ConvertHexToCharData(buffers.cipher.get(), buffers.digits.data(), length, 1);
  if (payload.marker == 'X') hexPrint(encryptedLabel, buffers.cipher.get(), length / 2);
  payload.digits = std::move(buffers.digits);
  return payload;
}

// --- The document around it ---

namespace {

std::string_view valueOf(Field field, const Header& header, const Payload& payload) {
  if (field == Field::checksum) return "00000000000000000000000000000000";  // until it is known
  if (field == Field::marker) return {&payload.marker, 1};
  return field == Field::payload ? payload.digits : header[field];
}

/// Enough for the text in one piece: a large document must not grow step by step.
std::size_t capacityFor(const Header& header, const Payload& payload) {
  std::size_t capacity = 512 + payload.digits.size();
  for (const Field field : enumerators<Field>) capacity += header[field].size();
  return capacity;
}

void writeChecksum(const char* content, char* checksum) {
  std::array<std::uint8_t, checksumLength / 2> digest{};
  CreateDigestMD5_CC(content, digest.data());
  ConvertHexToCharData(digest.data(), checksum, std::int32_t{digest.size()}, 1);
}

}  // namespace

SurveyDocument assemble(Layout layout, const Header& header, const Payload& payload) {
  SurveyDocument document;
  std::string& text = document.text;
  text.reserve(capacityFor(header, payload));
  const std::span<const Slot> slots = slotsOf(layout);
  std::size_t checksum = 0;
  for (const Slot& slot : slots.first(slots.size() - 1)) {
    text.append(slot.opening);
    if (slot.field == Field::checksum) checksum = text.size();
    if (slot.field == Field::payload) document.digits = {text.size(), payload.digits.size()};
    text.append(valueOf(slot.field, header, payload)).append(slot.closing);
  }
  // Until the wrapper's end tag is written, everything after its start tag is content. So the
  // content can be digested in place, as the NUL-terminated text that it is at this moment.
  const std::size_t content = checksum + checksumLength + slots[checksumSlot].closing.size();
  writeChecksum(text.c_str() + content, text.data() + checksum);
  text.append(slots.back().opening);
  return document;
}

}  // namespace wenlolib
