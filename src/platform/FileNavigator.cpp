#include "platform/FileNavigator.h"

#include <sys/stat.h>

#include "platform/DirectoryReader.h"
#include "platform/PlatformImpl.h"
#include "tagfile/TextUtils.h"

bool FileNavigator::process(const SString& root) {
  m_pending.clear();
  m_fileCount = 0;
  m_pending.push_back(root);
  bool isRoot = true;
  bool isStopped = false;
  while (!m_pending.empty() && !isStopped && !isCanceled()) {
    const SString directory = m_pending.back();
    m_pending.pop_back();
    isStopped = !skipDirectory(directory) && listDirectory(directory, isRoot);
    isRoot = false;
  }
  return isStopped;
}

bool FileNavigator::listDirectory(const SString& directory, bool isRoot) {
  // Only the root may be a link. Another directory that a link has replaced since it was listed is
  // no longer the one that was meant.
  DirectoryReader entries(directory.c_str(),
                          isRoot ? DirectoryReader::Links::Follow : DirectoryReader::Links::Refuse);
  SString path = directory;
  appendPathSeparator(path);
  const std::size_t nameStart = path.size();
  bool isStopped = false;
  while (!isStopped && !isCanceled() && entries.next()) {
    path.replace(nameStart, SString::npos, entries.name());
    if ((!entries.tellsType() && isKnownDirectory(path)) || entries.isDirectory()) {
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

bool FileNavigator::isKnownDirectory(const SString&) const {
  return false;
}

bool FileNavigator::isCanceled() const {
  return m_cancellable && PlatformImpl::isCanceled();
}

bool FileNavigator::isDirectory(const char* path) {
  struct stat status;
  return lstat(path, &status) == 0 && S_ISDIR(status.st_mode);
}
