// CmdLine: splits one command string into arguments with the launcher's quoting rules.
//
// Used where a program is started without a shell. Blanks (space, tab, newline, carriage return)
// separate arguments; double quotes keep blanks together and may stand inside an argument; after
// a backslash a double quote is literal, and a backslash before anything else stands for itself.
// In the first argument, the program's path, a backslash is always an ordinary character. An
// argument that comes out empty is dropped.
#ifndef CORVANE_LAUNCHER_CMDLINE_H
#define CORVANE_LAUNCHER_CMDLINE_H

#include <cstdint>

#include "util/SString.h"
#include "util/StringDeque.h"

class CmdLine {
 public:
  // Splits `line`. The count starts again from 0; the arguments are appended to the earlier ones.
  // Always returns 1.
  std::int32_t parse(const SString& line);

  // Reads one argument of `line` from `pos` into `arg`; `next` is where to continue, npos after a
  // nested quoted section that ends the line. `isFirst` marks the program's path. Always returns 1.
  std::int32_t getNextArg(const SString& line, std::size_t pos, bool isFirst, SString& arg,
                          std::size_t& next) const;

  std::int32_t getOptionCount() const { return m_optionCount; }
  // The argument at `index`, owned by this object; null when there is none.
  const char* getOption(int index) const;

 private:
  // Reads the quoted section that begins at `pos`, inside an argument.
  void appendQuotedSection(const SString& line, std::size_t& pos, bool isFirst, SString& arg) const;

  std::int32_t m_optionCount = 0;
  StringDeque m_options;
};

#endif
