#include "launchscript/ShellQuoting.h"

#include <algorithm>
#include <string_view>

namespace {

bool isOneOf(char byte, std::string_view set) {
  return set.find(byte) != std::string_view::npos;
}

// Letters, digits and what else means nothing to any shell, anywhere.
bool isPlain(char byte) {
  const auto number = static_cast<unsigned char>(byte);
  return number >= 0x80 || (number >= '0' && number <= '9') || (number >= 'A' && number <= 'Z') ||
         (number >= 'a' && number <= 'z') || isOneOf(byte, "/._-+,:@%");
}

bool needsQuoting(const CommandText& text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text.isInserted(i) && !isPlain(text.bytes()[i])) {
      return true;
    }
  }
  return false;
}

// Reads a command along its shape, as far as quotes and brackets go, and writes it anew.
class Quoter {
 public:
  explicit Quoter(const CommandText& text) : m_text(text) {}

  SString run() {
    while (hasMore()) {
      readCommand();
    }
    return m_result;
  }

 private:
  enum class Place { Bare, InDoubleQuotes };

  bool hasMore() const { return m_position < m_text.size(); }
  bool isAtInserted() const { return m_text.isInserted(m_position); }
  char seen(std::size_t ahead = 0) const { return m_text.shape()[m_position + ahead]; }

  void put() { m_result += m_text.bytes()[m_position++]; }
  void put(std::size_t count) {
    for (; count > 0 && hasMore(); --count) {
      put();
    }
  }

  void putInserted(Place place) {
    const char byte = m_text.bytes()[m_position];
    if (byte == '\n' && place == Place::Bare) {
      m_result += "'\n'";  // after a backslash it would vanish
      ++m_position;
      return;
    }
    const bool isSyntax = place == Place::Bare ? !isPlain(byte) : isOneOf(byte, "\"$`\\");
    if (isSyntax) {
      m_result += '\\';
    }
    put();
  }

  // To the end, or one past the ")" that belongs to a "(" in front.
  void readCommand() {
    bool isWordStart = true;
    while (hasMore()) {
      const char byte = seen();
      if (byte == ')') {
        put();
        return;
      }
      if (byte == '(') {
        put();
        readCommand();
      } else if (byte == '#' && isWordStart) {
        readComment();
      } else {
        readPart(Place::Bare);
      }
      isWordStart = isOneOf(byte, " \t\n;&|()");
    }
  }

  // What can stand bare or in double quotes: a byte, a pair, a substitution, a quoted string.
  void readPart(Place place) {
    if (isAtInserted()) {
      putInserted(place);
      return;
    }
    switch (seen()) {
      case '\\':
        put(2);
        break;
      case '`':
        readBackquotes(place);
        break;
      case '$':
        readDollar(place);
        break;
      case '"':
        readDoubleQuotes();
        break;
      case '\'':
        place == Place::Bare ? readSingleQuotes() : put();
        break;
      default:
        put();
    }
  }

  void readDollar(Place place) {
    put();
    if (seen() == '(') {
      put();
      readCommand();
    } else if (seen() == '{') {
      put();
      readParameter(place);
    }
  }

  void readParameter(Place place) {
    while (hasMore() && seen() != '}') {
      const bool isBrace = isAtInserted() && m_text.bytes()[m_position] == '}';
      if (isBrace) {
        m_result += '\\';
        put();
      } else {
        readPart(place);
      }
    }
    put(1);
  }

  void readDoubleQuotes() {
    put();
    while (hasMore() && seen() != '"') {
      readPart(Place::InDoubleQuotes);
    }
    put(1);
  }

  void readSingleQuotes() {
    put();
    while (hasMore() && seen() != '\'') {
      if (m_text.bytes()[m_position] == '\'') {
        m_result += "'\\'";
      }
      put();
    }
    put(1);
  }

  void readComment() {
    while (hasMore() && seen() != '\n') {
      if (m_text.bytes()[m_position] == '\n') {
        m_result += ' ';
        ++m_position;
      } else {
        put();
      }
    }
  }

  // The shell takes one layer of backslashes from what stands in backquotes and reads the rest as a
  // command of its own; so do we.
  void readBackquotes(Place place) {
    const std::size_t begin = m_position + 1;
    std::size_t end = begin;
    while (end < m_text.size() && m_text.shape()[end] != '`') {
      end += m_text.shape()[end] == '\\' ? 2U : 1U;
    }
    const CommandText body = m_text.substr(begin, end - begin);
    if (!needsQuoting(body)) {
      put(end + 1 - m_position);
      return;
    }
    const std::string_view special = place == Place::Bare ? "\\`$" : "\\`$\"";
    m_result += '`';
    m_result += withBackslashes(quoteForShell(withoutBackslashes(body, special)), special);
    m_position = std::min(end, m_text.size());
    put(1);
  }

  static CommandText withoutBackslashes(CommandText text, std::string_view special) {
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
      if (text.shape()[i] == '\\' && isOneOf(text.shape()[i + 1], special)) {
        text.erase(i, 1);
      }
    }
    return text;
  }

  static SString withBackslashes(const SString& text, std::string_view special) {
    SString result;
    for (const char byte : text.view()) {
      if (isOneOf(byte, special)) {
        result += '\\';
      }
      result += byte;
    }
    return result;
  }

  const CommandText& m_text;
  std::size_t m_position = 0;
  SString m_result;
};

}  // namespace

SString quoteForShell(const CommandText& command) {
  return needsQuoting(command) ? Quoter(command).run() : command.bytes();
}
