#include "platform/ShellWords.h"

#include "tagfile/Quotes.h"

SString fileNameForShell(const SString& path) {
  return inQuotes(path);
}

// QUIRK(only-quotes-are-escaped): "$", "`" and "\" of an argument reach the shell as they are; an
// argument that ends with a single "\" spoils the command.
SString argumentForShell(const SString& argument) {
  SString word;
  for (const char byte : argument.view()) {
    if (byte == kQuote) {
      word += '\\';
    }
    word += byte;
  }
  return inQuotes(word);
}
