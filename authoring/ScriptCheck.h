// ScriptCheck: reads an instruction script as the interpreter would, without running it.
#ifndef CORVANE_AUTHORING_SCRIPTCHECK_H
#define CORVANE_AUTHORING_SCRIPTCHECK_H

#include <set>

#include "authoring/SetupContents.h"
#include "instructions/ScriptGrammar.h"

namespace authoring {

// Adds to `findings` what would stop the script or make it do something else than it says. Returns
// the commands that the script uses. `script` is one of the setup's files and has a tag file.
std::set<Command> checkScript(const Setup& setup, const SetupFile& script, Findings& findings);

}  // namespace authoring

#endif
