// ScriptGrammar: the commands of the instruction script, their arguments, and what is said when one
// is missing or wrong.
//
// The interpreter and the checker of corvane-pack read statements by this one table.
// docs/instructions.md describes it for authors.
#ifndef CORVANE_INSTRUCTIONS_SCRIPTGRAMMAR_H
#define CORVANE_INSTRUCTIONS_SCRIPTGRAMMAR_H

#include <cstddef>
#include <span>
#include <string_view>

enum class Command {
  kFindJVM,
  kGoto,
  kILaunch,
  kInitializeUI,
  kInstallJVM,
  kJmp0,
  kLaunch,
  kSet,
  kVerify,
  kExecuteLauncher,
  kComment,
};

enum class ArgumentKind {
  kNumber,            // of 32 bits
  kSeconds,           // a number of 16 bits
  kBoolean,           // 0 or 1
  kInstallOption,     // 0, 1 or 2
  kLaunchedFile,      // the number of a jvm file; an unknown one ends with status -1
  kVerifiedFile,      // the number of a jvm file; an unknown one is an error
  kLauncherPosition,  // the place of a launcher in the file index, from 0
  kLabel,             // without its colon
  kFileName,          // a text that may stand in double quotes
  kAssignment,        // the rest of the line: VARIABLE = VALUE
};

struct ArgumentGrammar {
  ArgumentKind kind;
  // The error for a missing argument and for an invalid install option. Null: a missing argument is
  // read as an empty one.
  const char* missing;
  const char* prefix = "";  // begins every error of its evaluation
};

inline constexpr std::size_t kMostArguments = 3;

struct CommandGrammar {
  std::string_view name;
  Command command;
  std::span<const ArgumentGrammar> arguments;  // what follows them on the line is ignored
};

// All commands; each once.
extern const std::span<const CommandGrammar> kCommandGrammar;

// The command of that name, byte by byte, or null.
const CommandGrammar* findCommand(std::string_view name);

#endif
