// MountTable: the mount points at which a scan of the disks turns back.
//
// These are the pseudo file systems, and those of the network and of FUSE, which may be dead: a
// look at a dead mount point never returns. So they are recognised by the system's table of mounts
// alone, before they are touched. The root file system itself is never among them. Used by
// FindFiles.
#ifndef CORVANE_PLATFORM_MOUNTTABLE_H
#define CORVANE_PLATFORM_MOUNTTABLE_H

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/FileSystemKind.h"
#include "util/SString.h"

struct Mount {
  std::int64_t id;
  std::int64_t parent;  // the mount that holds the mount point; its row may be missing
  SString device;       // "8:1"
  SString point;        // an absolute path without links
  SString type;
  FileSystemKind kind;
};

class MountTable {
 public:
  // The current mounts; none where the system does not list them.
  static MountTable ofSystem();
  // `rootDevice`: that of the root file system, in the spelling of the rows.
  MountTable(const std::vector<Mount>& mounts, const SString& rootDevice);

  // The mount to be skipped whose mount point is `path` (absolute, without links and without a
  // separator at its end); else null. A mount that lies hidden below another is none.
  const Mount* passedOverAt(std::string_view path) const;

 private:
  std::unordered_map<std::string_view, Mount> m_passedOver;  // keys: views of their mount points
};

// The rows of a text in the format of /proc/self/mountinfo; lines that are none are left out.
std::vector<Mount> parseMountInfo(std::string_view text);

#endif
