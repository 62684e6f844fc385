// Packer: makes a launcher file from a stub and a manifest.
#ifndef CORVANE_AUTHORING_PACKER_H
#define CORVANE_AUTHORING_PACKER_H

#include <cstdint>
#include <string>
#include <vector>

#include "authoring/Manifest.h"

namespace authoring {

struct PackOptions {
  std::string manifest;
  std::vector<std::string> baseFolders;
  std::string stub;  // empty: the manifest's, else findDefaultStub
  std::string output;
};

struct PackResult {
  std::size_t files = 0;
  std::int64_t size = 0;
};

// Writes the launcher file, executable, and replaces any file of that name. Throws AuthoringError
// and leaves nothing behind when a tag file does not parse, the stub carries files already, the
// output is one of the inputs, the result would be too large, or something cannot be read or
// written.
PackResult packLauncher(const PackOptions& options);

// The stub that was installed with this program, or built beside it. Throws AuthoringError when
// there is none.
std::string findDefaultStub();

// Parses a tag file as a launcher would. Throws AuthoringError with the file and the line.
void checkTagFile(const std::string& path);

}  // namespace authoring

#endif
