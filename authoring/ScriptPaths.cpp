#include "authoring/ScriptPaths.h"

#include <algorithm>

#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

namespace authoring {
namespace {

// More than any script that people write; few enough to look at in no time.
constexpr std::size_t kMostSteps = 10000;
constexpr std::size_t kLongestLaunch = 4096;
constexpr std::size_t kMostJumps = 100000;

// The word at `index` behind the command, from 0.
SString wordAt(const SString& line, std::size_t index) {
  std::size_t position = 0;
  SString word = getTokenFromString(line, position);
  for (std::size_t i = 0; i <= index; ++i) {
    word = getTokenFromString(line, position);
  }
  return word;
}

// True when an "@" lacks its second one.
bool isBroken(const SString& text) {
  for (Reference reference = findReference(text, 0); reference.kind != Reference::kNone;
       reference = findReference(text, reference.end + 1)) {
    if (reference.kind == Reference::kUnclosed) {
      return true;
    }
  }
  return false;
}

bool hasPattern(const SString& line, std::string_view begin, std::string_view end) {
  return line.size() >= begin.size() + end.size() && line.startsWith(begin) && line.endsWith(end);
}

}  // namespace

ScriptPaths::ScriptPaths(const StringDeque& lines) : m_lines(lines), m_labels(lines) {
  for (long i = 0; i < lines.size(); ++i) {
    std::size_t position = 0;
    m_commands.push_back(findCommand(getTokenFromString(lines[i], position)));
    if (i > 0 && lines[i][0] == ':') {
      m_labelLines.push_back(i);  // on the first line it is never found
    }
  }
  m_steps.push_back({ScriptState(), {}});
  m_indexOf.emplace(m_steps[0].state.key(), 0);
  for (std::size_t i = 0; i < m_steps.size() && m_isComplete; ++i) {
    follow(i);
  }
}

KnownText ScriptPaths::launchedFile(const ScriptState& state, const SString& line) {
  std::size_t position = 0;
  (void)getTokenFromString(line, position);
  SString file;
  try {
    if (line.size() < kLongestLaunch && readArgument(line, position, file)) {
      return state.argument(unquotedArgument(file));
    }
  } catch (const LauncherException&) {
    // ScriptCheck tells
  }
  return {KnownText::kUnknown, "", state.line};
}

std::vector<SString> ScriptPaths::wordsAt(long line) const {
  std::vector<SString> words;
  std::size_t position = 0;
  (void)getTokenFromString(m_lines[line], position);
  for (const ArgumentGrammar& argument : commandAt(line)->arguments) {
    SString word;
    if (argument.kind == ArgumentKind::kAssignment) {
      break;
    }
    if (argument.kind == ArgumentKind::kFileName) {
      SString file;
      (void)readArgument(m_lines[line], position, file);
    } else {
      word = getTokenFromString(m_lines[line], position);
      if (word.empty()) {
        break;
      }
    }
    words.push_back(word);
  }
  return words;
}

std::optional<Assignment> ScriptPaths::assignmentAt(long line) const {
  const std::string_view text = m_lines[line].view();
  std::size_t position = 0;
  (void)getTokenFromString(m_lines[line], position);
  if (commandAt(line) == nullptr || commandAt(line)->command != Command::kSet) {
    return std::nullopt;
  }
  try {
    auto assignment = splitAssignment(text.substr(std::min(position, text.size())));
    if (assignment) {
      assignment->value = unquotedArgument(assignment->value);
    }
    return assignment;
  } catch (const LauncherException&) {
    return std::nullopt;  // ScriptCheck tells
  }
}

void ScriptPaths::add(std::size_t from, ScriptState state, bool isFound) {
  const auto [entry, isNew] = m_indexOf.try_emplace(state.key(), m_steps.size());
  const std::size_t index = entry->second;
  if (isNew) {
    m_steps.push_back({std::move(state), {}});
  }
  m_isComplete = m_steps.size() < kMostSteps && ++m_jumps < kMostJumps;
  m_steps[from].next.push_back({index, isFound});
}

void ScriptPaths::jump(std::size_t from, const ScriptState& state, const SString& label) {
  ScriptState target = state;
  if (isBroken(label)) {
    m_hasBrokenLines = true;
  } else if (const auto name = state.evaluate(label)) {
    const std::uint32_t line = m_labels.find(SString(":" + *name));
    m_hasBrokenLines = m_hasBrokenLines || line == LabelIndex::kNone;
    target.line = static_cast<long>(line) + 1;
    if (line != LabelIndex::kNone) {
      add(from, target);
    }
  } else {
    const std::string begin = ":" + std::string(label.substr(0, label.find('@')).view());
    const SString end = label.substr(label.rfind('@') + 1);
    for (const long i : m_labelLines) {
      m_isComplete = m_isComplete && ++m_jumps < kMostJumps;
      if (m_isComplete && hasPattern(m_lines[i], begin, end)) {
        target.line = i + 1;
        add(from, target);
      }
    }
  }
}

// JMP0
void ScriptPaths::branch(std::size_t from, const ScriptState& next, const SString& value,
                         const SString& label) {
  const auto text = m_steps[from].state.evaluate(value);
  std::int32_t number = 0;
  if (isBroken(value) || (text && !convertToLong(text->c_str(), number))) {
    m_hasBrokenLines = true;
    return;
  }
  if (!text || number != 0) {
    add(from, next);
  }
  if (!text || number == 0) {
    jump(from, m_steps[from].state, label);
  }
}

void ScriptPaths::search(std::size_t from, const ScriptState& next, Command command, bool isShown) {
  ScriptState found = next;
  const long line = next.line - 1;
  found.silentSearch = -1;
  found.setNumber(resultvariable::kFlag, 1);
  found.text(resultvariable::kHome) = {KnownText::kHome, "", line};
  ScriptState failed = next;
  failed.silentSearch = isShown ? -1 : line;
  failed.setNumber(resultvariable::kFlag, 0);
  if (command == Command::kFindJVM) {
    found.text(resultvariable::kJVMFile) = {KnownText::kJVMFile, "", line};
    failed.text(resultvariable::kHome) = {KnownText::kText, "", line};
    failed.text(resultvariable::kJVMFile) = {KnownText::kText, "", line};
  }
  add(from, found, true);
  add(from, failed);
}

void ScriptPaths::install(std::size_t from, const ScriptState& next, bool isShown) {
  ScriptState done = next;
  const long line = next.line - 1;
  done.silentSearch = -1;
  done.setNumber(resultvariable::kFlag, 1);
  done.text(resultvariable::kInstalledJVMFile) = {KnownText::kJVMFile, "", line};
  ScriptState failed = done;
  failed.silentSearch = isShown ? -1 : line;
  failed.setNumber(resultvariable::kFlag, 0);
  failed.text(resultvariable::kInstalledJVMFile) = {KnownText::kText, "", line};
  add(from, done);
  add(from, failed);
}

// A label; or a misspelt command, which may be meant to set anything.
void ScriptPaths::skip(std::size_t from, ScriptState next) {
  if (m_lines[next.line - 1][0] != ':') {
    m_hasBrokenLines = true;
    next.silentSearch = -1;
    next.setNumber(resultvariable::kFlag, std::nullopt);
    next.text(resultvariable::kHome).kind = KnownText::kUnknown;
    next.text(resultvariable::kJVMFile).kind = KnownText::kUnknown;
  }
  add(from, next);
}

void ScriptPaths::follow(std::size_t index) {
  const ScriptState state = m_steps[index].state;
  if (state.line >= m_lines.size()) {
    return;
  }
  const SString& line = m_lines[state.line];
  const CommandGrammar* const command = commandAt(state.line);
  ScriptState next = state;
  ++next.line;
  if (command == nullptr) {
    return skip(index, next);
  }
  switch (command->command) {
    case Command::kFindJVM:
    case Command::kVerify:
      return search(index, next, command->command, state.evaluate(wordAt(line, 1)) != "0");
    case Command::kInstallJVM:
      // The user who was asked for a folder knows that he gave none.
      return install(index, next, state.evaluate(wordAt(line, 0)) == "2");
    case Command::kGoto:
      return jump(index, state, wordAt(line, 0));
    case Command::kJmp0:
      return branch(index, next, wordAt(line, 0), wordAt(line, 1));
    case Command::kSet:
      if (const auto assignment = assignmentAt(state.line)) {
        next.assign(assignment->name, state.argument(assignment->value));
      }
      return add(index, next);
    case Command::kLaunch:
    case Command::kILaunch:
    case Command::kExecuteLauncher:
      next.silentSearch = -1;
      return add(index, next);
    default:
      return add(index, next);
  }
}

}  // namespace authoring
