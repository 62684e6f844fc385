// The statements: dispatch, the commands with their arguments, SET and the jumps.
#include "instructions/Instructions.h"

#include <algorithm>

#include "instructions/InstructionsException.h"
#include "instructions/VariableRef.h"
#include "launcher/Launcher.h"
#include "platform/PlatformImpl.h"
#include "tagfile/TagNames.h"
#include "tagfile/TextUtils.h"

namespace {

constexpr const char* kNoCommand = "No command specified.";
constexpr const char* kFindUI =
    "The first argument to FIND_JVM should be a 1 if the UI should be displayed or a 0 if the UI "
    "should be suppressed.";
constexpr const char* kFindFailure =
    "The second argument to FIND_JVM should be a 1 if a find failure message should be displayed "
    "in a UI or 0 if no message should be displayed.";
constexpr const char* kGotoLabel = "The GOTO command requires a label as its only argument.";
constexpr const char* kILaunchIndex =
    "The first argument to ILAUNCH should be the file index number of the jvm file.";
constexpr const char* kILaunchSeconds =
    "The second argument to ILAUNCH should be the number of seconds to display the UI during the "
    "launch.";
constexpr const char* kInstallOption = "The first argument to INSTALL_JVM should be a 0, 1 or 2.";
constexpr const char* kJmp0Value = "The second argument to JMP0 must be numeric.";
constexpr const char* kJmp0Label = "JMP0 requires a jump label as its second argument.";
constexpr const char* kLaunchName = "Invalid jvm file name specified in LAUNCH.";
constexpr const char* kLaunchSeconds =
    "The second argument to LAUNCH should be the number of seconds to display the UI during the "
    "launch.";
constexpr const char* kVerifyUI =
    "The first argument to VERIFY should be a 1 if the UI should be displayed or a 0 if the UI "
    "should be suppressed.";
constexpr const char* kVerifyFailure =
    "The second argument to VERIFY should be a 1 if a find failure message should be displayed "
    "in a UI or 0 if no message should be displayed.";
constexpr const char* kVerifyIndex =
    "The third argument to VERIFY should be the file index number of the jvm file.";
constexpr const char* kSetEquals = "SET statement is missing =.";
constexpr const char* kSetVariable =
    "Invalid variable specified on left hand side of SET statement.";
constexpr const char* kSetExpression = "Invalid expression specified for SET command";
constexpr const char* kSetValue = "Invalid value specified for SET command";
constexpr const char* kLabelPrefix = "Invalid label specified.";

constexpr const char* kNoPrefix = "";  // the arguments of most commands open no error text

}  // namespace

struct Instructions::Statement {
  const Instructions& script;
  const SString& line;
  std::int32_t& result;  // of the run
  std::size_t position = 0;

  void run();

  // The commands.
  void comment() {}
  void executeLauncher();
  void findJVM();
  void goTo() { script.jumpTo(argument(kGotoLabel)); }
  void ilaunch();
  void initializeUI() { Launcher::initializeUI(); }
  void installJVM();
  void jumpIfZero();
  void launch();
  void set();
  void verify();

  // The next argument; each throws `missing` when the line holds no more.
  SString nextToken() { return getTokenFromString(line, position); }
  SString argument(const char* missing);
  bool boolArgument(const char* missing);
  std::int32_t longArgument(const char* missing);
  std::int16_t shortArgument(const char* missing);

  void assign(const SString& name, SString value) const;
  [[noreturn]] void fail(const SString& message) const { script.throwException(message); }
};

struct Instructions::CommandRow {
  const char* name;
  void (Statement::*run)();
};

// QUIRK(comment-marker-alone): // is a command without arguments, so it must stand alone: "//text"
// is an invalid command.
constexpr Instructions::CommandRow Instructions::kCommands[] = {
    {"FIND_JVM", &Statement::findJVM},
    {"GOTO", &Statement::goTo},
    {"ILAUNCH", &Statement::ilaunch},
    {"INITIALIZE_UI", &Statement::initializeUI},
    {"INSTALL_JVM", &Statement::installJVM},
    {"JMP0", &Statement::jumpIfZero},
    {"LAUNCH", &Statement::launch},
    {"SET", &Statement::set},
    {"VERIFY", &Statement::verify},
    {"EXECUTE_LAUNCHER", &Statement::executeLauncher},
    {"//", &Statement::comment},
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
    Statement{*this, script[static_cast<long>(m_currentLine)], result}.run();
  }
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
  // QUIRK(label-line-whole): the whole line must be the label: one with text behind it is skipped
  // like any label when it is reached, but never found.
  const std::uint32_t index = m_labels->find(target);
  if (index == LabelIndex::kNone) {
    throwException("Label not found (" + label + ")");
  }
  return index;
}

