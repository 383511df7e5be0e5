#include "Verdicts.h"

#include "Format.h"
#include "base/EnumTable.h"

namespace wenlolib::tools {
namespace {

using receiver::Fault;
using receiver::Layer;
using receiver::Layout;

struct Names {
  std::string_view code;
  std::string_view phrase;
};

constexpr EnumTable<Layout, Names> layouts({
    {Layout::application, {"application", "application usage"}},
    {Layout::printer, {"printer", "printer log, newer tag type"}},
    {Layout::printerOlderTag, {"printer_older_tag", "printer log, older tag type"}},
});

constexpr EnumTable<Layer, Names> layers({
    {Layer::none, {"none", ""}},
    {Layer::xml, {"xml", "not XML"}},
    {Layer::whiteSpace, {"white_space", "white space"}},
    {Layer::layout, {"layout", "wrong layout"}},
    {Layer::cipherMarker, {"cipher_marker", "wrong cipher marker"}},
    {Layer::hexadecimal, {"hexadecimal", "bad hexadecimal"}},
    {Layer::checksum, {"checksum", "wrong checksum"}},
    {Layer::contents, {"contents", "undecodable contents"}},
});

struct FaultNames {
  std::string_view code;
  Condition condition;
};

constexpr EnumTable<Fault, FaultNames> faults({
    {Fault::none, {"none", Condition::sound}},
    {Fault::truncated, {"truncated", Condition::truncated}},
    {Fault::damaged, {"damaged", Condition::damaged}},
    {Fault::altered, {"altered", Condition::altered}},
    {Fault::repaired, {"repaired", Condition::repaired}},
});

struct ConditionNames {
  std::string_view word;
  Colour colour;
};

constexpr EnumTable<Condition, ConditionNames> conditions({
    {Condition::sound, {"sound", Colour::good}},
    {Condition::truncated, {"truncated", Colour::bad}},
    {Condition::damaged, {"damaged", Colour::bad}},
    {Condition::altered, {"altered", Colour::bad}},
    {Condition::repaired, {"repaired", Colour::doubtful}},
    {Condition::illegible, {"illegible", Colour::doubtful}},
});

}  // namespace

std::string_view code(Layout layout) {
  return layouts[layout].code;
}

std::string_view code(Layer layer) {
  return layers[layer].code;
}

std::string_view code(Fault fault) {
  return faults[fault].code;
}

Condition conditionOf(const receiver::Verdict& verdict) {
  const bool illegible = verdict.fault == Fault::none && !verdict.sound();
  return illegible ? Condition::illegible : faults[verdict.fault].condition;
}

std::string_view word(Condition condition) {
  return conditions[condition].word;
}

Colour colourOf(Condition condition) {
  return conditions[condition].colour;
}

std::string_view description(Layout layout) {
  return layouts[layout].phrase;
}

std::string description(const receiver::Verdict& verdict) {
  std::string text(layers[verdict.layer].phrase);
  text += " at byte " + grouped(verdict.offset);
  if (!verdict.field.empty()) text += ", " + verdict.field;
  if (!verdict.explanation.empty()) text += ": " + verdict.explanation;
  return text;
}

std::string_view cipherName(char marker) {
  return marker == 'X' ? "XOR" : "RC4";
}

}  // namespace wenlolib::tools
