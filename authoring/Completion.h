// Completion: the scripts by which shells complete this program's command lines.
#ifndef CORVANE_AUTHORING_COMPLETION_H
#define CORVANE_AUTHORING_COMPLETION_H

#include <CLI/CLI.hpp>
#include <string>

namespace authoring {

// The script for "bash", "zsh" or "fish", made from the commands and options of `app`. What an
// option's value is (a file, a folder, a file type) is told by the name of its type.
std::string completionScript(const CLI::App& app, const std::string& shell);

// The option that prints such a script.
void addCompletionOption(CLI::App& app);

}  // namespace authoring

#endif
