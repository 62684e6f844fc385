#include "instructions/ScriptGrammar.h"

#include <algorithm>
#include <iterator>

namespace {

using enum ArgumentKind;

constexpr const char* kILaunchIndex =
    "The first argument to ILAUNCH should be the file index number of the jvm file.";

constexpr ArgumentGrammar kFindJVM[] = {
    {kBoolean,
     "The first argument to FIND_JVM should be a 1 if the UI should be displayed or a 0 if the UI "
     "should be suppressed."},
    {kBoolean,
     "The second argument to FIND_JVM should be a 1 if a find failure message should be displayed "
     "in a UI or 0 if no message should be displayed."},
};

constexpr ArgumentGrammar kGoto[] = {
    {kLabel, "The GOTO command requires a label as its only argument."},
};

constexpr ArgumentGrammar kILaunch[] = {
    {kLaunchedFile, kILaunchIndex},
    {kSeconds,
     "The second argument to ILAUNCH should be the number of seconds to display the UI during the "
     "launch."},
};

constexpr ArgumentGrammar kInstallJVM[] = {
    {kInstallOption, "The first argument to INSTALL_JVM should be a 0, 1 or 2."},
};

// QUIRK(jmp0-second-argument): the text for a bad value says "second argument", though the value is
// the first one. The label is required even when the value says not to jump.
constexpr ArgumentGrammar kJmp0[] = {
    {kNumber, nullptr, "The second argument to JMP0 must be numeric."},
    {kLabel, "JMP0 requires a jump label as its second argument."},
};

constexpr ArgumentGrammar kLaunch[] = {
    {kFileName, nullptr, "Invalid jvm file name specified in LAUNCH."},
    {kSeconds,
     "The second argument to LAUNCH should be the number of seconds to display the UI during the "
     "launch."},
};

constexpr ArgumentGrammar kSet[] = {
    {kAssignment, "SET statement is missing =."},
};

constexpr ArgumentGrammar kVerify[] = {
    {kBoolean,
     "The first argument to VERIFY should be a 1 if the UI should be displayed or a 0 if the UI "
     "should be suppressed."},
    {kBoolean,
     "The second argument to VERIFY should be a 1 if a find failure message should be displayed "
     "in a UI or 0 if no message should be displayed."},
    {kVerifiedFile,
     "The third argument to VERIFY should be the file index number of the jvm file."},
};

// QUIRK(execute-launcher-text): the text for a missing argument is that of ILAUNCH.
constexpr ArgumentGrammar kExecuteLauncher[] = {
    {kLauncherPosition, kILaunchIndex},
};

// QUIRK(comment-marker-alone): // is a command without arguments, so a blank must follow it:
// "//text" is an invalid command.
constexpr CommandGrammar kRows[] = {
    {"FIND_JVM", Command::kFindJVM, kFindJVM},
    {"GOTO", Command::kGoto, kGoto},
    {"ILAUNCH", Command::kILaunch, kILaunch},
    {"INITIALIZE_UI", Command::kInitializeUI, {}},
    {"INSTALL_JVM", Command::kInstallJVM, kInstallJVM},
    {"JMP0", Command::kJmp0, kJmp0},
    {"LAUNCH", Command::kLaunch, kLaunch},
    {"SET", Command::kSet, kSet},
    {"VERIFY", Command::kVerify, kVerify},
    {"EXECUTE_LAUNCHER", Command::kExecuteLauncher, kExecuteLauncher},
    {"//", Command::kComment, {}},
};

static_assert(std::all_of(std::begin(kRows), std::end(kRows), [](const CommandGrammar& row) {
  return row.arguments.size() <= kMostArguments;
}));

}  // namespace

constinit const std::span<const CommandGrammar> kCommandGrammar = kRows;

const CommandGrammar* findCommand(std::string_view name) {
  const auto* row = std::find_if(std::begin(kRows), std::end(kRows),
                                 [name](const CommandGrammar& r) { return name == r.name; });
  return row == std::end(kRows) ? nullptr : row;
}
