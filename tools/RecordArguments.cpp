#include "RecordArguments.h"

#include "OptionWord.h"
#include "base/Utf8.h"
#include "record/HeaderValues.h"

namespace wenlolib::tools {
namespace {

/// The library takes a text that is not UTF-8 for none at all.
const CLI::Validator& utf8() {
  static const CLI::Validator validator(
      [](const std::string& text) { return isUtf8(text) ? "" : "the text is not UTF-8"; }, "");
  return validator;
}

void addText(CLI::App& call, const char* option, Text& value, const char* description) {
  call.add_option(option, value, description)->type_name("TEXT")->check(utf8());
}

}  // namespace

void requireKind(CLI::App& call) {
  call.require_subcommand(0, 1);
  call.callback([&call] {
    if (call.get_subcommands().empty())
      throw CLI::RequiredError(call.get_name() + ": app or printer");
  });
}

void addRecordArguments(CLI::App& call, RecordArguments& arguments) {
  call.add_option("--name", arguments.name, "The name that the file gets")
      ->type_name("TEXT")
      ->required()
      ->check(utf8());
  addOptionWord(call, arguments.option);
  if (arguments.kind == RecordKind::printerLog) {
    addText(call, "--device-id", arguments.deviceId, "The printer's device identifier");
    addText(call, "--sn", arguments.serialNumber, "Its serial number");
    addText(call, "--romver", arguments.romVersion, "The version of its ROM");
    call.add_flag("--new-tag-type", arguments.newTagType,
                  "The newer layout, which leaves these three out");
  }
  call.add_option("FILE", arguments.file, "The contents, - for standard input (default)")
      ->type_name("");
}

RecordRequest requestOf(const RecordArguments& arguments) {
  RecordRequest request;
  request.kind = arguments.kind;
  request.name = arguments.name;
  request.option = optionWord(arguments.option);
  const auto add = [&](std::string_view key, const Text& value) {
    if (value) request.printer.emplace(key, *value);
  };
  add(deviceIdKey, arguments.deviceId);
  add(serialNumberKey, arguments.serialNumber);
  add(romVersionKey, arguments.romVersion);
  if (arguments.newTagType) request.printer.emplace(newTagTypeKey, true);
  return request;
}

}  // namespace wenlolib::tools
