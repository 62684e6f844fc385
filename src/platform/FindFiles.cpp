#include "platform/FindFiles.h"

#include <string_view>
#include <utility>

#include "launcher/Log.h"
#include "platform/PlatformImpl.h"
#include "tagfile/TextUtils.h"

namespace {

constexpr char kUnixTempDir[] = "/var/tmp/";

// True when `path` ends with a separator and `name`. The separator is compared first: it nearly
// always decides.
bool isNamed(std::string_view path, std::string_view name) {
  return path.size() > name.size() && path[path.size() - name.size() - 1] == '/' &&
         path.ends_with(name);
}

// Skipped pseudo file systems are not logged: nobody expects a Java there.
void logPassedOver(const Mount& mount) {
  if (mount.kind == FileSystemKind::Network) {
    logMessage("Passing over the network mount " + onOneLine(mount.point) + " of type " +
                   onOneLine(mount.type),
               LOG_INFO);
  } else if (mount.kind == FileSystemKind::Fuse) {
    logMessage("Passing over the FUSE mount " + onOneLine(mount.point) + " of type " +
                   onOneLine(mount.type),
               LOG_INFO);
  }
}

}  // namespace

FindFiles::FindFiles(const StringDeque& names, FileFindListener& listener, MountTable mounts)
    : FileNavigator(true),
      m_names(names),
      m_listener(listener),
      m_tempDir(PlatformImpl::getSystemTempDirectory()),
      m_mounts(std::move(mounts)) {
  appendPathSeparator(m_tempDir);
}

bool FindFiles::processFile(const SString& path) {
  for (long i = 0; i < m_names.size(); ++i) {
    if (isNamed(path, m_names[i]) && m_listener.foundFile(path)) {
      return true;
    }
  }
  return false;
}

bool FindFiles::skipDirectory(const SString& path) {
  if (const Mount* mount = m_mounts.passedOverAt(path)) {
    logPassedOver(*mount);
    return true;
  }
  // QUIRK(skip-needs-trailing-separator): directories met on the way have no separator at their
  // end, so only a root that was given with one is ever skipped. JVMs in the temporary directory
  // are found.
  return path == m_tempDir || path == kUnixTempDir;
}

bool FindFiles::isKnownDirectory(const SString& path) const {
  return m_mounts.passedOverAt(path) != nullptr;
}
