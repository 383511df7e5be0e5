#include "platform/apple/ApplePropertyLists.h"

#include <algorithm>
#include <string_view>

#include "platform/apple/PropertyListFile.h"
#include "platform/apple/Strings.h"
#include "platform/apple/Values.h"
#include "platform/posix/CancellationHold.h"

namespace wenlolib::platform::apple {
namespace {

Bytes bytesIn(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

/// Core Foundation writes control characters as they are, and then refuses to read them.
bool isXmlText(std::string_view text) {
  return std::ranges::none_of(text, [](char character) {
    return static_cast<unsigned char>(character) < ' ' && character != '\t' && character != '\n' &&
           character != '\r';
  });
}

/// Whether every text in a value can stand in the XML form.
struct Carriable {
  bool operator()(const std::string& text) const { return isXmlText(text); }
  bool operator()(const Value::Array& items) const {
    return std::ranges::all_of(items, [this](const Value& item) { return item.visit(*this); });
  }
  bool operator()(const Dictionary& entries) const {
    return std::ranges::all_of(entries, [this](const auto& entry) {
      return isXmlText(entry.first) && entry.second.visit(*this);
    });
  }
  template <class Other>
  bool operator()(const Other& /*no text in it*/) const {
    return true;
  }
};

}  // namespace

std::optional<Dictionary> ApplePropertyLists::read(const std::string& path) {
  const posix::CancellationHold hold;
  const Text real = root_.below(path);
  const auto bytes = real ? readPropertyListFile(*real) : std::nullopt;
  if (!bytes) return std::nullopt;
  const Owned<CFDataRef> data = dataFrom(bytesIn(*bytes));
  if (!data) throw std::bad_alloc();
  const Owned<CFPropertyListRef> list(CFPropertyListCreateWithData(
      nullptr, data.get(), kCFPropertyListImmutable, nullptr, nullptr));
  return dictionaryOf(list.get());
}

Text ApplePropertyLists::asXml(const Dictionary& dictionary) {
  if (!Carriable()(dictionary)) return std::nullopt;
  const Owned<CFTypeRef> object = objectFrom(dictionary);
  if (!object) return std::nullopt;
  const Owned<CFDataRef> data(
      CFPropertyListCreateData(nullptr, object.get(), kCFPropertyListXMLFormat_v1_0, 0, nullptr));
  if (!data) return std::nullopt;
  const Bytes bytes = bytesOf(data.get());
  return std::string(bytes.begin(), bytes.end());
}

}  // namespace wenlolib::platform::apple
