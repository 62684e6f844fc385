// Deletion of files and trees, the clean-up of a run, the removal of the launcher itself.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "launcher/Log.h"
#include "platform/DeleteFullDir.h"
#include "platform/PlatformImpl.h"
#include "support/ConsoleState.h"
#include "support/OrdinaryUser.h"
#include "support/TestAccess.h"
#include "support/TestFiles.h"

namespace {

using Strings = std::vector<std::string>;

// A scratch folder in which anybody may work, with a tree to be deleted and the log of that.
//
// The tree is described by its entries, relative to the scratch folder: "dir/", "file",
// "link -> target". After it is made, `lock` takes away rights to a folder: by itself that to
// delete something in it.
class Scratch {
 public:
  explicit Scratch(const Strings& entries) {
    EXPECT_EQ(0, chmod(m_dir.path().c_str(), 0777));
    setLogFileName("/dev/null");
    logMessage("", LOG_INFO);  // the separator line of the first message
    setLogFileName(logPath().c_str());
    EXPECT_EQ(0, chmod(m_log.path().c_str(), 0777));
    for (const std::string& entry : entries) {
      make(entry);
    }
  }
  ~Scratch() { unlock(); }

  std::string operator/(std::string_view name) const { return m_dir / name; }

  void lock(const std::string& name, mode_t rights = 0555) {
    m_locked.push_back(m_dir / name);
    EXPECT_EQ(0, chmod(m_locked.back().c_str(), rights)) << name;
  }

  void unlock() {
    for (const std::string& path : m_locked) {
      chmod(path.c_str(), 0777);
    }
  }

  Strings rest() const { return test::listTree(m_dir.path()); }

  // The log, with the scratch folder written as "$".
  std::string log() const {
    if (access(logPath().c_str(), F_OK) != 0) {
      return "";
    }
    std::string text = test::readFile(logPath());
    for (auto at = text.find(m_dir.path()); at != std::string::npos;
         at = text.find(m_dir.path(), at)) {
      text.replace(at, m_dir.path().size(), "$");
    }
    return text;
  }

 private:
  std::string logPath() const { return m_log / "log"; }

  void make(const std::string& entry) {
    const auto arrow = entry.find(" -> ");
    if (arrow != std::string::npos) {
      const std::string target = entry.substr(arrow + 4);
      EXPECT_EQ(0, symlink(target.c_str(), (m_dir / entry.substr(0, arrow)).c_str())) << entry;
    } else if (entry.ends_with("/")) {
      EXPECT_EQ(0, mkdir((m_dir / entry).c_str(), 0777)) << entry;
      EXPECT_EQ(0, chmod((m_dir / entry).c_str(), 0777)) << entry;
    } else {
      test::writeFile(m_dir / entry, "x");
    }
  }

