#include "launchscript/FunctionArguments.h"

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

bool FunctionArguments::read(StringDeque& args) {
  while (m_state != kDone) {
    const std::size_t token = m_text.find_first_not_of(kBlanks, m_position);
    const Step* step = token == SString::npos ? nullptr : findStep(m_text[token]);
    if (step == nullptr) {
      return false;
    }
    m_position = token + 1;
    if (step->token == '"') {
      args.push_back(parseStringArgument(m_text, m_position, true));
    }
    m_state = step->next;
  }
  return true;
}

bool FunctionArguments::tryRead(StringDeque& args) {
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
