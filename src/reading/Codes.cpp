#include "reading/Codes.h"

#include "base/EnumTable.h"

namespace wenlolib {
namespace {

using receiver::Fault;
using receiver::Layer;
using receiver::Layout;

constexpr EnumTable<Layout, std::string_view> layouts({
    {Layout::application, "application"},
    {Layout::printer, "printer"},
    {Layout::printerOlderTag, "printer_older_tag"},
});

constexpr EnumTable<Layer, std::string_view> layers({
    {Layer::none, "none"},
    {Layer::xml, "xml"},
    {Layer::whiteSpace, "white_space"},
    {Layer::layout, "layout"},
    {Layer::cipherMarker, "cipher_marker"},
    {Layer::hexadecimal, "hexadecimal"},
    {Layer::checksum, "checksum"},
    {Layer::contents, "contents"},
});

constexpr EnumTable<Fault, std::string_view> faults({
    {Fault::none, "none"},
    {Fault::truncated, "truncated"},
    {Fault::damaged, "damaged"},
    {Fault::altered, "altered"},
    {Fault::repaired, "repaired"},
    {Fault::foreign, "foreign"},
});

}  // namespace

std::string_view code(Layout layout) {
  return layouts[layout];
}

std::string_view code(Layer layer) {
  return layers[layer];
}

std::string_view code(Fault fault) {
  return faults[fault];
}

std::optional<std::string_view> cipherName(char marker) {
  if (marker == '\0') return std::nullopt;
  return marker == 'X' ? "XOR" : "RC4";
}

}  // namespace wenlolib
