#include "authoring/ScriptFlowCheck.h"

#include <set>
#include <string>
#include <utility>

#include "authoring/FileTypes.h"
#include "authoring/ScriptPaths.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"

namespace authoring {
namespace {

bool startsSomething(const CommandGrammar* command) {
  return command != nullptr &&
         (command->command == Command::kLaunch || command->command == Command::kILaunch ||
          command->command == Command::kExecuteLauncher);
}

bool isSearch(const CommandGrammar* command) {
  return command != nullptr &&
         (command->command == Command::kFindJVM || command->command == Command::kVerify);
}

class ScriptFlowCheck {
 public:
  ScriptFlowCheck(const SetupFile& script, const StringDeque& lines, Findings& findings)
      : m_script(script), m_lines(lines), m_findings(findings), m_paths(lines) {}

  void run() {
    if (!m_paths.isComplete()) {
      return;
    }
    for (const ScriptStep& step : m_paths.steps()) {
      if (!isEnd(step.state) && m_paths.commandAt(step.state.line) != nullptr) {
        checkLaunch(step.state);
        checkArguments(step.state);
        checkAssignment(step.state);
      }
    }
    checkTests();
    checkEnds();
    checkLoops();
    checkUnreachable();
  }

 private:
  Place at(long line) const { return m_script.at(tagname::kInstructions, line); }
  bool isEnd(const ScriptState& state) const { return state.line >= m_lines.size(); }
  std::string name(long line) const {
    const CommandGrammar* const command = m_paths.commandAt(line);
    return std::string(command == nullptr ? "" : command->name) + " of line " +
           std::to_string(at(line).line);
  }

  // --- What LAUNCH gets ---

  void checkLaunch(const ScriptState& state) {
    if (m_paths.commandAt(state.line)->command != Command::kLaunch) {
      return;
    }
    const KnownText file = ScriptPaths::launchedFile(state, m_lines[state.line]);
    const bool isEmpty = file.kind == KnownText::kText && file.text.empty();
    const bool isWrong = isEmpty || file.kind == KnownText::kHome;
    if (isWrong && file.setBy != state.line && isNew(state.line, file.setBy)) {
      isEmpty ? reportEmpty(state, file) : reportHome(state, file);
    }
  }

  bool isNew(long launch, long setBy) { return m_reported.insert({launch, setBy}).second; }

  void reportHome(const ScriptState& state, const KnownText& file) {
    const bool isFind = m_paths.commandAt(file.setBy)->command == Command::kFindJVM;
    m_findings.error(
        at(state.line),
        "LAUNCH gets the home of the Java of the " + name(file.setBy) + ", which is no jvm file",
        "the script ends with an error",
        isFind ? "write LAUNCH @S2@ and the seconds"
               : "write ILAUNCH, the number of the jvm file and the seconds");
  }

  void reportEmpty(const ScriptState& state, const KnownText& file) {
    const KnownText& installed = state.text(resultvariable::kInstalledJVMFile);
    if (installed.kind == KnownText::kJVMFile) {
      m_findings.error(
          at(state.line),
          "LAUNCH gets an empty name: the " + name(installed.setBy) + " leaves the jvm file in S1",
          "the script ends with an error", "write LAUNCH @S1@ and the seconds");
    } else if (file.setBy < 0) {
      m_findings.error(at(state.line), "LAUNCH gets an empty name: nothing has set it",
                       "the script ends with an error", "put a FIND_JVM in front of it");
    } else if (m_paths.commandAt(file.setBy)->command == Command::kSet) {
      m_findings.error(at(state.line), "LAUNCH gets an empty name from the " + name(file.setBy),
                       "the script ends with an error", "set it to the name of a jvm file");
    } else {
      m_findings.error(at(state.line),
                       "LAUNCH is reached, too, when the " + name(file.setBy) + " fails",
                       "the name of the jvm file is empty then, and the script ends with an error",
                       "put JMP0 @N1@ and a label between them");
    }
  }

  // --- What other commands get ---

