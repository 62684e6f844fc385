#include "authoring/CommandCheck.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "archive/LauncherFileFormat.h"
#include "authoring/ArgumentCheck.h"
#include "authoring/FileTypes.h"
#include "authoring/JavaCall.h"
#include "authoring/MacroNames.h"
#include "authoring/ShellWords.h"
#include "authoring/TextPatterns.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"

namespace authoring {
namespace {

constexpr std::string_view kJava = "java";
constexpr std::string_view kExec = "exec";
// Behind a home; more is no path of people.
constexpr std::size_t kLongestPath = 200;

bool holds(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

class CommandCheck {
 public:
  CommandCheck(const Setup& setup, const SetupFile& script, const CommandModel& command,
               Findings& findings)
      : m_setup(setup),
        m_script(script),
        m_command(command),
        m_findings(findings),
        m_template(script.tagFile->getTagValue(tagname::kCommand, 0).view()) {}

  void run() {
    if (m_template.empty()) {
      return;
    }
    checkProgram();
    checkHome();
    checkOptions();
    checkDescription();
    if (m_command.isReadable) {
      checkShell();
      checkClasspath();
      checkArchive();
      checkProperties();
      checkRequiredArguments();
    }
  }

 private:
  void error(const std::string& what, const std::string& why, const std::string& advice) {
    m_findings.error(m_script.at(tagname::kCommand, 0),
                     std::string(tagname::kCommand) + ": " + what, why, advice);
  }
  void warn(const std::string& what, const std::string& why, const std::string& advice) {
    m_findings.warning(m_script.at(tagname::kCommand, 0),
                       std::string(tagname::kCommand) + ": " + what, why, advice);
  }

  bool hasType(std::int32_t type) const { return m_setup.findType(type) != nullptr; }

  // --- What is run ---

  void checkProgram() {
    const std::string_view text = m_template;
    const std::string_view word = firstWord(text);
    const bool isExec = word == kExec;
    const std::string_view rest = withoutBlanks(text.substr(word.size()));
    const std::string_view program = isExec ? firstWord(rest) : word;
    checkMacroProgram(program);
    if (program == kJava && hasType(FILE_TYPE_JVM)) {
      warn("java is the one of PATH, not the one that was found",
           "users without it, or with another one, cannot run the wizard",
           "write \"@JVM_HOME@/@JVM_EXE@\"");
    } else if (isExec && isAssignment(program)) {
      error("exec takes " + quotedText(program) + " for a program", "the wizard is not started",
            "put the assignment in front of exec");
    } else if (!isExec && isVariableName(word) && rest.starts_with('=')) {
      error("the shell wants no blanks around the = of an assignment",
            "it takes " + quotedText(word) + " for a program",
            "write " + std::string(word) + "=value");
    }
  }

  void checkMacroProgram(std::string_view program) {
    const std::string name = withoutQuotes(program);
    const std::string advice = "write \"@JVM_HOME@/@JVM_EXE@\"";
    const bool isInFolder = anyExe([](std::string_view exe) { return holds(exe, "/"); });
    if (name == "@JVM_EXE@" && isInFolder && !holds(m_template, "cd ")) {
      error("@JVM_EXE@ is a path below the home of the Java", "the program is not found", advice);
    } else if (name == "@JVM_HOME@") {
      error("@JVM_HOME@ is a folder", "the shell cannot run it", advice);
    } else if (name.starts_with("@JVM_HOME@\\")) {
      error("a backslash stands behind @JVM_HOME@", "the program is not found", advice);
    } else if (name.ends_with("/javaw") || name.ends_with(".exe")) {
      warn(quotedText(name) + " is a program of Windows", "no Java on Unix has it", advice);
    }
  }

  static std::string withoutQuotes(std::string_view word) {
    std::string bare(word);
    bare.erase(std::remove(bare.begin(), bare.end(), '"'), bare.end());
    return bare;
  }

  // -Dname = value
  void checkOptions() {
    for (std::size_t at = m_template.find(" -D"); at != std::string::npos;
         at = m_template.find(" -D", at + 1)) {
      const std::string_view option = firstWord(std::string_view(m_template).substr(at + 1));
      const std::string_view rest =
          withoutBlanks(std::string_view(m_template).substr(at + 1 + option.size()));
      if (option.find('=') == option.npos && rest.starts_with('=')) {
        error("blanks stand around the = of " + quotedText(option),
              "Java takes the = for the name of a class",
              "write " + std::string(option) + "=value");
      }
    }
  }

  // The home of a Java ends with no slash, unless it is one of PATH.
  void checkHome() {
    const std::string home = kTagMark + std::string(tagname::kJVMHome) + kTagMark;
    for (std::size_t at = m_template.find(home); at != std::string::npos;
         at = m_template.find(home, at + 1)) {
      const std::string behind = m_template.substr(at + home.size(), 1);
      if (behind == "@" || isVariableName(behind)) {
        error("no slash stands behind " + home, "the program is not found",
              "write " + home + "/" + m_template.substr(at + home.size(), 9));
        return;
      }
      checkFolderOfExe(std::string_view(m_template).substr(at + home.size(), kLongestPath));
    }
  }

  // "@JVM_HOME@/bin/@JVM_EXE@"; `behind` is what follows the home.
  void checkFolderOfExe(std::string_view behind) {
    const std::string exe = kTagMark + std::string(tagname::kJVMExe) + kTagMark;
    const std::size_t at = behind.find(exe);
    const std::string_view folder = behind.substr(0, at);
    if (at == std::string::npos || folder.size() < 2 || folder[0] != '/' ||
        folder.find_first_of(" \"") != std::string::npos) {
      return;
    }
    if (anyExe([&folder](std::string_view path) { return path.starts_with(folder.substr(1)); })) {
      error(exe + " begins with " + std::string(folder.substr(1)) + " itself",
            "the program is not found", "write @JVM_HOME@/" + exe);
    }
  }

  template <class Predicate>
  bool anyExe(Predicate predicate) const {
    return std::any_of(m_setup.files.begin(), m_setup.files.end(), [&](const SetupFile& file) {
      return file.type == FILE_TYPE_JVM && file.tagFile != nullptr &&
             predicate(std::string_view(
                 std::string(file.tagFile->getTagValue(tagname::kJVMExe, 0).view())));
    });
  }

  // --- Java and the words behind it ---

  void checkJavaCall() {
    const auto call = findJavaCall(m_template.c_str());
    if (!call || !call->isCertain || !anyExe(isJavaPath)) {
      return;
    }
    const bool isInBackground = m_template.ends_with('&');
    if (!call->isLast && !isInBackground && !handsOnArguments()) {
      warn("more stands behind the wizard",
           "the user's arguments, such as -silent, are put at the end and do not reach the wizard",
           "let the wizard be the last command");
    }
    if (!call->optionWithBadSize.empty()) {
      error(call->optionWithBadSize + " is no size that Java knows", "Java refuses to start",
            "write a number and k, m or g, such as -Xmx512m");
    }
    if (call->isReadable) {
      checkClass(*call);
    }
  }

  // Some function or shell of the author's gives them to the wizard.
  bool handsOnArguments() const {
    return holds(m_template, "$@") || holds(m_template, "$*") || holds(m_template, "$1");
  }

  void checkClass(const JavaCall& call) {
    if (!call.optionApart.empty()) {
      error("a blank stands behind " + call.optionApart, "Java takes the next word for a class",
            "leave out the blank");
    } else if (call.needsClass && call.className.empty()) {
      error("no class is named", "Java has nothing to run",
            "write the class of the wizard at the end");
    } else if (call.hasJarsBehindClass && isClasspathInCommand(m_setup)) {
      error("CP stands behind the class " + call.className,
            "Java takes the class path for arguments of the wizard",
            "write %CP%() in front of the class");
    } else if (!call.optionBehindClass.empty()) {
      warn(call.optionBehindClass + " stands behind the class " + call.className,
           "Java gives it to the wizard", "write it in front of the class");
    } else if (call.hasJars && call.hasOwnClasspath && isClasspathInCommand(m_setup)) {
      error("a class path stands beside CP", "Java takes the last one only",
            "write the entries into the call: %CP%(\"...\")");
    }
  }

  void checkShell() {
    if (!hasClosedQuotes(m_command.text)) {
      error("a quote is not closed", "the shell refuses the command", "close the quote");
    }
    if (!checkLoneSigns()) {
      checkJavaCall();
    }
    if (hasShellComment(m_command.text)) {
      warn("# begins a comment of the shell",
           "the user's arguments are put behind it and do not reach the wizard", "leave it out");
    }
    const std::string_view text = m_command.text;
    if (text.ends_with('\\')) {
      error("the backslash at the end joins no lines", "the next line is a tag of its own",
            "write the command on one line");
    }
    if (text.ends_with('&') && !text.ends_with("&&")) {
      warn("& at the end lets the wizard run in the background",
           "the launcher ends at once and removes the files that the wizard needs", "leave it out");
    }
  }

  // "%CP()" with no other sign behind it is no call. Returns whether there is one.
  bool checkLoneSigns() {
    bool isFound = false;
    for (const FunctionGrammar& function : kFunctionGrammar) {
      const std::string name(function.name);
      if (holds(m_command.text, kFunctionMark + name + "(")) {
        error(name + " lacks its second percent sign", "the shell refuses the command",
              "write %" + name + "%(");
        isFound = true;
      }
    }
    return isFound;
  }

  // --- Functions and the files behind them ---

  void checkClasspath() {
    const bool isCalled = m_command.count(Function::kCP) > 0;
    if (!isCalled && hasType(FILE_TYPE_JAR)) {
      warn("CP is not called, though the setup carries jar files",
           "nothing else puts them on the class path", "write %CP%() in front of the class");
    }
    for (const char* const option : {"-cp %CP%", "-classpath %CP%", "--class-path %CP%"}) {
      if (holds(m_template, option) && isClasspathInCommand(m_setup)) {
        error("the option of the class path stands twice",
              "CP begins with the tag CLASSPATH of the jvm file", "write %CP%() alone");
      }
    }
    if (isCalled && holds(" " + m_template, " -jar ")) {
      warn("with -jar Java ignores the class path", "what CP collects is not found",
           "name the class instead");
    }
  }

  void checkArchive() {
    for (const FunctionCall& call : m_command.calls) {
      if (call.function == Function::kApplicationArchive && call.arguments.empty() &&
          !hasType(FILE_TYPE_APPLICATION_ARCHIVE)) {
        error("the setup carries no application archive", "APPLICATION_ARCHIVE gives nothing",
              "add a file of the type archive");
        return;
      }
    }
  }

  void checkProperties() {
    for (const FunctionCall& call : m_command.calls) {
      if (call.function == Function::kSystemProp && !call.arguments.empty() &&
          call.arguments[0].starts_with("-D")) {
        error("SYSTEMPROP writes the -D itself",
              "Java gets " + quotedText("-D" + call.arguments[0]),
              "write the name alone, as in %SYSTEMPROP%(\"" + call.arguments[0].substr(2) +
                  "\",\"...\")");
      }
    }
  }

  // A side file's call gives the tag, too.
  void checkRequiredArguments() {
    const auto& tags = m_command.tags;
    const bool isNamed = std::find(tags.begin(), tags.end(), tagname::kReqJavaArgs) != tags.end();
    if (isNamed && m_command.count(Function::kRuntimeJavaArgs) > 0) {
      warn("@REQ_JAVA_ARGS@ stands beside RUNTIME_JAVAARGS", "Java gets these arguments twice",
           "leave out @REQ_JAVA_ARGS@");
    }
  }

  // --- The title ---

  void checkDescription() {
    const SString title = m_script.tagFile->getTagValue(tagname::kDesc, 0);
    for (const std::string& name : namesIn(title, kFunctionMark)) {
      if (findFunction(name) != nullptr) {
        reportMacroInTitle(kFunctionMark + name + kFunctionMark);
      }
    }
    for (const std::string& name : namesIn(title, kTagMark)) {
      if (looksLikeATag(name)) {
        reportMacroInTitle(kTagMark + name + kTagMark);
      }
    }
  }

  void reportMacroInTitle(const std::string& macro) {
    m_findings.warning(m_script.at(tagname::kDesc, 0),
                       std::string(tagname::kDesc) + ": " + macro + " is not filled in here",
                       "users read it as it stands", "write the text itself");
  }

  const Setup& m_setup;
  const SetupFile& m_script;
  const CommandModel& m_command;
  Findings& m_findings;
  const std::string m_template;
};

}  // namespace

void checkCommand(const Setup& setup, const SetupFile& script, const CommandModel& command,
                  Findings& findings) {
  CommandCheck(setup, script, command, findings).run();
  checkArguments(setup, script, command, findings);
  checkMacroNames(setup, script, tagname::kCommand, findings);
  checkMacroNames(setup, script, tagname::kArchive, findings);
}

}  // namespace authoring
