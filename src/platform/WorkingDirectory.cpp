#include "platform/WorkingDirectory.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "util/LauncherException.h"

namespace {

constexpr char kWorkingDirError[] = "Error setting working directory: ";

#if defined(O_PATH)
constexpr int kDirectoryToReturnTo = O_PATH | O_DIRECTORY | O_CLOEXEC;
#elif defined(O_SEARCH)
constexpr int kDirectoryToReturnTo = O_SEARCH | O_DIRECTORY | O_CLOEXEC;
#else
constexpr int kDirectoryToReturnTo = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
#endif

}  // namespace

WorkingDirectory::WorkingDirectory(const SString& path) {
  if (path.empty()) {
    return;
  }
  remember();
  if (chdir(path.c_str()) == -1) {
    const int error = errno;
    if (m_old != -1) {
      close(m_old);
    }
    throw LauncherException(kWorkingDirError + path + " " + std::strerror(error));
  }
}

void WorkingDirectory::remember() {
  m_old = open(".", kDirectoryToReturnTo);
  if (m_old == -1) {
    char* path = getcwd(nullptr, 0);
    m_oldPath = path;
    std::free(path);
  }
}

WorkingDirectory::~WorkingDirectory() {
  if (m_old != -1) {
    static_cast<void>(fchdir(m_old) == 0);
    close(m_old);
  } else if (!m_oldPath.empty()) {
    static_cast<void>(chdir(m_oldPath.c_str()) == 0);
  }
}
