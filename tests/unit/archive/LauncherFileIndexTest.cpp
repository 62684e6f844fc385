// The file index of a launcher file: read, refused, and survived.
#include "archive/LauncherInputFiles.h"

#include <gtest/gtest.h>

#include <sys/types.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "launcher/LauncherFacts.h"
#include "launcher/Log.h"
#include "platform/PlatformImpl.h"
#include "support/ArchiveFixture.h"

namespace {

using authoring::encodeEntry;
using authoring::encodeIndex;
using test::bigEndian32;
using test::kStoredOffset;
using test::launcherFileBytes;
using test::StoredFile;
using namespace std::string_literals;

using LauncherFileIndexTest = ArchiveTest;

// --- The file index ---

const std::string kTrailerAtZero = bigEndian32(0) + "\xCA\x82\xCA\x82";

struct IndexRow {
  const char* name;
  std::string bytes;
  const char* error;  // null: it loads
  long count;
};

const std::string kEntry = encodeEntry({3, 1, 2, 3, "a.jar", {}});

const std::vector<IndexRow> kIndexRows = {
    {"no byte", "", "Invalid launcher format.", 0},
    {"seven bytes", "1234567", "Invalid launcher format.", 0},
    {"eight other bytes", "12345678", nullptr, 0},
    {"bare stub", "#!/bin/sh\nexit 0\n", nullptr, 0},
    {"one bit of the trailer wrong", bigEndian32(0) + "\xCA\x82\xCA\x83", nullptr, 0},
    {"trailer in front of the last byte", kTrailerAtZero + "x", nullptr, 0},
    {"the trailer alone, its offset is the count", kTrailerAtZero, nullptr, 0},
    {"index at the identification, which is a negative count", bigEndian32(4) + "\xCA\x82\xCA\x82",
     nullptr, 0},
    {"index offset at the end", bigEndian32(8) + "\xCA\x82\xCA\x82",
     "Unable to read the file count.", 0},
    {"index offset two bytes before the end", bigEndian32(6) + "\xCA\x82\xCA\x82",
     "Unable to read the file count.", 0},
    {"index offset three bytes before the end, a negative count",
     bigEndian32(5) + "\xCA\x82\xCA\x82", nullptr, 0},
    {"largest index offset", bigEndian32(kLargest) + "\xCA\x82\xCA\x82",
     "Unable to read the file count.", 0},
    {"index offset -1", bigEndian32(-1) + "\xCA\x82\xCA\x82", "Invalid file index offset.", 0},
    {"smallest index offset", bigEndian32(kSmallest) + "\xCA\x82\xCA\x82",
     "Invalid file index offset.", 0},
    {"count 0", launcherFileBytes("", bigEndian32(0) + kEntry), nullptr, 0},
    {"count -1", launcherFileBytes("", bigEndian32(-1) + kEntry), nullptr, 0},
    {"smallest count", launcherFileBytes("", bigEndian32(kSmallest) + kEntry), nullptr, 0},
    {"one entry", launcherFileBytes("", bigEndian32(1) + kEntry), nullptr, 1},
    {"one of two entries", launcherFileBytes("", bigEndian32(1) + kEntry + kEntry), nullptr, 1},
    {"two entries", launcherFileBytes("", bigEndian32(2) + kEntry + kEntry), nullptr, 2},
    {"255 entries", launcherFileBytes("", encodeIndex(std::vector(255, authoring::IndexRecord()))),
     nullptr, 255},
    {"256 entries", launcherFileBytes("", encodeIndex(std::vector(256, authoring::IndexRecord()))),
     nullptr, 256},
    // The purpose byte and the trailer follow: nine bytes of an entry, then the file's end.
    {"largest count", launcherFileBytes("", bigEndian32(kLargest)),
     "Unable to load offset to file bytes.", 0},
    {"largest count and an entry", launcherFileBytes("", bigEndian32(kLargest) + kEntry),
     "Unable to load offset to file bytes.", 1},
    {"type 9", launcherFileBytes("", bigEndian32(2) + kEntry + "\x9" + kEntry.substr(1)),
     "Invalid file type in file index.", 1},
};

TEST_F(LauncherFileIndexTest, ReadsOrRefusesTheIndex) {
  for (const IndexRow& row : kIndexRows) {
    SCOPED_TRACE(row.name);
    useLauncher(row.bytes);
    LauncherInputFiles inputs;
    EXPECT_EQ(row.error == nullptr ? "" : row.error, errorOf([&] { inputs.load(false); }));
    EXPECT_EQ(row.count, inputs.getFileIndex().size());
    EXPECT_EQ(row.error == nullptr, inputs.areInternalFilesLoaded());
  }
}

TEST_F(LauncherFileIndexTest, RefusesALauncherThatDoesNotOpen) {
  for (const std::string& path : {m_dir / "none", m_dir.path(), std::string()}) {
    SCOPED_TRACE(path);
    LauncherTestAccess::setLauncherFileName(path);
    LauncherInputFiles inputs;
    EXPECT_EQ("Cannot open launcher file.", errorOf([&] { inputs.load(true); }));
    EXPECT_FALSE(inputs.areInternalFilesLoaded());
  }
}

TEST_F(LauncherFileIndexTest, ReadsTheFileOnce) {
  useLauncher(launcherFileBytes({{3, 1, "a.jar", "a"}}));
  LauncherInputFiles inputs;
  inputs.load(false);
  LauncherTestAccess::setLauncherFileName(m_dir / "none");
  inputs.load(false);
  inputs.load(true);
  EXPECT_EQ(1, inputs.getFileIndex().size());
}

// A second load begins anew. What the first one read stays in front: scripts may refer to it.
TEST_F(LauncherFileIndexTest, TriesAgainAfterAFailure) {
  LauncherInputFiles inputs;
  LauncherTestAccess::setLauncherFileName(m_dir / "none");
  EXPECT_EQ("Cannot open launcher file.", errorOf([&] { inputs.load(true); }));
  useLauncher(launcherFileBytes("", bigEndian32(2) + kEntry + "\x9"));
  EXPECT_EQ("Invalid file type in file index.", errorOf([&] { inputs.load(true); }));
  EXPECT_EQ(1, inputs.getFileIndex().size());
  useLauncher(launcherFileBytes({{3, 2, "b.jar", "b"}, {0, 3, "bad.tag", "no colon\n"}}));
  EXPECT_EQ(
      "Error loading instructions file.Syntax error in bad.tag at line 1 ==> Missing colon at the "
      "end of the tag name.",
      errorOf([&] { inputs.load(true); }));
  EXPECT_FALSE(inputs.areInternalFilesLoaded());
  useLauncher(launcherFileBytes({{3, 4, "c.jar", "c"}}));
  EXPECT_EQ("", errorOf([&] { inputs.load(false); }));
  EXPECT_TRUE(inputs.areInternalFilesLoaded());
  std::string names;
  for (long i = 0; i < inputs.getFileIndex().size(); ++i) {
    names += inputs.getFileIndex().at(i)->getFileName() + " ";
  }
  EXPECT_EQ("a.jar b.jar bad.tag c.jar ", names);
}

TEST_F(LauncherFileIndexTest, FindsEntries) {
  useLauncher(
      launcherFileBytes({{3, 5, "a", "a"}, {7, -1, "b", "b"}, {3, 5, "c", "c"}, {6, 0, "d", "d"}}));
  LauncherInputFiles inputs;
  inputs.load(true);
  const auto nameOf = [](const FileIndexEntry* entry) {
    return entry == nullptr ? "none"s : entry->getFileName().c_str();
  };
  const std::vector<std::pair<std::int32_t, const char*>> byPosition = {
      {0, "a"}, {3, "d"}, {4, "none"}, {-1, "none"}, {kLargest, "none"}, {kSmallest, "none"}};
  for (const auto& [position, name] : byPosition) {
    EXPECT_EQ(name, nameOf(inputs.getFileIndex().at(position))) << position;
  }
  const std::vector<std::pair<std::int32_t, const char*>> byId = {
      {5, "a"}, {-1, "b"}, {0, "d"}, {1, "none"}, {kSmallest, "none"}};
  for (const auto& [id, name] : byId) {
    EXPECT_EQ(name, nameOf(inputs.getFileIndex().findId(id))) << id;
  }
  const std::vector<std::pair<std::int32_t, const char*>> byType = {
      {3, "a"}, {7, "b"}, {6, "d"}, {0, "none"}, {-1, "none"}};
  for (const auto& [type, name] : byType) {
    EXPECT_EQ(name, nameOf(inputs.getFileIndex().findType(type))) << type;
  }
}

TEST_F(LauncherFileIndexTest, LogsTheIndex) {
  useLauncher(launcherFileBytes({{3, 5, "a.jar", "abc"}, {7, -1, "\xC3\xA4 b", ""}}));
  setLogFileName((m_dir / "log").c_str());
  LauncherInputFiles inputs;
  inputs.load(true);
  EXPECT_EQ(
      "------------------\n"
      "file type: 3\n  file id: 5\n  length: 3\n  offset: 10\n  file name: a.jar\n"
      "file type: 7\n  file id: -1\n  length: 0\n  offset: 14\n  file name: \xC3\xA4 b\n",
      test::readFile(m_dir / "log"));
}

// Whatever fails in the index, nothing of it is logged.
TEST_F(LauncherFileIndexTest, LogsNothingOfABrokenIndex) {
  useLauncher(launcherFileBytes("", bigEndian32(2) + kEntry + "\x9"));
  setLogFileName((m_dir / "log").c_str());
  LauncherInputFiles inputs;
  EXPECT_EQ("Invalid file type in file index.", errorOf([&] { inputs.load(true); }));
  EXPECT_TRUE(inputs.getFileIndex().findId(1) != nullptr);
  EXPECT_EQ(std::vector<std::string>{"launcher"}, test::listTree(m_dir.path()));
}

// --- Hostile files ---

bool isKnownText(const std::string& error) {
  static const char* const kTexts[] = {
      "",
      "Invalid launcher format.",
      "Invalid file index offset.",
      "Unable to read the file count.",
      "Invalid file type in file index.",
      "Unable to load file id.",
      "Unable to load file length.",
      "Unable to load offset to file bytes.",
      "Unable to load the string value.",
      "Unable to load decompressed file count.",
      "Unable to load decompressed size.",
  };
  for (const char* const text : kTexts) {
    if (error == text) return true;
  }
  return error.rfind("Error loading instructions file.", 0) == 0;
}

// Loads the launcher file and copies everything out that it claims to hold. Nothing that comes of
// it is larger than the file. Files are removed, not written over: that is much faster on a disk.
void readHostile(const test::TempDir& dir, const std::string& bytes) {
  std::filesystem::remove(dir / "launcher");
  LauncherTestAccess::setLauncherFileName(test::writeFile(dir / "launcher", bytes));
  LauncherInputFiles inputs;
  const std::string error = errorOf([&] { inputs.load(true); });
  EXPECT_TRUE(isKnownText(error)) << error;
  EXPECT_LE(inputs.getFileIndex().size(), static_cast<long>(bytes.size() / 15 + 1));
  for (std::int32_t i = 0; i < inputs.getFileIndex().size(); ++i) {
    SString path;
    if (errorOf([&] {
          path = inputs.getFileIndex().at(i)->extract((dir / "out").c_str());
        }).empty()) {
      EXPECT_LE(test::readFile(path.c_str()).size(), bytes.size());
      std::filesystem::remove(path.c_str());
    }
  }
}

TEST_F(LauncherFileIndexTest, SurvivesEveryTruncation) {
  PlatformImpl::setSilent(true);
  test::writeFile(m_dir / "out/x", "");
  const std::string whole = launcherFileBytes(allTypes());
  const std::string trailer = whole.substr(whole.size() - 8);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    SCOPED_TRACE(size);
    readHostile(m_dir, whole.substr(0, size));
    readHostile(m_dir, whole.substr(0, size) + trailer);
  }
}

