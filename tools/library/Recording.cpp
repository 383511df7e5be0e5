#include "library/Recording.h"

#include <cerrno>

#include "platform/Forwarding.h"
#include "toolkit/Folders.h"
#include "toolkit/SharedNames.h"
#include "wenlolib/WENLOLIB.h"

namespace wenlolib::tools {
namespace {

bool isConfiguration(const std::string& path) {
  return Text(path) == configurationPath(configurationFile);
}

/// Whether a document that is published like this would replace a file at `path`.
bool replacesAt(platform::Files& files, const std::string& path,
                platform::Publication publication) {
  return publication == platform::Publication::replacing &&
         files.kindAt(path) == platform::Kind::other;
}

/// Notes where the last document went. With `keep` a document replaces nothing.
class NotedFiles : public platform::ForwardingFiles {
 public:
  NotedFiles(platform::Files& target, bool keep) : ForwardingFiles(target), keep_(keep) {}

  std::optional<WrittenDocument> document;

  platform::Outcome writeAtomically(const std::string& path, std::string_view bytes,
                                    std::uint32_t mode,
                                    platform::Publication publication) override {
    if (isConfiguration(path)) {
      return platform::ForwardingFiles::writeAtomically(path, bytes, mode, publication);
    }
    const bool replacing = replacesAt(target_, path, publication);
    document = {path, bytes.size(), platform::Outcome::failed, replacing, keep_ && replacing};
    if (!document->kept) document->outcome = write(path, bytes, mode, publication);
    return document->outcome;
  }

  /// The library opens the permissions of what it could not replace. A record that is kept stays
  /// as it is.
  bool setPermissions(const std::string& path, std::uint32_t mode) override {
    const bool kept = document && document->kept && document->path == path;
    return !kept && platform::ForwardingFiles::setPermissions(path, mode);
  }

 private:
  /// Another writer may have made the file a moment ago: with `keep` that counts as kept, too.
  platform::Outcome write(const std::string& path, std::string_view bytes, std::uint32_t mode,
                          platform::Publication publication) {
    const bool careful = keep_ && publication == platform::Publication::replacing;
    const platform::Outcome outcome = target_.writeAtomically(
        path, bytes, mode, careful ? platform::Publication::asNew : publication);
    if (!careful || !(outcome == platform::Outcome::taken)) return outcome;
    document->replacing = document->kept = true;
    return platform::Outcome::failed;
  }

  bool keep_;
};

/// Changes no file; keeps the document that was to be written.
class HeldBackFiles : public platform::ForwardingFiles {
 public:
  using ForwardingFiles::ForwardingFiles;

  std::optional<PreviewedDocument> document;

  platform::Outcome writeAtomically(const std::string& path, std::string_view bytes,
                                    std::uint32_t /*mode*/,
                                    platform::Publication publication) override {
    if (!isConfiguration(path)) {
      document = {path, std::string(bytes), replacesAt(target_, path, publication)};
    }
    return platform::Outcome::written;
  }
  bool setPermissions(const std::string& /*path*/, std::uint32_t /*mode*/) override { return true; }
  platform::Reason createFolder(const std::string& /*path*/, std::uint32_t /*mode*/) override {
    return {platform::Step::makeFolder, EROFS};
  }
};

/// Asked only if no identifier is stored.
class ExampleUuids : public platform::Uuids {
 public:
  bool asked = false;

  Text create() override {
    asked = true;
    return exampleUuid;
  }
};

constexpr std::uint32_t fileTypeOf(RecordKind kind) {
  return kind == RecordKind::printerLog ? 1 : 2;
}

}  // namespace

RecordOutcome record(const platform::Platform& base, const RecordRequest& request) {
  const WatchedPlatform watched(base);
  NotedFiles files(*watched.services().files, request.keep);
  platform::Platform services = watched.services();
  services.files = &files;
  const platform::Substitute substitute(services);
  RecordOutcome outcome;
  outcome.answer =
      request.kind == RecordKind::application
          ? WENLOLIB::writeAppInfoWithContents(request.contents, request.name, request.option)
          : WENLOLIB::writePrinterLogInfoWithContents(request.contents, request.name,
                                                      request.option, request.printer);
  outcome.document = files.document;
  outcome.unanswered = watched.sightings().unanswered;
  return outcome;
}

Preview preview(const platform::Platform& base, const RecordRequest& request) {
  const WatchedPlatform watched(base);
  HeldBackFiles files(*watched.services().files);
  ExampleUuids uuids;
  platform::Platform services = watched.services();
  services.files = &files;
  services.uuids = &uuids;
  const platform::Substitute substitute(services);
  const auto record = WENLOLIB::initWithContents(request.contents, request.name, request.option);
  if (record == nullptr) return {};
  record->setFileType(fileTypeOf(request.kind));
  if (request.kind == RecordKind::printerLog) record->serOtherInfo(request.printer);
  if (!record->writeAppInfo()) return {std::nullopt, watched.sightings().unanswered};
  if (files.document) files.document->exampleIdentifier = uuids.asked;
  return {std::move(files.document), std::nullopt};
}

}  // namespace wenlolib::tools
