// The application archive: the embedded one, or a copy of one beside the launcher, made once.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <cstdio>

#include "archive/LauncherInputFiles.h"
#include "launcher/Launcher.h"
#include "platform/PlatformImpl.h"
#include "support/ArchiveFixture.h"
#include "support/JVMSupport.h"
#include "support/OwnProcess.h"
#include "support/Restrictions.h"

namespace {

using test::sstr;
using test::StoredFile;
using test::str;

class ApplicationArchive : public ArchiveTest {
 protected:
  void SetUp() override {
    ASSERT_EQ(0, mkdir((m_dir / "tmp").c_str(), 0755));
    PlatformImpl::setSystemTempDir(sstr(m_dir / "tmp"));
  }

  void TearDown() override { PlatformImpl::setSystemTempDir(""); }

  void useFiles(const std::vector<StoredFile>& files) {
    LauncherTestAccess::resetState();
    LauncherTestAccess::resetInputFiles();
    LauncherTestAccess::setLauncherFileName(
        test::writeFile(m_dir / "app/setup", test::launcherFileBytes(files)));
    Launcher::getInputFiles().load(true);
  }

  std::string normalised(const std::string& text) const {
    return test::normalised(text, m_dir.path());
  }
};

constexpr const char* kEmbedded = nullptr;  // in the place of a name

struct ArchiveRow {
  const char* name;
  std::vector<StoredFile> files = {};
  std::vector<const char*> calls;
  std::vector<std::string> results;        // of each call
  long folders;                            // made for all calls together
  const char* launcher = "DIR/app/setup";  // the original one
};

const StoredFile kOne = {6, 60, "one.jar", "embedded"};
const StoredFile kJar = {3, 62, "class.jar", "PK"};
const StoredFile kTwo = {6, 61, "two.jar", "embedded"};

// The file DIR/app/beside.jar is there, DIR/app/lib/deep.jar, and DIR/near.jar in the current
// folder, which is DIR.
const ArchiveRow kArchives[] = {
    {.name = "embedded",
     .files = {kOne},
     .calls = {kEmbedded, kEmbedded},
     .results = {"DIR/tmp/cvj#/one.jar", "DIR/tmp/cvj#/one.jar"},
     .folders = 1},
    {.name = "the last one",
     .files = {kOne, kTwo, kJar},
     .calls = {kEmbedded},
     .results = {"DIR/tmp/cvj#/two.jar"},
     .folders = 1},
    {.name = "none embedded",
     .files = {kJar},
     .calls = {kEmbedded, kEmbedded},
     .results = {"", ""},
     .folders = 2},
    {.name = "beside",
     .calls = {"beside.jar", "beside.jar"},
     .results = {"DIR/tmp/cvj#/beside.jar", "DIR/tmp/cvj#/beside.jar"},
     .folders = 1},
    {.name = "the first result counts",
     .files = {kOne},
     .calls = {"beside.jar", kEmbedded, "lib/deep.jar"},
     .results = {"DIR/tmp/cvj#/beside.jar", "DIR/tmp/cvj#/beside.jar", "DIR/tmp/cvj#/beside.jar"},
     .folders = 1},
    {.name = "embedded before the one beside",
     .files = {kOne},
     .calls = {kEmbedded, "beside.jar"},
     .results = {"DIR/tmp/cvj#/one.jar", "DIR/tmp/cvj#/one.jar"},
     .folders = 1},
    {.name = "a miss is no result",
     .files = {kOne},
     .calls = {"none.jar", "", "lib", "lib/", "beside.jar"},
     .results = {"", "", "", "", "DIR/tmp/cvj#/beside.jar"},
     .folders = 5},
    {.name = "in a folder",
     .calls = {"lib/deep.jar"},
     .results = {"DIR/tmp/cvj#/deep.jar"},
     .folders = 1},
    {.name = "backslash in its name",
     .calls = {"lib\\deep.jar"},
     .results = {"DIR/tmp/cvj#/deep.jar"},
     .folders = 1},
    {.name = "out of the folder",
     .calls = {"../near.jar"},
     .results = {"DIR/tmp/cvj#/near.jar"},
     .folders = 1},
    {.name = "an absolute name is none", .calls = {"/bin/sh"}, .results = {""}, .folders = 1},
    {.name = "no folder: the current one",
     .calls = {"near.jar"},
     .results = {"DIR/tmp/cvj#/near.jar"},
     .folders = 1,
     .launcher = "setup"},
    {.name = "the root counts as none",
     .calls = {"near.jar"},
     .results = {"DIR/tmp/cvj#/near.jar"},
     .folders = 1,
     .launcher = "/setup"},
    {.name = "backslash in the launcher's path cuts it, too",
     .calls = {"deep.jar"},
     .results = {"DIR/tmp/cvj#/deep.jar"},
     .folders = 1,
     .launcher = "DIR/app/lib\\setup"},
};

TEST_F(ApplicationArchive, IsMadeOnce) {
  test::writeFile(m_dir / "app/beside.jar", "beside");
  test::writeFile(m_dir / "app/lib/deep.jar", "deep");
  test::writeFile(m_dir / "app/lib\\deep.jar", "deep");
  test::writeFile(m_dir / "near.jar", "near");
  const test::ScopedCurrentDir current(m_dir.path());
  for (const ArchiveRow& row : kArchives) {
    SCOPED_TRACE(row.name);
    useFiles(row.files);
    LauncherTestAccess::setOriginalLauncherFileName(
        test::replaced(row.launcher, "DIR", m_dir.path()));
    const long before = PlatformTestAccess::createdDirectories().size();
    std::vector<std::string> results;
    for (const char* name : row.calls) {
      results.push_back(normalised(str(name == kEmbedded ? Launcher::getApplicationArchive()
                                                         : Launcher::getApplicationArchive(name))));
    }
    EXPECT_EQ(row.results, results);
    EXPECT_EQ(row.folders, PlatformTestAccess::createdDirectories().size() - before);
    PlatformImpl::cleanup();
  }
}

// The text is the caller's to show; the path is remembered nevertheless.
TEST_F(ApplicationArchive, ThatDoesNotFit) {
  useFiles({});
  test::writeFile(m_dir / "app/beside.jar", std::string(10000, 'x'));
  EXPECT_EQ(
      "Error writing file = 27 There may not be enough temporary disk space. Try using "
      "-cv:tempdir to use a temporary directory on a partition with more disk space.\n"
      "DIR/tmp/cvj#/beside.jar\n",
      normalised(test::outputOf([] {
        std::signal(SIGXFSZ, SIG_IGN);
        ASSERT_TRUE(test::limit(RLIMIT_FSIZE, 5000));
        const auto get = [] { Launcher::getApplicationArchive("beside.jar"); };
        std::puts(errorOf(get).c_str());
        std::puts(Launcher::getApplicationArchive().c_str());
        PlatformImpl::cleanup();
      })));
}

}  // namespace
