// The search for files by the end of their paths, and the scan of the disks. The walk itself is in
// WalkTest.cpp.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "platform/FileFindListener.h"
#include "platform/FindFiles.h"
#include "platform/PlatformImpl.h"
#include "support/OwnProcess.h"
#include "support/TestAccess.h"
#include "support/TestFiles.h"
#include "support/Trees.h"
#include "util/LauncherException.h"

namespace {

using Paths = std::vector<std::string>;

// --- Matching names ---

struct Listener : FileFindListener {
  bool foundFile(const SString& path) override {
    found.emplace_back(path.c_str());
    return static_cast<long>(found.size()) == stopsAt;
  }
  Paths found;
  long stopsAt = 0;
};

struct NameRow {
  const char* name;
  Paths names;
  std::string path;
  long stopsAt;
  std::size_t calls;
  bool result = false;
};

const NameRow kNameRows[] = {
    {.name = "no names", .names = {}, .path = "/a/bin/java", .stopsAt = 0, .calls = 0},
    {.name = "one component", .names = {"java"}, .path = "/a/bin/java", .stopsAt = 0, .calls = 1},
    {.name = "two components",
     .names = {"bin/java"},
     .path = "/a/bin/java",
     .stopsAt = 0,
     .calls = 1},
    {.name = "right below the root", .names = {"java"}, .path = "/java", .stopsAt = 0, .calls = 1},
    {.name = "all but the separator",
     .names = {"a/bin/java"},
     .path = "/a/bin/java",
     .stopsAt = 0,
     .calls = 1},
    {.name = "the path itself",
     .names = {"/a/bin/java"},
     .path = "/a/bin/java",
     .stopsAt = 0,
     .calls = 0},
    {.name = "longer than the path",
     .names = {"x/a/bin/java"},
     .path = "/a/bin/java",
     .stopsAt = 0,
     .calls = 0},
    {.name = "relative path equal to the name",
     .names = {"bin/java"},
     .path = "bin/java",
     .stopsAt = 0,
     .calls = 0},
    {.name = "one letter more in front of the directory",
     .names = {"bin/java"},
     .path = "/a/sbin/java",
     .stopsAt = 0,
     .calls = 0},
    {.name = "one letter more in front of the file",
     .names = {"java"},
     .path = "/a/bin/xjava",
     .stopsAt = 0,
     .calls = 0},
    {.name = "one letter more behind",
     .names = {"bin/java"},
     .path = "/a/bin/javac",
     .stopsAt = 0,
     .calls = 0},
    {.name = "in the middle",
     .names = {"bin/java"},
     .path = "/a/bin/java/b",
     .stopsAt = 0,
     .calls = 0},
    {.name = "elsewhere in the path",
     .names = {"java"},
     .path = "/java/xxxx",
     .stopsAt = 0,
     .calls = 0},
    {.name = "letters differ in case",
     .names = {"bin/java"},
     .path = "/a/bin/Java",
     .stopsAt = 0,
     .calls = 0},
    {.name = "directory differs in case",
     .names = {"bin/java"},
     .path = "/a/Bin/java",
     .stopsAt = 0,
     .calls = 0},
    {.name = "name begins with a separator",
     .names = {"/bin/java"},
     .path = "/a/bin/java",
     .stopsAt = 0,
     .calls = 0},
    {.name = "name begins with one, doubled in the path",
     .names = {"/bin/java"},
     .path = "/a//bin/java",
     .stopsAt = 0,
     .calls = 1},
    {.name = "empty name", .names = {""}, .path = "/a/bin/java", .stopsAt = 0, .calls = 0},
    {.name = "empty name, separator last", .names = {""}, .path = "/a/", .stopsAt = 0, .calls = 1},
    {.name = "two names, both",
     .names = {"java", "bin/java"},
     .path = "/a/bin/java",
     .stopsAt = 0,
     .calls = 2},
    {.name = "two names, one",
     .names = {"bin/jre", "bin/java"},
     .path = "/a/bin/java",
     .stopsAt = 0,
     .calls = 1},
    {.name = "the same name twice",
     .names = {"java", "java"},
     .path = "/a/bin/java",
     .stopsAt = 0,
     .calls = 2},
    {.name = "stopped at the first",
     .names = {"java", "bin/java"},
     .path = "/a/bin/java",
     .stopsAt = 1,
     .calls = 1,
     .result = true},
    {.name = "stopped at the second",
     .names = {"java", "bin/java"},
     .path = "/a/bin/java",
     .stopsAt = 2,
     .calls = 2,
     .result = true},
    {.name = "bytes beyond ASCII",
     .names = {"bin/j\xc3\xa4va"},
     .path = "/a/bin/j\xc3\xa4va",
     .stopsAt = 0,
     .calls = 1},
};

StringDeque dequeOf(const Paths& texts) {
  StringDeque deque;
  for (const std::string& text : texts) {
    deque.push_back(text.c_str());
  }
  return deque;
}

TEST(SearchTest, NamesMatchTheEndOfAPath) {
  for (const NameRow& row : kNameRows) {
    SCOPED_TRACE(row.name);
    const StringDeque names = dequeOf(row.names);
    Listener listener;
    listener.stopsAt = row.stopsAt;
    FindFiles walk(names, listener);
    EXPECT_EQ(row.result, walk.processFile(row.path.c_str()));
    EXPECT_EQ(Paths(row.calls, row.path), listener.found);
  }
}

TEST(SearchTest, LinksAndOtherFilesAreFoundByName) {
  const test::TempDir folder;
  for (const char* entry : {"a/bin/java", "b/bin/java>../../a/bin/java", "c/bin/java>no",
                            "d/bin>../a/bin", "e/bin/java|", "f/bin/java/", "g/sbin/java"}) {
    test::makeEntry(folder.path(), entry);
  }
  const StringDeque names = dequeOf({"bin/java"});
  Listener listener;
  FindFiles walk(names, listener);
  EXPECT_FALSE(walk.process(folder.path().c_str()));
  EXPECT_EQ((Paths{"a/bin/java", "b/bin/java", "c/bin/java", "e/bin/java"}),
            test::below(folder.path(), listener.found));
}

TEST(SearchTest, TheSearchIsCancellable) {
  const test::TempDir folder;
  test::writeFile(folder / "bin/java", "");
  const StringDeque names = dequeOf({"java"});
  Listener listener;
  FindFiles walk(names, listener);
  PlatformTestAccess::setCanceled(true);
  EXPECT_FALSE(walk.process(folder.path().c_str()));
  PlatformTestAccess::setCanceled(false);
  EXPECT_EQ(Paths(), listener.found);
}

struct SkipRow {
  const char* name;
  const char* tempDir;  // "./" at the beginning is the scratch folder
  const char* path;
  bool isSkipped;
};

const SkipRow kSkipRows[] = {
    {"temporary directory with a separator", "./t", "./t/", true},
    {"temporary directory given with one", "./t/", "./t/", true},
    // QUIRK(skip-needs-trailing-separator)
    {"without a separator", "./t", "./t", false},
    {"given with one, met without", "./t/", "./t", false},
    {"inside it", "./t", "./t/x/", false},
    {"name goes on", "./t", "./tt/", false},
    {"two separators", "./t", "./t//", false},
    {"/var/tmp/", "./t", "/var/tmp/", true},
    {"/var/tmp as it is met", "./t", "/var/tmp", false},
    {"/var/tmp by default", "", "/var/tmp/", true},
    {"/var/tmp by default, as it is met", "", "/var/tmp", false},
    {"below /var/tmp", "./t", "/var/tmp/x/", false},
    {"/tmp", "./t", "/tmp/", false},
    {"the root", "./t", "/", false},
    {"empty", "./t", "", false},
};

TEST(SearchTest, TheTemporaryDirectoriesAreSkippedAsRoots) {
  const test::TempDir folder;
  test::writeFile(folder / "t/bin/java", "");
  const auto here = [&](std::string path) {
    return path.rfind("./", 0) == 0 ? folder / path.substr(2) : path;
  };
  const StringDeque names = dequeOf({"java"});
  for (const SkipRow& row : kSkipRows) {
    SCOPED_TRACE(row.name);
    PlatformImpl::setSystemTempDir(SString(here(row.tempDir)));
    Listener listener;
    FindFiles walk(names, listener);
    EXPECT_EQ(row.isSkipped, walk.skipDirectory(SString(here(row.path))));
  }
  PlatformImpl::setSystemTempDir(SString(folder / "t"));
  Listener listener;
  FindFiles walk(names, listener);
  walk.process(SString(folder / "t/"));
  EXPECT_EQ(Paths(), listener.found);
  walk.process(SString(folder.path() + "/"));
  EXPECT_EQ(Paths{folder / "t/bin/java"}, listener.found);
  PlatformImpl::setSystemTempDir("");
}

TEST(SearchTest, AMissingTemporaryDirectoryIsToldBeforeTheSearch) {
  const test::ScopedEnvironment language("LANG", "C");
  PlatformImpl::setSystemTempDir("/nowhere");
  const StringDeque names;
  Listener listener;
  try {
    FindFiles walk(names, listener);
    ADD_FAILURE() << "nothing was thrown";
  } catch (const LauncherException& problem) {
    EXPECT_STREQ(
        "Cannot use /nowhere as the temp directory because it does not exist. Please run the "
        "program again using the option -cv:tempdir <temp dir> to specify a different directory "
        "to use.",
        problem.what());
  }
  PlatformImpl::setSystemTempDir("");
}

// --- The scan of the disks, on a root of the test's own ---

struct ScanRow {
  const char* name;
  Paths names;
  long stopsAt;
  const char* found;
};

const ScanRow kScanRows[] = {
    {"everything", {"bin/java"}, 0, "/jvm/bin/java /var/tmp/cvj/bin/java"},
    {"several names",
     {"bin/java", "jre/bin/java", "lib/x"},
     0,
     "/jvm/bin/java /jvm/lib/x /var/tmp/cvj/bin/java"},
    {"nothing", {"bin/nothing"}, 0, ""},
    {"stopped", {"lib/x", "top"}, 1, "/top"},
};

TEST(SearchTest, FindFilesScansFromTheRoot) {
  const test::TempDir folder;
  for (const char* name :
       {"jvm/bin/java", "jvm/lib/x", "jvm/sbin/java", "top", "var/tmp/cvj/bin/java"}) {
    test::writeFile(folder / name, "");
  }
  for (const ScanRow& row : kScanRows) {
    SCOPED_TRACE(row.name);
    const std::string found = test::outputOf([&] {
      if (!test::changeRoot(folder.path())) {
        std::printf("no root of our own");
        return;
      }
      Listener listener;
      listener.stopsAt = row.stopsAt;
      PlatformImpl::findFiles(dequeOf(row.names), listener);
      std::sort(listener.found.begin(), listener.found.end());
      for (const std::string& path : listener.found) {
        std::printf("%s%s", path == listener.found.front() ? "" : " ", path.c_str());
      }
    });
    if (found == "no root of our own") {
      GTEST_SKIP() << found;
    }
    EXPECT_EQ(row.found, found);
  }
}

}  // namespace
