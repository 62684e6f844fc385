// Copying one embedded file out of the launcher file.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <optional>
#include <string>
#include <thread>

#include "archive/FileIndexEntry.h"
#include "platform/PlatformImpl.h"
#include "support/ArchiveFixture.h"
#include "support/OwnProcess.h"
#include "tagfile/StreamUtils.h"

namespace {
constexpr std::int64_t kFreeBlocksOfTheDisk = -1;
std::int64_t g_freeBlocks = kFreeBlocksOfTheDisk;  // of 1024 bytes, as the tests want them
constexpr std::int64_t kBlocksForRoot = 2200000;   // free as well, but for nobody else
}  // namespace

// Stands in front of the C library's.
extern "C" int statvfs(const char* path, struct statvfs* system) noexcept {
#ifdef O_PATH
  constexpr int kFlags = O_PATH | O_CLOEXEC;
#else
  constexpr int kFlags = O_RDONLY | O_CLOEXEC;
#endif
  const int file = open(path, kFlags);
  if (file < 0) {
    return -1;
  }
  const int result = fstatvfs(file, system);
  close(file);
  if (g_freeBlocks != kFreeBlocksOfTheDisk) {
    system->f_frsize = 1024;
    system->f_bavail = static_cast<fsblkcnt_t>(g_freeBlocks);
    system->f_bfree = static_cast<fsblkcnt_t>(g_freeBlocks + kBlocksForRoot);
  }
  return result;
}

namespace {

using namespace std::string_literals;

constexpr const char* kHint =
    " There may not be enough temporary disk space. Try using -cv:tempdir to use a temporary "
    "directory on a partition with more disk space.";

constexpr std::size_t kChunk = 61439;

std::string pattern(std::size_t size) {
  std::string bytes(size, '\0');
  for (std::size_t i = 0; i < size; ++i) {
    bytes[i] = static_cast<char>(i * 31 + i / 251);
  }
  return bytes;
}

// A launcher file on disk and one entry that refers into it.
class Extraction {
 public:
  explicit Extraction(const std::string& launcherBytes) {
    LauncherTestAccess::setLauncherFileName(test::writeFile(m_dir / "launcher", launcherBytes));
    EXPECT_EQ(0, mkdir((m_dir / "out").c_str(), 0755));
  }

  // What `extract` returned, or the text that it threw.
  std::string extract(const authoring::IndexRecord& record, const std::string& directory) {
    const FilePtr file = streamOf(authoring::encodeEntry(record));
    FileIndexEntry entry;
    entry.load(file.get());
    SString path;
    const std::string error = errorOf([&] { path = entry.extract(directory.c_str()); });
    return error.empty() ? test::str(path) : error;
  }

  std::string out() const { return m_dir / "out"; }
  std::string file(const std::string& name) const { return out() + "/" + name; }
  const test::TempDir& dir() const { return m_dir; }

