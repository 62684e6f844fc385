// ScriptFlowCheck: where a script leads its users. ScriptCheck looks at each line by itself; this
// follows every way that the script can take.
#ifndef CORVANE_AUTHORING_SCRIPTFLOWCHECK_H
#define CORVANE_AUTHORING_SCRIPTFLOWCHECK_H

#include "authoring/SetupContents.h"

namespace authoring {

// `script` has a tag file. Says nothing of a script with more ways than can be followed.
void checkScriptFlow(const SetupFile& script, Findings& findings);

}  // namespace authoring

#endif
