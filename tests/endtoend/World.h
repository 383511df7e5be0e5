/// The library on the real Linux port, below the test's own root folder.
#ifndef WENLOLIB_TESTS_ENDTOEND_WORLD_H
#define WENLOLIB_TESTS_ENDTOEND_WORLD_H

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "platform/linux/LinuxPlatform.h"
#include "platform/posix/TemporaryFolder.h"
#include "support/HostInstallation.h"
#include "support/MemoryPlatform.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::tests {

class RefusingCipher : public platform::Cipher {
 public:
  bool rc4(platform::Bytes, platform::Bytes, std::uint8_t*) noexcept override { return false; }
};

/// Files, property lists, bundles, calendar, XML, ciphers and identifiers are real. The test sets
/// the OS version (10.15.7 at first), the clock (15 March 2024 00:05:07 GMT) and the user ("ada").
/// The folders are there, and so are the host's bundle (2.1.4) and its preferences: installed 100
/// days ago, with the user's agreement and fr_FR. There is no configuration file of the library.
class World {
 public:
  World();

  TemporaryFolder root;
  MemoryPlatform memory;
  RefusingCipher refusing;
  platform::gnulinux::LinuxPlatform port{root.path()};
  platform::Platform services = port.services();

  /// The real path of a path that the library uses.
  [[nodiscard]] std::string real(const std::string& path) const { return root.path() + path; }

  [[nodiscard]] std::vector<std::string> printerLogs() const {
    return namesIn(real(printerLogFolder));
  }

  void writePreferences(const Dictionary& preferences);
  void writeBundle(const std::string& bundle, const Dictionary& information);

  /// What the library's configuration file holds; empty if it cannot be read.
  [[nodiscard]] Dictionary configuration() const;
};

/// A world that replaces the native platform while a test runs. The documents that a test leaves
/// are kept at its end, for the verifier.
class WorldTest : public testing::Test {
 protected:
  World world;
  bool documentsAreSound = true;  // a test with an unsound document clears it

  void TearDown() override;

 private:
  platform::Substitute substitute_{world.services};
};

enum class RecordKind { application, printer, printerOlderTag };

/// For the names of tests.
const char* nameOf(RecordKind kind);
inline void PrintTo(RecordKind kind, std::ostream* stream) {
  *stream << nameOf(kind);
}

/// Records `contents` for the application "App" through the entry points, in mode 1.
bool recordAs(RecordKind kind, const std::string& contents);

/// The month's file in March 2024.
inline const std::string marchFile = applicationFolder + "/Quillmere_Log_App_2403.ALM";

inline std::string printerLog(int number) {
  return printerLogFolder + "/App_" + std::to_string(number) + ".PLM";
}

}  // namespace wenlolib::tests

#endif
