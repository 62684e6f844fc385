// The application archive: the embedded one, or a file beside the launcher.
#include <cerrno>
#include <cstdio>

#include "archive/LauncherFileFormat.h"
#include "archive/LauncherInputFiles.h"
#include "launcher/Launcher.h"
#include "launcher/LauncherState.h"
#include "platform/PlatformImpl.h"
#include "platform/WriteError.h"
#include "tagfile/Paths.h"
#include "tagfile/StreamUtils.h"

namespace {

constexpr std::size_t kCopyChunk = 4096;

// Copies what can be read. Returns 0, or the errno of the last write that failed; the copy
// continues after a failed write.
int copyStream(std::FILE* source, std::FILE* target) {
  int error = 0;
  char chunk[kCopyChunk];
  while (!isAtEnd(source)) {
    const std::size_t got = std::fread(chunk, 1, sizeof chunk, source);
    if (got > 0 && std::fwrite(chunk, 1, got, target) < got) {
      error = errno;
    }
  }
  return error;
}

// Copies `from` to `to`. False when one of them does not open; `error` is that of copyStream.
bool copyFile(const SString& from, const SString& to, int& error) {
  const FilePtr source = openFile(from, "rb");
  FilePtr target = source == nullptr ? nullptr : openFile(to, "wb");
  if (target == nullptr) {
    return false;
  }
  std::setvbuf(target.get(), nullptr, _IONBF, 0);  // so that each failed write is seen
  error = copyStream(source.get(), target.get());
  if (std::fclose(target.release()) != 0 && error == 0) {
    error = errno;
  }
  return true;
}

}  // namespace

const SString& Launcher::getApplicationArchive() {
  if (!g_launcher.m_applicationArchive.empty()) {
    return g_launcher.m_applicationArchive;
  }
  const SString directory = PlatformImpl::createTempSubDirectory();
  getInputFiles().getFileIndex().forEachOfType(
      FILE_TYPE_APPLICATION_ARCHIVE, [&](const FileIndexEntry& archive) {
        g_launcher.m_applicationArchive = archive.extract(directory);
      });
  return g_launcher.m_applicationArchive;
}

const SString& Launcher::getApplicationArchive(const SString& name) {
  if (!g_launcher.m_applicationArchive.empty()) {
    return g_launcher.m_applicationArchive;
  }
  SString source = getOriginalLauncherDir();
  appendPathSeparator(source);
  source += name;
  const SString target =
      PlatformImpl::createTempSubDirectory() + kPathSeparator + baseNameOf(name, kEitherSeparator);
  int error = 0;
  if (!copyFile(source, target, error)) {
    return g_launcher.m_applicationArchive;
  }
  g_launcher.m_applicationArchive = target;
  throwIfNotWritten(error);
  return g_launcher.m_applicationArchive;
}
