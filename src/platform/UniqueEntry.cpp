#include "platform/UniqueEntry.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace {

bool createFile(const char* path) {
  const int fd = open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (fd >= 0) {
    close(fd);  // nothing was written that could get lost
  }
  return fd >= 0;
}

bool createDirectory(const char* path) {
  return mkdir(path, 0777) == 0;
}

}  // namespace

int createEntry(EntryKind kind, const SString& path) {
  const auto create = kind == EntryKind::File ? createFile : createDirectory;
  return create(path.c_str()) ? 0 : errno;
}

int createUniqueEntry(EntryKind kind, SString (*makePath)(), SString& path) {
  int error = EEXIST;
  for (int i = 0; i < kMostUniqueNames && error == EEXIST; ++i) {
    path = makePath();
    error = createEntry(kind, path);
  }
  return error;
}
