#include "authoring/LauncherFileReader.h"

#include <sys/types.h>

#include <utility>

#include "archive/LauncherFileFormat.h"
#include "authoring/AuthoringError.h"
#include "authoring/SeekableInput.h"
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

// -1 when there is nothing before the trailer.
std::int32_t readPurpose(std::FILE* file) {
  return fseeko(file, -kPurposeOffsetFromEnd, SEEK_END) == 0 ? std::fgetc(file) : -1;
}

// A block whose end is damaged is found behind the index.
void readDigests(LauncherFile& launcher) {
  std::FILE* const file = launcher.file.get();
  launcher.indexEnd = ftello(file);
  launcher.digests = findDigests(file, launcher.size);
  if (launcher.digests.state == DigestState::kNone && isBlockBegin(file, launcher.indexEnd)) {
    launcher.digests.state = DigestState::kDamaged;
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
  SeekableInput input = openSeekable(path);
  launcher.file = std::move(input.file);
  launcher.isStream = input.isStream;
  launcher.state = FileState(launcher.file.get(), input.isStream ? "" : path);
  const std::optional<std::int32_t> indexOffset = findFileIndex(launcher.file.get());
  launcher.size = fseeko(launcher.file.get(), 0, SEEK_END) == 0 ? ftello(launcher.file.get()) : 0;
  launcher.hasTrailer = indexOffset.has_value();
  if (!launcher.hasTrailer) {
    return launcher;
  }
  launcher.indexOffset = *indexOffset;
  launcher.purpose = readPurpose(launcher.file.get());
  try {
    std::FILE* const file = launcher.file.get();
    launcher.index.appendEntries(file, readCount(file, *indexOffset));
  } catch (const LauncherException& e) {
    throw AuthoringError(inputLabel(path) + ": entry " + std::to_string(launcher.index.size()) +
                         " of the file index cannot be read: " + e.what());
  }
  readDigests(launcher);
  return launcher;
}

bool isInside(const LauncherFile& launcher, const FileIndexEntry& entry) {
  const std::int64_t begin = entry.getOffsetToBytes();
  const std::int64_t length = entry.getFileLength();
  return begin >= 0 && length >= 0 && begin + length <= launcher.size;
}

}  // namespace authoring
