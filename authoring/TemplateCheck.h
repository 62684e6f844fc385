// TemplateCheck: reads a template of the launch script as the launcher would, without calling its
// functions.
#ifndef CORVANE_AUTHORING_TEMPLATECHECK_H
#define CORVANE_AUTHORING_TEMPLATECHECK_H

#include "authoring/SetupContents.h"

namespace authoring {

// Adds unknown functions and malformed calls in the value of `tag` to `findings`. A call inside an
// argument is checked where the argument becomes part of the command.
void checkTemplate(const SetupFile& file, const char* tag, Findings& findings);

}  // namespace authoring

#endif
