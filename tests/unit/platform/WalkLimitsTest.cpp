// The walk through directories: depth, number, progress, and when it ends.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "platform/FileNavigator.h"
#include "platform/PlatformImpl.h"
#include "support/Commands.h"
#include "support/OwnProcess.h"
#include "support/RecordingWalk.h"
#include "support/Restrictions.h"
#include "support/TestAccess.h"
#include "support/TestFiles.h"
#include "util/LauncherException.h"

namespace {

using test::RecordingWalk;

// --- Depth and number ---

// Makes "d/d/d/..." with a file "f" in each hundredth, and removes it at the end.
class DeepTree {
 public:
  DeepTree(const std::string& folder, int depth) : m_depth(depth) {
    const test::ScopedCurrentDir inside(folder);
    for (int level = 1; level <= depth; ++level) {
      EXPECT_EQ(0, mkdir("d", 0755));
      EXPECT_EQ(0, chdir("d"));
      if (level % 100 == 0) {
        close(open("f", O_CREAT | O_WRONLY, 0644));
      }
    }
    m_bottom = open(".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  }
  ~DeepTree() {
    const test::ScopedCurrentDir inside("/");
    EXPECT_EQ(0, fchdir(m_bottom));
    close(m_bottom);
    for (int level = 0; level < m_depth; ++level) {
      unlink("f");
      EXPECT_EQ(0, chdir(".."));
      rmdir("d");
    }
  }

 private:
  int m_depth;
  int m_bottom;
};

// The system opens no path of 4096 bytes and more: what lies deeper is passed over.
TEST(WalkTest, DeepTreesAreWalkedAsDeepAsPathsCanBeOpened) {
#ifdef CORVANE_CROSS_BUILD
  GTEST_SKIP() << "newer emulators follow each path anew, step by step";
#endif
  const test::TempDir folder;
  const test::ScopedCurrentDir inside(folder.path());
  const DeepTree tree(folder.path(), 2100);
  RecordingWalk walk;
  EXPECT_FALSE(walk.process("."));
  EXPECT_EQ(20U, walk.files.size());
  EXPECT_EQ(2000U * 2 + 3, walk.files.back().size());
  EXPECT_EQ(2049U, walk.visited.size());
  EXPECT_EQ(4097U, walk.visited.back().size());
}

struct ProgressRow {
  const char* name;
  std::vector<int> walks;  // files in each
  const char* progress;
};

const ProgressRow kProgressRows[] = {
    {"one file", {1}, ""},
    {"999 files", {999}, ""},
    {"1000 files", {1000}, "."},
    {"1001 files", {1001}, "."},
    {"1999 files", {1999}, "."},
    {"2000 files", {2000}, ".."},
    {"each walk counts for itself", {999, 999}, ""},
};

TEST(WalkTest, ProgressAdvancesAfterEachThousandthFile) {
  const test::TempDir folder;
  // Walks end at the wanted number, wherever in the tree that is.
  for (int i = 0; i < 2000; ++i) {
    test::writeFile(folder / std::to_string(i % 3) + "/" + std::to_string(i), "");
  }
  for (const ProgressRow& row : kProgressRows) {
    SCOPED_TRACE(row.name);
    PlatformImpl::setSilent(false);
    std::string progress = test::captureStdout([&] {
      RecordingWalk walk;
      walk.stops = true;
      for (const int files : row.walks) {
        walk.files.clear();
        walk.actsAt = files;
        EXPECT_TRUE(walk.process(folder.path().c_str()));
        EXPECT_EQ(files, static_cast<int>(walk.files.size()));
      }
    });
    std::erase(progress, '\n');  // where a row of dots ends is the console's affair
    EXPECT_EQ(row.progress, progress);
  }
}

// --- Stop and cancellation ---

struct EndRow {
  const char* name;
  long actsAt;  // at this file of six
  bool isCancellable = false;
  bool isCanceledBefore = false;
  bool cancels = false;
  bool stops = false;
  bool result = false;
  std::size_t files;
};

const EndRow kEndRows[] = {
    {.name = "to the end", .actsAt = 0, .isCancellable = true, .files = 6},
    {.name = "stopped at the first",
     .actsAt = 1,
     .isCancellable = true,
     .stops = true,
     .result = true,
     .files = 1},
    {.name = "stopped at the third",
     .actsAt = 3,
     .isCancellable = true,
     .stops = true,
     .result = true,
     .files = 3},
    {.name = "stopped at the last",
     .actsAt = 6,
     .isCancellable = true,
     .stops = true,
     .result = true,
     .files = 6},
    {.name = "canceled before",
     .actsAt = 0,
     .isCancellable = true,
     .isCanceledBefore = true,
     .files = 0},
    {.name = "canceled at the first",
     .actsAt = 1,
     .isCancellable = true,
     .cancels = true,
     .files = 1},
    {.name = "canceled at the third",
     .actsAt = 3,
     .isCancellable = true,
     .cancels = true,
     .files = 3},
    {.name = "canceled and stopped",
     .actsAt = 3,
     .isCancellable = true,
     .cancels = true,
     .stops = true,
     .result = true,
     .files = 3},
    {.name = "not cancellable, canceled before", .actsAt = 0, .isCanceledBefore = true, .files = 6},
    {.name = "not cancellable, canceled at the third", .actsAt = 3, .cancels = true, .files = 6},
    {.name = "not cancellable, stopped",
     .actsAt = 3,
     .isCanceledBefore = true,
     .stops = true,
     .result = true,
     .files = 3},
};

TEST(WalkTest, TheWalkEndsWhenStoppedOrCanceled) {
  const test::TempDir folder;
  for (const char* name : {"1", "2", "a/3", "a/4", "b/5", "b/6"}) {
    test::writeFile(folder / name, "");
  }
  for (const EndRow& row : kEndRows) {
    SCOPED_TRACE(row.name);
    RecordingWalk walk(row.isCancellable);
    walk.actsAt = row.actsAt;
    walk.cancels = row.cancels;
    walk.stops = row.stops;
    PlatformTestAccess::setCanceled(row.isCanceledBefore);
    EXPECT_EQ(row.result, walk.process(folder.path().c_str()));
    EXPECT_EQ(row.files, walk.files.size());
    EXPECT_EQ(row.files == 0, walk.visited.empty());
    PlatformTestAccess::setCanceled(false);
  }
}

TEST(WalkTest, AChildStartedOnTheWayDoesNotInheritTheDirectory) {
  struct Starter : FileNavigator {
    Starter() : FileNavigator(true) {}
    bool processFile(const SString&) override {
      test::runCommand(
          "for f in 0 1 2 3 4 5 6 7 8 9; do test -e /dev/fd/$f && printf \"$f \"; done");
      return true;
    }
  };
  const test::TempDir folder;
  test::writeFile(folder / "f", "");
  EXPECT_EQ("0 1 2 ", test::outputOf([&folder] {
              test::closeAllDescriptorsButStandardOnes();
              Starter().process(folder.path().c_str());
            }));
}

TEST(WalkTest, AnExceptionLeavesNoDirectoryOpen) {
  struct Thrower : FileNavigator {
    Thrower() : FileNavigator(true) {}
    bool processFile(const SString& path) override { throw LauncherException(path); }
  };
  const test::TempDir folder;
  test::writeFile(folder / "f", "");
  Thrower walk;
  const int before = dup(0);
  close(before);
  EXPECT_THROW(walk.process(folder.path().c_str()), LauncherException);
  const int after = dup(0);
  close(after);
  EXPECT_EQ(before, after);
}

}  // namespace
