#include "jvm/VerificationMemory.h"

#include <unistd.h>

#include <memory>
#include <string_view>
#include <utility>

#include "launcher/LauncherState.h"
#include "platform/PlatformImpl.h"
#include "platform/WorkingDirectory.h"
#include "tagfile/Paths.h"

#ifndef __linux__
extern char** environ;
#endif

namespace {

constexpr const char* kJavaHome = "JAVA_HOME";
constexpr std::string_view kJavaHomeSetting = "JAVA_HOME=";
// From here on the status is the shell's own: it could not start the program, or a signal ended it.
constexpr int kLeastStatusOfShell = 126;
// How a Java refuses a class that is made for later ones.
constexpr int kUncaughtException = 1;
constexpr const char* kTooOldForClass = "java.lang.UnsupportedClassVersionError";
// No Java's answer is longer; a scan may meet many programs that say much.
constexpr std::size_t kMostBytesKept = std::size_t{64} << 10;

constexpr std::string_view kPlainOutsideQuotes =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 +,-./:=@%_^";
constexpr std::string_view kNotPlainInQuotes("$`\\\0", 4);

bool isPlain(char byte, bool isInQuotes) {
  return isInQuotes ? kNotPlainInQuotes.find(byte) == std::string_view::npos
                    : kPlainOutsideQuotes.find(byte) != std::string_view::npos;
}

// True when the shell takes the text for words, some of them in double quotes, and expands nothing.
bool hasOnlyPlainWords(std::string_view shape) {
  bool isInQuotes = false;
  for (const char byte : shape) {
    if (byte == '"') {
      isInQuotes = !isInQuotes;
    } else if (!isPlain(byte, isInQuotes)) {
      return false;
    }
  }
  return !isInQuotes;
}

SString environmentWithoutJavaHome() {
  SString all;
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    if (!std::string_view(*entry).starts_with(kJavaHomeSetting)) {
      all += *entry;
      all += '\0';
    }
  }
  return all;
}

bool contains(const SString& text, const SString& part) {
  return text.find(part) != SString::npos;
}

SString withoutSlashesAtEnd(SString path) {
  while (path.size() > 1 && path.endsWith("/")) {
    path.erase(path.size() - 1);
  }
  return path;
}

// What the launcher varies with the name is the name itself and JAVA_HOME.
bool showsName(const VerificationQuestion& question, const SString& text) {
  return contains(text, directoryOf(question.name)) ||
         contains(text, withoutSlashesAtEnd(question.javaHome));
}

// Such a Java answers by its own version and that of the class.
bool isTooOldForClass(const ProcessResult& result) {
  return result.status == kUncaughtException && contains(result.errors.text(), kTooOldForClass);
}

bool isWorthKeeping(const VerificationQuestion& question, const ProcessResult& result) {
  const bool isShort = result.output.text().size() + result.errors.text().size() <= kMostBytesKept;
  return isShort && result.endedByItself && result.startError.empty() &&
         result.status < kLeastStatusOfShell && ProgramFile::at(question.name) == question.program;
}

// What a program may find by its name and by JAVA_HOME, behind all links.
SString placesOf(const VerificationQuestion& question) {
  SString places = ProgramFile::withoutLinks(directoryOf(question.name));
  places += '\0';
  places += ProgramFile::withoutLinks(question.javaHome);
  places += '\0';
  return places + baseNameOf(question.name);
}

// The same as a start does, up to where the Java would be run.
ProcessResult repeat(const ProcessResult& result, const ProcessRequest& request) {
  const WorkingDirectory during(request.workingDir);
  PlatformImpl::throwIfCanceled();
  for (int i = 0; i < result.chunks; ++i) {
    PlatformImpl::advanceUIProgress(1);
  }
  return result;
}

}  // namespace

std::optional<VerificationQuestion> VerificationQuestion::of(const CommandText& command,
                                                             const SString& workingDir) {
  const SString& shape = command.shape();
  const std::size_t end = shape.find('"', 1);
  const bool isAbsolute = shape.startsWith("\"") && command.bytes()[1] == '/';
  if (!isAbsolute || end == SString::npos || shape[end + 1] != ' ' || !hasOnlyPlainWords(shape)) {
    return std::nullopt;
  }
  const SString name = command.bytes().substr(1, end - 1);
  std::optional<ProgramFile> program = ProgramFile::at(name);
  if (!program) {
    return std::nullopt;
  }
  return VerificationQuestion{.name = name,
                              .words = command.bytes().substr(end + 1),
                              .workingDir = workingDir,
                              .javaHome = PlatformImpl::getEnvironmentVariable(kJavaHome),
                              .environment = environmentWithoutJavaHome(),
                              .program = *std::move(program)};
}

ProcessResult VerificationMemory::ask(const CommandText& command, const ProcessRequest& request,
                                      bool isPackedClass) {
  const std::optional<VerificationQuestion> question =
      VerificationQuestion::of(command, request.workingDir);
  if (question) {
    if (const ProcessResult* answer = find(*question)) {
      return repeat(*answer, request);
    }
  }
  ProcessResult result = PlatformImpl::executeProcess(request);
  if (question && isWorthKeeping(*question, result)) {
    keep(*question, result, isPackedClass);
  }
  return result;
}

void VerificationMemory::keep(const VerificationQuestion& question, const ProcessResult& result,
                              bool isPackedClass) {
  const ProgramFile::Kind kind = question.program.kind();
  if (kind == ProgramFile::Kind::Script) {
    return;
  }
  const Names names = isPackedClass ? namesFor(question, kind, result) : Names::None;
  m_answers.push_back(
      {question, result, names, names == Names::InSameFolder ? placesOf(question) : SString()});
}

// A program that looks at its name finds the same parts beside itself where only a folder on the
// way is a link. OpenJDK's does not look at it.
VerificationMemory::Names VerificationMemory::namesFor(const VerificationQuestion& question,
                                                       ProgramFile::Kind kind,
                                                       const ProcessResult& result) {
  if (showsName(question, result.output.text()) || showsName(question, result.errors.text())) {
    return Names::None;
  }
  if (kind == ProgramFile::Kind::OpenJDKLauncher) {
    return result.status == 0 || isTooOldForClass(result) ? Names::All : Names::None;
  }
  return result.status == 0 ? Names::InSameFolder : Names::None;
}

bool VerificationMemory::answers(const Answer& answer, const VerificationQuestion& question) {
  const VerificationQuestion& earlier = answer.question;
  return earlier.program == question.program && earlier.words == question.words &&
         earlier.workingDir == question.workingDir && earlier.environment == question.environment &&
         holdsForName(answer, question);
}

bool VerificationMemory::holdsForName(const Answer& answer, const VerificationQuestion& question) {
  const VerificationQuestion& earlier = answer.question;
  return (earlier.name == question.name && earlier.javaHome == question.javaHome) ||
         answer.names == Names::All ||
         (answer.names == Names::InSameFolder && answer.places == placesOf(question));
}

const ProcessResult* VerificationMemory::find(const VerificationQuestion& question) const {
  for (const Answer& answer : m_answers) {
    if (answers(answer, question)) {
      return &answer.result;
    }
  }
  return nullptr;
}

VerificationMemory& VerificationMemory::ofRun() {
  if (g_launcher.m_verificationMemory == nullptr) {
    g_launcher.m_verificationMemory = std::make_shared<VerificationMemory>();
  }
  return *g_launcher.m_verificationMemory;
}

void VerificationMemory::forget() {
  g_launcher.m_verificationMemory = nullptr;
}
