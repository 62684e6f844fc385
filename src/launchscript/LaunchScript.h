// LaunchScript: the template of the command that starts the Java wizard, and its run.
//
// Built from a tag file, or from a command text (verification). The template language is described
// in docs/launch-script.md. LaunchScript.cpp holds the fields and the run; LaunchScriptMacros.cpp
// the "%" functions; LaunchScriptClasspath.cpp the class path, side files and properties.
//
// Errors of the template are LauncherException "Launch script error: " and the reason, after the
// command has been logged.
#ifndef CORVANE_LAUNCHSCRIPT_LAUNCHSCRIPT_H
#define CORVANE_LAUNCHSCRIPT_LAUNCHSCRIPT_H

#include "launchscript/CommandText.h"
#include "launchscript/MacroHandler.h"
#include "platform/ProcessRequest.h"
#include "tagfile/TagFile.h"
#include "util/SString.h"
#include "util/StringDeque.h"

class FileIndex;
class JVMFile;
enum class Function;

class LaunchScript : public MacroHandler {
 public:
  // Reads COMMAND, DISPLAY_CONSOLE, AUTO_SET_WORKING_DIR, DESC and ARCHIVE; the tag file is not
  // kept. The class path includes the jar files among `embeddedFiles`, which must outlive this.
  LaunchScript(const TagFile& script, bool captureOutput, const FileIndex& embeddedFiles);
  // The command alone: no jar file of the launcher is on its class path.
  LaunchScript(const CommandText& command, bool captureOutput);

  // The concrete command for a JVM: "%" functions, then the jvm file's "@" macros, then "#"
  // environment variables.
  CommandText resolve(const JVMFile& jvm) const;
  // Resolves and runs the command with `extraArgs` (may be null) after it, each of which arrives
  // byte for byte, and returns its exit code. JAVA_HOME names the JVM during the run.
  [[nodiscard]] int execute(const JVMFile& jvm, const StringDeque* extraArgs, bool forceConsole);
  // Resolves the command and runs it as a trial of the JVM (ProcessRequest::isTrial), unless
  // VerificationMemory, which explains `isPackedClass`, knows the answer. The output is captured.
  [[nodiscard]] const ProcessResult& tryOut(const JVMFile& jvm, bool isPackedClass);

  // Output of the last run; empty when it was not captured.
  SString getStdOut() const { return m_lastRun.output.text(); }
  SString getStdErr() const { return m_lastRun.errors.text(); }
  SString getDesc() const { return m_description; }

  CommandText processMacro(const MacroText& text, char delimiter, std::size_t start,
                           std::size_t& end) const override;
  // Reads a parenthesised list of quoted strings from `position`, which is left one past it.
  // Throws as throwException, with " (near character N)": where the failing token was sought, -1
  // after a string that ends the text. A string without its end throws parseStringArgument's text.
  void getArguments(const CommandText& text, std::size_t& position, CommandTexts& args) const;
  // Logs the command and throws "Launch script error: " and the message.
  [[noreturn]] void throwException(const CommandText& command, const char* message) const;

  // Builders of the "%" functions, for use while `resolve` runs; entries are joined by the jvm
  // file's CLASSPATH_SEPARATOR.
  CommandText buildJVMClasspath() const;
  CommandText buildClasspathFromFile(const JVMFile& jvm, const SString& fileName,
                                     bool reportMissing) const;
  CommandText buildRuntimeClasspath(const JVMFile& jvm, const char* extension) const;
  CommandText buildRuntimeSystemProps(const JVMFile& jvm) const;
  CommandText buildRuntimeJavaArgs(const JVMFile& jvm) const;
  CommandText buildJARClasspath(bool quote) const;
  void addToClasspath(const JVMFile& jvm, CommandText& classpath, const CommandText& entry) const;
  void appendClasspathArg(const JVMFile& jvm, CommandText& classpath, const SString& arg) const;
  CommandText makeSystemProp(const JVMFile& jvm, const CommandText& name,
                             const CommandText& value) const;

 private:
  [[nodiscard]] ProcessRequest makeRequest(const CommandText& command) const;
  // The log gets the command as `shown`.
  template <class Start>
  void run(const JVMFile& jvm, const ProcessRequest& request, const SString& shown, Start start);
  void logOutput() const;
  std::size_t readCall(const MacroText& text, std::size_t position, CommandTexts& args) const;
  SString tagValue(const char* key) const;  // of the current jvm file
  CommandText environmentVariable(const SString& name) const;
  CommandText call(Function function, const CommandTexts& args) const;
  CommandText callReplace(const CommandTexts& args) const;
  CommandText callCP(const CommandTexts& args) const;
  CommandText callIfExists(const CommandTexts& args) const;
  CommandText callTempDir() const;
  CommandText buildClasspath(const CommandTexts& args, bool forEnvironment) const;
  void addOptionToClasspath(CommandText& classpath, const SString& option) const;
  CommandText resolveArchive() const;

  CommandText m_command;
  bool m_captureOutput;
  bool m_displayConsole = false;
  bool m_autoSetWorkingDir = true;
  ProcessResult m_lastRun;
  mutable const JVMFile* m_currentJVMFile = nullptr;  // during `resolve` only; not owned
  mutable bool m_isResolvingArchive = false;          // guards against an ARCHIVE that calls CP
  // During `resolve` only: what the function CP put into which environment variable.
  mutable SString m_classpathVariable;
  mutable CommandText m_classpathInVariable;
  const FileIndex* m_embeddedFiles = nullptr;  // null: their jar files are left out; not owned
  SString m_description;
  SString m_archive;
};

#endif
