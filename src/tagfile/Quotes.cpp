#include "tagfile/Quotes.h"

SString inQuotes(std::string_view text) {
  SString result;
  result.reserve(text.size() + 2);
  result += kQuote;
  result += text;
  return result += kQuote;
}

SString asQuotedArgument(std::string_view text) {
  SString result;
  result += kQuote;
  for (const char byte : text) {
    result.append(byte == kQuote ? 2 : 1, byte);
  }
  return result += kQuote;
}
