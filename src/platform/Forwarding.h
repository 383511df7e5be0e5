/// Services that pass every call on to others. A derived class overrides the call that it watches,
/// redirects or holds back.
#ifndef WENLOLIB_PLATFORM_FORWARDING_H
#define WENLOLIB_PLATFORM_FORWARDING_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Files.h"
#include "platform/PropertyLists.h"
#include "platform/System.h"

namespace wenlolib::platform {

class ForwardingFiles : public Files {
 public:
  /// `target` must outlive this object. The same holds for the classes below.
  explicit ForwardingFiles(Files& target) : target_(target) {}

  Kind kindAt(const std::string& path) override { return target_.kindAt(path); }
  bool isExecutable(const std::string& path) override { return target_.isExecutable(path); }
  Outcome writeAtomically(const std::string& path, std::string_view bytes, std::uint32_t mode,
                          Publication publication) override {
    return target_.writeAtomically(path, bytes, mode, publication);
  }
  bool setPermissions(const std::string& path, std::uint32_t mode) override {
    return target_.setPermissions(path, mode);
  }
  Reason createFolder(const std::string& path, std::uint32_t mode) override {
    return target_.createFolder(path, mode);
  }

 protected:
  Files& target_;
};

class ForwardingPropertyLists : public PropertyLists {
 public:
  explicit ForwardingPropertyLists(PropertyLists& target) : target_(target) {}

  ListReading read(const std::string& path) override { return target_.read(path); }
  Text asXml(const Dictionary& dictionary) override { return target_.asXml(dictionary); }

 protected:
  PropertyLists& target_;
};

class ForwardingBundles : public Bundles {
 public:
  explicit ForwardingBundles(Bundles& target) : target_(target) {}

  std::optional<Dictionary> informationAt(const std::string& path) override {
    return target_.informationAt(path);
  }
  std::optional<Dictionary> ownInformation() override { return target_.ownInformation(); }

 protected:
  Bundles& target_;
};

class ForwardingPrograms : public Programs {
 public:
  explicit ForwardingPrograms(Programs& target) : target_(target) {}

  std::optional<std::int32_t> run(const std::string& path,
                                  const std::vector<std::string>& arguments, bool wait) override {
    return target_.run(path, arguments, wait);
  }

 protected:
  Programs& target_;
};

}  // namespace wenlolib::platform

#endif
