// LauncherFileReader: opens a launcher file for listing, checking and extracting. The index is
// read by the launcher's own code; here the errors say which file and which entry.
#ifndef CORVANE_AUTHORING_LAUNCHERFILEREADER_H
#define CORVANE_AUTHORING_LAUNCHERFILEREADER_H

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>

#include "archive/FileIndex.h"
#include "authoring/DigestBlock.h"
#include "authoring/SourceFile.h"
#include "tagfile/StreamUtils.h"

namespace authoring {

struct LauncherFile {
  FilePtr file;
  FileState state;  // as it was opened
  bool isStream = false;
  std::int64_t size = 0;
  bool hasTrailer = false;  // without one it carries no files
  std::int32_t indexOffset = 0;
  std::int32_t purpose = -1;  // -1: no trailer, or nothing before it
  FileIndex index;
  std::int64_t indexEnd = 0;
  DigestBlock digests;
};

// Where the index of the open launcher file lies; nothing when it does not end with our trailer.
[[nodiscard]] std::optional<std::int32_t> findFileIndex(std::FILE* file);

// "-" is standard input; a pipe is copied into a file without a name first. Throws AuthoringError:
// the path and what is wrong with the file.
LauncherFile readLauncherFile(const std::string& path);

// True when the entry's stored bytes lie wholly inside the file.
[[nodiscard]] bool isInside(const LauncherFile& launcher, const FileIndexEntry& entry);

}  // namespace authoring

#endif
