#include "authoring/OutputFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "authoring/AuthoringError.h"

namespace authoring {
namespace {

// The temporary file, for the signal handler; empty when there is none.
char temporaryPath[PATH_MAX];

void removeTemporary() {
  if (temporaryPath[0] != '\0') {
    unlink(temporaryPath);
    temporaryPath[0] = '\0';
  }
}

void handleSignal(int signal) {
  removeTemporary();
  std::raise(signal);  // the disposition is back at its default: ends the program
}

void removeTemporaryOnSignals() {
  struct sigaction action = {};
  action.sa_handler = handleSignal;
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction old;
    if (sigaction(signal, nullptr, &old) == 0 && old.sa_handler != SIG_IGN) {
      sigaction(signal, &action, nullptr);
    }
  }
}

mode_t executableMode() {
  const mode_t mask = umask(0);
  umask(mask);
  return static_cast<mode_t>(0777 & ~mask);
}

}  // namespace

OutputFile::OutputFile(std::string path) : m_path(std::move(path)) {
  const std::string pattern = m_path + ".XXXXXX";
  if (pattern.size() >= sizeof temporaryPath) {
    errno = ENAMETOOLONG;
    fail();
  }
  removeTemporaryOnSignals();
  std::memcpy(temporaryPath, pattern.c_str(), pattern.size() + 1);
  const int descriptor = mkstemp(temporaryPath);
  if (descriptor < 0) {
    temporaryPath[0] = '\0';
    fail();
  }
  m_file.reset(fdopen(descriptor, "wb"));
}

OutputFile::~OutputFile() {
  removeTemporary();
}

void OutputFile::commit() {
  const bool modeSet = fchmod(fileno(m_file.get()), executableMode()) == 0;
  if (!modeSet || std::fclose(m_file.release()) != 0 ||
      std::rename(temporaryPath, m_path.c_str()) != 0) {
    fail();
  }
  temporaryPath[0] = '\0';
}

void OutputFile::fail() const {
  throw AuthoringError(m_path + " cannot be written: " + std::strerror(errno));
}

}  // namespace authoring
