#include "platform/DirectoryReader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace {

int openDirectory(const char* path, DirectoryReader::Links links) {
  const int noLinks = links == DirectoryReader::Links::Refuse ? O_NOFOLLOW : 0;
  return open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC | noLinks);
}

// A description of its own, whose position is nobody else's.
int openAgain(int directory) {
  return openat(directory, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

bool isDotOrDotDot(const char* name) {
  return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

}  // namespace

#if defined(__linux__) && defined(__GLIBC__)

// opendir and readdir would do, but make four more system calls for each directory: a sixth of the
// time of a walk.
DirectoryReader::DirectoryReader(const char* path, Links links) : m_fd(openDirectory(path, links)) {
  m_error = m_fd == -1 ? errno : 0;
}

DirectoryReader::DirectoryReader(int directory) : m_fd(openAgain(directory)) {
  m_error = m_fd == -1 ? errno : 0;
}

DirectoryReader::~DirectoryReader() {
  if (m_fd != -1) {
    close(m_fd);
  }
}

bool DirectoryReader::read() {
  if (m_position >= m_size) {
    m_position = 0;
    m_size = m_fd == -1 ? 0 : getdents64(m_fd, m_buffer, sizeof m_buffer);
    if (m_size <= 0) {
      m_error = m_size < 0 ? errno : m_error;
      return false;
    }
  }
  m_entry = reinterpret_cast<const Entry*>(m_buffer + m_position);
  m_position += m_entry->d_reclen;
  return true;
}

#else

DirectoryReader::DirectoryReader(const char* path, Links links) : m_fd(openDirectory(path, links)) {
  beginReading();
}

DirectoryReader::DirectoryReader(int directory) : m_fd(openAgain(directory)) {
  beginReading();
}

void DirectoryReader::beginReading() {
  m_directory = m_fd == -1 ? nullptr : fdopendir(m_fd);
  m_error = m_directory == nullptr ? errno : 0;
}

DirectoryReader::~DirectoryReader() {
  if (m_directory != nullptr) {
    closedir(m_directory);
  } else if (m_fd != -1) {
    close(m_fd);
  }
}

bool DirectoryReader::read() {
  if (m_directory == nullptr) {
    return false;
  }
  errno = 0;
  m_entry = readdir(m_directory);
  m_error = errno;
  return m_entry != nullptr;
}

#endif

bool DirectoryReader::next() {
  while (read()) {
    if (!isDotOrDotDot(m_entry->d_name)) {
      return true;
    }
  }
  return false;
}

bool DirectoryReader::tellsType() const {
#ifdef DT_UNKNOWN
  return m_entry->d_type != DT_UNKNOWN;
#else
  return false;
#endif
}

bool DirectoryReader::isDirectory() const {
#ifdef DT_UNKNOWN
  if (tellsType()) {
    return m_entry->d_type == DT_DIR;
  }
#endif
  struct stat status;
  return fstatat(m_fd, m_entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
         S_ISDIR(status.st_mode);
}
