#include "authoring/ScriptCheck.h"

#include <algorithm>
#include <unordered_set>

#include "archive/LauncherFileFormat.h"
#include "authoring/FileTypes.h"
#include "authoring/ScriptAdvice.h"
#include "authoring/ScriptReferences.h"
#include "authoring/TextPatterns.h"
#include "instructions/LabelIndex.h"
#include "instructions/ScriptSyntax.h"
#include "instructions/VariableRef.h"
#include "tagfile/Quotes.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

namespace authoring {
namespace {

constexpr const char* kScriptEnds = "the script ends with an error here";
constexpr const char* kWriteJVMNumber = "write the number of a jvm file";
constexpr const char* kWriteBoolean = "write 1 or 0";
constexpr const char* kWriteNumber = "write a number";

class ScriptCheck {
 public:
  ScriptCheck(const Setup& setup, const SetupFile& script, Findings& findings);
  std::set<Command> run();

 private:
  void error(const std::string& what, const std::string& advice);
  void warn(const std::string& what, const std::string& why, const std::string& advice);
  void checkLabels();
  void checkArguments(const CommandGrammar& command, std::size_t position);
  void checkRest(const CommandGrammar& command, std::size_t position);
  void checkArgument(const SString& text, ArgumentKind kind);
  void checkKind(const SString& text, ArgumentKind kind);

  void boolean(const SString& text);
  void number(const SString& text, const char* advice);
  void installOption(const SString& text);
  void label(const SString& text);
  bool isLabelWithMore(const SString& label);
  void launchedFile(const SString& text);
  void verifiedFile(const SString& text);
  void launcherPosition(const SString& text);
  void launch(const CommandGrammar& command, std::size_t position);
  void launchedName(const SString& name);
  void set(std::size_t position);
  void setValue(const VariableRef& variable, const SString& value);
  void checkLostText(const VariableRef& variable, const SString& value, const SString& stored);

  bool isNumber(const SString& text, std::int32_t& value, const char* advice);
  bool isJVMFile(std::int32_t id) const;

