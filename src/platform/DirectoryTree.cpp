#include "platform/DirectoryTree.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/MountPoint.h"
#include "tagfile/TextUtils.h"

namespace {

constexpr int kOpenFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
constexpr mode_t kListAndEnter = S_IRUSR | S_IXUSR;

// Its owner may have closed a directory to himself.
int openEvenIfClosed(int parent, const char* name) {
  const int descriptor = openat(parent, name, kOpenFlags);
  if (descriptor != -1 || errno != EACCES) {
    return descriptor;
  }
  if (fchmodat(parent, name, S_IRWXU, AT_SYMLINK_NOFOLLOW) != 0) {
    errno = EACCES;
    return -1;
  }
  return openat(parent, name, kOpenFlags);
}

}  // namespace

DirectoryTree::DirectoryTree(const SString& root) : m_descriptor(AT_FDCWD) {
  m_directories.push_back({kOutside, 0, root});
}

long DirectoryTree::add(long parent, const SString& name) {
  m_directories.push_back({parent, depth(parent) + 1, name});
  return size() - 1;
}

long DirectoryTree::depth(long directory) const {
  return directory == kOutside ? -1 : m_directories[index(directory)].depth;
}

SString DirectoryTree::path(long directory) const {
  std::vector<long> chain;
  for (long i = directory; i != kOutside; i = m_directories[index(i)].parent) {
    chain.push_back(i);
  }
  SString path = name(chain.back());
  for (auto next = chain.rbegin() + 1; next != chain.rend(); ++next) {
    appendPathSeparator(path);
    path += name(*next);
  }
  return path;
}

int DirectoryTree::enter(long directory) {
  const int error = enterParent(directory);
  if (error != 0) {
    return error;
  }
  return isMountPoint(m_descriptor, name(directory).c_str()) ? EBUSY : goDown(directory);
}

int DirectoryTree::enterParent(long directory) {
  return goTo(m_directories[index(directory)].parent);
}

// Upward to the nearest directory that holds both, then downward.
int DirectoryTree::goTo(long directory) {
  std::vector<long> downward;
  long next = directory;
  while (next != m_standing) {
    if (depth(next) >= depth(m_standing)) {
      downward.push_back(next);
      next = m_directories[index(next)].parent;
    } else {
      goUp();
    }
  }
  int error = 0;
  for (auto step = downward.rbegin(); step != downward.rend() && error == 0; ++step) {
    error = goDown(*step);
  }
  return error;
}

// A directory that was moved away does not lead back: then the way begins at the root again.
void DirectoryTree::goUp() {
  const long parent = m_directories[index(m_standing)].parent;
  const int descriptor = parent == kOutside ? -1 : openat(m_descriptor, "..", kOpenFlags);
  if (descriptor == -1 || !standAt(parent, descriptor)) {
    leave();
  }
}

int DirectoryTree::goDown(long directory) {
  const int descriptor = openEvenIfClosed(m_descriptor, name(directory).c_str());
  if (descriptor == -1) {
    return errno;
  }
  return standAt(directory, descriptor) ? 0 : ESTALE;
}

// Takes the descriptor over; false, and nothing changes, when it is not that directory's.
bool DirectoryTree::standAt(long directory, int descriptor) {
  struct stat status;
  Directory& entry = m_directories[index(directory)];
  const bool isRead = fstat(descriptor, &status) == 0;
  if (!isRead ||
      (entry.isKnown && (entry.device != status.st_dev || entry.inode != status.st_ino))) {
    close(descriptor);
    return false;
  }
  if (!entry.isKnown && (status.st_mode & kListAndEnter) != kListAndEnter) {
    static_cast<void>(fchmod(descriptor, S_IRWXU));  // what is then not permitted will be told
  }
  entry.isKnown = true;
  entry.device = status.st_dev;
  entry.inode = status.st_ino;
  leave();
  m_standing = directory;
  m_descriptor = descriptor;
  return true;
}

void DirectoryTree::leave() {
  if (m_descriptor != AT_FDCWD) {
    close(m_descriptor);
  }
  m_descriptor = AT_FDCWD;
  m_standing = kOutside;
}
