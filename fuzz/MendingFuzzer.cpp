// Any bytes, as the values of a document that is to be mended.
#include <cstddef>
#include <cstdint>
#include <string>

#include "Input.h"
#include "Require.h"
#include "record/Document.h"
#include "xml/Mending.h"
#include "xml/Parser.h"
#include "xml/WellFormed.h"

namespace {

using namespace wenlolib;
using fuzz::Input;
using fuzz::require;
using xml::mend;
using xml::Parser;
using xml::Service;

/// Whether expat, shown every byte, finds the text well-formed.
bool stands(const std::string& text) {
  xml::Parser parser("UTF-8");
  return parser.feed(text, true);
}

SurveyDocument documentFrom(Input& input) {
  const auto layout = static_cast<Layout>(input.below(3));
  Header header;
  for (std::string* value :
       {&header[Field::version], &header[Field::osVersion], &header[Field::date],
        &header[Field::locale], &header[Field::identifier], &header[Field::deviceId],
        &header[Field::serialNumber], &header[Field::romVersion]}) {
    *value = input.text();
  }
  Payload payload;
  payload.digits.assign(2 * input.below(70), 'A');
  return assemble(layout, header, payload);
}

/// A mended document is well-formed, and there is nothing left to mend in it.
void checkMended(const SurveyDocument& document, const std::string& mended) {
  require(stands(mended), "a mended document is well-formed");
  require(xml::mend(mended) == mended, "mending again changes nothing");
  require(mended.size() > document.text.size(), "mending only adds");
  const std::size_t following = document.text.size() - document.digits.offset;
  const std::string digits = document.text.substr(document.digits.offset, document.digits.length);
  require(mended.find(">" + digits + "<", document.digits.offset - 1) != std::string::npos,
          "the payload is as it was");
  require(following >= digits.size(), "the payload stands in the document");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const SurveyDocument document = documentFrom(input);
  const Text answer = Service().serialised(document.text, document.digits);
  const std::string mended = xml::mend(document.text);
  if (stands(document.text)) {
    require(answer == document.text, "a well-formed document is not changed");
    require(stands(mended), "mending does not break a well-formed document");
  } else if (answer) {
    require(*answer == mended, "the document is mended, and no more");
    checkMended(document, *answer);
  } else {
    require(!stands(mended), "what can be mended is mended");
  }
  return 0;
}
