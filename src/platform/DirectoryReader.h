// DirectoryReader: the entries of one directory, in the order in which the system lists them.
//
// Used by FileNavigator and DeleteFullDir. Asks the system for many entries and their types at
// once; only an entry without a type is examined by itself. Owns one descriptor (close-on-exec)
// and, on Linux, a buffer of 32 KiB: meant to live on the stack.
#ifndef CORVANE_PLATFORM_DIRECTORYREADER_H
#define CORVANE_PLATFORM_DIRECTORYREADER_H

#include <dirent.h>

class DirectoryReader {
 public:
  enum class Links { Follow, Refuse };
  // Opens the directory at `path`. With Links::Refuse a link in its place is no directory.
  DirectoryReader(const char* path, Links links);
  // Reads a directory that is open and stays so.
  explicit DirectoryReader(int directory);
  ~DirectoryReader();
  DirectoryReader(const DirectoryReader&) = delete;
  DirectoryReader& operator=(const DirectoryReader&) = delete;

  // Moves on to the next entry; "." and ".." are left out. False at the end, and at once when the
  // directory cannot be opened or read.
  [[nodiscard]] bool next();
  // Behind the end: why it came before the last entry (errno), or 0.
  int error() const { return m_error; }
  // Of the current entry. The name is valid until `next`.
  const char* name() const { return m_entry->d_name; }
  // False: isDirectory has to look at the entry, which a dead mount does not survive.
  bool tellsType() const;
  // No link is followed.
  bool isDirectory() const;

 private:
  [[nodiscard]] bool read();

#if defined(__linux__) && defined(__GLIBC__)
  static constexpr unsigned kBufferSize = 32 * 1024;
  using Entry = dirent64;

  long m_size = 0;  // bytes in the buffer
  long m_position = 0;
  alignas(dirent64) char m_buffer[kBufferSize];
#else
  using Entry = dirent;

  void beginReading();

  DIR* m_directory = nullptr;
#endif
  const Entry* m_entry = nullptr;
  int m_error = 0;
  int m_fd;  // -1: not open
};

#endif
