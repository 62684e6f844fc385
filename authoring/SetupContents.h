// SetupContents: the files of a setup as `check` looks at them, whether they come from a launcher
// file or from a manifest.
#ifndef CORVANE_AUTHORING_SETUPCONTENTS_H
#define CORVANE_AUTHORING_SETUPCONTENTS_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "authoring/Findings.h"
#include "authoring/Manifest.h"
#include "authoring/ProgramLook.h"
#include "authoring/SetupFile.h"
#include "authoring/StubRecognition.h"

namespace authoring {

struct Setup {
  std::string label;   // the launcher file, or the manifest
  bool isRead = true;  // else the manifest is no JSON or lists no files
  std::int32_t purpose = 0;
  ProgramLook stub;              // the program that carries the files
  std::optional<Stub> stubMark;  // nothing for a manifest, or a program that is none of ours
  std::vector<SetupFile> files;  // in the order of the index
  Findings findings;             // of loading: what does not parse or lies outside the file

  // The first one, which is what the launcher takes, or null.
  const SetupFile* findType(std::int32_t type) const;
  const SetupFile* findId(std::int32_t id) const;
};

// The file is taken as a launcher file when it ends with our trailer, as a manifest when it begins
// with a brace or a comment, as a launcher without files when it is one of our stubs. Throws
// AuthoringError when the file or its index cannot be read, or the manifest is wrong.
Setup loadSetup(const std::string& path, const std::vector<std::string>& baseFolders);
// The setup that would be packed from the manifest onto the stub (empty: not known).
Setup loadSetup(const Manifest& manifest, const std::string& stub);

}  // namespace authoring

#endif
