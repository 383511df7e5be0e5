/// The exit statuses of the command, the same for every subcommand.
#ifndef WENLOLIB_TOOLS_TERMINAL_EXITSTATUS_H
#define WENLOLIB_TOOLS_TERMINAL_EXITSTATUS_H

namespace wenlolib::tools {

/// The higher number is the worse: of several, a call returns the highest.
enum Exit : int {
  allGood = 0,  // also for repaired documents: they can be relied on
  notGood = 1,  // a document is not sound, documents differ, a record was refused or not written,
                // an installation has errors; 0 with --exit-zero
  wrongUsage = 2,  // the command line makes no sense
  unreadable = 3,  // something could not be read, or the output could not be written
};

}  // namespace wenlolib::tools

#endif
