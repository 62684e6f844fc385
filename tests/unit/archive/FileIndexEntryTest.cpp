#include "archive/FileIndexEntry.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "archive/LauncherFileFormat.h"
#include "platform/PlatformImpl.h"
#include "support/ArchiveFixture.h"
#include "tagfile/StreamUtils.h"

namespace {

using test::bigEndian16;
using test::bigEndian32;
using namespace std::string_literals;

// --- Reading an entry ---

// An entry of type 3, id 7, length 5, offset 9, with this much behind these four fields.
std::string entry(const std::string& rest) {
  return "\3"s + bigEndian32(7) + bigEndian32(5) + bigEndian32(9) + rest;
}

std::string named(int length, const std::string& bytes) {
  return entry(bigEndian16(length) + bytes);
}

struct EntryRow {
  const char* name;
  std::string bytes;
  const char* error = nullptr;  // null: it loads
  std::string fileName = "";
  bool compressed = false;
  std::int32_t count = 0;
  std::int32_t size = 0;
  long position = -1;  // of the stream afterwards; -1: not looked at
};

const std::vector<EntryRow> kEntryRows = {
    {.name = "plain",
     .bytes = named(3, "abc\0next"s),
     .fileName = "abc",
     .count = 0,
     .size = 0,
     .position = 19},
    {.name = "empty name", .bytes = named(0, "\0next"s), .count = 0, .size = 0, .position = 16},
    {.name = "compressed",
     .bytes = named(1, "a\1"s + bigEndian32(2) + bigEndian32(3) + "next"),
     .fileName = "a",
     .compressed = true,
     .count = 2,
     .size = 3,
     .position = 25},
    {.name = "compressed with the largest numbers",
     .bytes = named(1, "a\1"s + bigEndian32(kLargest) + bigEndian32(kSmallest)),
     .fileName = "a",
     .compressed = true,
     .count = kLargest,
     .size = kSmallest,
     .position = 25},
    {.name = "flag 2 is not compressed",
     .bytes = named(1, "a\2next"s),
     .fileName = "a",
     .count = 0,
     .size = 0,
     .position = 17},
    {.name = "flag 255 is not compressed",
     .bytes = named(1, "a\xFFnext"s),
     .fileName = "a",
     .count = 0,
     .size = 0,
     .position = 17},
    {.name = "no flag at the end of the file", .bytes = named(1, "a"), .fileName = "a"},
    {.name = "name-ends-at-newline",
     .bytes = named(4, "a\n\0next"s),
     .fileName = "a\n",
     .count = 0,
     .size = 0,
     .position = 18},
    {.name = "newline as the last byte of the name",
     .bytes = named(2, "a\n\0next"s),
     .fileName = "a\n",
     .count = 0,
     .size = 0,
     .position = 18},
    {.name = "newline just behind the name",
     .bytes = named(1, "a\nnext"),
     .fileName = "a",
     .count = 0,
     .size = 0,
     .position = 17},
    {.name = "carriage return stays",
     .bytes = named(2, "a\r\0next"s),
     .fileName = "a\r",
     .count = 0,
     .size = 0,
     .position = 18},
    {.name = "zero byte in the name",
     .bytes = named(4, "a\0bc\0next"s),
     .fileName = "a",
     .count = 0,
     .size = 0,
     .position = 20},
    {.name = "zero byte, then a newline",
     .bytes = named(5, "a\0b\nx"s),
     .fileName = "a",
     .count = 0,
     .size = 0,
     .position = 20},
    {.name = "name cut short by the end of the file", .bytes = named(9, "abc"), .fileName = "abc"},
    {.name = "name of 255 bytes",
     .bytes = named(255, std::string(255, 'n') + '\0'),
     .fileName = std::string(255, 'n'),
     .count = 0,
     .size = 0,
     .position = 271},
    {.name = "name of 256 bytes",
     .bytes = named(256, std::string(256, 'n') + '\0'),
     .fileName = std::string(256, 'n'),
     .count = 0,
     .size = 0,
     .position = 272},
    {.name = "name of 32767 bytes",
     .bytes = named(32767, std::string(32767, 'n') + '\0'),
     .fileName = std::string(32767, 'n'),
     .count = 0,
     .size = 0,
     .position = 32783},
    {.name = "name length -1 reads nothing",
     .bytes = named(-1, "\0next"s),
     .count = 0,
     .size = 0,
     .position = 16},
    {.name = "name length -32768 reads nothing",
     .bytes = named(-32768, "\1"s + bigEndian32(2) + bigEndian32(3)),
     .compressed = true,
     .count = 2,
     .size = 3,
     .position = 24},
    {.name = "name length lacks its last byte", .bytes = entry("\0"s)},
    {.name = "bytes above 127",
     .bytes = named(2, "\xC3\xA4\0"s),
     .fileName = "\xC3\xA4",
     .count = 0,
     .size = 0,
     .position = 18},

    {.name = "nothing at all", .bytes = "", .error = "Invalid file type in file index."},
    {.name = "type 9",
     .bytes = "\x9"s + bigEndian32(7),
     .error = "Invalid file type in file index."},
    {.name = "type 255",
     .bytes = "\xFF"s + bigEndian32(7),
     .error = "Invalid file type in file index."},
    {.name = "no file id", .bytes = "\3", .error = "Unable to load file id."},
    {.name = "file id of two bytes", .bytes = "\3\0\0"s, .error = "Unable to load file id."},
    {.name = "file id of three bytes",
     .bytes = "\3\0\0\0"s,
     .error = "Unable to load file length."},
    {.name = "no file length",
     .bytes = "\3"s + bigEndian32(7),
     .error = "Unable to load file length."},
    {.name = "file length of three bytes",
     .bytes = "\3"s + bigEndian32(7) + "\0\0\0"s,
     .error = "Unable to load offset to file bytes."},
    {.name = "no offset",
     .bytes = "\3"s + bigEndian32(7) + bigEndian32(5),
     .error = "Unable to load offset to file bytes."},
    {.name = "offset of three bytes",
     .bytes = "\3"s + bigEndian32(7) + bigEndian32(5) + "\0\0\0"s,
     .error = "Unable to load the string value."},
    {.name = "no name length", .bytes = entry(""), .error = "Unable to load the string value."},
    {.name = "no decompressed count",
     .bytes = named(1, "a\1"s),
     .error = "Unable to load decompressed file count."},
    {.name = "decompressed count of two bytes",
     .bytes = named(1, "a\1\0\0"s),
     .error = "Unable to load decompressed file count."},
    {.name = "no decompressed size",
     .bytes = named(1, "a\1"s + bigEndian32(2)),
     .error = "Unable to load decompressed size."},
    {.name = "decompressed size of three bytes",
     .bytes = named(1, "a\1"s + bigEndian32(2) + "\0\0\0"s),
     .fileName = "a",
     .compressed = true,
     .count = 2,
     .size = 255},
};

TEST(FileIndexEntry, ReadsOrRefusesAnEntry) {
  for (const EntryRow& row : kEntryRows) {
    SCOPED_TRACE(row.name);
    const FilePtr file = streamOf(row.bytes);
    FileIndexEntry entry;
    EXPECT_EQ(row.error == nullptr ? "" : row.error, errorOf([&] { entry.load(file.get()); }));
    if (row.error != nullptr) continue;
    EXPECT_EQ(3, entry.getFileType());
    EXPECT_EQ(7, entry.getFileId());
    EXPECT_EQ(5, entry.getFileLength());
    EXPECT_EQ(9, entry.getOffsetToBytes());
    EXPECT_EQ(row.fileName, entry.getFileName().view());
    EXPECT_EQ(row.compressed, entry.isCompressed());
    EXPECT_EQ(row.count, entry.getDecompressedFileCount());
    EXPECT_EQ(row.size, entry.getDecompressedSize());
    EXPECT_EQ(nullptr, entry.getTagFile());
    if (row.position >= 0) {
      EXPECT_EQ(row.position, std::ftell(file.get()));
    }
  }
}

TEST(FileIndexEntry, KnowsItsTypes) {
  for (int type = 0; type <= FILE_TYPE_LAST; ++type) {
    SCOPED_TRACE(type);
    const FilePtr file = streamOf(authoring::encodeEntry({type, 1, 2, 3, "x", {}}));
    FileIndexEntry entry;
    EXPECT_EQ("", errorOf([&] { entry.load(file.get()); }));
    EXPECT_EQ(type, entry.getFileType());
    EXPECT_EQ(type == 0 || type == 1 || type == 2 || type == 8, entry.isTagFile());
  }
}

TEST(FileIndexEntry, TakesNumbersAsTheyAreStored) {
  for (const std::int32_t number :
       {0, 1, 255, 256, 32767, 32768, kLargest, -1, -256, kSmallest, 0x01020304}) {
    SCOPED_TRACE(number);
    const FilePtr file =
        streamOf(authoring::encodeEntry({6, number, number, number, "x", {{number, number}}}));
    FileIndexEntry entry;
    EXPECT_EQ("", errorOf([&] { entry.load(file.get()); }));
    EXPECT_EQ(number, entry.getFileId());
    EXPECT_EQ(number, entry.getFileLength());
    EXPECT_EQ(number, entry.getOffsetToBytes());
    EXPECT_EQ(number, entry.getDecompressedFileCount());
    EXPECT_EQ(number, entry.getDecompressedSize());
  }
}

// --- Its tag file ---

struct TagFileRow {
  const char* name;
  std::int32_t type;
  std::string bytes;
  std::int32_t offset;
  std::int32_t length;
  const char* error = nullptr;  // null: it loads
  const char* value = nullptr;  // of the tag A; null: the entry has no tag file
};

const std::vector<TagFileRow> kTagFileRows = {
    {.name = "whole file", .type = 0, .bytes = "A: 1\n", .offset = 0, .length = 5, .value = "1"},
    {.name = "stretch in the middle",
     .type = 1,
     .bytes = "junk\nA: 1\nA: 2\n",
     .offset = 5,
     .length = 5,
     .value = "1"},
    {.name = "stretch to the end",
     .type = 2,
     .bytes = "junk\nA: 1\nA: 2\n",
     .offset = 5,
     .length = 10,
     .value = "2"},
    {.name = "length 0 holds nothing",
     .type = 8,
     .bytes = "A: 1\n",
     .offset = 0,
     .length = 0,
     .value = ""},
    {.name = "negative length reads to the end",
     .type = 0,
     .bytes = "A: 1\nA: 2\n",
     .offset = 0,
     .length = -1,
     .value = "2"},
    {.name = "largest length",
     .type = 0,
     .bytes = "A: 1\nA: 2\n",
     .offset = 1,
     .length = kLargest,
     .value = "2"},
    {.name = "offset past the end",
     .type = 0,
     .bytes = "A: 1\n",
     .offset = 9,
     .length = 5,
     .value = ""},
    {.name = "largest offset and length",
     .type = 0,
     .bytes = "A: 1\n",
     .offset = kLargest,
     .length = kLargest,
     .value = ""},
    {.name = "negative offset",
     .type = 0,
     .bytes = "A: 1\n",
     .offset = -1,
     .length = 5,
     .error = "Unable to read tag file."},
    {.name = "syntax error",
     .type = 1,
     .bytes = "A: 1\nB\n",
     .offset = 0,
     .length = 7,
     .error = "Syntax error in n.tag at line 2 ==> Missing colon at the end of the tag name."},
    {.name = "block without its end",
     .type = 0,
     .bytes = "A:\n1\n",
     .offset = 0,
     .length = 5,
     .error = "Syntax error in n.tag at line 1 ==> Missing /: tag completer."},
    {.name = "jar", .type = 3, .bytes = "A: 1\n", .offset = 0, .length = 5},
    {.name = "jar with a bad offset", .type = 3, .bytes = "A: 1\n", .offset = -1, .length = 5},
    {.name = "launcher", .type = 7, .bytes = "A: 1\n", .offset = 0, .length = 5},
};

TEST(FileIndexEntry, ParsesItsTagFile) {
  for (const TagFileRow& row : kTagFileRows) {
    SCOPED_TRACE(row.name);
    const FilePtr index =
        streamOf(authoring::encodeEntry({row.type, 1, row.length, row.offset, "n.tag", {}}));
    FileIndexEntry entry;
    entry.load(index.get());
    const FilePtr file = streamOf(row.bytes);
    const std::string error = errorOf([&] { entry.loadTagFile(file.get()); });
    EXPECT_EQ(row.error == nullptr ? "" : row.error, error);
    ASSERT_EQ(row.value != nullptr, entry.getTagFile() != nullptr);
    if (row.value == nullptr) continue;
    EXPECT_STREQ(row.value, entry.getTagFile()->getTagValue("A", 0).c_str());
    EXPECT_STREQ("n.tag", entry.getTagFile()->getName().c_str());
  }
}

}  // namespace
