// Which mounts a scan of the disks passes over.
#include "platform/MountTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "platform/FileFindListener.h"
#include "platform/FileSystemKind.h"
#include "platform/FindFiles.h"
#include "support/JVMSupport.h"
#include "support/TestFiles.h"

namespace {

struct KindRow {
  const char* type;
  FileSystemKind kind;
};

const KindRow kKindRows[] = {
    {"ext4", FileSystemKind::Storage},
    {"tmpfs", FileSystemKind::Storage},
    {"overlay", FileSystemKind::Storage},
    {"devtmpfs", FileSystemKind::Storage},
    {"zfs", FileSystemKind::Storage},
    {"ocfs2", FileSystemKind::Storage},
    {"", FileSystemKind::Storage},
    {"never-heard-of", FileSystemKind::Storage},
    {"proc", FileSystemKind::Pseudo},
    {"sysfs", FileSystemKind::Pseudo},
    {"cgroup2", FileSystemKind::Pseudo},
    {"ocfs2_dlmfs", FileSystemKind::Pseudo},
    {"fusectl", FileSystemKind::Pseudo},
    {"Proc", FileSystemKind::Storage},
    {"procx", FileSystemKind::Storage},
    {"nfs", FileSystemKind::Network},
    {"nfs4", FileSystemKind::Network},
    {"cifs", FileSystemKind::Network},
    {"9p", FileSystemKind::Network},
    {"autofs", FileSystemKind::Network},
    {"nfsd", FileSystemKind::Pseudo},
    {"fuse", FileSystemKind::Fuse},
    {"fuse.sshfs", FileSystemKind::Fuse},
    {"fuseblk", FileSystemKind::Fuse},
    {"fuseblk.ntfs-3g", FileSystemKind::Fuse},
    {"fuse.", FileSystemKind::Fuse},
    {"fuse-overlayfs", FileSystemKind::Storage},
    {"nfs.anything", FileSystemKind::Storage},
};

TEST(MountTableTest, TypesOfFileSystems) {
  for (const KindRow& row : kKindRows) {
    EXPECT_EQ(row.kind, fileSystemKindOf(row.type)) << row.type;
  }
}

// --- The text of the table ---

struct LineRow {
  const char* name;
  std::string text;
  std::vector<std::string> mounts;  // "ID PARENT DEVICE POINT TYPE"
};

const LineRow kLineRows[] = {
    {"nothing", "", {}},
    {"one optional field",
     "36 35 98:0 /part /mnt rw,noatime master:1 - ext3 /dev/root rw\n",
     {"36 35 98:0 /mnt ext3"}},
    {"no optional field", "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n", {"1 0 8:1 / ext4"}},
    {"two optional fields",
     "1 0 8:1 / / rw shared:1 propagate_from:2 - ext4 /dev/sda1 rw\n",
     {"1 0 8:1 / ext4"}},
    {"no newline at the end", "1 0 8:1 / / rw - ext4 a rw", {"1 0 8:1 / ext4"}},
    {"two lines",
     "1 0 8:1 / / rw - ext4 a rw\n2 1 0:5 / /proc rw - proc proc rw\n",
     {"1 0 8:1 / ext4", "2 1 0:5 /proc proc"}},
    {"a blank and a backslash in the name",
     "2 1 0:9 / /a\\040b\\134c rw - nfs s:/x rw\n",
     {"2 1 0:9 /a b\\c nfs"}},
    {"a newline and a tab",
     "2 1 0:9 / /a\\012b\\011c rw - nfs s:/x rw\n",
     {"2 1 0:9 /a\nb\tc nfs"}},
    {"an escaped backslash begins no escape",
     "2 1 0:9 / /a\\134040 rw - nfs s:/x rw\n",
     {"2 1 0:9 /a\\040 nfs"}},
    {"no octal number", "2 1 0:9 / /a\\08b\\04 rw - nfs s rw\n", {"2 1 0:9 /a\\08b\\04 nfs"}},
    {"bytes beyond ASCII", "2 1 0:9 / /\xff\\377 rw - nfs s rw\n", {"2 1 0:9 /\xff\xff nfs"}},
    {"a number that is none", "x 1 0:9 / /a rw - nfs s rw\n1 0x 0:9 / /a rw - nfs s rw\n", {}},
    {"a number beyond 64 bits", "99999999999999999999 1 0:9 / /a rw - nfs s rw\n", {}},
    {"no separator", "2 1 0:9 / /a rw nfs s rw\n", {}},
    {"cut off", "2 1 0:9 / /a rw -\n2 1 0:9\n2\n\n", {}},
    {"no absolute mount point", "2 1 0:9 / a rw - nfs s rw\n", {}},
};

TEST(MountTableTest, TheLinesOfTheTable) {
  for (const LineRow& row : kLineRows) {
    SCOPED_TRACE(row.name);
    std::vector<std::string> mounts;
    for (const Mount& mount : parseMountInfo(row.text)) {
      mounts.push_back(std::to_string(mount.id) + " " + std::to_string(mount.parent) + " " +
                       mount.device.c_str() + " " + mount.point.c_str() + " " + mount.type.c_str());
    }
    EXPECT_EQ(row.mounts, mounts);
  }
}

// --- Which of them are passed over ---

struct TableRow {
  const char* name;
  std::string text;  // the root file system is that of device 8:1
  std::vector<std::string> passedOver;
  std::vector<std::string> entered;
};

const std::string kRoot = "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n";

const TableRow kTableRows[] = {
    {"an empty table", "", {}, {"/proc", "/", ""}},
    {"one of each kind",
     kRoot + "2 1 0:2 / /proc rw - proc proc rw\n3 1 0:3 / /net rw - nfs4 s:/ rw\n"
             "4 1 0:4 / /me/ssh rw - fuse.sshfs me@s: rw\n5 1 8:2 / /home rw - ext4 b rw\n",
     {"/proc", "/net", "/me/ssh"},
     {"/", "/home", "/me", "/proc/self", "/proc/", "/net2", "/ne", "proc", ""}},
    {"the root itself is of the network",
     "1 0 8:1 / / rw - nfs4 s:/root rw\n2 1 0:3 / /net rw - nfs4 s:/other rw\n",
     {"/net"},
     {"/"}},
    {"a further mount of the root of the network",
     "1 0 8:1 / / rw - nfs4 s:/root rw\n2 1 8:1 /usr /usr rw - nfs4 s:/root/usr rw\n",
     {},
     {"/", "/usr"}},
    {"the root is of FUSE and of another device",
     "1 0 0:7 / / rw - fuse.fuse-overlayfs x rw\n",
     {},
     {"/"}},
    {"the root is its own parent",
     "1 1 0:1 / / rw - rootfs rootfs rw\n2 1 8:1 / / rw - ext4 a rw\n3 2 0:3 / /p rw - proc p rw\n",
     {"/p"},
     {"/"}},
    {"inside a chroot: the root has no row", "7 6 0:3 / /net rw - nfs s:/ rw\n", {"/net"}, {}},
    {"a part of a network file system, bound elsewhere",
     kRoot + "2 1 0:3 / /net rw - nfs s:/ rw\n3 1 0:3 /tools /opt/tools rw - nfs s:/ rw\n",
     {"/net", "/opt/tools"},
     {"/opt"}},
    {"a folder of a disk, bound elsewhere",
     kRoot + "2 1 8:1 /home /srv rw - ext4 a rw\n",
     {},
     {"/srv"}},
    {"a disk over a network file system",
     kRoot + "2 1 0:3 / /mnt rw - nfs s:/ rw\n3 2 8:2 / /mnt rw - ext4 b rw\n",
     {},
     {"/mnt"}},
    {"a network file system over a disk",
     kRoot + "2 1 8:2 / /mnt rw - ext4 b rw\n3 2 0:3 / /mnt rw - nfs s:/ rw\n",
     {"/mnt"},
     {}},
    {"in another order of rows",
     kRoot + "3 2 0:3 / /mnt rw - nfs s:/ rw\n2 1 8:2 / /mnt rw - ext4 b rw\n",
     {"/mnt"},
     {}},
    {"an automatic mount that has happened",
     kRoot + "2 1 0:3 / /auto rw - autofs x rw\n3 2 0:4 / /auto rw - nfs s:/ rw\n",
     {"/auto"},
     {}},
    {"an automatic mount, and in it a disk",
     kRoot + "2 1 0:3 / /auto rw - autofs x rw\n3 2 8:2 / /auto/usb rw - ext4 b rw\n",
     {"/auto"},
     {"/auto/usb"}},
    {"hidden below a disk",
     kRoot + "2 1 0:3 / /a/b rw - nfs s:/ rw\n3 1 8:2 / /a rw - ext4 b rw\n",
     {},
     {"/a", "/a/b"}},
    {"in the disk that hides another",
     kRoot +
         "2 1 8:3 / /a/b rw - ext4 s:/ rw\n3 1 8:2 / /a rw - ext4 b rw\n4 3 0:3 / /a/b rw - nfs s "
         "rw\n",
     {"/a/b"},
     {"/a"}},
    {"inside one that is passed over",
     kRoot + "2 1 0:3 / /net rw - nfs s:/ rw\n3 2 0:4 / /net/x rw - nfs s:/x rw\n",
     {"/net", "/net/x"},
     {}},
    {"a name with a blank and a newline",
     kRoot + "2 1 0:3 / /a\\040b\\012c rw - nfs s:/ rw\n",
     {"/a b\nc"},
     {"/a\\040b\\012c", "/a"}},
    {"rows in a circle",
     "1 2 0:3 / /a rw - nfs s:/ rw\n2 1 0:4 / /a rw - nfs s:/ rw\n",
     {},
     {"/a"}},
};

TEST(MountTableTest, WhatIsPassedOver) {
  for (const TableRow& row : kTableRows) {
    SCOPED_TRACE(row.name);
    const MountTable table(parseMountInfo(row.text), "8:1");
    for (const std::string& path : row.passedOver) {
      const Mount* mount = table.passedOverAt(path);
      ASSERT_NE(nullptr, mount) << path;
      EXPECT_EQ(path, mount->point.c_str());
    }
    for (const std::string& path : row.entered) {
      EXPECT_EQ(nullptr, table.passedOverAt(path)) << path;
    }
  }
}

#ifdef __linux__
TEST(MountTableTest, TheTableOfThisSystem) {
  const MountTable table = MountTable::ofSystem();
  ASSERT_NE(nullptr, table.passedOverAt("/proc"));
  EXPECT_STREQ("proc", table.passedOverAt("/proc")->type.c_str());
  EXPECT_EQ(nullptr, table.passedOverAt("/"));
}
#endif

// --- The search ---

struct Listener : FileFindListener {
  bool foundFile(const SString& path) override {
    found.emplace_back(path.c_str());
    return false;
  }
  std::vector<std::string> found;
};

TEST(MountTableTest, TheSearchTurnsBackAndTellsOfWhatMayHoldFiles) {
  const test::TempDir folder;
  test::LogCapture log;
  for (const char* home : {"disk", "net", "ssh", "proc", "a\nb"}) {
    test::writeFile((folder / home) + "/bin/java", "");
  }
  std::vector<Mount> mounts;
  for (const auto& [name, type] : {std::pair("disk", "ext4"),
                                   {"net", "nfs4"},
                                   {"ssh", "fuse.sshfs"},
                                   {"proc", "proc"},
                                   {"a\nb", "fuse.x\ny"},
                                   {"net/bin", "cifs"}}) {
    mounts.push_back({static_cast<long>(mounts.size()), -1, "0:9", test::sstr(folder / name), type,
                      fileSystemKindOf(type)});
  }
  StringDeque names;
  names.push_back("bin/java");
  Listener listener;
  FindFiles walk(names, listener, MountTable(mounts, "8:1"));
  EXPECT_FALSE(walk.process(test::sstr(folder.path())));
  EXPECT_EQ(std::vector<std::string>{folder / "disk/bin/java"}, listener.found);
  std::vector<std::string> lines =
      test::linesBeginning(test::replaced(log.take(), folder.path(), "DIR"), {""});
  std::sort(lines.begin(), lines.end());
  EXPECT_EQ(
      (std::vector<std::string>{"Passing over the FUSE mount DIR/a\\012b of type fuse.x\\012y",
                                "Passing over the FUSE mount DIR/ssh of type fuse.sshfs",
                                "Passing over the network mount DIR/net of type nfs4"}),
      lines);
  EXPECT_TRUE(walk.isKnownDirectory(test::sstr(folder / "ssh")));
  EXPECT_FALSE(walk.isKnownDirectory(test::sstr(folder / "disk")));
}

}  // namespace
