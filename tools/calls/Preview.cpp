// `wenlolib preview`: what a record would write, without writing it.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string_view>
#include <system_error>

#include "base/Utf8.h"
#include "calls/CommandLine.h"
#include "calls/RecordInput.h"
#include "documents/DocumentText.h"
#include "explain/Explanation.h"
#include "library/ToolPlatform.h"
#include "terminal/Format.h"
#include "terminal/Output.h"
#include "terminal/VisibleText.h"

namespace wenlolib::tools {
namespace {

struct Arguments {
  RecordArguments record;
  bool bytes = false;
};

std::string folderNote(const std::string& path) {
  std::error_code error;
  const auto folder = std::filesystem::path(path).parent_path();
  if (std::filesystem::is_directory(folder, error)) return "";
  return "missing: record would fail now; wenlolib init makes PLM, ALM and Config";
}

std::string identifierNote(const PreviewedDocument& document) {
  if (!document.exampleIdentifier) return "the stored one";
  return fmt::format("an EXAMPLE, {{{}}}: none is stored yet, and the first record makes one",
                     exampleUuid);
}

constexpr std::size_t mostContentsShown = 2048;

/// The contents in clear: their beginning, if they are long.
std::string contentsText(std::string_view contents, const Paint& paint) {
  std::size_t shown = std::min(contents.size(), mostContentsShown);
  while (shown > 0 && !isUtf8(contents.substr(0, shown))) --shown;
  std::string text = "\ncontents in clear\n";
  std::istringstream lines(visibleText(contents.substr(0, shown)));
  for (std::string line; std::getline(lines, line);) {
    text += paint(Colour::faint, "  | ") + line + "\n";
  }
  if (contents.empty()) text += "  (none)\n";
  if (shown == contents.size()) return text;
  return text + "  (" + groupDigits(contents.size() - shown) + " bytes more)\n";
}

std::string previewText(const PreviewedDocument& document, RecordKind kind,
                        const std::string& realPath, const Explanation& decision,
                        const Style& style) {
  const std::size_t width = style.textWidth();
  Table table;
  if (const std::string note = folderNote(realPath); !note.empty()) table.add({"folder", note});
  table.add({"size",
             sizeText(document.bytes.size()) +
                 "; shown below with line breaks that are not in it (--bytes writes it as it is)"});
  if (document.replacing) table.add({"replaces", std::string(replacedText(kind))});
  table.add({"identifier", identifierNote(document)});
  table.add({"recording", outcomeText(decision, style.paint)});
  return fmt::format("path        {}\n{}\n{}", visibleLine(realPath), table.text(0, width),
                     foldDocument(document.bytes, width));
}

/// The contents. At a terminal they may be left out, and are then empty: nobody has to type them to
/// look at the document.
ContentsInput contentsOf(const RecordArguments& record) {
  if (!record.file && isTerminal(stdin)) return {};
  return readContents(record.file.value_or("-"));
}

void show(Output& output, const ToolPlatform& platform, const Arguments& arguments,
          const PreviewedDocument& document, std::string_view contents) {
  const RecordArguments& record = arguments.record;
  const std::string path = platform.real(document.path);
  if (arguments.bytes) {
    output.write(document.bytes);
    output.finish();
    if (document.replacing) {
      output.complain(path, fmt::format("record would replace {}", replacedText(record.kind)));
    }
    if (document.exampleIdentifier) {
      output.complain(path, "its identifier is an example: none is stored yet");
    }
    return;
  }
  const platform::Substitute substitute(platform.services());
  const Explanation decision = explain(record.kind, optionWord(record.option));
  output.write(previewText(document, record.kind, path, decision, output.style()));
  output.write(contentsText(contents, output.paint()));
}

void previewTo(Session& session, const Arguments& arguments) {
  const ToolPlatform platform(session.root);
  Output output("preview");
  ContentsInput input = contentsOf(arguments.record);
  if (!input.complaint.empty()) {
    output.complain(arguments.record.file.value_or("-"), input.complaint);
    session.exitStatus = unreadable;
    return;
  }
  RecordRequest request = requestOf(arguments.record, output);
  request.contents = std::move(input.contents);
  const Preview previewed = preview(platform.services(), request);
  if (previewed.document) {
    show(output, platform, arguments, *previewed.document, request.contents);
  } else if (previewed.unanswered) {
    output.complain(arguments.record.name, "no document: " + unansweredText(*previewed.unanswered));
    session.exitStatus = unreadable;
  } else {
    complainOfValues(arguments.record, "no document", output);
    session.exitStatus = notGood;
  }
  output.finish();
}

void addKind(CLI::App& call, Session& session, RecordKind kind, const char* name,
             const char* description, const char* examples) {
  const auto arguments = std::make_shared<Arguments>();
  arguments->record.kind = kind;
  CLI::App& one = *call.add_subcommand(name, description);
  addRecordArguments(one, arguments->record);
  one.add_flag("--bytes", arguments->bytes, "Write only the bytes of the document");
  one.footer(examples);
  one.callback([&session, arguments] { previewTo(session, *arguments); });
}

}  // namespace

void addPreview(CLI::App& app, Session& session) {
  CLI::App& call =
      *app.add_subcommand("preview", "Show the exact document that a record would write");
  requireKind(call);
  call.footer(
      "Shows the document as it would be written, and its contents in clear. Nothing\n"
      "is written, and no identifier is made. Exit status: 0 shown, 1 there is no\n"
      "document, 2 wrong usage, 3 something could not be read.\n\nExamples:\n"
      "  wenlolib preview app --name PhotoAlbum usage.txt\n"
      "  wenlolib preview printer --name QX200 --sn 4711 --bytes log.txt > QX200_1.PLM");
  addKind(call, session, RecordKind::application, "app", "Application usage",
          "Examples:\n"
          "  wenlolib preview app --name PhotoAlbum --option 2 usage.txt\n"
          "  echo pages=12 | wenlolib preview app --name PhotoAlbum --bytes");
  addKind(call, session, RecordKind::printerLog, "printer", "A printer log",
          "Examples:\n"
          "  wenlolib preview printer --name QX200 --sn QX200-0004711 log.txt\n"
          "  wenlolib preview printer --name QX500 --new-tag-type --bytes log.txt");
}

}  // namespace wenlolib::tools
