// TemplateCheck: reads a template of the launch script as the launcher would, without calling its
// functions.
#ifndef CORVANE_AUTHORING_TEMPLATECHECK_H
#define CORVANE_AUTHORING_TEMPLATECHECK_H

#include <string>
#include <string_view>
#include <vector>

#include "util/SString.h"

namespace authoring {

// Adds the functions that there are not, and the calls that are written wrongly, to `findings`,
// each behind `label`. Functions in the arguments of others are looked at where they are called.
void checkTemplate(const std::string& label, const SString& text,
                   std::vector<std::string>& findings);

}  // namespace authoring

#endif
