// The files in the configuration folder: whether they can be read and hold what they should.
#include "doctor/Examination.h"
#include "library/Wording.h"
#include "platform/Platform.h"
#include "platform/posix/PosixPropertyLists.h"
#include "policy/RecordingGates.h"
#include "record/Identifier.h"
#include "terminal/VisibleText.h"
#include "toolkit/Folders.h"
#include "toolkit/Preferences.h"
#include "toolkit/SharedNames.h"
#include "wenlolib/CommonTooWenlolib.h"

namespace wenlolib::tools {
namespace {

constexpr std::size_t identifierLength = 38;

std::string realPath(const ToolPlatform& platform, std::string_view name) {
  const Text path = configurationPath(name);
  return path ? platform.real(*path) : "";
}

/// If the system does not answer, the reading says why.
platform::ListReading readPropertyList(const std::string& path) {
  try {
    return platform::posix::readList(path);
  } catch (const platform::NoAnswer& thrown) {
    platform::ListReading reading;
    reading.reason = thrown.reason();
    return reading;
  }
}

/// For a file with a dictionary. A value that was left out may be one that the library needs.
Finding readFinding(std::string_view check, const std::string& path,
                    const platform::ListReading& file) {
  Finding finding{Level::ok, std::string(check), path, "can be read", ""};
  if (file.state == platform::ListState::partial) {
    finding.level = Level::warning;
    finding.message = listTrouble(file);
    finding.remedy =
        "Show the file with plutil or plistutil. Look for numbers and dates out of range.";
  }
  return finding;
}

Finding dateFinding(const Value* date) {
  Finding finding{Level::ok, "installed_date", std::string(installedDateKey), valueText(date), ""};
  if (date == nullptr || date->date() == nullptr) {
    finding.level = Level::error;
    finding.message += ", but it must be a date";
    finding.remedy = "The host must store its installation date here, as a date.";
  } else if (*date->date() > platform::current().clock->now()) {
    finding.level = Level::warning;
    finding.message += ", which is in the future";
    finding.remedy = "Check the computer's clock. The period starts only on this date.";
  }
  return finding;
}

Finding agreementFinding(const Value* agreement) {
  Finding finding{Level::ok, "agreement", std::string(agreementKey), valueText(agreement), ""};
  if (agreement == nullptr) {
    finding.message += ", which counts as no agreement";
  } else if (!agreement->truth()) {
    finding.level = Level::error;
    finding.message += ", not a boolean or a number, which counts as no agreement";
    finding.remedy = "The host must store the agreement as a boolean.";
  }
  return finding;
}

Finding languageFinding(const Value* language) {
  Finding finding{Level::ok, "language", std::string(languageKey), valueText(language), ""};
  if (language == nullptr) {
    finding.message += ", so records of mode 1 have an empty Locale";
  } else if (language->text() == nullptr) {
    finding.level = Level::warning;
    finding.message += ", not a text, so records of mode 1 have an empty Locale";
    finding.remedy = "The host must store the language as a text such as en_US.";
  }
  return finding;
}

Finding listEntryFinding(const std::string& key, const Value& value) {
  Finding finding{Level::ok, "support_list_entry", visibleLine(key), valueText(value), ""};
  const Text version = CommonTooWenlolib::convertBiasVersionStrToVerStr(key);
  const std::int32_t number = CommonTooWenlolib::convertVersionStrToNum(version);
  const bool named = number != -1 && CommonTooWenlolib::convertVersionNumToBiasStr(number) == key;
  const Text highest = value.text() == nullptr ? Text() : Text(*value.text());
  if (!named || CommonTooWenlolib::convertVersionStrToNum(highest) == -1) {
    finding.level = Level::warning;
    finding.message += named ? ", but it must be an OS version as a text"
                             : ", but the library never looks up this key";
    finding.remedy = "An entry needs a key such as 1001.0 and a text such as 10.17.3.";
  }
  return finding;
}

}  // namespace

void checkPreferences(const ToolPlatform& platform, Findings& findings) {
  const std::string path = realPath(platform, preferenceFile);
  const platform::ListReading file = readPropertyList(path);
  if (!file.dictionary) {
    findings.push_back({isMissing(file) ? Level::warning : Level::error, "preferences", path,
                        listTrouble(file) + ", so only application usage of mode 2 is recorded",
                        preferencesRemedy(file)});
    return;
  }
  findings.push_back(readFinding("preferences", path, file));
  findings.push_back(dateFinding(entry(file.dictionary, installedDateKey)));
  findings.push_back(agreementFinding(entry(file.dictionary, agreementKey)));
  findings.push_back(languageFinding(entry(file.dictionary, languageKey)));
}

void checkSupportList(const ToolPlatform& platform, Findings& findings) {
  const std::string path = realPath(platform, supportVersionListFile);
  const bool needed =
      listCounts(CommonTooWenlolib::systemVersionNum(), CommonTooWenlolib::supportUpperOSVersion());
  const platform::ListReading file = readPropertyList(path);
  Finding finding = readFinding("support_list", path, file);
  if (!file.dictionary) {
    if (!isMissing(file)) finding.level = Level::warning;
    if (needed) finding.level = Level::error;
    finding.message =
        listTrouble(file) + (needed ? ", so nothing is recorded" : ", but not needed on this OS");
    if (finding.level != Level::ok) finding.remedy = supportListRemedy(file);
  }
  findings.push_back(finding);
  if (!file.dictionary) return;
  for (const auto& [key, value] : *file.dictionary) {
    findings.push_back(listEntryFinding(key, value));
  }
}

void checkIdentifier(const ToolPlatform& platform, Findings& findings) {
  const std::string path = realPath(platform, configurationFile);
  const platform::ListReading file = readPropertyList(path);
  const Text identifier = storedIdentifier(file.dictionary);
  Finding finding{Level::ok, "identifier", path, "an identifier is stored", ""};
  if (file.state == platform::ListState::partial) {
    finding = readFinding("identifier", path, file);
    if (!identifier) {
      finding.level = Level::error;
      finding.message +=
          ". The library does not replace the file, so every record has another identifier";
    }
  } else if (isMissing(file) || (file.dictionary && !identifier)) {
    finding.message = "no identifier yet; the first record makes one";
  } else if (!file.dictionary) {
    finding.level = Level::warning;
    finding.message = listTrouble(file) + ", so the next record tries to replace it";
    finding.remedy = "Move it away; the next record makes another identifier.";
  } else if (identifier->size() != identifierLength) {
    finding.level = Level::warning;
    finding.message = identifier->empty() ? "the identifier is empty, here and in every record"
                                          : "the identifier does not have the usual form";
    finding.remedy = "Remove the key WENLIBUUID; the next record makes another identifier.";
  }
  findings.push_back(finding);
}

}  // namespace wenlolib::tools
