/// Reads property lists and writes them as XML, to compare them with other readers.
///
///   plist_roundtrip FILE            writes the XML form to standard output
///   plist_roundtrip --batch FILE..  writes the XML form of each FILE to FILE.xml; prints a line
///                                   for each: "read", "partial" if values were left out,
///                                   "unreadable" or "unwritable"
///
/// Exit status: 0 on success; 1 if FILE could not be read as a property list or has no XML form (in
/// a batch: if an XML form could not be stored); 3 if an XML form was not read back as it was
/// written.
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "plist/PropertyList.h"

namespace {

using wenlolib::Text;
namespace plist = wenlolib::plist;

constexpr int inconsistent = 3;

Text contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  if (!file) return std::nullopt;
  return bytes;
}

/// Dates lose their fractions when they are written. So the first XML form, read and written again,
/// must come out the same.
bool readsBack(const std::string& xml) {
  const auto read = plist::read(xml).dictionary;
  return read && plist::write(*read) == xml;
}

struct Outcome {
  std::string_view word;
  Text xml;
};

Outcome roundTrip(const std::string& path) {
  const Text bytes = contents(path);
  const auto read = bytes ? plist::read(*bytes) : wenlolib::platform::ListReading();
  if (!read.dictionary) return {"unreadable", std::nullopt};
  Text xml = plist::write(*read.dictionary);
  if (!xml) return {"unwritable", std::nullopt};
  const bool isWhole = read.state == wenlolib::platform::ListState::whole;
  return {isWhole ? "read" : "partial", std::move(xml)};
}

int single(const std::string& path) {
  const Outcome outcome = roundTrip(path);
  if (!outcome.xml) {
    std::cerr << path << ": " << outcome.word << '\n';
    return EXIT_FAILURE;
  }
  if (!readsBack(*outcome.xml)) return inconsistent;
  std::cout << *outcome.xml << std::flush;
  return std::cout ? EXIT_SUCCESS : EXIT_FAILURE;
}

int batch(char** paths, char** end) {
  for (; paths != end; ++paths) {
    const std::string path = *paths;
    const Outcome outcome = roundTrip(path);
    if (outcome.xml) {
      if (!readsBack(*outcome.xml)) return inconsistent;
      std::ofstream file(path + ".xml", std::ios::binary);
      file << *outcome.xml << std::flush;
      if (!file) return EXIT_FAILURE;
    }
    std::cout << outcome.word << '\n';
  }
  return std::cout.flush() ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc == 2) return single(argv[1]);
    if (argc > 2 && std::string_view(argv[1]) == "--batch") return batch(argv + 2, argv + argc);
    std::cerr << "usage: plist_roundtrip FILE | plist_roundtrip --batch FILE...\n";
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
  }
  return EXIT_FAILURE;
}
