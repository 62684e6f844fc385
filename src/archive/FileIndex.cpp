#include "archive/FileIndex.h"

#include <sys/types.h>

#include <memory>
#include <utility>

#include "archive/LauncherFileFormat.h"
#include "launcher/LauncherFacts.h"
#include "util/LauncherException.h"

namespace {

constexpr const char* kInvalidFormat = "Invalid launcher format.";
constexpr const char* kNoIndexOffset = "Unable to read file index offset.";
constexpr const char* kNoIdentification = "Unable to read launcher identification value.";
constexpr const char* kInvalidIndexOffset = "Invalid file index offset.";
constexpr const char* kNoFileCount = "Unable to read the file count.";
constexpr const char* kNotRead = "Cannot read launcher file.";
constexpr const char* kTooMuchText =
    "The tag files of the launcher hold more text than its file has room for.";

// The tag files of a launcher file may have its size and this many bytes in all.
constexpr std::int64_t kExtraTagFileBytes = 16 << 20;

std::int64_t sizeOf(std::FILE* file) {
  return fseeko(file, 0, SEEK_END) == 0 ? std::int64_t{ftello(file)} : 0;
}

// The bytes that did not come are not the file's end.
void throwIfUnreadable(std::FILE* launcherFile) {
  if (std::ferror(launcherFile) != 0) {
    throw LauncherException(kNotRead);
  }
}

}  // namespace

FilePtr FileIndex::openLauncherFile() {
  return LauncherFacts::openLauncherFile();
}

bool FileIndex::load(std::FILE* launcherFile) {
  const std::optional<std::int32_t> offset = findOffset(launcherFile);
  if (offset) {
    appendEntries(launcherFile, readCount(launcherFile, *offset));
  }
  return offset.has_value();
}

std::optional<std::int32_t> FileIndex::findOffset(std::FILE* launcherFile) {
  if (fseeko(launcherFile, -kTrailerSize, SEEK_END) != 0) {
    throw LauncherException(kInvalidFormat);
  }
  const std::int32_t offset = loadLongValue(launcherFile, kNoIndexOffset);
  const std::int32_t identification = loadLongValue(launcherFile, kNoIdentification);
  throwIfUnreadable(launcherFile);
  const bool isOurs = static_cast<std::uint32_t>(identification) == kLauncherIdentification;
  return isOurs ? std::optional(offset) : std::nullopt;
}

std::int32_t FileIndex::readCount(std::FILE* launcherFile, std::int32_t offset) {
  if (fseeko(launcherFile, offset, SEEK_SET) != 0) {
    throw LauncherException(kInvalidIndexOffset);
  }
  return loadLongValue(launcherFile, kNoFileCount);
}

// A count that is too large does no harm: each entry takes at least 16 bytes, and the end of the
// file throws.
void FileIndex::appendEntries(std::FILE* launcherFile, std::int32_t count) {
  for (std::int32_t i = 0; i < count; ++i) {
    auto entry = std::make_unique<FileIndexEntry>();
    entry->load(launcherFile);
    throwIfUnreadable(launcherFile);
    m_entries.push_back(std::move(entry));
  }
}

FileIndexEntry* FileIndex::findId(std::int32_t fileId) const {
  for (long i = 0; i < size(); ++i) {
    if (at(i)->getFileId() == fileId) {
      return at(i);
    }
  }
  return nullptr;
}

FileIndexEntry* FileIndex::findType(std::int32_t fileType) const {
  for (long i = 0; i < size(); ++i) {
    if (at(i)->getFileType() == fileType) {
      return at(i);
    }
  }
  return nullptr;
}

TagFileLoader::TagFileLoader(std::FILE* launcherFile)
    : m_launcherFile(launcherFile), m_bytesLeft(kExtraTagFileBytes + sizeOf(launcherFile)) {}

void TagFileLoader::load(FileIndexEntry& entry, TagFileObserver* observer) {
  if (!entry.isTagFile()) {
    return;
  }
  if (m_bytesLeft >= 0) {
    entry.loadTagFile(m_launcherFile, observer);
    m_bytesLeft -= entry.getTagFile()->getLoadedBytes();
  }
  if (m_bytesLeft < 0) {
    throw LauncherException(kTooMuchText);
  }
}
