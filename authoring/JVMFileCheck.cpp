#include "authoring/JVMFileCheck.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "archive/LauncherFileFormat.h"
#include "authoring/ArgumentCheck.h"
#include "authoring/FileTypes.h"
#include "authoring/JavaOptions.h"
#include "authoring/TagFileCheck.h"
#include "authoring/TextPatterns.h"
#include "instructions/ScriptGrammar.h"
#include "instructions/ScriptSyntax.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"

namespace authoring {
namespace {

constexpr const char* kEqualsSign = "=";
constexpr const char* kColon = ":";

std::string firstValue(const SetupFile& file, const char* tag) {
  return std::string(file.tagFile->getTagValue(tag, 0).view());
}

bool isJVMFile(const SetupFile& file) {
  return file.type == FILE_TYPE_JVM && file.tagFile != nullptr;
}

bool namesAJVMFile(const Setup& setup, std::int32_t id) {
  const SetupFile* const file = setup.findId(id);
  return file != nullptr && file->type == FILE_TYPE_JVM;
}

using NoArguments = std::span<const ArgumentGrammar>;

bool hasHints(const SetupFile& file) {
  return !firstValue(file, tagname::kPathHint).empty() ||
         !firstValue(file, tagname::kPlatformHint).empty() ||
         file.tagFile->getBoolTagValue(tagname::kSearchAll, false);
}

class JVMFileCheck {
 public:
  JVMFileCheck(const Setup& setup, const SetupFile& file, const CommandModel& command,
               Findings& findings)
      : m_setup(setup), m_file(file), m_command(command), m_findings(findings) {
    m_isJava = isJavaPath(firstValue(file, tagname::kJVMExe));
  }

  void run() {
    usesVariable() ? checkVariable() : checkOption();
    checkClasspathSeparator();
    checkSystem();
    checkOwnClasspath();
    checkEnvironment();
    checkRecorded();
  }

 private:
  std::string value(const char* tag) const { return firstValue(m_file, tag); }
  void error(const char* tag, const std::string& what, const std::string& why,
             const std::string& advice) {
    m_findings.error(m_file.at(tag, 0), what, why, advice);
  }
  void warn(const char* tag, const std::string& what, const std::string& why,
            const std::string& advice) {
    m_findings.warning(m_file.at(tag, 0), what, why, advice);
  }
  static std::string named(const char* tag, const std::string& text) {
    return std::string(tag) + text;
  }
  static std::string valued(const char* tag, const std::string& value) {
    return std::string(tag) + ": " + quotedText(value);
  }

  // --- The class path ---

  bool usesVariable() const { return value(tagname::kUseCPEnvVar) == "1"; }

  void checkVariable() {
    const std::string name = value(tagname::kCPEnvVar);
    if (name.empty()) {
      error(tagname::kUseCPEnvVar,
            named(tagname::kUseCPEnvVar, " is 1 without ") + tagname::kCPEnvVar,
            "the class path is lost, and no Java is accepted",
            named("name the variable: ", tagname::kCPEnvVar) + ": " + tagname::kClasspath);
    } else if (!isVariableName(name)) {
      error(tagname::kCPEnvVar, valued(tagname::kCPEnvVar, name) + " is no name of a variable",
            "the class path does not reach Java", "write the name alone, without signs around it");
    }
  }

  // CLASSPATH: "-cp "
  void checkOption() {
    if (!value(tagname::kCPEnvVar).empty()) {
      warn(tagname::kCPEnvVar, named(tagname::kCPEnvVar, " without ") + tagname::kUseCPEnvVar,
           "the class path goes into the command, not into the variable",
           named("write ", tagname::kUseCPEnvVar) + ": 1, or leave it out");
    }
    const std::string option = value(tagname::kClasspath);
    if (option.empty()) {
      needOption();
    } else if (m_isJava && (option[0] == '/' || option.find(".jar") != std::string::npos)) {
      error(tagname::kClasspath, valued(tagname::kClasspath, option) + " is no option",
            "the tag is what stands in front of a class path, and Java would take it for a class",
            named("write ", tagname::kClasspath) + ": \"-cp \", and entries as " +
                tagname::kJVMClasspath);
    } else if (m_isJava && !isOptionOfJava(option)) {
      error(tagname::kClasspath,
            valued(tagname::kClasspath, option) + " is no option for a class path",
            "Java does not take it, and no Java is accepted",
            named("write ", tagname::kClasspath) + ": \"-cp \"");
    } else if (option[0] == '-' && !endsForPath(option)) {
      error(tagname::kClasspath,
            valued(tagname::kClasspath, option) + " does not end with its blank",
            "the class path follows at once, as in " + option + "a.jar",
            named("put it into quotes with a blank: ", tagname::kClasspath) + ": \"" + option +
                " \"");
    }
  }

