#include "support/MemoryServices.h"

#include <utility>

#include "base/Integer.h"
#include "support/ReferenceCrypto.h"

namespace wenlolib::tests {

platform::Md5Digest MemoryDigest::md5(platform::Bytes message) noexcept {
  static_cast<void>(recorder_.fails("digest.md5"));
  return referenceMd5(message);
}

bool MemoryCipher::rc4(platform::Bytes key, platform::Bytes source,
                       std::uint8_t* destination) noexcept {
  if (recorder_.fails("cipher.rc4") || key.empty() || key.size() > 256) return false;
  referenceRc4(key, source, destination);
  return true;
}

Text MemoryXml::serialised(std::string document, platform::DigitRun digits) {
  seenDigits = digits;
  {
    const AllocationsSpared spared;
    seen = document;
  }
  if (recorder_.fails("xml.serialised")) return std::nullopt;
  if (replacement) return replacement;
  return document;
}

Text MemoryUuids::create() {
  if (recorder_.fails("uuids.create")) return std::nullopt;
  return "00000000-0000-4000-8000-" + decimal(++made_, 12);
}

std::optional<std::int32_t> MemoryPrograms::run(const std::string& path,
                                                const std::vector<std::string>& arguments,
                                                bool wait) {
  std::string detail = path;
  for (const std::string& argument : arguments) detail.append(" ").append(argument);
  if (wait) detail.append(" wait");
  if (recorder_.fails("programs.run", detail) || !wait) return std::nullopt;
  return exitStatus;
}

}  // namespace wenlolib::tests
