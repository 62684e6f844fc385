// The verify archive that the launcher carries: extracted when a JVM is to be verified.
#include <gtest/gtest.h>

#include "archive/FileIndex.h"
#include "jvm/JVMFiles.h"
#include "support/JVMSupport.h"
#include "support/LauncherFiles.h"
#include "support/TestAccess.h"

namespace {

using test::sstr;
using test::str;

class VerifyArchiveTest : public testing::Test {
 protected:
  VerifyArchiveTest() { PlatformImpl::setSystemTempDir(sstr(m_temp.path())); }

  void embed(const std::vector<test::StoredFile>& files) {
    const std::string path = test::writeFile(m_dir / "setup", test::launcherFileBytes(files));
    LauncherTestAccess::setLauncherFileName(path);
    const FilePtr launcherFile = FileIndex::openLauncherFile();
    ASSERT_TRUE(m_index.load(launcherFile.get()));
    m_foldersBefore = folders().size();
  }
  static const StringDeque& folders() { return PlatformTestAccess::createdDirectories(); }
  long newFolders() const { return folders().size() - m_foldersBefore; }
  std::string newFolder(long index) const { return str(folders()[m_foldersBefore + index]); }

  test::TempDir m_dir;
  test::TempDir m_temp;
  FileIndex m_index;
  long m_foldersBefore = 0;
};

TEST_F(VerifyArchiveTest, ExtractsEveryArchiveAndKeepsTheLast) {
  embed({{FILE_TYPE_VERIFY_JAR, 1, "one.jar", "first"},
         {FILE_TYPE_JAR, 2, "other.jar", "other"},
         {FILE_TYPE_VERIFY_JAR, 3, "two.jar", "second"}});
  JVMFiles files(m_index);
  const VerifyClass& verifyClass = files.writeVerifyJar();
  ASSERT_EQ(2, newFolders());
  EXPECT_EQ("first", test::readFile(newFolder(0) + "/one.jar"));
  EXPECT_EQ("second", test::readFile(newFolder(1) + "/two.jar"));
  EXPECT_EQ("\"" + newFolder(1) + "/two.jar\"", str(verifyClass.classpath));
  EXPECT_EQ("\"Verify\"", str(verifyClass.name));
  files.writeVerifyJar();
  EXPECT_EQ(2, newFolders());  // once in a run
}

TEST_F(VerifyArchiveTest, StaysEmptyWithoutAnArchive) {
  embed({{FILE_TYPE_JAR, 2, "other.jar", "other"}});
  JVMFiles files(m_index);
  const VerifyClass& verifyClass = files.writeVerifyJar();
  EXPECT_EQ("", str(verifyClass.classpath));
  EXPECT_EQ("", str(verifyClass.name));
  EXPECT_EQ(0, newFolders());
}

TEST_F(VerifyArchiveTest, ValuesThatWereGivenAreKept) {
  embed({{FILE_TYPE_VERIFY_JAR, 1, "one.jar", "first"}});
  struct Row {
    const char* classpath;
    const char* verifyClass;
  };
  for (const Row& row : {Row{"a.jar", "A"}, Row{"a.jar", ""}, Row{"", "A"}}) {
    JVMFiles files(m_index);
    files.setVerifyClass({row.classpath, row.verifyClass});
    const VerifyClass& verifyClass = files.writeVerifyJar();
    EXPECT_EQ(row.classpath, str(verifyClass.classpath));
    EXPECT_EQ(row.verifyClass, str(verifyClass.name));
  }
  EXPECT_EQ(0, newFolders());
}

}  // namespace