// Execution goes on behind the label's line.
void Instructions::jumpTo(const SString& label) const {
  const auto index = static_cast<std::uint32_t>(gotoLabel(label));
  if (index <= m_currentLine) {
    stopIfCanceled();
  }
  m_currentLine = index;
}

void Instructions::stopIfCanceled() {
  if (PlatformImpl::isCanceled()) {
    throw Canceled(PlatformImpl::getMessageText(MSG_CANCELED));
  }
}

void Instructions::Statement::run() {
  const SString command = nextToken();
  if (command.empty()) {
    fail(kNoCommand);
  }
  if (command[0] == ':') {
    return;
  }
  for (const CommandRow& row : kCommands) {
    if (command == row.name) {
      (this->*row.run)();
      return;
    }
  }
  fail("Invalid command (" + command + "). ");
}

SString Instructions::Statement::argument(const char* missing) {
  SString token = nextToken();
  if (token.empty()) {
    fail(missing);
  }
  return token;
}

bool Instructions::Statement::boolArgument(const char* missing) {
  return script.evalBoolExpr(argument(missing), kNoPrefix);
}

std::int32_t Instructions::Statement::longArgument(const char* missing) {
  return script.evalLongExpr(argument(missing), kNoPrefix);
}

std::int16_t Instructions::Statement::shortArgument(const char* missing) {
  return script.evalShortExpr(argument(missing), kNoPrefix);
}

void Instructions::Statement::findJVM() {
  const bool showUI = boolArgument(kFindUI);
  const bool showFailure = boolArgument(kFindFailure);
  Launcher::findJVM(showUI, showFailure);
}

void Instructions::Statement::verify() {
  const bool showUI = boolArgument(kVerifyUI);
  const bool showFailure = boolArgument(kVerifyFailure);
  Launcher::verifyJVM(showUI, showFailure, longArgument(kVerifyIndex));
}

void Instructions::Statement::installJVM() {
  const std::int32_t option = longArgument(kInstallOption);
  if (option < INSTALL_JVM_OPTION_HIDDEN || option > INSTALL_JVM_OPTION_PROMPT) {
    fail(kInstallOption);
  }
  Launcher::installJVM(static_cast<InstallJVMOption>(option));
}

void Instructions::Statement::ilaunch() {
  const std::int32_t fileId = longArgument(kILaunchIndex);
  result = Launcher::ilaunch(fileId, shortArgument(kILaunchSeconds));
}

void Instructions::Statement::launch() {
  SString jvmFileName;
  script.evalStringExpr(line, position, jvmFileName, kLaunchName);
  result = Launcher::launch(jvmFileName, shortArgument(kLaunchSeconds));
}

// QUIRK(execute-launcher-text): the text for a missing argument is that of ILAUNCH; whoever looks
// for it in a log finds the same words for both commands.
void Instructions::Statement::executeLauncher() {
  Launcher::executeEmbeddedLauncher(longArgument(kILaunchIndex));
}

// QUIRK(jmp0-second-argument): the text for a bad value speaks of the second argument, though the
// value is the first one. The label is asked for even where the value says not to jump.
void Instructions::Statement::jumpIfZero() {
  const std::int32_t value = script.evalLongExpr(nextToken(), kJmp0Value);
  const SString label = argument(kJmp0Label);
  if (value == 0) {
    script.jumpTo(label);
  }
}

void Instructions::Statement::set() {
  const std::string_view rest = withoutBlanks(line.view().substr(std::min(position, line.size())));
  const std::size_t equals = rest.find('=');
  if (equals == rest.npos) {
    fail(kSetEquals);
  }
  try {
    assign(SString(withoutBlanks(rest.substr(0, equals))),
           SString(withoutBlanks(rest.substr(equals + 1))));
  } catch (const Canceled&) {
    throw;
  } catch (const LauncherException& error) {
    fail(error.getMessage());
  }
}

void Instructions::Statement::assign(const SString& name, SString value) const {
  VariableRef variable;
  variable.init(name, kSetVariable);
  script.evalStringExpr(value, kSetExpression);
  variable.setValue(value, kSetValue);
}
