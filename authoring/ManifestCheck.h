// ManifestCheck: finds what does not fit together in a setup's list of files.
#ifndef CORVANE_AUTHORING_MANIFESTCHECK_H
#define CORVANE_AUTHORING_MANIFESTCHECK_H

#include <optional>
#include <set>

#include "authoring/SetupContents.h"
#include "instructions/ScriptGrammar.h"

namespace authoring {

// Adds to `findings`: names and numbers that are taken, types that are there too often, files that
// nothing uses, and settings for which the purpose is wrong. `commands` are those that the
// instruction script uses, where they are known.
void checkManifest(const Setup& setup, const std::optional<std::set<Command>>& commands,
                   Findings& findings);

}  // namespace authoring

#endif
