// The two parts of a path: its directory and its base name. A path is taken as text; no file is
// looked at.
#ifndef CORVANE_TAGFILE_PATHS_H
#define CORVANE_TAGFILE_PATHS_H

#include "tagfile/TextUtils.h"
#include "util/SString.h"

// For names that setups or users give, which may be written as on Windows.
inline constexpr const char* kEitherSeparator = "/\\";

// What stands in front of the last of the `separators` (a set of bytes), without it; empty when
// there is none.
SString directoryOf(const SString& path, const char* separators = kPathSeparator);

// What stands behind the last of the `separators`; all of the path when there is none.
SString baseNameOf(const SString& path, const char* separators = kPathSeparator);

#endif
