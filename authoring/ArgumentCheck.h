// ArgumentCheck: what the calls of a launch script put into the command, and what the shell makes
// of it.
#ifndef CORVANE_AUTHORING_ARGUMENTCHECK_H
#define CORVANE_AUTHORING_ARGUMENTCHECK_H

#include <optional>
#include <string>
#include <string_view>

#include "authoring/CommandModel.h"
#include "authoring/SetupContents.h"

namespace authoring {

// Why a text is more than one word to the shell, as parts of a finding.
struct ShellFault {
  std::string what;  // follows the text in quotes: "holds a blank outside quotes"
  std::string why;
};
// `text` is a template's argument or a tag of a jvm file; its macros count as parts of a word.
[[nodiscard]] std::optional<ShellFault> findShellFault(std::string_view text);

// True when the jvm file of some Java puts the class path into the command, behind an option.
bool isClasspathInCommand(const Setup& setup);

// The calls in COMMAND, and ARCHIVE.
void checkArguments(const Setup& setup, const SetupFile& script, const CommandModel& command,
                    Findings& findings);

}  // namespace authoring

#endif
