#include "platform/PlatformImpl.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "launcher/Log.h"
#include "platform/CleanupState.h"
#include "platform/DeleteFailure.h"
#include "platform/MessageCatalogue.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"
#include "util/StringDeque.h"

namespace {

constexpr const char* kDefaultTempDir = "/var/tmp/";
constexpr char kHintSeparator = ':';
constexpr wchar_t kLastAscii = 0x7F;

// Once in a run.
void warnOfOpenTempDir() {
  if (!g_cleanup.m_warnedOfTempDir) {
    g_cleanup.m_warnedOfTempDir = true;
    logMessage("The temporary directory " + g_cleanup.m_tempDir +
                   " is open to everybody and has no sticky bit: others may replace what is in it.",
               LOG_WARNING);
  }
}

}  // namespace

void PlatformImpl::getJVMSearchPartitions(StringDeque& partitions) {
  partitions.push_back(kPathSeparator);
}

SString PlatformImpl::getPathSeparator() {
  return kPathSeparator;
}

void PlatformImpl::getPlatformHint(StringDeque& homes, const SString& variableName) {
  homes.clear();
  const SString value = getEnvironmentVariable(variableName);
  if (value.empty()) {
    return;
  }
  std::size_t start = 0;
  for (std::size_t end = value.find(kHintSeparator); end != SString::npos;
       end = value.find(kHintSeparator, start)) {
    homes.push_back(value.substr(start, end - start));
    start = end + 1;
  }
  homes.push_back(value.substr(start));
}

void PlatformImpl::getPlatformJVMPaths(StringDeque& dirs) {
  getPlatformHint(dirs, "PATH");
}

SString PlatformImpl::getEnvironmentVariable(const SString& name) {
  return std::getenv(name.c_str());
}

void PlatformImpl::setEnvironmentVariable(const SString& name, const SString& value) {
  // putenv keeps the pointer, so the text must live as long as the process. Unlike setenv it takes
  // an empty name, or one with "=".
  static StringDeque& texts = *new StringDeque;
  texts.push_back(name + "=" + value);
  putenv(const_cast<char*>(texts.back().c_str()));
}

void PlatformImpl::setFileExecutable(const SString& path) {
  struct stat status;
  if (stat(path.c_str(), &status) == 0) {
    (void)chmod(path.c_str(), (status.st_mode & 07777) | 0111);
  }
}

SString PlatformImpl::wideToMultiByte(const wchar_t* text) {
  SString bytes;
  for (; *text > L'\0' && *text <= kLastAscii; ++text) {
    bytes += static_cast<char>(*text);
  }
  if (*text == L'\0') {
    return bytes;  // no need to find out the user's charset, which costs files and time
  }
  const Charset charset = consoleCharset();
  while (*text != L'\0' && charset.append(static_cast<char32_t>(*text), bytes)) {
    ++text;
  }
  return bytes;
}

bool PlatformImpl::isCanceled() {
  return g_signals.m_canceledBy != 0;
}

SString PlatformImpl::makeAbsolute(const SString& path) {
  const bool isRelative = !path.empty() && !path.startsWith(kPathSeparator);
  const std::unique_ptr<char, void (*)(void*)> known(isRelative ? getcwd(nullptr, 0) : nullptr,
                                                     std::free);
  if (known == nullptr) {
    return path;
  }
  SString absolute(known.get());
  appendPathSeparator(absolute);
  return absolute + path;
}

void PlatformImpl::setSystemTempDir(const SString& dir) {
  g_cleanup.m_tempDir = makeAbsolute(dir);
  g_cleanup.m_tempDirAsGiven = dir;
}

SString PlatformImpl::getSystemTempDirectory() {
  if (g_cleanup.m_tempDir.empty()) {
    setSystemTempDir(kDefaultTempDir);
  }
  struct stat status;
  if (stat(g_cleanup.m_tempDir.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) {
    throw LauncherException(
        get_msg(kCatalogueTempDirMissing, g_cleanup.m_tempDirAsGiven.c_str()).get());
  }
  if ((status.st_mode & (S_IWOTH | S_ISVTX)) == S_IWOTH) {
    warnOfOpenTempDir();
  }
  return g_cleanup.m_tempDir;
}

bool PlatformImpl::deleteOneFile(const SString& path) {
  struct stat status;
  if (lstat(path.c_str(), &status) != 0) {
    const int error = errno;
    if (error != ENOENT && error != ENOTDIR) {
      logDeleteFailure(path, error);
    }
    return false;
  }
  const int result = S_ISDIR(status.st_mode) ? rmdir(path.c_str()) : unlink(path.c_str());
  const int error = errno;
  if (result != 0) {
    logDeleteFailure(path, error);
  }
  return result == 0;
}
