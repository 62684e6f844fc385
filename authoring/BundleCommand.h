// BundleCommand: `bundle-java` on the command line.
#ifndef CORVANE_AUTHORING_BUNDLECOMMAND_H
#define CORVANE_AUTHORING_BUNDLECOMMAND_H

#include <CLI/CLI.hpp>
#include <functional>

namespace authoring {

// As addNewCommand.
void addBundleCommand(CLI::App& app, std::function<int()>& chosen);

}  // namespace authoring

#endif
