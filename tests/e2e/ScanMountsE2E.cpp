// The scan of a disk on which other file systems are mounted, in a mount namespace of its own.
#include <fcntl.h>
#include <sys/mount.h>

#include <exception>
#include <filesystem>

#include "e2e/ScanFixture.h"
#include "torture/PrivateMounts.h"

namespace fs = std::filesystem;

namespace e2e {
namespace {

// A FUSE mount that never answers. Its device stays open as long as the launcher lives, and nobody
// reads what the system asks.
bool mountDeadOne(const std::string& folder) {
  const int device = open("/dev/fuse", O_RDWR);
  const std::string options =
      "fd=" + std::to_string(device) + ",rootmode=40000,user_id=0,group_id=0";
  return device != -1 &&
         mount("dead", folder.c_str(), "fuse.dead one", MS_NOSUID | MS_NODEV, options.c_str()) == 0;
}

bool bindMount(const std::string& from, const std::string& to) {
  return mount(from.c_str(), to.c_str(), nullptr, MS_BIND | MS_REC, nullptr) == 0;
}

// What the log says of mounts.
std::string passedOver(const std::string& log) {
  const std::string beginning = "Passing over ";
  std::string lines;
  for (std::size_t at = log.find(beginning); at != std::string::npos;
       at = log.find(beginning, at + 1)) {
    lines += log.substr(at, log.find('\n', at) + 1 - at);
  }
  return lines;
}

class ScanMounts : public Scan {
 protected:
  void SetUp() override {
    Scan::SetUp();
    if (IsSkipped()) {
      return;
    }
    const std::string problem = torture::whyNoDeadMount();
    if (!problem.empty()) {
      GTEST_SKIP() << problem;
    }
    embedJVM("");
    embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "");
    test::writeFile(dir("jail/in.tag"), "ACTION: SEARCH_ALL\nLOGFILE: /log\n");
    fs::create_directories(dir("jail/proc"));
    place("/opt/good", "17.0.1");
  }

  // `prepare` mounts; what it is given is the path of the disk.
  void setMounts(const std::function<bool(const std::string&)>& prepare) {
    const std::string jail = dir("jail");
    setPrepareDisk([prepare, jail] {
      try {
        torture::enterPrivateMounts();
      } catch (const std::exception&) {
        return false;
      }
      return prepare(jail);
    });
  }

  // Runs the search for all; `out` becomes the number of the homes and each of them, one a line.
  Result search() {
    Result result = runInside({"-cv:in", "/in.tag"});
    for (const std::string& file : test::listTree(dir("jail/tmp"))) {
      fs::remove(dir("jail/tmp/") + file);
      result.out = test::replaced(result.out, "/tmp/" + file + "\n", "");
    }
    return result;
  }
};

TEST_F(ScanMounts, ADeadMountIsPassedOver) {
  fs::create_directories(dir("jail/mnt/a b\nc"));
  setMounts([](const std::string& disk) {
    return bindMount("/proc", disk + "/proc") && mountDeadOne(disk + "/mnt/a b\nc");
  });
  const Result result = search();
  EXPECT_EQ(0, result.status);
  EXPECT_EQ("1\n/opt/good\n", result.out);
  EXPECT_EQ("Passing over the FUSE mount /mnt/a b\\012c of type fuse.dead one\n",
            passedOver(result.log));
}

TEST_F(ScanMounts, ALinkIntoADeadMountIsNotFollowed) {
  fs::create_directories(dir("jail/mnt"));
  fs::create_directories(dir("jail/opt/linked/bin"));
  fs::create_symlink("../../../mnt/bin/java", dir("jail/opt/linked/bin/java"));
  setMounts([](const std::string& disk) {
    return bindMount("/proc", disk + "/proc") && mountDeadOne(disk + "/mnt");
  });
  const Result result = search();
  EXPECT_EQ("1\n/opt/good\n", result.out);
  EXPECT_NE(std::string::npos,
            result.log.find("Not tried: /opt/linked/bin/java because it lies in the mount /mnt of "
                            "type fuse.dead one\n"))
      << result.log;
}

TEST_F(ScanMounts, ADiskOverADeadMountIsWalked) {
  place("/disk", "17.0.2");
  fs::create_directories(dir("jail/mnt"));
  setMounts([](const std::string& disk) {
    return bindMount("/proc", disk + "/proc") && mountDeadOne(disk + "/mnt") &&
           bindMount(disk + "/disk", disk + "/mnt");
  });
  const Result result = search();
  EXPECT_TRUE(result.out.starts_with("3\n")) << result.out;
  EXPECT_NE(std::string::npos, result.out.find("/mnt\n"));
  EXPECT_EQ("", passedOver(result.log));
}

TEST_F(ScanMounts, WhatLiesInAPseudoFileSystemIsNotReachedAndNotToldOf) {
  place("/disk", "17.0.2");
  fs::create_directories(dir("jail/mnt"));
  setMounts([](const std::string& disk) {
    return bindMount("/proc", disk + "/proc") && bindMount(disk + "/disk", disk + "/proc/sys") &&
           bindMount(disk + "/disk", disk + "/mnt");
  });
  const Result result = search();
  EXPECT_TRUE(result.out.starts_with("3\n")) << result.out;
  EXPECT_EQ(std::string::npos, result.out.find("/proc/sys"));
  EXPECT_NE(std::string::npos, result.out.find("/mnt\n"));
  EXPECT_EQ("", passedOver(result.log));
}

// Without /proc nobody tells what is mounted.
TEST_F(ScanMounts, WithoutATableOfMountsEverythingIsWalked) {
  place("/disk", "17.0.2");
  fs::create_directories(dir("jail/sys/x"));
  setMounts([](const std::string& disk) {
    return bindMount("/proc/sys", disk + "/sys") && bindMount(disk + "/disk", disk + "/sys/kernel");
  });
  const Result result = search();
  EXPECT_TRUE(result.out.starts_with("3\n")) << result.out;
  EXPECT_NE(std::string::npos, result.out.find("/sys/kernel\n"));
  EXPECT_EQ("", passedOver(result.log));
}

}  // namespace
}  // namespace e2e