  // In front of an entry, or of further ones.
  static bool endsForPath(const std::string& option) {
    return option.back() == '=' || option.back() == ':' || isWhitespace(option.back());
  }

  // False for what is surely none, such as "cp " and "-cp=".
  static bool isOptionOfJava(const std::string& option) {
    const std::string_view text = withoutBlanks(option);
    const std::string_view last = text.substr(text.find_last_of(kBlanks) + 1);
    const bool isOther = last.find_first_of("@#$%:") != last.npos || last.starts_with("-D") ||
                         last.starts_with("-X") || last == "--class-path=";
    return isOther || isClasspathOption(last);
  }

  void needOption() {
    if (m_isJava) {
      error(tagname::kClasspath, named(tagname::kClasspath, " is missing"),
            "the class path stands in the command without an option, and no Java is accepted",
            named("write ", tagname::kClasspath) + ": \"-cp \"");
    }
  }

  void checkOwnClasspath() {
    const std::string entries = value(tagname::kJVMClasspath);
    const auto fault = usesVariable() ? std::nullopt : findShellFault(entries);
    if (fault) {
      error(tagname::kJVMClasspath, valued(tagname::kJVMClasspath, entries) + " " + fault->what,
            fault->why + ", and no Java is accepted",
            "put the path into double quotes, written as \"\"\"/opt/my lib.jar\"\"\"");
    }
  }

  // How many entries the class path of a launch has for certain.
  long entries() const {
    long count = std::count_if(m_setup.files.begin(), m_setup.files.end(),
                               [](const SetupFile& f) { return f.type == FILE_TYPE_JAR; });
    for (const FunctionCall& call : m_command.calls) {
      count += call.function == Function::kCP ? static_cast<long>(call.arguments.size()) : 0;
    }
    return m_command.count(Function::kCP) == 0 ? 0 : count;
  }

  void checkClasspathSeparator() {
    const std::string separator = value(tagname::kClasspathSeparator);
    const std::string advice =
        named("write ", tagname::kClasspathSeparator) + ": " + quotedText(kColon);
    const bool needsOne = m_isJava && (usesVariable() || !value(tagname::kClasspath).empty());
    if (separator.empty() && needsOne) {
      const std::string what = named(tagname::kClasspathSeparator, " is missing");
      const std::string why = "the entries of a class path would stand side by side";
      entries() > 1 ? error(tagname::kClasspathSeparator, what, why, advice)
                    : warn(tagname::kClasspathSeparator, what, why, advice);
    } else if (separator == ";" && m_isJava) {
      error(tagname::kClasspathSeparator,
            valued(tagname::kClasspathSeparator, separator) + " is the separator of Windows",
            "for the shell the command ends there", advice);
    } else if (!separator.empty() && separator != kColon && m_isJava) {
      warn(tagname::kClasspathSeparator,
           valued(tagname::kClasspathSeparator, separator) + " separates no entries",
           "Java on Unix separates them by a colon", advice);
    }
  }

  // --- System properties: "-D" name "=" value ---

