// CommandText: the text of a command while it is built. It knows which bytes the launcher put in.
//
// A template is the text of its author, and so are the tags, variables and side files that it
// names. The names of files that the launcher inserts may hold any byte and must mean nothing but
// themselves, neither to the template language nor to the shell. So beside its bytes the text has a
// *shape* of the same length, in which each inserted byte is a plain letter. Whoever looks for
// syntax reads the shape; the log and comparisons read the bytes; ShellQuoting hands the whole to
// the shell.
#ifndef CORVANE_LAUNCHSCRIPT_COMMANDTEXT_H
#define CORVANE_LAUNCHSCRIPT_COMMANDTEXT_H

#include <cstddef>
#include <vector>

#include "util/SString.h"

class CommandText {
 public:
  CommandText() = default;
  // What an author or a user wrote.
  CommandText(const SString& written) : m_bytes(written), m_shape(written) {}
  CommandText(const char* written) : CommandText(SString(written)) {}
  // What the launcher puts in by itself.
  static CommandText inserted(const SString& value);
  static CommandText insertedInQuotes(const SString& value);  // between written double quotes

  const SString& bytes() const { return m_bytes; }
  const SString& shape() const { return m_shape; }
  std::size_t size() const { return m_bytes.size(); }
  [[nodiscard]] bool empty() const { return m_bytes.empty(); }
  // False also for an inserted byte that is the letter of the shape: it means nothing anywhere.
  [[nodiscard]] bool isInserted(std::size_t pos) const { return m_bytes[pos] != m_shape[pos]; }

  // As those of SString.
  CommandText& append(const CommandText& text);
  CommandText& operator+=(const CommandText& text) { return append(text); }
  CommandText& replace(std::size_t pos, std::size_t count, const CommandText& text);
  CommandText& erase(std::size_t pos, std::size_t count = SString::npos);
  CommandText substr(std::size_t pos, std::size_t count = SString::npos) const;

  // Erases one written double quote at each end, as stripQuotes of TextUtils.
  void stripQuotes();

 private:
  CommandText(const SString& bytes, const SString& shape) : m_bytes(bytes), m_shape(shape) {}

  SString m_bytes;
  SString m_shape;
};

using CommandTexts = std::vector<CommandText>;

CommandText operator+(CommandText a, const CommandText& b);

#endif
