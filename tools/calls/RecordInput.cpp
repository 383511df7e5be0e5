#include "calls/RecordInput.h"

#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <string_view>

#include "base/Utf8.h"
#include "calls/CommandLine.h"
#include "reading/InputFile.h"
#include "record/HeaderValues.h"
#include "terminal/Format.h"
#include "terminal/Interrupt.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tools {
namespace {

/// The library treats a text that is not UTF-8 as if there were none.
const CLI::Validator& utf8() {
  static const CLI::Validator validator(
      [](const std::string& text) { return isUtf8(text) ? "" : "the text is not UTF-8"; }, "");
  return validator;
}

void addText(CLI::App& call, const char* option, Text& value, const char* description) {
  call.add_option(option, value, description)->type_name("TEXT")->check(utf8());
}

}  // namespace

void addRecordArguments(CLI::App& call, RecordArguments& arguments) {
  call.add_option("--name", arguments.name, "The name that goes into the file name")
      ->type_name("TEXT")
      ->required()
      ->check(utf8());
  addOptionWord(call, arguments.option);
  if (arguments.kind == RecordKind::printerLog) {
    addText(call, "--device-id", arguments.deviceId, "The printer's device identifier");
    addText(call, "--sn", arguments.serialNumber, "Its serial number");
    addText(call, "--romver", arguments.romVersion, "The version of its ROM");
    call.add_flag("--new-tag-type", arguments.newTagType,
                  "Use the newer layout, without these three");
  }
  call.add_option("FILE", arguments.file, "The contents; - is standard input (default)")
      ->type_name("");
}

namespace {

/// An option that describes the printer, and the library's key for it.
struct Identity {
  const char* option;
  std::string_view key;
  const Text& value;
};

std::array<Identity, 3> identityOf(const RecordArguments& arguments) {
  return {{{"--device-id", deviceIdKey, arguments.deviceId},
           {"--sn", serialNumberKey, arguments.serialNumber},
           {"--romver", romVersionKey, arguments.romVersion}}};
}

}  // namespace

RecordRequest requestOf(const RecordArguments& arguments, Output& output) {
  RecordRequest request;
  request.kind = arguments.kind;
  request.name = arguments.name;
  request.option = optionWord(arguments.option);
  request.keep = arguments.keep;
  for (const auto& [option, key, value] : identityOf(arguments)) {
    if (value) request.printer.emplace(key, *value);
    if (value && arguments.newTagType) {
      output.complain(option, "left out: the layout of --new-tag-type has no place for it");
    }
  }
  if (arguments.newTagType) request.printer.emplace(newTagTypeKey, true);
  return request;
}

void complainOfValues(const RecordArguments& arguments, const std::string& what, Output& output) {
  bool told = false;
  for (const auto& [option, key, value] : identityOf(arguments)) {
    const Text fit = CommonTooWenlolib::convertStrToHeaderStr(value);
    if (!fit || value->starts_with(*fit)) continue;
    output.complain(option, what +
                                ": the library could not write this value. Leave out <, > and &, "
                                "and characters that XML does not allow.");
    told = true;
  }
  if (told) return;
  output.complain(arguments.name, what +
                                      ": a value contains markup that cannot be repaired, or a "
                                      "character that XML does not allow");
}

namespace {

/// The size of a regular file, to make room for its bytes; 0 if it is not known.
std::size_t sizeOf(int file) {
  struct stat status {};
  const bool known = ::fstat(file, &status) == 0 && S_ISREG(status.st_mode);
  return known ? static_cast<std::size_t>(status.st_size) : 0;
}

ContentsInput refusal(std::string complaint) {
  return {"", std::move(complaint)};
}

ContentsInput sizeRefusal(std::size_t most) {
  return refusal("the contents are too large: they must be smaller than " + sizeText(most + 1));
}

/// The offset of the first bytes that are not a character.
std::size_t firstNonUtf8(std::string_view text) {
  constexpr std::size_t longest = 4;
  std::size_t good = 0;
  while (good < text.size()) {
    std::size_t length = 1;
    while (length <= longest && !isUtf8(text.substr(good, length))) ++length;
    if (length > longest) break;
    good += length;
  }
  return good;
}

}  // namespace

ContentsInput readContents(const std::string& path, std::size_t most) {
  const InputFile file =
      path == "-" ? InputFile::standardInput(interrupted) : InputFile(path, interrupted);
  if (file.number() < 0) return refusal(systemMessage(errno));
  const std::size_t expected = sizeOf(file.number());
  if (expected > most) return sizeRefusal(most);
  constexpr std::size_t piece = std::size_t{64} << 10;
  ContentsInput input;
  input.contents.resize(expected + piece);
  const auto [length, error] = file.readAll(expected, most, input.contents);
  if (error == EFBIG) return sizeRefusal(most);
  if (error != 0) return refusal(systemMessage(error));
  input.contents.resize(length);
  if (isUtf8(input.contents)) return input;
  return refusal("the contents are not UTF-8 at byte " + groupDigits(firstNonUtf8(input.contents)));
}

}  // namespace wenlolib::tools
