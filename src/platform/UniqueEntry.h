// UniqueEntry: creates a file or directory under a name that is not in use.
//
// Used for temporary names. What exists under a name, even a link that somebody planted there, is
// neither used nor changed; the next name is tried.
#ifndef CORVANE_PLATFORM_UNIQUEENTRY_H
#define CORVANE_PLATFORM_UNIQUEENTRY_H

#include "util/SString.h"

enum class EntryKind { File, Directory };

// The names that are tried before giving up.
inline constexpr int kMostUniqueNames = 1000;

// Creates an empty file or directory where nothing is. Returns 0 or the errno.
[[nodiscard]] int createEntry(EntryKind kind, const SString& path);

// Creates an empty file or directory, with all permissions that the umask leaves, at the first path
// of `makePath` that did not exist. Returns 0, or the errno of the attempt that failed (EEXIST when
// all names were taken). `path` becomes the last path that was tried.
[[nodiscard]] int createUniqueEntry(EntryKind kind, SString (*makePath)(), SString& path);

#endif
