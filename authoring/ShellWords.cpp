#include "authoring/ShellWords.h"

#include <algorithm>

#include "authoring/TextPatterns.h"
#include "tagfile/TextUtils.h"

namespace authoring {
namespace {

constexpr std::string_view kEndsACommand = ";|&()\n";
constexpr std::string_view kEndsAWord = " \t\n;|&()<>";
// What only a shell can read.
constexpr std::string_view kSubstitutions[] = {"$(", "`", "<<"};
constexpr std::string_view kComment = " #";

bool contains(std::string_view set, char byte) {
  return set.find(byte) != set.npos;
}

bool hasSubstitutions(std::string_view text) {
  for (const std::string_view mark : kSubstitutions) {
    if (text.find(mark) != text.npos) {
      return true;
    }
  }
  return false;
}

// The first place outside quotes, and behind no backslash, that `fits`.
template <class Predicate>
std::size_t findUnquoted(std::string_view text, Predicate fits) {
  ShellQuotes quotes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    quotes.readTo(text, i);
    const bool isEscaped = quotes.position() > i;
    if (!quotes.areOpen() && !isEscaped && fits(i)) {
      return i;
    }
  }
  return text.npos;
}

class CommandReader {
 public:
  explicit CommandReader(std::string_view text) : m_text(text) {}

  std::vector<ShellCommand> read() {
    while (!isAtEnd() && !isAtComment()) {
      if (contains("<>", byte())) {
        skipRedirection();
      } else if (contains(kEndsACommand, byte())) {
        ++m_position;
        endCommand();
      } else if (isWhitespace(byte())) {
        ++m_position;
      } else {
        readWordOrDescriptor();
      }
    }
    add();
    return std::move(m_commands);
  }

 private:
  bool isAtEnd() const { return m_position >= m_text.size(); }
  char byte() const { return m_text[m_position]; }

  // "#" at the beginning of a word; not "#NAME#", a macro.
  bool isAtComment() const {
    return byte() == '#' && firstWord(m_text.substr(m_position)).find('#', 1) == m_text.npos;
  }

  void add() {
    if (!m_command.words.empty()) {
      m_commands.push_back(std::move(m_command));
    }
    m_command = {};
  }

  void endCommand() {
    add();
    if (!m_commands.empty()) {
      m_commands.back().isLast = false;
    }
  }

  // ">file", "2>&1", "<file"
  void skipRedirection() {
    while (!isAtEnd() && contains("<>&|", byte())) {
      ++m_position;
    }
    while (!isAtEnd() && isWhitespace(byte())) {
      ++m_position;
    }
    (void)readWord();
  }

  void readWordOrDescriptor() {
    std::string word = readWord();
    const bool isDescriptor = !word.empty() && word.find_first_not_of("0123456789") == word.npos &&
                              !isAtEnd() && contains("<>", byte());
    if (!isDescriptor) {
      m_command.words.push_back(std::move(word));
    }
  }

  std::string readWord() {
    const std::string_view rest = m_text.substr(m_position);
    std::string word;
    ShellQuotes quotes;
    std::size_t at = 0;
    while (at < rest.size() && (quotes.areOpen() || !contains(kEndsAWord, rest[at]))) {
      const bool wereOpen = quotes.areOpen();
      quotes.readTo(rest, at + 1);
      at = std::min(quotes.position(), rest.size());
      if (quotes.areOpen() == wereOpen) {
        word += rest[at - 1];
      }
    }
    m_position += at;
    return word;
  }

  std::string_view m_text;
  std::size_t m_position = 0;
  ShellCommand m_command;
  std::vector<ShellCommand> m_commands;
};

}  // namespace

void ShellQuotes::readTo(std::string_view text, std::size_t end) {
  for (; m_position < end; ++m_position) {
    const char byte = text[m_position];
    if (byte == '\\' && m_open != '\'') {
      ++m_position;
    } else if (m_open != '\0') {
      m_open = byte == m_open ? '\0' : m_open;
    } else if (byte == '"' || byte == '\'') {
      m_open = byte;
    }
  }
}

std::vector<ShellCommand> readShellCommands(std::string_view text) {
  return hasSubstitutions(text) ? std::vector<ShellCommand>() : CommandReader(text).read();
}

bool hasPlainQuotes(std::string_view text) {
  return !hasSubstitutions(text) && text.find(kComment) == text.npos;
}

bool hasClosedQuotes(std::string_view text) {
  ShellQuotes quotes;
  quotes.readTo(text, text.size());
  return !quotes.areOpen() || !hasPlainQuotes(text);
}

bool hasShellComment(std::string_view text) {
  const auto begins = [text](std::size_t i) {
    return text[i] == '#' && i > 0 && isWhitespace(text[i - 1]);
  };
  return !hasSubstitutions(text) && findUnquoted(text, begins) != text.npos;
}

char findWordEnd(std::string_view text) {
  const auto ends = [text](std::size_t i) { return contains(kEndsAWord, text[i]); };
  const std::size_t end = hasPlainQuotes(text) ? findUnquoted(text, ends) : text.npos;
  return end == text.npos ? '\0' : text[end];
}

}  // namespace authoring
