// Commands as the launcher runs them.
#ifndef CORVANE_TESTS_SUPPORT_COMMANDS_H
#define CORVANE_TESTS_SUPPORT_COMMANDS_H

#include <string>

#include "platform/PlatformImpl.h"
#include "platform/ProcessRequest.h"

namespace test {

inline ProcessRequest requestOf(const std::string& command, bool captures) {
  ProcessRequest request;
  request.command = command.c_str();
  request.captures = captures;
  return request;
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
