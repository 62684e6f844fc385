#include "authoring/OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

#include "authoring/AuthoringError.h"
#include "authoring/TemporaryName.h"

namespace authoring {
namespace {

std::string folderOf(const std::string& path) {
  const std::string folder = std::filesystem::path(path).parent_path().string();
  return folder.empty() ? "." : folder;
}

// What a new file's mode would be.
mode_t modeOf(OutputKind kind) {
  const mode_t mask = umask(0);
  umask(mask);
  return static_cast<mode_t>((kind == OutputKind::kProgram ? 0777 : 0666) & ~mask);
}

// By this path a file without a name is given one.
std::string pathOfDescriptor(int descriptor) {
  return "/proc/self/fd/" + std::to_string(descriptor);
}

// A negative number where the system or the disk cannot do it.
int openWithoutName(const std::string& folder) {
#ifdef O_TMPFILE
  const int descriptor = open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600);
  if (descriptor >= 0 && access(pathOfDescriptor(descriptor).c_str(), F_OK) == 0) {
    return descriptor;
  }
  if (descriptor >= 0) {
    close(descriptor);
  }
#else
  (void)folder;
#endif
  return -1;
}

}  // namespace

OutputFile::OutputFile(std::string path, OutputKind kind)
    : m_path(std::move(path)), m_kind(kind), m_folder(folderOf(m_path)) {
  const int descriptor = open();
  m_file.reset(descriptor < 0 ? nullptr : fdopen(descriptor, "wb"));
  if (m_file == nullptr) {
    fail(errno);
  }
}

OutputFile::~OutputFile() {
  if (!m_temporary.empty()) {
    unlink(m_temporary.c_str());
  }
}

int OutputFile::open() {
  int descriptor = openWithoutName(m_folder);
  if (descriptor < 0) {
    m_temporary = createTemporary(m_folder, [&descriptor](const char* name) {
      descriptor = ::open(name, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
      return descriptor >= 0;
    });
  }
  return descriptor;
}

bool OutputFile::giveName() {
  const std::string file = pathOfDescriptor(fileno(m_file.get()));
  m_temporary = createTemporary(m_folder, [&file](const char* name) {
    return linkat(AT_FDCWD, file.c_str(), AT_FDCWD, name, AT_SYMLINK_FOLLOW) == 0;
  });
  return !m_temporary.empty();
}

void OutputFile::complete() {
  DeferredSignals::throwIfCame();
  const bool whole = std::fflush(m_file.get()) == 0 &&
                     fchmod(fileno(m_file.get()), modeOf(m_kind)) == 0 &&
                     (!m_temporary.empty() || giveName());
  if (!whole || std::fclose(m_file.release()) != 0) {
    fail(errno);
  }
}

void OutputFile::commit() {
  if (m_file != nullptr) {
    complete();
  }
  if (std::rename(m_temporary.c_str(), m_path.c_str()) != 0) {
    fail(errno);
  }
  m_temporary.clear();
}

void OutputFile::fail(int error) const {
  throw AuthoringError(m_path + " cannot be written: " + std::strerror(error));
}

}  // namespace authoring
