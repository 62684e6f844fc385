// SetupContents: the files of a setup as `check` looks at them, whether they come from a launcher
// file or from a manifest.
#ifndef CORVANE_AUTHORING_SETUPCONTENTS_H
#define CORVANE_AUTHORING_SETUPCONTENTS_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tagfile/TagFile.h"

namespace authoring {

struct SetupFile {
  std::int32_t type = 0;
  std::int32_t id = 0;
  std::string name;                  // as stored
  std::string label;                 // how findings call it: its path, or its stored name
  std::unique_ptr<TagFile> tagFile;  // null: no tag file, or one that does not parse
};

struct Setup {
  std::string label;
  std::vector<SetupFile> files;       // in the order of the index
  std::vector<std::string> findings;  // of loading: what does not parse or lies outside the file
};

// The file is taken as a launcher file when it ends with our trailer, as a manifest when it begins
// with a brace, else as a launcher without files. Throws AuthoringError when the file or its index
// cannot be read, or the manifest is wrong.
Setup loadSetup(const std::string& path, const std::vector<std::string>& baseFolders);

}  // namespace authoring

#endif
