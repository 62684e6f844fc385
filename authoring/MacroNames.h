// MacroNames: the names between @ and # in a template of the launch script, and whether anything
// sets them.
#ifndef CORVANE_AUTHORING_MACRONAMES_H
#define CORVANE_AUTHORING_MACRONAMES_H

#include "authoring/SetupContents.h"

namespace authoring {

// The value of `tag` of the launch script, and the tags that IF_EXISTS asks for in it.
void checkMacroNames(const Setup& setup, const SetupFile& script, const char* tag,
                     Findings& findings);

}  // namespace authoring

#endif
