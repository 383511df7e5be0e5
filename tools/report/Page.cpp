#include "report/Page.h"

#include <fmt/format.h>

#include <string>
#include <string_view>

#include "base/Utf8.h"
#include "explain/Explanation.h"
#include "library/Wording.h"
#include "reading/Readable.h"
#include "records/RecordTable.h"
#include "report/Html.h"
#include "terminal/Format.h"
#include "wenlolib/version.h"

namespace wenlolib::tools {

// --- The frame ---

namespace {

constexpr std::string_view head = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
<meta name="referrer" content="no-referrer">
<title>What is recorded about you</title>
<style>
:root { color-scheme: light dark; --ink: #1c1c21; --paper: #fff; --soft: #55555f; --line: #c9c9d3;
  --panel: #f4f4f8; --good: #14613a; --bad: #a01419; --link: #0b51c1; }
@media (prefers-color-scheme: dark) {
  :root { --ink: #e7e7ec; --paper: #17171b; --soft: #a9a9b6; --line: #45454f; --panel: #212128;
    --good: #83d8a5; --bad: #ff9c96; --link: #8db6f9; }
}
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 60rem; padding: 1rem; background: var(--paper);
  color: var(--ink); font: 1rem/1.5 system-ui, sans-serif; overflow-wrap: anywhere; }
h1 { font-size: 1.6rem; line-height: 1.2; }
h2 { font-size: 1.25rem; margin: 2.2rem 0 .6rem; }
h3 { font-size: 1rem; margin: 1.4rem 0 .4rem; color: var(--soft); }
a { color: var(--link); }
nav ul { display: flex; flex-wrap: wrap; gap: .3rem 1.2rem; padding: 0; list-style: none; }
details { border: 1px solid var(--line); border-radius: .4rem; margin: .4rem 0; }
details.bad { border-left: .35rem solid var(--bad); }
details:target { outline: .2rem solid var(--link); }
summary { padding: .45rem .7rem; cursor: pointer; }
summary:focus-visible, a:focus-visible { outline: .2rem solid var(--link); outline-offset: 2px; }
summary span { margin-left: .6rem; }
.inside { padding: .2rem .9rem .7rem; border-top: 1px solid var(--line); }
.good { color: var(--good); font-weight: 600; }
.bad > summary .verdict, .no { color: var(--bad); font-weight: 600; }
.soft { color: var(--soft); }
dl { display: grid; grid-template-columns: minmax(6rem, max-content) 1fr; gap: .1rem 1rem; margin: .5rem 0; }
dt { color: var(--soft); }
dd { margin: 0; }
pre { margin: .5rem 0 0; padding: .6rem; background: var(--panel); border-radius: .3rem;
  white-space: pre-wrap; overflow-wrap: anywhere; font-size: .9rem; }
@media (max-width: 34rem) {
  dl { grid-template-columns: 1fr; }
  dd { margin-bottom: .4rem; }
}
@media print {
  :root { --ink: #000; --paper: #fff; --soft: #333; --line: #999; --panel: #fff; --good: #000;
    --bad: #000; --link: #000; }
  body { max-width: none; padding: 0; font-size: 10pt; }
  nav { display: none; }
  details::details-content { content-visibility: visible; }
  summary { break-after: avoid; list-style: none; }
  h2, h3 { break-after: avoid; }
  pre { border: 1px solid var(--line); }
}
</style>
</head>
<body>
)";

constexpr std::string_view foot = R"(</main>
</body>
</html>
)";

std::string statesText(const Overview& overview) {
  std::string text;
  for (const Condition condition : enumerators<Condition>) {
    const std::uint64_t count = overview.countOf(condition);
    if (count == 0) continue;
    text +=
        fmt::format("{}{} {}", text.empty() ? "" : ", ", groupDigits(count), wordFor(condition));
  }
  return text.empty() ? "" : ": " + text;
}

std::string opening(const PageSubject& subject) {
  const std::size_t count = subject.found.records.size();
  const std::string records = count == 0 ? "No record" : countText(count, "record");
  const std::string size =
      count == 0 ? "" : fmt::format(" ({})", sizeText(subject.overview.bytes()));
  return fmt::format(R"(<header>
<h1>What is recorded about you</h1>
<p>{}{}{}. Seen on {} by wenlolib {}.{}</p>
<nav aria-label="On this page"><ul>
<li><a href="#allowed">What is allowed now</a></li>
<li><a href="#said">What a record says</a></li>
<li><a href="#records">All records by date</a></li>
<li><a href="#printers">By printer</a></li>
<li><a href="#applications">By application</a></li>
<li><a href="#others">Other files</a></li>
</ul></nav>
</header>
<main>
)",
                     records, size, statesText(subject.overview), html(localTime(subject.now)),
                     WENLOLIB_VERSION,
                     subject.redact ? " The identifier and serial numbers are left out." : "");
}

}  // namespace

