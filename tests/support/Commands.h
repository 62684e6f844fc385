// Commands as the launcher runs them.
#ifndef CORVANE_TESTS_SUPPORT_COMMANDS_H
#define CORVANE_TESTS_SUPPORT_COMMANDS_H

#include <string>
#include <vector>

#include "platform/PlatformImpl.h"
#include "platform/ProcessRequest.h"

namespace test {

inline ProcessRequest requestOf(const std::string& command, bool captures) {
  ProcessRequest request;
  request.command = command.c_str();
  request.captures = captures;
  return request;
}

inline StringDeque wordsOf(const std::vector<const char*>& texts) {
  StringDeque words;
  for (const char* text : texts) {
    words.push_back(text);
  }
  return words;
}

inline ProcessResult runCaptured(const std::string& command) {
  return PlatformImpl::executeProcess(requestOf(command, true));
}

// The status alone.
inline int runCommand(const std::string& command, bool captures = false) {
  return PlatformImpl::executeProcess(requestOf(command, captures)).status;
}

}  // namespace test

#endif
