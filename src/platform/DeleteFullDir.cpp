#include "platform/DeleteFullDir.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/DeleteFailure.h"
#include "platform/DirectoryReader.h"
#include "platform/FileNavigator.h"
#include "platform/PlatformImpl.h"
#include "tagfile/TextUtils.h"

void DeleteFullDir::process() {
  deleteFiles(0);
  while (!m_pending.empty()) {
    const Pending next = std::move(m_pending.back());
    m_pending.pop_back();
    deleteFiles(m_tree.add(next.parent, next.name));
  }
  // From last to first: inner directories before those that contain them.
  for (long i = m_tree.size() - 1; i >= 0; --i) {
    deleteDirectory(i);
  }
}

void DeleteFullDir::deleteFiles(long directory) {
  int error = m_tree.enter(directory);
  if (error == 0) {
    DirectoryReader entries(m_tree.descriptor());
    while (entries.next()) {
      if (entries.isDirectory()) {
        m_pending.push_back({directory, entries.name()});
      } else {
        deleteFile(directory, entries.name());
      }
    }
    error = entries.error();
  }
  m_listErrors.push_back(error);
}

void DeleteFullDir::deleteFile(long directory, const char* name) {
  if (unlinkat(m_tree.descriptor(), name, 0) != 0) {
    const int error = errno;
    SString path = m_tree.path(directory);
    appendPathSeparator(path);
    fail(path + name, error);
  }
  if (++m_fileCount % FileNavigator::kFilesPerProgress == 0) {
    PlatformImpl::advanceUIProgress(1);
  }
}

void DeleteFullDir::deleteDirectory(long directory) {
  if (isProtected(directory)) {
    return;
  }
  int error = m_tree.enterParent(directory);
  if (error == 0 &&
      unlinkat(m_tree.descriptor(), m_tree.name(directory).c_str(), AT_REMOVEDIR) != 0) {
    error = errno;
    const int listError = m_listErrors[static_cast<std::size_t>(directory)];
    if (listError != 0 && (error == ENOTEMPTY || error == EEXIST)) {
      error = listError;
    }
  }
  if (error != 0) {
    fail(m_tree.path(directory), error);
  }
}

// What has gone meanwhile needs no word.
void DeleteFullDir::fail(const SString& path, int error) {
  if (error != ENOENT) {
    logDeleteFailure(path, error);
  }
  m_failed.push_back(path);
}

// QUIRK(failure-protects-by-position): only the failure at the directory's own position in the list
// counts. So most directories that are not empty are tried, and each failure is logged.
bool DeleteFullDir::isProtected(long directory) const {
  if (directory >= m_failed.size()) {
    return false;
  }
  const SString path = m_tree.path(directory);
  return std::strncmp(m_failed[directory].c_str(), path.c_str(), path.size()) == 0;
}
