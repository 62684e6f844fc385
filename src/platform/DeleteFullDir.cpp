#include "platform/DeleteFullDir.h"

#include <cstring>

#include "platform/PlatformImpl.h"

bool DeleteFullDir::process(const SString& directory) {
  const bool stopped = FileNavigator::process(directory);
  // From last to first: inner directories before those that contain them.
  for (long i = visitedDirectories().size() - 1; i >= 0; --i) {
    deleteDirectory(i);
  }
  return stopped;
}

bool DeleteFullDir::processFile(const SString& path) {
  if (!PlatformImpl::deleteOneFile(path)) {
    m_failed.push_back(path);
  }
  return false;
}

void DeleteFullDir::deleteDirectory(long position) {
  const SString& directory = visitedDirectories()[position];
  if (!isProtected(position) && !PlatformImpl::deleteOneFile(directory)) {
    m_failed.push_back(directory);
  }
}

// QUIRK(failure-protects-by-position): only the failure at the directory's own position in the list
// counts. So most directories that are not empty are tried, and each failure is logged.
bool DeleteFullDir::isProtected(long position) const {
  const SString& directory = visitedDirectories()[position];
  // A position after the end of the list reads as empty and protects nothing.
  return std::strncmp(m_failed[position].c_str(), directory.c_str(), directory.size()) == 0;
}
