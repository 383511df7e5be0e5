#include "Written.h"

#include <algorithm>
#include <cmath>

#include "Reading.h"
#include "plist/PropertyList.h"
#include "xml/Escape.h"

namespace wenlolib::tests::lists {
namespace {

/// A list in which another value stands for each scalar, and another text for each key.
struct Changed {
  Value (*change)(const Value& scalar);

  Value operator()(const Dictionary& entries) const {
    Dictionary others;
    for (const auto& [key, value] : entries) {
      others.insert_or_assign(*change(key).text(), value.visit(*this));
    }
    return others;
  }
  Value operator()(const Value::Array& items) const {
    Value::Array others;
    for (const Value& item : items) others.push_back(item.visit(*this));
    return others;
  }
  template <class Scalar>
  Value operator()(const Scalar& scalar) const {
    return change(scalar);
  }
};

Value withoutFraction(const Value& scalar) {
  if (scalar.date() == nullptr) return scalar;
  return Instant(Seconds(std::floor(scalar.date()->time_since_epoch().count())));
}

Value withoutSignOfZero(const Value& scalar) {
  return scalar == Value(0.0) ? Value(0.0) : scalar;
}

Value withoutCarriageReturn(const Value& scalar) {
  if (scalar.text() == nullptr) return scalar;
  std::string text = *scalar.text();
  std::replace(text.begin(), text.end(), '\r', '\n');
  return text;
}

Value withoutControl(const Value& scalar) {
  const bool isCarried = scalar.text() == nullptr || xml::isXmlText(*scalar.text());
  return isCarried ? scalar : Value("control");
}

struct Feature {
  const char* name;
  bool (*concerns)(Writer writer);
  Value (*without)(const Value& scalar);
};

bool isXml(Writer writer) {
  return writer != Writer::theirsInBinary;
}
bool isTheirXml(Writer writer) {
  return writer == Writer::theirsInXml;
}

const Feature features[] = {
    {"written: the fraction of a second in XML", isXml, withoutFraction},
    {"written: a control character in XML", isXml, withoutControl},
    {"written: a carriage return in XML", isTheirXml, withoutCarriageReturn},
    {"written: the sign of zero in XML", isTheirXml, withoutSignOfZero},
};

bool isReadBack(const Dictionary& list, Writer writer) {
  const std::string bytes = written(list, writer);
  const std::string expected = shown(list);
  return ours(bytes).value == expected && theirs(bytes).value == expected;
}

}  // namespace

std::string written(const Dictionary& list, Writer writer) {
  if (writer == Writer::ours) return plist::write(list).value_or("");
  return written(objectFrom(list).get(), writer == Writer::theirsInXml
                                             ? kCFPropertyListXMLFormat_v1_0
                                             : kCFPropertyListBinaryFormat_v1_0);
}

std::optional<Names> writtenExplanation(const Dictionary& list, Writer writer) {
  Names names;
  Dictionary rest = list;
  for (const Feature& feature : features) {
    if (isReadBack(rest, writer)) return names;
    if (!feature.concerns(writer)) continue;
    const Dictionary other = *Changed{feature.without}(rest).dictionary();
    if (shown(other) == shown(rest)) continue;
    names.insert(feature.name);
    rest = other;
  }
  return isReadBack(rest, writer) ? std::optional(names) : std::nullopt;
}

std::vector<std::string> allWrittenNames() {
  std::vector<std::string> names;
  for (const Feature& feature : features) names.emplace_back(feature.name);
  return names;
}

}  // namespace wenlolib::tests::lists
