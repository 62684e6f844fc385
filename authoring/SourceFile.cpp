#include "authoring/SourceFile.h"

#include <cerrno>
#include <cstring>
#include <utility>

#include "authoring/AuthoringError.h"
#include "authoring/FileKind.h"

namespace authoring {
namespace {

#ifdef __APPLE__
const timespec& writtenAt(const struct stat& status) {
  return status.st_mtimespec;
}
const timespec& changedAt(const struct stat& status) {
  return status.st_ctimespec;
}
#else
const timespec& writtenAt(const struct stat& status) {
  return status.st_mtim;
}
const timespec& changedAt(const struct stat& status) {
  return status.st_ctim;
}
#endif

bool isSameTime(const timespec& a, const timespec& b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

bool isSameFile(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

[[noreturn]] void failToRead(const std::string& path, int error) {
  throw AuthoringError(path + " cannot be read: " + std::strerror(error));
}

// What happened between the two looks at an open file; empty when nothing did. `path` is where it
// was found.
std::string findChange(const struct stat& begin, const struct stat& end, const std::string& path) {
  if (begin.st_size != end.st_size) {
    return "it had " + std::to_string(begin.st_size) + " bytes and has " +
           std::to_string(end.st_size) + " now";
  }
  struct stat there;
  if (!path.empty() && (stat(path.c_str(), &there) != 0 || !isSameFile(end, there))) {
    return "another file took its place, or it was removed";
  }
  const bool same =
      isSameTime(writtenAt(begin), writtenAt(end)) && isSameTime(changedAt(begin), changedAt(end));
  return same ? "" : "it was written to";
}

}  // namespace

FileState::FileState(std::FILE* file, std::string path) : m_path(std::move(path)) {
  if (fstat(fileno(file), &m_status) != 0) {
    failToRead(m_path, errno);
  }
}

void FileState::checkUnchanged(std::FILE* file) const {
  struct stat end;
  if (fstat(fileno(file), &end) != 0) {
    failToRead(m_path, errno);
  }
  const std::string change = findChange(m_status, end, m_path);
  if (!change.empty()) {
    throw AuthoringError(m_path + " changed while it was read: " + change +
                         "; nothing was written, try again when it is complete");
  }
}

// A pipe is refused before it is opened, which would wait for somebody to write.
SourceFile::SourceFile(const std::string& path) {
  struct stat status;
  if (stat(path.c_str(), &status) != 0) {
    failToRead(path, errno);
  }
  if (!S_ISREG(status.st_mode)) {
    throw AuthoringError(path + " is " + fileKind(status.st_mode) + "; name a regular file");
  }
  m_file = openFile(path.c_str(), "rb");
  if (m_file == nullptr) {
    failToRead(path, errno);
  }
  m_state = FileState(m_file.get(), path);
}

}  // namespace authoring
