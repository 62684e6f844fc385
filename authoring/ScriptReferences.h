// ScriptReferences: the variables that a script names, as the interpreter reads them.
#ifndef CORVANE_AUTHORING_SCRIPTREFERENCES_H
#define CORVANE_AUTHORING_SCRIPTREFERENCES_H

#include <string>
#include <string_view>

#include "util/SString.h"

namespace authoring {

struct Fault {
  std::string what;  // empty: none
  std::string advice;
};

// Why the name of a variable is none.
Fault findVariableFault(const SString& name);
// Why the interpreter cannot replace the "@...@" in `text`.
Fault findReferenceFault(const SString& text);

// True for N1, s10 and the like, and nothing else: a reference that lacks its @.
bool isBareVariable(std::string_view text);

}  // namespace authoring

#endif
