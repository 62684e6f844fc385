// Listing: what a launcher file holds, as text.
#ifndef CORVANE_AUTHORING_LISTING_H
#define CORVANE_AUTHORING_LISTING_H

#include <string>

#include "authoring/LauncherFileReader.h"

namespace authoring {

// A table for people, a line for each file.
std::string listAsTable(const std::string& path, const LauncherFile& launcher);
// One JSON object for programs (docs/authoring.md).
std::string listAsJson(const LauncherFile& launcher);

}  // namespace authoring

#endif
