#include "authoring/ScriptCheck.h"

#include <algorithm>
#include <cctype>

#include "archive/LauncherFileFormat.h"
#include "authoring/FileTypes.h"
#include "instructions/LabelIndex.h"
#include "instructions/ScriptSyntax.h"
#include "instructions/VariableRef.h"
#include "launcher/ScriptVariables.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

namespace authoring {
namespace {

// Why an "@...@" in `text` is no variable; empty when each is one.
std::string findReferenceFault(const SString& text);
// The same for the name of a variable.
std::string findVariableFault(const SString& name);

class ScriptCheck {
 public:
  ScriptCheck(const Setup& setup, const SetupFile& script, std::vector<std::string>& findings);
  std::set<Command> run();

 private:
  void report(const std::string& text);
  void checkLabels();
  void checkArguments(const CommandGrammar& command, std::size_t position);
  void checkArgument(const SString& text, ArgumentKind kind);
  void checkKind(const SString& text, ArgumentKind kind);
  void reportUnknown(const std::string& word);

  void boolean(const SString& text);
  void number(const SString& text);
  void installOption(const SString& text);
  void label(const SString& text);
  bool beginsALine(const SString& target) const;
  void launchedFile(const SString& text);
  void verifiedFile(const SString& text);
  void launcherPosition(const SString& text);
  void launch(std::size_t position);
  void set(std::size_t position);
  void setValue(const VariableRef& variable, const SString& value);

  bool isNumber(const SString& text, std::int32_t& value);
  bool isJVMFile(std::int32_t id) const;

  const Setup& m_setup;
  const SetupFile& m_script;
  std::vector<std::string>& m_findings;
  const StringDeque& m_lines;
  const LabelIndex m_labels;
  long m_current = 0;
};

const StringDeque& linesOf(const TagFile& script) {
  static const StringDeque noLines;
  const StringDeque* const lines = script.getValue(tagname::kInstructions);
  return lines == nullptr ? noLines : *lines;
}

ScriptCheck::ScriptCheck(const Setup& setup, const SetupFile& script,
                         std::vector<std::string>& findings)
    : m_setup(setup),
      m_script(script),
      m_findings(findings),
      m_lines(linesOf(*script.tagFile)),
      m_labels(m_lines) {}

void ScriptCheck::report(const std::string& text) {
  m_findings.push_back(m_script.label + ": line " + std::to_string(m_current + 1) + " (" +
                       m_lines[m_current].c_str() + "): " + text);
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
      reportUnknown(word.c_str());
    }
  }
  return commands;
}

void ScriptCheck::checkArguments(const CommandGrammar& command, std::size_t position) {
  if (command.command == Command::kLaunch) {
    launch(position);
    return;
  }
  if (command.command == Command::kSet) {
    set(position);
    return;
  }
  const std::size_t count = command.arguments.size();
  for (const ArgumentGrammar& argument : command.arguments) {
    const SString text = getTokenFromString(m_lines[m_current], position);
    if (text.empty()) {
      report(std::string(command.name) + " needs " + std::to_string(count) +
             (count == 1 ? " argument" : " arguments"));
      return;
    }
    checkArgument(text, argument.kind);
  }
}

void ScriptCheck::checkArgument(const SString& text, ArgumentKind kind) {
  const std::string fault = findReferenceFault(text);
  if (fault.empty()) {
    checkKind(text, kind);
  } else {
    report(fault);
  }
}

void ScriptCheck::checkKind(const SString& text, ArgumentKind kind) {
  switch (kind) {
    case ArgumentKind::kBoolean:
      return boolean(text);
    case ArgumentKind::kNumber:
    case ArgumentKind::kSeconds:
      return number(text);
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
    case ArgumentKind::kFileName:  // any text
    case ArgumentKind::kAssignment:
      return;
  }
}

void ScriptCheck::reportUnknown(const std::string& word) {
  std::string capitals = word;
  std::transform(capitals.begin(), capitals.end(), capitals.begin(),
                 [](unsigned char byte) { return static_cast<char>(std::toupper(byte)); });
  const bool comment = word.rfind("//", 0) == 0;
  std::string hint = comment ? "; a comment needs a blank behind //" : "";
  if (findCommand(capitals) != nullptr) {
    hint = "; commands are written in capitals";
  }
  report("unknown command " + quotedText(word) + hint);
}

// --- Labels ---

// Reports labels that are never found, as an equal one stands further up. The search skips line 1.
void ScriptCheck::checkLabels() {
  std::set<std::string> seen;
  for (m_current = 1; m_current < m_lines.size(); ++m_current) {
    const SString& line = m_lines[m_current];
    if (line[0] == ':' && !seen.insert(line.c_str()).second) {
      report("a label of that name stands further up and is always taken");
    }
  }
}

bool ScriptCheck::beginsALine(const SString& target) const {
  for (long i = 0; i < m_lines.size(); ++i) {
    std::size_t position = 0;
    if (getTokenFromString(m_lines[i], position) == target) {
      return true;
    }
  }
  return false;
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
    report("the label " + name +
           " stands on the first line, where it is never found; put a line with "
           "// in front of it");
    return;
  }
  report(beginsALine(target) ? "the line of the label " + name +
                                   " holds more than the label, which is then never "
                                   "found; leave the label alone on its line"
                             : "there is no label " + name + "; write a line :" + text.c_str());
}

