// The walk through directories: what it offers, and in which order. When it ends is in
// WalkLimitsTest.cpp, the search for names in SearchTest.cpp, the removal of trees in
// DeleteTest.cpp.
#include <dirent.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/FileNavigator.h"
#include "support/OwnProcess.h"
#include "support/RecordingWalk.h"
#include "support/TestFiles.h"
#include "support/Trees.h"

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

using test::RecordingWalk;

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
      RecordingWalk walk;
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
  RecordingWalk walk;
  EXPECT_FALSE(walk.process("r"));
  EXPECT_EQ(Paths{"r/a/f"}, walk.files);
  EXPECT_EQ((Paths{"r", "r/a"}), walk.visited);
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
      std::string path = directory;
      path.append("/").append(name);
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
  RecordingWalk walk;
  EXPECT_FALSE(walk.process(folder.path().c_str()));
  EXPECT_EQ(files, walk.files);
  EXPECT_EQ(directories, walk.visited);
}

TEST(WalkTest, EachWalkBeginsAnew) {
  const test::TempDir folder;
  for (const char* name : {"a/f", "b/f", "c/f"}) {
    test::writeFile(folder / name, "");
  }
  RecordingWalk walk;
  walk.stops = true;
  walk.actsAt = 1;
  EXPECT_TRUE(walk.process(folder.path().c_str()));  // two are still to be walked
  walk.visited.clear();
  EXPECT_FALSE(walk.process((folder / "a").c_str()));
  EXPECT_EQ(Paths{folder / "a"}, walk.visited);
}

// --- What is passed over ---

TEST(WalkTest, ASkippedDirectoryIsNeitherListedNorDescendedInto) {
  const test::TempDir folder;
  test::writeFile(folder / "a/f", "");
  test::writeFile(folder / "b/c/g", "");
  RecordingWalk walk;
  walk.skipped = folder / "b";
  EXPECT_FALSE(walk.process(folder.path().c_str()));
  EXPECT_EQ(Paths{folder / "a/f"}, walk.files);
  EXPECT_EQ(1, std::count(walk.visited.begin(), walk.visited.end(), folder / "b"));
}

// Here a file stands for the directory, so that one sees what the walk believes.
TEST(WalkTest, AKnownDirectoryIsNotLookedAtWhereTheSystemTellsNoTypes) {
  const test::TempDir folder;
  test::writeFile(folder / "known", "");
  for (const bool hidesTypes : {false, true}) {
    g_hidesTypes = hidesTypes;
    RecordingWalk walk;
    walk.known = folder / "known";
    EXPECT_FALSE(walk.process(folder.path().c_str()));
    EXPECT_EQ(hidesTypes ? Paths() : Paths{folder / "known"}, walk.files);
    EXPECT_EQ(hidesTypes ? 2U : 1U, walk.visited.size());
  }
  g_hidesTypes = false;
}

TEST(WalkTest, UnreadableDirectoriesArePassedOver) {
  const test::TempDir folder;
  for (const char* name : {"r/open/f", "r/shut/f", "r/listed/f", "r/listed/d/f"}) {
    test::writeFile(folder / name, "");
  }
  chmod(folder.path().c_str(), 0755);
  chmod((folder / "r/shut").c_str(), 0);
  chmod((folder / "r/listed").c_str(), 0444);  // names can be read, nothing behind them
  const auto walk = [&folder] {
    test::becomeOrdinaryUser();
    RecordingWalk recorder;
    const bool isStopped = recorder.process((folder / "r").c_str());
    std::printf("%d", isStopped ? 1 : 0);
    std::sort(recorder.files.begin(), recorder.files.end());
    for (const std::string& file : recorder.files) {
      std::printf(" %s", file.substr(folder.path().size()).c_str());
    }
  };
  EXPECT_EQ("0 /r/listed/f /r/open/f", test::outputOf(walk));
  chmod((folder / "r/shut").c_str(), 0755);
  chmod((folder / "r/listed").c_str(), 0755);
}

TEST(WalkTest, ADirectoryThatBecameALinkIsNotFollowed) {
  struct Swapper : RecordingWalk {
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

}  // namespace
