// Extractor: takes a launcher file apart.
#ifndef CORVANE_AUTHORING_EXTRACTOR_H
#define CORVANE_AUTHORING_EXTRACTOR_H

#include <cstdio>
#include <string>
#include <vector>

#include "authoring/LauncherFileReader.h"
#include "authoring/Selection.h"

namespace authoring {

struct ExtractResult {
  std::size_t files = 0;
  std::string stub;      // the names in the folder of these two;
  std::string manifest;  // empty when a part was taken
  // What is damaged, and why the manifest does not make the same bytes again.
  std::vector<std::string> warnings;
};

// Writes the files that are meant under their names into `folder`, which must be new or empty;
// when all are meant, also the stub, and a manifest from which the same setup is packed again.
// Throws AuthoringError and writes nothing when a name would leave the folder or is there twice,
// stored bytes lie outside the launcher file or change meanwhile, or a file cannot be written.
ExtractResult extractFiles(const LauncherFile& launcher, const std::string& folder,
                           const Selection& selection = {});

// Writes the bytes of the one file that is meant. Throws AuthoringError, when several are meant,
// too.
void extractFile(const LauncherFile& launcher, std::FILE* output, const Selection& selection);

}  // namespace authoring

#endif
