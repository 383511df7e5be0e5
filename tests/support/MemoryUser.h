/// A user and bundles, set by a test.
#ifndef WENLOLIB_TESTS_SUPPORT_MEMORYUSER_H
#define WENLOLIB_TESTS_SUPPORT_MEMORYUSER_H

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/PropertyLists.h"
#include "platform/System.h"
#include "support/Recorder.h"

namespace wenlolib::tests {

class MemoryUser : public platform::User {
 public:
  explicit MemoryUser(Recorder recorder) : recorder_(recorder) {}

  Text login, home, library, localeSetting;
  platform::Container container;

  Text loginName() override { return answer("user.loginName", login); }
  Text homeFolder() override { return answer("user.homeFolder", home); }
  Text libraryFolder() override { return answer("user.libraryFolder", library); }
  Text locale() override { return answer("user.locale", localeSetting); }

  /// A failing lookup is offered, but finds no container.
  platform::Container groupContainer(std::string_view groupIdentifier) override {
    if (recorder_.fails("user.groupContainer", groupIdentifier)) return {true, std::nullopt};
    return container;
  }

 private:
  Text answer(std::string_view kind, const Text& text) {
    return recorder_.fails(kind) ? std::nullopt : text;
  }

  Recorder recorder_;
};

class MemoryBundles : public platform::Bundles {
 public:
  explicit MemoryBundles(Recorder recorder) : recorder_(recorder) {}

  std::map<std::string, Dictionary> informationByPath;
  std::optional<Dictionary> own;

  std::optional<Dictionary> informationAt(const std::string& path) override {
    if (recorder_.fails("bundles.informationAt", path)) return std::nullopt;
    const auto found = informationByPath.find(path);
    if (found == informationByPath.end()) return std::nullopt;
    return found->second;
  }

  std::optional<Dictionary> ownInformation() override {
    if (recorder_.fails("bundles.ownInformation")) return std::nullopt;
    return own;
  }

 private:
  Recorder recorder_;
};

}  // namespace wenlolib::tests

#endif
