#include "platform/WriteError.h"

#include <gtest/gtest.h>

#include <cerrno>

#include "support/TestAccess.h"
#include "support/TestFiles.h"
#include "support/Texts.h"

namespace {

TEST(WriteError, NamesTheNumberAndTheWayOut) {
  const test::ScopedEnvironment english("LANG", "C");
  constexpr const char* kHint =
      " There may not be enough temporary disk space. Try using -cv:tempdir to use a temporary "
      "directory on a partition with more disk space.";
  EXPECT_EQ("Error writing file = 28" + std::string(kHint),
            test::errorOf([] { throwWriteError("28"); }));
  EXPECT_EQ("Error writing file = " + std::string(kHint),
            test::errorOf([] { throwWriteError(SString()); }));
  EXPECT_EQ("Error writing file = 28" + std::string(kHint),
            test::errorOf([] { throwIfNotWritten(28); }));
  EXPECT_EQ("", test::errorOf([] { throwIfNotWritten(0); }));
}

TEST(WriteError, AWriteThatACancelEndedIsNoError) {
  PlatformTestAccess::setCanceled(true);
  EXPECT_EQ("Canceled by the user.", test::errorOf<Canceled>([] { throwIfNotWritten(EINTR); }));
  PlatformTestAccess::setCanceled(false);
  EXPECT_EQ(0u, test::errorOf([] { throwIfNotWritten(EINTR); }).find("Error writing file = 4 "));
}

}  // namespace
