#include "authoring/OutputTarget.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "authoring/AuthoringError.h"
#include "authoring/FileKind.h"

namespace authoring {
namespace {

struct Free {
  void operator()(char* text) const { std::free(text); }
};

// Links below /proc may name what has no name any more.
std::string followLink(const std::string& path) {
  const std::unique_ptr<char, Free> target(realpath(path.c_str(), nullptr));
  if (target == nullptr) {
    throw AuthoringError(path + " is a link that leads nowhere (" + std::strerror(errno) +
                         "); remove it or name another file");
  }
  return target.get();
}

}  // namespace

std::string findOutputTarget(const std::string& path) {
  struct stat status;
  if (path.empty()) {
    throw AuthoringError("the name of the output is empty; name a file with --output");
  }
  if (lstat(path.c_str(), &status) != 0) {
    return path;  // new, or its folder is at fault: writing tells
  }
  const bool isLink = S_ISLNK(status.st_mode);
  if (isLink && stat(path.c_str(), &status) != 0) {
    return followLink(path);
  }
  if (!S_ISREG(status.st_mode)) {
    throw AuthoringError(path + " is " + fileKind(status.st_mode) + "; name a file with --output");
  }
  return isLink ? followLink(path) : path;
}

}  // namespace authoring
