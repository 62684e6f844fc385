// CommandModel: what a template of the launch script is made of, read as the launcher reads it but
// without calling its functions.
#ifndef CORVANE_AUTHORING_COMMANDMODEL_H
#define CORVANE_AUTHORING_COMMANDMODEL_H

#include <string>
#include <vector>

#include "launchscript/CommandText.h"
#include "launchscript/LaunchScriptGrammar.h"

namespace authoring {

struct FunctionCall {
  Function function;
  std::vector<std::string> arguments;
  bool isInQuotes = false;  // of the shell, or it cannot be known
  char before = '\0';       // the byte in front of the call; the null byte at the beginning
  char behind = '\0';       // the byte behind the call; the null byte at the end
};

struct CommandModel {
  bool isReadable = true;  // false: a function is unknown or its arguments do not end
  std::vector<FunctionCall> calls;
  std::vector<std::string> tags;       // the names between two @, each once
  std::vector<std::string> variables;  // the names between two #, each once
  std::string text;                    // an "x" stands for what is known at run time only

  // How often the function is called.
  long count(Function function) const;
};

CommandModel readCommand(const SString& text);

// The names between two `mark`s of a text, each once.
std::vector<std::string> namesIn(const SString& text, char mark);

// The arguments that a call puts into the command, where they are read again. Arguments that the
// author has forgotten count as empty.
CommandText resultOf(Function function, const CommandTexts& arguments);

}  // namespace authoring

#endif
