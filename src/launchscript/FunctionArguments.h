// FunctionArguments: reads the argument list of a function of a template: strings in double quotes,
// between commas, in parentheses.
#ifndef CORVANE_LAUNCHSCRIPT_FUNCTIONARGUMENTS_H
#define CORVANE_LAUNCHSCRIPT_FUNCTIONARGUMENTS_H

#include <cstddef>

#include "launchscript/CommandText.h"
#include "util/SString.h"

// A small state machine over the tokens of `text`, which must outlive it.
class FunctionArguments {
 public:
  FunctionArguments(const CommandText& text, std::size_t position)
      : m_text(text), m_position(position) {}

  // Adds the arguments to `args`. False when a token is not the expected one. LauncherException of
  // a quoted string without its closing quote passes through.
  [[nodiscard]] bool read(CommandTexts& args);
  // The same, with any error as false.
  [[nodiscard]] bool tryRead(CommandTexts& args);

  // One past the last token read; npos after a string that ends the text.
  std::size_t position() const { return m_position; }
  // What was expected, and where the failing token was sought.
  SString errorText() const;

 private:
  enum State { kExpectOpening, kExpectArgument, kExpectSeparator, kDone };
  struct Step;
  static const Step kSteps[];

  const Step* findStep(char token) const;

  CommandText readString();

  const CommandText& m_text;
  std::size_t m_position;
  State m_state = kExpectOpening;
};

#endif
