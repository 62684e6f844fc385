// MacroHandler: replaces the names between two delimiters in a text.
//
// A delimiter that the launcher inserted is an ordinary byte.
//
// Base of JVMFile ("@": its tags) and LaunchScript ("%": functions, "#": environment variables).
#ifndef CORVANE_LAUNCHSCRIPT_MACROHANDLER_H
#define CORVANE_LAUNCHSCRIPT_MACROHANDLER_H

#include <cstddef>

#include "launchscript/CommandText.h"

// A text while its macros are replaced. What is resolved for good and what is still to be looked
// at are kept apart, so that a replacement does not move the rest of a long text: the cost stays
// linear in the number of macros. Positions are those in `rest`, unless said otherwise.
class MacroText {
 public:
  explicit MacroText(const CommandText& text) : m_rest(text) {}

  // The text in which the macros still stand; its first part may be done with.
  const CommandText& rest() const { return m_rest; }
  // The text as far as it was resolved, and where a position of `rest` lies in it.
  CommandText whole() const { return m_done + m_rest.substr(m_begin); }
  std::size_t positionInWhole(std::size_t position) const {
    return m_done.size() + (position - m_begin);
  }

  // Finds the delimiters of the next macro. A name has at least one character, which may itself be
  // the delimiter.
  [[nodiscard]] bool findMacro(char delimiter, std::size_t& start, std::size_t& end) const;
  // Puts `value` in the place of the bytes from `start` to `end` inclusive. A value that holds the
  // delimiter will be looked at again.
  void replace(std::size_t start, std::size_t end, const CommandText& value, char delimiter);
  // The whole text, each doubled delimiter that is left replaced by a single one.
  CommandText finish(char delimiter) const;

 private:
  CommandText m_done;  // holds no delimiter
  CommandText m_rest;
  std::size_t m_begin = 0;  // where the part of `m_rest` begins that is not in `m_done`
};

class MacroHandler {
 public:
  virtual ~MacroHandler() = default;

  // The value of one macro. `start` and `end` are the positions in `text.rest()` of its opening and
  // closing delimiter; the handler moves `end` to the last byte that the value replaces, where that
  // lies further on.
  virtual CommandText processMacro(const MacroText& text, char delimiter, std::size_t start,
                                   std::size_t& end) const = 0;

  // A copy of `text` in which every macro is replaced. A replacement is scanned again; a doubled
  // delimiter that pairs with no later one becomes a single one. Looks at the cancel flag between
  // macros (a value may hold its own macro and never end): throws LauncherException "Canceled by
  // the user."; passes on what `processMacro` throws.
  CommandText resolve(const CommandText& text, char delimiter) const;
};

#endif
