#include "platform/ResultLines.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "platform/Console.h"
#include "platform/PlatformImpl.h"
#include "tagfile/WriteAll.h"

void printResult(std::initializer_list<SString> lines) {
  SString text;
  for (const SString& line : lines) {
    text += line.c_str();  // as text, up to its first zero byte
    text += '\n';
  }
  std::fflush(stdout);
  const int error = g_console.m_outputIsClosed
                        ? EBADF
                        : writeAll(STDOUT_FILENO, text.view(), PlatformImpl::isCanceled);
  if (error == EINTR) {
    PlatformImpl::throwIfCanceled();
  }
  if (error != 0) {
    throw LostResult(SString("Cannot write to standard output: ") + std::strerror(error));
  }
}

void showResult(const SString& text) {
  if (!g_console.m_silent) {
    printResult({text});
  }
}
