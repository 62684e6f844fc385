#include "launchscript/LaunchScript.h"

#include "jvm/JVMFile.h"
#include "jvm/VerificationMemory.h"
#include "launcher/LauncherFacts.h"
#include "launcher/Log.h"
#include "launchscript/LaunchScriptGrammar.h"
#include "launchscript/ShellQuoting.h"
#include "platform/PlatformImpl.h"
#include "tagfile/Paths.h"
#include "tagfile/Quotes.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

namespace {

constexpr const char* kJavaHome = "JAVA_HOME";

// Puts JAVA_HOME back at the end of the run, also after an error.
class JavaHomeScope {
 public:
  explicit JavaHomeScope(const SString& home)
      : m_saved(PlatformImpl::getEnvironmentVariable(kJavaHome)) {
    PlatformImpl::setEnvironmentVariable(kJavaHome, home);
  }
  // QUIRK(java-home-comes-back-empty): a variable that was unset is set to nothing afterwards.
  ~JavaHomeScope() { PlatformImpl::setEnvironmentVariable(kJavaHome, m_saved); }
  JavaHomeScope(const JavaHomeScope&) = delete;
  JavaHomeScope& operator=(const JavaHomeScope&) = delete;

 private:
  SString m_saved;
};

// The launcher's own directory; a launcher without one names itself.
SString launcherDirectory() {
  const SString file = LauncherFacts::getLauncherFileName();
  return file.find(kPathSeparator) == SString::npos ? file : directoryOf(file);
}

// The argument as the log shows it: "$", "`" and "\" stand there without the backslash that they
// have for the shell.
SString shownInQuotes(const SString& argument) {
  SString shown;
  for (const char byte : argument.view()) {
    if (byte == kQuote) {
      shown += '\\';
    }
    shown += byte;
  }
  return inQuotes(shown);
}

// The system takes no argument of 128 KiB. A command of about that length goes to the shell in
// pieces that it joins; when the command is run, neither they nor our variables are to be seen.
constexpr std::size_t kLongestPiece = std::size_t{120} * 1024;
constexpr const char* kRunPieces =
    "_cvj_text=; for _cvj_piece\ndo _cvj_text=$_cvj_text$_cvj_piece; done; set --; "
    "eval \"unset _cvj_text _cvj_piece; $_cvj_text\"";

void putIntoPieces(ProcessRequest& request) {
  for (std::size_t i = 0; i < request.command.size(); i += kLongestPiece) {
    request.arguments.push_back(request.command.substr(i, kLongestPiece));
  }
  request.command = kRunPieces;
}

// One line NAME=VALUE of the jvm file; without "=" the value is empty.
void setEnvironmentFromLine(const SString& line) {
  if (line.empty()) {
    return;
  }
  const std::size_t equalSign = line.find('=');
  const SString value = equalSign == SString::npos ? SString() : line.substr(equalSign + 1);
  PlatformImpl::setEnvironmentVariable(trimmed(line.substr(0, equalSign)), trimmed(value));
}

void setEnvironmentForWizard(const TagFile& jvmFile) {
  if (!LauncherFacts::isQuietPurpose()) {
    return;
  }
  const long count = jvmFile.getTagValueCount(tagname::kSetEnvForWizard);
  for (long i = 0; i < count; ++i) {
    setEnvironmentFromLine(
        trimmed(jvmFile.getTagValue(tagname::kSetEnvForWizard, static_cast<unsigned long>(i))));
  }
}

}  // namespace

LaunchScript::LaunchScript(const TagFile& script, bool captureOutput,
                           const FileIndex& embeddedFiles)
    : m_command(script.getTagValue(tagname::kCommand, 0)),
      m_captureOutput(captureOutput),
      m_displayConsole(script.getBoolTagValue(tagname::kDisplayConsole, false)),
      m_autoSetWorkingDir(script.getBoolTagValue(tagname::kAutoSetWorkingDir, true)),
      m_embeddedFiles(&embeddedFiles),
      m_description(script.getTagValue(tagname::kDesc, 0)),
      m_archive(script.getTagValue(tagname::kArchive, 0)) {}

LaunchScript::LaunchScript(const CommandText& command, bool captureOutput)
    : m_command(command), m_captureOutput(captureOutput) {}

CommandText LaunchScript::resolve(const JVMFile& jvm) const {
  struct Scope {
    const LaunchScript& script;
    ~Scope() {
      script.m_currentJVMFile = nullptr;
      script.m_isResolvingArchive = false;
      script.m_classpathVariable.clear();
      script.m_classpathInVariable = {};
    }
  };
  const Scope scope{*this};
  m_currentJVMFile = &jvm;
  const CommandText withoutFunctions = MacroHandler::resolve(m_command, kFunctionMark);
  return MacroHandler::resolve(jvm.resolve(withoutFunctions), kEnvironmentMark);
}

int LaunchScript::execute(const JVMFile& jvm, const StringDeque* extraArgs, bool forceConsole) {
  m_lastRun = {};
  CommandText command = resolve(jvm);
  SString shown = command.bytes();
  for (long i = 0; extraArgs != nullptr && i < extraArgs->size(); ++i) {
    command += " " + CommandText::insertedInQuotes(extraArgs->at(i));
    shown += " " + shownInQuotes(extraArgs->at(i));
  }
  ProcessRequest request = makeRequest(command);
  request.captures = m_captureOutput && !m_displayConsole && !forceConsole;
  VerificationMemory::forget();
  run(jvm, request, shown, [&] { return PlatformImpl::executeProcess(request); });
  return m_lastRun.status;
}

const ProcessResult& LaunchScript::tryOut(const JVMFile& jvm, bool isPackedClass) {
  m_lastRun = {};
  const CommandText command = resolve(jvm);
  ProcessRequest request = makeRequest(command);
  request.captures = true;
  request.isTrial = true;
  run(jvm, request, command.bytes(),
      [&] { return VerificationMemory::ofRun().ask(command, request, isPackedClass); });
  return m_lastRun;
}

ProcessRequest LaunchScript::makeRequest(const CommandText& command) const {
  ProcessRequest request;
  request.command = quoteForShell(command);
  if (request.command.size() > kLongestPiece) {
    putIntoPieces(request);
  }
  request.workingDir = m_autoSetWorkingDir ? launcherDirectory() : SString();
  return request;
}

template <class Start>
void LaunchScript::run(const JVMFile& jvm, const ProcessRequest& request, const SString& shown,
                       Start start) {
  logMessage("Executing launch script command: " + shown +
                 (request.workingDir.empty() ? SString(" in current working directory")
                                             : " in working directory " + request.workingDir),
             LOG_INFO);
  {
    const JavaHomeScope javaHome(jvm.getTagFile().getTagValue(tagname::kJVMHome, 0));
    setEnvironmentForWizard(jvm.getTagFile());
    PlatformImpl::preJavaLaunch();
    m_lastRun = start();
  }
  if (request.captures) {
    logOutput();
  }
}

void LaunchScript::logOutput() const {
  logMessage("Output from the launch script execution", LOG_INFO);
  logMessage("StdOut:", LOG_INFO);
  logMessage(getStdOut(), LOG_INFO);
  logMessage("ErrOut:", LOG_INFO);
  logMessage(getStdErr(), LOG_INFO);
}

void LaunchScript::throwException(const CommandText& command, const char* message) const {
  logMessage("Launch command:", LOG_INFO);
  logMessage(command.bytes(), LOG_INFO);
  throw LauncherException(SString("Launch script error: ") + message);
}

SString LaunchScript::tagValue(const char* key) const {
  return m_currentJVMFile->getTagFile().getTagValue(key, 0);
}
