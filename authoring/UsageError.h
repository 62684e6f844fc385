// UsageError: says what is wrong with a command line.
#ifndef CORVANE_AUTHORING_USAGEERROR_H
#define CORVANE_AUTHORING_USAGEERROR_H

#include <CLI/CLI.hpp>
#include <string>

namespace authoring {

// Names the word that is not known, and the nearest that is; else what the library found.
std::string describeUsageError(const CLI::App& app, const CLI::ParseError& error);

}  // namespace authoring

#endif
