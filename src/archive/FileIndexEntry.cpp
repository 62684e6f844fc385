// The record of one embedded file and its reader. No operating system in it.
#include "archive/FileIndexEntry.h"

#include "archive/LauncherFileFormat.h"
#include "tagfile/StreamUtils.h"
#include "util/LauncherException.h"

namespace {

constexpr const char* kInvalidType = "Invalid file type in file index.";
constexpr const char* kNoFileId = "Unable to load file id.";
constexpr const char* kNoFileLength = "Unable to load file length.";
constexpr const char* kNoOffset = "Unable to load offset to file bytes.";
constexpr const char* kNoNameLength = "Unable to load the string value.";
constexpr const char* kNoDecompressedCount = "Unable to load decompressed file count.";
constexpr const char* kNoDecompressedSize = "Unable to load decompressed size.";

std::int32_t loadFileType(std::FILE* file) {
  const int type = std::fgetc(file);
  if (type < 0 || type > FILE_TYPE_LAST) {
    throw LauncherException(kInvalidType);
  }
  return type;
}

// QUIRK(name-ends-at-newline): the name is read as a line of at most `length` bytes. It ends with
// its first newline, and the bytes after that are read as the next fields. A name cut short by the
// end of the file is taken as it is. A name also ends before its first zero byte; the bytes after
// that are skipped.
SString loadName(std::FILE* file, std::int16_t length) {
  char name[kMaxNameLength + 1];
  if (length <= 0 || std::fgets(name, length + 1, file) == nullptr) {
    return {};
  }
  return name;
}

}  // namespace

void FileIndexEntry::load(std::FILE* launcherFile) {
  m_fileType = loadFileType(launcherFile);
  m_fileId = loadLongValue(launcherFile, kNoFileId);
  m_fileLength = loadLongValue(launcherFile, kNoFileLength);
  m_offsetToBytes = loadLongValue(launcherFile, kNoOffset);
  m_stringValue = loadName(launcherFile, loadShortValue(launcherFile, kNoNameLength));
  m_compressed = std::fgetc(launcherFile) == kCompressedFlag;
  if (m_compressed) {
    m_decompressedFileCount = loadLongValue(launcherFile, kNoDecompressedCount);
    m_decompressedSize = loadLongValue(launcherFile, kNoDecompressedSize);
  }
}

void FileIndexEntry::loadTagFile(std::FILE* launcherFile, TagFileObserver* observer) {
  if (!isTagFile()) {
    return;
  }
  auto tagFile = std::make_unique<TagFile>();
  tagFile->load(launcherFile, m_stringValue, m_offsetToBytes, m_fileLength, observer);
  m_tagFile = std::move(tagFile);
}

bool FileIndexEntry::isTagFile() const {
  return isTagFileType(m_fileType);
}
