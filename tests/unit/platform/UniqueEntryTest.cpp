// Names that nobody can foresee, and entries that nothing had before.
#include "platform/UniqueEntry.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <vector>

#include "platform/RandomName.h"
#include "support/TestFiles.h"
#include "support/Texts.h"

namespace {

using Strings = std::vector<std::string>;

TEST(RandomName, IsMadeOfLettersAndDigits) {
  constexpr const char* kAllowed = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
  for (const std::size_t size : {0u, 1u, 6u, 8u, 9u, 100u}) {
    const SString name = randomName(size);
    EXPECT_EQ(size, name.size());
    EXPECT_EQ(SString::npos, name.find_first_not_of(kAllowed)) << name.c_str();
  }
}

TEST(RandomName, UsesEveryLetterAndDigit) {
  const SString name = randomName(10000);
  for (const char* byte = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"; *byte;
       ++byte) {
    EXPECT_NE(SString::npos, name.find(*byte)) << *byte;
  }
}

TEST(RandomName, Differs) {
  EXPECT_FALSE(randomName(20) == randomName(20));
}

// The paths that `nextPath` gives out, one after the other; the last one again and again.
Strings g_paths;
std::size_t g_asked = 0;

SString nextPath() {
  const std::size_t i = g_asked < g_paths.size() ? g_asked : g_paths.size() - 1;
  ++g_asked;
  return g_paths[i].c_str();
}

struct Row {
  const char* name;
  EntryKind kind;
  Strings paths;  // relative to the scratch folder
  int wantedError;
  std::size_t wantedAsked;
};

constexpr EntryKind File = EntryKind::File;
constexpr EntryKind Directory = EntryKind::Directory;

const Row kRows[] = {
    {"file at the first path", File, {"a"}, 0, 1},
    {"directory at the first path", Directory, {"a"}, 0, 1},
    {"file, names that are taken", File, {"file", "dir", "link", "dangling", "a"}, 0, 5},
    {"directory, names that are taken", Directory, {"file", "dir", "link", "dangling", "a"}, 0, 5},
    {"file, every name is taken", File, {"dangling"}, EEXIST, kMostUniqueNames},
    {"directory, every name is taken", Directory, {"file"}, EEXIST, kMostUniqueNames},
    {"file, missing folder", File, {"gone/a", "b"}, ENOENT, 1},
    {"directory, missing folder", Directory, {"gone/a", "b"}, ENOENT, 1},
    {"file, a name too long", File, {std::string(300, 'x'), "b"}, ENAMETOOLONG, 1},
};

TEST(UniqueEntry, UsesNothingThatExists) {
  for (const Row& row : kRows) {
    test::TempDir scratch;
    test::writeFile(scratch / "file", "kept");
    ASSERT_EQ(0, mkdir((scratch / "dir").c_str(), 0777));
    ASSERT_EQ(0, symlink("file", (scratch / "link").c_str()));
    ASSERT_EQ(0, symlink("planted", (scratch / "dangling").c_str()));
    g_paths.clear();
    g_asked = 0;
    for (const std::string& path : row.paths) {
      g_paths.push_back(scratch / path);
    }
    SString path;
    EXPECT_EQ(row.wantedError, createUniqueEntry(row.kind, nextPath, path)) << row.name;
    EXPECT_EQ(row.wantedAsked, g_asked) << row.name;
    EXPECT_EQ("kept", test::readFile(scratch / "file")) << row.name;
    Strings wanted = {"dangling", "dir/", "file", "link"};
    if (row.wantedError == 0) {
      wanted.insert(wanted.begin(), row.kind == File ? "a" : "a/");
      EXPECT_EQ(scratch / "a", test::str(path)) << row.name;
    }
    EXPECT_EQ(wanted, test::listTree(scratch.path())) << row.name;
  }
}

}  // namespace
