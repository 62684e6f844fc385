// SetupCheck: finds what would go wrong when a setup runs.
//
// Findings are texts that name the file, say what the launcher would do, and what to write instead.
// They are listed in docs/authoring.md. What cannot be known before the run, such as the value of a
// variable, counts as right.
#ifndef CORVANE_AUTHORING_SETUPCHECK_H
#define CORVANE_AUTHORING_SETUPCHECK_H

#include <string>
#include <vector>

#include "authoring/SetupContents.h"

namespace authoring {

// All findings, those of loading first; empty when the setup is fine.
std::vector<std::string> checkSetup(const Setup& setup);

}  // namespace authoring

#endif
