// Text helpers that all parsers share. They never log and know nothing of files.
//
// "Blank" means one of the four bytes space, tab, newline, carriage return. Positions are byte
// positions from 0; SString::npos stands for "no position". Numbers read from text are signed
// 32-bit (or 16-bit) on every machine.
#ifndef CORVANE_TAGFILE_TEXTUTILS_H
#define CORVANE_TAGFILE_TEXTUTILS_H

#include <cstdint>
#include <memory>
#include <string_view>

#include "util/SString.h"

inline constexpr const char* kBlanks = " \t\n\r";
inline constexpr const char* kPathSeparator = "/";

// True for blank, tab, newline and carriage return only.
bool isWhitespace(char byte);

// Erases all leading and trailing bytes that are in `set`.
void trim(SString& text, const char* set = kBlanks);
SString trimmed(SString text, const char* set = kBlanks);
// The part of `text` between its leading and trailing blanks.
std::string_view withoutBlanks(std::string_view text);

// Appends "/" unless `path` is empty or ends with one.
void appendPathSeparator(SString& path);

// `text` with its control bytes as a backslash and three octal digits: for names that must not
// break a line of the log.
SString onOneLine(std::string_view text);

// The position at which `suffix` begins when `text` ends with it, else npos.
std::size_t stringEndsWith(const SString& text, const char* suffix);

// Erases one leading and one trailing double quote, each independently of the other. A text that
// is a single double quote becomes empty.
void stripQuotes(SString& text);

// Appends to `line` the bytes from `position` up to a newline or the end, without carriage
// returns, trims `line`, and leaves `position` one past the newline (one past the end of the text
// when no newline ended the line). A position at or past the end leaves both untouched. A promised
// name, though nothing of ours calls it.
void readLineFromString(const SString& text, std::size_t& position, SString& line);
// The same without trimming: for text of another program, compared as it was printed.
void readRawLineFromString(const SString& text, std::size_t& position, SString& line);

// Skips white space (the C library's space class) from `position`, then returns the bytes up to
// the next white space or the end; empty when only white space remained. `position` is left one
// past the byte that ended the token (one past the end of the text when the text ran out).
SString getTokenFromString(const SString& text, std::size_t& position);

// Reads one argument from `position`.
// Unquoted: the bytes up to the next blank, at which `position` is left. Without a blank the
// result is the whole text, from its first byte, and `position` becomes npos.
// Quoted: `position` is the first byte after the opening double quote; the argument ends at the
// next lone double quote, two adjacent ones stand for one. `position` is left one past the closing
// quote, or npos when that is the end of the text. Throws LauncherException
// "Expected double quote to end argument near " and the position at which the search for a quote
// last began (npos, written -1, when the text ends with a doubled quote).
SString parseStringArgument(const SString& text, std::size_t& position, bool quoted);

// Decimal text, as "%ld" prints it.
SString convertToString(std::int32_t number);
// A position as the messages show it: decimal, npos as -1.
SString positionToString(std::size_t position);

// Read the decimal number at the start of `text`: leading white space and a sign are allowed, what
// follows the number is ignored. False, with `number` untouched, when there is none.
// Numbers outside the 32-bit range saturate; the 16-bit form then keeps the low 16 bits, as the
// C library's "%hd" does.
[[nodiscard]] bool convertToLong(const SString& text, std::int32_t& number);
[[nodiscard]] bool convertToShort(const SString& text, std::int16_t& number);

// The text as zero-terminated wide characters, with each escape (backslash, "u" or "U" and four
// hexadecimal digits) as one character. Bytes from 0x80 on are sign-extended. An escape whose
// four bytes begin with no hexadecimal digit stands for its backslash alone.
std::unique_ptr<wchar_t[]> convertToUnicode(const SString& text);

#endif
