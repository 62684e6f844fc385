// HintCheck: where a jvm file says that a Java may be, and what its program is called.
//
// Hints are names of folders and of variables as they stand: nothing in them is expanded, and
// JVM_EXE is joined to each (docs/jvm-file.md).
#ifndef CORVANE_AUTHORING_HINTCHECK_H
#define CORVANE_AUTHORING_HINTCHECK_H

#include "authoring/SetupContents.h"

namespace authoring {

// JVM_EXE, PATH_HINT and PLATFORM_HINT of a jvm file that parses.
void checkHints(const SetupFile& file, Findings& findings);

}  // namespace authoring

#endif
