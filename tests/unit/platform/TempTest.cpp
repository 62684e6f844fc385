// Temporary files and directories, the lists of what is to be cleaned up, free space.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "platform/PlatformImpl.h"
#include "support/OrdinaryUser.h"
#include "support/TestAccess.h"
#include "support/TestFiles.h"
#include "support/Texts.h"

namespace {

using test::errorOf;
using test::str;
using test::toVector;
using Strings = std::vector<std::string>;

mode_t modeOf(const std::string& path) {
  struct stat status = {};
  EXPECT_EQ(0, lstat(path.c_str(), &status)) << path;
  return status.st_mode;
}

// --- The directory ---

TEST(Temp, DirectoryIsTheDefaultUnlessChosen) {
  const test::ScopedEnvironment tmpdir("TMPDIR", "/nowhere");
  EXPECT_EQ("/var/tmp/", str(PlatformImpl::getSystemTempDirectory()));
  EXPECT_EQ("/var/tmp/", str(PlatformImpl::getSystemTempDirectory()));
  PlatformImpl::setSystemTempDir("/");
  EXPECT_EQ("/", str(PlatformImpl::getSystemTempDirectory()));
  PlatformImpl::setSystemTempDir("");
  EXPECT_EQ("/var/tmp/", str(PlatformImpl::getSystemTempDirectory()));
}

struct DirectoryRow {
  const char* name;
  const char* path;  // below the scratch folder
  bool isUsable;
};

const DirectoryRow kDirectoryRows[] = {
    {"directory", "/dir", true},
    {"directory with a separator behind", "/dir/", true},
    {"link to a directory", "/link", true},
    {"file", "/file", false},
    {"file with a separator behind", "/file/", false},
    {"missing", "/missing", false},
    {"dangling link", "/dangling", false},
    {"blanks and percent signs in the message", "/mis sing %s%%", false},
};

TEST(Temp, DirectoryMustBeOne) {
  test::TempDir scratch;
  test::writeFile(scratch / "dir/x", "");
  test::writeFile(scratch / "file", "");
  ASSERT_EQ(0, symlink("dir", (scratch / "link").c_str()));
  ASSERT_EQ(0, symlink("gone", (scratch / "dangling").c_str()));
  const test::ScopedEnvironment english("LANG", "C");
  for (const DirectoryRow& row : kDirectoryRows) {
    const std::string path = scratch.path() + row.path;
    PlatformImpl::setSystemTempDir(path.c_str());
    const std::string wanted =
        "Cannot use " + path +
        " as the temp directory because it does not exist. Please run the program again using the "
        "option -cv:tempdir <temp dir> to specify a different directory to use.";
    const auto message =
        errorOf([&] { EXPECT_EQ(path, str(PlatformImpl::getSystemTempDirectory())) << row.name; });
    EXPECT_EQ(row.isUsable ? "" : wanted, message) << row.name;
    EXPECT_EQ(message, errorOf([] {
                PlatformImpl::removeFileFromCleanupList(PlatformImpl::createTempFile());
              }))
        << row.name;
    EXPECT_EQ(message, errorOf([] { PlatformImpl::createTempSubDirectory(); })) << row.name;
  }
}

TEST(Temp, ATooLongDirectoryIsCutInTheMessage) {
  const test::ScopedEnvironment english("LANG", "C");
  const std::string path = "/" + std::string(2000, 'x');
  PlatformImpl::setSystemTempDir(path.c_str());
  EXPECT_EQ(("Cannot use " + path).substr(0, 1023),
            errorOf([] { PlatformImpl::getSystemTempDirectory(); }));
}

// --- Names ---

struct NameRow {
  const char* name;
  const char* suffix;  // behind the scratch folder
};

const NameRow kNameRows[] = {
    {"plain", ""},
    {"one separator behind", "/"},
    {"several separators behind", "///"},
};

// True for `folder`, "/cvj" and six letters or digits.
bool isTempName(const std::string& path, const std::string& folder) {
  const std::string start = folder + "/cvj";
  return path.starts_with(start) && path.size() == start.size() + 6 &&
         path.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
                                start.size()) == std::string::npos;
}

