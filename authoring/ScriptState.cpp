#include "authoring/ScriptState.h"

#include "instructions/ScriptSyntax.h"
#include "tagfile/TextUtils.h"

namespace authoring {
namespace {

// Longer texts are not followed: they could double with each line.
constexpr std::size_t kLongestText = 256;

// The number of a variable, or 0 for none of that type. VariableRef reads names as leniently.
std::int32_t variableNumber(const SString& name, char type, std::int32_t count) {
  const bool isOfType = name[0] == type || name[0] == type - 'A' + 'a';
  std::int32_t number = 0;
  const bool isNumber = isOfType && convertToLong(name.substr(1), number);
  return isNumber && number >= 1 && number <= count ? number : 0;
}

std::int32_t numericVariable(const SString& name) {
  return variableNumber(name, 'N', kNumericVariables);
}

std::int32_t stringVariable(const SString& name) {
  return variableNumber(name, 'S', kStringVariables);
}

// What the variable says; nothing when it is unknown, or when its text would be read again.
std::optional<std::string> valueOf(const ScriptState& state, const SString& name) {
  if (const std::int32_t n = numericVariable(name); n != 0) {
    const auto& number = state.numbers[static_cast<std::size_t>(n - 1)];
    return number ? std::optional(std::to_string(*number)) : std::nullopt;
  }
  const std::int32_t s = stringVariable(name);
  if (s == 0) {
    return std::nullopt;
  }
  const KnownText& text = state.text(s);
  const bool isKnown = text.kind == KnownText::kText && text.text.find('@') == std::string::npos;
  return isKnown ? std::optional(text.text) : std::nullopt;
}

// The name in a text that is one reference; empty for any other.
SString wholeReference(const SString& text) {
  const Reference reference = findReference(text, 0);
  const bool isWhole = reference.kind == Reference::kVariable && reference.begin == 0 &&
                       reference.end + 1 == text.size();
  return isWhole ? reference.name(text) : SString();
}

}  // namespace

void ScriptState::setNumber(std::int32_t n, std::optional<std::int32_t> value) {
  numbers[static_cast<std::size_t>(n - 1)] = value;
  isSet[static_cast<std::size_t>(n - 1)] = true;
}

std::int32_t ScriptState::numberIn(const SString& text) {
  return numericVariable(wholeReference(text));
}

std::optional<std::string> ScriptState::evaluate(const SString& text) const {
  std::string result;
  std::size_t end = 0;
  for (Reference reference = findReference(text, 0); reference.kind != Reference::kNone;
       reference = findReference(text, end)) {
    const auto value = reference.kind == Reference::kVariable ? valueOf(*this, reference.name(text))
                                                              : std::nullopt;
    if (!value || result.size() > kLongestText) {
      return std::nullopt;
    }
    result += text.view().substr(end, reference.begin - end);
    result += *value;
    end = reference.end + 1;
  }
  return result + std::string(text.view().substr(end));
}

KnownText ScriptState::argument(const SString& written) const {
  const std::int32_t s = stringVariable(wholeReference(written));
  if (s != 0) {
    return text(s);
  }
  const auto value = evaluate(written);
  return value ? KnownText{KnownText::kText, *value, line}
               : KnownText{KnownText::kUnknown, "", line};
}

void ScriptState::assign(const SString& name, const KnownText& value) {
  if (const std::int32_t s = stringVariable(name); s != 0) {
    text(s) = value;
    if (value.text.size() > kLongestText) {
      text(s) = {KnownText::kUnknown, "", value.setBy};
    }
  }
  if (const std::int32_t n = numericVariable(name); n != 0) {
    std::int32_t read = 0;
    const bool isKnown = value.kind == KnownText::kText && convertToLong(value.text.c_str(), read);
    setNumber(n, isKnown ? std::optional(read) : std::nullopt);
  }
}

std::string ScriptState::key() const {
  std::string key = std::to_string(line) + ' ' + std::to_string(silentSearch);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    key += isSet[i] ? " =" : " ";
    key += numbers[i] ? std::to_string(*numbers[i]) : "?";
  }
  for (const KnownText& text : texts) {
    key += ' ' + std::to_string(text.kind) + ',' + std::to_string(text.setBy) + ',' +
           std::to_string(text.text.size()) + ',' + text.text;
  }
  return key;
}

}  // namespace authoring
