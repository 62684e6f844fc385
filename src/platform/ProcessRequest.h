// ProcessRequest, ProcessResult: what PlatformImpl::executeProcess is asked for, and what it
// answers.
#ifndef CORVANE_PLATFORM_PROCESSREQUEST_H
#define CORVANE_PLATFORM_PROCESSREQUEST_H

#include "platform/KeptText.h"
#include "util/SString.h"
#include "util/StringDeque.h"

struct ProcessRequest {
  SString command;        // a text for /bin/sh
  StringDeque arguments;  // its "$1" and so on, byte for byte
  SString workingDir;     // empty: the current directory
  // Collects both output streams. Of each the first and the last 8 MiB are kept.
  bool captures = false;
  // A foreign program that is run only for its answer: it has nothing to read, a process group of
  // its own and the limits of TrialLimits.h, and a cancel ends it. With `captures` only.
  bool isTrial = false;
};

struct ProcessResult {
  int status = 0;  // the exit code; 128 + n when signal n ended the shell, or what it became
  KeptText output;
  KeptText errors;
  int chunks = 0;              // of output, as far as the progress showed them
  bool endedByItself = false;  // a trial only: nobody ended it, or what it had started
  // Of a trial only: why there is no answer to rely on.
  SString startError;       // the system's words, when the shell could not be started
  bool isTimedOut = false;  // it was ended, as it took too long
};

#endif
