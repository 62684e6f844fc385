#include "instructions/ScriptSyntax.h"

#include "tagfile/TextUtils.h"

namespace {

// Follows one argument through a line, byte by byte.
class ArgumentScanner {
 public:
  // True when `byte`, before `next`, belongs to the argument (its quotes included).
  bool accepts(char byte, char next);

  bool isDone() const { return m_done; }
  bool isQuoted() const { return m_quoted; }

 private:
  void scanQuoted(char byte, char next);

  bool m_leading = true;
  bool m_quoted = false;
  bool m_done = false;
  bool m_oddQuotes = false;  // the run of quotes that ends here has an odd length
};

bool ArgumentScanner::accepts(char byte, char next) {
  if (m_leading) {
    m_quoted = byte == '"';
    m_leading = isWhitespace(byte);
    return !m_leading;
  }
  if (m_quoted) {
    scanQuoted(byte, next);
    return true;
  }
  m_done = isWhitespace(byte);
  return !m_done;
}

// A quote closes the argument when it ends a run of odd length; doubled quotes do not.
void ArgumentScanner::scanQuoted(char byte, char next) {
  m_oddQuotes = byte == '"' && !m_oddQuotes;
  m_done = m_oddQuotes && next != '"';
}

}  // namespace

bool readArgument(const SString& line, std::size_t& position, SString& argument) {
  argument.clear();
  ArgumentScanner scanner;
  char byte = line[position++];
  // QUIRK(last-character-of-launch): a byte counts only when another one follows it. An argument at
  // the very end of a line loses its last character, or its closing quote.
  while (position < line.size() && !scanner.isDone()) {
    if (scanner.accepts(byte, line[position])) {
      argument += byte;
    }
    if (!scanner.isDone()) {
      byte = line[position++];
    }
  }
  return scanner.isDone() || !scanner.isQuoted();
}

// QUIRK(unquoted-first-word): an unquoted text with blanks in it is cut at the first one.
SString unquotedArgument(const SString& text) {
  const bool isQuoted = text[0] == '"';
  std::size_t position = isQuoted ? 1 : 0;
  return parseStringArgument(text, position, isQuoted);
}

std::optional<Assignment> splitAssignment(std::string_view text) {
  const std::size_t equals = text.find('=');
  if (equals == text.npos) {
    return std::nullopt;
  }
  return Assignment{SString(withoutBlanks(text.substr(0, equals))),
                    SString(withoutBlanks(text.substr(equals + 1)))};
}

Reference findReference(const SString& text, std::size_t from) {
  const std::size_t begin = text.find('@', from);
  if (begin == SString::npos) {
    return {};
  }
  const std::size_t end = text.find('@', begin + 1);
  if (end == SString::npos) {
    return {Reference::kUnclosed, begin, end};
  }
  return {end == begin + 1 ? Reference::kDoubled : Reference::kVariable, begin, end};
}
