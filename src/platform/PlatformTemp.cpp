// PlatformImpl: temporary files and directories, the clean-up of a run, free space.
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "launcher/LauncherFacts.h"
#include "platform/CleanupState.h"
#include "platform/DeleteFullDir.h"
#include "platform/FileNavigator.h"
#include "platform/PlatformImpl.h"
#include "platform/RandomName.h"
#include "platform/UniqueEntry.h"
#include "tagfile/Paths.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

namespace {

constexpr const char* kTempPrefix = "cvj";
constexpr std::size_t kRandomPart = 6;

constexpr const char* kTempFileError = "Error creating tmp file ";

// "/a//" is "/a"; "/" stays.
SString withoutTrailingSeparators(const SString& path) {
  std::size_t size = path.size();
  while (size > 1 && path[size - 1] == *kPathSeparator) {
    --size;
  }
  return path.substr(0, size);
}

SString makeTempName() {
  return withoutTrailingSeparators(PlatformImpl::getSystemTempDirectory()) + kPathSeparator +
         kTempPrefix + randomName(kRandomPart);
}

// The path of a temporary file, as the user sees the directory that he gave.
SString asGiven(const SString& path) {
  const std::size_t directory = withoutTrailingSeparators(g_cleanup.m_tempDir).size();
  return withoutTrailingSeparators(g_cleanup.m_tempDirAsGiven) + path.substr(directory);
}

void deleteAll(const StringDeque& paths) {
  for (long i = 0; i < paths.size(); ++i) {
    PlatformImpl::deleteFile(paths[i]);
  }
}

}  // namespace

SString PlatformImpl::createTempFile() {
  SString path;
  if (createUniqueEntry(EntryKind::File, makeTempName, path) != 0) {
    throw LauncherException(kTempFileError + asGiven(path));
  }
  g_cleanup.m_sdqCreatedFiles.push_back(path);
  return path;
}

SString PlatformImpl::createTempSubDirectory() {
  SString path;
  const int error = createUniqueEntry(EntryKind::Directory, makeTempName, path);
  if (error != 0) {
    throw LauncherException(std::strerror(error));
  }
  g_cleanup.m_sdqCreatedDrs.push_back(path);
  return path;
}

void PlatformImpl::addFileToCleanupList(const SString& path) {
  g_cleanup.m_sdqCreatedFiles.push_back(path);
}

void PlatformImpl::removeFileFromCleanupList(const SString& path) {
  g_cleanup.m_sdqCreatedFiles.eraseFirst(path);
}

void PlatformImpl::removeDirFromCleanupList(const SString& path) {
  g_cleanup.m_sdqCreatedDrs.eraseFirst(path);
}

bool PlatformImpl::fileExists(const SString& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0;
}

void PlatformImpl::deleteFile(const SString& path) {
  // lstat("link/") follows the link; strip the slash.
  if (FileNavigator::isDirectory(withoutTrailingSeparators(path).c_str())) {
    DeleteFullDir(path).process();
  } else {
    (void)deleteOneFile(path);
  }
}

// QUIRK(several-files-are-not-rounded-up): for one file the last, partly filled block counts; for
// several each file adds a whole block and the remainder adds none.
std::int64_t PlatformImpl::countBlocks(std::int64_t bytes, std::int64_t files,
                                       std::int64_t blockSize) {
  if (blockSize <= 0) {
    return 0;  // no file system has such blocks
  }
  const std::int64_t blocks = bytes / blockSize;
  if (files == 1) {
    return bytes % blockSize == 0 ? blocks : blocks + 1;
  }
  return files > 1 ? blocks + files : blocks;
}

bool PlatformImpl::checkFreeSpace(const SString& directory, std::int64_t bytes,
                                  std::int64_t files) {
  // QUIRK(relative-directory-is-not-asked): for a relative directory the file system of the current
  // directory is asked.
  const char* asked = directory.startsWith(kPathSeparator) ? directory.c_str() : ".";
  struct statvfs system;
  if (statvfs(asked, &system) != 0) {
    const int error = errno;
    throw LauncherException(std::strerror(error));
  }
  const auto blockSize =
      static_cast<std::int64_t>(system.f_frsize != 0 ? system.f_frsize : system.f_bsize);
  const auto needed = static_cast<double>(countBlocks(bytes, files, blockSize));
  const auto size = static_cast<double>(blockSize);
  return needed * size <= size * static_cast<double>(system.f_bavail);
}

void PlatformImpl::setDeleteLauncher(bool deleteIt) {
  g_cleanup.m_deleteLauncher = deleteIt;
}

void PlatformImpl::deleteLauncher() {
  const SString launcher = LauncherFacts::getLauncherFileName();
  const SString directory = directoryOf(launcher);
  (void)unlink(launcher.c_str());
  if (!directory.empty()) {
    (void)rmdir(directory.c_str());
  }
}

void PlatformImpl::cleanup() {
  deleteAll(g_cleanup.m_sdqCreatedFiles);
  deleteAll(g_cleanup.m_sdqCreatedDrs);
  if (g_cleanup.m_deleteLauncher) {
    deleteLauncher();
  }
}
