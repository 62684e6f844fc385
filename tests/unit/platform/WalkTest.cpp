// The walk through directories: what it offers, in which order, and when it ends. The search for
// names is in SearchTest.cpp, the removal of trees in TempTest.cpp.
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/FileNavigator.h"
#include "platform/PlatformImpl.h"
#include "support/OwnProcess.h"
#include "support/TestAccess.h"
#include "support/TestFiles.h"
#include "support/Trees.h"
#include "util/LauncherException.h"

namespace fs = std::filesystem;

namespace {
bool g_hidesTypes = false;  // the system tells no types, as on some file systems
}

// Stands in front of the C library's.
#if defined(__linux__) && defined(__GLIBC__)
extern "C" ssize_t getdents64(int fd, void* buffer, std::size_t size) noexcept {
  using Function = ssize_t (*)(int, void*, std::size_t);
  static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "getdents64"));
  const ssize_t count = real(fd, buffer, size);
  for (ssize_t at = 0; g_hidesTypes && at < count;) {
    auto* entry = reinterpret_cast<dirent64*>(static_cast<char*>(buffer) + at);
    entry->d_type = DT_UNKNOWN;
    at += entry->d_reclen;
  }
  return count;
}
#else
extern "C" dirent* readdir(DIR* directory) {
  static const auto real = reinterpret_cast<dirent* (*)(DIR*)>(dlsym(RTLD_NEXT, "readdir"));
  dirent* entry = real(directory);
#ifdef DT_UNKNOWN
  if (entry != nullptr && g_hidesTypes) {
    entry->d_type = DT_UNKNOWN;
  }
#endif
  return entry;
}
#endif

namespace {

using Paths = std::vector<std::string>;

// Writes down what the walk offers, and does what a test wants at one file.
class Recorder : public FileNavigator {
 public:
  explicit Recorder(bool isCancellable = true, bool recordsVisited = true)
      : FileNavigator(isCancellable, recordsVisited ? Visited::Record : Visited::Forget) {}

  bool processFile(const SString& path) override {
    files.emplace_back(path.c_str());
    const bool isAt = static_cast<long>(files.size()) == actsAt;
    if (isAt && cancels) {
      PlatformTestAccess::setCanceled(true);
    }
    return isAt && stops;
  }
  bool skipDirectory(const SString& path) override {
    asked.emplace_back(path.c_str());
    return path == skipped.c_str();
  }
  Paths visited() const {
    Paths paths;
    for (long i = 0; i < visitedDirectories().size(); ++i) {
      paths.emplace_back(visitedDirectories()[i].c_str());
    }
    return paths;
  }

