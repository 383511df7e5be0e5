/// The services of a platform, watched for what they could not do.
#ifndef WENLOLIB_TOOLS_WATCHED_H
#define WENLOLIB_TOOLS_WATCHED_H

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/Forwarding.h"
#include "platform/Platform.h"

namespace wenlolib::tools {

/// What a platform could not answer; the library has then answered no.
struct Unanswered {
  std::string path;         // "" where no file was asked about
  platform::Reason reason;  // `none` for a lack of memory
};

/// What to tell the person who asks.
[[nodiscard]] std::string unansweredText(const Unanswered& unanswered);

/// What was seen while the services were in use.
struct Sightings {
  std::optional<Unanswered> unanswered;                // the first
  std::map<std::string, platform::ListReading> lists;  // by path; the latest reading of each
};

/// Stands before a platform. Whatever a service throws is noted and thrown on.
class Watched {
 public:
  explicit Watched(const platform::Platform& base);
  Watched(const Watched&) = delete;
  Watched& operator=(const Watched&) = delete;
  ~Watched();

  /// Good for as long as this object.
  [[nodiscard]] const platform::Platform& services() const { return services_; }
  [[nodiscard]] const Sightings& seen() const { return seen_; }

 private:
  struct Services;

  Sightings seen_;
  std::unique_ptr<Services> watching_;
  platform::Platform services_;
};

}  // namespace wenlolib::tools

#endif
