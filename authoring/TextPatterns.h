// TextPatterns: what a text looks like. The checks of texts share these questions.
#ifndef CORVANE_AUTHORING_TEXTPATTERNS_H
#define CORVANE_AUTHORING_TEXTPATTERNS_H

#include <cstddef>
#include <string>
#include <string_view>

namespace authoring {

// A letter or "_", then letters, digits and "_".
bool isVariableName(std::string_view text);
// NAME=VALUE in front of a command.
bool isAssignment(std::string_view word);
// java, or a path that ends with /java.
bool isJavaPath(std::string_view path);
// Capitals, digits and "_" from a capital on, two bytes or more: what authors call a tag.
bool looksLikeATag(std::string_view text);
// Digits alone, at least one.
bool isDigits(std::string_view text);

// Hexadecimal digits alone, at least one.
bool isHex(std::string_view text);

// True when the line begins as comments do elsewhere: #, //, ;, /*, <!--.
bool looksLikeAComment(std::string_view line);
// Where a comment seems to begin behind a value: at a blank before # or //; npos without one.
std::size_t findTrailingComment(std::string_view value);

// What stands behind the closing quote of a value in quotes, where nobody reads it; empty when
// there is nothing, or no closing quote.
std::string textBehindQuote(std::string_view value);

// True for a number or a reference with a sign behind it: "2-1", "@N1@ + 1".
bool looksCalculated(std::string_view value);

// The bytes up to the first blank.
std::string_view firstWord(std::string_view text);

}  // namespace authoring

#endif
