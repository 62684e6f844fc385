// MacroHandler: replaces the names between two delimiters in a text.
//
// A delimiter that the launcher inserted is an ordinary byte.
//
// Base of JVMFile ("@": its tags) and LaunchScript ("%": functions, "#": environment variables).
#ifndef CORVANE_LAUNCHSCRIPT_MACROHANDLER_H
#define CORVANE_LAUNCHSCRIPT_MACROHANDLER_H

#include <cstddef>

#include "launchscript/CommandText.h"

// A text while its macros are replaced. What is resolved is kept apart from what is pending, so
// that a replacement does not move the rest of a long text: the cost stays linear in the number of
// macros. Positions are those in `buffer`, unless said otherwise.
class MacroText {
 public:
  explicit MacroText(const CommandText& text) : m_buffer(text) {}

  // Ends with the pending text; what stands before that is already resolved and no longer counts.
  const CommandText& buffer() const { return m_buffer; }
  // The whole text as it is now, and where a position of `buffer` lies in it.
  CommandText whole() const { return m_resolved + m_buffer.substr(m_pendingStart); }
  std::size_t positionInWhole(std::size_t position) const {
    return m_resolved.size() + (position - m_pendingStart);
  }

  // Finds the delimiters of the next macro. A name has at least one character, which may itself be
  // the delimiter.
  [[nodiscard]] bool findMacro(char delimiter, std::size_t& start, std::size_t& end) const;
  // Replaces the bytes from `start` to `end` inclusive by `value`. A value that holds the delimiter
  // is scanned again.
  void replace(std::size_t start, std::size_t end, const CommandText& value, char delimiter);
  // The whole text, each doubled delimiter that is left replaced by a single one.
  CommandText finish(char delimiter) const;

 private:
  CommandText m_resolved;  // holds no delimiter
  CommandText m_buffer;
  std::size_t m_pendingStart = 0;  // the part of `m_buffer` from here is not in `m_resolved`
};

class MacroHandler {
 public:
  virtual ~MacroHandler() = default;

  // The value of one macro. `start` and `end` are the positions in `text.buffer()` of its opening
  // and closing delimiter; the handler moves `end` to the last byte that the value replaces, where
  // that lies further on.
  virtual CommandText processMacro(const MacroText& text, char delimiter, std::size_t start,
                                   std::size_t& end) const = 0;

  // A copy of `text` in which every macro is replaced. A replacement is scanned again; a doubled
  // delimiter that pairs with no later one becomes a single one. Looks at the cancel flag between
  // macros (a value may hold its own macro and never end): throws LauncherException "Canceled by
  // the user."; passes on what `processMacro` throws.
  CommandText resolve(const CommandText& text, char delimiter) const;
};

#endif
