// The expressions: substitution of variables, and arguments as numbers, booleans and strings.
#include "instructions/Instructions.h"
#include "instructions/ScriptSyntax.h"
#include "instructions/VariableRef.h"
#include "platform/PlatformImpl.h"
#include "tagfile/TextUtils.h"

namespace {

constexpr const char* kEmptyExpression = " Empty expression.";
constexpr const char* kUnclosedReference = " Invalid variable specification.";
constexpr const char* kInvalidNumber = "Invalid numeric expression (";
constexpr const char* kInvalidBoolean = " Invalid boolean value (";
constexpr const char* kNoEndingQuote = "Expected ending quote in ";

// After more substitutions in one argument than any useful one needs, the cancel flag is checked: a
// value that names itself is substituted for ever.
constexpr std::uint32_t kUnwatchedSubstitutions = 1000;

}  // namespace

void Instructions::evalExpr(SString& text, std::string_view prefix) const {
  if (text.empty()) {
    throwException(SString(prefix) + kEmptyExpression);
  }
  std::uint32_t count = 0;
  // QUIRK(doubled-at-read-again): after a pass that replaced a reference the whole text is read
  // again. So references in values are resolved, but an "@" that was written "@@" begins a
  // reference.
  while (substitute(text, prefix, count)) {
  }
}

bool Instructions::substitute(SString& text, std::string_view prefix, std::uint32_t& count) const {
  bool replaced = false;
  for (Reference reference = findReference(text, 0); reference.kind != Reference::kNone;) {
    if (reference.kind == Reference::kUnclosed) {
      throwException(SString(prefix) + kUnclosedReference);
    }
    if (++count > kUnwatchedSubstitutions) {
      PlatformImpl::throwIfCanceled();
    }
    const auto [kind, begin, end] = reference;
    if (kind == Reference::kDoubled) {
      text.erase(end, 1);
      reference = findReference(text, begin + 1);
      continue;
    }
    replaced = true;
    VariableRef variable;
    variable.init(reference.name(text), prefix);
    text.replace(begin, end - begin + 1, variable.getStringValue());
    reference = findReference(text, begin);  // the value may hold references
  }
  return replaced;
}

std::int32_t Instructions::evalLongExpr(const SString& text, std::string_view prefix) const {
  SString value = text;
  evalExpr(value, prefix);
  std::int32_t number = 0;
  if (!convertToLong(value, number)) {
    // QUIRK(long-error-without-blank): nothing stands between the prefix and this text.
    throwException(SString(prefix) + kInvalidNumber + value + ")");
  }
  return number;
}

std::int16_t Instructions::evalShortExpr(const SString& text, std::string_view prefix) const {
  SString value = text;
  evalExpr(value, prefix);
  std::int16_t number = 0;
  if (!convertToShort(value, number)) {
    // QUIRK(short-error-with-blank): unlike in the long form, a blank follows the prefix, even an
    // empty one.
    throwException(SString(prefix) + " " + kInvalidNumber + value + ")");
  }
  return number;
}

bool Instructions::evalBoolExpr(const SString& text, std::string_view prefix) const {
  const std::int32_t value = evalLongExpr(text, prefix);
  if (value != 0 && value != 1) {
    // QUIRK(boolean-error-as-written): the argument is shown as it was before substitution; the
    // numeric errors show it as it is afterwards.
    throwException(SString(prefix) + kInvalidBoolean + text + ")");
  }
  return value == 1;
}

// QUIRK(empty-quotes-are-an-error): "" is an empty text, which cannot be substituted; no text at
// all is an empty string.
void Instructions::evalStringExpr(SString& text, std::string_view prefix) const {
  if (text.empty()) {
    return;
  }
  text = unquotedArgument(text);
  evalExpr(text, prefix);
}

void Instructions::evalStringExpr(const SString& line, std::size_t& position, SString& out,
                                  std::string_view prefix) const {
  if (!readArgument(line, position, out)) {
    throw LauncherException(kNoEndingQuote + out + ":  " + prefix);
  }
  evalStringExpr(out, prefix);
}
