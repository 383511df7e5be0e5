/// Random states of a system, of all kinds, for tests of what must be true in each of them.
#ifndef WENLOLIB_TESTS_TOOLS_EXPLAIN_RANDOMSTATES_H
#define WENLOLIB_TESTS_TOOLS_EXPLAIN_RANDOMSTATES_H

#include <cstdint>
#include <iterator>
#include <limits>
#include <random>
#include <string>

#include "support/HostInstallation.h"
#include "support/MemoryPlatform.h"

namespace wenlolib::tests {

/// Gives the same numbers in every run, with any standard library.
class Dice {
 public:
  explicit Dice(std::uint32_t seed) : engine_(seed) {}

  std::uint32_t word() { return static_cast<std::uint32_t>(engine_()); }
  bool oneIn(std::uint32_t count) { return word() % count == 0; }

  template <class List>
  const auto& oneOf(const List& list) {
    return *(std::begin(list) + word() % std::size(list));
  }

 private:
  std::mt19937 engine_;
};

inline const Instant now = dateOf(2024, 3, 15, 0, 5, 7);

inline const Value valuesOfEveryType[] = {true,
                                          false,
                                          1,
                                          0,
                                          -1,
                                          2U,
                                          0U,
                                          1.5,
                                          0.0,
                                          std::numeric_limits<double>::quiet_NaN(),
                                          "YES",
                                          "1",
                                          "",
                                          "\x1B[31m\n",
                                          now,
                                          Value::Data{1},
                                          Value::Array{true},
                                          Dictionary{{"a", 1}}};

inline Value randomDate(Dice& dice) {
  if (dice.oneIn(8)) return dice.oneOf(valuesOfEveryType);
  const double spans[] = {0,       124416000, 312249600,  -86400,
                          8640000, 200000000, 4000000000, std::numeric_limits<double>::infinity()};
  const double nudges[] = {-1, -0.25, 0, 0, 0.25, 1};
  return now - Seconds(dice.oneOf(spans)) + Seconds(dice.oneOf(nudges));
}

struct OS {
  std::int32_t major, minor, bugFix;
};

/// 10.16.100 counts as 10.17.0, and 0.-1.99 counts as unknown.
inline const OS systems[] = {{10, 15, 7}, {10, 16, 99}, {10, 16, 100}, {10, 17, 0},
                             {10, 17, 0}, {10, 17, 1},  {10, 18, 0},   {11, 0, 0},
                             {6, 1, 55},  {0, 0, 0},    {99, 99, 99},  {0, -1, 99}};

inline const Value versions[] = {"3.1.0", "3.1.0", "3.0.1", "3.100.0", "0.1",
                                 "x",     "",      3.1,     "1.0.0"};

inline void setSystem(MemoryPlatform& world, Dice& dice) {
  const OS os = dice.oneOf(systems);
  world.system.setVersion(os.major, os.minor, os.bugFix);
  const platform::Selector parts[] = {platform::Selector::majorVersion,
                                      platform::Selector::minorVersion,
                                      platform::Selector::bugFixVersion};
  if (dice.oneIn(12)) world.system.answers.erase(dice.oneOf(parts));
  world.bundles.own.reset();
  world.bundles.informationByPath.clear();
  const char* keys[] = {"CFBundleShortVersionString", "CFBundleVersion"};
  if (!dice.oneIn(8)) {
    world.bundles.own = Dictionary();
    for (const char* key : keys) world.bundles.own->emplace(key, dice.oneOf(versions));
  }
  if (!dice.oneIn(8)) {
    Dictionary& installed = world.bundles.informationByPath[installedBundle];
    for (const char* key : keys) installed.emplace(key, dice.oneOf(versions));
  }
}

/// Puts nothing, a folder, a file of another kind or this list at `path`.
inline void setList(MemoryPlatform& world, Dice& dice, const std::string& path,
                    const Dictionary& list) {
  world.files.remove(path);
  switch (dice.word() % 10) {
    case 0:
      return;
    case 1:
      return world.files.addFolder(path);
    case 2:
      return world.files.addFile(path, "no property list");
    default:
      return world.propertyLists.add(path, list);
  }
}

inline void setFiles(MemoryPlatform& world, Dice& dice) {
  Dictionary preferences;
  if (!dice.oneIn(10)) preferences.emplace("InstalledDate", randomDate(dice));
  if (!dice.oneIn(10)) {
    const bool agreed = dice.oneIn(3);
    preferences.emplace("LatestSelectedAgreement",
                        agreed ? Value(true) : dice.oneOf(valuesOfEveryType));
  }
  setList(world, dice, preferencePath, preferences);
  const Value highest[] = {"10.17.0", "10.17.1", "10.16.9", "99.0.0", "10.18", 10.17, "", "x"};
  Dictionary list;
  for (const char* key : {"1003.1", "1003.0", "1001.0", "1000.0"}) {
    if (!dice.oneIn(4)) list.emplace(key, dice.oneOf(highest));
  }
  setList(world, dice, versionListPath, list);
}

inline std::uint32_t randomOption(Dice& dice) {
  return dice.oneIn(4) ? dice.word() : dice.word() % 4;
}

/// Sets a random state, out of all those that a decision may meet.
inline void setState(MemoryPlatform& world, Dice& dice) {
  world.user.login = dice.oneIn(20) ? Text() : Text("ada");
  setSystem(world, dice);
  setFiles(world, dice);
}

}  // namespace wenlolib::tests

#endif