TEST_F(LauncherFileIndexTest, SurvivesEveryWrongByte) {
  PlatformImpl::setSilent(true);
  test::writeFile(m_dir / "out/x", "");
  const std::string whole = launcherFileBytes(allTypes());
  const std::size_t index = whole.find("i.tag") - 19;
  for (std::size_t at = index; at < whole.size(); ++at) {
    for (const char byte : {'\0', '\n', '\x80', '\xFF'}) {
      SCOPED_TRACE(std::to_string(at) + " = " + std::to_string(byte));
      std::string bytes = whole;
      bytes[at] = byte;
      readHostile(m_dir, bytes);
    }
  }
}

struct SharedTextRow {
  const char* name;
  std::size_t entries;
  std::int32_t length;
  const char* error;
};

// Each entry names the same text, of 100,000 bytes: whole, or by a length that ends inside a block.
constexpr const char* kTooMuchText =
    "Error loading instructions file.The tag files of the launcher hold more text than its file "
    "has "
    "room for.";

const SharedTextRow kSharedTextRows[] = {
    {"ten times", 10, 100000, ""},
    {"two hundred times", 200, 100000, kTooMuchText},
    {"two hundred times by its first byte", 200, 1, kTooMuchText},
    {"two hundred times nothing of it", 200, 0, ""},
};

