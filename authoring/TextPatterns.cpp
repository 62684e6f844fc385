#include "authoring/TextPatterns.h"

#include <algorithm>

#include "tagfile/Quotes.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

namespace authoring {
namespace {

constexpr std::string_view kCommentMarks[] = {"#", "//", ";", "/*", "<!--"};

constexpr std::string_view kDigits = "0123456789";
constexpr std::string_view kCalculations = "+-*/%";

// ASCII, whatever the locale.
bool isCapital(char byte) {
  return byte >= 'A' && byte <= 'Z';
}
bool isDigit(char byte) {
  return byte >= '0' && byte <= '9';
}
bool isLetter(char byte) {
  return isCapital(byte) || (byte >= 'a' && byte <= 'z');
}

}  // namespace

bool isVariableName(std::string_view text) {
  const auto fits = [](char byte) { return isLetter(byte) || isDigit(byte) || byte == '_'; };
  return !text.empty() && !isDigit(text[0]) && std::all_of(text.begin(), text.end(), fits);
}

bool isAssignment(std::string_view word) {
  const std::size_t equals = word.find('=');
  return equals != word.npos && isVariableName(word.substr(0, equals));
}

bool isJavaPath(std::string_view path) {
  return path.substr(path.rfind('/') + 1) == "java";
}

bool looksLikeATag(std::string_view text) {
  const auto fits = [](char byte) { return isCapital(byte) || isDigit(byte) || byte == '_'; };
  return text.size() > 1 && isCapital(text[0]) && std::all_of(text.begin(), text.end(), fits);
}

bool isDigits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), isDigit);
}

bool isHex(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789abcdefABCDEF") == text.npos;
}

bool looksLikeAComment(std::string_view line) {
  const bool isMacro = line.starts_with('#') && firstWord(line).find('#', 2) != line.npos;
  if (isMacro) {
    return false;  // such as #HOME#
  }
  return std::any_of(std::begin(kCommentMarks), std::end(kCommentMarks),
                     [line](std::string_view mark) { return line.starts_with(mark); });
}

std::size_t findTrailingComment(std::string_view value) {
  for (std::size_t blank = value.find_first_of(kBlanks); blank != std::string_view::npos;
       blank = value.find_first_of(kBlanks, blank + 1)) {
    const std::string_view rest = value.substr(blank + 1);
    if (rest.starts_with("#") || rest == "//" || rest.starts_with("// ")) {
      return blank;
    }
  }
  return std::string_view::npos;
}

bool looksCalculated(std::string_view value) {
  const bool isReference = value.starts_with('@');
  const std::size_t end = isReference ? value.find('@', 1) : value.find_first_not_of(kDigits);
  if (end == value.npos || end == 0) {
    return false;
  }
  const std::string_view rest = withoutBlanks(value.substr(isReference ? end + 1 : end));
  return !rest.empty() && !looksLikeAComment(rest) && kCalculations.find(rest[0]) != rest.npos;
}

std::string textBehindQuote(std::string_view value) {
  if (value.empty() || value[0] != kQuote) {
    return "";
  }
  try {
    const SString text(value);
    std::size_t position = 1;
    (void)parseStringArgument(text, position, true);
    return std::string(withoutBlanks(text.view().substr(std::min(position, text.size()))));
  } catch (const LauncherException&) {
    return "";
  }
}

std::string_view firstWord(std::string_view text) {
  return text.substr(0, text.find_first_of(kBlanks));
}

}  // namespace authoring