// --- Arguments ---

// Values that are known only at run time count as right.
bool ScriptCheck::isNumber(const SString& text, std::int32_t& value) {
  if (text.find('@') != SString::npos) {
    return false;
  }
  if (!convertToLong(text, value)) {
    report(quotedText(text) + " is no number");
    return false;
  }
  return true;
}

void ScriptCheck::boolean(const SString& text) {
  std::int32_t value;
  if (isNumber(text, value) && value != 0 && value != 1) {
    report(quotedText(text) + " must be 0 or 1");
  }
}

void ScriptCheck::number(const SString& text) {
  std::int32_t value;
  isNumber(text, value);
}

void ScriptCheck::installOption(const SString& text) {
  std::int32_t value;
  if (isNumber(text, value) && (value < 0 || value > 2)) {
    report(quotedText(text) + " must be 0, 1 or 2");
  }
}

bool ScriptCheck::isJVMFile(std::int32_t id) const {
  const auto file = std::find_if(m_setup.files.begin(), m_setup.files.end(),
                                 [id](const SetupFile& f) { return f.id == id; });
  return file != m_setup.files.end() && file->type == FILE_TYPE_JVM;
}

// A negative number counts as intended: a way to end with status -1.
void ScriptCheck::launchedFile(const SString& text) {
  std::int32_t id;
  if (isNumber(text, id) && id >= 0 && !isJVMFile(id)) {
    report("no jvm file has the number " + std::to_string(id) + "; ILAUNCH does nothing then");
  }
}

void ScriptCheck::verifiedFile(const SString& text) {
  std::int32_t id;
  if (isNumber(text, id) && !isJVMFile(id)) {
    report("no jvm file has the number " + std::to_string(id) + "; VERIFY is an error then");
  }
}

void ScriptCheck::launcherPosition(const SString& text) {
  std::int32_t position;
  if (!isNumber(text, position)) {
    return;
  }
  const bool exists = position >= 0 && static_cast<std::size_t>(position) < m_setup.files.size();
  if (!exists || m_setup.files[static_cast<std::size_t>(position)].type != FILE_TYPE_LAUNCHER) {
    report("position " + std::to_string(position) +
           " of the file index holds no launcher; positions "
           "count from 0 and are not the files' numbers");
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

void ScriptCheck::launch(std::size_t position) {
  SString file;
  const bool isClosed = readArgument(m_lines[m_current], position, file);
  const SString seconds = getTokenFromString(m_lines[m_current], position);
  if (!isClosed || seconds.empty() || !unquote(file)) {
    report(
        "LAUNCH needs the jvm file's name and, behind it on the line, the seconds, as in LAUNCH "
        "@S2@ 1");
    return;
  }
  if (file.empty()) {
    report("the jvm file's name is empty");
  }
  checkArgument(file, ArgumentKind::kFileName);
  checkArgument(seconds, ArgumentKind::kSeconds);
}

void ScriptCheck::set(std::size_t position) {
  const auto assignment = splitAssignment(m_lines[m_current].substr(position).view());
  if (!assignment) {
    report("SET needs a variable, = and a value");
    return;
  }
  const std::string fault = findVariableFault(assignment->name);
  if (!fault.empty()) {
    report(fault);
    return;
  }
  VariableRef variable;
  variable.init(assignment->name, "");
  setValue(variable, assignment->value);
}

void ScriptCheck::setValue(const VariableRef& variable, const SString& value) {
  const bool inQuotes = value[0] == '"';
  SString stored = value;
  if (!unquote(stored)) {
    report("the text lacks its closing quote");
    return;
  }
  if (!inQuotes && stored != value) {
    report("only the first word of the value is stored; put it into double quotes");
  }
  const std::string fault = findReferenceFault(stored);
  std::int32_t number;
  if (!fault.empty()) {
    report(fault);
  } else if (inQuotes && stored.empty()) {
    report("an empty text in quotes is an error; leave out the quotes");
  } else if (variable.isNumericVariable()) {
    isNumber(stored, number);
  }
}

// --- Variables ---

std::string findVariableFault(const SString& name) {
  try {
    VariableRef().init(name, "");
    return "";
  } catch (const LauncherException&) {
    return quotedText(name) + " is no variable; there are N1 to N" +
           std::to_string(kNumericVariables) + " and S1 to S" + std::to_string(kStringVariables);
  }
}

std::string findReferenceFault(const SString& text) {
  for (Reference reference = findReference(text, 0); reference.kind != Reference::kNone;
       reference = findReference(text, reference.end + 1)) {
    if (reference.kind == Reference::kUnclosed) {
      return "the last @ lacks its second one; a single @ is written @@";
    }
    const std::string fault =
        reference.kind == Reference::kVariable ? findVariableFault(reference.name(text)) : "";
    if (!fault.empty()) {
      return fault;
    }
  }
  return "";
}

}  // namespace

std::set<Command> checkScript(const Setup& setup, const SetupFile& script,
                              std::vector<std::string>& findings) {
  return ScriptCheck(setup, script, findings).run();
}

}  // namespace authoring