  void checkSystem() {
    const long calls = m_command.count(Function::kSystemProp);
    const bool isUsed = calls + m_command.count(Function::kRuntimeSystemProp) > 0;
    const std::string option = value(tagname::kSystem);
    if (option.empty() && m_isJava && isUsed) {
      reportSystem(calls > 0, tagname::kSystem, "-D");
    } else if (m_isJava && !option.empty() && !isPropertyOption(option)) {
      report(calls > 0, tagname::kSystem, valued(tagname::kSystem, option) + " sets no property",
             "Java knows -D alone for that", named("write ", tagname::kSystem) + ": -D");
    } else if (!option.empty() && isWhitespace(option.back())) {
      error(tagname::kSystem, valued(tagname::kSystem, option) + " ends with a blank",
            "Java takes the property behind it for a class",
            named("write ", tagname::kSystem) + ": -D");
    }
    checkSystemSeparator(calls > 0, isUsed || !option.empty());
  }

  void checkSystemSeparator(bool isCalled, bool isUsed) {
    const std::string separator = value(tagname::kSystemSeparator);
    if (separator.empty() && m_isJava && isUsed) {
      reportSystem(isCalled, tagname::kSystemSeparator, quotedText(kEqualsSign));
    } else if (!separator.empty() && separator != kEqualsSign && m_isJava) {
      warn(tagname::kSystemSeparator,
           valued(tagname::kSystemSeparator, separator) + " separates no name from its value",
           "Java wants an equals sign",
           named("write ", tagname::kSystemSeparator) + ": " + quotedText(kEqualsSign));
    }
  }

  static bool isPropertyOption(const std::string& option) {
    const std::string_view text = withoutBlanks(option);
    return text == "-D" || text.ends_with(" -D") || text.find('@') != text.npos;
  }

  void reportSystem(bool isCalled, const char* tag, const std::string& meant) {
    report(isCalled, tag, named(tag, " is missing"),
           isCalled ? "SYSTEMPROP makes no property that Java understands"
                    : "the properties of a side file would not be understood",
           named("write ", tag) + ": " + meant);
  }

  void report(bool isError, const char* tag, const std::string& what, const std::string& why,
              const std::string& advice) {
    isError ? error(tag, what, why, advice) : warn(tag, what, why, advice);
  }

  // --- The environment ---

  void checkEnvironment() {
    const long count = countOwnValues(m_file, kJVMFileTags, tagname::kSetEnvForWizard);
    for (long i = 0; i < count; ++i) {
      checkAssignment(
          std::string(withoutBlanks(
              m_file.tagFile->getTagValue(tagname::kSetEnvForWizard, static_cast<unsigned long>(i))
                  .view())),
          i);
    }
  }

  void checkAssignment(const std::string& line, long index) {
    const Place place = m_file.at(tagname::kSetEnvForWizard, index);
    const std::string what = valued(tagname::kSetEnvForWizard, line);
    const auto assignment = splitAssignment(line);
    if (!assignment) {
      if (!looksLikeAComment(line)) {
        m_findings.warning(place, what + " has no =", "the variable of that name becomes empty",
                           "write NAME=value");
      }
      return;
    }
    const std::string_view text = assignment->value.view();
    if (!isVariableName(assignment->name)) {
      m_findings.error(place, what + " sets no variable",
                       quotedText(assignment->name) + " is no name of one", "write NAME=value");
    } else if (text.size() > 1 && (text[0] == '"' || text[0] == '\'') && text.back() == text[0]) {
      m_findings.warning(place, what + " has quotes", "they belong to the value", "leave them out");
    } else if (text.find('$') != std::string_view::npos) {
      m_findings.warning(place, what + " holds a $", "no shell reads it: it stays as it stands",
                         "set the variable in COMMAND");
    } else if (text.starts_with("~/")) {
      m_findings.warning(place, what + " begins with ~", "no shell reads it: it stays as it stands",
                         "set the variable in COMMAND");
    } else if (holdsMacro(text)) {
      m_findings.warning(place, what + " holds a macro", "values are taken as they stand",
                         "set the variable in COMMAND");
    } else if (holdsAssignment(text)) {
      m_findings.warning(place, what + " sets one variable only",
                         "the rest of the line belongs to its value",
                         "write a line for each variable");
    }
  }