  test::TempDir m_dir;
  test::TempDir m_log;
  Strings m_locked;
};

// --- One file ---

struct OneFileRow {
  const char* name;
  Strings entries;
  const char* locked = nullptr;  // a folder, or null
  mode_t rights = 0555;          // of that folder
  const char* path;
  bool wanted = false;
  Strings rest = {};
  const char* log = "";
};

const OneFileRow kOneFileRows[] = {
    {.name = "file", .entries = {"f"}, .path = "f", .wanted = true},
    {.name = "empty directory", .entries = {"d/"}, .path = "d", .wanted = true},
    {.name = "missing", .entries = {}, .path = "f"},
    {.name = "link to a file",
     .entries = {"f", "l -> f"},
     .path = "l",
     .wanted = true,
     .rest = {"f"}},
    {.name = "link to a directory",
     .entries = {"d/", "l -> d"},
     .path = "l",
     .wanted = true,
     .rest = {"d/"}},
    {.name = "dangling link", .entries = {"l -> gone"}, .path = "l", .wanted = true},
    {.name = "name of a file inside a file", .entries = {"f"}, .path = "f/x", .rest = {"f"}},
    {.name = "directory that is not empty",
     .entries = {"d/", "d/f"},
     .path = "d",
     .rest = {"d/", "d/f"},
     .log = "WARNING: Could not delete $/d :  Directory not empty\n"},
    {.name = "file that cannot be deleted",
     .entries = {"d/", "d/f"},
     .locked = "d",
     .path = "d/f",
     .rest = {"d/", "d/f"},
     .log = "WARNING: Could not delete $/d/f :  Permission denied\n"},
    {.name = "file that cannot be examined",
     .entries = {"d/", "d/f"},
     .locked = "d",
     .rights = 0444,
     .path = "d/f",
     .rest = {"d/", "d/f"},
     .log = "WARNING: Could not delete $/d/f :  Permission denied\n"},
    {.name = "missing where it cannot be examined",
     .entries = {"d/"},
     .locked = "d",
     .rights = 0444,
     .path = "d/f",
     .rest = {"d/"},
     .log = "WARNING: Could not delete $/d/f :  Permission denied\n"},
    {.name = "name inside a link to itself",
     .entries = {"l -> l"},
     .path = "l/f",
     .rest = {"l"},
     .log = "WARNING: Could not delete $/l/f :  Too many levels of symbolic links\n"},
};

TEST(Delete, OneFile) {
  for (const OneFileRow& row : kOneFileRows) {
    Scratch scratch(row.entries);
    if (row.locked != nullptr) {
      scratch.lock(row.locked, row.rights);
    }
    {
      const test::OrdinaryUser user;
      EXPECT_EQ(row.wanted, PlatformImpl::deleteOneFile((scratch / row.path).c_str())) << row.name;
    }
    scratch.unlock();
    EXPECT_EQ(row.rest, scratch.rest()) << row.name;
    EXPECT_EQ(row.log, scratch.log()) << row.name;
  }
}

// --- Files and trees ---

struct TreeRow {
  const char* name;
  Strings entries;
  Strings locked = {};
  const char* path;
  Strings rest = {};
  const char* log = "";
};

const TreeRow kTreeRows[] = {
    {.name = "file", .entries = {"f"}, .path = "f"},
    {.name = "missing", .entries = {"g"}, .path = "f", .rest = {"g"}},
    {.name = "empty directory", .entries = {"d/"}, .path = "d"},
    {.name = "directory with a separator behind", .entries = {"d/", "d/f"}, .path = "d/"},
    {.name = "tree",
     .entries = {"d/", "d/f", "d/e/", "d/e/f", "d/e/g/", "d/h/", "d/h/i/"},
     .path = "d"},
    {.name = "hidden names", .entries = {"d/", "d/.f", "d/..g", "d/.e/", "d/.e/f"}, .path = "d"},
    {.name = "only the tree",
     .entries = {"d/", "d/f", "d2/", "d2/f", "f"},
     .path = "d",
     .rest = {"d2/", "d2/f", "f"}},
    {.name = "link inside to a directory outside",
     .entries = {"out/", "out/f", "d/", "d/l -> ../out"},
     .path = "d",
     .rest = {"out/", "out/f"}},
    {.name = "link inside to a file outside",
     .entries = {"f", "d/", "d/l -> ../f"},
     .path = "d",
     .rest = {"f"}},
    {.name = "dangling link inside", .entries = {"d/", "d/l -> gone"}, .path = "d"},
    {.name = "link inside to the tree itself", .entries = {"d/", "d/l -> ."}, .path = "d"},
    {.name = "link inside to the folder above",
     .entries = {"f", "d/", "d/l -> .."},
     .path = "d",
     .rest = {"f"}},
    {.name = "link to a directory",
     .entries = {"out/", "out/f", "l -> out"},
     .path = "l",
     .rest = {"out/", "out/f"}},
    {.name = "dangling link", .entries = {"l -> gone"}, .path = "l"},
    {.name = "link to a directory, separator behind",
     .entries = {"out/", "out/f", "l -> out"},
     .path = "l/",
     .rest = {"l", "out/", "out/f"},
     .log = "WARNING: Could not delete $/l/ :  Not a directory\n"},
    {.name = "a file stays, and its directory is tried",
     .entries = {"d/", "d/e/", "d/e/f"},
     .locked = {"d/e"},
     .path = "d",
     .rest = {"d/", "d/e/", "d/e/f"},
     .log = "WARNING: Could not delete $/d/e/f :  Permission denied\n"
            "WARNING: Could not delete $/d/e :  Directory not empty\n"},
    {.name = "failure-protects-by-position: the root, by the first failure",
     .entries = {"d/", "d/f"},
     .locked = {"d"},
     .path = "d",
     .rest = {"d/", "d/f"},
     .log = "WARNING: Could not delete $/d/f :  Permission denied\n"},
    {.name = "failure-protects-by-position: each directory has its own position",
     .entries = {"d/", "d/l -> 1", "d/e/", "d/e/m -> 1"},
     .locked = {"d", "d/e"},
     .path = "d",
     .rest = {"d/", "d/e/", "d/e/m", "d/l"},
     .log = "WARNING: Could not delete $/d/l :  Permission denied\n"
            "WARNING: Could not delete $/d/e/m :  Permission denied\n"},
    {.name = "failure-protects-by-position: a longer list reaches inner directories",
     .entries = {"d/", "d/e/", "d/e/l -> 1", "d/e/m -> 1"},
     .locked = {"d/e"},
     .path = "d",
     .rest = {"d/", "d/e/", "d/e/l", "d/e/m"},
     .log = nullptr},
    {.name = "failure-protects-by-position: a like name is protected as well",
     .entries = {"d/", "d/e/", "d/ef/", "d/ef/l -> 1", "d/ef/m -> 1", "d/ef/n -> 1"},
     .locked = {"d/ef"},
     .path = "d",
     .rest = {"d/", "d/e/", "d/ef/", "d/ef/l", "d/ef/m", "d/ef/n"},
     .log = nullptr},
};

TEST(Delete, FilesAndTrees) {
  for (const TreeRow& row : kTreeRows) {
    Scratch scratch(row.entries);
    for (const std::string& folder : row.locked) {
      scratch.lock(folder);
    }
    const test::OrdinaryUser user;
    PlatformImpl::deleteFile((scratch / row.path).c_str());
    EXPECT_EQ(row.rest, scratch.rest()) << row.name;
    // Null: as many lines as failed entries in an order that only the file system knows.
    if (row.log != nullptr) {
      EXPECT_EQ(row.log, scratch.log()) << row.name;
    } else {
      EXPECT_EQ(std::string::npos, scratch.log().find("Directory not empty")) << row.name;
    }
  }
}

struct RightsRow {
  const char* name;
  const char* folder;
  mode_t rights;
  const char* log;
};

constexpr const char* kDenied = "WARNING: Could not delete $/d/e :  Permission denied\n";

const RightsRow kRightsRows[] = {
    {"folder neither listed nor entered", "d/e", 0000, kDenied},
    {"folder entered, not listed", "d/e", 0333, kDenied},
    {"folder listed, not entered", "d/e", 0444, kDenied},
    {"outermost folder listed, not entered", "d", 0444,
     "WARNING: Could not delete $/d :  Permission denied\n"},
};

TEST(Delete, TreesOfOthersThatCannotBeReadOrEntered) {
  if (geteuid() != 0) {
    GTEST_SKIP() << "only root can make a tree of another user";
  }
  for (const RightsRow& row : kRightsRows) {
    Scratch scratch({"d/", "d/e/", "d/e/f"});
    scratch.lock(row.folder, row.rights);
    {
      const test::OrdinaryUser user;
      PlatformImpl::deleteFile((scratch / "d").c_str());
    }
    scratch.unlock();
    EXPECT_EQ(row.log, scratch.log()) << row.name;
    EXPECT_EQ((Strings{"d/", "d/e/", "d/e/f"}), scratch.rest()) << row.name;
  }
}

TEST(Delete, TheWalkOfATreeIsNotStopped) {
  Scratch scratch({"d/", "d/f"});
  PlatformTestAccess::setCanceled(true);
  DeleteFullDir((scratch / "d").c_str()).process();
  EXPECT_EQ(Strings(), scratch.rest());
}

struct DotsRow {
  int files;
  test::Mode mode;
  const char* wanted;
};

const DotsRow kDotsRows[] = {
    {999, test::Shown, ""}, {1000, test::Shown, "."}, {1000, test::Hidden, ""}};

TEST(Delete, ATreeOfManyFilesShowsADot) {
  for (const DotsRow& row : kDotsRows) {
    test::setMode(row.mode);
    Scratch scratch({"d/"});
    for (int i = 0; i < row.files; ++i) {
      ASSERT_EQ(0, symlink("nowhere", (scratch / ("d/" + std::to_string(i))).c_str()));
    }
    EXPECT_EQ(row.wanted,
              test::captureStdout([&] { PlatformImpl::deleteFile((scratch / "d").c_str()); }))
        << row.files << " files";
    EXPECT_EQ(Strings(), scratch.rest());
  }
}

// --- Clean-up ---

TEST(Delete, CleanupRemovesWhatIsRegistered) {
  Scratch scratch({"kept", "f", "g", "d/", "d/f", "l -> kept"});
  EXPECT_EQ(0, chmod((scratch / "").c_str(), 0755));
  PlatformImpl::setSystemTempDir((scratch / "").c_str());
  for (const char* name : {"f", "missing", "f", "d", "l", "g"}) {
    PlatformImpl::addFileToCleanupList((scratch / name).c_str());
  }
  PlatformImpl::createTempFile();
  test::writeFile(std::string(PlatformImpl::createTempSubDirectory().view()) + "/e/f", "x");
  PlatformImpl::cleanup();
  EXPECT_EQ((Strings{"kept"}), scratch.rest());
  EXPECT_EQ("", scratch.log());
}

TEST(Delete, CleanupTwiceIsHarmless) {
  Scratch scratch({"f", "g"});
  PlatformImpl::addFileToCleanupList((scratch / "f").c_str());
  PlatformImpl::cleanup();
  PlatformImpl::cleanup();
  EXPECT_EQ((Strings{"g"}), scratch.rest());
  EXPECT_EQ("", scratch.log());
  EXPECT_EQ(1, PlatformTestAccess::createdFiles().size());
}

TEST(Delete, CleanupGoesFilesThenDirectoriesInOrder) {
  Scratch scratch({"z/", "z/f", "a/", "a/f"});
  EXPECT_EQ(0, chmod((scratch / "").c_str(), 0755));
  PlatformImpl::setSystemTempDir((scratch / "").c_str());
  const std::string dir = std::string(PlatformImpl::createTempSubDirectory().view());
  test::writeFile(dir + "/f", "x");
  const std::string dirName = dir.substr(dir.rfind('/') + 1);
  PlatformImpl::addFileToCleanupList((scratch / "z/f").c_str());
  PlatformImpl::addFileToCleanupList((scratch / "a/f").c_str());
  for (const std::string& name : {std::string("z"), std::string("a"), dirName}) {
    scratch.lock(name);
  }
  const test::OrdinaryUser user;
  PlatformImpl::cleanup();
  EXPECT_EQ(
      "WARNING: Could not delete $/z/f :  Permission denied\n"
      "WARNING: Could not delete $/a/f :  Permission denied\n"
      "WARNING: Could not delete $/" +
          dirName + "/f :  Permission denied\n",
      scratch.log());
}

TEST(Delete, CleanupKeepsWhatWasTakenFromTheLists) {
  Scratch scratch({"f"});
  EXPECT_EQ(0, chmod((scratch / "").c_str(), 0755));
  PlatformImpl::setSystemTempDir((scratch / "").c_str());
  PlatformImpl::addFileToCleanupList((scratch / "f").c_str());
  const SString dir = PlatformImpl::createTempSubDirectory();
  PlatformImpl::removeFileFromCleanupList((scratch / "f").c_str());
  PlatformImpl::removeDirFromCleanupList(dir);
  PlatformImpl::cleanup();
  EXPECT_EQ(2u, scratch.rest().size());
}

// --- The launcher itself ---

struct LauncherRow {
  const char* name;
  Strings entries;
  const char* launcher;
  Strings rest;
};

const LauncherRow kLauncherRows[] = {
    {"alone in its directory", {"d/", "d/setup"}, "d/setup", {}},
    {"among other files", {"d/", "d/setup", "d/f"}, "d/setup", {"d/", "d/f"}},
    {"among hidden files", {"d/", "d/setup", "d/.f"}, "d/setup", {"d/", "d/.f"}},
    {"only the innermost directory", {"d/", "d/e/", "d/e/setup"}, "d/e/setup", {"d/"}},
    {"missing, its directory is empty", {"d/"}, "d/setup", {}},
    {"missing with its directory", {}, "d/setup", {}},
    {"a link", {"f", "d/", "d/setup -> ../f"}, "d/setup", {"f"}},
    {"a directory", {"d/", "d/setup/"}, "d/setup", {"d/", "d/setup/"}},
};

TEST(Delete, LauncherAndItsDirectory) {
  for (const LauncherRow& row : kLauncherRows) {
    Scratch scratch(row.entries);
    LauncherTestAccess::setLauncherFileName(scratch / row.launcher);
    PlatformImpl::deleteLauncher();
    EXPECT_EQ(row.rest, scratch.rest()) << row.name;
    EXPECT_EQ("", scratch.log()) << row.name;
  }
}

TEST(Delete, LauncherWithoutADirectoryInItsName) {
  Scratch scratch({"d/", "d/setup"});
  const test::ScopedCurrentDir current(scratch / "d");
  LauncherTestAccess::setLauncherFileName("setup");
  PlatformImpl::deleteLauncher();
  EXPECT_EQ((Strings{"d/"}), scratch.rest());
}

struct CleanupLauncherRow {
  const char* name;
  bool deletes;
  Strings rest;
};

const CleanupLauncherRow kCleanupLauncherRows[] = {
    {"not asked for", false, {"d/", "d/setup"}},
    {"asked for, behind the registered files", true, {}},
};

TEST(Delete, CleanupDeletesTheLauncherWhereAskedFor) {
  for (const CleanupLauncherRow& row : kCleanupLauncherRows) {
    Scratch scratch({"d/", "d/setup", "d/f"});
    LauncherTestAccess::setLauncherFileName(scratch / "d/setup");
    PlatformImpl::addFileToCleanupList((scratch / "d/f").c_str());
    PlatformImpl::setDeleteLauncher(row.deletes);
    PlatformImpl::cleanup();
    EXPECT_EQ(row.rest, scratch.rest()) << row.name;
  }
}

}  // namespace
