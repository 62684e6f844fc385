// VariableRef: a reference to one of the script's variables, such as N1 or S10.
//
// A small value object over the variables that Launcher holds. `prefix` begins every error text.
#ifndef CORVANE_INSTRUCTIONS_VARIABLEREF_H
#define CORVANE_INSTRUCTIONS_VARIABLEREF_H

#include <cstdint>
#include <string_view>

#include "util/SString.h"

class VariableRef {
 public:
  // Reads a reference: N or S (either case) and a number, read as leniently as sscanf reads it.
  // Throws LauncherException; the texts stand at the top of VariableRef.cpp.
  void init(const SString& reference, std::string_view prefix);

  // Stores `value`; for a numeric variable the decimal number at its start. Throws PREFIX
  // " Invalid numeric expression in " VALUE, with nothing stored, when there is none.
  void setValue(const SString& value, std::string_view prefix) const;
  SString getStringValue() const;
  // Throws PREFIX " into a numeric value." for a string variable. A promised name, though nothing
  // of ours calls it.
  std::int32_t getNumericValue(std::string_view prefix) const;

  bool isNumericVariable() const { return m_type == 'N'; }
  bool isStringVariable() const { return m_type == 'S'; }

 private:
  char m_type = '\0';  // 'N' or 'S'
  std::int32_t m_number = 0;
};

#endif
