#include "platform/linux/XmlPropertyListReader.h"

#include <new>
#include <utility>

#include "platform/linux/ExpatParser.h"
#include "platform/linux/PlainXml.h"
#include "platform/linux/PropertyListPrologue.h"
#include "platform/linux/XmlPropertyListDocument.h"

namespace wenlolib::platform::gnulinux {
namespace {

/// Brings expat's events to the document.
class Reader {
 public:
  explicit Reader(std::string_view bytes) : bytes_(bytes), document_(bytes.size()) {}

  std::optional<Dictionary> read();

 private:
  static Reader& from(void* self) { return *static_cast<Reader*>(self); }
  static void XMLCALL onStart(void* self, const XML_Char* name, const XML_Char** attributes);
  static void XMLCALL onEnd(void* self, const XML_Char* name);
  static void XMLCALL onCharacters(void* self, const XML_Char* text, int length);
  static void XMLCALL onDoctype(void* self, const XML_Char* name, const XML_Char* systemId,
                                const XML_Char* publicId, int hasInternalSubset);
  static void XMLCALL onSkippedEntity(void* self, const XML_Char* name, int isParameterEntity);

  std::string_view bytes_;
  ExpatParser parser_{nullptr};
  XmlPropertyListDocument document_;
};

void Reader::onStart(void* self, const XML_Char* name, const XML_Char**) {
  from(self).parser_.run([&] { return from(self).document_.start(name); });
}

void Reader::onEnd(void* self, const XML_Char* name) {
  from(self).parser_.run([&] { return from(self).document_.end(name); });
}

void Reader::onCharacters(void* self, const XML_Char* text, int length) {
  const std::string_view characters(text, static_cast<std::size_t>(length));
  from(self).parser_.run([&] { return from(self).document_.characters(characters); });
}

/// Declarations inside the document can multiply its size (entities) or the time it takes
/// (defaults of attributes), and no property list needs any.
void Reader::onDoctype(void* self, const XML_Char*, const XML_Char*, const XML_Char*,
                       int hasInternalSubset) {
  from(self).parser_.run([&] { return hasInternalSubset == 0; });
}

/// With a DTD elsewhere an unknown entity is no error of form, but its text would be missing.
void Reader::onSkippedEntity(void* self, const XML_Char*, int) {
  from(self).parser_.run([] { return false; });
}

std::optional<Dictionary> Reader::read() {
  if (!parser_.valid()) throw std::bad_alloc();
  XML_SetUserData(parser_.handle(), this);
  XML_SetElementHandler(parser_.handle(), onStart, onEnd);
  XML_SetCharacterDataHandler(parser_.handle(), onCharacters);
  XML_SetStartDoctypeDeclHandler(parser_.handle(), onDoctype);
  XML_SetSkippedEntityHandler(parser_.handle(), onSkippedEntity);
  if (!parser_.feed(bytes_, true)) return std::nullopt;
  return std::move(document_).finish();
}

/// The files that a record reads are small and nearly always plain, and expat takes longer to set
/// itself up than to read them.
std::optional<Dictionary> readPlain(std::string_view bytes) {
  if (!bytes.starts_with(propertyListPrologue)) return std::nullopt;
  XmlPropertyListDocument document(bytes.size());
  bytes.remove_prefix(propertyListPrologue.size());
  if (!readPlainXml(bytes, document)) return std::nullopt;
  return std::move(document).finish();
}

}  // namespace

std::optional<Dictionary> readXmlPropertyList(std::string_view bytes) {
  if (auto dictionary = readPlain(bytes)) return dictionary;
  return Reader(bytes).read();
}

}  // namespace wenlolib::platform::gnulinux
