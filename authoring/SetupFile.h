// SetupFile: one file of a setup as `check` looks at it, and the places in it.
#ifndef CORVANE_AUTHORING_SETUPFILE_H
#define CORVANE_AUTHORING_SETUPFILE_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "authoring/Findings.h"
#include "authoring/LauncherFileWriter.h"
#include "authoring/Payload.h"
#include "authoring/TagSources.h"
#include "tagfile/TagFile.h"

namespace authoring {

struct SetupFile {
  std::int32_t type = 0;
  std::int32_t id = 0;
  std::string name;                  // as stored
  std::string label;                 // how findings call it: its path, or its stored name
  Place entry;                       // what lists it: in the manifest, or the file itself
  std::unique_ptr<TagFile> tagFile;  // null: no tag file, or one that does not parse
  TagSources sources;                // of the tag file, as far as it parses
  bool isStored = true;              // in a launcher file; the names in a manifest are right
  bool isReadable = false;           // its bytes are there
  Payload payload;
  std::optional<DecompressedSize> decompressed;

  // The file as a whole.
  Place at() const { return {label, 0}; }
  // Where the tag stands; the file as a whole when it has none.
  Place at(std::string_view tag) const;
  // Where its value at `index` (from 0) stands.
  Place at(std::string_view tag, long index) const;
};

}  // namespace authoring

#endif
