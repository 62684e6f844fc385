#include "instructions/VariableRef.h"

#include <cctype>

#include "launcher/LauncherFacts.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

namespace {

// Each follows the caller's prefix.
constexpr const char* kTooShort =
    " Variable references must be at least 2 characters (e.g. N1 and S10).";
constexpr const char* kInvalidReference = " Invalid variable reference (";
constexpr const char* kInvalidReferenceEnd =
    "). Must use N or S as the variable type, e.g. N2 or S1.";
constexpr const char* kInvalidNumber = " Variable number is invalid (";
constexpr const char* kInvalidValue = " Invalid numeric expression in ";
constexpr const char* kNotNumeric = " into a numeric value.";

char upperCase(char byte) {
  return static_cast<char>(std::toupper(static_cast<unsigned char>(byte)));
}

}  // namespace

void VariableRef::init(const SString& reference, std::string_view prefix) {
  if (reference.size() < 2) {
    throw LauncherException(SString(prefix) + kTooShort);
  }
  m_type = upperCase(reference[0]);
  if (!isNumericVariable() && !isStringVariable()) {
    throw LauncherException(SString(prefix) + kInvalidReference + reference + kInvalidReferenceEnd);
  }
  // QUIRK(number-with-trailing-text): "N1x", "N 1", "N+1" and "N01" all mean N1.
  const SString rest = reference.substr(1);
  const bool isValid = convertToLong(rest, m_number) &&
                       (isNumericVariable() ? LauncherFacts::isValidLongVariable(m_number)
                                            : LauncherFacts::isValidStringVariable(m_number));
  if (!isValid) {
    throw LauncherException(SString(prefix) + kInvalidNumber + rest + ")");
  }
}

void VariableRef::setValue(const SString& value, std::string_view prefix) const {
  if (isStringVariable()) {
    LauncherFacts::setStringVariable(m_number, value);
    return;
  }
  std::int32_t number = 0;
  if (!convertToLong(value, number)) {
    throw LauncherException(SString(prefix) + kInvalidValue + value);
  }
  LauncherFacts::setLongVariable(m_number, number);
}

SString VariableRef::getStringValue() const {
  return isNumericVariable() ? convertToString(LauncherFacts::getLongVariable(m_number))
                             : LauncherFacts::getStringVariable(m_number);
}

std::int32_t VariableRef::getNumericValue(std::string_view prefix) const {
  if (!isNumericVariable()) {
    throw LauncherException(SString(prefix) + kNotNumeric);
  }
  return LauncherFacts::getLongVariable(m_number);
}
