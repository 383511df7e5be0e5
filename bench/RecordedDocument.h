/// A document as the library records it.
#ifndef WENLOLIB_BENCH_RECORDEDDOCUMENT_H
#define WENLOLIB_BENCH_RECORDEDDOCUMENT_H

#include <cstddef>
#include <string>

namespace wenlolib::bench {

/// The bytes of a document of application usage, with contents of this size. A
/// TemporaryInstallation must exist. Throws std::runtime_error.
[[nodiscard]] std::string recordedDocument(std::size_t contentsSize);

}  // namespace wenlolib::bench

#endif
