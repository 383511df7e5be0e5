#include "endtoend/BadFiles.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

#include "platform/posix/TemporaryFolder.h"

namespace wenlolib::tests {
namespace {

using namespace std::string_literals;

std::string repeated(const std::string& text, std::size_t count) {
  std::string result;
  result.reserve(count * text.size());
  for (std::size_t i = 0; i < count; ++i) result += text;
  return result;
}

std::string plist(const std::string& content) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + content +
         "</plist>";
}

std::string deep(const std::string& opening, const std::string& closing) {
  constexpr std::size_t levels = 100'000;
  return plist("<dict><key>a</key>" + repeated(opening, levels) + repeated(closing, levels) +
               "</dict>");
}

std::string entityBomb() {
  std::string entities = "<!ENTITY a0 \"aaaaaaaaaaaaaaaa\">";
  for (int i = 1; i < 30; ++i) {
    const std::string previous = "&a" + std::to_string(i - 1) + ";";
    entities += "<!ENTITY a" + std::to_string(i) + " \"" + previous + previous + "\">";
  }
  return "<?xml version=\"1.0\"?><!DOCTYPE plist [" + entities +
         "]><plist version=\"1.0\"><dict><key>a</key><string>&a29;</string></dict></plist>";
}

const std::string& circle() {
  // {"a": [itself]}
  static const std::string bytes = binaryPropertyList({"\xD1\x01\x02", "\x51\x61", "\xA1\x02"});
  return bytes;
}

void makeSparse(const std::string& path) {
  writeFile(path, plist("<dict></dict>"));
  if (::truncate(path.c_str(), off_t{1} << 30) != 0) throw std::runtime_error("no sparse file");
}

void makePipe(const std::string& path) {
  if (::mkfifo(path.c_str(), 0666) != 0) throw std::runtime_error("no pipe");
}

}  // namespace

std::string binaryPropertyList(const std::vector<std::string>& objects) {
  std::string bytes = "bplist00";
  std::string offsets;
  for (const std::string& object : objects) {
    offsets += static_cast<char>(bytes.size() >> 8);
    offsets += static_cast<char>(bytes.size());
    bytes += object;
  }
  const auto number = [](std::size_t value) {
    std::string eight(8, '\0');
    for (int i = 7; i >= 0; --i, value >>= 8)
      eight[static_cast<std::size_t>(i)] = static_cast<char>(value);
    return eight;
  };
  const std::size_t table = bytes.size();
  return bytes + offsets + std::string(6, '\0') + "\x02\x01" + number(objects.size()) + number(0) +
         number(table);
}

const std::vector<BadFile>& badFiles() {
  using Path = const std::string&;
  static const std::vector<BadFile> all = {
      {"Empty", [](Path p) { writeFile(p, ""); }},
      {"Garbage", [](Path p) { writeFile(p, "\x00\xFF\xFEgarbage\x01"s); }},
      {"PlainText", [](Path p) { writeFile(p, "WENLIBUUID=x\n"); }},
      {"TruncatedXml", [](Path p) { writeFile(p, "<plist version=\"1.0\"><dict><key>WENL"); }},
      {"XmlWithTrailingGarbage", [](Path p) { writeFile(p, plist("<dict></dict>") + "<more>"); }},
      {"TruncatedBinary", [](Path p) { writeFile(p, circle().substr(0, circle().size() - 9)); }},
      {"BinaryHeaderAlone", [](Path p) { writeFile(p, "bplist00"); }},
      {"RootArray", [](Path p) { writeFile(p, plist("<array><string>a</string></array>")); }},
      {"RootText", [](Path p) { writeFile(p, plist("<string>a</string>")); }},
      {"BinaryRootArray",
       [](Path p) {
         writeFile(p, binaryPropertyList({"\xA1\x01", "\x51\x61"}));
       }},
      {"BinaryCircle", [](Path p) { writeFile(p, circle()); }},
      {"DeepArrays", [](Path p) { writeFile(p, deep("<array>", "</array>")); }},
      {"DeepDictionaries", [](Path p) { writeFile(p, deep("<dict><key>a</key>", "</dict>")); }},
      {"EntityBomb", [](Path p) { writeFile(p, entityBomb()); }},
      {"Sparse1GiB", makeSparse},
      {"Pipe", makePipe},
      {"Folder", [](Path p) { std::filesystem::create_directory(p); }, false},
      {"DanglingLink", [](Path p) { std::filesystem::create_symlink("nowhere", p); }},
      {"LinkToItself", [](Path p) { std::filesystem::create_symlink(p, p); }},
      {"EndlessDevice", [](Path p) { std::filesystem::create_symlink("/dev/zero", p); }},
  };
  return all;
}

}  // namespace wenlolib::tests
