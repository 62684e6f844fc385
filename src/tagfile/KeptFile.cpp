#include "tagfile/KeptFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

KeptFile& KeptFile::operator=(KeptFile&& other) noexcept {
  std::swap(m_descriptor, other.m_descriptor);
  m_device = other.m_device;
  m_inode = other.m_inode;
  m_size = other.m_size;
  return *this;
}

void KeptFile::keep(const SString& path) {
  if (m_descriptor != -1) {
    return;
  }
  m_descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  struct stat status;
  if (m_descriptor != -1 && fstat(m_descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
    m_device = status.st_dev;
    m_inode = status.st_ino;
    m_size = status.st_size;
  } else {
    forget();
  }
}

FilePtr KeptFile::open(const SString& path) {
  keep(path);
  FilePtr file = openFile(path, "rb");
  if (file == nullptr || m_descriptor == -1) {
    return file;
  }
  struct stat status;
  if (fstat(fileno(file.get()), &status) != 0) {
    return nullptr;
  }
  if (!isKept(status)) {
    return openKept();
  }
  if (status.st_size != m_size) {
    errno = ESTALE;
    return nullptr;
  }
  return file;
}

bool KeptFile::isKept(const struct stat& status) const {
  return status.st_dev == m_device && status.st_ino == m_inode;
}

// Another file has its path now.
FilePtr KeptFile::openKept() const {
  struct stat status;
  if (fstat(m_descriptor, &status) != 0) {
    return nullptr;
  }
  if (status.st_size != m_size) {
    errno = ESTALE;
    return nullptr;
  }
  const int descriptor = fcntl(m_descriptor, F_DUPFD_CLOEXEC, 0);
  FilePtr file(descriptor == -1 ? nullptr : fdopen(descriptor, "rb"));
  if (file == nullptr && descriptor != -1) {
    close(descriptor);
  }
  if (file != nullptr && std::fseek(file.get(), 0, SEEK_SET) != 0) {
    file = nullptr;
  }
  return file;
}

void KeptFile::forget() {
  if (m_descriptor != -1) {
    close(m_descriptor);
  }
  m_descriptor = -1;
}
