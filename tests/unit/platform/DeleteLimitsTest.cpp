// Deletion of trees: depth, closed folders, what is mounted in them.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>
#include <vector>

#ifdef __linux__
#include <sched.h>
#include <sys/mount.h>
#endif

#include "launcher/Log.h"
#include "platform/DirectoryTree.h"
#include "platform/PlatformImpl.h"
#include "support/OrdinaryUser.h"
#include "support/OwnProcess.h"
#include "support/Restrictions.h"
#include "support/TestFiles.h"

namespace {

// A tree of `depth` folders, one in the other, each with a file.
void makeDeepTree(const std::string& root, int depth, const std::string& name) {
  const test::ScopedCurrentDir inside(root);
  for (int level = 0; level < depth; ++level) {
    ASSERT_EQ(0, mkdir(name.c_str(), 0755));
    ASSERT_EQ(0, chdir(name.c_str()));
    close(open("f", O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
  }
}

std::string logOf(const test::TempDir& folder) {
  return access((folder / "log").c_str(), F_OK) == 0 ? test::readFile(folder / "log") : "";
}

struct DeepRow {
  const char* name;
  int depth;
  std::string folder;
};

#ifdef CORVANE_CROSS_BUILD
constexpr int kDeep = 300;  // newer emulators follow each path anew, step by step
#else
constexpr int kDeep = 3000;
#endif

TEST(DeleteLimits, ATreeDeeperThanTheLongestPath) {
  const DeepRow rows[] = {
      {"short names", kDeep, "d"}, {"long names", 60, std::string(200, 'd')}, {"flat", 1, "d"}};
  for (const DeepRow& row : rows) {
    SCOPED_TRACE(row.name);
    const test::TempDir folder;
    ASSERT_EQ(0, mkdir((folder / "tree").c_str(), 0755));
    makeDeepTree(folder / "tree", row.depth, row.folder);
    EXPECT_EQ("", test::outputOf([&] {
                const int lowestFree = dup(STDIN_FILENO);
                close(lowestFree);
                EXPECT_TRUE(test::limit(RLIMIT_NOFILE, static_cast<unsigned long>(lowestFree) + 2));
                PlatformImpl::hideUI(0);
                setLogFileName((folder / "log").c_str());
                PlatformImpl::deleteFile((folder / "tree").c_str());
              }));
    EXPECT_EQ("", logOf(folder));
    EXPECT_EQ(std::vector<std::string>(), test::listTree(folder.path()));
  }
}

struct ClosedRow {
  const char* name;
  mode_t rights;
};

TEST(DeleteLimits, ClosedFoldersOfOnesOwnAreOpened) {
  const ClosedRow rows[] = {{"without rights", 0000},
                            {"entered, not listed", 0100},
                            {"listed, not entered", 0400},
                            {"written only", 0200}};
  for (const ClosedRow& row : rows) {
    for (const char* closed : {"tree", "tree/a", "tree/a/b"}) {
      SCOPED_TRACE(std::string(row.name) + ": " + closed);
      const test::TempDir folder;
      ASSERT_EQ(0, chmod(folder.path().c_str(), 0777));
      const test::OrdinaryUser user;
      test::writeFile(folder / "tree/a/b/f", "x");
      ASSERT_EQ(0, chmod((folder / closed).c_str(), row.rights));
      setLogFileName((folder / "log").c_str());
      PlatformImpl::deleteFile((folder / "tree").c_str());
      EXPECT_EQ(std::vector<std::string>(), test::listTree(folder.path()));
    }
  }
}

TEST(DeleteLimits, WriteProtectedFoldersStay) {
  const test::TempDir folder;
  ASSERT_EQ(0, chmod(folder.path().c_str(), 0777));
  const test::OrdinaryUser user;
  test::writeFile(folder / "tree/a/f", "x");
  ASSERT_EQ(0, chmod((folder / "tree/a").c_str(), 0555));
  setLogFileName((folder / "log").c_str());
  PlatformImpl::deleteFile((folder / "tree").c_str());
  EXPECT_EQ(0, access((folder / "tree/a/f").c_str(), F_OK));
  EXPECT_EQ(0, chmod((folder / "tree/a").c_str(), 0755));
}

TEST(DeleteLimits, AnotherFolderInTheSamePlaceIsNotEntered) {
  const test::TempDir folder;
  test::writeFile(folder / "tree/a/b/f", "x");
  DirectoryTree tree((folder / "tree").c_str());
  ASSERT_EQ(0, tree.enter(0));
  const long a = tree.add(0, "a");
  ASSERT_EQ(0, tree.enter(a));
  const long b = tree.add(a, "b");
  ASSERT_EQ(0, tree.enter(b));
  ASSERT_EQ(0, rename((folder / "tree/a").c_str(), (folder / "moved").c_str()));
  test::writeFile(folder / "tree/a/b/mine", "x");
  EXPECT_EQ(0, tree.enter(0));
  EXPECT_EQ(ESTALE, tree.enter(b));
  EXPECT_EQ(ESTALE, tree.enterParent(b));
  ASSERT_EQ(0, rename((folder / "tree").c_str(), (folder / "gone").c_str()));
  ASSERT_EQ(0, symlink("gone", (folder / "tree").c_str()));
  DirectoryTree linked((folder / "tree").c_str());
  EXPECT_EQ(ENOTDIR, linked.enter(0));
}

#ifdef __linux__

// Mounts of this process's own; false where that is not permitted.
bool enterPrivateMounts() {
  return unshare(CLONE_NEWNS) == 0 && mount("none", "/", "none", MS_REC | MS_PRIVATE, nullptr) == 0;
}

struct MountRow {
  const char* name;
  std::string type;    // "none": `source` is bound
  const char* source;  // below the scratch folder
  const char* target;
  const char* log;
};

const MountRow kMountRows[] = {
    {"another file system", "tmpfs", nullptr, "tree/a",
     "WARNING: Could not delete $/tree/a :  Device or resource busy\n"},
    {"a folder of the same one", "none", "outside", "tree/a",
     "WARNING: Could not delete $/tree/a :  Device or resource busy\n"},
    {"the tree itself", "none", "outside", "tree",
     "WARNING: Could not delete $/tree :  Device or resource busy\n"},
    {"a file", "none", "outside/kept", "tree/f",
     "WARNING: Could not delete $/tree/f :  Device or resource busy\n"},
};

TEST(DeleteLimits, WhatIsMountedInATreeIsNotEntered) {
  if (test::outputOf([] { _exit(enterPrivateMounts() ? 0 : 1); }) != "") {
    GTEST_SKIP() << "no private mounts here";
  }
  for (const MountRow& row : kMountRows) {
    SCOPED_TRACE(row.name);
    const test::TempDir folder;
    test::writeFile(folder / "outside/kept", "x");
    test::writeFile(folder / "tree/f", "x");
    ASSERT_EQ(0, mkdir((folder / "tree/a").c_str(), 0755));
    EXPECT_EQ("kept\n", test::outputOf([&] {
                enterPrivateMounts();
                const std::string source = folder / (row.source == nullptr ? "" : row.source);
                const std::string target = folder / row.target;
                EXPECT_EQ(0, mount(source.c_str(), target.c_str(), row.type.c_str(),
                                   row.type == "none" ? MS_BIND : 0, nullptr));
                const std::string inside = target + "/mounted";
                const bool isFile = std::string(row.target) == "tree/f";
                if (!isFile) {
                  test::writeFile(inside, "x");
                }
                setLogFileName((folder / "log").c_str());
                PlatformImpl::deleteFile((folder / "tree").c_str());
                const bool stays =
                    isFile ? test::readFile(target) == "x" : access(inside.c_str(), F_OK) == 0;
                std::puts(stays ? "kept" : "harmed");
              }));
    std::string log = logOf(folder);
    for (auto at = log.find(folder.path()); at != std::string::npos; at = log.find(folder.path())) {
      log.replace(at, folder.path().size(), "$");
    }
    EXPECT_TRUE(log.find(row.log) != std::string::npos) << log;
    EXPECT_EQ("x", test::readFile(folder / "outside/kept"));
  }
}

#endif

}  // namespace
