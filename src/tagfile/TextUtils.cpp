#include "tagfile/TextUtils.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>

#include "tagfile/Quotes.h"
#include "util/LauncherException.h"

namespace {

constexpr const char* kQuoteMissing = "Expected double quote to end argument near ";

constexpr std::size_t kEscapeDigits = 4;
constexpr std::size_t kEscapeLength = 2 + kEscapeDigits;

bool isSpace(char byte) {
  return std::isspace(static_cast<unsigned char>(byte)) != 0;
}

SString parseUnquoted(const SString& text, std::size_t& position) {
  const std::size_t blank = text.find_first_of(kBlanks, position);
  if (blank == SString::npos) {
    // QUIRK(unquoted-to-the-end): without a blank the argument is the whole text, including what
    // stands before the position.
    position = SString::npos;
    return text;
  }
  SString argument = text.substr(position, blank - position);
  position = blank;
  return argument;
}

// Appends the argument up to its closing quote; false when that is missing.
bool takeQuoted(const SString& text, std::size_t& position, SString& argument) {
  for (;;) {
    const std::size_t quote = text.find(kQuote, position);
    if (quote == SString::npos) {
      return false;
    }
    if (text[quote + 1] != kQuote) {
      argument.append(text.view().substr(position, quote - position));
      position = quote + 1;
      return true;
    }
    if (quote + 2 == text.size()) {
      // QUIRK(doubled-quote-at-the-end): a doubled quote at the end of the text closes nothing, and
      // the position becomes npos, which the message shows as -1.
      position = SString::npos;
      return false;
    }
    argument.append(text.view().substr(position, quote + 1 - position));
    position = quote + 2;
  }
}

SString parseQuoted(const SString& text, std::size_t& position) {
  SString argument;
  if (!takeQuoted(text, position, argument)) {
    throw LauncherException(kQuoteMissing + positionToString(position));
  }
  if (position >= text.size()) {
    position = SString::npos;
  }
  return argument;
}

// Reads the escape at `pos`. False when there is none.
bool readEscape(std::string_view text, std::size_t pos, wchar_t& character) {
  if (text.size() - pos < kEscapeLength || text[pos] != '\\' ||
      (text[pos + 1] != 'u' && text[pos + 1] != 'U')) {
    return false;
  }
  char digits[kEscapeDigits + 1] = {};
  std::memcpy(digits, text.data() + pos + 2, kEscapeDigits);
  unsigned int code = 0;
  // QUIRK(short-unicode-escape): "%x" stops at the first byte that is no hexadecimal digit: fewer
  // than four digits give a character, too, and all four bytes are consumed.
  if (std::sscanf(digits, "%x", &code) != 1) {  // NOLINT(cert-err34-c)
    return false;
  }
  character = static_cast<wchar_t>(code);
  return true;
}

}  // namespace

bool isWhitespace(char byte) {
  return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r';
}

void trim(SString& text, const char* set) {
  const std::size_t last = text.find_last_not_of(set);
  text.erase(last == SString::npos ? 0 : last + 1);
  text.erase(0, text.find_first_not_of(set));
}

SString trimmed(SString text, const char* set) {
  trim(text, set);
  return text;
}

std::string_view withoutBlanks(std::string_view text) {
  while (!text.empty() && isWhitespace(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && isWhitespace(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

void appendPathSeparator(SString& path) {
  if (!path.empty() && !path.endsWith(kPathSeparator)) {
    path += kPathSeparator;
  }
}

SString onOneLine(std::string_view text) {
  SString line;
  for (const char byte : text) {
    if (static_cast<unsigned char>(byte) < ' ' || byte == '\x7f') {
      char escape[5];
      std::snprintf(escape, sizeof escape, "\\%03o", static_cast<unsigned>(byte));
      line += escape;
    } else {
      line += byte;
    }
  }
  return line;
}

std::size_t stringEndsWith(const SString& text, const char* suffix) {
  return text.endsWith(suffix) ? text.size() - std::strlen(suffix) : SString::npos;
}

void stripQuotes(SString& text) {
  if (text[0] == kQuote) {
    text.erase(0, 1);
  }
  if (text.back() == kQuote) {
    text.erase(text.size() - 1);
  }
}

void readRawLineFromString(const SString& text, std::size_t& position, SString& line) {
  if (position >= text.size()) {
    return;
  }
  const std::size_t end = std::min(text.find('\n', position), text.size());
  std::string_view bytes = text.view().substr(position, end - position);
  for (std::size_t skip = bytes.find('\r'); skip != bytes.npos; skip = bytes.find('\r')) {
    line.append(bytes.substr(0, skip));
    bytes.remove_prefix(skip + 1);
  }
  line.append(bytes);
  position = end + 1;
}

void readLineFromString(const SString& text, std::size_t& position, SString& line) {
  if (position < text.size()) {
    readRawLineFromString(text, position, line);
    trim(line);
  }
}

SString getTokenFromString(const SString& text, std::size_t& position) {
  const std::size_t size = text.size();
  std::size_t begin = std::min(position, size);
  while (begin < size && isSpace(text[begin])) {
    ++begin;
  }
  std::size_t end = begin;
  while (end < size && !isSpace(text[end])) {
    ++end;
  }
  position = end + 1;
  return text.substr(begin, end - begin);
}

SString parseStringArgument(const SString& text, std::size_t& position, bool quoted) {
  return quoted ? parseQuoted(text, position) : parseUnquoted(text, position);
}

SString convertToString(std::int32_t number) {
  char digits[16];
  std::snprintf(digits, sizeof digits, "%ld", static_cast<long>(number));
  return digits;
}

SString positionToString(std::size_t position) {
  if (position == SString::npos) {
    return "-1";
  }
  char digits[32];
  std::snprintf(digits, sizeof digits, "%zu", position);
  return digits;
}

bool convertToLong(const SString& text, std::int32_t& number) {
  using Limits = std::numeric_limits<std::int32_t>;
  char* end = nullptr;
  const long long value = std::strtoll(text.c_str(), &end, 10);
  if (end == text.c_str()) {
    return false;
  }
  number = static_cast<std::int32_t>(std::clamp<long long>(value, Limits::min(), Limits::max()));
  return true;
}

bool convertToShort(const SString& text, std::int16_t& number) {
  std::int32_t value = 0;
  if (!convertToLong(text, value)) {
    return false;
  }
  // QUIRK(short-keeps-low-bits): 65536 reads as 0.
  number = static_cast<std::int16_t>(static_cast<std::uint16_t>(value));
  return true;
}

std::unique_ptr<wchar_t[]> convertToUnicode(const SString& text) {
  auto wide = std::make_unique<wchar_t[]>(text.size() + 1);
  std::size_t out = 0;
  for (std::size_t in = 0; in < text.size(); ++out) {
    if (readEscape(text, in, wide[out])) {
      in += kEscapeLength;
    } else {
      wide[out] = static_cast<wchar_t>(static_cast<signed char>(text[in++]));
    }
  }
  return wide;
}
