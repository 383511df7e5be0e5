/// The elements of an XML property list, one after the other.
#ifndef WENLOLIB_PLATFORM_LINUX_XMLPROPERTYLISTDOCUMENT_H
#define WENLOLIB_PLATFORM_LINUX_XMLPROPERTYLISTDOCUMENT_H

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/Value.h"
#include "platform/linux/PlainXml.h"
#include "platform/linux/PropertyListBuilder.h"

namespace wenlolib::platform::gnulinux {

struct XmlPropertyListElement;

/// Follows a well-formed document from tag to tag. Each step answers false where the document turns
/// out to be no property list, or beyond the bounds.
class XmlPropertyListDocument : public XmlEvents {
 public:
  /// `bytes` is the size of the file.
  explicit XmlPropertyListDocument(std::size_t bytes) : builder_(bytes) {}

  [[nodiscard]] bool start(std::string_view name) override;
  [[nodiscard]] bool end(std::string_view name) override;
  [[nodiscard]] bool characters(std::string_view text) override;
  [[nodiscard]] std::optional<Dictionary> finish() && { return std::move(builder_).finish(); }

 private:
  PropertyListBuilder builder_;
  bool started_ = false;
  const XmlPropertyListElement* leaf_ = nullptr;  // The open element that holds text, if any.
  std::string text_;                              // What it holds so far.
};

}  // namespace wenlolib::platform::gnulinux

#endif
