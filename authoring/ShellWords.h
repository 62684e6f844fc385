// ShellWords: the commands and words that a shell makes of a text. Nothing is expanded: variables
// and patterns stay as they are written.
#ifndef CORVANE_AUTHORING_SHELLWORDS_H
#define CORVANE_AUTHORING_SHELLWORDS_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace authoring {

// What the shell's quotes are at a place of a text.
class ShellQuotes {
 public:
  // Reads on to `end`, which never goes back; one byte further when a backslash stands before it.
  void readTo(std::string_view text, std::size_t end);
  std::size_t position() const { return m_position; }
  bool areOpen() const { return m_open != '\0'; }

 private:
  std::size_t m_position = 0;
  char m_open = '\0';
};

// One program with its arguments.
struct ShellCommand {
  std::vector<std::string> words;  // without quotes; redirections are left out
  bool isLast = true;              // false: a sign such as ; or | or ) stands behind it
};

// Commands without words are left out. Empty for a text with substitutions or here-documents,
// which this does not read.
std::vector<ShellCommand> readShellCommands(std::string_view text);

// False for a text whose quotes only a shell can read: it has substitutions, here-documents or
// comments.
bool hasPlainQuotes(std::string_view text);
// False when a quote is not closed; true for a text whose quotes are not plain.
bool hasClosedQuotes(std::string_view text);

// True when a word begins with # outside quotes. False for a text with substitutions.
bool hasShellComment(std::string_view text);

// The first byte outside quotes that ends a word or a command, such as a blank or ;. The null byte
// when the text is part of one word, or its quotes are not plain.
char findWordEnd(std::string_view text);

}  // namespace authoring

#endif
