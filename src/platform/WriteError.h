// The error of a file that could not be written, in the user's language.
#ifndef CORVANE_PLATFORM_WRITEERROR_H
#define CORVANE_PLATFORM_WRITEERROR_H

#include "util/LauncherException.h"
#include "util/SString.h"

class WriteError : public LauncherException {
 public:
  using LauncherException::LauncherException;
};

// Throws WriteError: the file could not be written, then `detail` (the system's error number
// in decimal, or nothing), then how to choose a directory with more space.
[[noreturn]] void throwWriteError(const SString& detail);
// The same for what returns the system's error number; does nothing for 0. Throws Canceled when a
// cancel ended a write that was blocked.
void throwIfNotWritten(int error);

#endif
