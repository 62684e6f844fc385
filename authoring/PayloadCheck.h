// PayloadCheck: looks into archives and programs of a setup.
#ifndef CORVANE_AUTHORING_PAYLOADCHECK_H
#define CORVANE_AUTHORING_PAYLOADCHECK_H

#include "authoring/SetupContents.h"

namespace authoring {

// Adds to `findings`: archives that Java cannot open, the classes that they lack, sizes that are
// not told or too small, and programs that cannot be run.
void checkPayloads(const Setup& setup, Findings& findings);

}  // namespace authoring

#endif
