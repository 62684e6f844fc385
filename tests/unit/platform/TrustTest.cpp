// Which of the scan's finds may be tried, for root and for others.
#include "platform/Trust.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "support/JVMSupport.h"
#include "support/OrdinaryUser.h"
#include "support/TestFiles.h"
#include "support/Trees.h"

namespace {

struct EntryRow {
  const char* name;
  EntryStatus entry;
  std::vector<uid_t> trusted;
  const char* objection;
};

constexpr mode_t kFile = S_IFREG;
constexpr mode_t kFolder = S_IFDIR;

const EntryRow kEntryRows[] = {
    {"root's file", {kFile | 0755, 0, 0, false}, {}, ""},
    {"root's folder", {kFolder | 0755, 0, 0, false}, {}, ""},
    {"of a group that only reads", {kFolder | 0755, 0, 50, false}, {}, ""},
    {"root's group writes", {kFolder | 0775, 0, 0, false}, {}, ""},
    {"another group writes", {kFolder | 0775, 0, 50, false}, {}, "group 50 can write there"},
    {"another group writes a file", {kFile | 0020, 0, 50, false}, {}, "group 50 can write there"},
    {"everybody writes", {kFolder | 0777, 0, 0, false}, {}, "everybody can write there"},
    {"everybody but the group writes",
     {kFile | 0702, 0, 50, false},
     {},
     "everybody can write there"},
    {"sticky folder", {kFolder | 01777, 0, 0, false}, {}, ""},
    {"sticky folder of a group", {kFolder | 01770, 0, 50, false}, {}, ""},
    {"a file is not sticky", {kFile | 01777, 0, 0, false}, {}, "everybody can write there"},
    {"set-group-id is not sticky", {kFolder | 02775, 0, 50, false}, {}, "group 50 can write there"},
    {"access list, root's group writes",
     {kFolder | 0775, 0, 0, true},
     {},
     "its access list may let others write there"},
    {"access list that lets nobody write", {kFolder | 0755, 0, 0, true}, {}, ""},
    {"a stranger's", {kFile | 0755, 1000, 0, false}, {}, "it belongs to user 1000"},
    {"a stranger's sticky folder",
     {kFolder | 01777, 1000, 0, false},
     {},
     "it belongs to user 1000"},
    {"a stranger's, who shuts himself out",
     {kFile | 0555, 1000, 0, false},
     {},
     "it belongs to user 1000"},
    {"the caller's", {kFile | 0755, 1000, 1000, false}, {1000}, ""},
    {"the caller's, his group writes",
     {kFile | 0775, 1000, 1000, false},
     {1000},
     "group 1000 can write there"},
    {"another's than the caller's",
     {kFile | 0755, 1001, 0, false},
     {1000},
     "it belongs to user 1001"},
    {"the second caller's", {kFile | 0755, 1001, 0, false}, {1000, 1001}, ""},
    {"the highest user",
     {kFile | 0755, 4294967294U, 0, false},
     {},
     "it belongs to user 4294967294"},
};

TEST(TrustTest, WhatSpeaksAgainstAnEntry) {
  for (const EntryRow& row : kEntryRows) {
    EXPECT_STREQ(row.objection, objectionTo(row.entry, row.trusted).c_str()) << row.name;
  }
}

struct CallerRow {
  const char* sudo;
  const char* pkexec;
  std::vector<uid_t> users;
};

const CallerRow kCallerRows[] = {
    {"1000", nullptr, {1000}},
    {nullptr, "1001", {1001}},
    {"1000", "1001", {1000, 1001}},
    {nullptr, nullptr, {}},
    {"", "", {}},
    {"0", nullptr, {0}},
    {"-1", nullptr, {}},
    {"1000x", nullptr, {}},
    {" 1000", nullptr, {}},
    {"4294967296", nullptr, {}},
    {"me", "+5", {}},
};

TEST(TrustTest, WhoBecameRoot) {
  for (const CallerRow& row : kCallerRows) {
    const test::ScopedEnvironment sudo("SUDO_UID", row.sudo);
    const test::ScopedEnvironment pkexec("PKEXEC_UID", row.pkexec);
    EXPECT_EQ(row.users, usersWhoBecameRoot())
        << (row.sudo ? row.sudo : "unset") << ", " << (row.pkexec ? row.pkexec : "unset");
  }
}

// --- The way to a program ---

struct Change {
  const char* entry;  // below the scratch folder; a link itself, not what it points to
  long owner;         // -1: root, as it was made
  mode_t mode;        // 0: as it was made
};

struct WayRow {
  const char* name;
  std::vector<std::string> tree;  // entries as makeEntry takes them; DIR is the scratch folder
  std::vector<Change> changes;
  const char* path;
  const char* objection;  // empty: it may be tried
  const char* caller = nullptr;
};

const WayRow kWayRows[] = {
    {"all of it is root's", {"a/bin/java"}, {}, "a/bin/java", ""},
    {"a stranger's program",
     {"a/bin/java"},
     {{"a/bin/java", 1000, 0}},
     "a/bin/java",
     "DIR/a/bin/java: it belongs to user 1000"},
    {"a stranger's folder",
     {"a/bin/java"},
     {{"a", 1000, 0}},
     "a/bin/java",
     "DIR/a: it belongs to user 1000"},
    {"the first on the way is told",
     {"a/bin/java"},
     {{"a/bin/java", 1000, 0}, {"a/bin", 1001, 0}},
     "a/bin/java",
     "DIR/a/bin: it belongs to user 1001"},
    {"the caller's",
     {"a/bin/java"},
     {{"a", 1000, 0}, {"a/bin/java", 1000, 0}},
     "a/bin/java",
     "",
     "1000"},
    {"a folder open to everybody",
     {"a/bin/java"},
     {{"a", -1, 0777}},
     "a/bin/java",
     "DIR/a: everybody can write there"},
    {"a program open to everybody",
     {"a/bin/java"},
     {{"a/bin/java", -1, 0777}},
     "a/bin/java",
     "DIR/a/bin/java: everybody can write there"},
    {"a sticky folder", {"a/bin/java"}, {{"a", -1, 01777}}, "a/bin/java", ""},
    {"a stranger's folder in a sticky one",
     {"t/a/bin/java"},
     {{"t", -1, 01777}, {"t/a", 1000, 0}},
     "t/a/bin/java",
     "DIR/t/a: it belongs to user 1000"},
    {"a link to root's program", {"l/java>../a/java", "a/java"}, {}, "l/java", ""},
    {"a link to a stranger's program",
     {"l/java>../a/java", "a/java"},
     {{"a/java", 1000, 0}},
     "l/java",
     "DIR/a/java: it belongs to user 1000"},
    {"a link into a stranger's folder",
     {"l/java>../a/b/java", "a/b/java"},
     {{"a", 1000, 0}},
     "l/java",
     "DIR/a: it belongs to user 1000"},
    {"an absolute link",
     {"l/java>DIR/a/java", "a/java"},
     {{"a", -1, 0777}},
     "l/java",
     "DIR/a: everybody can write there"},
    {"a link in a stranger's folder",
     {"l/java>../a/java", "a/java"},
     {{"l", 1000, 0}},
     "l/java",
     "DIR/l: it belongs to user 1000"},
    {"a link through an open folder",
     {"l/java>../w/x/../../a/java", "w/x/", "a/java"},
     {{"w", -1, 0777}},
     "l/java",
     "DIR/w: everybody can write there"},
    {"a link to a link",
     {"l/java>../m/java", "m/java>../a/java", "a/java"},
     {{"m", 1000, 0}},
     "l/java",
     "DIR/m: it belongs to user 1000"},
    {"a link to a folder on the way",
     {"l>a", "a/java"},
     {{"a/java", 1000, 0}},
     "l/java",
     "DIR/a/java: it belongs to user 1000"},
    {"a stranger's link where he cannot replace it",
     {"l/java>../a/java", "a/java"},
     {{"l/java", 1000, 0}},
     "l/java",
     ""},
    {"a stranger's link in a sticky folder",
     {"t/java>../a/java", "a/java"},
     {{"t", -1, 01777}, {"t/java", 1000, 0}},
     "t/java",
     "DIR/t: everybody can write there"},
    {"root's link in a sticky folder",
     {"t/java>../a/java", "a/java"},
     {{"t", -1, 01777}},
     "t/java",
     ""},
    {"missing", {"a/"}, {}, "a/bin/java", ""},
    {"missing in a sticky folder",
     {"t/"},
     {{"t", -1, 01777}},
     "t/bin/java",
     "DIR/t: everybody can write there"},
    {"a dangling link", {"l/java>no"}, {}, "l/java", ""},
    {"a dangling link into a sticky folder",
     {"l/java>../t/java", "t/"},
     {{"t", -1, 01777}},
     "l/java",
     "DIR/t: everybody can write there"},
    {"a link to itself", {"l>l"}, {}, "l", ""},
    {"through a file", {"a"}, {}, "a/bin/java", ""},
    {"dots and separators",
     {"a/bin/java", "x/"},
     {{"a", 1000, 0}},
     "./x/..//a/./bin/java",
     "DIR/a: it belongs to user 1000"},
    {"a newline in a name",
     {"a\nb/java"},
     {{"a\nb", 1000, 0}},
     "a\nb/java",
     "DIR/a\\012b: it belongs to user 1000"},
};

void make(const test::TempDir& folder, const WayRow& row) {
  for (const std::string& entry : row.tree) {
    test::makeEntry(folder.path(), test::replaced(entry, "DIR", folder.path()));
  }
  for (const Change& change : row.changes) {
    const std::string path = folder / change.entry;
    if (change.owner != -1) {
      EXPECT_EQ(0, lchown(path.c_str(), static_cast<uid_t>(change.owner), 0));
    }
    if (change.mode != 0) {
      EXPECT_EQ(0, chmod(path.c_str(), change.mode));
    }
  }
}

TEST(TrustTest, RootTrustsNobodyElseAndOthersTrustAll) {
  if (geteuid() != 0) {
    GTEST_SKIP() << "only root can give files away";
  }
  for (const WayRow& row : kWayRows) {
    SCOPED_TRACE(row.name);
    const test::TempDir folder;
    test::LogCapture log;
    const test::ScopedEnvironment sudo("SUDO_UID", row.caller);
    const test::ScopedEnvironment pkexec("PKEXEC_UID", nullptr);
    make(folder, row);
    const bool isTried = row.objection[0] == '\0';
    EXPECT_EQ(isTried, mayTryFind(test::sstr(folder / row.path)));
    const std::string shown = test::replaced(row.path, "\n", "\\012");
    EXPECT_EQ(isTried ? ""
                      : "WARNING: Not trusted and not tried as root: DIR/" + shown +
                            " because of " + row.objection + "\n",
              test::replaced(log.take(), folder.path(), "DIR"));
    chmod(folder.path().c_str(), 0755);
    const test::OrdinaryUser ordinary;
    EXPECT_TRUE(mayTryFind(test::sstr(folder / row.path)));
  }
}

}  // namespace
