/// A whole platform in memory, with a journal of every call and a plan of which ones fail.
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

/// To begin with: OS 10.15.7 on Intel, 15 March 2024 00:05:07 GMT in a zone nine hours east, the
/// user "ada" with the locale en_US and no container lookup, no bundle, no file, and of folders
/// only "/".
///
/// Services may be called from any thread; what they answer is to be set while none is.
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

  /// What the library sees. A test may put a service of its own in place of one of these.
  platform::Platform services;
};

}  // namespace wenlolib::tests

#endif
