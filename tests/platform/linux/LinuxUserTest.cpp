#include "platform/linux/LinuxUser.h"

#include <gtest/gtest.h>
#include <nss.h>
#include <pwd.h>
#include <sys/resource.h>
#include <unistd.h>

#include "platform/posix/Child.h"
#include "platform/posix/Environment.h"
#include "platform/posix/TemporaryFolder.h"

namespace wenlolib::tests {
namespace {

using platform::gnulinux::LinuxUser;
using platform::gnulinux::localeWithoutCodeset;

TEST(LocaleName, LosesItsCodeset) {
  struct Case {
    const char* name;
    const char* text;
  };
  for (const Case& each : {Case{"en_US.UTF-8", "en_US"},
                           {"en_US", "en_US"},
                           {"de_DE.UTF-8@euro", "de_DE@euro"},
                           {"de_DE@euro", "de_DE@euro"},
                           {"ca_ES@valencia.UTF-8", "ca_ES@valencia.UTF-8"},
                           {"sr_RS.UTF-8@latin", "sr_RS@latin"},
                           {"ja_JP.eucJP", "ja_JP"},
                           {"ja", "ja"},
                           {"c", "c"},
                           {"Chinese", "Chinese"}}) {
    EXPECT_EQ(localeWithoutCodeset(each.name), Text(each.text)) << each.name;
  }
}

TEST(LocaleName, WithoutALanguageIsNull) {
  for (const char* name : {"", "C", "POSIX", "C.UTF-8", "POSIX.UTF-8", ".UTF-8", "@euro", "C@x"}) {
    EXPECT_EQ(localeWithoutCodeset(name), std::nullopt) << name;
  }
}

struct LocaleCase {
  const char* all;
  const char* messages;
  const char* lang;
  Text expected;
};

TEST(LinuxUser, TheFirstLocaleVariableThatIsNotEmptyCounts) {
  const LocaleCase cases[] = {
      {"de_DE.UTF-8", "fr_FR", "en_US", "de_DE"},
      {nullptr, "fr_FR.UTF-8", "en_US", "fr_FR"},
      {"", "fr_FR", "en_US", "fr_FR"},
      {nullptr, nullptr, "en_US.UTF-8", "en_US"},
      {"", "", "en_US", "en_US"},
      {"C", "fr_FR", "en_US", std::nullopt},
      {nullptr, "POSIX", "en_US", std::nullopt},
      {nullptr, nullptr, nullptr, std::nullopt},
      {"", "", "", std::nullopt},
  };
  for (const LocaleCase& each : cases) {
    const Variable all("LC_ALL", each.all);
    const Variable messages("LC_MESSAGES", each.messages);
    const Variable lang("LANG", each.lang);
    EXPECT_EQ(LinuxUser().locale(), each.expected);
  }
}

TEST(LinuxUser, ALocaleVariableThatIsNotTextHidesTheOthers) {
  const LocaleCase cases[] = {
      {"\xff", "fr_FR", "en_US", std::nullopt}, {"de_DE\xff", nullptr, "en_US", std::nullopt},
      {nullptr, "\xff", "en_US", std::nullopt}, {"", "", "\xff", std::nullopt},
      {"de_DE", "\xff", "\xff", "de_DE"},
  };
  for (const LocaleCase& each : cases) {
    const Variable all("LC_ALL", each.all);
    const Variable messages("LC_MESSAGES", each.messages);
    const Variable lang("LANG", each.lang);
    EXPECT_EQ(LinuxUser().locale(), each.expected);
  }
}

TEST(LinuxUser, TheHomeFolderIsHomeWhereThatIsAnAbsolutePath) {
  const Variable home("HOME", "/some/where");
  LinuxUser user;
  EXPECT_EQ(user.homeFolder(), Text("/some/where"));
  EXPECT_EQ(user.libraryFolder(), Text("/some/where/Library"));
  const auto container = user.groupContainer("K7MW2PL9QD.QX.common");
  EXPECT_TRUE(container.offered);
  EXPECT_EQ(container.path, Text("/some/where/Library/Group Containers/K7MW2PL9QD.QX.common"));
}

TEST(LinuxUser, ASlashAtTheEndOfHomeIsNotDoubled) {
  const Variable home("HOME", "/some/where//");
  EXPECT_EQ(LinuxUser().libraryFolder(), Text("/some/where/Library"));
  const Variable root("HOME", "/");
  EXPECT_EQ(LinuxUser().libraryFolder(), Text("/Library"));
}

TEST(LinuxUser, AnyOtherHomeGivesWayToThePasswordDatabase) {
  const passwd* entry = ::getpwuid(::geteuid());
  const Text expected = entry == nullptr ? Text() : Text(entry->pw_dir);
  for (const char* value : {static_cast<const char*>(nullptr), "", "relative", "~", "\xff"}) {
    const Variable home("HOME", value);
    EXPECT_EQ(LinuxUser().homeFolder(), expected) << (value == nullptr ? "(unset)" : value);
  }
}

TEST(LinuxUser, AnAbsoluteHomeThatIsNotTextGivesNoHomeFolderAtAll) {
  const passwd* entry = ::getpwuid(::geteuid());
  if (entry == nullptr || entry->pw_dir == nullptr) GTEST_SKIP() << "the user has no other home";
  for (const char* value : {"/\xff", "/home/\xC3", "/some/where\xff/below"}) {
    const Variable home("HOME", value);
    LinuxUser user;
    EXPECT_EQ(user.homeFolder(), std::nullopt);
    EXPECT_EQ(user.libraryFolder(), std::nullopt);
    const auto container = user.groupContainer("group");
    EXPECT_TRUE(container.offered);
    EXPECT_EQ(container.path, std::nullopt);
  }
}

TEST(LinuxUser, TheLoginNameIsThePasswordDatabasesWhateverTheEnvironmentSays) {
  const Variable user("USER", "somebody-else");
  const Variable login("LOGNAME", "somebody-else");
  const passwd* entry = ::getpwuid(::geteuid());
  EXPECT_EQ(LinuxUser().loginName(), entry == nullptr ? Text() : Text(entry->pw_name));
}

/// The C library would load modules into the host's process to look for the user.
TEST(LinuxUser, AUserOfTheFileIsFoundWithoutTheCLibrary) {
  const Text name = platform::gnulinux::fieldOfUser(readFile("/etc/passwd"), ::geteuid(), 0);
  if (!name) GTEST_SKIP() << "this user is not in the file";
  const std::string answer = inChild([]() -> std::string {
    ::unsetenv("HOME");
    ::__nss_configure_lookup("passwd", "wenlolib_has_no_such_module");
    if (::getpwuid(::geteuid()) != nullptr) return "the C library still finds the user";
    return LinuxUser().loginName().value_or("null") + (LinuxUser().homeFolder() ? "" : " homeless");
  });
  EXPECT_EQ(answer, name);
}

TEST(FieldOfUser, IsThatOfTheFirstLineWithTheNumber) {
  constexpr std::string_view file =
      "root:x:0:0:root:/root:/bin/bash\nada:x:10:10:Ada:/home/ada:/bin/sh\n"
      "#x:x:1\n\n:::\nshort:x:7\nempty:x:8:8:::\ntwice:x:10:10::/other:\nbad:x:9:9::/\xFF:\n"
      "last:x:11:11::/home/last:/bin/sh";
  const struct {
    std::uint32_t user;
    Text name, home;
  } table[] = {{0, "root", "/root"}, {10, "ada", "/home/ada"},   {1, "#x", ""},
               {7, "short", ""},     {8, "empty", ""},           {9, "bad", {}},
               {12, {}, {}},         {11, "last", "/home/last"}, {100, {}, {}}};
  for (const auto& row : table) {
    EXPECT_EQ(platform::gnulinux::fieldOfUser(file, row.user, 0), row.name) << row.user;
    EXPECT_EQ(platform::gnulinux::fieldOfUser(file, row.user, 5), row.home) << row.user;
  }
  EXPECT_EQ(platform::gnulinux::fieldOfUser("", 0, 0), std::nullopt);
}

/// A database that cannot be opened for the moment is not the same as a missing entry.
TEST(LinuxUser, APasswordDatabaseThatCannotBeAskedGivesNoAnswer) {
  const std::string answer = inChild([]() -> std::string {
    ::unsetenv("HOME");
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    const rlimit none{0, limit.rlim_max};
    try {
      ::setrlimit(RLIMIT_NOFILE, &none);
      return LinuxUser().homeFolder().value_or("null");
    } catch (const std::exception&) {
      ::setrlimit(RLIMIT_NOFILE, &limit);
      return LinuxUser().homeFolder() ? "no answer, then a home" : "no answer, then null";
    }
  });
  EXPECT_EQ(answer, "no answer, then a home");
}

}  // namespace
}  // namespace wenlolib::tests