  // @TAG@, #VARIABLE#, or the call of a function.
  static bool holdsMacro(std::string_view text) {
    const std::vector<std::string> functions = namesIn(SString(text), kFunctionMark);
    bool isMacro = std::any_of(functions.begin(), functions.end(), [](const std::string& name) {
      return findFunction(name) != nullptr;
    });
    for (const char mark : {kTagMark, kEnvironmentMark}) {
      const std::vector<std::string> names = namesIn(SString(text), mark);
      isMacro = isMacro || std::any_of(names.begin(), names.end(), looksLikeATag);
    }
    return isMacro;
  }

  // "b; C=d" and "b C=d", but not "-Da=b C=d": that may be a list of options.
  static bool holdsAssignment(std::string_view text) {
    const std::string_view first = firstWord(text);
    const std::string_view second = firstWord(withoutBlanks(text.substr(first.size())));
    return first.find_first_of("=-") == first.npos &&
           looksLikeATag(second.substr(0, second.find('='))) && second.find('=') != second.npos;
  }

  void checkRecorded() {
    if (!value(tagname::kJVMFile).empty()) {
      warn(tagname::kJVMFile, named(tagname::kJVMFile, " is written by the launcher"),
           "this looks like its copy for the Java of one machine",
           "leave out JVM_HOME, JVM_FILE and JVM_TEMP");
    }
  }

  const Setup& m_setup;
  const SetupFile& m_file;
  const CommandModel& m_command;
  Findings& m_findings;
  bool m_isJava = false;
};

}  // namespace

StatusFiles::StatusFiles(const Setup& setup) {
  for (const SetupFile& script : setup.files) {
    if (script.type != FILE_TYPE_INSTRUCTIONS) {
      continue;
    }
    const StringDeque* const lines =
        script.tagFile == nullptr ? nullptr : script.tagFile->getValue(tagname::kInstructions);
    m_mayLaunchAny = m_mayLaunchAny || lines == nullptr;
    for (long i = 0; lines != nullptr && i < lines->size(); ++i) {
      addStatement(setup, (*lines)[i]);
    }
  }
}

void StatusFiles::addStatement(const Setup& setup, const SString& line) {
  std::size_t position = 0;
  const CommandGrammar* const command = findCommand(getTokenFromString(line, position));
  for (const ArgumentGrammar& argument : command == nullptr ? NoArguments() : command->arguments) {
    const SString word = getTokenFromString(line, position);
    std::int32_t id = 0;
    const bool isNumber = convertToLong(word, id);
    if (argument.kind == ArgumentKind::kVerifiedFile && isNumber) {
      m_verified.insert(id);
    } else if (argument.kind == ArgumentKind::kLaunchedFile) {
      m_launched.insert(id);
      m_mayLaunchAny = m_mayLaunchAny || !isNumber || (id >= 0 && !namesAJVMFile(setup, id));
    }
  }
}

bool StatusFiles::contain(const SetupFile& file) const {
  const bool isLaunched = m_mayLaunchAny || m_launched.count(file.id) != 0;
  return isJVMFile(file) && isLaunched && m_verified.count(file.id) == 0 &&
         firstValue(file, tagname::kJVMProperties).empty() && !hasHints(file);
}

void checkJVMFile(const Setup& setup, const SetupFile& file, const CommandModel& command,
                  Findings& findings) {
  JVMFileCheck(setup, file, command, findings).run();
}

void checkSearchAll(const Setup& setup, const StatusFiles& statusFiles, Findings& findings) {
  const SetupFile* scanning = nullptr;
  std::string hidden;
  for (const SetupFile& file : setup.files) {
    if (!isJVMFile(file) || statusFiles.contain(file)) {
      continue;
    }
    if (scanning != nullptr) {
      hidden += (hidden.empty() ? "" : ", ") + file.label;
    } else if (file.tagFile->getBoolTagValue(tagname::kSearchAll, false)) {
      scanning = &file;
    }
  }
  if (!hidden.empty()) {
    findings.warning(scanning->at(tagname::kSearchAll, 0),
                     std::string(tagname::kSearchAll) + " hides the jvm files behind it: " + hidden,
                     "their hints are never tried, since the scan begins first",
                     "give it to the last jvm file alone");
  }
}

}  // namespace authoring
