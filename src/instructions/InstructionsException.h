// InstructionsException: an error in the instruction script, with the line it stands on.
//
// Thrown by the interpreter; Launcher::run turns it into the LauncherException that users see.
#ifndef CORVANE_INSTRUCTIONS_INSTRUCTIONSEXCEPTION_H
#define CORVANE_INSTRUCTIONS_INSTRUCTIONSEXCEPTION_H

#include <cstdint>
#include <exception>
#include <utility>

#include "util/SString.h"

class InstructionsException : public std::exception {
 public:
  InstructionsException(SString message, std::int32_t lineNumber)
      : m_message(std::move(message)), m_lineNumber(lineNumber) {}

  const SString& getMessage() const { return m_message; }
  std::int32_t getLineNumber() const { return m_lineNumber; }  // from 1
  const char* what() const noexcept override { return m_message.c_str(); }

 private:
  SString m_message;
  std::int32_t m_lineNumber;
};

#endif
