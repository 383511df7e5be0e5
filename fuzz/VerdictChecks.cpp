#include <string>

#include "Checks.h"
#include "Require.h"
#include "Shown.h"
#include "base/Utf8.h"
#include "calls/Verify.h"
#include "documents/DocumentJson.h"
#include "documents/DocumentText.h"
#include "reading/Codes.h"
#include "terminal/VisibleText.h"

namespace wenlolib::fuzz {
namespace {

std::string withoutBlanks(std::string text) {
  std::erase_if(text, [](char c) { return c == ' ' || c == '\n'; });
  return text;
}

/// The line on the verdict says what the report says, and is a single line unless it is broken.
void checkVerdictLine(const receiver::Verdict& verdict) {
  const std::string line = tools::verdictLine(path, verdict, {tools::Paint(false), 0});
  require(isUtf8(line) && steersNothing(line), "a verdict is harmless on a terminal");
  require(line.find('\n') == line.size() - 1 && line.find('\t') == std::string::npos,
          "a verdict is one line");
  const std::string name = tools::visibleLine(path);
  const std::size_t at = line.find(name);
  require(at != std::string::npos, "a verdict names its document");
  const std::string word = line.substr(0, line.find(' '));
  require(word == tools::wordFor(tools::conditionOf(verdict)), "a verdict begins with its word");
  require((word == "sound") == verdict.sound(), "only what is sound is called sound");
  require((line.size() == at + name.size() + 1) == verdict.sound(),
          "what is not sound is described, and nothing else");
  const std::string broken = tools::verdictLine(path, verdict, {tools::Paint(false), 80});
  require(isUtf8(broken) && steersNothing(broken), "a broken line is harmless too");
  require(withoutBlanks(broken) == withoutBlanks(line), "a broken line says the same");
}

void checkVerdictJson(std::string_view bytes, const receiver::Verdict& verdict) {
  const std::string line = tools::verdictJson(path, bytes.size(), verdict);
  require(line.find('\n') == line.size() - 1, "a verdict's JSON is one line");
  const Json object = Json::parse(line);
  require(textIn(object, "path") == path, "it gives the path back");
  require(object["bytes"] == bytes.size(), "it gives the size back");
  require(object["sound"] == verdict.sound(), "it says whether the document is sound");
  require(object["fault"] == code(verdict.fault), "it gives the fault back");
  require(object["layer"] == code(verdict.layer), "it gives the layer back");
  const Json offset = verdict.sound() ? Json() : Json(verdict.offset);
  require(object["offset"] == offset, "it gives the offset back where something is wrong");
  require(textIn(object, "field").value_or("") == verdict.field, "it gives the field back");
  require(textIn(object, "explanation").value_or("") == verdict.explanation,
          "it gives the explanation back");
}

}  // namespace

void checkShownVerdict(std::string_view bytes, const receiver::Verdict& verdict) {
  checkVerdictLine(verdict);
  checkVerdictJson(bytes, verdict);
}

}  // namespace wenlolib::fuzz
