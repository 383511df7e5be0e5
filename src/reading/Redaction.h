/// Output without what identifies a user or device.
#ifndef WENLOLIB_READING_REDACTION_H
#define WENLOLIB_READING_REDACTION_H

#include <string>
#include <string_view>
#include <vector>

#include "wenlolib/Receiver.h"

namespace wenlolib {

/// Takes the installation identifier and the serial number out of whatever is shown of a document.
/// They also turn up in file names, device identifiers and contents, in capitals or not (A to Z),
/// and the identifier without its braces.
class Redaction {
 public:
  /// Leaves everything as it is.
  Redaction() = default;

  explicit Redaction(const receiver::Report& report);

  /// Also hides the values that `other` hides.
  void add(const Redaction& other);

  [[nodiscard]] bool on() const { return on_; }

  /// What may be shown: the document, or what was found of it. Null if there is neither, or if a
  /// value that must be hidden was not found and could stand anywhere.
  [[nodiscard]] const receiver::Document* shown(const receiver::Report& report) const;

  /// Whether a field is left out altogether.
  [[nodiscard]] bool hides(std::string_view field) const;

  /// The text with "[redacted]" in place of either value. A value of one to three characters
  /// identifies nobody and would hide half of every text, so it is hidden only in its own field.
  [[nodiscard]] std::string operator()(std::string_view text) const;

  /// A verdict whose text gives neither value away. If the values are not known, the text may
  /// repeat them: it is left out.
  [[nodiscard]] receiver::Verdict operator()(receiver::Verdict verdict) const;

 private:
  void sortSecrets();

  bool on_ = false;
  bool known_ = false;                // what is to be hidden was read
  std::vector<std::string> secrets_;  // longer ones first
};

}  // namespace wenlolib

#endif
