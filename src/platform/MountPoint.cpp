#include "platform/MountPoint.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <string>

namespace {

// Sees no directory of the same file system that is mounted there once more.
bool liesOnAnotherDevice(int directory, const char* name) {
  struct stat inner;
  struct stat outer;
  const std::string above = std::string(name) + "/..";
  return fstatat(directory, name, &inner, AT_SYMLINK_NOFOLLOW) == 0 &&
         fstatat(directory, above.c_str(), &outer, 0) == 0 && inner.st_dev != outer.st_dev;
}

}  // namespace

bool isMountPoint(int directory, const char* name) {
#ifdef STATX_ATTR_MOUNT_ROOT
  constexpr int kFlags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC;
  struct statx status;
  if (statx(directory, name, kFlags, 0, &status) == 0 &&
      (status.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) != 0) {
    return (status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
  }
#endif
  return liesOnAnotherDevice(directory, name);
}
