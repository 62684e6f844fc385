// The statements: dispatch, the commands with their arguments, SET and the jumps.
#include "instructions/Instructions.h"

#include <algorithm>
#include <array>

#include "instructions/InstructionsException.h"
#include "instructions/ScriptGrammar.h"
#include "instructions/ScriptSyntax.h"
#include "instructions/VariableRef.h"
#include "launcher/Launcher.h"
#include "platform/PlatformImpl.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"

namespace {

constexpr const char* kNoCommand = "No command specified.";
constexpr const char* kSetVariable =
    "Invalid variable specified on left hand side of SET statement.";
constexpr const char* kSetExpression = "Invalid expression specified for SET command";
constexpr const char* kSetValue = "Invalid value specified for SET command";
constexpr const char* kLabelPrefix = "Invalid label specified.";

void stopIfCanceledBeforeWizard() {
  if (!Launcher::hasWizardRun()) {
    PlatformImpl::throwIfCanceled();
  }
}

}  // namespace

struct Instructions::Statement {
  const Instructions& script;
  const SString& line;
  std::int32_t& result;  // of the run
  std::size_t position = 0;

  // The arguments: the numbers in their order, and the others.
  std::array<std::int32_t, kMostArguments> numbers{};
  std::size_t count = 0;
  SString text{};  // the label, the file name, or the value to be set
  SString name{};  // of the variable to be set

  void run();
  void read(const ArgumentGrammar& argument);
  void readAssignment(const ArgumentGrammar& argument);
  std::int32_t evaluate(const SString& token, const ArgumentGrammar& argument) const;
  void perform(Command command);

  SString nextToken() { return getTokenFromString(line, position); }
  bool flag(std::size_t index) const { return numbers[index] != 0; }
  std::int16_t seconds() const { return static_cast<std::int16_t>(numbers[count - 1]); }
  void set();
  [[noreturn]] void fail(const SString& message) const { script.throwException(message); }
};

const StringDeque& Instructions::lines() const {
  static const StringDeque noLines;
  const StringDeque* values = m_tagFile.getValue(tagname::kInstructions);
  return values == nullptr ? noLines : *values;
}

int Instructions::execute() const {
  const StringDeque& script = lines();
  const auto count = static_cast<std::uint32_t>(script.size());
  std::int32_t result = 0;
  m_labels.reset();
  for (m_currentLine = 0; m_currentLine < count; ++m_currentLine) {
    stopIfCanceledBeforeWizard();
    Statement{*this, script[static_cast<long>(m_currentLine)], result}.run();
  }
  stopIfCanceledBeforeWizard();
  return result;
}

void Instructions::throwException(const SString& message) const {
  throw InstructionsException(message, static_cast<std::int32_t>(m_currentLine + 1));
}

unsigned long Instructions::gotoLabel(const SString& label) const {
  SString target = ":" + label;
  evalExpr(target, kLabelPrefix);
  if (target == ":") {
    throwException("Label " + label + " resolved to a blank string. Labels cannot be blank.");
  }
  if (!m_labels) {
    m_labels.emplace(lines());
  }
  // QUIRK(label-line-whole): a label is found only when it is alone on its line. With more text
  // after it, its line is skipped when it is reached, like that of any label.
  const std::uint32_t index = m_labels->find(target);
  if (index == LabelIndex::kNone) {
    throwException("Label not found (" + label + ")");
  }
  return index;
}

// Execution continues after the label's line.
void Instructions::jumpTo(const SString& label) const {
  const auto index = static_cast<std::uint32_t>(gotoLabel(label));
  if (index <= m_currentLine) {
    PlatformImpl::throwIfCanceled();
  }
  m_currentLine = index;
}

void Instructions::Statement::run() {
  const SString word = nextToken();
  if (word.empty()) {
    fail(kNoCommand);
  }
  if (word[0] == ':') {
    return;
  }
  const CommandGrammar* command = findCommand(word);
  if (command == nullptr) {
    fail("Invalid command (" + word + "). ");
  }
  for (const ArgumentGrammar& argument : command->arguments) {
    read(argument);
  }
  perform(command->command);
}

void Instructions::Statement::read(const ArgumentGrammar& argument) {
  if (argument.kind == ArgumentKind::kAssignment) {
    readAssignment(argument);
    return;
  }
  if (argument.kind == ArgumentKind::kFileName) {
    script.evalStringExpr(line, position, text, argument.prefix);
    return;
  }
  const SString token = nextToken();
  if (token.empty() && argument.missing != nullptr) {
    fail(argument.missing);
  }
  if (argument.kind == ArgumentKind::kLabel) {
    text = token;
  } else {
    numbers[count++] = evaluate(token, argument);
  }
}

std::int32_t Instructions::Statement::evaluate(const SString& token,
                                               const ArgumentGrammar& argument) const {
  switch (argument.kind) {
    case ArgumentKind::kBoolean:
      return script.evalBoolExpr(token, argument.prefix) ? 1 : 0;
    case ArgumentKind::kSeconds:
      return script.evalShortExpr(token, argument.prefix);
    default:
      break;
  }
  const std::int32_t number = script.evalLongExpr(token, argument.prefix);
  if (argument.kind == ArgumentKind::kInstallOption &&
      (number < INSTALL_JVM_OPTION_HIDDEN || number > INSTALL_JVM_OPTION_PROMPT)) {
    fail(argument.missing);
  }
  return number;
}

void Instructions::Statement::perform(Command command) {
  switch (command) {
    case Command::kFindJVM:
      return Launcher::findJVM(flag(0), flag(1));
    case Command::kGoto:
      return script.jumpTo(text);
    case Command::kILaunch:
      result = Launcher::ilaunch(numbers[0], seconds());
      return;
    case Command::kInitializeUI:
      return Launcher::initializeUI();
    case Command::kInstallJVM:
      return Launcher::installJVM(static_cast<InstallJVMOption>(numbers[0]));
    case Command::kJmp0:
      if (numbers[0] == 0) {
        script.jumpTo(text);
      }
      return;
    case Command::kLaunch:
      result = Launcher::launch(text, seconds());
      return;
    case Command::kVerify:
      return Launcher::verifyJVM(flag(0), flag(1), numbers[2]);
    case Command::kExecuteLauncher:
      return Launcher::executeEmbeddedLauncher(numbers[0]);
    case Command::kSet:
      return set();
    case Command::kComment:
      return;
  }
}

void Instructions::Statement::readAssignment(const ArgumentGrammar& argument) {
  auto assignment = splitAssignment(line.view().substr(std::min(position, line.size())));
  if (!assignment) {
    fail(argument.missing);
  }
  name = std::move(assignment->name);
  text = std::move(assignment->value);
}

void Instructions::Statement::set() {
  try {
    VariableRef variable;
    variable.init(name, kSetVariable);
    script.evalStringExpr(text, kSetExpression);
    variable.setValue(text, kSetValue);
  } catch (const Canceled&) {
    throw;
  } catch (const LauncherException& error) {
    fail(error.getMessage());
  }
}
