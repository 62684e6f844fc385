// Selection: which of a launcher file's entries a user means.
#ifndef CORVANE_AUTHORING_SELECTION_H
#define CORVANE_AUTHORING_SELECTION_H

#include <cstdint>
#include <string>
#include <vector>

#include "authoring/LauncherFileReader.h"

namespace authoring {

// An entry is meant when it has one of the names, one of the ids and one of the types; a list that
// is empty asks for nothing.
struct Selection {
  std::vector<std::string> names;
  std::vector<std::int32_t> ids;
  std::vector<std::string> types;  // as manifests call them

  [[nodiscard]] bool isAll() const { return names.empty() && ids.empty() && types.empty(); }
};

// The positions of the entries that are meant, in the order of the index. Throws AuthoringError
// when a name, id or type has no entry, or none has all of what is asked for.
std::vector<long> select(const LauncherFile& launcher, const Selection& selection);

}  // namespace authoring

#endif
