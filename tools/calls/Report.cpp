// `wenlolib report`: a page about what is recorded of the user who asks.
#include <sys/stat.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <system_error>
#include <utility>

#include "calls/CommandLine.h"
#include "reading/InputFile.h"
#include "records/OwnRecords.h"
#include "report/Overview.h"
#include "report/Page.h"
#include "terminal/VisibleText.h"

namespace wenlolib::tools {
namespace {

struct ReportOptions {
  std::string file;
  bool redact = false;
  bool force = false;
};

/// A file that only its owner may read. It has another name in the same folder until it is whole,
/// and is removed again if it never is.
class NewFile {
 public:
  explicit NewFile(std::string path) : path_(std::move(path)), unfinished_(path_ + ".XXXXXX") {
    const int number = ::mkstemp(unfinished_.data());
    if (number >= 0) stream_ = ::fdopen(number, "w");
  }
  ~NewFile() {
    if (stream_ == nullptr) return;
    std::fclose(stream_);
    ::unlink(unfinished_.c_str());
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  /// Null if it cannot be made; `errno` then says why.
  [[nodiscard]] std::FILE* stream() const { return stream_; }

  /// False if it cannot be kept; `errno` then says why.
  [[nodiscard]] bool keep() {
    if (std::fclose(std::exchange(stream_, nullptr)) == 0 &&
        ::rename(unfinished_.c_str(), path_.c_str()) == 0) {
      return true;
    }
    const int error = errno;
    ::unlink(unfinished_.c_str());
    errno = error;
    return false;
  }

 private:
  std::string path_;
  std::string unfinished_;
  std::FILE* stream_ = nullptr;
};

/// Nothing if a page may be written there, else why not.
std::string complaintAbout(const ReportOptions& options) {
  struct stat status {};
  if (::lstat(options.file.c_str(), &status) != 0) return "";
  if (!S_ISREG(status.st_mode)) return "is there already, and is not a regular file";
  return options.force ? "" : "is there already; give another name, or --force to replace it";
}

/// "" after success, else what failed.
std::string writeTo(const std::string& path, const PageSubject& subject) {
  NewFile file(path);
  if (file.stream() == nullptr) return systemMessage(errno);
  try {
    Output page("report", file.stream());
    writePage(subject, page);
    page.finish();
  } catch (const std::system_error& failure) {
    return failure.code().message();
  }
  return file.keep() ? "" : systemMessage(errno);
}

int report(const ToolPlatform& platform, const ReportOptions& options) {
  Output output("report");
  if (const std::string complaint = complaintAbout(options); !complaint.empty()) {
    output.complain(options.file, complaint);
    return unreadable;
  }
  Overview overview;
  const OwnRecords found = findRecords(
      platform, {}, output,
      [&](const RecordReading& reading, OwnRecord& record) { overview.add(reading, record); });
  overview.complete(found);
  const int status = complainOfUnreadable(found, output);
  if (found.folder.empty()) return status;
  const std::string failure =
      writeTo(options.file, {platform, found, overview, options.redact, std::time(nullptr)});
  if (!failure.empty()) {
    output.complain(options.file, failure);
    return unreadable;
  }
  output.write("written: " + visibleLine(options.file) + "\n");
  output.finish();
  return status;
}

}  // namespace

void addReport(CLI::App& app, Session& session) {
  const auto options = std::make_shared<ReportOptions>();
  CLI::App& call = *app.add_subcommand("report", "Write a page about what is recorded of you");
  call.add_option("FILE", options->file, "The page, such as recorded.html")
      ->type_name("")
      ->required();
  call.add_flag("--redact", options->redact,
                "Leave out identifier, serial numbers and your folder");
  call.add_flag("--force", options->force, "Replace FILE if it is there already");
  call.footer(
      "One page in HTML, for any browser: what is allowed at this moment and why, all\n"
      "records with their contents, by date, printer and application. It has no script\n"
      "and loads nothing. Only you may read the file. FILE is used as given; --root\n"
      "does not apply to it. Exit status: 0 written, 2 wrong usage, 3 something could\n"
      "not be read or written.\n\nExamples:\n"
      "  wenlolib report recorded.html\n"
      "  wenlolib report --redact to-show-others.html");
  call.callback([options, &session] {
    if (options->file == "-") {
      throw CLI::ValidationError("-", "the page needs the name of a file, such as recorded.html");
    }
    const ToolPlatform platform(session.root);
    const platform::Substitute substitute(platform.services());
    session.exitStatus = report(platform, *options);
  });
}

}  // namespace wenlolib::tools
