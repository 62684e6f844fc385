// MainClass: which class of the wizard a launch script starts.
#ifndef CORVANE_AUTHORING_MAINCLASS_H
#define CORVANE_AUTHORING_MAINCLASS_H

#include <optional>
#include <string>

#include "util/SString.h"

namespace authoring {

// The class that the command starts, with dots, when it must be in one of the setup's jars: Java
// runs with the class path of %CP%() and with nothing else on it. Nothing when that cannot be known
// before the run: other entries, modules, -jar, a name from a variable, or a command that is none
// of Java's.
[[nodiscard]] std::optional<std::string> findMainClass(const SString& command);

}  // namespace authoring

#endif
