// ScriptAdvice: what to write instead of a wrong statement.
#ifndef CORVANE_AUTHORING_SCRIPTADVICE_H
#define CORVANE_AUTHORING_SCRIPTADVICE_H

#include <string>

#include "instructions/ScriptGrammar.h"
#include "util/StringDeque.h"

namespace authoring {

// A whole statement of that command, with capitals for what the author must fill in.
std::string exampleOf(const CommandGrammar& command);
// For a first word that is no command.
std::string adviceForCommand(const std::string& word);
// For a label that no line of the script defines.
std::string adviceForLabel(const SString& label, const StringDeque& lines);

}  // namespace authoring

#endif
