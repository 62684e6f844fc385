// ScriptCheck: reads an instruction script as the interpreter would, without running it.
#ifndef CORVANE_AUTHORING_SCRIPTCHECK_H
#define CORVANE_AUTHORING_SCRIPTCHECK_H

#include <set>
#include <string>
#include <vector>

#include "authoring/SetupContents.h"
#include "instructions/ScriptGrammar.h"

namespace authoring {

// Adds to `findings` what would stop the script or make it do something else than it says. Lines
// are counted as the launcher's messages count them: from 1, within INSTRUCTIONS. Returns the
// commands that the script uses. `script` is one of the setup's files and has a tag file.
std::set<Command> checkScript(const Setup& setup, const SetupFile& script,
                              std::vector<std::string>& findings);

}  // namespace authoring

#endif
