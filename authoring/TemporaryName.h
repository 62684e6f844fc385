// TemporaryName: what is half-made stands under a hidden name in the folder that it is for.
#ifndef CORVANE_AUTHORING_TEMPORARYNAME_H
#define CORVANE_AUTHORING_TEMPORARYNAME_H

#include <cerrno>
#include <string>

#include "platform/RandomName.h"

namespace authoring {

inline constexpr const char* kTemporaryPrefix = ".corvane-pack-";
inline constexpr int kMostTemporaryNames = 1000;

// Calls `create` with paths in `folder` until one is not in use. `create` makes something there and
// returns true, or false with errno set. Returns the path; empty, with errno set, when it fails.
template <class Create>
std::string createTemporary(const std::string& folder, Create create) {
  for (int i = 0; i < kMostTemporaryNames; ++i) {
    std::string path = folder + "/" + kTemporaryPrefix + randomName(6).c_str();
    if (create(path.c_str())) {
      return path;
    }
    if (errno != EEXIST) {
      break;
    }
  }
  return {};
}

}  // namespace authoring

#endif
