#include "platform/FileSystemKind.h"

#include <algorithm>
#include <iterator>

namespace {

// Of Linux, macOS and the BSDs. Not here: what holds files in memory (tmpfs, devtmpfs, overlay) and
// what several machines share as a disk (ocfs2, gfs2).
constexpr std::string_view kPseudo[] = {
    "bdev",       "binder",   "binfmt_misc", "bpf",       "cgroup",      "cgroup2",    "configfs",
    "cpuset",     "debugfs",  "devfs",       "devpts",    "efivarfs",    "fdesc",      "fdescfs",
    "functionfs", "fusectl",  "gadgetfs",    "hugetlbfs", "kernfs",      "linprocfs",  "linsysfs",
    "mqueue",     "mqueuefs", "nfsd",        "nsfs",      "ocfs2_dlmfs", "openpromfs", "pipefs",
    "proc",       "procfs",   "pstore",      "ptyfs",     "resctrl",     "rpc_pipefs", "securityfs",
    "selinuxfs",  "smackfs",  "sockfs",      "spufs",     "sysfs",       "tracefs",    "usbfs",
    "xenfs",
};

// autofs mounts something, mostly of another machine, as soon as somebody looks into it.
constexpr std::string_view kNetwork[] = {
    "9p",    "afpfs", "afs",    "auristorfs", "autofs", "beegfs", "ceph",  "cifs",  "coda",
    "davfs", "fhgfs", "ftp",    "gpfs",       "ibrix",  "lustre", "ncp",   "ncpfs", "nfs",
    "nfs3",  "nfs4",  "oldnfs", "orangefs",   "panfs",  "prl_fs", "pvfs2", "smb",   "smb2",
    "smb3",  "smbfs", "vboxsf", "virtiofs",   "vmhgfs", "webdav",
};

constexpr std::string_view kFuse[] = {"fuse", "fuseblk", "fusefs", "macfuse", "osxfuse"};

template <std::size_t count>
bool isOneOf(const std::string_view (&types)[count], std::string_view type) {
  return std::find(std::begin(types), std::end(types), type) != std::end(types);
}

}  // namespace

FileSystemKind fileSystemKindOf(std::string_view type) {
  if (isOneOf(kPseudo, type)) {
    return FileSystemKind::Pseudo;
  }
  if (isOneOf(kNetwork, type)) {
    return FileSystemKind::Network;
  }
  // Behind a dot stands which program serves it: "fuse.sshfs".
  return isOneOf(kFuse, type.substr(0, type.find('.'))) ? FileSystemKind::Fuse
                                                        : FileSystemKind::Storage;
}
