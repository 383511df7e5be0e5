// `wenlolib diff`: what differs between two documents.
#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <memory>

#include "calls/CommandLine.h"
#include "documents/Comparison.h"
#include "documents/DocumentJson.h"
#include "documents/DocumentText.h"
#include "reading/DocumentFiles.h"
#include "reading/Readable.h"
#include "terminal/Format.h"
#include "terminal/Interrupt.h"
#include "terminal/Output.h"
#include "terminal/VisibleText.h"

namespace wenlolib::tools {
namespace {

struct DiffOptions {
  std::string a;
  std::string b;
  bool json = false;
};

/// One of the two documents, with the buffer that it points into.
struct LoadedDocument {
  std::string buffer;
  Side side;
};

constexpr auto examples =
    "Compares verdict, layout, fields, cipher and contents; contents as text, line by\n"
    "line. A and B are used as given; --root does not apply to them. One of them may\n"
    "be -, standard input. A document that is not sound is compared as far as it can\n"
    "be read. Exit status: 0 no differences, 1 differences, 2 wrong usage, 3 a\n"
    "document could not be read.\n"
    "\n"
    "Examples:\n"
    "  wenlolib diff QX200_1.PLM QX200_2.PLM\n"
    "  wenlolib preview app --name Album usage.txt --bytes | wenlolib diff - old.ALM\n"
    "  wenlolib diff --json before.ALM after.ALM";

/// Null after a complaint; in JSON, a verdict stands in place of the comparison.
std::unique_ptr<LoadedDocument> load(const std::string& path, bool json, Output& output) {
  auto loaded = std::make_unique<LoadedDocument>();
  const DocumentReading reading =
      readDocument({path, "", true, false}, loaded->buffer, interrupted);
  if (!reading.complaint.empty()) {
    output.complain(path, reading.complaint);
    if (json) output.write(unreadableJson(path, reading.complaint));
    return nullptr;
  }
  loaded->side.report = receiver::examine(reading.bytes);
  const receiver::Report& report = loaded->side.report;
  const receiver::Document* const document = readable(report);
  if (!report.document) {
    const std::string verdict = verdictText(report.verdict);
    const std::string found = "Compared as far as it can be read; nothing vouches for its values.";
    output.complain(path, document == nullptr ? verdict : verdict + " " + found);
  }
  if (document == nullptr) {
    if (json) output.write(verdictJson(path, reading.bytes.size(), report.verdict));
    return nullptr;
  }
  loaded->side.contents = receiver::contentsOf(*document);
  return loaded;
}

std::string valueLine(char sign, Colour colour, const std::optional<std::string>& value,
                      const Paint& paint) {
  const std::string start(1, sign);
  if (value && !value->empty()) return paint(colour, start + " " + visibleLine(*value)) + "\n";
  return paint(colour, start) + paint(Colour::faint, value ? " (empty)" : " (missing)") + "\n";
}

std::string contentsSize(const Side& side) {
  return sizeText(readable(side.report)->digits.size() / 2);
}

std::string contentsText(const Side& a, const Side& b, const Comparison& comparison,
                         const Paint& paint) {
  const std::string heading = paint(Colour::heading, "Contents");
  if (comparison.sameContents) return fmt::format("{}: the same, {}\n", heading, contentsSize(a));
  const bool readable = a.contents && b.contents;
  return fmt::format("{}: {} and {}{}\n", heading, contentsSize(a), contentsSize(b),
                     readable ? "" : ", at least one cannot be decrypted") +
         unifiedText(comparison.aLines, comparison.bLines, comparison.changes, paint);
}

std::string comparisonText(const DiffOptions& options, const Side& a, const Side& b,
                           const Comparison& comparison, const Paint& paint) {
  if (comparison.same()) return "No differences.\n";
  std::string text = paint(Colour::bad, "--- " + visibleLine(options.a)) + "\n" +
                     paint(Colour::good, "+++ " + visibleLine(options.b)) + "\n";
  for (const Difference& difference : comparison.differences) {
    text += paint(Colour::heading, difference.name) + "\n";
    text += valueLine('-', Colour::bad, difference.a, paint);
    text += valueLine('+', Colour::good, difference.b, paint);
  }
  return text + contentsText(a, b, comparison, paint);
}

int diff(const DiffOptions& options, Output& output) {
  const auto a = load(options.a, options.json, output);
  const auto b = load(options.b, options.json, output);
  if (!a || !b) {
    output.finish();
    return unreadable;
  }
  const Comparison comparison = compare(a->side, b->side);
  output.write(options.json
                   ? comparisonJson(options.a, options.b, a->side, b->side, comparison)
                   : comparisonText(options, a->side, b->side, comparison, output.paint()));
  output.finish();
  return comparison.same() ? allGood : notGood;
}

}  // namespace

void addDiff(CLI::App& app, Session& session) {
  const auto options = std::make_shared<DiffOptions>();
  CLI::App* const call = app.add_subcommand("diff", "Show what differs between two documents");
  call->add_option("A", options->a, "One document; - is standard input")->type_name("")->required();
  call->add_option("B", options->b, "The other document")->type_name("")->required();
  call->add_flag("--json", options->json, "One JSON object");
  call->footer(examples);
  call->callback([options, &session] {
    if (options->a == "-" && options->b == "-") throw standardInputTwice();
    Output output("diff");
    session.exitStatus = diff(*options, output);
  });
}

}  // namespace wenlolib::tools