  const Setup& m_setup;
  const SetupFile& m_script;
  Findings& m_findings;
  const StringDeque& m_lines;
  const LabelIndex m_labels;
  std::unordered_set<std::string> m_labelWords;  // the first one of each label, once somebody asks
  long m_current = 0;
};

const StringDeque& linesOf(const TagFile& script) {
  static const StringDeque noLines;
  const StringDeque* const lines = script.getValue(tagname::kInstructions);
  return lines == nullptr ? noLines : *lines;
}

ScriptCheck::ScriptCheck(const Setup& setup, const SetupFile& script, Findings& findings)
    : m_setup(setup),
      m_script(script),
      m_findings(findings),
      m_lines(linesOf(*script.tagFile)),
      m_labels(m_lines) {}

// What ends the script.
void ScriptCheck::error(const std::string& what, const std::string& advice) {
  m_findings.error(m_script.at(tagname::kInstructions, m_current), what, kScriptEnds, advice);
}

void ScriptCheck::warn(const std::string& what, const std::string& why, const std::string& advice) {
  m_findings.warning(m_script.at(tagname::kInstructions, m_current), what, why, advice);
}

// --- Lines ---

std::set<Command> ScriptCheck::run() {
  std::set<Command> commands;
  checkLabels();
  for (m_current = 0; m_current < m_lines.size(); ++m_current) {
    std::size_t position = 0;
    const SString word = getTokenFromString(m_lines[m_current], position);
    if (word[0] == ':') {
      continue;
    }
    if (const CommandGrammar* const command = findCommand(word)) {
      commands.insert(command->command);
      checkArguments(*command, position);
    } else {
      error("unknown command " + quotedText(word), adviceForCommand(word.c_str()));
    }
  }
  return commands;
}

void ScriptCheck::checkArguments(const CommandGrammar& command, std::size_t position) {
  if (command.command == Command::kLaunch) {
    launch(command, position);
    return;
  }
  if (command.command == Command::kSet) {
    set(position);
    return;
  }
  const std::size_t findings = m_findings.all().size();
  const std::size_t count = command.arguments.size();
  for (const ArgumentGrammar& argument : command.arguments) {
    const SString text = getTokenFromString(m_lines[m_current], position);
    if (text.empty()) {
      error(std::string(command.name) + " needs " + std::to_string(count) +
                (count == 1 ? " argument" : " arguments"),
            "write " + exampleOf(command));
      return;
    }
    checkArgument(text, argument.kind);
  }
  if (command.command != Command::kComment && m_findings.all().size() == findings) {
    checkRest(command, position);
  }
}

// Words behind the last argument may be a comment, but hardly a number or a variable.
void ScriptCheck::checkRest(const CommandGrammar& command, std::size_t position) {
  const SString rest = getTokenFromString(m_lines[m_current], position);
  if (isDigits(rest.view()) || (rest[0] == '@' && rest.back() == '@')) {
    warn(quotedText(rest) + " is one argument too many for " + std::string(command.name),
         "nobody reads it", "delete it");
  }
}

void ScriptCheck::checkArgument(const SString& text, ArgumentKind kind) {
  const Fault fault = findReferenceFault(text);
  if (fault.what.empty()) {
    checkKind(text, kind);
  } else {
    error(fault.what, fault.advice);
  }
}

void ScriptCheck::checkKind(const SString& text, ArgumentKind kind) {
  switch (kind) {
    case ArgumentKind::kBoolean:
      return boolean(text);
    case ArgumentKind::kNumber:
    case ArgumentKind::kSeconds:
      return number(text, kWriteNumber);
    case ArgumentKind::kInstallOption:
      return installOption(text);
    case ArgumentKind::kLaunchedFile:
      return launchedFile(text);
    case ArgumentKind::kVerifiedFile:
      return verifiedFile(text);
    case ArgumentKind::kLauncherPosition:
      return launcherPosition(text);
    case ArgumentKind::kLabel:
      return label(text);
    case ArgumentKind::kFileName:
      return launchedName(text);
    case ArgumentKind::kAssignment:
      return;
  }
}

// --- Labels ---

// Reports labels that are never found, as an equal one stands further up. The search skips line 1.
void ScriptCheck::checkLabels() {
  std::set<std::string> seen;
  for (m_current = 1; m_current < m_lines.size(); ++m_current) {
    const SString& line = m_lines[m_current];
    if (line[0] == ':' && !seen.insert(line.c_str()).second) {
      warn("the label " + quotedText(line.c_str()) + " stands further up, too",
           "the first one is always taken", "give this one another name");
    }
  }
}

// ":end // done", ": end"
bool ScriptCheck::isLabelWithMore(const SString& label) {
  if (m_labelWords.empty()) {
    for (long i = 0; i < m_lines.size(); ++i) {
      if (m_lines[i][0] == ':') {
        m_labelWords.emplace(firstWord(withoutBlanks(m_lines[i].view().substr(1))));
      }
    }
  }
  return m_labelWords.count(std::string(label.view())) != 0;
}

void ScriptCheck::label(const SString& text) {
  if (text.find('@') != SString::npos) {
    return;
  }
  const SString target = ":" + text;
  if (m_labels.find(target) != LabelIndex::kNone) {
    return;
  }
  const std::string name = quotedText(text);
  if (m_lines[0] == target) {
    error("the label " + name + " stands on the script's first line, where it is never found",
          "put a line with // in front of it");
  } else if (isLabelWithMore(text)) {
    error("the line of the label " + name + " holds more than the label, which is never found then",
          "write " + std::string(target.view()) + " and nothing else on that line");
  } else {
    error("there is no label " + name, adviceForLabel(text, m_lines));
  }
}

// --- Arguments ---

// Values that are known only at run time count as right.
bool ScriptCheck::isNumber(const SString& text, std::int32_t& value, const char* advice) {
  if (text.find('@') != SString::npos) {
    return false;
  }
  if (!convertToLong(text, value)) {
    const std::string word(text.view());
    error(quotedText(word) + " is no number",
          isBareVariable(word) ? "write @" + word + "@" : advice);
    return false;
  }
  return true;
}

void ScriptCheck::boolean(const SString& text) {
  std::int32_t value;
  if (isNumber(text, value, kWriteBoolean) && value != 0 && value != 1) {
    error(quotedText(text) + " must be 0 or 1", kWriteBoolean);
  }
}

void ScriptCheck::number(const SString& text, const char* advice) {
  std::int32_t value;
  isNumber(text, value, advice);
}

void ScriptCheck::installOption(const SString& text) {
  std::int32_t value;
  const char* const advice =
      "write 0 for a hidden installation, 1 for a visible one, 2 to let the user name a folder";
  if (isNumber(text, value, advice) && (value < 0 || value > 2)) {
    error(quotedText(text) + " must be 0, 1 or 2", advice);
  }
}

bool ScriptCheck::isJVMFile(std::int32_t id) const {
  const SetupFile* const file = m_setup.findId(id);
  return file != nullptr && file->type == FILE_TYPE_JVM;
}

// A negative number counts as intended: a way to end with status -1.
void ScriptCheck::launchedFile(const SString& text) {
  std::int32_t id;
  if (isNumber(text, id, kWriteJVMNumber) && id >= 0 && !isJVMFile(id)) {
    m_findings.error(m_script.at(tagname::kInstructions, m_current),
                     "no jvm file has the number " + std::to_string(id), "ILAUNCH does nothing",
                     "write the number of a jvm file, or -1 to end with status -1");
  }
}

void ScriptCheck::verifiedFile(const SString& text) {
  std::int32_t id;
  if (isNumber(text, id, kWriteJVMNumber) && !isJVMFile(id)) {
    error("no jvm file has the number " + std::to_string(id), kWriteJVMNumber);
  }
}

void ScriptCheck::launcherPosition(const SString& text) {
  std::int32_t position;
  if (!isNumber(text, position, "write the launcher's position, which counts from 0")) {
    return;
  }
  const bool exists = position >= 0 && static_cast<std::size_t>(position) < m_setup.files.size();
  if (!exists || m_setup.files[static_cast<std::size_t>(position)].type != FILE_TYPE_LAUNCHER) {
    error("position " + std::to_string(position) + " of the file index holds no launcher",
          "write the launcher's position, which counts from 0 and is not its number");
  }
}

// --- LAUNCH and SET ---

// False when the text lacks its closing quote.
bool unquote(SString& text) {
  try {
    text = unquotedArgument(text);
    return true;
  } catch (const LauncherException&) {
    return false;
  }
}

void ScriptCheck::launch(const CommandGrammar& command, std::size_t position) {
  SString file;
  const bool isClosed = readArgument(m_lines[m_current], position, file);
  const SString seconds = getTokenFromString(m_lines[m_current], position);
  if (!isClosed || seconds.empty() || !unquote(file)) {
    error("LAUNCH needs the jvm file's name and, behind it on the line, the seconds",
          "write " + exampleOf(command));
    return;
  }
  if (file.empty()) {
    error("the jvm file's name is empty", "write " + exampleOf(command));
  }
  checkArgument(file, ArgumentKind::kFileName);
  checkArgument(seconds, ArgumentKind::kSeconds);
  checkRest(command, position);
}

// LAUNCH reads a file of the user's disk.
void ScriptCheck::launchedName(const SString& name) {
  const std::string word(name.view());
  const auto isStored = [&word](const SetupFile& file) {
    return file.type == FILE_TYPE_JVM && file.name == word;
  };
  const auto stored = std::find_if(m_setup.files.begin(), m_setup.files.end(), isStored);
  if (isBareVariable(word)) {
    error("LAUNCH looks for a file " + word + " in the current folder", "write @" + word + "@");
  } else if (stored != m_setup.files.end()) {
    error("LAUNCH looks for a file " + word + " in the current folder, not in the setup",
          "write ILAUNCH " + std::to_string(stored->id) + " and the seconds");
  }
}

void ScriptCheck::set(std::size_t position) {
  const auto assignment = splitAssignment(m_lines[m_current].substr(position).view());
  if (!assignment) {
    error("SET needs a variable, = and a value", "write SET N2 = 1");
    return;
  }
  const Fault fault = findVariableFault(assignment->name);
  if (!fault.what.empty()) {
    error(fault.what, fault.advice);
    return;
  }
  VariableRef variable;
  variable.init(assignment->name, "");
  setValue(variable, assignment->value);
}

// What stands behind the part of a value that is stored. It may be a comment.
void ScriptCheck::checkLostText(const VariableRef& variable, const SString& value,
                                const SString& stored) {
  const bool inQuotes = value[0] == kQuote;
  const std::string lost = inQuotes
                               ? textBehindQuote(value.view())
                               : std::string(withoutBlanks(value.view().substr(stored.size())));
  if (variable.isNumericVariable() && looksCalculated(inQuotes ? stored.view() : value.view())) {
    warn("nothing is calculated", "the number in front of the sign is stored",
         "write the number that is meant");
  } else if (lost.empty() || looksLikeAComment(lost)) {
    return;
  } else if (inQuotes) {
    warn("text behind the closing quote is lost: " + quotedText(lost),
         "a value that begins with a quote ends at the next single one",
         "put all of the value into quotes and double those inside");
  } else {
    warn("the value has several words without quotes", "only the first is stored",
         "put the value into double quotes");
  }
}

void ScriptCheck::setValue(const VariableRef& variable, const SString& value) {
  const bool inQuotes = value[0] == kQuote;
  SString stored = value;
  if (!unquote(stored)) {
    error("the text lacks its closing quote", "write a double quote at its end");
    return;
  }
  checkLostText(variable, value, stored);
  const Fault fault = findReferenceFault(stored);
  std::int32_t number;
  if (!fault.what.empty()) {
    error(fault.what, fault.advice);
  } else if (inQuotes && stored.empty()) {
    error("an empty text stands in quotes", "leave out the quotes");
  } else if (variable.isNumericVariable()) {
    isNumber(stored, number, kWriteNumber);
  }
}

}  // namespace

std::set<Command> checkScript(const Setup& setup, const SetupFile& script, Findings& findings) {
  return ScriptCheck(setup, script, findings).run();
}

}  // namespace authoring
