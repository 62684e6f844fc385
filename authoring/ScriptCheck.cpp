#include "authoring/ScriptCheck.h"

#include <algorithm>
#include <cctype>
#include <unordered_set>

#include "archive/LauncherFileFormat.h"
#include "authoring/FileTypes.h"
#include "authoring/NearestName.h"
#include "authoring/TextPatterns.h"
#include "instructions/LabelIndex.h"
#include "instructions/ScriptSyntax.h"
#include "instructions/VariableRef.h"
#include "launcher/ScriptVariables.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

namespace authoring {
namespace {

// In which a misspelt one is looked for.
constexpr std::size_t kMostLabels = 100;

constexpr const char* kScriptEnds = "the script ends with an error here";

struct Fault {
  std::string what;  // empty: none
  std::string advice;
};

// Why an "@...@" in `text` is no variable.
Fault findReferenceFault(const SString& text);
// The same for the name of a variable.
Fault findVariableFault(const SString& name);

class ScriptCheck {
 public:
  ScriptCheck(const Setup& setup, const SetupFile& script, Findings& findings);
  std::set<Command> run();

 private:
  void error(const std::string& what, const std::string& advice);
  void warn(const std::string& what, const std::string& why, const std::string& advice);
  void checkLabels();
  void checkArguments(const CommandGrammar& command, std::size_t position);
  void checkArgument(const SString& text, ArgumentKind kind);
  void checkKind(const SString& text, ArgumentKind kind);
  void reportUnknown(const std::string& word);

  void boolean(const SString& text);
  void number(const SString& text);
  void installOption(const SString& text);
  void label(const SString& text);
  std::string adviceForLabel(const SString& text) const;
  bool beginsALine(const SString& target);
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
  Findings& m_findings;
  const StringDeque& m_lines;
  const LabelIndex m_labels;
  std::unordered_set<std::string> m_firstWords;  // of all lines, once somebody asks
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
      error(std::string(command.name) + " needs " + std::to_string(count) +
                (count == 1 ? " argument" : " arguments"),
            "");
      return;
    }
    checkArgument(text, argument.kind);
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
  std::string advice = didYouMean(word, kCommandGrammar);
  if (looksLikeAComment(word)) {
    advice = "a comment begins with // and a blank";
  } else if (findCommand(capitals) != nullptr) {
    advice = "write " + capitals;
  }
  error("unknown command " + quotedText(word), advice);
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

bool ScriptCheck::beginsALine(const SString& target) {
  if (m_firstWords.empty()) {
    for (long i = 0; i < m_lines.size(); ++i) {
      std::size_t position = 0;
      m_firstWords.emplace(getTokenFromString(m_lines[i], position).view());
    }
  }
  return m_firstWords.count(std::string(target.view())) != 0;
}

std::string ScriptCheck::adviceForLabel(const SString& text) const {
  std::vector<std::string_view> labels;
  for (long i = 1; i < m_lines.size() && labels.size() < kMostLabels; ++i) {
    if (m_lines[i][0] == ':') {
      labels.push_back(m_lines[i].view().substr(1));
    }
  }
  const std::string_view near = nearestName(text, labels);
  return near.size() < 3 ? "write a line :" + std::string(text.view())
                         : "did you mean " + std::string(near) + "?";
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
  } else if (beginsALine(target)) {
    error("the line of the label " + name + " holds more than the label, which is never found then",
          "leave the label alone on its line");
  } else {
    error("there is no label " + name, adviceForLabel(text));
  }
}

// --- Arguments ---

// Values that are known only at run time count as right.
bool ScriptCheck::isNumber(const SString& text, std::int32_t& value) {
  if (text.find('@') != SString::npos) {
    return false;
  }
  if (!convertToLong(text, value)) {
    error(quotedText(text) + " is no number", "");
    return false;
  }
  return true;
}

void ScriptCheck::boolean(const SString& text) {
  std::int32_t value;
  if (isNumber(text, value) && value != 0 && value != 1) {
    error(quotedText(text) + " must be 0 or 1", "");
  }
}

void ScriptCheck::number(const SString& text) {
  std::int32_t value;
  isNumber(text, value);
}

void ScriptCheck::installOption(const SString& text) {
  std::int32_t value;
  if (isNumber(text, value) && (value < 0 || value > 2)) {
    error(quotedText(text) + " must be 0, 1 or 2", "");
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
    m_findings.error(m_script.at(tagname::kInstructions, m_current),
                     "no jvm file has the number " + std::to_string(id), "ILAUNCH does nothing",
                     "write the number of a jvm file, or -1 to end with status -1");
  }
}

void ScriptCheck::verifiedFile(const SString& text) {
  std::int32_t id;
  if (isNumber(text, id) && !isJVMFile(id)) {
    error("no jvm file has the number " + std::to_string(id), "write the number of a jvm file");
  }
}

void ScriptCheck::launcherPosition(const SString& text) {
  std::int32_t position;
  if (!isNumber(text, position)) {
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

void ScriptCheck::launch(std::size_t position) {
  SString file;
  const bool isClosed = readArgument(m_lines[m_current], position, file);
  const SString seconds = getTokenFromString(m_lines[m_current], position);
  if (!isClosed || seconds.empty() || !unquote(file)) {
    error("LAUNCH needs the jvm file's name and, behind it on the line, the seconds",
          "write LAUNCH @S2@ 1");
    return;
  }
  if (file.empty()) {
    error("the jvm file's name is empty", "");
  }
  checkArgument(file, ArgumentKind::kFileName);
  checkArgument(seconds, ArgumentKind::kSeconds);
}

void ScriptCheck::set(std::size_t position) {
  const auto assignment = splitAssignment(m_lines[m_current].substr(position).view());
  if (!assignment) {
    error("SET needs a variable, = and a value", "");
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

void ScriptCheck::setValue(const VariableRef& variable, const SString& value) {
  const bool inQuotes = value[0] == '"';
  SString stored = value;
  if (!unquote(stored)) {
    error("the text lacks its closing quote", "");
    return;
  }
  if (!inQuotes && stored != value) {
    warn("the value has several words without quotes", "only the first is stored",
         "put the value into double quotes");
  }
  const Fault fault = findReferenceFault(stored);
  std::int32_t number;
  if (!fault.what.empty()) {
    error(fault.what, fault.advice);
  } else if (inQuotes && stored.empty()) {
    error("an empty text stands in quotes", "leave out the quotes");
  } else if (variable.isNumericVariable()) {
    isNumber(stored, number);
  }
}

// --- Variables ---

Fault findVariableFault(const SString& name) {
  try {
    VariableRef().init(name, "");
    return {};
  } catch (const LauncherException&) {
    return {quotedText(name) + " is no variable",
            "write N1 to N" + std::to_string(kNumericVariables) + " or S1 to S" +
                std::to_string(kStringVariables)};
  }
}

Fault findReferenceFault(const SString& text) {
  for (Reference reference = findReference(text, 0); reference.kind != Reference::kNone;
       reference = findReference(text, reference.end + 1)) {
    if (reference.kind == Reference::kUnclosed) {
      return {"the last @ lacks its second one", "write a single @ as @@"};
    }
    const Fault fault =
        reference.kind == Reference::kVariable ? findVariableFault(reference.name(text)) : Fault();
    if (!fault.what.empty()) {
      return fault;
    }
  }
  return {};
}

}  // namespace

std::set<Command> checkScript(const Setup& setup, const SetupFile& script, Findings& findings) {
  return ScriptCheck(setup, script, findings).run();
}

}  // namespace authoring
