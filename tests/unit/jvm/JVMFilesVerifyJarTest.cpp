#include <gtest/gtest.h>

#include "archive/LauncherInputFiles.h"
#include "jvm/JVMFiles.h"
#include "launcher/Launcher.h"
#include "support/JVMSupport.h"
#include "support/LauncherFiles.h"
#include "support/TestAccess.h"

namespace {

using test::sstr;
using test::str;

class VerifyJarTest : public testing::Test {
 protected:
  VerifyJarTest() { PlatformImpl::setSystemTempDir(sstr(m_temp.path())); }

  void embed(const std::vector<test::StoredFile>& files) {
    const std::string path = test::writeFile(m_dir / "setup", test::launcherFileBytes(files));
    LauncherTestAccess::setLauncherFileName(path);
    LauncherTestAccess::resetInputFiles();
    Launcher::getInputFiles().load(false);
    m_foldersBefore = folders().size();
  }
  static const StringDeque& folders() { return PlatformTestAccess::createdDirectories(); }
  long newFolders() const { return folders().size() - m_foldersBefore; }
  std::string newFolder(long index) const { return str(folders()[m_foldersBefore + index]); }

  test::TempDir m_dir;
  test::TempDir m_temp;
  long m_foldersBefore = 0;
};

TEST_F(VerifyJarTest, ExtractsEveryArchiveAndKeepsTheLast) {
  embed({{FILE_TYPE_VERIFY_JAR, 1, "one.jar", "first"},
         {FILE_TYPE_JAR, 2, "other.jar", "other"},
         {FILE_TYPE_VERIFY_JAR, 3, "two.jar", "second"}});
  JVMFiles files;
  SString classpath;
  SString verifyClass;
  files.writeVerifyJar(classpath, verifyClass);
  ASSERT_EQ(2, newFolders());
  EXPECT_EQ("first", test::readFile(newFolder(0) + "/one.jar"));
  EXPECT_EQ("second", test::readFile(newFolder(1) + "/two.jar"));
  EXPECT_EQ("\"" + newFolder(1) + "/two.jar\"", str(classpath));
  EXPECT_EQ("\"Verify\"", str(verifyClass));
  files.writeVerifyJar();
  EXPECT_EQ(2, newFolders());  // once in a run
}

TEST_F(VerifyJarTest, StaysEmptyWithoutAnArchive) {
  embed({{FILE_TYPE_JAR, 2, "other.jar", "other"}});
  JVMFiles files;
  SString classpath("before");
  SString verifyClass("before");
  files.writeVerifyJar(classpath, verifyClass);
  EXPECT_EQ("", str(classpath));
  EXPECT_EQ("", str(verifyClass));
  EXPECT_EQ(0, newFolders());
}

TEST_F(VerifyJarTest, ValuesThatWereGivenAreKept) {
  embed({{FILE_TYPE_VERIFY_JAR, 1, "one.jar", "first"}});
  struct Row {
    const char* classpath;
    const char* verifyClass;
  };
  for (const Row& row : {Row{"a.jar", "A"}, Row{"a.jar", ""}, Row{"", "A"}}) {
    JVMFiles files;
    files.setVerifyClass(row.classpath, row.verifyClass);
    SString classpath;
    SString verifyClass;
    files.writeVerifyJar(classpath, verifyClass);
    EXPECT_EQ(row.classpath, str(classpath));
    EXPECT_EQ(row.verifyClass, str(verifyClass));
  }
  EXPECT_EQ(0, newFolders());
}

}  // namespace