TEST_F(LauncherFileIndexTest, DoesNotLoadTheSameTextOverAndOver) {
  const std::string text = "A:\n" + std::string(99993, 'x') + "\n/:\n";
  ASSERT_EQ(100000u, text.size());
  for (const SharedTextRow& row : kSharedTextRows) {
    SCOPED_TRACE(row.name);
    const authoring::IndexRecord record = {1, 1, row.length, kStoredOffset, "j", {}};
    useLauncher(launcherFileBytes(text, encodeIndex(std::vector(row.entries, record))));
    LauncherInputFiles inputs;
    EXPECT_EQ(row.error, errorOf([&] { inputs.load(true); }));
  }
}

#ifdef __GLIBC__
// A stream over `text` whose disk fails after so many bytes, whatever was read. No byte is read
// ahead.
struct FailingDisk {
  std::string text;
  std::size_t bytesLeft;
  std::size_t position = 0;

  static ssize_t read(void* cookie, char* bytes, std::size_t size) {
    auto& disk = *static_cast<FailingDisk*>(cookie);
    if (disk.bytesLeft == 0) {
      errno = EIO;
      return -1;
    }
    const std::size_t count = std::min({size, disk.bytesLeft, disk.text.size() - disk.position});
    disk.text.copy(bytes, count, disk.position);
    disk.position += count;
    disk.bytesLeft -= count;
    return static_cast<ssize_t>(count);
  }
  static int seek(void* cookie, off64_t* offset, int whence) {
    auto& disk = *static_cast<FailingDisk*>(cookie);
    const auto size = static_cast<off64_t>(disk.text.size());
    const auto position = static_cast<off64_t>(disk.position);
    *offset += whence == SEEK_END ? size : whence == SEEK_CUR ? position : 0;
    if (*offset < 0) {
      return -1;
    }
    disk.position = static_cast<std::size_t>(std::min(*offset, size));
    return 0;
  }
  FilePtr open() {
    FilePtr stream(fopencookie(this, "r", {read, nullptr, seek, nullptr}));
    setvbuf(stream.get(), nullptr, _IONBF, 0);
    return stream;
  }
};

