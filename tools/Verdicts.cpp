#include "Verdicts.h"

#include <array>

#include "Format.h"

namespace wenlolib::tools {
namespace {

using receiver::Fault;
using receiver::Layer;
using receiver::Layout;

struct LayerNames {
  std::string_view code;
  std::string_view phrase;
};

// In the order of `receiver::Layer`.
constexpr std::array<LayerNames, 8> layers = {{{"none", ""},
                                               {"xml", "not XML"},
                                               {"white_space", "white space"},
                                               {"layout", "wrong layout"},
                                               {"cipher_marker", "wrong cipher marker"},
                                               {"hexadecimal", "bad hexadecimal"},
                                               {"checksum", "wrong checksum"},
                                               {"contents", "undecodable contents"}}};

const LayerNames& names(Layer layer) {
  return layers.at(static_cast<std::size_t>(layer));
}

}  // namespace

std::string_view code(Layout layout) {
  switch (layout) {
    case Layout::application:
      return "application";
    case Layout::printer:
      return "printer";
    case Layout::printerOlderTag:
      return "printer_older_tag";
  }
  return "";
}

std::string_view code(Layer layer) {
  return names(layer).code;
}

std::string_view code(Fault fault) {
  switch (fault) {
    case Fault::none:
      return "none";
    case Fault::truncated:
      return "truncated";
    case Fault::damaged:
      return "damaged";
    case Fault::altered:
      return "altered";
    case Fault::repaired:
      return "repaired";
  }
  return "";
}

Condition conditionOf(const receiver::Verdict& verdict) {
  switch (verdict.fault) {
    case Fault::none:
      return verdict.sound() ? Condition::sound : Condition::illegible;
    case Fault::truncated:
      return Condition::truncated;
    case Fault::damaged:
      return Condition::damaged;
    case Fault::altered:
      return Condition::altered;
    case Fault::repaired:
      return Condition::repaired;
  }
  return Condition::damaged;
}

std::string_view word(Condition condition) {
  constexpr std::array<std::string_view, conditions> words = {"sound",   "truncated", "damaged",
                                                              "altered", "repaired",  "illegible"};
  return words.at(static_cast<std::size_t>(condition));
}

Colour colourOf(Condition condition) {
  if (condition == Condition::sound) return Colour::good;
  const bool unharmed = condition == Condition::repaired || condition == Condition::illegible;
  return unharmed ? Colour::doubtful : Colour::bad;
}

std::string_view description(Layout layout) {
  switch (layout) {
    case Layout::application:
      return "application usage";
    case Layout::printer:
      return "printer log, newer tag type";
    case Layout::printerOlderTag:
      return "printer log, older tag type";
  }
  return "";
}

std::string description(const receiver::Verdict& verdict) {
  std::string text(names(verdict.layer).phrase);
  text += " at byte " + grouped(verdict.offset);
  if (!verdict.field.empty()) text += ", " + verdict.field;
  if (!verdict.explanation.empty()) text += ": " + verdict.explanation;
  return text;
}

std::string_view cipherName(char marker) {
  return marker == 'X' ? "XOR" : "RC4";
}

}  // namespace wenlolib::tools
