#include "authoring/ScriptCheck.h"

#include <algorithm>
#include <cctype>

#include "archive/LauncherFileFormat.h"
#include "launcher/Launcher.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

namespace authoring {
namespace {

constexpr const char* kComment = "//";

std::string quoted(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

// What makes "@...@" in `text` no variable, else empty.
std::string findReferenceFault(const SString& text);
// The same for the name of a variable.
std::string findVariableFault(const SString& name);

class ScriptCheck {
 public:
  ScriptCheck(const Setup& setup, const SetupFile& script, std::vector<std::string>& findings);
  std::set<std::string> run();

 private:
  using Argument = void (ScriptCheck::*)(const SString&);
  struct CommandRow {
    const char* word;
    void (ScriptCheck::*whole)(std::size_t);  // reads the rest of the line itself; else null
    std::vector<Argument> arguments;
  };
  static const CommandRow kCommands[];

  void find(const std::string& text);
  void checkLabels();
  void checkLine();
  void checkArguments(const CommandRow& row, std::size_t position);
  void checkArgument(const SString& text, Argument check);
  void reportUnknown(const std::string& word);

  void anyText(const SString&) {}
  void boolean(const SString& text);
  void number(const SString& text);
  void installOption(const SString& text);
  void label(const SString& text);
  void launchedFile(const SString& text);
  void verifiedFile(const SString& text);
  void launcherPosition(const SString& text);
  void launch(std::size_t position);
  void set(std::size_t position);
  void setValue(const SString& name, const SString& value);

  bool isNumber(const SString& text, std::int32_t& value);
  bool isJVMFile(std::int32_t id) const;

  const Setup& m_setup;
  const SetupFile& m_script;
  std::vector<std::string>& m_findings;
  std::vector<SString> m_lines;
  std::size_t m_current = 0;
};

const ScriptCheck::CommandRow ScriptCheck::kCommands[] = {
    {"FIND_JVM", nullptr, {&ScriptCheck::boolean, &ScriptCheck::boolean}},
    {"GOTO", nullptr, {&ScriptCheck::label}},
    {"ILAUNCH", nullptr, {&ScriptCheck::launchedFile, &ScriptCheck::number}},
    {"INITIALIZE_UI", nullptr, {}},
    {"INSTALL_JVM", nullptr, {&ScriptCheck::installOption}},
    {"JMP0", nullptr, {&ScriptCheck::number, &ScriptCheck::label}},
    {"LAUNCH", &ScriptCheck::launch, {}},
    {"SET", &ScriptCheck::set, {}},
    {"VERIFY", nullptr, {&ScriptCheck::boolean, &ScriptCheck::boolean, &ScriptCheck::verifiedFile}},
    {"EXECUTE_LAUNCHER", nullptr, {&ScriptCheck::launcherPosition}},
    {kComment, nullptr, {}},
};

ScriptCheck::ScriptCheck(const Setup& setup, const SetupFile& script,
                         std::vector<std::string>& findings)
    : m_setup(setup), m_script(script), m_findings(findings) {
  const long count = script.tagFile->getTagValueCount(tagname::kInstructions);
  for (long i = 0; i < count; ++i) {
    m_lines.push_back(
        script.tagFile->getTagValue(tagname::kInstructions, static_cast<unsigned long>(i)));
  }
}

void ScriptCheck::find(const std::string& text) {
  m_findings.push_back(m_script.label + ": line " + std::to_string(m_current + 1) + " (" +
                       m_lines[m_current].c_str() + "): " + text);
}

// --- Lines ---

std::set<std::string> ScriptCheck::run() {
  std::set<std::string> words;
  checkLabels();
  for (m_current = 0; m_current < m_lines.size(); ++m_current) {
    std::size_t position = 0;
    words.insert(getTokenFromString(m_lines[m_current], position).c_str());
    checkLine();
  }
  return words;
}

void ScriptCheck::checkLine() {
  std::size_t position = 0;
  const SString word = getTokenFromString(m_lines[m_current], position);
  if (word[0] == ':') {
    return;
  }
  for (const CommandRow& row : kCommands) {
    if (word != row.word) {
      continue;
    }
    if (row.whole != nullptr) {
      (this->*row.whole)(position);
    } else {
      checkArguments(row, position);
    }
    return;
  }
  reportUnknown(word.c_str());
}

void ScriptCheck::checkArguments(const CommandRow& row, std::size_t position) {
  const SString& line = m_lines[m_current];
  for (std::size_t i = 0; i < row.arguments.size(); ++i) {
    const SString argument = getTokenFromString(line, position);
    if (argument.empty()) {
      find(std::string(row.word) + " needs " + std::to_string(row.arguments.size()) +
           (row.arguments.size() == 1 ? " argument" : " arguments"));
      return;
    }
    checkArgument(argument, row.arguments[i]);
  }
}

void ScriptCheck::checkArgument(const SString& text, Argument check) {
  const std::string fault = findReferenceFault(text);
  if (fault.empty()) {
    (this->*check)(text);
  } else {
    find(fault);
  }
}

void ScriptCheck::reportUnknown(const std::string& word) {
  std::string capitals = word;
  std::transform(capitals.begin(), capitals.end(), capitals.begin(),
                 [](unsigned char byte) { return static_cast<char>(std::toupper(byte)); });
  for (const CommandRow& row : kCommands) {
    if (capitals == row.word) {
      find("unknown command " + quoted(word) + "; commands are written in capitals");
      return;
    }
  }
  const bool comment = word.rfind(kComment, 0) == 0;
  find("unknown command " + quoted(word) + (comment ? "; a comment needs a blank behind //" : ""));
}

// --- Labels ---

// A label that stands twice: the search for it begins on the second line and ends at the first.
void ScriptCheck::checkLabels() {
  std::set<std::string> seen;
  for (m_current = 1; m_current < m_lines.size(); ++m_current) {
    const SString& line = m_lines[m_current];
    if (line[0] == ':' && !seen.insert(line.c_str()).second) {
      find("a label of that name stands further up and is always taken");
    }
  }
}

void ScriptCheck::label(const SString& text) {
  if (text.find('@') != SString::npos) {
    return;
  }
  const SString target = ":" + text;
  if (std::find(m_lines.begin() + 1, m_lines.end(), target) != m_lines.end()) {
    return;
  }
  const std::string name = quoted(text);
  if (m_lines[0] == target) {
    find("the label " + name +
         " stands on the first line, where it is never found; put a line with "
         "// in front of it");
    return;
  }
  const auto isLonger = [&](const SString& line) {
    std::size_t position = 0;
    return getTokenFromString(line, position) == target;
  };
  const bool longer = std::any_of(m_lines.begin(), m_lines.end(), isLonger);
  find(longer ? "the line of the label " + name +
                    " holds more than the label, which is then never "
                    "found; leave the label alone on its line"
              : "there is no label " + name + "; write a line :" + text.c_str());
}

// --- Arguments ---

// Values that are known only at run time are taken as right.
bool ScriptCheck::isNumber(const SString& text, std::int32_t& value) {
  if (text.find('@') != SString::npos) {
    return false;
  }
  if (!convertToLong(text, value)) {
    find(quoted(text) + " is no number");
    return false;
  }
  return true;
}

void ScriptCheck::boolean(const SString& text) {
  std::int32_t value;
  if (isNumber(text, value) && value != 0 && value != 1) {
    find(quoted(text) + " must be 0 or 1");
  }
}

void ScriptCheck::number(const SString& text) {
  std::int32_t value;
  isNumber(text, value);
}

void ScriptCheck::installOption(const SString& text) {
  std::int32_t value;
  if (isNumber(text, value) && (value < 0 || value > 2)) {
    find(quoted(text) + " must be 0, 1 or 2");
  }
}

bool ScriptCheck::isJVMFile(std::int32_t id) const {
  const auto file = std::find_if(m_setup.files.begin(), m_setup.files.end(),
                                 [id](const SetupFile& f) { return f.id == id; });
  return file != m_setup.files.end() && file->type == FILE_TYPE_JVM;
}

// A negative number is a way to end with status -1, and taken as meant.
void ScriptCheck::launchedFile(const SString& text) {
  std::int32_t id;
  if (isNumber(text, id) && id >= 0 && !isJVMFile(id)) {
    find("no jvm file has the number " + std::to_string(id) + "; ILAUNCH does nothing then");
  }
}

void ScriptCheck::verifiedFile(const SString& text) {
  std::int32_t id;
  if (isNumber(text, id) && !isJVMFile(id)) {
    find("no jvm file has the number " + std::to_string(id) + "; VERIFY is an error then");
  }
}

void ScriptCheck::launcherPosition(const SString& text) {
  std::int32_t position;
  if (!isNumber(text, position)) {
    return;
  }
  const bool exists = position >= 0 && static_cast<std::size_t>(position) < m_setup.files.size();
  if (!exists || m_setup.files[static_cast<std::size_t>(position)].type != FILE_TYPE_LAUNCHER) {
    find("position " + std::to_string(position) +
         " of the file index holds no launcher; positions "
         "count from 0 and are not the files' numbers");
  }
}

// --- LAUNCH and SET ---

// Reads the first argument of the text, which may be in double quotes. Returns where it ends; npos:
// at the end of the text or not at all, and then the interpreter loses its last byte.
std::size_t readArgument(const SString& text, SString& argument) {
  const bool inQuotes = text[0] == '"';
  std::size_t position = inQuotes ? 1 : 0;
  try {
    argument = parseStringArgument(text, position, inQuotes);
    return position;
  } catch (const LauncherException&) {
    return SString::npos;
  }
}

void ScriptCheck::launch(std::size_t position) {
  const SString rest = trimmed(m_lines[m_current].substr(position));
  SString file;
  std::size_t behind = readArgument(rest, file);
  if (behind == SString::npos) {
    find(
        "LAUNCH needs the jvm file's name and, behind it on the line, the seconds, as in LAUNCH "
        "@S2@ 1");
    return;
  }
  if (file.empty()) {
    find("the jvm file's name is empty");
  }
  checkArgument(file, &ScriptCheck::anyText);
  checkArgument(getTokenFromString(rest, behind), &ScriptCheck::number);
}

void ScriptCheck::set(std::size_t position) {
  const SString rest = m_lines[m_current].substr(position);
  const std::size_t equals = rest.find('=');
  if (equals == SString::npos) {
    find("SET needs a variable, = and a value");
    return;
  }
  const SString name = trimmed(rest.substr(0, equals));
  const std::string fault = findVariableFault(name);
  if (!fault.empty()) {
    find(fault);
    return;
  }
  setValue(name, trimmed(rest.substr(equals + 1)));
}

void ScriptCheck::setValue(const SString& name, const SString& value) {
  const bool inQuotes = value[0] == '"';
  SString stored;
  try {
    std::size_t position = inQuotes ? 1 : 0;
    stored = parseStringArgument(value, position, inQuotes);
  } catch (const LauncherException&) {
    find("the text lacks its closing quote");
    return;
  }
  if (!inQuotes && stored != value) {
    find("only the first word of the value is stored; put it into double quotes");
  }
  const std::string fault = findReferenceFault(stored);
  std::int32_t number;
  if (!fault.empty()) {
    find(fault);
  } else if (inQuotes && stored.empty()) {
    find("an empty text in quotes is an error; leave out the quotes");
  } else if (std::toupper(name[0]) == 'N') {
    isNumber(stored, number);
  }
}

// --- Variables ---

std::string findVariableFault(const SString& name) {
  std::int32_t number = 0;
  const bool numbered = convertToLong(name.substr(1), number);
  const int type = std::toupper(static_cast<unsigned char>(name[0]));
  const bool valid = (type == 'N' && Launcher::isValidLongVariable(number)) ||
                     (type == 'S' && Launcher::isValidStringVariable(number));
  return numbered && valid ? ""
                           : quoted(name) + " is no variable; there are N1 to N5 and S1 to S10";
}

std::string findReferenceFault(const SString& text) {
  std::size_t begin = text.find('@');
  while (begin != SString::npos) {
    const std::size_t end = text.find('@', begin + 1);
    if (end == SString::npos) {
      return "the last @ lacks its second one; a single @ is written @@";
    }
    const std::string fault =
        end == begin + 1 ? "" : findVariableFault(text.substr(begin + 1, end - begin - 1));
    if (!fault.empty()) {
      return fault;
    }
    begin = text.find('@', end + 1);
  }
  return "";
}

}  // namespace

std::set<std::string> checkScript(const Setup& setup, const SetupFile& script,
                                  std::vector<std::string>& findings) {
  return ScriptCheck(setup, script, findings).run();
}

}  // namespace authoring
