// Double quotes around a text, in our own formats and messages. For words of a shell command see
// launchscript/ShellQuoting.
#ifndef CORVANE_TAGFILE_QUOTES_H
#define CORVANE_TAGFILE_QUOTES_H

#include <string_view>

#include "util/SString.h"

inline constexpr char kQuote = '"';

// The text between double quotes, its bytes as they are.
SString inQuotes(std::string_view text);

// The text as an argument that parseStringArgument reads back equal: between double quotes, with
// each quote inside doubled.
SString asQuotedArgument(std::string_view text);

#endif