TEST(Temp, Names) {
  test::TempDir scratch;
  const test::ScopedEnvironment tmpdir("TMPDIR", "/tmp");
  for (const NameRow& row : kNameRows) {
    PlatformImpl::setSystemTempDir((scratch.path() + row.suffix).c_str());
    const std::string file = str(PlatformImpl::createTempFile());
    const std::string dir = str(PlatformImpl::createTempSubDirectory());
    EXPECT_TRUE(isTempName(file, scratch.path())) << row.name << ": " << file;
    EXPECT_TRUE(isTempName(dir, scratch.path())) << row.name << ": " << dir;
    EXPECT_TRUE(S_ISREG(modeOf(file))) << row.name;
    EXPECT_TRUE(S_ISDIR(modeOf(dir))) << row.name;
    EXPECT_EQ("", test::readFile(file)) << row.name;
  }
}

TEST(Temp, NamesInTheDefaultDirectory) {
  const test::ScopedEnvironment tmpdir("TMPDIR", "/tmp");
  const std::string file = str(PlatformImpl::createTempFile());
  const std::string dir = str(PlatformImpl::createTempSubDirectory());
  EXPECT_TRUE(isTempName(file, "/var/tmp")) << file;
  EXPECT_TRUE(isTempName(dir, "/var/tmp")) << dir;
  PlatformImpl::cleanup();
  EXPECT_FALSE(PlatformImpl::fileExists(file.c_str()));
  EXPECT_FALSE(PlatformImpl::fileExists(dir.c_str()));
}

TEST(Temp, NamesDiffer) {
  test::TempDir scratch;
  PlatformImpl::setSystemTempDir(scratch.path().c_str());
  std::set<std::string> names;
  for (int i = 0; i < 100; ++i) {
    names.insert(str(PlatformImpl::createTempFile()));
    names.insert(str(PlatformImpl::createTempSubDirectory()));
  }
  EXPECT_EQ(200u, names.size());
}

struct UmaskRow {
  mode_t umask;
  mode_t wantedFile;
  mode_t wantedDirectory;
};

const UmaskRow kUmaskRows[] = {
    {0, 0666, 0777}, {022, 0644, 0755}, {027, 0640, 0750}, {077, 0600, 0700}};

TEST(Temp, RightsFollowTheUmask) {
  test::TempDir scratch;
  PlatformImpl::setSystemTempDir(scratch.path().c_str());
  for (const UmaskRow& row : kUmaskRows) {
    const mode_t before = umask(row.umask);
    EXPECT_EQ(row.wantedFile, modeOf(str(PlatformImpl::createTempFile())) & 07777);
    EXPECT_EQ(row.wantedDirectory, modeOf(str(PlatformImpl::createTempSubDirectory())) & 07777);
    umask(before);
  }
}

TEST(Temp, CreationFails) {
  test::TempDir scratch;
  ASSERT_EQ(0, chmod(scratch.path().c_str(), 0555));
  PlatformImpl::setSystemTempDir(scratch.path().c_str());
  const test::OrdinaryUser user;
  const std::string message = errorOf([] { PlatformImpl::createTempFile(); });
  const std::string prefix = "Error creating tmp file ";
  EXPECT_TRUE(message.starts_with(prefix)) << message;
  EXPECT_TRUE(isTempName(message.substr(prefix.size()), scratch.path())) << message;
  EXPECT_EQ("Permission denied", errorOf([] { PlatformImpl::createTempSubDirectory(); }));
  EXPECT_EQ(Strings(), toVector(PlatformTestAccess::createdFiles()));
  EXPECT_EQ(Strings(), toVector(PlatformTestAccess::createdDirectories()));
}

TEST(Temp, ARelativeDirectoryIsShownAsItWasGiven) {
  test::TempDir scratch;
  ASSERT_EQ(0, chmod(scratch.path().c_str(), 0755));
  std::filesystem::create_directory(scratch / "closed");
  const test::ScopedCurrentDir here(scratch.path());
  PlatformImpl::setSystemTempDir("closed//");
  std::filesystem::permissions("closed", std::filesystem::perms::none);
  const test::OrdinaryUser user;
  const std::string message = errorOf([] { PlatformImpl::createTempFile(); });
  EXPECT_TRUE(message.starts_with("Error creating tmp file closed/cvj")) << message;
}

TEST(Temp, ARelativeDirectoryIsThatOfTheMoment) {
  test::TempDir scratch;
  std::filesystem::create_directory(scratch / "chosen");
  {
    const test::ScopedCurrentDir here(scratch.path());
    PlatformImpl::setSystemTempDir("chosen");
  }
  EXPECT_EQ(scratch / "chosen", str(PlatformImpl::getSystemTempDirectory()));
}

