// A configuration file that cannot be read for the moment does not count as missing.
#include <sys/resource.h>

#include <cstdlib>
#include <stdexcept>

#include "endtoend/ConfigurationFile.h"
#include "platform/Forwarding.h"
#include "platform/posix/Child.h"
#include "support/ExpectedDocument.h"

namespace wenlolib::tests {
namespace {

/// While an object lives, no new descriptor can be opened.
class NoDescriptors {
 public:
  NoDescriptors() {
    if (::getrlimit(RLIMIT_NOFILE, &before_) != 0)
      throw std::runtime_error("cannot read the limit");
    set({0, before_.rlim_max});
  }
  ~NoDescriptors() { set(before_); }
  NoDescriptors(const NoDescriptors&) = delete;
  NoDescriptors& operator=(const NoDescriptors&) = delete;

 private:
  static void set(const rlimit& limit) {
    if (::setrlimit(RLIMIT_NOFILE, &limit) != 0) std::abort();
  }
  rlimit before_{};
};

/// No descriptor is free while the configuration file is read, and enough are free right
/// afterwards. This happens when other threads of the host hold them all for a moment.
class ShortWhileReading : public platform::ForwardingPropertyLists {
 public:
  using ForwardingPropertyLists::ForwardingPropertyLists;
  bool shortage = true;

  platform::ListReading read(const std::string& path) override {
    if (!shortage || path != identifierPath) return target_.read(path);
    const NoDescriptors none;
    return target_.read(path);
  }
};

class ConfigurationShortage : public ConfigurationFileTest {};

TEST_F(ConfigurationShortage, OfDescriptorsRefusesTheRecordAndKeepsTheFile) {
  write({{"WENLIBUUID", "kept"}, {"other", "kept too"}});
  const std::string bytes = readFile(path());
  const ino_t number = file();
  for (const RecordKind kind : {RecordKind::application, RecordKind::printer}) {
    const std::string answer = inChild([&] {
      ShortWhileReading propertyLists(*world.services.propertyLists);
      platform::Platform services = world.services;
      services.propertyLists = &propertyLists;
      const platform::Substitute substitute(services);
      const bool meanwhile = recordAs(kind, "contents");
      propertyLists.shortage = false;
      const std::string later = recordAs(kind, "contents") ? " recorded" : " refused";
      return (meanwhile ? "recorded" : "refused") + later;
    });
    EXPECT_EQ(answer, "refused recorded") << nameOf(kind);
    EXPECT_EQ(readFile(path()), bytes);
    EXPECT_EQ(file(), number);
  }
  EXPECT_EQ(elementIn(readFile(world.real(marchFile)), "ID"), "kept");
}

}  // namespace
}  // namespace wenlolib::tests
