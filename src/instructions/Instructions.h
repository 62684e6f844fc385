// Instructions: the interpreter of the instruction script.
//
// The script is the values of the tag INSTRUCTIONS, one statement per line: labels, comments, two
// jumps, SET, and commands that call operations of Launcher (docs/instructions.md). The tag file
// is not owned; it must outlive the interpreter and stay as it is during a run.
//
// ScriptGrammar says which arguments a command has. Instructions.cpp runs the statements,
// InstructionsExpressions.cpp evaluates arguments. Errors of the script are
// InstructionsException; a LauncherException of an operation passes through.
// When the user has canceled, Canceled is thrown: until a wizard has run, at the next statement;
// afterwards only where the script could run for ever (a jump backwards, a long substitution), so
// that the lines after LAUNCH can tidy up.
#ifndef CORVANE_INSTRUCTIONS_INSTRUCTIONS_H
#define CORVANE_INSTRUCTIONS_INSTRUCTIONS_H

#include <cstdint>
#include <optional>
#include <string_view>

#include "instructions/LabelIndex.h"
#include "tagfile/TagFile.h"
#include "util/LauncherException.h"
#include "util/SString.h"

class Instructions {
 public:
  explicit Instructions(const TagFile& instructions) : m_tagFile(instructions) {}

  // Runs the script from its first line and returns the result of the last LAUNCH or ILAUNCH, 0
  // when none ran.
  [[nodiscard]] int execute() const;
  // The index of the line that defines the label, which may hold variable references. The first
  // line is never looked at.
  unsigned long gotoLabel(const SString& label) const;
  // Throws InstructionsException with the number of the line being executed.
  [[noreturn]] void throwException(const SString& message) const;

  // Replaces every @NAME@ in `text` by the variable's value and @@ by @, until a pass replaces no
  // reference. `prefix` begins every error text. An empty text is an error.
  void evalExpr(SString& text, std::string_view prefix) const;
  // The substituted text as a number or a boolean (0 or 1).
  std::int32_t evalLongExpr(const SString& text, std::string_view prefix) const;
  std::int16_t evalShortExpr(const SString& text, std::string_view prefix) const;
  bool evalBoolExpr(const SString& text, std::string_view prefix) const;
  // Unquotes `text`, then substitutes. An empty text stays empty.
  void evalStringExpr(SString& text, std::string_view prefix) const;
  // Reads one argument, quoted or not, of `line` from `position` into `out`, unquoted and
  // substituted; `position` is left where the next argument may begin.
  void evalStringExpr(const SString& line, std::size_t& position, SString& out,
                      std::string_view prefix) const;

 private:
  struct Statement;  // a line being executed: its text, its arguments, the run's result
  const StringDeque& lines() const;
  void jumpTo(const SString& label) const;
  // One pass of evalExpr; true when it replaced a reference. `count` counts them in all passes.
  [[nodiscard]] bool substitute(SString& text, std::string_view prefix, std::uint32_t& count) const;

  const TagFile& m_tagFile;
  mutable std::uint32_t m_currentLine = 0;     // from 0; also read by throwException
  mutable std::optional<LabelIndex> m_labels;  // none until the first jump
};

#endif
