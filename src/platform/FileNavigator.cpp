#include "platform/FileNavigator.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>

#include "platform/PlatformImpl.h"
#include "tagfile/TextUtils.h"

namespace {

constexpr unsigned long kFilesPerProgress = 1000;

struct DirectoryCloser {
  void operator()(DIR* directory) const { closedir(directory); }
};
using OpenDirectory = std::unique_ptr<DIR, DirectoryCloser>;

// Only the root may be reached through a link: any other directory that has become one since it
// was seen is not the directory that was meant.
OpenDirectory openDirectory(const char* path, bool isRoot) {
  const int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | (isRoot ? 0 : O_NOFOLLOW);
  const int fd = open(path, flags);
  if (fd == -1) {
    return nullptr;
  }
  OpenDirectory directory(fdopendir(fd));
  if (directory == nullptr) {
    close(fd);
  }
  return directory;
}

bool isDotOrDotDot(const char* name) {
  return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
}

bool isDirectoryEntry(DIR* directory, const dirent& entry) {
#ifdef DT_UNKNOWN
  if (entry.d_type != DT_UNKNOWN) {
    return entry.d_type == DT_DIR;
  }
#endif
  struct stat status;
  return fstatat(dirfd(directory), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
         S_ISDIR(status.st_mode);
}

}  // namespace

bool FileNavigator::process(const SString& root) {
  m_visited.clear();
  m_pending.clear();
  m_fileCount = 0;
  m_pending.push_back(root);
  bool isRoot = true;
  bool isStopped = false;
  while (!m_pending.empty() && !isStopped && !isCanceled()) {
    const SString directory = m_pending.back();
    m_pending.pop_back();
    if (m_recordsVisited) {
      m_visited.push_back(directory);
    }
    isStopped = !skipDirectory(directory) && listDirectory(directory, isRoot);
    isRoot = false;
  }
  return isStopped;
}

bool FileNavigator::listDirectory(const SString& directory, bool isRoot) {
  const OpenDirectory entries = openDirectory(directory.c_str(), isRoot);
  if (entries == nullptr) {
    return false;
  }
  SString path = directory;
  appendPathSeparator(path);
  const std::size_t nameStart = path.size();
  bool isStopped = false;
  const dirent* entry = nullptr;
  while (!isStopped && !isCanceled() && (entry = readdir(entries.get())) != nullptr) {
    if (isDotOrDotDot(entry->d_name)) {
      continue;
    }
    path.replace(nameStart, SString::npos, entry->d_name);
    if (isDirectoryEntry(entries.get(), *entry)) {
      m_pending.push_back(SString(path.view()));
    } else {
      isStopped = visitFile(path);
    }
  }
  return isStopped;
}

bool FileNavigator::visitFile(const SString& path) {
  const bool isStopped = processFile(path);
  if (++m_fileCount % kFilesPerProgress == 0) {
    PlatformImpl::advanceUIProgress(1);
  }
  return isStopped;
}

bool FileNavigator::skipDirectory(const SString&) {
  return false;
}

bool FileNavigator::isCanceled() const {
  return m_cancellable && PlatformImpl::isCanceled();
}

bool FileNavigator::isDirectory(const char* path) {
  struct stat status;
  return lstat(path, &status) == 0 && S_ISDIR(status.st_mode);
}
