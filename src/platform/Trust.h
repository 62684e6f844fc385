// Trust: whether a program that the scan of the disks has found may be tried.
//
// Nobody named such a program, so two things are asked of its path, and of the path of each link on
// the way. It must not lead into a mount that may be dead (MountTable). And when we run as root,
// nobody but root, and the user who became root by sudo or pkexec, may be able to put something
// else in its place: the program and every folder above it belong to one of them, and nobody else
// can write there. In a sticky folder others can write, but not replace what is not theirs.
//
// The way is looked at from the root downward. So nobody who is not trusted can change what was
// looked at already, nor the program before it is run.
#ifndef CORVANE_PLATFORM_TRUST_H
#define CORVANE_PLATFORM_TRUST_H

#include <sys/types.h>

#include <vector>

#include "util/SString.h"

struct EntryStatus {
  mode_t mode;
  uid_t owner;
  gid_t group;
  bool hasAccessList;  // then the mode's bits for the group stand for more than the group
};

// The users besides root of whom root's programs may be: those of SUDO_UID and PKEXEC_UID.
std::vector<uid_t> usersWhoBecameRoot();

// Why root must not trust what has this status, as in "/opt/jdk" + ": it belongs to user 1000";
// empty when it may. Not for links: nobody can write to one.
SString objectionTo(const EntryStatus& entry, const std::vector<uid_t>& trusted);

// False, with the reason in the log, when the program at `path` (absolute) must not be tried. What
// does not exist may be: the verification tells of that.
bool mayTryFind(const SString& path);

#endif
