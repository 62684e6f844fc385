// PlainWords: the words of a command that needs no shell.
#ifndef CORVANE_LAUNCHSCRIPT_PLAINWORDS_H
#define CORVANE_LAUNCHSCRIPT_PLAINWORDS_H

#include <optional>

#include "launchscript/CommandText.h"
#include "util/StringDeque.h"

// What a shell makes of a command that is words only, some of them in double quotes, in which it
// expands nothing. Empty for every other command: what any shell may take for more counts as more.
[[nodiscard]] std::optional<StringDeque> plainWords(const CommandText& command);

#endif
