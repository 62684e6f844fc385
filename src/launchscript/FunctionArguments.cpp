#include "launchscript/FunctionArguments.h"

#include <algorithm>

#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

namespace {

// By the state in which a token is not the expected one.
constexpr const char* kErrors[] = {"Expected left parenthesis.", "Expected string arg.",
                                   "Expected right parenthesis."};

}  // namespace

struct FunctionArguments::Step {
  State state;
  char token;
  State next;
};

constexpr FunctionArguments::Step FunctionArguments::kSteps[] = {
    {kExpectOpening, '(', kExpectArgument}, {kExpectArgument, '"', kExpectSeparator},
    {kExpectArgument, ')', kDone},          {kExpectSeparator, ',', kExpectArgument},
    {kExpectSeparator, ')', kDone},
};

bool FunctionArguments::read(CommandTexts& args) {
  while (m_state != kDone) {
    const std::size_t token = m_text.shape().find_first_not_of(kBlanks, m_position);
    const Step* step = token == SString::npos ? nullptr : findStep(m_text.shape()[token]);
    if (step == nullptr) {
      return false;
    }
    m_position = token + 1;
    if (step->token == '"') {
      args.push_back(readString());
    }
    m_state = step->next;
  }
  return true;
}

// The text up to the closing quote, of two quotes side by side the second one.
CommandText FunctionArguments::readString() {
  const std::size_t begin = m_position;
  parseStringArgument(m_text.shape(), m_position, true);
  const std::size_t behind = std::min(m_position, m_text.size());
  CommandText argument = m_text.substr(begin, behind - 1 - begin);
  for (std::size_t quote = argument.shape().find('"'); quote != SString::npos;
       quote = argument.shape().find('"', quote + 1)) {
    argument.erase(quote, 1);
  }
  return argument;
}

bool FunctionArguments::tryRead(CommandTexts& args) {
  try {
    return read(args);
  } catch (const LauncherException&) {
    return false;
  }
}

SString FunctionArguments::errorText() const {
  return SString(kErrors[m_state]) + " (near character " + positionToString(m_position) + ")";
}

const FunctionArguments::Step* FunctionArguments::findStep(char token) const {
  for (const Step& step : kSteps) {
    if (step.state == m_state && step.token == token) {
      return &step;
    }
  }
  return nullptr;
}
