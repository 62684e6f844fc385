// Words of a command for /bin/sh: between double quotes, so that blanks do not split them. Both are
// promised to setups, and neither is safe for every byte.
#ifndef CORVANE_PLATFORM_SHELLWORDS_H
#define CORVANE_PLATFORM_SHELLWORDS_H

#include "util/SString.h"

// The name of a file as one word. Its own quotes, "$", "`" and "\" reach the shell as they are.
SString fileNameForShell(const SString& path);

// An argument of the user as one word. Its quotes reach the program; "$", "`" and "\" reach the
// shell as they are.
SString argumentForShell(const SString& argument);

#endif
