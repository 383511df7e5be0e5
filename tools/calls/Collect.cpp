// `wenlolib collect`: documents into a database, and the common questions to it.
#include <sys/stat.h>

#include <CLI/CLI.hpp>
#include <any>
#include <memory>
#include <unordered_map>

#include "calls/CommandLine.h"
#include "collect/Collection.h"
#include "documents/Jobs.h"
#include "reading/Row.h"
#include "terminal/Format.h"

namespace wenlolib::tools {
namespace {

struct CollectOptions {
  DocumentOptions documents;
  std::string into;
  bool redact = false;
  bool show = false;
};

constexpr auto examples =
    "Collects a row for each document, as wenlolib rows writes them, in an SQLite\n"
    "database: the table documents, and views that answer common questions. A file\n"
    "or archive that has not changed is not read again, and a document with the same\n"
    "bytes counts once, so the same call can be repeated as files arrive. After an\n"
    "interrupt, run it again. --show prints the views as tables. Paths are used as\n"
    "given; --root does not apply to them. Exit status: 0 all new ones are sound,\n"
    "1 some are not, 2 wrong usage, 3 something could not be read or written.\n"
    "\n"
    "Examples:\n"
    "  wenlolib collect incoming/ --into fleet.db\n"
    "  wenlolib collect --show --into fleet.db\n"
    "  sqlite3 fleet.db 'SELECT version, count(*) FROM documents GROUP BY version'";

/// Writes what is heard into the database, and remembers which files it came from.
class Collector {
 public:
  Collector(Collection& collection) : collection_(collection) {}

  /// Whether a file can be left out. Called for each, in order, some time before its documents.
  bool skips(const Candidate& candidate) {
    struct stat status {};
    if (candidate.path == "-" || stat(candidate.path.c_str(), &status) != 0) return false;
    if (!S_ISREG(status.st_mode)) return false;
    const FileState state(status);
    if (collection_.hasRead(candidate.path, state)) {
      ++unchanged_;
      return true;
    }
    reading_[candidate.path] = state;
    return false;
  }

  void hear(const Answer& answer) {
    if (answer.path != current_) finish();
    current_ = answer.path;
    // What could not be read, or not to its end, is tried again next time.
    if (answer.status == unreadable && !answer.forGood) failed_ = true;
    if (const Row* const row = std::any_cast<Row>(&answer.made)) collection_.add(*row);
  }

  /// The documents of the current file are all there.
  void finish() {
    const auto state = reading_.find(current_);
    if (state != reading_.end()) {
      if (!failed_) collection_.finish(current_, state->second);
      reading_.erase(state);
    }
    failed_ = false;
  }

  [[nodiscard]] std::uint64_t unchanged() const { return unchanged_; }

 private:
  Collection& collection_;
  std::unordered_map<std::string, FileState> reading_;  // found, and not finished yet
  std::string current_;
  bool failed_ = false;
  std::uint64_t unchanged_ = 0;
};

Answer collectedAnswer(const Candidate& candidate, std::string_view bytes, bool redact) {
  const receiver::Report report = receiver::examine(bytes);
  Answer answer;
  answer.path = candidate.path;
  answer.member = candidate.member;
  answer.condition = conditionOf(report.verdict);
  answer.status = canBeReliedOn(*answer.condition) ? allGood : notGood;
  answer.madeBytes = bytes.size();
  answer.made = rowOf(candidate, bytes, report, redact ? Redaction(report) : Redaction());
  return answer;
}

/// Says once that another process writes.
Database::Waiting patience(const std::string& path, Output& output) {
  return [&output, path, told = false]() mutable {
    if (!told) output.complain(path, "another process is writing to it; waiting");
    told = true;
    output.endIfInterrupted();
    return true;
  };
}

int collectInto(CollectOptions& options, Output& output) {
  Collection collection(options.into, true, patience(options.into, output));
  Collector collector(collection);
  options.documents.skip = [&](const Candidate& candidate) { return collector.skips(candidate); };
  const Passage passage = goThrough(
      options.documents,
      [&](const Candidate& candidate, std::string_view bytes) {
        return collectedAnswer(candidate, bytes, options.redact);
      },
      output, [&](const Answer& answer) { collector.hear(answer); });
  collector.finish();
  collection.commit();
  output.write(options.into + ": " + countText(collection.documents(), "document") + ", " +
               groupDigits(collection.added()) + " new; " +
               countText(collector.unchanged(), "unchanged file") + " not read again\n");
  return passage.status;
}

int collect(CollectOptions& options) {
  Output output("collect");
  int status = unreadable;
  try {
    if (options.show) {
      const Collection collection(options.into, false, patience(options.into, output));
      output.write(collection.answersText());
      status = allGood;
    } else {
      status = collectInto(options, output);
    }
  } catch (const DatabaseError& error) {
    output.complain(options.into, error.what());
  }
  output.finish();
  return status;
}

void check(const CollectOptions& options) {
  if (!options.show) checkDocuments(options.documents);
  if (options.show && !(options.documents.paths.empty() && options.documents.pathsFrom.empty())) {
    throw CLI::ValidationError("--show", "takes no documents");
  }
}

}  // namespace

void addCollect(CLI::App& app, Session& session) {
  const auto options = std::make_shared<CollectOptions>();
  options->documents.archives = true;
  CLI::App* const call = app.add_subcommand("collect", "Collect documents in a database");
  call->add_option("--into", options->into, "The SQLite database; made if it is missing")
      ->type_name("FILE")
      ->required();
  call->add_flag("--show", options->show, "Answer the common questions");
  call->add_flag("--redact", options->redact,
                 "Leave out installation identifier and serial number");
  addDocuments(*call, options->documents);
  call->footer(examples);
  call->callback([options, &session] {
    check(*options);
    session.exitStatus = collect(*options);
  });
}

}  // namespace wenlolib::tools
