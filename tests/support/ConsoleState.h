// What the tests of the console share.
#ifndef CORVANE_TESTS_SUPPORT_CONSOLESTATE_H
#define CORVANE_TESTS_SUPPORT_CONSOLESTATE_H

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "platform/Console.h"
#include "platform/PlatformImpl.h"
#include "support/Texts.h"

namespace test {

enum Mode { Shown, Hidden, Silent, SilentAndHidden };

// The console in this mode, and in English.
inline void setMode(Mode mode) {
  setenv("LANG", "C", 1);
  PlatformImpl::setSilent(mode == Silent || mode == SilentAndHidden);
  g_console.g_enableOutput = mode == Shown || mode == Silent;
}

// The bytes that have left the process since the capture of standard output began.
inline off_t writtenSoFar() {
  struct stat status = {};
  EXPECT_EQ(0, fstat(STDOUT_FILENO, &status));
  return status.st_size;
}

}  // namespace test

#endif
