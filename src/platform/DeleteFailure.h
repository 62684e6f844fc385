// What the log says of a file or directory that could not be deleted.
#ifndef CORVANE_PLATFORM_DELETEFAILURE_H
#define CORVANE_PLATFORM_DELETEFAILURE_H

#include "util/SString.h"

// A warning: "Could not delete PATH :  REASON", with the system's words for `error`.
void logDeleteFailure(const SString& path, int error);

#endif
