// RefusalReason: what a candidate was wanted for, and why it was not taken.
#ifndef CORVANE_AUTHORING_REFUSALREASON_H
#define CORVANE_AUTHORING_REFUSALREASON_H

#include <string>

#include "authoring/Explanation.h"

namespace authoring {

// The jvm file that the candidate was tried for; null when none of `wanted` fits.
const WantedJava* wantedOf(const Candidate& candidate, const std::vector<WantedJava>& wanted);

// The words of the verdict for programs, such as "other-values".
const char* verdictName(Verdict verdict);

// "accepted", or why not; `wanted` may be null. Not yet fit for a terminal.
std::string describeVerdict(const Candidate& candidate, const LoggedRun& run,
                            const WantedJava* wanted);

}  // namespace authoring

#endif
