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

/// Notes where the last document went.
class NotedFiles : public platform::ForwardingFiles {
 public:
  using ForwardingFiles::ForwardingFiles;

  std::optional<WrittenDocument> document;

  platform::Outcome writeAtomically(const std::string& path, std::string_view bytes,
                                    std::uint32_t mode,
                                    platform::Publication publication) override {
    const auto outcome = platform::ForwardingFiles::writeAtomically(path, bytes, mode, publication);
    if (!isConfiguration(path)) {
      document = {path, bytes.size(), outcome};
    }
    return outcome;
  }
};

/// Changes no file; keeps the document that was to be written.
class HeldBackFiles : public platform::ForwardingFiles {
 public:
  using ForwardingFiles::ForwardingFiles;

  std::optional<PreviewedDocument> document;

  platform::Outcome writeAtomically(const std::string& path, std::string_view bytes,
                                    std::uint32_t /*mode*/,
                                    platform::Publication /*publication*/) override {
    if (!isConfiguration(path)) document = {path, std::string(bytes)};
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
  NotedFiles files(*watched.services().files);
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
