// Expressions of the instruction script. What is written with the script's own quoting and doubling
// reads back equal; numbers come back as they were; nothing crashes on any text.
#include <functional>
#include <string>

#include "fuzz/Fuzzing.h"
#include "instructions/Instructions.h"
#include "support/ScriptSupport.h"

namespace {

std::string doubled(const std::string& text, char byte) {
  std::string result;
  for (const char c : text) {
    result.append(c == byte ? 2 : 1, c);
  }
  return result;
}

void checkText(const Instructions& script, const std::string& text) {
  const std::string escaped = doubled(text, '@');
  SString expression(escaped);
  script.evalExpr(expression, "");
  fuzz::require(expression.view() == text);
  const std::string quoted = '"' + doubled(escaped, '"') + '"';
  SString whole(quoted);
  script.evalStringExpr(whole, "");
  fuzz::require(whole.view() == text);
  SString argument;
  std::size_t position = 0;
  script.evalStringExpr(SString(quoted + " 5"), position, argument, "");
  fuzz::require(argument.view() == text && position == quoted.size());
}

void checkNumber(const Instructions& script, const std::string& text) {
  const auto number = static_cast<std::int32_t>(std::hash<std::string>()(text));
  LauncherFacts::setLongVariable(1, number);
  fuzz::require(script.evalLongExpr("@N1@", "") == number);
  LauncherFacts::setLongVariable(1, static_cast<std::int16_t>(number));
  fuzz::require(script.evalShortExpr("@N1@", "") == static_cast<std::int16_t>(number));
}

// With variables that hold parts of the text, references in them included.
void checkAnyUse(const Instructions& script, const std::string& text) {
  PlatformTestAccess::setCanceled(true);  // bounds values that name themselves
  const std::size_t third = text.size() / 3;
  test::setVariables({{"S1", text.substr(third, third)}, {"S2", text.substr(2 * third)}});
  const SString line(text);
  std::size_t position = third;
  SString out;
  test::outcomeOf([&] { return std::to_string(script.evalLongExpr(line, "")); });
  test::outcomeOf([&] { return std::to_string(script.evalBoolExpr(line, "")); });
  test::outcomeOf([&] { return script.evalStringExpr(line, position, out, ""), ""; });
  fuzz::require(position > third || text.empty());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(fuzz::toText(data, size));
  const TagFile file;
  const Instructions script(file);
  if (!text.empty()) {
    checkText(script, text);
  }
  checkNumber(script, text);
  checkAnyUse(script, text);
  return 0;
}