// --- Texts of documents ---

namespace {

/// Texts of the page as they may be shown. Every text that comes from a file goes through here.
class Shown {
 public:
  Shown(const PageSubject& subject, Redaction redaction)
      : folder_(subject.found.folder.substr(0, subject.found.folder.size() - 1)),
        redact_(subject.redact),
        redaction_(std::move(redaction)) {}

  [[nodiscard]] std::string text(std::string_view value) const {
    return isolated(redaction_(value));
  }

  /// Of a page that shows less, the user's folder is no part: it has the user's name in it.
  [[nodiscard]] std::string path(const std::string& path) const {
    return redact_ ? text(shortPath(path, folder_)) : text(path);
  }

  [[nodiscard]] std::string field(const receiver::Field& field) const {
    if (redaction_.hides(field.name)) return R"(<span class="soft">(left out)</span>)";
    if (field.value.empty()) return R"(<span class="soft">(empty)</span>)";
    return text(field.value);
  }

  [[nodiscard]] const receiver::Document* document(const receiver::Report& report) const {
    return redaction_.shown(report);
  }

  [[nodiscard]] receiver::Verdict verdict(const receiver::Verdict& verdict) const {
    return redaction_(verdict);
  }

  /// The beginning of very long contents, and how much is left out.
  [[nodiscard]] std::string contents(std::string_view contents) const {
    constexpr std::size_t most = std::size_t{256} << 10;
    const std::string redacted = redaction_(contents);
    const std::string_view all = redacted;
    if (all.size() <= most) return "<pre dir=\"auto\">\n" + html(all) + "</pre>\n";
    const std::string_view begin = all.substr(0, utf8Length(all.substr(0, most)));
    return fmt::format(
        "<pre dir=\"auto\">\n{}</pre>\n<p>And {} more; wenlolib decode shows all of it.</p>\n",
        html(begin), sizeText(all.size() - begin.size()));
  }

 private:
  std::string folder_;
  bool redact_;
  Redaction redaction_;
};

/// For texts of no document in particular.
Shown shownOf(const PageSubject& subject) {
  return {subject, subject.redact ? subject.overview.redaction() : Redaction()};
}

Shown shownOf(const PageSubject& subject, const receiver::Report& report) {
  if (!subject.redact) return {subject, Redaction()};
  Redaction redaction(report);
  redaction.add(subject.overview.redaction());
  return {subject, std::move(redaction)};
}

std::string entry(std::string_view name, const std::string& value) {
  return fmt::format("<dt>{}</dt><dd>{}</dd>\n", html(name), value);
}

}  // namespace

// --- What is allowed now ---