// Wherever the disk fails: an error, never an index that ends there.
TEST_F(LauncherFileIndexTest, AReadErrorIsNotTheEnd) {
  constexpr std::size_t kAll = 1 << 20;
  const std::string whole = launcherFileBytes(
      {{3, 1, "a.jar", "a"}, {6, 2, "b.zip", "b", authoring::DecompressedSize{1, 2}}});
  FailingDisk sound{whole, kAll};
  FileIndex wanted;
  EXPECT_TRUE(wanted.load(sound.open().get()));
  EXPECT_EQ(2, wanted.size());
  const std::size_t needed = kAll - sound.bytesLeft;
  EXPECT_LT(8U, needed);
  for (std::size_t bytes = 0; bytes < needed; ++bytes) {
    SCOPED_TRACE(bytes);
    FailingDisk disk{whole, bytes};
    FileIndex index;
    EXPECT_NE("", errorOf([&] { static_cast<void>(index.load(disk.open().get())); }));
  }
}
#endif

// What the writer writes, the reader reads.
TEST_F(LauncherFileIndexTest, ReadsBackWhatTheWriterWrites) {
  std::mt19937 random(1);
  const auto number = [&] { return static_cast<std::int32_t>(random()); };
  const auto bytes = [&](std::size_t size) {
    std::string text(size, '\0');
    for (char& byte : text)
      byte = static_cast<char>(1 + random() % 255);
    return text;
  };
  for (int round = 0; round < 100; ++round) {
    SCOPED_TRACE(round);
    std::vector<StoredFile> files(random() % 40);
    for (StoredFile& file : files) {
      file = {static_cast<std::int32_t>(3 + random() % 5), number(), bytes(random() % 300),
              bytes(random() % 2000)};
      std::replace(file.name.begin(), file.name.end(), '\n', '_');
      if (random() % 2 == 0) file.decompressed = {number(), number()};
    }
    const std::string whole = launcherFileBytes(files, round);
    useLauncher(whole);
    LauncherInputFiles inputs;
    ASSERT_EQ("", errorOf([&] { inputs.load(true); }));
    ASSERT_EQ(static_cast<long>(files.size()), inputs.getFileIndex().size());
    for (std::size_t i = 0; i < files.size(); ++i) {
      const FileIndexEntry& entry = *inputs.getFileIndex().at(static_cast<std::int32_t>(i));
      EXPECT_EQ(files[i].type, entry.getFileType());
      EXPECT_EQ(files[i].id, entry.getFileId());
      EXPECT_EQ(files[i].name, entry.getFileName().view());
      EXPECT_EQ(files[i].bytes, whole.substr(static_cast<std::size_t>(entry.getOffsetToBytes()),
                                             static_cast<std::size_t>(entry.getFileLength())));
      EXPECT_EQ(files[i].decompressed.has_value(), entry.isCompressed());
      const auto unpacked = files[i].decompressed.value_or(authoring::DecompressedSize());
      EXPECT_EQ(unpacked.files, entry.getDecompressedFileCount());
      EXPECT_EQ(unpacked.bytes, entry.getDecompressedSize());
    }
    EXPECT_EQ(round, LauncherFacts::getLauncherPurpose((m_dir / "launcher").c_str()));
    LauncherTestAccess::setPurpose(-1);
  }
}

}  // namespace