  std::string skipped;
  long actsAt = 0;
  bool cancels = false;
  bool stops = false;
  Paths files;
  Paths asked;
};

// --- Which entries are files ---

struct TreeRow {
  const char* name;
  Paths tree;  // entries as makeEntry takes them
  const char* root;
  Paths files;  // sorted, below the scratch folder
};

const TreeRow kTreeRows[] = {
    {"nothing", {"r/"}, "r", {}},
    {"one file", {"r/f"}, "r", {"r/f"}},
    {"root with a separator", {"r/f"}, "r/", {"r/f"}},
    {"root with two", {"r/f"}, "r//", {"r//f"}},
    {"files and directories",
     {"r/a/f", "r/b/c/g", "r/h", "r/e/"},
     "r",
     {"r/a/f", "r/b/c/g", "r/h"}},
    {"root is missing", {"r/f"}, "no", {}},
    {"root is a file", {"r"}, "r", {}},
    {"root is empty", {"r/f"}, "", {}},
    {"root is a link", {"r/f", "l>r"}, "l", {"l/f"}},
    {"root is a link, with a separator", {"r/f", "l>r"}, "l/", {"l/f"}},
    {"root is a dangling link", {"l>no"}, "l", {}},
    {"link to a file", {"r/l>../f", "f"}, "r", {"r/l"}},
    {"link to a directory is a file", {"r/l>../d", "d/f"}, "r", {"r/l"}},
    {"link to the directory above", {"r/a/l>..", "r/f"}, "r", {"r/a/l", "r/f"}},
    {"link to itself", {"r/l>l"}, "r", {"r/l"}},
    {"dangling link", {"r/l>no"}, "r", {"r/l"}},
    {"named pipe and socket", {"r/p|", "r/s="}, "r", {"r/p", "r/s"}},
    {"dots in names",
     {"r/.f", "r/..f", "r/...", "r/.d/f", "r/..d/f", "r/a."},
     "r",
     {"r/...", "r/..d/f", "r/..f", "r/.d/f", "r/.f", "r/a."}},
    {"odd names",
     {"r/a b", "r/\n", "r/\"'", "r/\xff\xfe", "r/-x/*"},
     "r",
     {"r/\n", "r/\"'", "r/-x/*", "r/a b", "r/\xff\xfe"}},
    {"long name", {"r/" + std::string(255, 'n')}, "r", {"r/" + std::string(255, 'n')}},
};

TEST(WalkTest, TheWalkOffersWhatIsNoDirectory) {
  for (const bool hidesTypes : {false, true}) {
    g_hidesTypes = hidesTypes;
    for (const TreeRow& row : kTreeRows) {
      SCOPED_TRACE(row.name + std::string(hidesTypes ? ", no types" : ""));
      const test::TempDir folder;
      for (const std::string& entry : row.tree) {
        test::makeEntry(folder.path(), entry);
      }
      Recorder walk;
      const std::string root = row.root[0] == '\0' ? "" : folder / row.root;
      EXPECT_FALSE(walk.process(root.c_str()));
      EXPECT_EQ(row.files, test::below(folder.path(), walk.files));
    }
  }
  g_hidesTypes = false;
}

TEST(WalkTest, ARelativeRootGivesRelativePaths) {
  const test::TempDir folder;
  test::writeFile(folder / "r/a/f", "");
  const test::ScopedCurrentDir inside(folder.path());
  Recorder walk;
  EXPECT_FALSE(walk.process("r"));
  EXPECT_EQ(Paths{"r/a/f"}, walk.files);
  EXPECT_EQ((Paths{"r", "r/a"}), walk.visited());
}

struct KindRow {
  const char* entry;
  const char* path;
  bool isDirectory;
};

const KindRow kKindRows[] = {
    {"d/", "d", true},   {"d/", "d/", true},   {"f", "f", false},
    {"l>d", "l", false}, {"l>no", "l", false}, {"p|", "p", false},
    {"d/", "no", false}, {"d/", "", false},    {"d/f", "d/f/x", false},
};

TEST(WalkTest, IsDirectory) {
  for (const KindRow& row : kKindRows) {
    SCOPED_TRACE(std::string(row.entry) + " " + row.path);
    const test::TempDir folder;
    fs::create_directory(folder / "d");
    test::makeEntry(folder.path(), row.entry);
    const test::ScopedCurrentDir inside(folder.path());
    EXPECT_EQ(row.isDirectory, FileNavigator::isDirectory(row.path));
  }
}

// --- Order ---

// The same rule, written as a recursion: the files of a directory as readdir lists it, then its
// directories from the last to the first.
void listInOrder(const std::string& directory, Paths& files, Paths& directories) {
  directories.push_back(directory);
  Paths inside;
  DIR* entries = opendir(directory.c_str());
  while (const dirent* entry = readdir(entries)) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") {
      const std::string path = directory + "/" + name;
      (fs::is_directory(path) ? inside : files).push_back(path);
    }
  }
  closedir(entries);
  for (auto path = inside.rbegin(); path != inside.rend(); ++path) {
    listInOrder(*path, files, directories);
  }
}

TEST(WalkTest, LastListedDirectoryIsWalkedFirst) {
  const test::TempDir folder;
  for (const char* directory : {"a", "b", "c", "d/a", "d/b", "d/c/x", "d/c/y", "e/f/g/h"}) {
    for (const char* file : {"1", "2", "3"}) {
      test::writeFile((folder / directory).append("/").append(file), "");
    }
  }
  Paths files;
  Paths directories;
  listInOrder(folder.path(), files, directories);
  Recorder walk;
  EXPECT_FALSE(walk.process(folder.path().c_str()));
  EXPECT_EQ(files, walk.files);
  EXPECT_EQ(directories, walk.visited());
  EXPECT_EQ(directories, walk.asked);
}

TEST(WalkTest, EachWalkBeginsAnew) {
  const test::TempDir folder;
  test::writeFile(folder / "a/f", "");
  test::writeFile(folder / "b/c/g", "");
  Recorder walk;
  walk.process(folder.path().c_str());
  walk.stops = true;
  walk.actsAt = 3;
  EXPECT_TRUE(walk.process((folder / "b").c_str()));
  EXPECT_EQ((Paths{folder / "b", folder / "b/c"}), walk.visited());
  walk.process((folder / "a").c_str());
  EXPECT_EQ(Paths{folder / "a"}, walk.visited());
}

TEST(WalkTest, WhoDoesNotAskHasNoListOfTheVisited) {
  const test::TempDir folder;
  test::writeFile(folder / "a/f", "");
  Recorder walk(true, false);
  walk.process(folder.path().c_str());
  EXPECT_EQ(Paths{folder / "a/f"}, walk.files);
  EXPECT_EQ(Paths(), walk.visited());
}

// --- What is passed over ---

TEST(WalkTest, ASkippedDirectoryIsNeitherListedNorDescendedInto) {
  const test::TempDir folder;
  test::writeFile(folder / "a/f", "");
  test::writeFile(folder / "b/c/g", "");
  Recorder walk;
  walk.skipped = folder / "b";
  EXPECT_FALSE(walk.process(folder.path().c_str()));
  EXPECT_EQ(Paths{folder / "a/f"}, walk.files);
  Paths visited = walk.visited();
  EXPECT_EQ(1, std::count(visited.begin(), visited.end(), folder / "b"));
}

