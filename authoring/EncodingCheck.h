// EncodingCheck: bytes of a tag file that an editor shows as something else, or not at all.
#ifndef CORVANE_AUTHORING_ENCODINGCHECK_H
#define CORVANE_AUTHORING_ENCODINGCHECK_H

#include "authoring/SetupContents.h"
#include "tagfile/TagTables.h"

namespace authoring {

// Byte order marks, other encodings than those of ASCII's family, line ends that the launcher does
// not see, typographic blanks and quotes. Carriage returns before newlines do no harm.
void checkEncoding(const SetupFile& file, TagTable table, Findings& findings);

}  // namespace authoring

#endif
