#include "receiver/Layouts.h"

#include <algorithm>
#include <array>

#include "base/EnumTable.h"

namespace wenlolib::receiver {
namespace {

constexpr Slot checksum = {Part::attribute, "SUM", " SUM=\"", "\">"};
constexpr Slot version = {Part::element, "Version", "<Version>", "</Version>"};
constexpr Slot osVersion = {Part::element, "OSVersion", "<OSVersion>", "</OSVersion>"};
constexpr Slot date = {Part::element, "Date", "<Date>", "</Date>"};
constexpr Slot locale = {Part::element, "Locale", "<Locale>", "</Locale>"};
constexpr Slot identifier = {Part::element, "ID", "<ID>", "</ID>"};
constexpr Slot marker = {Part::attribute, "C", " C=\"", "\">"};

constexpr Slot markup(std::string_view name, std::string_view text) {
  return {Part::markup, name, text, ""};
}

constexpr std::array<Slot, 11> applicationSlots = {
    markup("OrvanQXApplication", "<OrvanQXApplication"),
    checksum,
    version,
    osVersion,
    date,
    locale,
    identifier,
    markup("Encrypted", "<Encrypted"),
    marker,
    {Part::payload, "Encrypted", "", "</Encrypted>"},
    markup("OrvanQXApplication", "</OrvanQXApplication>"),
};

constexpr std::array<Slot, 11> printerSlots = {
    markup("OrvanQX2Application", "<OrvanQX2Application"),
    checksum,
    version,
    osVersion,
    date,
    locale,
    identifier,
    markup("Encrypted", "<Encrypted"),
    marker,
    {Part::payload, "Encrypted", "", "</Encrypted>"},
    markup("OrvanQX2Application", "</OrvanQX2Application>"),
};

constexpr std::array<Slot, mostSlots> olderTagSlots = {
    markup("OrvanQXPrinter", "<OrvanQXPrinter"),
    checksum,
    version,
    osVersion,
    date,
    locale,
    identifier,
    markup("Printer", "<Printer>"),
    {Part::element, "DeviceID", "<DeviceID>", "</DeviceID>"},
    {Part::element, "SN", "<SN>", "</SN>"},
    {Part::element, "ROMVER", "<ROMVER>", "</ROMVER>"},
    markup("PLI", "<PLI"),
    marker,
    {Part::payload, "PLI", "", "</PLI>"},
    markup("Printer", "</Printer>"),
    markup("OrvanQXPrinter", "</OrvanQXPrinter>"),
};

constexpr EnumTable<Layout, std::span<const Slot>> slots({
    {Layout::application, applicationSlots},
    {Layout::printer, printerSlots},
    {Layout::printerOlderTag, olderTagSlots},
});

}  // namespace

std::span<const Slot> slotsOf(Layout layout) {
  return slots[layout];
}

std::string_view wrapperName(Layout layout) {
  return slotsOf(layout).front().name;
}

bool isWrapperName(std::string_view name) {
  return std::ranges::any_of(enumerators<Layout>,
                             [&](Layout layout) { return name == wrapperName(layout); });
}

bool endsInWrapper(std::string_view bytes) {
  bytes = bytes.substr(0, bytes.find_last_not_of(" \t\r\n") + 1);
  return std::ranges::any_of(enumerators<Layout>, [&](Layout layout) {
    return bytes.ends_with(slotsOf(layout).back().opening);
  });
}

}  // namespace wenlolib::receiver
