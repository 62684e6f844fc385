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
  std::string stub;          // empty: that for `machine`, else the manifest's, else findDefaultStub
  std::string output;        // "-": standard output
  bool anyStub = false;      // take any file as the stub
  bool sumFile = true;       // write the checksum beside the output
  std::string machine = {};  // empty: not named
};

// What is to be packed.
struct PackInputs {
  Manifest manifest;
  std::string stub;
};

struct PackResult {
  std::size_t files = 0;
  std::int64_t size = 0;
  std::string sha256;   // of the launcher file, as sha256sum prints it; empty without a sum file
  std::string sumFile;  // where that was written; empty: nowhere
};

// Writes the launcher file, executable, and its checksum beside it (SumFile.h), and replaces any
// files of these names. Throws AuthoringError and leaves nothing behind when a tag file does not
// parse, the stub is none of ours or carries files already, the output is one of the inputs, the
// result would be too large, or something cannot be read or written.
PackResult packLauncher(const PackOptions& options, const PackInputs& inputs);

// Loads the manifest, as loadManifest, and chooses the stub.
PackInputs loadPackInputs(const PackOptions& options, Findings* findings = nullptr);

// Both. Throws AuthoringError, too, when a tag file does not parse.
PackResult packLauncher(const PackOptions& options);

// Parses a tag file as a launcher would. Throws AuthoringError with the file and the line.
void requireTagFile(const std::string& path);

}  // namespace authoring

#endif
