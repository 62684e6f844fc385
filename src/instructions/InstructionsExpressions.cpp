// The expressions: substitution of variables, and arguments as numbers, booleans and strings.
#include "instructions/Instructions.h"
#include "instructions/VariableRef.h"
#include "platform/PlatformImpl.h"
#include "tagfile/TextUtils.h"

namespace {

constexpr const char* kEmptyExpression = " Empty expression.";
constexpr const char* kInvalidSpecification = " Invalid variable specification.";
constexpr const char* kInvalidNumber = "Invalid numeric expression (";
constexpr const char* kInvalidBoolean = " Invalid boolean value (";
constexpr const char* kNoEndingQuote = "Expected ending quote in ";

// More than an honest argument needs; values that name themselves go on for ever.
constexpr std::uint32_t kUnwatchedSubstitutions = 1000;

// Follows one argument through a line, byte by byte.
class ArgumentScanner {
 public:
  // True when `byte`, in front of `next`, belongs to the argument (its quotes included).
  bool accepts(char byte, char next);

  bool isDone() const { return m_done; }
  bool isQuoted() const { return m_quoted; }

 private:
  void scanQuoted(char byte, char next);

  bool m_leading = true;
  bool m_quoted = false;
  bool m_done = false;
  bool m_oddQuotes = false;  // in the run of quotes that ends here
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

// The closing quote is the odd one of a run that ends; a doubled quote goes on.
void ArgumentScanner::scanQuoted(char byte, char next) {
  m_oddQuotes = byte == '"' && !m_oddQuotes;
  m_done = m_oddQuotes && next != '"';
}

}  // namespace

void Instructions::evalExpr(SString& text, std::string_view prefix) const {
  if (text.empty()) {
    throwException(SString(prefix) + kEmptyExpression);
  }
  std::uint32_t count = 0;
  // QUIRK(doubled-at-read-again): a pass that replaced a reference is followed by another one,
  // which resolves references in values, but reads an @@ that became @ as the start of a reference.
  while (substitute(text, prefix, count)) {
  }
}

bool Instructions::substitute(SString& text, std::string_view prefix, std::uint32_t& count) const {
  bool replaced = false;
  std::size_t start = text.find('@');
  while (start != SString::npos) {
    const std::size_t end = text.find('@', start + 1);
    if (end == SString::npos) {
      throwException(SString(prefix) + kInvalidSpecification);
    }
    if (++count > kUnwatchedSubstitutions) {
      stopIfCanceled();
    }
    if (end == start + 1) {
      text.erase(end, 1);
      start = text.find('@', start + 1);
      continue;
    }
    replaced = true;
    VariableRef variable;
    variable.init(text.substr(start + 1, end - start - 1), prefix);
    text.replace(start, end - start + 1, variable.getStringValue());
    start = text.find('@', start);  // at the value itself, which may begin with a reference
  }
  return replaced;
}

std::int32_t Instructions::evalLongExpr(const SString& text, std::string_view prefix) const {
  SString value = text;
  evalExpr(value, prefix);
  std::int32_t number = 0;
  if (!convertToLong(value, number)) {
    // QUIRK(long-error-without-blank): nothing stands between the prefix and this text; callers
    // compare the whole message.
    throwException(SString(prefix) + kInvalidNumber + value + ")");
  }
  return number;
}

std::int16_t Instructions::evalShortExpr(const SString& text, std::string_view prefix) const {
  SString value = text;
  evalExpr(value, prefix);
  std::int16_t number = 0;
  if (!convertToShort(value, number)) {
    // QUIRK(short-error-with-blank): unlike the long form, and also behind an empty prefix.
    throwException(SString(prefix) + " " + kInvalidNumber + value + ")");
  }
  return number;
}

bool Instructions::evalBoolExpr(const SString& text, std::string_view prefix) const {
  const std::int32_t value = evalLongExpr(text, prefix);
  if (value != 0 && value != 1) {
    // QUIRK(boolean-error-as-written): the argument is shown before substitution, so that the
    // reference can be found in the script; the numeric errors show it afterwards.
    throwException(SString(prefix) + kInvalidBoolean + text + ")");
  }
  return value == 1;
}

// QUIRK(empty-quotes-are-an-error): "" becomes an empty text, which cannot be substituted, whereas
// nothing at all is a fine empty string.
// QUIRK(unquoted-first-word): an unquoted text with blanks in it is cut at the first one.
void Instructions::evalStringExpr(SString& text, std::string_view prefix) const {
  if (text.empty()) {
    return;
  }
  const bool isQuoted = text[0] == '"';
  std::size_t position = isQuoted ? 1 : 0;
  text = parseStringArgument(text, position, isQuoted);
  evalExpr(text, prefix);
}

void Instructions::evalStringExpr(const SString& line, std::size_t& position, SString& out,
                                  std::string_view prefix) const {
  out.clear();
  ArgumentScanner scanner;
  char byte = line[position++];
  // QUIRK(last-character-of-launch): a byte counts only when another one follows it, so that an
  // argument at the very end of a line loses its last character, or its closing quote.
  while (position < line.size() && !scanner.isDone()) {
    if (scanner.accepts(byte, line[position])) {
      out += byte;
    }
    if (!scanner.isDone()) {
      byte = line[position++];
    }
  }
  if (scanner.isQuoted() && !scanner.isDone()) {
    throw LauncherException(kNoEndingQuote + out + ":  " + prefix);
  }
  evalStringExpr(out, prefix);
}
