#include "launchscript/LaunchScriptGrammar.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr FunctionGrammar kRows[] = {
    {"REPLACE", Function::kReplace, 3, 3, "REPLACE function requires 3 arguments."},
    {"RUNTIME_SYSTEMPROP", Function::kRuntimeSystemProp, 0, 0,
     "RUNTIME_SYSTEMPROP function takes no arguments."},
    {"RUNTIME_JAVAARGS", Function::kRuntimeJavaArgs, 0, 0,
     "RUNTIME_JAVAARGS function takes no arguments."},
    {"SYSTEMPROP", Function::kSystemProp, 2, 2, "SYSTEMPROP function requires 2 arguments."},
    {"CP", Function::kCP, 0, kAnyNumber, ""},
    {"IF_EXISTS", Function::kIfExists, 2, 2, "IF_EXISTS function requires 2 arguments."},
    {"LAUNCHER_FILE", Function::kLauncherFile, 0, 0, "LAUNCHER_FILE function takes 0 arguments."},
    {"LAUNCHER_DIR", Function::kLauncherDir, 0, 0, "LAUNCHER_DIR function takes 0 arguments."},
    // QUIRK(application-archive-message): the text says 0 although one argument is accepted.
    {"APPLICATION_ARCHIVE", Function::kApplicationArchive, 0, 1,
     "APPLICATION_ARCHIVE function takes 0 arguments."},
    {"TEMP_DIR", Function::kTempDir, 0, 0, "TEMP_DIR function takes 0 arguments."},
};

}  // namespace

constinit const std::span<const FunctionGrammar> kFunctionGrammar = kRows;

const FunctionGrammar* findFunction(std::string_view name) {
  const auto* row = std::find_if(std::begin(kRows), std::end(kRows),
                                 [name](const FunctionGrammar& r) { return name == r.name; });
  return row == std::end(kRows) ? nullptr : row;
}
