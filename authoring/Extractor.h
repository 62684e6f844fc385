// Extractor: copies the files out of a launcher file, for looking at them.
#ifndef CORVANE_AUTHORING_EXTRACTOR_H
#define CORVANE_AUTHORING_EXTRACTOR_H

#include <string>

#include "authoring/LauncherFileReader.h"

namespace authoring {

// Writes every file under its name into `folder`, which is created when it is missing. Throws
// AuthoringError, before anything is written, when a name would leave the folder or is in use, or
// when stored bytes lie outside the launcher file; later when a file cannot be written.
void extractFiles(const LauncherFile& launcher, const std::string& folder);

}  // namespace authoring

#endif
