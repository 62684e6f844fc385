// UniqueEntry: makes a file or directory under a name that nothing had before.
//
// Used for temporary names. What exists under a name, a link that somebody planted there included,
// is neither used nor changed: then the next name is tried.
#ifndef CORVANE_PLATFORM_UNIQUEENTRY_H
#define CORVANE_PLATFORM_UNIQUEENTRY_H

#include "util/SString.h"

enum class EntryKind { File, Directory };

// The names that are tried before giving up.
inline constexpr int kMostUniqueNames = 1000;

// Creates an empty file or directory, open to all whom the umask does not shut out, at the first
// path of `makePath` that did not exist. Returns 0, or the errno of the attempt that failed (EEXIST
// when all names were taken). `path` becomes the last path that was tried.
[[nodiscard]] int createUniqueEntry(EntryKind kind, SString (*makePath)(), SString& path);

#endif
