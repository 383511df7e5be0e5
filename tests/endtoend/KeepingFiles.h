/// Files that keep a copy of every document, as it is written, for the verifier.
#ifndef WENLOLIB_TESTS_ENDTOEND_KEEPINGFILES_H
#define WENLOLIB_TESTS_ENDTOEND_KEEPINGFILES_H

#include <string>

#include "endtoend/KeptDocuments.h"
#include "platform/Forwarding.h"

namespace wenlolib::tests {

/// For writers that replace each other's documents faster than a test can read them.
class KeepingFiles : public platform::ForwardingFiles {
 public:
  using ForwardingFiles::ForwardingFiles;

  platform::Outcome writeAtomically(const std::string& path, std::string_view bytes,
                                    std::uint32_t mode,
                                    platform::Publication publication) override {
    const platform::Outcome outcome = target_.writeAtomically(path, bytes, mode, publication);
    const bool record = path.ends_with(".ALM") || path.ends_with(".PLM");
    if (outcome == platform::Outcome::written && record) keepBytes(std::string(bytes));
    return outcome;
  }
};

}  // namespace wenlolib::tests

#endif
