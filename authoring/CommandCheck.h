// CommandCheck: whether the command that a launch script makes is the one that its author means.
// TemplateCheck reads the calls of functions; this looks at names and at what the shell gets.
#ifndef CORVANE_AUTHORING_COMMANDCHECK_H
#define CORVANE_AUTHORING_COMMANDCHECK_H

#include "authoring/CommandModel.h"
#include "authoring/SetupContents.h"

namespace authoring {

// `script` is the launch script that counts, and parses; `command` is its COMMAND.
void checkCommand(const Setup& setup, const SetupFile& script, const CommandModel& command,
                  Findings& findings);

}  // namespace authoring

#endif
