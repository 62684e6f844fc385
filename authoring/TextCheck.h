// TextCheck: all checks of the texts of a setup, its tag files.
#ifndef CORVANE_AUTHORING_TEXTCHECK_H
#define CORVANE_AUTHORING_TEXTCHECK_H

#include "authoring/SetupContents.h"
#include "tagfile/TagTables.h"

namespace authoring {

// How the tag files are written, the command of the launch script, the jvm files and the ways of
// the instruction script. SetupCheck has what can be said of a tag or a statement by itself.
void checkTexts(const Setup& setup, Findings& findings);

// The tags of a type of tag files; none for other types.
TagTable tagsOf(std::int32_t type);

}  // namespace authoring

#endif
