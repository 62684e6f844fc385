// JavaPlaces: where Javas usually are, as hints of a jvm file.
#ifndef CORVANE_AUTHORING_JAVAPLACES_H
#define CORVANE_AUTHORING_JAVAPLACES_H

#include <string>
#include <vector>

#include "authoring/JavaRange.h"

namespace authoring {

// Environment variables that name a Java's home.
std::vector<std::string> javaVariables();

// Homes on Linux, the BSDs and macOS: beside the setup first, then what the user's system prefers,
// then those of single versions, the newest first. Of an open range, up to the newest Java that
// packages had when this was written; later ones are found by the places without a number.
std::vector<std::string> javaHomes(const JavaRange& range);

}  // namespace authoring

#endif
