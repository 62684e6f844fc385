// FileSystemKind: what a mounted file system is to a scan of the disks, by the name of its type.
#ifndef CORVANE_PLATFORM_FILESYSTEMKIND_H
#define CORVANE_PLATFORM_FILESYSTEMKIND_H

#include <string_view>

enum class FileSystemKind {
  Storage,  // holds files; every type that we do not know counts as one
  Pseudo,   // a view of the system, such as /proc: holds no programs
  Network,  // answers when another machine does
  Fuse,     // answers when a program of some user does
};

// `type` as the system's table of mounts names it: "ext4", "nfs4", "fuse.sshfs".
FileSystemKind fileSystemKindOf(std::string_view type);

#endif