 private:
  test::TempDir m_dir;
};

struct CopyRow {
  const char* name;
  std::int32_t offset;
  std::int32_t length;
  std::size_t begin;  // of the bytes wanted
  std::size_t size;
  int steps;  // of the progress
};

constexpr int kFileSize = 200000;

const CopyRow kCopyRows[] = {
    {.name = "nothing", .offset = 10, .length = 0, .begin = 0, .size = 0, .steps = 0},
    {.name = "one byte", .offset = 10, .length = 1, .begin = 10, .size = 1, .steps = 1},
    {.name = "one less than a chunk",
     .offset = 10,
     .length = 61438,
     .begin = 10,
     .size = kChunk - 1,
     .steps = 1},
    {.name = "a chunk", .offset = 10, .length = 61439, .begin = 10, .size = kChunk, .steps = 1},
    {.name = "one more than a chunk",
     .offset = 10,
     .length = 61440,
     .begin = 10,
     .size = kChunk + 1,
     .steps = 2},
    {.name = "two chunks",
     .offset = 0,
     .length = 122878,
     .begin = 0,
     .size = 2 * kChunk,
     .steps = 2},
    {.name = "the whole file",
     .offset = 0,
     .length = kFileSize,
     .begin = 0,
     .size = kFileSize,
     .steps = 4},
    {.name = "the last byte",
     .offset = kFileSize - 1,
     .length = 1,
     .begin = kFileSize - 1,
     .size = 1,
     .steps = 1},
    {.name = "one byte past the end",
     .offset = kFileSize - 1,
     .length = 2,
     .begin = kFileSize - 1,
     .size = 1,
     .steps = 1},
    {.name = "ends early",
     .offset = 61439,
     .length = kLargest,
     .begin = kChunk,
     .size = kFileSize - kChunk,
     .steps = 3},
    {.name = "ends early just behind a chunk",
     .offset = kFileSize - 61439,
     .length = kLargest,
     .begin = kFileSize - kChunk,
     .size = kChunk,
     .steps = 2},
    {.name = "begins at the end",
     .offset = kFileSize,
     .length = 5,
     .begin = 0,
     .size = 0,
     .steps = 1},
    {.name = "begins past the end",
     .offset = kLargest,
     .length = 5,
     .begin = 0,
     .size = 0,
     .steps = 1},
    {.name = "largest numbers",
     .offset = kLargest,
     .length = kLargest,
     .begin = 0,
     .size = 0,
     .steps = 1},
    {.name = "negative length", .offset = 10, .length = -1, .begin = 0, .size = 0, .steps = 0},
    {.name = "smallest length",
     .offset = 10,
     .length = kSmallest,
     .begin = 0,
     .size = 0,
     .steps = 0},
    {.name = "negative offset, as far as it lies inside",
     .offset = -4,
     .length = 10,
     .begin = 0,
     .size = 6,
     .steps = 1},
    {.name = "negative offset up to the beginning",
     .offset = -4,
     .length = 4,
     .begin = 0,
     .size = 0,
     .steps = 0},
    {.name = "smallest offset",
     .offset = kSmallest,
     .length = kLargest,
     .begin = 0,
     .size = 0,
     .steps = 0},
    {.name = "smallest numbers",
     .offset = kSmallest,
     .length = kSmallest,
     .begin = 0,
     .size = 0,
     .steps = 0},
};

// Each step of the progress shows a dot.
long countDots(const std::string& shown) {
  return std::count(shown.begin(), shown.end(), '.');
}

TEST(FileIndexEntry, CopiesItsBytesAndNothingElse) {
  const std::string bytes = pattern(kFileSize);
  Extraction extraction(bytes);
  PlatformImpl::showUI();
  for (const CopyRow& row : kCopyRows) {
    SCOPED_TRACE(row.name);
    const std::string path = extraction.file("copy");
    test::writeFile(path, "what stood here before");
    test::beginCapture();
    const std::string result =
        extraction.extract({3, 1, row.length, row.offset, "copy", {}}, extraction.out());
    EXPECT_EQ(row.steps, countDots(test::endCapture()));
    EXPECT_EQ(path, result);
    EXPECT_TRUE(bytes.substr(row.begin, row.size) == test::readFile(path));
  }
}

struct PlaceRow {
  const char* name;
  const char* directory;  // below the scratch folder, which is the current one
  const char* fileName;
  const char* result;  // the path or the text, "DIR" stands for the scratch folder
};

const PlaceRow kPlaceRows[] = {
    {"current directory", "", "a.jar", "a.jar"},
    {"directory", "DIR/out", "a.jar", "DIR/out/a.jar"},
    {"directory with its separator", "DIR/out/", "a.jar", "DIR/out/a.jar"},
    {"relative directory", "out", "a.jar", "out/a.jar"},
    {"name as it stands", "DIR/out", "../b c\"\xC3\xA4", "DIR/out/../b c\"\xC3\xA4"},
    {"name with a newline", "", "a\n", "a\n"},
    {"name below a directory", "", "out/b.jar", "out/b.jar"},
    {"no such directory", "", "none/b.jar", "Error writing file = 2"},
    {"a directory of that name", "", "out", "Error writing file = 21"},
    {"empty name", "", "", "Error writing file = 2"},
    {"directory that is not there", "none", "a.jar", "Error writing file = 2"},
    {"absolute directory that is not there", "DIR/none", "a.jar", "No such file or directory"},
};

std::string inScratch(const char* text, const test::TempDir& dir) {
  const std::string path = text;
  return path.rfind("DIR", 0) == 0 ? dir.path() + path.substr(3) : path;
}

TEST(FileIndexEntry, WritesUnderItsNameInTheDirectory) {
  Extraction extraction("stub stored");
  const test::ScopedCurrentDir current(extraction.dir().path());
  for (const PlaceRow& row : kPlaceRows) {
    SCOPED_TRACE(row.name);
    const std::string result = extraction.extract({3, 1, 6, 5, row.fileName, {}},
                                                  inScratch(row.directory, extraction.dir()));
    const bool fails = std::string(row.result).rfind("Error", 0) == 0;
    EXPECT_EQ(inScratch(row.result, extraction.dir()) + (fails ? kHint : ""), result);
    if (std::string(row.result).find(row.fileName) != std::string::npos && *row.fileName != '\0') {
      EXPECT_EQ("stored", test::readFile(result));
    }
  }
}

TEST(FileIndexEntry, MakesInstallersAndLaunchersExecutable) {
  umask(022);
  Extraction extraction("stored");
  for (int type = 0; type <= FILE_TYPE_LAST; ++type) {
    SCOPED_TRACE(type);
    const std::string path =
        extraction.extract({type, 1, 6, 0, std::to_string(type), {}}, extraction.out());
    struct stat status;
    ASSERT_EQ(0, stat(path.c_str(), &status));
    EXPECT_EQ(type == 4 || type == 7 ? 0755u : 0644u, status.st_mode & 0777u);
  }
}

// The device takes no byte; what was to be written does not matter.
TEST(FileIndexEntry, ReportsAFullDiskOnce) {
  Extraction extraction(pattern(kFileSize));
  PlatformImpl::showUI();
  test::beginCapture();
  EXPECT_EQ("Error writing file = 28"s + kHint,
            extraction.extract({3, 1, kFileSize, 0, "full", {}}, "/dev"));
  EXPECT_EQ(1, countDots(test::endCapture()));
  EXPECT_EQ("/dev/full", extraction.extract({3, 1, 0, 0, "full", {}}, "/dev"));
}

struct SpaceRow {
  const char* name;
  std::int32_t length;
  std::optional<authoring::DecompressedSize> decompressed;
  bool fits;
};

// A file takes a block at least, so that two thousand million files fit on no disk of ours, however
// small they are. Two thousand million bytes may.
const SpaceRow kSpaceRows[] = {
    {"stored", 6, {}, true},
    {"packed, of one file", 6, {{1, 100}}, true},
    {"packed, of too many files", 6, {{kLargest, 0}}, false},
    {"packed, with negative numbers", 6, {{-1, -1}}, true},
    {"packed, with the smallest numbers", 6, {{kSmallest, kSmallest}}, true},
};

TEST(FileIndexEntry, AsksForRoomFirst) {
  Extraction extraction("stored");
  for (const SpaceRow& row : kSpaceRows) {
    SCOPED_TRACE(row.name);
    const std::string result =
        extraction.extract({3, 1, row.length, 0, row.name, row.decompressed}, extraction.out());
    const std::string path = extraction.file(row.name);
    EXPECT_EQ(row.fits ? path : "Error writing file = "s + kHint, result);
    EXPECT_EQ(row.fits ? 0 : -1, access(path.c_str(), F_OK));
    if (row.fits) {
      EXPECT_EQ("stored", test::readFile(path));
    }
  }
}

struct RoomRow {
  const char* name;
  std::int32_t length;
  std::optional<authoring::DecompressedSize> decompressed;
  std::int64_t needed;  // blocks
};

// On a file system with blocks of 1024 bytes, on which root alone would have room for each. From
// two files on each takes a block more.
const RoomRow kRoomRows[] = {
    {"a block", 1024, {}, 1},
    {"a byte more", 1025, {}, 2},
    {"packed, its own bytes alone", 1024, {{0, 0}}, 1},
    {"packed, with the unpacked bytes", 1024, {{0, 1024}}, 2},
    {"packed, one unpacked byte too many", 1024, {{0, 1025}}, 3},
    {"packed, with the unpacked files", 1024, {{2, 0}}, 4},
    {"packed, with both", 1024, {{2, 1024}}, 5},
    {"packed, the largest size", 6, {{0, kLargest}}, 2097153},
};

TEST(FileIndexEntry, AsksForTheRoomOfWhatIsUnpackedToo) {
  Extraction extraction("stored");
  for (const RoomRow& row : kRoomRows) {
    SCOPED_TRACE(row.name);
    const auto extract = [&](std::int64_t freeBlocks) {
      g_freeBlocks = freeBlocks;
      const std::string result =
          extraction.extract({3, 1, row.length, 0, "file", row.decompressed}, extraction.out());
      g_freeBlocks = kFreeBlocksOfTheDisk;
      return result;
    };
    EXPECT_EQ("Error writing file = "s + kHint, extract(row.needed - 1));
    EXPECT_EQ(-1, access(extraction.file("file").c_str(), F_OK));
    EXPECT_EQ(extraction.file("file"), extract(row.needed));
    EXPECT_EQ("stored", test::readFile(extraction.file("file")));
    std::remove(extraction.file("file").c_str());
  }
}

// The launcher file is a pipe here. The user cancels before the first chunk has come whole, so that
// it is written, and nothing of what follows it.
TEST(FileIndexEntry, StopsBetweenTwoChunks) {
  Extraction extraction("");
  const std::string bytes = pattern(2 * kChunk);
  const std::string pipe = extraction.dir() / "pipe";
  ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
  // The launcher file is opened twice. Between the two the feeder must not be without a reader.
  const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  ASSERT_NE(-1, reader);
  LauncherTestAccess::setLauncherFileName(pipe);
  std::thread feeder([&] {
    const FilePtr file = openFile(pipe.c_str(), "wb");
    std::fwrite(bytes.data(), 1, kChunk - 1, file.get());
    std::fflush(file.get());
    for (int unread = 1; unread > 0 && ioctl(fileno(file.get()), FIONREAD, &unread) == 0;) {
      usleep(100);  // until the copy has read so much
    }
    usleep(50000);  // and waits for the last byte of the chunk
    PlatformTestAccess::setCanceled(true);
    std::fwrite(bytes.data() + kChunk - 1, 1, 100, file.get());
  });
  PlatformImpl::showUI();
  test::beginCapture();
  const std::string result =
      extraction.extract({4, 1, 2 * kChunk, 0, "installer", {}}, extraction.out());
  EXPECT_EQ(1, countDots(test::endCapture()));
  feeder.join();
  close(reader);
  PlatformTestAccess::setCanceled(false);
  EXPECT_EQ("Canceled by the user.", result);
  EXPECT_TRUE(bytes.substr(0, kChunk) == test::readFile(extraction.file("installer")));
}

struct NameRow {
  std::size_t length;
  int error;  // 0: none
};

// The file system sets the bound; the index could hold longer names.
TEST(FileIndexEntry, NamesThatTheFileSystemRefuses) {
  Extraction extraction("stored");
  for (const NameRow& row :
       {NameRow{255, 0}, {256, ENAMETOOLONG}, {257, ENAMETOOLONG}, {32767, ENAMETOOLONG}}) {
    SCOPED_TRACE(row.length);
    const std::string name(row.length, 'n');
    EXPECT_EQ(row.error == 0 ? extraction.file(name)
                             : "Error writing file = " + std::to_string(row.error) + kHint,
              extraction.extract({3, 1, 6, 0, name, {}}, extraction.out()));
  }
}

#ifdef __linux__
void waitUntilAsleep(pid_t process) {
  const std::string state = "/proc/" + std::to_string(process) + "/stat";
  for (int i = 0; i < 10000 && test::readFile(state).find(") S ") == std::string::npos; ++i) {
    usleep(1000);
  }
}

struct BlockedRow {
  const char* name;
  bool isFull;  // the pipe, before
};

const BlockedRow kBlockedRows[] = {
    {"before a byte was taken", true},
    {"when some bytes were taken", false},
};

// The file is a pipe that nobody empties.
TEST(FileIndexEntry, ACancelEndsAWriteThatBlocks) {
  for (const BlockedRow& row : kBlockedRows) {
    SCOPED_TRACE(row.name);
    Extraction extraction(pattern(2 * kChunk));
    const std::string pipe = extraction.file("pipe");
    ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
    const int reader = open(pipe.c_str(), O_RDWR | O_CLOEXEC);
    const int room = fcntl(reader, F_SETPIPE_SZ, 65536);
    ASSERT_TRUE(room > 0 && room < static_cast<int>(2 * kChunk));
    const std::string before(row.isFull ? static_cast<std::size_t>(room) : 0, 'x');
    ASSERT_EQ(static_cast<ssize_t>(before.size()), write(reader, before.data(), before.size()));
    test::OwnProcess launcher([&] {
      PlatformImpl::prepareProcess();
      PlatformImpl::setSilent(true);
      std::fputs(extraction.extract({3, 1, 2 * kChunk, 0, "pipe", {}}, extraction.out()).c_str(),
                 stdout);
    });
    waitUntilAsleep(launcher.pid());
    kill(launcher.pid(), SIGINT);
    EXPECT_EQ("exit 0", launcher.end());
    EXPECT_EQ("Canceled by the user.", launcher.output());
    close(reader);
  }
}
#endif

TEST(FileIndexEntry, StopsWhenTheUserCancels) {
  Extraction extraction("stored");
  PlatformTestAccess::setCanceled(true);
  PlatformImpl::showUI();
  test::beginCapture();
  EXPECT_EQ("Canceled by the user.",
            extraction.extract({4, 1, 6, 0, "installer", {}}, extraction.out()));
  EXPECT_EQ("", test::endCapture());
  EXPECT_EQ("", test::readFile(extraction.file("installer")));  // begun, not removed
  EXPECT_EQ("Canceled by the user.", extraction.extract({3, 1, 0, 0, "a", {}}, extraction.out()));
  EXPECT_EQ("Error writing file = 2"s + kHint,
            extraction.extract({3, 1, 6, 0, "none/a", {}}, extraction.out()));
}

TEST(FileIndexEntry, ReportsALauncherThatHasGone) {
  Extraction extraction("stored");
  LauncherTestAccess::setLauncherFileName(extraction.dir() / "gone");
  EXPECT_EQ("Error writing file = 2"s + kHint,
            extraction.extract({3, 1, 6, 0, "a", {}}, extraction.out()));
  LauncherTestAccess::setLauncherFileName(extraction.dir().path());
  EXPECT_EQ("Error writing file = 21"s + kHint,
            extraction.extract({3, 1, 6, 0, "a", {}}, extraction.out()));
  EXPECT_TRUE(test::listTree(extraction.out()).empty());
}

}  // namespace
