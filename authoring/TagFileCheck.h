// TagFileCheck: how a tag file is written, whatever its tags mean.
//
// A tag file has no comments, a block ends at "/:" and nowhere else, a value in quotes ends at its
// closing quote, and the last definition of a tag counts: whoever forgets that writes a file that
// the launcher reads as something else.
#ifndef CORVANE_AUTHORING_TAGFILECHECK_H
#define CORVANE_AUTHORING_TAGFILECHECK_H

#include "authoring/SetupContents.h"
#include "tagfile/TagTables.h"

namespace authoring {

// Looks at what was read of the file, also when it does not parse to its end. `table` holds the
// tags of its type.
void checkTagFile(const SetupFile& file, TagTable table, Findings& findings);

// How many values of the tag are its own: those in front of the place where its author has meant
// the block to end. What follows needs no findings of its own.
long countOwnValues(const SetupFile& file, TagTable table, const char* tag);

}  // namespace authoring

#endif