namespace {

std::string stepHtml(const Step& step, const Shown& shown) {
  const bool refused = step.state == StepState::refused;
  std::string details;
  if (!step.source.empty()) details += entry("read", shown.path(step.source));
  if (!step.key.empty()) details += entry("key", shown.text(step.key));
  if (!step.expected.empty()) details += entry("expected", shown.text(step.expected));
  if (!step.found.empty()) details += entry("found", shown.text(step.found));
  return fmt::format("<li><b>{}</b>: <span class=\"{}\">{}</span>{}</li>\n", html(stepTitle(step)),
                     refused        ? "no"
                     : step.taken() ? "good"
                                    : "soft",
                     stateText(step.state), details.empty() ? "" : "\n<dl>\n" + details + "</dl>");
}

std::string decisionHtml(const PageSubject& subject, RecordKind kind, std::uint32_t option,
                         std::string_view title, std::string_view remark) {
  const Explanation explanation = explain(kind, option, {subject.platform.root(), {}, {}});
  std::string steps;
  for (const Step& step : explanation.steps) steps += stepHtml(step, shownOf(subject));
  return fmt::format(
      "<details>\n<summary><b>{}</b><span class=\"{}\">{}</span></summary>\n"
      "<div class=\"inside\">\n<p>{}</p>\n<ol>\n{}</ol>\n</div>\n</details>\n",
      title, explanation.allowed() ? "good" : "no",
      shownOf(subject).text(outcomeText(explanation, Paint(false))), remark, steps);
}

std::string decisions(const PageSubject& subject) {
  std::string text =
      "<section id=\"allowed\">\n<h2>What is allowed now</h2>\n"
      "<p>Before each record, the library takes these steps. All that it needs must be "
      "passed.</p>\n";
  text += decisionHtml(subject, RecordKind::application, 1, "Application usage",
                       "Asks for your agreement, which the host application stores.");
  text += decisionHtml(subject, RecordKind::application, 2, "Application usage, mode 2",
                       "Does not ask for your agreement, and has no time limit.");
  text += decisionHtml(subject, RecordKind::printerLog, 0, "Printer logs",
                       "Do not ask for your agreement.");
  return text + "</section>\n";
}

constexpr std::string_view whatIsSaid = R"(<section id="said">
<h2>What a record says</h2>
<ul>
<li>the version of the library and of your operating system</li>
<li>date and time, with your time zone</li>
<li>your language and region (application usage of mode 1: as stored by the host application)</li>
<li>an identifier, the same in all records of your account on this computer</li>
<li>of a printer, in logs of the older form: its device identifier, serial number and ROM version</li>
<li>the contents: whatever the host application handed over</li>
</ul>
<p>The contents are scrambled with a key that the record itself carries. Whoever can read the file can
read them, as this page does.</p>
</section>
)";

}  // namespace

// --- The records ---

