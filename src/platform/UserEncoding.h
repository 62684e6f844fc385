// UserEncoding: for the length of a scope, characters are converted by the user's locale.
//
// The process runs in the "C" locale, in which nothing beyond ASCII can be converted; loading
// another one costs files and time. So whoever must convert a text holds one of these, and only
// when `isNeededFor` says so. Only the character type (LC_CTYPE) changes; at the end of the scope
// it is what it was. When the user's locale is not installed but its encoding is UTF-8, "C.UTF-8"
// takes its place; when that is missing too, nothing changes.
#ifndef CORVANE_PLATFORM_USERENCODING_H
#define CORVANE_PLATFORM_USERENCODING_H

#include "util/SString.h"

class UserEncoding {
 public:
  UserEncoding();
  ~UserEncoding();
  UserEncoding(const UserEncoding&) = delete;
  UserEncoding& operator=(const UserEncoding&) = delete;

  // True when the zero-terminated text holds a character beyond ASCII.
  static bool isNeededFor(const wchar_t* text);
  // True when the locale's name, as in LANG, asks for UTF-8 ("de_DE.UTF-8", "C.utf8@x").
  static bool isUtf8(const SString& localeName);

 private:
  SString m_saved;
};

#endif
