// NewCommand: `new` on the command line.
#ifndef CORVANE_AUTHORING_NEWCOMMAND_H
#define CORVANE_AUTHORING_NEWCOMMAND_H

#include <CLI/CLI.hpp>
#include <functional>

namespace authoring {

// When the command is called, `chosen` becomes what it does; that throws AuthoringError and returns
// the status.
void addNewCommand(CLI::App& app, std::function<int()>& chosen);

}  // namespace authoring

#endif
