// FileIndex: the files that a launcher file carries, in the order of its index.
//
// The launcher reads its own file by it, corvane-pack any file: both meet hostile numbers with the
// same code. Everything is LauncherException with one of the texts at the top of FileIndex.cpp or
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
  FileIndex(FileIndex&&) = default;  // leaves an empty one behind

  // Opens the running launcher's file for reading: its index and its stored bytes are read through
  // here and nowhere else. Null, with errno set, when it does not open.
  [[nodiscard]] static FilePtr openLauncherFile();

  // Reads the index of an open launcher file. False when the file does not end with our trailer: it
  // carries no files then. Throws; the entries read until then stay. Another call appends.
  [[nodiscard]] bool load(std::FILE* launcherFile);

  // The steps of `load`, for a caller that words errors step by step. Each throws.
  // Where the index begins; nothing without our trailer.
  [[nodiscard]] static std::optional<std::int32_t> findOffset(std::FILE* launcherFile);
  // Goes to the index and reads how many entries it claims to hold.
  static std::int32_t readCount(std::FILE* launcherFile, std::int32_t offset);
  void appendEntries(std::FILE* launcherFile, std::int32_t count);

  long size() const { return m_entries.size(); }
  // Null for a position, an id or a type that is not there; the first where several have it. The
  // index owns the entries.
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

// Parses the tag files of one open launcher file. The tag files of an honest launcher lie beside
// each other; a hostile index may name the same bytes thousands of times, and would take memory by
// the square of the file's size. So there is a limit to the text that one file may yield.
class TagFileLoader {
 public:
  explicit TagFileLoader(std::FILE* launcherFile);

  // Parses the entry's tag file; does nothing for other types. Throws as
  // FileIndexEntry::loadTagFile and, at the limit and from then on, "Unable to read tag file.".
  void load(FileIndexEntry& entry);

 private:
  std::FILE* m_launcherFile;
  std::int64_t m_bytesLeft;  // below zero: the limit was passed
};

#endif
