/// A whole platform in memory, with a journal of all calls and a plan of which calls fail.
#ifndef WENLOLIB_TESTS_SUPPORT_MEMORYPLATFORM_H
#define WENLOLIB_TESTS_SUPPORT_MEMORYPLATFORM_H

#include "platform/Platform.h"
#include "support/FaultPlan.h"
#include "support/Journal.h"
#include "support/MemoryFiles.h"
#include "support/MemoryPropertyLists.h"
#include "support/MemoryServices.h"
#include "support/MemorySystem.h"
#include "support/MemoryUser.h"
#include "support/Recorder.h"

namespace wenlolib::tests {

/// At first: OS 10.15.7 on Intel; 15 March 2024 00:05:07 GMT in a zone nine hours east; the user
/// "ada" with the locale en_US; no container lookup, no bundles, no files, and only the folder "/".
///
/// Any thread may call the services. Their answers may be set only while no thread calls them.
class MemoryPlatform {
 public:
  MemoryPlatform();
  MemoryPlatform(const MemoryPlatform&) = delete;
  MemoryPlatform& operator=(const MemoryPlatform&) = delete;

  Journal journal;
  FaultPlan faults;

 private:
  Recorder recorder_{journal, faults};

 public:
  MemorySystem system{recorder_};
  MemoryClock clock{recorder_};
  MemoryCalendar calendar{recorder_};
  MemoryFiles files{recorder_};
  MemoryPropertyLists propertyLists{recorder_, files};
  MemoryBundles bundles{recorder_};
  MemoryUser user{recorder_};
  MemoryDigest digest{recorder_};
  MemoryCipher cipher{recorder_};
  MemoryXml xml{recorder_};
  MemoryUuids uuids{recorder_};
  MemoryPrograms programs{recorder_};

  /// What the library sees. A test may replace a service by one of its own.
  platform::Platform services;
};

}  // namespace wenlolib::tests

#endif
