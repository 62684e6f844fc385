// MacroCircle: tags of a jvm file whose values name each other in a circle. The launcher would
// replace them for ever.
#ifndef CORVANE_AUTHORING_MACROCIRCLE_H
#define CORVANE_AUTHORING_MACROCIRCLE_H

#include "authoring/CommandModel.h"
#include "authoring/SetupContents.h"

namespace authoring {

// `file` is a jvm file that parses; `command` is the COMMAND of the launch script.
void checkMacroCircles(const SetupFile& file, const CommandModel& command, Findings& findings);

}  // namespace authoring

#endif
