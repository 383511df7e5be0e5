#include "Explanation.h"

#include <algorithm>
#include <span>

#include "BinaryForm.h"
#include "Reading.h"
#include "XmlForm.h"
#include "base/Integer.h"

namespace wenlolib::tests::lists {
namespace {

using platform::ListState;

/// What one and the other make of a file.
struct Pair {
  Reading ours, theirs;

  explicit Pair(const std::string& bytes)
      : ours(lists::ours(bytes)), theirs(lists::theirs(bytes)) {}
  [[nodiscard]] bool agree() const { return ours == theirs; }
};

// --- Differences that the file as a whole shows ---

struct Verdict {
  const char* name;
  bool (*holds)(const std::string& bytes, const Pair& pair);
};

bool isBlankText(const std::string& bytes) {
  return std::all_of(bytes.begin(), bytes.end(), isBlank);
}

/// Core Foundation takes the first two bytes for a byte order mark if one of them is 0.
bool isAfterFirstUnit(const std::string& bytes, const Pair& pair) {
  if (!pair.ours.isRefused() || pair.theirs.isRefused() || bytes.size() < 3) return false;
  if (bytes[0] != '\0' && bytes[1] != '\0') return false;
  return theirs("\xFF\xFE" + bytes.substr(2)) == pair.theirs;
}

bool isNotWellFormed(const std::string& bytes, const Pair& pair) {
  return pair.ours.state == ListState::damaged && !pair.theirs.isRefused() &&
         !pair.theirs.isOldForm && !bytes.starts_with("bplist") && !xml::fault(bytes).empty();
}

/// This project looks no further when it has seen that the root is not a dictionary.
bool isDamagedOtherRoot(const std::string& bytes, const Pair& pair) {
  const bool isBinary = bytes.starts_with("bplist");
  return pair.ours.state == ListState::otherRoot && pair.theirs.isRefused() &&
         (isBinary ? !binary::isWhole(bytes) : !xml::fault(bytes).empty());
}

constexpr const char* damageInOtherRoot = "damage inside another root";

const Verdict verdicts[] = {
    {"a blank file",
     [](const std::string& bytes, const Pair& pair) {
       return pair.ours.isRefused() && pair.theirs.isOldForm && isBlankText(bytes);
     }},
    {"the text form in braces",
     [](const std::string& bytes, const Pair& pair) {
       return pair.ours.isRefused() && pair.theirs.isOldForm && !isBlankText(bytes);
     }},
    {"a character before UTF-16", isAfterFirstUnit},
    {"XML that is not well-formed", isNotWellFormed},
    {damageInOtherRoot, isDamagedOtherRoot},
    {"more values, or deeper ones, than the bounds allow",
     [](const std::string& bytes, const Pair& pair) {
       return pair.ours.state == ListState::tooLarge &&
              (pair.theirs.isBeyondBounds || binary::isBeyondBounds(bytes));
     }},
};

// --- Differences that disappear with a feature of the file ---

enum class Keeps { ours, theirs, neither };

struct Feature {
  const char* name;
  std::string (*without)(const std::string& bytes);
  /// Whose reading stays the same without the feature.
  Keeps keeps;
};

template <int name>
std::string withoutLost(const std::string& bytes) {
  constexpr const char* names[] = {"integer", "real", "date", "data", "true", "false"};
  return xml::withoutLost(bytes, names[name]);
}

const Feature xmlFeatures[] = {
    {damageInOtherRoot, xml::withoutOtherRoot, Keeps::neither},
    {"an encoding other than UTF-8", xml::withoutOtherEncoding, Keeps::ours},
    {"a declaration before the root", xml::withoutProlog, Keeps::ours},
    {"half of a surrogate pair", xml::withoutHalves, Keeps::ours},
    {"a list inside another", xml::withoutInnerLists, Keeps::theirs},
    {"a key where a value belongs", xml::withoutKeysAsValues, Keeps::theirs},
    {"an attribute", xml::withoutAttributes, Keeps::ours},
    {"a reference or CDATA section between the values", xml::withoutTextBetween, Keeps::ours},
    {"a comment in a value", xml::withoutComments, Keeps::ours},
    {"a carriage return", xml::withoutCarriageReturns, Keeps::ours},
    {"a long character reference", xml::withoutLongReferences, Keeps::ours},
    {"a reference or CDATA section in a number, date or data", xml::withoutEscapesInNumbers,
     Keeps::ours},
    {"blanks around a number or date", xml::withoutBlanksInNumbers, Keeps::ours},
    {"blanks in a boolean", xml::withoutBlanksInBooleans, Keeps::ours},
    {"<data/>", xml::withoutEmptyDataTags, Keeps::ours},
    {"a NaN with a sign", xml::withoutSignsOfNan, Keeps::ours},
    {"an integer that cannot be represented", withoutLost<0>, Keeps::ours},
    {"a real that cannot be represented", withoutLost<1>, Keeps::ours},
    {"a date that does not exist", withoutLost<2>, Keeps::ours},
    {"broken base64", withoutLost<3>, Keeps::ours},
    {"text in a boolean", withoutLost<4>, Keeps::ours},
    {"text in a boolean", withoutLost<5>, Keeps::ours},
    {"a year of ten digits or more", xml::withoutFarYears, Keeps::neither},
};

const Feature binaryFeatures[] = {
    {damageInOtherRoot, binary::withoutOtherRoot, Keeps::neither},
    {"another version of the binary form", binary::withoutOtherVersion, Keeps::theirs},
    {"offsets or references of more than eight bytes", binary::withoutWideFrame, Keeps::theirs},
    {"a loose frame", binary::withoutLooseFrame, Keeps::ours},
    {"a set", binary::withoutSets, Keeps::theirs},
    {"an array or a dictionary as a key", binary::withoutContainersAsKeys, Keeps::ours},
    {"an integer of 16 bytes", binary::withoutWideIntegers, Keeps::theirs},
    {"a UID of more than four bytes", binary::withoutLargeUids, Keeps::neither},
    {"an unknown simple object", binary::withoutOddSimples, Keeps::ours},
    {"an integer of 32 bytes or more", binary::withoutOddIntegers, Keeps::ours},
    {"a real of another width", binary::withoutOddReals, Keeps::ours},
    {"a date of another width", binary::withoutOddDates, Keeps::ours},
    {"an empty text in UTF-16", binary::withoutEmptyUtf16, Keeps::ours},
    {"a byte beyond ASCII", binary::withoutOddTexts, Keeps::ours},
    // Only of a list that Core Foundation reads can be said which of the two it takes.
    {"a key twice in the binary form", binary::withoutDuplicateKeys, Keeps::theirs},
};

bool isKept(Keeps keeps, const Pair& before, const Pair& after) {
  // A list without what cannot be represented is whole instead of partial.
  if (keeps == Keeps::ours) return before.ours.value == after.ours.value;
  return keeps == Keeps::neither || before.theirs.value == after.theirs.value;
}

/// Whether nothing is left to explain. Adds the name of the verdict, if one holds.
bool isExplained(const std::string& bytes, const Pair& pair, Names& names) {
  if (pair.agree()) return true;
  const auto* verdict = std::find_if(std::begin(verdicts), std::end(verdicts),
                                     [&](const Verdict& each) { return each.holds(bytes, pair); });
  if (verdict == std::end(verdicts)) return false;
  names.insert(verdict->name);
  return true;
}

}  // namespace

std::optional<Names> explanation(std::string bytes) {
  Names names;
  Pair pair(bytes);
  const bool isBinary = bytes.starts_with("bplist");
  const std::span<const Feature> features =
      isBinary ? std::span<const Feature>(binaryFeatures) : std::span<const Feature>(xmlFeatures);
  for (const Feature& feature : features) {
    if (isExplained(bytes, pair, names)) return names;
    const std::string rest = feature.without(bytes);
    if (rest == bytes) continue;
    const Pair after(rest);
    if (!isKept(feature.keeps, pair, after)) continue;
    // Another feature may have the same effect: then taking out one of them changes nothing yet.
    const bool isFelt = !(after.ours == pair.ours) || !(after.theirs == pair.theirs);
    if (isFelt) names.insert(feature.name);
    bytes = rest;
    pair = after;
  }
  if (isExplained(bytes, pair, names)) return names;
  return std::nullopt;
}

std::vector<std::string> allNames() {
  std::vector<std::string> names;
  for (const Verdict& verdict : verdicts) names.emplace_back(verdict.name);
  for (const Feature& feature : xmlFeatures) names.emplace_back(feature.name);
  for (const Feature& feature : binaryFeatures) names.emplace_back(feature.name);
  return names;
}

}  // namespace wenlolib::tests::lists