TEST(Temp, TheRootKeepsItsSeparator) {
  const test::OrdinaryUser user;
  PlatformImpl::setSystemTempDir("/");
  const std::string message = errorOf([] { PlatformImpl::createTempFile(); });
  EXPECT_TRUE(message.starts_with("Error creating tmp file //cvj")) << message;
}

// --- The lists ---

TEST(Temp, WhatIsCreatedIsRegistered) {
  test::TempDir scratch;
  PlatformImpl::setSystemTempDir(scratch.path().c_str());
  const std::string dir1 = str(PlatformImpl::createTempSubDirectory());
  const std::string file1 = str(PlatformImpl::createTempFile());
  const std::string dir2 = str(PlatformImpl::createTempSubDirectory());
  const std::string file2 = str(PlatformImpl::createTempFile());
  EXPECT_EQ((Strings{file1, file2}), toVector(PlatformTestAccess::createdFiles()));
  EXPECT_EQ((Strings{dir1, dir2}), toVector(PlatformTestAccess::createdDirectories()));
}

struct RemoveRow {
  const char* name;
  Strings before;
  const char* removed;
  Strings wanted;
};

const RemoveRow kRemoveRows[] = {
    {"first", {"/a", "/b", "/c"}, "/a", {"/b", "/c"}},
    {"last", {"/a", "/b", "/c"}, "/c", {"/a", "/b"}},
    {"the first of two equal ones", {"/a", "/b", "/a"}, "/a", {"/b", "/a"}},
    {"none", {"/a", "/b"}, "/c", {"/a", "/b"}},
    {"compared to the letter", {"/a", "/b/"}, "/b", {"/a", "/b/"}},
    {"from an empty list", {}, "/a", {}},
    {"the only one", {"/a"}, "/a", {}},
};

TEST(Temp, RemoveFileFromCleanupList) {
  for (const RemoveRow& row : kRemoveRows) {
    for (const std::string& old : toVector(PlatformTestAccess::createdFiles())) {
      PlatformImpl::removeFileFromCleanupList(old.c_str());
    }
    for (const std::string& path : row.before) {
      PlatformImpl::addFileToCleanupList(path.c_str());
    }
    PlatformImpl::removeFileFromCleanupList(row.removed);
    EXPECT_EQ(row.wanted, toVector(PlatformTestAccess::createdFiles())) << row.name;
  }
}

TEST(Temp, RemoveDirFromCleanupList) {
  test::TempDir scratch;
  PlatformImpl::setSystemTempDir(scratch.path().c_str());
  const std::string first = str(PlatformImpl::createTempSubDirectory());
  const std::string second = str(PlatformImpl::createTempSubDirectory());
  PlatformImpl::addFileToCleanupList(first.c_str());
  PlatformImpl::removeDirFromCleanupList((first + "/").c_str());
  EXPECT_EQ((Strings{first, second}), toVector(PlatformTestAccess::createdDirectories()));
  PlatformImpl::removeDirFromCleanupList(first.c_str());
  EXPECT_EQ((Strings{second}), toVector(PlatformTestAccess::createdDirectories()));
  EXPECT_EQ((Strings{first}), toVector(PlatformTestAccess::createdFiles()));
}

struct ExistsRow {
  const char* path;  // below the scratch folder
  bool wanted;
};

const ExistsRow kExistsRows[] = {
    {"/file", true},     {"/dir", true},       {"/dir/", true},   {"/link", true},
    {"/missing", false}, {"/dangling", false}, {"/file/", false},
};

TEST(Temp, FileExists) {
  test::TempDir scratch;
  test::writeFile(scratch / "dir/x", "");
  test::writeFile(scratch / "file", "");
  ASSERT_EQ(0, symlink("file", (scratch / "link").c_str()));
  ASSERT_EQ(0, symlink("gone", (scratch / "dangling").c_str()));
  for (const ExistsRow& row : kExistsRows) {
    EXPECT_EQ(row.wanted, PlatformImpl::fileExists((scratch.path() + row.path).c_str()))
        << row.path;
  }
  EXPECT_FALSE(PlatformImpl::fileExists(""));
}

// --- Free space ---

struct BlocksRow {
  const char* name;
  std::int64_t bytes;
  std::int64_t files;
  std::int64_t blockSize;
  std::int64_t wanted;
};

