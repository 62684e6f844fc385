// Manifest: the author's list of what a launcher file shall hold (docs/authoring.md).
//
// A JSON object; paths in it are relative to the manifest's folder, then to the base folders. After
// loading, every file exists and has a type, a number of its own and a name that can be stored.
#ifndef CORVANE_AUTHORING_MANIFEST_H
#define CORVANE_AUTHORING_MANIFEST_H

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "authoring/Findings.h"
#include "authoring/LauncherFileWriter.h"

namespace authoring {

inline constexpr std::int32_t kUnknownType = -1;  // of a file whose type is at fault

struct ManifestFile {
  std::int32_t type = 0;
  std::int32_t id = 0;
  std::int32_t line = 0;  // of the manifest, where it is listed
  std::string path;       // where it was found; empty: nowhere
  std::string name;       // to be stored
  std::optional<DecompressedSize> decompressed;
};

struct Manifest {
  bool isRead = false;  // else the text is no JSON or lists no files: there is nothing to check
  std::string path;
  std::string stub;  // where it was found; empty when the manifest names none
  std::int32_t purpose = 0;
  std::vector<ManifestFile> files;
};

// A manifest that was read.
struct ManifestText {
  std::string label;   // how messages call it
  std::string folder;  // to which its paths are relative; empty: the current one
  std::string text;
};

// Reads a file; "-" is standard input. The paths in what comes from a pipe are relative to the
// current folder. Throws AuthoringError.
ManifestText readManifest(const std::string& path);
// The same from an open file, which is known by `path` unless it is a stream.
ManifestText readManifest(std::FILE* file, const std::string& path, bool isStream);

// The text may begin with a byte order mark and hold comments (// and /* */). Throws
// AuthoringError: the manifest's path, the place in it, what is wrong and what to do. With
// `findings`, all that is wrong is added there instead, and what is left of the manifest is
// returned.
Manifest loadManifest(const ManifestText& text, const std::vector<std::string>& baseFolders,
                      Findings* findings = nullptr);
Manifest loadManifest(const std::string& path, const std::vector<std::string>& baseFolders,
                      Findings* findings = nullptr);

}  // namespace authoring

#endif
