// MacroHandler: replaces the names between two delimiters in a text.
//
// Base of JVMFile ("@": its tags) and LaunchScript ("%": functions, "#": environment variables).
#ifndef CORVANE_LAUNCHSCRIPT_MACROHANDLER_H
#define CORVANE_LAUNCHSCRIPT_MACROHANDLER_H

#include "util/SString.h"

class MacroHandler {
 public:
  virtual ~MacroHandler() = default;

  // Replaces one macro of `text` in place. `start` and `end` are the positions of its opening and
  // closing delimiter.
  virtual void processMacro(SString& text, char delimiter, std::size_t start,
                            std::size_t& end) const = 0;

  // A copy of `text` in which every macro is replaced. A replacement is scanned again; a doubled
  // delimiter that pairs with no later one becomes a single one. Looks at the cancel flag between
  // macros (a value may hold its own macro and never end): throws LauncherException "Canceled by
  // the user."; passes on what `processMacro` throws.
  SString resolve(const SString& text, char delimiter) const;
};

#endif