namespace {

std::string summaryHtml(const RecordReading& reading, const Shown& shown) {
  const RecordFacts& facts = reading.facts;
  const Condition condition = conditionOf(reading.report.verdict);
  const bool sound = reading.report.verdict.sound();
  return fmt::format(
      "<summary><time>{}</time>{}<span><b>{}</b></span><span class=\"soft\">{}</span>"
      "<span class=\"{}\">{}</span></summary>\n",
      html(minuteText(facts.date)), facts.dated ? "" : " (of the file)", shown.text(facts.name),
      kindText(facts.kind), sound ? "good" : "verdict", wordFor(condition));
}

std::string contentsHtml(const receiver::Report& report, const Shown& shown) {
  const receiver::Document* const document = shown.document(report);
  if (document == nullptr && readable(report) != nullptr) {
    return "<p>All of it is left out: an identifier or serial number may be anywhere in it.</p>\n";
  }
  if (document == nullptr) return "<p>The contents cannot be read.</p>\n";
  const std::string warning =
      isTrusted(report) ? "" : fmt::format("<p class=\"no\">{}</p>\n", untrustedText);
  if (document->marker == '\0') return warning + "<p>The contents cannot be read.</p>\n";
  const auto contents = receiver::contentsOf(*document);
  return warning +
         (contents ? shown.contents(*contents) : "<p>The contents cannot be decrypted.</p>\n");
}

std::string recordHtml(const PageSubject& subject, const RecordReading& reading,
                       const OwnRecord& record, std::size_t number) {
  const receiver::Report& report = reading.report;
  const Shown shown = shownOf(subject, report);
  const bool sound = report.verdict.sound();
  std::string entries;
  if (!sound) entries += entry("not sound", shown.text(verdictText(shown.verdict(report.verdict))));
  if (const receiver::Document* const document = shown.document(report)) {
    for (const receiver::Field& field : document->fields) {
      entries += entry(field.name, shown.field(field));
    }
  }
  entries += entry("size", sizeText(reading.state.size));
  entries += entry("file", shown.path(subject.found.folder + record.place));
  return fmt::format(
      "<details id=\"r{}\" class=\"{}\">\n{}<div "
      "class=\"inside\">\n<dl>\n{}</dl>\n{}</div>\n</details>\n",
      number, sound ? "record" : "record bad", summaryHtml(reading, shown), entries,
      contentsHtml(report, shown));
}

/// "2026-11".
std::string monthOf(std::time_t date) {
  const std::string text = minuteText(date);
  return text.substr(0, text.rfind('-'));
}

/// The records of each month below a heading.
void writeRecords(const PageSubject& subject, Output& page) {
  page.write("<section id=\"records\">\n<h2>All records by date</h2>\n");
  if (subject.found.records.empty()) page.write("<p>There is no record.</p>\n");
  std::string month;
  readAgain(subject.found, [&](const RecordReading& reading, const OwnRecord& record) {
    const std::string own = monthOf(reading.facts.date);
    if (own != month) page.write("<h3>" + html(own) + "</h3>\n");
    month = own;
    const auto number = static_cast<std::size_t>(&record - subject.found.records.data());
    page.write(recordHtml(subject, reading, record, number));
  });
  page.write("</section>\n");
}

/// "2026-01-07 09:00 to 2026-11-22 16:25"; one date if both are the same.
std::string spanText(std::time_t first, std::time_t last) {
  const std::string from = minuteText(first);
  const std::string to = minuteText(last);
  return from == to ? from : from + " to " + to;
}

void writeGroup(const PageSubject& subject, const RecordGroup& group, Output& page) {
  const auto& records = subject.found.records;
  const std::string span =
      spanText(records[group.members.back()].date, records[group.members.front()].date);
  page.write(fmt::format(
      "<details>\n<summary><b>{}</b><span>{}</span><span class=\"soft\">{}</span></summary>\n"
      "<div class=\"inside\">\n<ul>\n",
      shownOf(subject).text(group.label), countText(group.members.size(), "record"), html(span)));
  for (const std::size_t member : group.members) {
    page.write(fmt::format("<li><a href=\"#r{}\">{}</a></li>\n", member,
                           html(minuteText(records[member].date))));
  }
  page.write("</ul>\n</div>\n</details>\n");
}

void writeGroups(const PageSubject& subject, RecordKind kind, std::string_view start,
                 Output& page) {
  page.write(start);
  bool any = false;
  for (const RecordGroup& group : subject.overview.groups()) {
    if (group.kind != kind) continue;
    any = true;
    writeGroup(subject, group, page);
  }
  page.write(any ? "</section>\n" : "<p>There is no record.</p>\n</section>\n");
}

std::string othersHtml(const PageSubject& subject) {
  const Shown shown = shownOf(subject);
  std::string text =
      "<section id=\"others\">\n<h2>Other files</h2>\n"
      "<p>These lie in the same folders and are not shown as records.</p>\n<ul>\n";
  if (subject.found.others.empty()) {
    return "<section id=\"others\">\n<h2>Other files</h2>\n<p>There are none.</p>\n</section>\n";
  }
  for (const LeftAlone& other : subject.found.others) {
    text += fmt::format("<li>{}: {}</li>\n", shown.path(subject.found.folder + other.place),
                        shown.text(other.why));
  }
  return text + "</ul>\n</section>\n";
}

}  // namespace

void writePage(const PageSubject& subject, Output& page) {
  page.write(head);
  page.write(opening(subject));
  page.write(decisions(subject));
  page.write(whatIsSaid);
  writeRecords(subject, page);
  writeGroups(subject, RecordKind::printerLog, "<section id=\"printers\">\n<h2>By printer</h2>\n",
              page);
  writeGroups(subject, RecordKind::application,
              "<section id=\"applications\">\n<h2>By application</h2>\n", page);
  page.write(othersHtml(subject));
  page.write(foot);
}

}  // namespace wenlolib::tools
