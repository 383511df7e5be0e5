#include "Help.h"

namespace wenlolib::tools {

std::string firstScreen() {
  return R"(wenlolib: see, verify and explain what WENLOLIB records.

Receiving documents:
  wenlolib verify PATH...           are these documents sound? (folders too)
  wenlolib decode PATH...           what do they say?
  wenlolib diff A B                 what differs between two documents?

Recording:
  wenlolib explain app --option 1   would a record be allowed now, and why not?
  wenlolib explain printer
  wenlolib preview app --name N     the very bytes a record would write
  wenlolib record app --name N --option 2 FILE
                                    record the contents of FILE (or - for input)
  wenlolib record printer --name N --sn S FILE

The installation:
  wenlolib doctor                   is it healthy, and what is to be done?
  wenlolib init                     make the folders that a host provides

wenlolib CALL --help says more of one call, with examples. Exit status: 0 all
is well, 1 something is not, 2 wrong usage or unreadable.
)";
}

std::string HelpFormatter::make_subcommands(const CLI::App* app, CLI::AppFormatMode mode) const {
  return app->get_parent() == nullptr ? "" : CLI::Formatter::make_subcommands(app, mode);
}

}  // namespace wenlolib::tools
