// UnpackedManifest: the manifest that `extract` writes, from which the setup is packed again.
#ifndef CORVANE_AUTHORING_UNPACKEDMANIFEST_H
#define CORVANE_AUTHORING_UNPACKEDMANIFEST_H

#include <cstdint>
#include <string>

#include "authoring/LauncherFileReader.h"

namespace authoring {

// The manifest for files that stand under their stored names beside it, and the stub as `stub`.
std::string unpackedManifest(const LauncherFile& launcher, const std::string& stub);

// The position of the first file whose name is not UTF-8, which no manifest can hold; -1 when none.
long findForeignName(const LauncherFile& launcher);

// Where the stub ends and the files begin.
std::int64_t sizeOfStub(const LauncherFile& launcher);

// True when `pack` lays out the same files in the same way, so that it makes the same bytes, unless
// the launcher file is damaged.
[[nodiscard]] bool hasOurLayout(const LauncherFile& launcher);

}  // namespace authoring

#endif
