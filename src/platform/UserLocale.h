// What the environment says about the user: the locale, and the charset of the terminal.
#ifndef CORVANE_PLATFORM_USERLOCALE_H
#define CORVANE_PLATFORM_USERLOCALE_H

#include <string_view>

#include "platform/Charset.h"

// The name of the user's locale for a category ("LC_CTYPE", "LC_MESSAGES"), as the C library
// chooses it: the first of LC_ALL, the category and LANG that is not empty; "" when all are.
const char* userLocale(const char* category);

// The charset in a locale's name, as in "de_DE.UTF-8@euro"; empty when it names none. What stands
// behind the "@" is the variant, points and all.
std::string_view charsetInName(std::string_view locale);

enum class NamedCharset {
  MustBeInstalled,  // a locale that is not installed has the charset of "C", if not UTF-8
  IsBelieved        // the charset in the locale's name counts, installed or not
};

// The user's charset; ASCII when it is unknown, or one that we have no table of. A locale that
// names no charset ("de_DE") has that of the installed locale.
Charset userCharset(NamedCharset rule);

#endif
