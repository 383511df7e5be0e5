// A service that reads documents and is linked against nothing but the receiver. It prints the
// contents of each named file. It fails if one is not sound, or if one is still sound without its
// last byte.
#include <wenlolib/Receiver.h>

#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <string_view>

namespace {

namespace receiver = wenlolib::receiver;

bool receive(const char* path) {
  std::ifstream file(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  const receiver::Report report = receiver::examine(bytes);
  if (!report.verdict.sound() || !report.document) {
    std::cerr << path << ": " << report.verdict.explanation << '\n';
    return false;
  }
  const std::string_view cut = std::string_view(bytes).substr(0, bytes.size() - 1);
  if (receiver::examine(cut).verdict.fault != receiver::Fault::truncated) return false;
  std::cout << receiver::wrapperName(report.document->layout) << ": "
            << receiver::contentsOf(*report.document).value_or("") << '\n';
  return true;
}

}  // namespace

int main(int count, char** arguments) {
  bool good = count > 1;
  for (int i = 1; i < count; ++i) good = receive(arguments[i]) && good;
  return good ? 0 : 1;
}
