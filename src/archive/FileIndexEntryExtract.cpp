// FileIndexEntry: extraction.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>

#include "archive/FileIndex.h"
#include "archive/FileIndexEntry.h"
#include "archive/LauncherFileFormat.h"
#include "platform/PlatformImpl.h"
#include "platform/WriteError.h"
#include "tagfile/TextUtils.h"

namespace {

constexpr std::size_t kChunkSize = 61439;
constexpr mode_t kNewFileMode = 0666;  // less the umask

// Reads stored bytes past the stream's buffer: a chunk is one read(2).
class StoredBytes {
 public:
  explicit StoredBytes(std::FILE* launcherFile) : m_fd(fileno(launcherFile)) {}

  bool isAtEnd() const { return m_atEnd; }
  int error() const { return m_error; }  // what ended it before its end, or 0

  // Moves to `position` and returns it; to the beginning of the file when it is negative.
  std::int64_t seek(std::int64_t position) {
    return lseek(m_fd, static_cast<off_t>(position), SEEK_SET) < 0 ? 0 : position;
  }

  // Returns fewer than `size` bytes only at the end.
  std::size_t read(char* bytes, std::size_t size) {
    std::size_t done = 0;
    while (done < size && !m_atEnd) {
      const ssize_t count = ::read(m_fd, bytes + done, size - done);
      m_error = count < 0 && errno != EINTR ? errno : 0;
      m_atEnd = count == 0 || m_error != 0;
      done += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
    return done;
  }

 private:
  int m_fd;  // the stream's
  bool m_atEnd = false;
  int m_error = 0;
};

// The file that is written, without a buffer: no flush is needed. Remembers the first error.
class Copy {
 public:
  explicit Copy(const SString& path)
      : m_fd(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kNewFileMode)) {
    note(m_fd >= 0);
  }
  ~Copy() { close(); }
  Copy(const Copy&) = delete;
  Copy& operator=(const Copy&) = delete;

  int error() const { return m_error; }

  // The user's cancel ends a write that blocks, also one that took some of the bytes before.
  void write(const char* bytes, std::size_t size) {
    while (size > 0 && m_error == 0) {
      const ssize_t count = ::write(m_fd, bytes, size);
      note(count >= 0 || errno == EINTR);
      bytes += std::max<ssize_t>(count, 0);
      size -= static_cast<std::size_t>(std::max<ssize_t>(count, 0));
      if (size > 0 && m_error == 0 && PlatformImpl::isCanceled()) {
        m_error = EINTR;
      }
    }
  }

  void close() {
    if (m_fd >= 0) {
      note(::close(m_fd) == 0);
      m_fd = -1;
    }
  }

 private:
  void note(bool success) {
    if (!success && m_error == 0) {
      m_error = errno;
    }
  }

  int m_error = 0;
  int m_fd;
};

// Copies the bytes from `begin` up to `end`, as far as they lie inside the launcher file. Each
// chunk advances the progress by 1; before each the cancel flag is checked.
void copyChunks(StoredBytes& launcher, Copy& output, std::int64_t begin, std::int64_t end) {
  const auto buffer = std::make_unique_for_overwrite<char[]>(kChunkSize);
  std::int64_t position = launcher.seek(begin);
  while (position < end && !launcher.isAtEnd() && output.error() == 0 &&
         !PlatformImpl::isCanceled()) {
    const auto wanted = std::min<std::int64_t>(kChunkSize, end - position);
    const std::size_t count = launcher.read(buffer.get(), static_cast<std::size_t>(wanted));
    output.write(buffer.get(), count);
    PlatformImpl::advanceUIProgress(1);
    position += static_cast<std::int64_t>(count);
  }
}

// Returns the system's error number of a failed open, read or write, 0 for success. A launcher file
// that was removed or changed since its index was read is reported the same way.
int copyStoredBytes(const SString& path, std::int64_t begin, std::int64_t end) {
  const FilePtr launcherFile = FileIndex::openLauncherFile();
  if (launcherFile == nullptr) {
    return errno;
  }
  Copy output(path);
  if (output.error() != 0) {
    return output.error();
  }
  StoredBytes launcher(launcherFile.get());
  copyChunks(launcher, output, begin, end);
  output.close();
  return launcher.error() != 0 ? launcher.error() : output.error();
}

}  // namespace

// What is unpacked from the file later needs room, too.
void FileIndexEntry::checkFreeSpace(const SString& directory) const {
  std::int64_t bytes = m_fileLength;
  std::int64_t files = 1;
  if (m_compressed) {
    bytes += m_decompressedSize;
    files += m_decompressedFileCount;
  }
  if (!PlatformImpl::checkFreeSpace(directory, bytes, files)) {
    throwWriteError(SString());
  }
}

SString FileIndexEntry::extract(const SString& directory) const {
  checkFreeSpace(directory);
  SString path = directory;
  appendPathSeparator(path);
  path += m_stringValue;
  const std::int64_t begin = m_offsetToBytes;
  throwIfNotWritten(copyStoredBytes(path, begin, begin + m_fileLength));
  PlatformImpl::throwIfCanceled();
  if (isProgramType(m_fileType)) {
    PlatformImpl::setFileExecutable(path);
  }
  return path;
}
