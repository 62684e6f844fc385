// TemplateCheck: reads a template of the launch script as the launcher would, without calling its
// functions.
#ifndef CORVANE_AUTHORING_TEMPLATECHECK_H
#define CORVANE_AUTHORING_TEMPLATECHECK_H

#include <string>
#include <string_view>
#include <vector>

#include "util/SString.h"

namespace authoring {

// Adds unknown functions and malformed calls to `findings`, each after `label`. A call inside an
// argument is checked where the argument becomes part of the command.
void checkTemplate(const std::string& label, const SString& text,
                   std::vector<std::string>& findings);

}  // namespace authoring

#endif