constexpr std::int64_t kMost32 = 2147483647;

const BlocksRow kBlocksRows[] = {
    {"nothing", 0, 0, 4096, 0},
    {"no byte in one file", 0, 1, 4096, 0},
    {"no byte in two files", 0, 2, 4096, 2},
    {"a byte in no file", 1, 0, 4096, 0},
    {"a byte in one file", 1, 1, 4096, 1},
    {"a byte in two files", 1, 2, 4096, 2},
    {"one byte less than a block", 4095, 1, 4096, 1},
    {"one byte less than a block, no file", 4095, 0, 4096, 0},
    {"a block", 4096, 1, 4096, 1},
    {"a block, no file", 4096, 0, 4096, 1},
    {"a block in two files", 4096, 2, 4096, 3},
    {"a byte more than a block", 4097, 1, 4096, 2},
    {"several-files-are-not-rounded-up", 4097, 3, 4096, 4},
    {"two blocks less a byte in two files", 8191, 2, 4096, 3},
    {"fewer files than none", 4097, -1, 4096, 1},
    {"negative bytes are truncated towards zero", -1, 0, 4096, 0},
    {"negative bytes in one file are no whole multiple", -1, 1, 4096, 1},
    {"a negative whole multiple", -4096, 1, 4096, -1},
    {"block size 1", 5, 1, 1, 5},
    {"most bytes of 32 bits", kMost32, 1, 4096, 524288},
    {"most bytes and files of 32 bits", kMost32, kMost32, 4096, 524287 + kMost32},
    {"more than 32 bits", 3 * kMost32, 2, 512, 12582911 + 2},
    {"block size 0 needs nothing", 4097, 1, 0, 0},
};

TEST(Temp, CountBlocks) {
  for (const BlocksRow& row : kBlocksRows) {
    EXPECT_EQ(row.wanted, PlatformImpl::countBlocks(row.bytes, row.files, row.blockSize))
        << row.name;
  }
}

// A file system of blocks of 4096 bytes in which none is free.
bool hasFullFileSystem() {
  struct statvfs system = {};
  return statvfs("/proc", &system) == 0 && system.f_frsize == 4096 && system.f_bavail == 0;
}

struct SpaceRow {
  const char* name;
  const char* directory;  // "": the current directory, which is the full one
  std::int64_t bytes;
  std::int64_t files;
  bool wanted;
};

const SpaceRow kFullSystemRows[] = {
    {"nothing fits", "/proc", 0, 1, true},
    {"less than a block in no file fits", "/proc", 4095, 0, true},
    {"one byte in a file does not", "/proc", 1, 1, false},
    {"one block does not", "/proc", 4096, 0, false},
    {"two empty files do not", "/proc", 0, 2, false},
    {"negative bytes fit", "/proc", -4096, 1, true},
    {"empty directory: the current one", "", 1, 1, false},
    {"relative-directory-is-not-asked", "no/such", 1, 1, false},
    {"relative directory, nothing wanted", "no/such", 0, 1, true},
    {"directory of another file system", "/", 0, 2, true},
};

TEST(Temp, FreeSpaceOfAFullFileSystem) {
  if (!hasFullFileSystem()) {
    GTEST_SKIP() << "no /proc to stand for a full disk";
  }
  const test::ScopedCurrentDir current("/proc");
  for (const SpaceRow& row : kFullSystemRows) {
    EXPECT_EQ(row.wanted, PlatformImpl::checkFreeSpace(row.directory, row.bytes, row.files))
        << row.name;
  }
}

TEST(Temp, FreeSpaceOfTheScratchFolder) {
  test::TempDir scratch;
  const test::ScopedCurrentDir current(scratch.path());
  for (const std::string& directory : {scratch.path(), std::string(), std::string("no/such")}) {
    EXPECT_TRUE(PlatformImpl::checkFreeSpace(directory.c_str(), 4097, 1)) << directory;
    EXPECT_FALSE(PlatformImpl::checkFreeSpace(directory.c_str(), std::int64_t{1} << 61, 1))
        << directory;
  }
}

TEST(Temp, FreeSpaceCannotBeAsked) {
  test::TempDir scratch;
  const std::string missing = scratch / "missing";
  EXPECT_EQ("No such file or directory",
            errorOf([&] { (void)PlatformImpl::checkFreeSpace(missing.c_str(), 0, 0); }));
}

}  // namespace
