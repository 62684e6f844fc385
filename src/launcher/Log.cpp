// The log. It calls only stdio, so that all other code may log.
#include "launcher/Log.h"

#include <cerrno>
#include <cstdio>

#include "launcher/LauncherState.h"
#include "tagfile/StreamUtils.h"

namespace {

constexpr const char* kLogSeparator = "------------------\n";

// Callers log while they handle a failure and read errno afterwards.
class ErrnoKeeper {
 public:
  ErrnoKeeper() : m_saved(errno) {}
  ~ErrnoKeeper() { errno = m_saved; }
  ErrnoKeeper(const ErrnoKeeper&) = delete;
  ErrnoKeeper& operator=(const ErrnoKeeper&) = delete;

 private:
  int m_saved;
};

const char* logPrefix(LogMessageType type) {
  switch (type) {
    case LOG_WARNING:
      return "WARNING: ";
    case LOG_ERROR:
      return "ERROR: ";
    default:
      return "";
  }
}

}  // namespace

void logMessage(const char* text, LogMessageType type) {
  const ErrnoKeeper errnoKeeper;
  if (g_launcher.m_logFileName.empty()) {
    return;
  }
  const FilePtr file = openFile(g_launcher.m_logFileName, "a");
  if (file == nullptr) {
    return;
  }
  // QUIRK(log-separator-once): the separator is written once in a process; a log file that is named
  // later gets none.
  if (!g_launcher.m_logFileInitialized) {
    std::fputs(kLogSeparator, file.get());
    g_launcher.m_logFileInitialized = true;
  }
  std::fprintf(file.get(), "%s%s\n", logPrefix(type), text);
}

void logMessage(const SString& text, LogMessageType type) {
  logMessage(text.c_str(), type);
}

void setLogFileName(const SString& name) {
  g_launcher.m_logFileName = name;
}
