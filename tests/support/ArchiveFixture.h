// What the tests of the archive share: a launcher file that the process takes as its own.
#ifndef CORVANE_TESTS_SUPPORT_ARCHIVEFIXTURE_H
#define CORVANE_TESTS_SUPPORT_ARCHIVEFIXTURE_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/LauncherFiles.h"
#include "support/TestAccess.h"
#include "support/TestFiles.h"
#include "support/Texts.h"
#include "tagfile/StreamUtils.h"

inline constexpr std::int32_t kLargest = 2147483647;
inline constexpr std::int32_t kSmallest = -2147483647 - 1;

using test::errorOf;

class ArchiveTest : public testing::Test {
 protected:
  // Whatever earlier tests in this process have set.
  ArchiveTest() { PlatformTestAccess::resetOptions(); }

  // Makes the running launcher's file. Bytes stay as they are.
  void useLauncher(const std::string& bytes) {
    LauncherTestAccess::setLauncherFileName(test::writeFile(m_dir / "launcher", bytes));
  }
  std::string write(const std::string& name, const std::string& text) {
    return test::writeFile(m_dir / name, text);
  }

  test::TempDir m_dir;
  test::ScopedEnvironment m_lang{"LANG", "en"};
};

// A stream that stands before these bytes.
inline FilePtr streamOf(const std::string& bytes) {
  FilePtr file(std::tmpfile());
  EXPECT_EQ(bytes.size(), std::fwrite(bytes.data(), 1, bytes.size(), file.get()));
  std::rewind(file.get());
  return file;
}

// A file of each type, in the order of the types.
inline std::vector<test::StoredFile> allTypes() {
  return {{0, 1, "i.tag", "INSTRUCTIONS:\nSET S1 = embedded\nSET N1 = 7\n/:\n"},
          {1, 2, "j.tag", "DESC: Java\nJVM_EXE: bin/java\n"},
          {2, 3, "l.tag", "COMMAND: x\nDESC: Title\n"},
          {3, 4, "a.jar", "PK", {{2, 100}}},
          {4, 5, "installer", "#!/bin/sh\n"},
          {5, 6, "verify.jar", "PK"},
          {6, 7, "app.zip", "PK", {{0, 0}}},
          {7, 8, "launcher2", "#!/bin/sh\n"},
          {8, 9, "m.tag", "MESSAGE: No JVM\n"}};
}

#endif
