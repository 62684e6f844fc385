// The two parts of a path: its directory and its base name. A path is taken as text; no file is
// looked at.
#ifndef CORVANE_TAGFILE_PATHS_H
#define CORVANE_TAGFILE_PATHS_H

#include "tagfile/TextUtils.h"
#include "util/SString.h"

// For names that setups or users give, which may be written as on Windows.
inline constexpr const char* kEitherSeparator = "/\\";

// The part before the last of the `separators` (a set of bytes); empty when there is none.
SString directoryOf(const SString& path, const char* separators = kPathSeparator);

// The part after the last of the `separators`; the whole path when there is none.
SString baseNameOf(const SString& path, const char* separators = kPathSeparator);

#endif
