// The limits of a trial for test programs: a link seam, so that no test waits for a minute.
#include "platform/TrialLimits.h"

const TrialLimits kTrialLimits = {.duration = milliseconds(400),
                                  .untilKilled = milliseconds(200),
                                  .forStragglers = milliseconds(200),
                                  .outputSize = std::size_t{1} << 20};
