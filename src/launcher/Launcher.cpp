// The low part of Launcher: the process's state, the script's variables, the log, file names and
// the purpose byte. It calls nothing but stdio and the text helpers, so that everybody may log.
#include "launcher/Launcher.h"

#include <cerrno>
#include <cstdio>

#include "archive/LauncherFileFormat.h"
#include "launcher/ScriptVariables.h"
#include "tagfile/StreamUtils.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

constinit SString Launcher::m_logFileName;
constinit bool Launcher::m_logFileInitialized = false;
constinit SString Launcher::m_launcherFileName;
constinit SString Launcher::m_origLauncherFileName;
constinit SString Launcher::m_stringVariables[10];
constinit StringDeque Launcher::m_passThroughArgs;
constinit StringDeque Launcher::m_args;
constinit bool Launcher::m_showJavaConsole = false;
constinit SString Launcher::m_userJavaHome;
constinit SString Launcher::m_prependClasspath;
constinit SString Launcher::m_appendClasspath;
constinit SString Launcher::m_applicationArchive;
constinit std::int32_t Launcher::m_launcherPurpose = -1;
constinit SString Launcher::m_stdOutput;
constinit SString Launcher::m_errOutput;
constinit std::int32_t Launcher::m_numericVariables[5] = {};
constinit const JVMMessage* Launcher::m_jvmMessage = nullptr;

namespace {

constexpr const char* kLogSeparator = "------------------\n";
constexpr const char* kInvalidStringVariable = "Invalid string variable number: ";
constexpr const char* kInvalidNumericVariable = "Invalid numeric variable number: ";

// Callers log in the middle of a failure and read errno afterwards.
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

// -1 when the file cannot be opened or is too short.
std::int32_t readPurpose(const char* path) {
  const FilePtr file = openFile(path, "rb");
  if (file == nullptr || std::fseek(file.get(), -kPurposeOffsetFromEnd, SEEK_END) != 0) {
    return -1;
  }
  return std::fgetc(file.get());
}

void requireVariable(bool isValid, const char* message, std::int32_t number) {
  if (!isValid) {
    throw LauncherException(message + convertToString(number));
  }
}

}  // namespace

void Launcher::logMessage(const char* text, LogMessageType type) {
  const ErrnoKeeper errnoKeeper;
  if (m_logFileName.empty()) {
    return;
  }
  const FilePtr file = openFile(m_logFileName, "a");
  if (file == nullptr) {
    return;
  }
  // QUIRK(log-separator-once): once in a process; a log file that is named later gets no separator,
  // so that a log always shows one per process.
  if (!m_logFileInitialized) {
    std::fputs(kLogSeparator, file.get());
    m_logFileInitialized = true;
  }
  std::fprintf(file.get(), "%s%s\n", logPrefix(type), text);
}

void Launcher::logMessage(const SString& text, LogMessageType type) {
  logMessage(text.c_str(), type);
}

SString Launcher::getOriginalLauncherDir() {
  const std::size_t separator = m_origLauncherFileName.find_last_of("/\\");
  return separator == SString::npos ? SString() : m_origLauncherFileName.substr(0, separator);
}

std::int32_t Launcher::getLauncherPurpose(const char* file) {
  const bool isOurs = m_launcherFileName == file;
  if (isOurs && m_launcherPurpose != -1) {
    return m_launcherPurpose;
  }
  const std::int32_t purpose = readPurpose(file);
  if (isOurs) {
    m_launcherPurpose = purpose;
  }
  return purpose;
}

bool Launcher::isQuietPurpose() {
  const std::int32_t purpose = getLauncherPurpose(m_launcherFileName.c_str());
  return purpose == 0 || purpose == 2;
}

bool Launcher::isValidStringVariable(std::int32_t number) {
  return number >= 1 && number <= kStringVariables;
}

bool Launcher::isValidLongVariable(std::int32_t number) {
  return number >= 1 && number <= kNumericVariables;
}

SString Launcher::getStringVariable(std::int32_t number) {
  requireVariable(isValidStringVariable(number), kInvalidStringVariable, number);
  return m_stringVariables[number - 1];
}

void Launcher::setStringVariable(std::int32_t number, const SString& value) {
  requireVariable(isValidStringVariable(number), kInvalidStringVariable, number);
  m_stringVariables[number - 1] = value;
}

std::int32_t Launcher::getLongVariable(std::int32_t number) {
  requireVariable(isValidLongVariable(number), kInvalidNumericVariable, number);
  return m_numericVariables[number - 1];
}

void Launcher::setLongVariable(std::int32_t number, std::int32_t value) {
  requireVariable(isValidLongVariable(number), kInvalidNumericVariable, number);
  m_numericVariables[number - 1] = value;
}
