#include "codec/Layouts.h"

#include <array>

#include "base/EnumTable.h"

namespace wenlolib {
namespace {

constexpr Slot checksum = {Part::attribute, Field::checksum, "SUM", " SUM=\"", "\">"};
constexpr Slot version = {Part::element, Field::version, "Version", "<Version>", "</Version>"};
constexpr Slot osVersion = {Part::element, Field::osVersion, "OSVersion", "<OSVersion>",
                            "</OSVersion>"};
constexpr Slot date = {Part::element, Field::date, "Date", "<Date>", "</Date>"};
constexpr Slot locale = {Part::element, Field::locale, "Locale", "<Locale>", "</Locale>"};
constexpr Slot identifier = {Part::element, Field::identifier, "ID", "<ID>", "</ID>"};
constexpr Slot marker = {Part::attribute, Field::marker, "C", " C=\"", "\">"};

constexpr Slot markup(std::string_view name, std::string_view text) {
  return {Part::markup, Field::none, name, text, ""};
}

/// The two layouts without a printer's identity differ only in the name of their wrapper.
constexpr std::array<Slot, 11> slotsWithin(std::string_view wrapper, std::string_view opening,
                                           std::string_view closing) {
  return {markup(wrapper, opening),
          checksum,
          version,
          osVersion,
          date,
          locale,
          identifier,
          markup("Encrypted", "<Encrypted"),
          marker,
          {Part::payload, Field::payload, "Encrypted", "", "</Encrypted>"},
          markup(wrapper, closing)};
}

constexpr auto applicationSlots =
    slotsWithin("OrvanQXApplication", "<OrvanQXApplication", "</OrvanQXApplication>");
constexpr auto printerSlots =
    slotsWithin("OrvanQX2Application", "<OrvanQX2Application", "</OrvanQX2Application>");

constexpr std::array<Slot, mostSlots> olderTagSlots = {
    markup("OrvanQXPrinter", "<OrvanQXPrinter"),
    checksum,
    version,
    osVersion,
    date,
    locale,
    identifier,
    markup("Printer", "<Printer>"),
    {Part::element, Field::deviceId, "DeviceID", "<DeviceID>", "</DeviceID>"},
    {Part::element, Field::serialNumber, "SN", "<SN>", "</SN>"},
    {Part::element, Field::romVersion, "ROMVER", "<ROMVER>", "</ROMVER>"},
    markup("PLI", "<PLI"),
    marker,
    {Part::payload, Field::payload, "PLI", "", "</PLI>"},
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

}  // namespace wenlolib
