// ShellQuoting: hands a command to /bin/sh so that what the launcher inserted arrives byte for
// byte.
#ifndef CORVANE_LAUNCHSCRIPT_SHELLQUOTING_H
#define CORVANE_LAUNCHSCRIPT_SHELLQUOTING_H

#include "launchscript/CommandText.h"
#include "util/SString.h"

// The command as the shell is to read it: what was written stands as it is, inserted bytes that the
// shell would take for syntax are quoted as fits the place: bare, in quotes of either kind, in
// command and parameter substitutions nested in any way. A command whose inserted names are
// ordinary stays as it is.
//
// Two things are not looked at: here-documents, since the tags that commands are made of are single
// lines, and a pattern of "case" without its opening parenthesis inside "$(...)".
[[nodiscard]] SString quoteForShell(const CommandText& command);

#endif
