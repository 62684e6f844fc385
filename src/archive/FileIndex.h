// FileIndex: the files that a launcher file carries, in the order of its index.
//
// The launcher reads its own file with it, corvane-pack any file, so one code meets hostile
// numbers. Errors are LauncherException with one of the texts at the top of FileIndex.cpp or
// FileIndexEntry.cpp. The layout is drawn in LauncherFileFormat.h.
#ifndef CORVANE_ARCHIVE_FILEINDEX_H
#define CORVANE_ARCHIVE_FILEINDEX_H

#include <cstdint>
#include <cstdio>
#include <optional>

#include "archive/FileIndexEntry.h"
#include "tagfile/StreamUtils.h"

class FileIndex {
 public:
  constexpr FileIndex() = default;
  FileIndex(FileIndex&&) = default;  // the source is empty afterwards

  // Opens the running launcher's file for reading. Its index and its stored bytes are read only
  // through this. Its bytes are those that it had at the start (KeptFile.h). Null, with errno set,
  // when it does not open or was changed.
  [[nodiscard]] static FilePtr openLauncherFile();

  // Reads the index of an open launcher file. False when the file does not end with our trailer: it
  // carries no files then. Throws; entries read before the error stay. Another call appends.
  [[nodiscard]] bool load(std::FILE* launcherFile);

  // The steps of `load`, for callers with an error text of their own for each. Each throws.
  // Where the index begins; nothing without our trailer.
  [[nodiscard]] static std::optional<std::int32_t> findOffset(std::FILE* launcherFile);
  // Goes to the index and reads how many entries it claims to hold.
  static std::int32_t readCount(std::FILE* launcherFile, std::int32_t offset);
  void appendEntries(std::FILE* launcherFile, std::int32_t count);

  long size() const { return m_entries.size(); }
  // Null when no entry has that position, id or type; the first one when several have it. The index
  // owns the entries.
  FileIndexEntry* at(long position) const { return m_entries.at(position); }
  FileIndexEntry* findId(std::int32_t fileId) const;
  FileIndexEntry* findType(std::int32_t fileType) const;

  // Calls `use` with each entry of that type, in the order of the index.
  template <class Use>
  void forEachOfType(std::int32_t fileType, Use use) const {
    for (long i = 0; i < size(); ++i) {
      if (at(i)->getFileType() == fileType) {
        use(*at(i));
      }
    }
  }

 private:
  FileIndexEntryPtrDeque m_entries;
};

// Parses the tag files of one open launcher file, and limits how much text they have in all: a
// hostile index may name the same bytes thousands of times, and memory would grow with the square
// of the file's size.
class TagFileLoader {
 public:
  explicit TagFileLoader(std::FILE* launcherFile);

  // Parses the entry's tag file; does nothing for other types. Throws as
  // FileIndexEntry::loadTagFile does; beyond the limit, now and in later calls, that there is more
  // text than the file has room for.
  void load(FileIndexEntry& entry, TagFileObserver* observer = nullptr);

 private:
  std::FILE* m_launcherFile;
  std::int64_t m_bytesLeft;  // below zero: beyond the limit
};

#endif
