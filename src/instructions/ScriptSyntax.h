// ScriptSyntax: splits a statement into its parts: arguments in quotes, the two sides of
// an assignment, references between "@". Shared by the interpreter and the checker of corvane-pack.
#ifndef CORVANE_INSTRUCTIONS_SCRIPTSYNTAX_H
#define CORVANE_INSTRUCTIONS_SCRIPTSYNTAX_H

#include <cstddef>
#include <optional>
#include <string_view>

#include "util/SString.h"

// Reads one argument, quoted or not, of `line` from `position` into `argument`, with its quotes;
// `position` is left where the next argument may begin. False when the closing quote is missing.
[[nodiscard]] bool readArgument(const SString& line, std::size_t& position, SString& argument);

// The first word of `text`, or what stands between its double quotes, doubled quotes as one. Throws
// the LauncherException of `parseStringArgument` when the closing quote is missing.
SString unquotedArgument(const SString& text);

struct Assignment {
  SString name;
  SString value;
};
// Both sides of the first "=", without the blanks around them; nothing when there is none.
[[nodiscard]] std::optional<Assignment> splitAssignment(std::string_view text);

// An "@" in a text, and the next one.
struct Reference {
  enum Kind { kNone, kUnclosed, kDoubled, kVariable };
  Kind kind = kNone;
  std::size_t begin = 0;  // of the first "@"
  std::size_t end = 0;    // of the second one

  SString name(const SString& text) const { return text.substr(begin + 1, end - begin - 1); }
};
// The first reference of `text` that begins at `from` or later.
Reference findReference(const SString& text, std::size_t from);

#endif
