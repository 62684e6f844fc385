#include "platform/TrialLimits.h"

const TrialLimits kTrialLimits = {.duration = milliseconds(60'000),
                                  .untilKilled = milliseconds(2'000),
                                  .forStragglers = milliseconds(1'000),
                                  .outputSize = std::size_t{1} << 20};
