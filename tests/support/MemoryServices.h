/// Digest, cipher, XML, identifiers and programs in memory.
#ifndef WENLOLIB_TESTS_SUPPORT_MEMORYSERVICES_H
#define WENLOLIB_TESTS_SUPPORT_MEMORYSERVICES_H

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/Crypto.h"
#include "platform/System.h"
#include "platform/Xml.h"
#include "support/Recorder.h"

namespace wenlolib::tests {

class MemoryDigest : public platform::Digest {
 public:
  explicit MemoryDigest(Recorder recorder) : recorder_(recorder) {}
  platform::Md5Digest md5(platform::Bytes message) noexcept override;

 private:
  Recorder recorder_;
};

/// Refuses keys that RC4 does not allow: the empty one, and those of more than 256 bytes.
class MemoryCipher : public platform::Cipher {
 public:
  explicit MemoryCipher(Recorder recorder) : recorder_(recorder) {}
  bool rc4(platform::Bytes key, platform::Bytes source,
           std::uint8_t* destination) noexcept override;

 private:
  Recorder recorder_;
};

/// Accepts every document and returns it unchanged, unless a test sets another answer.
class MemoryXml : public platform::Xml {
 public:
  explicit MemoryXml(Recorder recorder) : recorder_(recorder) {}

  Text replacement;               // returned in place of every document
  std::string seen;               // the last document, as it was passed
  platform::DigitRun seenDigits;  // and its run of digits

  Text serialised(std::string document, platform::DigitRun digits) override;

 private:
  Recorder recorder_;
};

/// 00000000-0000-4000-8000-000000000001, then ...002, and so on.
class MemoryUuids : public platform::Uuids {
 public:
  explicit MemoryUuids(Recorder recorder) : recorder_(recorder) {}
  Text create() override;

 private:
  Recorder recorder_;
  std::atomic<int> made_{0};
};

class MemoryPrograms : public platform::Programs {
 public:
  explicit MemoryPrograms(Recorder recorder) : recorder_(recorder) {}

  std::int32_t exitStatus = 0;

  std::optional<std::int32_t> run(const std::string& path,
                                  const std::vector<std::string>& arguments, bool wait) override;

 private:
  Recorder recorder_;
};

}  // namespace wenlolib::tests

#endif
