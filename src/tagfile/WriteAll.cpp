#include "tagfile/WriteAll.h"

#include <unistd.h>

#include <cerrno>

int writeAll(int descriptor, std::string_view bytes, bool (*isGivenUp)()) {
  while (!bytes.empty()) {
    const ssize_t count = write(descriptor, bytes.data(), bytes.size());
    if (count == -1 && (errno != EINTR || isGivenUp())) {
      return errno;
    }
    bytes.remove_prefix(count == -1 ? 0 : static_cast<std::size_t>(count));
  }
  return 0;
}
