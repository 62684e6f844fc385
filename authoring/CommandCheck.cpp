#include "authoring/CommandCheck.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "archive/LauncherFileFormat.h"
#include "authoring/FileTypes.h"
#include "authoring/MacroNames.h"
#include "authoring/TextPatterns.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"

namespace authoring {
namespace {

constexpr std::string_view kJava = "java";
constexpr std::string_view kExec = "exec";

bool holds(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

// NAME=VALUE in front of a command.
bool isAssignment(std::string_view word) {
  const std::size_t equals = word.find('=');
  return equals != std::string_view::npos && isVariableName(word.substr(0, equals));
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
    if (m_command.isReadable) {
      checkShell();
      checkClasspath();
      checkArchive();
      checkProperties();
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
    }
  }

  void checkShell() {
    if (!hasClosedQuotes(m_command.text)) {
      error("a quote is not closed", "the shell refuses the command", "close the quote");
    }
    checkLoneSigns();
    const std::string_view text = m_command.text;
    if (text.ends_with('&') && !text.ends_with("&&")) {
      warn("& at the end lets the wizard run in the background",
           "the launcher ends at once and removes the files that the wizard needs", "leave it out");
    }
  }

  // "%CP()" with no other sign behind it is no call.
  void checkLoneSigns() {
    for (const FunctionGrammar& function : kFunctionGrammar) {
      const std::string name(function.name);
      if (holds(m_command.text, kFunctionMark + name + "(")) {
        error(name + " lacks its second percent sign", "the shell refuses the command",
              "write %" + name + "%(");
      }
    }
  }

  // --- Functions and the files behind them ---

  void checkClasspath() {
    const bool isCalled = m_command.count(Function::kCP) > 0;
    if (!isCalled && hasType(FILE_TYPE_JAR)) {
      warn("CP is not called, though the setup carries jar files",
           "nothing else puts them on the class path", "write %CP%() in front of the class");
    }
    for (const char* const option : {"-cp %CP%", "-classpath %CP%", "--class-path %CP%"}) {
      if (holds(m_template, option) && jvmFilesGiveTheOption()) {
        error("the option of the class path stands twice",
              "CP begins with the tag CLASSPATH of the jvm file", "write %CP%() alone");
      }
    }
    if (isCalled && holds(" " + m_template, " -jar ")) {
      warn("with -jar Java ignores the class path", "what CP collects is not found",
           "name the class instead");
    }
  }

  bool jvmFilesGiveTheOption() const {
    return std::any_of(m_setup.files.begin(), m_setup.files.end(), [](const SetupFile& file) {
      return file.type == FILE_TYPE_JVM && file.tagFile != nullptr &&
             file.tagFile->getTagValue(tagname::kClasspath, 0)[0] == '-';
    });
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
  checkMacroNames(setup, script, tagname::kCommand, findings);
  checkMacroNames(setup, script, tagname::kArchive, findings);
}

}  // namespace authoring
