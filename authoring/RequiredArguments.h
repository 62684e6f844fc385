// RequiredArguments: the tag REQ_JAVA_ARGS of a jvm file, and whether Java and the shell take it.
#ifndef CORVANE_AUTHORING_REQUIREDARGUMENTS_H
#define CORVANE_AUTHORING_REQUIREDARGUMENTS_H

#include "authoring/CommandModel.h"
#include "authoring/SetupContents.h"

namespace authoring {

// `file` is a jvm file that parses; `command` is the COMMAND of the launch script.
void checkRequiredArguments(const SetupFile& file, const CommandModel& command, Findings& findings);

}  // namespace authoring

#endif
