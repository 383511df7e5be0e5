/// What all subcommands of `wenlolib` share.
#ifndef WENLOLIB_TOOLS_SESSION_H
#define WENLOLIB_TOOLS_SESSION_H

#include <string>

namespace CLI {
class App;
}

namespace wenlolib::tools {

/// Exit statuses, the same for every call.
enum Exit : int {
  allGood = 0,
  notGood = 1,     // a document is not sound, a record was refused, an installation has faults
  wrongUsage = 2,  // or something could not be read
};

/// One run of the command.
struct Session {
  std::string root = "/";  // the folder taken for "/" (--root)
  int exitStatus = allGood;
};

// Each adds one subcommand to the command line. Its callback does the work and sets the session's
// exit status.
void addVerify(CLI::App& app, Session& session);
void addDecode(CLI::App& app, Session& session);
void addDiff(CLI::App& app, Session& session);
void addExplain(CLI::App& app, Session& session);
void addPreview(CLI::App& app, Session& session);
void addRecord(CLI::App& app, Session& session);
void addDoctor(CLI::App& app, Session& session);
void addInit(CLI::App& app, Session& session);

}  // namespace wenlolib::tools

#endif
