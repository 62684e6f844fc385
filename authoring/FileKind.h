// FileKind: what a path stands for when it is no regular file.
#ifndef CORVANE_AUTHORING_FILEKIND_H
#define CORVANE_AUTHORING_FILEKIND_H

#include <sys/stat.h>

namespace authoring {

// For messages: "a folder", "a named pipe".
inline const char* fileKind(mode_t mode) {
  if (S_ISDIR(mode)) {
    return "a folder";
  }
  if (S_ISFIFO(mode)) {
    return "a pipe";
  }
  if (S_ISSOCK(mode)) {
    return "a socket";
  }
  return S_ISCHR(mode) || S_ISBLK(mode) ? "a device" : "no regular file";
}

}  // namespace authoring

#endif
