// Is another file system, or another part of one, mounted on a directory?
#ifndef CORVANE_PLATFORM_MOUNTPOINT_H
#define CORVANE_PLATFORM_MOUNTPOINT_H

// `name` is looked up in the open directory `directory` (AT_FDCWD: the current one); no link is
// followed. False when it cannot be looked at. Asks nothing of the file system that is mounted
// there, which may be dead, where the system offers that (Linux).
bool isMountPoint(int directory, const char* name);

#endif
