// VerifyCommand: `verify` on the command line.
#ifndef CORVANE_AUTHORING_VERIFYCOMMAND_H
#define CORVANE_AUTHORING_VERIFYCOMMAND_H

#include <CLI/CLI.hpp>
#include <functional>

namespace authoring {

// As addNewCommand.
void addVerifyCommand(CLI::App& app, std::function<int()>& chosen);

}  // namespace authoring

#endif
