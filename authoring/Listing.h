// Listing: what a launcher file holds, as text.
#ifndef CORVANE_AUTHORING_LISTING_H
#define CORVANE_AUTHORING_LISTING_H

#include <cstdint>
#include <string>

#include "authoring/LauncherFileReader.h"

namespace authoring {

// "1 file", "2 files".
std::string countOf(std::int64_t count, const char* what);
// A table for people, a line for each file.
std::string listAsTable(const std::string& path, const LauncherFile& launcher);
// One JSON object for programs (docs/authoring.md).
std::string listAsJson(const LauncherFile& launcher);

}  // namespace authoring

#endif
