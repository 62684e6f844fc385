// The limits of a trial: a foreign program that is run for its answer (ProcessRequest::isTrial).
//
// A room of its own, so that a test program can link others: no test waits for a minute.
#ifndef CORVANE_PLATFORM_TRIALLIMITS_H
#define CORVANE_PLATFORM_TRIALLIMITS_H

#include <cstddef>

#include "platform/Clock.h"

struct TrialLimits {
  milliseconds duration;       // then it is asked to end (TERM and CONT to its group)
  milliseconds untilKilled;    // how long it has for that; then KILL
  milliseconds forStragglers;  // how long background processes may keep the output open
  std::size_t outputSize;      // bytes of each stream that are kept
};

extern const TrialLimits kTrialLimits;

#endif
