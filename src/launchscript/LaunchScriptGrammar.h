// LaunchScriptGrammar: the functions of the launch script's templates, how many arguments each
// takes, and what is said when their number is wrong.
//
// The launcher and the checker of corvane-pack read calls by this one table. docs/launch-script.md
// describes it for authors.
#ifndef CORVANE_LAUNCHSCRIPT_LAUNCHSCRIPTGRAMMAR_H
#define CORVANE_LAUNCHSCRIPT_LAUNCHSCRIPTGRAMMAR_H

#include <span>
#include <string_view>

// What stands on both sides of a name in a template.
inline constexpr char kFunctionMark = '%';
inline constexpr char kTagMark = '@';          // of the jvm file
inline constexpr char kEnvironmentMark = '#';  // an environment variable

enum class Function {
  kReplace,
  kRuntimeSystemProp,
  kRuntimeJavaArgs,
  kSystemProp,
  kCP,
  kIfExists,
  kLauncherFile,
  kLauncherDir,
  kApplicationArchive,
  kTempDir,
};

inline constexpr long kAnyNumber = 0x7FFFFFFF;

struct FunctionGrammar {
  const char* name;
  Function function;
  long leastArguments;
  long mostArguments;
  const char* wrongCount;
};

// All functions; each once.
extern const std::span<const FunctionGrammar> kFunctionGrammar;

// The function of that name, byte by byte, or null.
const FunctionGrammar* findFunction(std::string_view name);

#endif