TEST(WalkTest, UnreadableDirectoriesArePassedOver) {
  const test::TempDir folder;
  for (const char* name : {"r/open/f", "r/shut/f", "r/listed/f", "r/listed/d/f"}) {
    test::writeFile(folder / name, "");
  }
  chmod(folder.path().c_str(), 0755);
  chmod((folder / "r/shut").c_str(), 0);
  chmod((folder / "r/listed").c_str(), 0744);  // names can be read, nothing behind them
  const auto walk = [&folder] {
    test::becomeOrdinaryUser();
    Recorder recorder;
    const bool isStopped = recorder.process((folder / "r").c_str());
    std::printf("%d", isStopped ? 1 : 0);
    std::sort(recorder.files.begin(), recorder.files.end());
    for (const std::string& file : recorder.files) {
      std::printf(" %s", file.substr(folder.path().size()).c_str());
    }
  };
  EXPECT_EQ("0 /r/listed/f /r/open/f", test::outputOf(walk));
  chmod((folder / "r/shut").c_str(), 0755);
}

TEST(WalkTest, ADirectoryThatBecameALinkIsNotFollowed) {
  struct Swapper : Recorder {
    bool skipDirectory(const SString& path) override {
      if (path == swapped.c_str()) {
        fs::rename(swapped, swapped + ".old");
        fs::create_symlink(elsewhere, swapped);
      }
      return false;
    }
    std::string swapped;
    std::string elsewhere;
  };
  const test::TempDir folder;
  test::writeFile(folder / "r/d/f", "");
  test::writeFile(folder / "elsewhere/g", "");
  Swapper walk;
  walk.swapped = folder / "r/d";
  walk.elsewhere = folder / "elsewhere";
  EXPECT_FALSE(walk.process((folder / "r").c_str()));
  EXPECT_EQ(Paths(), walk.files);
}

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
  const test::TempDir folder;
  const test::ScopedCurrentDir inside(folder.path());
  const DeepTree tree(folder.path(), 2100);
  Recorder walk;
  EXPECT_FALSE(walk.process("."));
  EXPECT_EQ(20U, walk.files.size());
  EXPECT_EQ(2000U * 2 + 3, walk.files.back().size());
  EXPECT_EQ(2049U, walk.visited().size());
  EXPECT_EQ(4097U, walk.visited().back().size());
}

struct ProgressRow {
  const char* name;
  std::vector<int> walks;  // files in each
  const char* progress;
};

const ProgressRow kProgressRows[] = {
    {"none", {0}, ""},
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
      for (const int files : row.walks) {
        Recorder walk;
        walk.actsAt = files;
        walk.stops = true;
        if (files > 0) {
          EXPECT_TRUE(walk.process(folder.path().c_str()));
          EXPECT_EQ(files, static_cast<int>(walk.files.size()));
        }
      }
    });
    std::erase(progress, '\n');  // where a row of dots ends is the console's affair
    EXPECT_EQ(row.progress, progress);
  }
}

// --- Stop and cancellation ---

struct EndRow {
  const char* name;
  bool isCancellable;
  bool isCanceledBefore;
  long actsAt;  // at this file of six
  bool cancels;
  bool stops;
  bool result;
  std::size_t files;
};

const EndRow kEndRows[] = {
    {"to the end", true, false, 0, false, false, false, 6},
    {"stopped at the first", true, false, 1, false, true, true, 1},
    {"stopped at the third", true, false, 3, false, true, true, 3},
    {"stopped at the last", true, false, 6, false, true, true, 6},
    {"canceled before", true, true, 0, false, false, false, 0},
    {"canceled at the first", true, false, 1, true, false, false, 1},
    {"canceled at the third", true, false, 3, true, false, false, 3},
    {"canceled and stopped", true, false, 3, true, true, true, 3},
    {"not cancellable, canceled before", false, true, 0, false, false, false, 6},
    {"not cancellable, canceled at the third", false, false, 3, true, false, false, 6},
    {"not cancellable, stopped", false, true, 3, false, true, true, 3},
};

TEST(WalkTest, TheWalkEndsWhenStoppedOrCanceled) {
  const test::TempDir folder;
  for (const char* name : {"1", "2", "a/3", "a/4", "b/5", "b/6"}) {
    test::writeFile(folder / name, "");
  }
  for (const EndRow& row : kEndRows) {
    SCOPED_TRACE(row.name);
    Recorder walk(row.isCancellable);
    walk.actsAt = row.actsAt;
    walk.cancels = row.cancels;
    walk.stops = row.stops;
    PlatformTestAccess::setCanceled(row.isCanceledBefore);
    EXPECT_EQ(row.result, walk.process(folder.path().c_str()));
    EXPECT_EQ(row.files, walk.files.size());
    PlatformTestAccess::setCanceled(false);
  }
}

TEST(WalkTest, AnExceptionLeavesNoDirectoryOpen) {
  struct Thrower : FileNavigator {
    Thrower() : FileNavigator(true, Visited::Forget) {}
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
