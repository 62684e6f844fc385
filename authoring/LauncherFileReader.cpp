#include "authoring/LauncherFileReader.h"

#include <sys/types.h>

#include <cerrno>
#include <cstring>

#include "authoring/AuthoringError.h"
#include "launcher/LauncherFacts.h"
#include "util/LauncherException.h"

namespace authoring {
namespace {

constexpr const char* kIndexCut = "the file index lies outside the file";

std::int32_t readCount(std::FILE* file, std::int32_t indexOffset) {
  try {
    return FileIndex::readCount(file, indexOffset);
  } catch (const LauncherException&) {
    throw LauncherException(kIndexCut);
  }
}

}  // namespace

// A file that is shorter than a trailer carries no files either.
std::optional<std::int32_t> findFileIndex(std::FILE* file) {
  try {
    return FileIndex::findOffset(file);
  } catch (const LauncherException&) {
    return std::nullopt;
  }
}

LauncherFile readLauncherFile(const std::string& path) {
  LauncherFile launcher;
  launcher.file = openFile(path.c_str(), "rb");
  if (launcher.file == nullptr) {
    throw AuthoringError(path + ": " + std::strerror(errno));
  }
  const std::optional<std::int32_t> indexOffset = findFileIndex(launcher.file.get());
  launcher.size = fseeko(launcher.file.get(), 0, SEEK_END) == 0 ? ftello(launcher.file.get()) : 0;
  launcher.hasTrailer = indexOffset.has_value();
  if (!launcher.hasTrailer) {
    return launcher;
  }
  launcher.purpose = LauncherFacts::getLauncherPurpose(path.c_str());
  try {
    std::FILE* const file = launcher.file.get();
    launcher.index.appendEntries(file, readCount(file, *indexOffset));
  } catch (const LauncherException& e) {
    throw AuthoringError(path + ": entry " + std::to_string(launcher.index.size()) +
                         " of the file index cannot be read: " + e.what());
  }
  return launcher;
}

bool isInside(const LauncherFile& launcher, const FileIndexEntry& entry) {
  const std::int64_t begin = entry.getOffsetToBytes();
  const std::int64_t length = entry.getFileLength();
  return begin >= 0 && length >= 0 && begin + length <= launcher.size;
}

}  // namespace authoring