  // Arguments that hold references, where their values are known.
  void checkArguments(const ScriptState& state) {
    const CommandGrammar& command = *m_paths.commandAt(state.line);
    const std::vector<SString> words = m_paths.wordsAt(state.line);
    for (std::size_t i = 0; i < words.size(); ++i) {
      if (words[i].find('@') == SString::npos) {
        continue;
      }
      if (command.arguments[i].kind != ArgumentKind::kLabel) {
        checkNumber(state, words[i]);
      } else if (i == 0 || mayBeZero(state, words[0])) {
        checkLabel(state, words[i]);
      }
    }
  }

  // A number that is set to a text.
  void checkAssignment(const ScriptState& state) {
    const auto assignment = m_paths.assignmentAt(state.line);
    const bool isNumber = assignment && ScriptState::numberIn("@" + assignment->name + "@") != 0;
    if (isNumber && assignment->value.find('@') != SString::npos) {
      checkNumber(state, assignment->value);
    }
  }

  static bool mayBeZero(const ScriptState& state, const SString& word) {
    const auto text = state.evaluate(word);
    std::int32_t number = 0;
    return !text || (convertToLong(text->c_str(), number) && number == 0);
  }

  void checkNumber(const ScriptState& state, const SString& word) {
    const KnownText value = state.argument(word);
    std::int32_t number = 0;
    const bool isText = value.kind == KnownText::kText;
    if (value.kind == KnownText::kUnknown ||
        (isText && convertToLong(value.text.c_str(), number))) {
      return;
    }
    const char* const what = value.kind == KnownText::kHome      ? "the home of a Java"
                             : value.kind == KnownText::kJVMFile ? "the name of a jvm file"
                             : value.text.empty()                ? "empty"
                                                                 : "another text";
    reportArgument(state, word, std::string("is ") + what + " here, and no number",
                   "write a number, or a variable that holds one");
  }

  void checkLabel(const ScriptState& state, const SString& word) {
    const auto name = state.evaluate(word);
    if (name && !m_paths.hasLabel(*name)) {
      const std::string what = name->empty() ? "is empty" : "is " + quotedText(*name);
      reportArgument(state, word, what + " here, and no label is called so",
                     name->empty() ? "set it to the name of a label" : "write a line :" + *name);
    }
  }

  void reportArgument(const ScriptState& state, const SString& word, const std::string& fault,
                      const std::string& advice) {
    if (m_reportedArguments.emplace(state.line, word.view()).second) {
      m_findings.error(at(state.line), std::string(word.view()) + " " + fault,
                       "the script ends with an error here", advice);
    }
  }

  // --- What JMP0 tests ---

  // A variable that has its first value wherever the script comes to the line.
  void checkTests() {
    std::set<long> tests;
    std::set<long> sound;
    for (const ScriptStep& step : m_paths.steps()) {
      const CommandGrammar* const command =
          isEnd(step.state) ? nullptr : m_paths.commandAt(step.state.line);
      if (command != nullptr && command->command == Command::kJmp0) {
        (testsNothing(step.state) ? tests : sound).insert(step.state.line);
      }
    }
    for (const long line : tests) {
      if (sound.count(line) == 0) {
        m_findings.warning(at(line), "JMP0 tests a variable that nothing has set",
                           "it is 0, and the jump is always taken",
                           "write @N1@, which tells of the last search");
      }
    }
  }

  bool testsNothing(const ScriptState& state) const {
    std::size_t position = 0;
    const SString& line = m_lines[state.line];
    (void)getTokenFromString(line, position);
    const std::int32_t number = ScriptState::numberIn(getTokenFromString(line, position));
    return number != 0 && !state.isSet[static_cast<std::size_t>(number - 1)];
  }

  // --- Where the script ends ---

  bool startsAnything() const {
    for (long i = 0; i < m_lines.size(); ++i) {
      if (startsSomething(m_paths.commandAt(i))) {
        return true;
      }
    }
    return false;
  }

  // A script that starts nothing may search for its own reasons.
  void checkEnds() {
    std::set<long> silent;
    for (const ScriptStep& step : m_paths.steps()) {
      if (isEnd(step.state) && step.state.silentSearch >= 0 && startsAnything()) {
        silent.insert(step.state.silentSearch);
      }
    }
    for (const long line : silent) {
      const CommandGrammar& command = *m_paths.commandAt(line);
      m_findings.warning(
          at(line),
          "when this " + std::string(command.name) + " fails, the script ends without a word",
          "the user sees nothing, and the status is 0",
          command.command == Command::kInstallJVM
              ? "end with a status, such as that of ILAUNCH -1 0"
              : "write 1 as the second argument, or install a Java, or end with a "
                "status, such as that of ILAUNCH -1 0");
    }
  }

