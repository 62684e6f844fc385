// PropertyCheck: what JVM_PROPERTIES of a jvm file asks a Java for.
//
// A line is NAME = EXPECTED. The name is a word of the verify command, which a shell reads; the
// expected text is compared byte for byte, or up to a "..." at its end. There are no comparisons of
// numbers, ranges or alternatives (docs/jvm-file.md).
#ifndef CORVANE_AUTHORING_PROPERTYCHECK_H
#define CORVANE_AUTHORING_PROPERTYCHECK_H

#include "authoring/SetupContents.h"

namespace authoring {

// `file` is a jvm file that parses.
void checkProperties(const SetupFile& file, Findings& findings);

}  // namespace authoring

#endif
