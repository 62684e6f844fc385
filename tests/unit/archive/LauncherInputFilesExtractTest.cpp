// Copying every embedded file out, and running what was copied.
#include "archive/LauncherInputFiles.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "launcher/LauncherFacts.h"
#include "support/ArchiveFixture.h"

namespace {

using test::launcherFileBytes;
using test::StoredFile;

using LauncherInputFilesExtractTest = ArchiveTest;

TEST_F(LauncherInputFilesExtractTest, ExtractsEverythingWithAnInputFile) {
  std::vector<StoredFile> files = allTypes();
  files.push_back({1, 10, "j2.tag", "DESC: Java 2\n"});
  files.push_back({0, 11, "i2.tag", "INSTRUCTIONS: //\n"});
  useLauncher(launcherFileBytes(files));
  LauncherInputFiles inputs;
  inputs.load(false);
  test::writeFile(m_dir / "out/x", "");
  const test::ScopedCurrentDir current(m_dir / "out");
  inputs.extractAll();
  EXPECT_EQ(
      "ACTION:  RUN_INSTRUCTIONS\n"
      "INSTRUCTIONS:  i2.tag\n"
      "JVM:\n  j.tag\n  j2.tag\n/:\n"
      "LAUNCHSCRIPT:  l.tag\n"
      "JVMMESSAGE:  m.tag\n",
      test::readFile("input.tag"));
  for (const StoredFile& file : files) {
    EXPECT_EQ(file.bytes, test::readFile(file.name)) << file.name;
  }
  EXPECT_EQ(files.size() + 2, test::listTree(".").size());
}

TEST_F(LauncherInputFilesExtractTest, ExtractsNothingFromABareStub) {
  useLauncher("bare stub\n");
  LauncherInputFiles inputs;
  inputs.load(false);
  test::writeFile(m_dir / "out/x", "");
  const test::ScopedCurrentDir current(m_dir / "out");
  inputs.extractAll();
  EXPECT_EQ("ACTION:  RUN_INSTRUCTIONS\n", test::readFile("input.tag"));
}

TEST_F(LauncherInputFilesExtractTest, StopsExtractingAtTheFirstError) {
  useLauncher(launcherFileBytes({{3, 1, "a", "a"}, {3, 2, "none/b", "b"}, {3, 3, "c", "c"}}));
  LauncherInputFiles inputs;
  inputs.load(false);
  test::writeFile(m_dir / "out/x", "");
  const test::ScopedCurrentDir current(m_dir / "out");
  EXPECT_EQ(
      "Error writing file = 2 There may not be enough temporary disk space. Try using -cv:tempdir "
      "to use a temporary directory on a partition with more disk space.",
      errorOf([&] { inputs.extractAll(); }));
  EXPECT_EQ((std::vector<std::string>{"a", "x"}), test::listTree("."));
}

// What was copied out runs from disk as it ran from the launcher.
TEST_F(LauncherInputFilesExtractTest, ReadsBackWhatItExtracts) {
  useLauncher(launcherFileBytes(allTypes()));
  LauncherInputFiles embedded;
  embedded.load(false);
  test::writeFile(m_dir / "out/x", "");
  const test::ScopedCurrentDir current(m_dir / "out");
  embedded.extractAll();
  LauncherInputFiles inputs;
  inputs.load(TagFile("input.tag"));
  (void)inputs.getInstructions()->execute();
  EXPECT_STREQ("embedded", LauncherFacts::getStringVariable(1).c_str());
  EXPECT_STREQ("Title", inputs.getLaunchScript()->getDesc().c_str());
  ASSERT_EQ(1, inputs.getJVMFiles().getJVMFileCount());
  EXPECT_STREQ("Java", inputs.getJVMFiles().getJVMFile(0)->getDesc().c_str());
}

}  // namespace