  // --- Loops ---

  enum class Ways { kAll, kFailing };

  // The steps from which the end can be reached; of the failing ways the start of anything counts
  // as an end, too.
  std::vector<bool> endingSteps(Ways ways) const {
    const auto& steps = m_paths.steps();
    std::vector<std::vector<std::size_t>> before(steps.size());
    std::vector<std::size_t> pending;
    std::vector<bool> isEnding(steps.size());
    for (std::size_t i = 0; i < steps.size(); ++i) {
      for (const ScriptStep::Next& next : steps[i].next) {
        if (ways == Ways::kAll || !next.isFound) {
          before[next.step].push_back(i);
        }
      }
      if (steps[i].next.empty() || (ways == Ways::kFailing && doesSomething(steps[i].state))) {
        isEnding[i] = true;
        pending.push_back(i);
      }
    }
    while (!pending.empty()) {
      const std::size_t step = pending.back();
      pending.pop_back();
      for (const std::size_t i : before[step]) {
        if (!isEnding[i]) {
          isEnding[i] = true;
          pending.push_back(i);
        }
      }
    }
    return isEnding;
  }

  bool doesSomething(const ScriptState& state) const {
    const CommandGrammar* const command = m_paths.commandAt(state.line);
    return startsSomething(command) ||
           (command != nullptr && command->command == Command::kInstallJVM);
  }

  void checkLoops() {
    const std::vector<bool> ends = endingSteps(Ways::kAll);
    const std::vector<bool> endsWithoutJava = endingSteps(Ways::kFailing);
    std::set<long> endless;
    std::set<long> searches;
    for (std::size_t i = 0; i < ends.size(); ++i) {
      const long line = m_paths.steps()[i].state.line;
      if (!ends[i]) {
        endless.insert(line);
      } else if (!endsWithoutJava[i] && isSearch(m_paths.commandAt(line))) {
        searches.insert(line);
      }
    }
    if (!endless.empty()) {
      m_findings.error(at(*endless.rbegin()), "the script never ends once it comes here",
                       "all ways lead back", "let a jump lead to a label behind the loop");
    }
    for (const long line : searches) {
      m_findings.error(at(line), "the script searches for ever when there is no suitable Java",
                       "each way from a failure leads back to a search",
                       "let a failure lead to a label behind the loop");
    }
  }

  // --- Lines that are never reached ---

  void checkUnreachable() {
    if (m_paths.hasBrokenLines()) {
      return;
    }
    std::vector<bool> isReached(static_cast<std::size_t>(m_lines.size()) + 1);
    for (const ScriptStep& step : m_paths.steps()) {
      isReached[static_cast<std::size_t>(step.state.line)] = true;
    }
    bool isReported = false;
    for (long i = 0; i < m_lines.size(); ++i) {
      const CommandGrammar* const command = m_paths.commandAt(i);
      if (isReached[static_cast<std::size_t>(i)]) {
        isReported = false;
      } else if (command != nullptr && command->command != Command::kComment && !isReported) {
        isReported = true;
        m_findings.warning(at(i), "this line is never reached", "every way leads around it",
                           "delete it, or let a jump lead to a label in front of it");
      }
    }
  }

  const SetupFile& m_script;
  const StringDeque& m_lines;
  Findings& m_findings;
  const ScriptPaths m_paths;
  std::set<std::pair<long, long>> m_reported;  // a LAUNCH, and what has set its argument
  std::set<std::pair<long, std::string>> m_reportedArguments;  // of a line
};

}  // namespace

void checkScriptFlow(const SetupFile& script, Findings& findings) {
  if (const StringDeque* const lines = script.tagFile->getValue(tagname::kInstructions)) {
    ScriptFlowCheck(script, *lines, findings).run();
  }
}

}  // namespace authoring
