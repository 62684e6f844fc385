// FileIndexEntry: one embedded file of the launcher, as the file index describes it.
//
// The record and its reader are in FileIndexEntry.cpp, which does not use the operating system;
// extraction is in FileIndexEntryExtract.cpp. The layout is drawn in LauncherFileFormat.h. Numbers
// are taken as they are stored: in a hostile file they may have any value.
#ifndef CORVANE_ARCHIVE_FILEINDEXENTRY_H
#define CORVANE_ARCHIVE_FILEINDEXENTRY_H

#include <cstdint>
#include <cstdio>
#include <memory>
#include <utility>

#include "tagfile/TagFile.h"
#include "util/PtrDeque.h"
#include "util/SString.h"

class FileIndexEntry {
 public:
  FileIndexEntry() = default;
  FileIndexEntry(const FileIndexEntry&) = delete;
  FileIndexEntry& operator=(const FileIndexEntry&) = delete;

  // Reads one entry from the stream's position and leaves the stream just after it. Memory is
  // bounded by what the file really holds. Throws LauncherException with one of the texts at the
  // top of FileIndexEntry.cpp.
  void load(std::FILE* launcherFile);
  // Parses the stored bytes of a tag file; does nothing for other types. Throws as TagFile::load,
  // which takes the observer.
  void loadTagFile(std::FILE* launcherFile, TagFileObserver* observer = nullptr);

  std::int32_t getFileType() const { return m_fileType; }
  // Null unless this is a tag file that was parsed. Owned by the entry.
  TagFile* getTagFile() const { return m_tagFile.get(); }
  [[nodiscard]] std::unique_ptr<TagFile> takeTagFile() { return std::move(m_tagFile); }
  std::int32_t getFileId() const { return m_fileId; }
  std::int32_t getFileLength() const { return m_fileLength; }
  std::int32_t getOffsetToBytes() const { return m_offsetToBytes; }
  SString getFileName() const { return m_stringValue; }
  bool isCompressed() const { return m_compressed; }
  std::int32_t getDecompressedFileCount() const { return m_decompressedFileCount; }
  std::int32_t getDecompressedSize() const { return m_decompressedSize; }
  bool isTagFile() const;

  // Copies the stored bytes, as they are, from the launcher file into `directory` (empty: the
  // current one) under the entry's name and returns the path; JVM installers and launchers become
  // executable. Throws LauncherException: no room, a write error (both with the hint to use
  // -cv:tempdir), or "Canceled by the user."; what was written so far stays.
  SString extract(const SString& directory) const;

 private:
  void checkFreeSpace(const SString& directory) const;

  std::int32_t m_fileType = 0;
  std::unique_ptr<TagFile> m_tagFile;
  std::int32_t m_fileId = 0;
  std::int32_t m_fileLength = 0;
  std::int32_t m_offsetToBytes = 0;
  SString m_stringValue;
  bool m_compressed = false;
  std::int32_t m_decompressedFileCount = 0;
  std::int32_t m_decompressedSize = 0;
};

using FileIndexEntryPtrDeque = PtrDeque<FileIndexEntry>;

#endif
