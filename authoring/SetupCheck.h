// SetupCheck: finds what would go wrong when a setup runs.
//
// What it finds is listed in docs/authoring.md. What cannot be known before the run, such as the
// value of a variable, counts as right.
#ifndef CORVANE_AUTHORING_SETUPCHECK_H
#define CORVANE_AUTHORING_SETUPCHECK_H

#include "authoring/SetupContents.h"

namespace authoring {

// All findings, with those of loading, sorted: those of the setup, then file by file in its order.
Findings checkSetup(const Setup& setup);

}  // namespace authoring

#endif
