// Log: what happened in a run, line by line, for whoever looks into a failed setup.
//
// Low rooms log through this header; Launcher::logMessage is the same. The file's format is in
// docs/formats.md, "Log file".
#ifndef CORVANE_LAUNCHER_LOG_H
#define CORVANE_LAUNCHER_LOG_H

#include "util/SString.h"

enum LogMessageType { LOG_INFO = 0, LOG_WARNING = 1, LOG_ERROR = 2 };

// Appends one line to the log file; does nothing when none is named or it cannot be opened. May be
// called at any time, also while something else fails; errno is left as it was.
void logMessage(const char* text, LogMessageType type);
void logMessage(const SString& text, LogMessageType type);

// Empty: no log, as at the start.
void setLogFileName(const SString& name);

#endif
