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
  const char* error;  // null: it loads
  std::string fileName;
  bool compressed = false;
  std::int32_t count = 0;
  std::int32_t size = 0;
  long position = -1;  // of the stream afterwards; -1: not looked at
};

const std::vector<EntryRow> kEntryRows = {
    {"plain", named(3, "abc\0next"s), nullptr, "abc", false, 0, 0, 19},
    {"empty name", named(0, "\0next"s), nullptr, "", false, 0, 0, 16},
    {"compressed", named(1, "a\1"s + bigEndian32(2) + bigEndian32(3) + "next"), nullptr, "a", true,
     2, 3, 25},
    {"compressed with the largest numbers",
     named(1, "a\1"s + bigEndian32(kLargest) + bigEndian32(kSmallest)), nullptr, "a", true,
     kLargest, kSmallest, 25},
    {"flag 2 is not compressed", named(1, "a\2next"s), nullptr, "a", false, 0, 0, 17},
    {"flag 255 is not compressed", named(1, "a\xFFnext"s), nullptr, "a", false, 0, 0, 17},
    {"no flag at the end of the file", named(1, "a"), nullptr, "a"},
    {"name-ends-at-newline", named(4, "a\n\0next"s), nullptr, "a\n", false, 0, 0, 18},
    {"newline as the last byte of the name", named(2, "a\n\0next"s), nullptr, "a\n", false, 0, 0,
     18},
    {"newline just behind the name", named(1, "a\nnext"), nullptr, "a", false, 0, 0, 17},
    {"carriage return stays", named(2, "a\r\0next"s), nullptr, "a\r", false, 0, 0, 18},
    {"zero byte in the name", named(4, "a\0bc\0next"s), nullptr, "a", false, 0, 0, 20},
    {"zero byte, then a newline", named(5, "a\0b\nx"s), nullptr, "a", false, 0, 0, 20},
    {"name cut short by the end of the file", named(9, "abc"), nullptr, "abc"},
    {"name of 255 bytes", named(255, std::string(255, 'n') + '\0'), nullptr, std::string(255, 'n'),
     false, 0, 0, 271},
    {"name of 256 bytes", named(256, std::string(256, 'n') + '\0'), nullptr, std::string(256, 'n'),
     false, 0, 0, 272},
    {"name of 32767 bytes", named(32767, std::string(32767, 'n') + '\0'), nullptr,
     std::string(32767, 'n'), false, 0, 0, 32783},
    {"name length -1 reads nothing", named(-1, "\0next"s), nullptr, "", false, 0, 0, 16},
    {"name length -32768 reads nothing", named(-32768, "\1"s + bigEndian32(2) + bigEndian32(3)),
     nullptr, "", true, 2, 3, 24},
    {"name length lacks its last byte", entry("\0"s), nullptr, ""},
    {"bytes above 127", named(2, "\xC3\xA4\0"s), nullptr, "\xC3\xA4", false, 0, 0, 18},

    {"nothing at all", "", "Invalid file type in file index.", ""},
    {"type 9", "\x9"s + bigEndian32(7), "Invalid file type in file index.", ""},
    {"type 255", "\xFF"s + bigEndian32(7), "Invalid file type in file index.", ""},
    {"no file id", "\3", "Unable to load file id.", ""},
    {"file id of two bytes", "\3\0\0"s, "Unable to load file id.", ""},
    {"file id of three bytes", "\3\0\0\0"s, "Unable to load file length.", ""},
    {"no file length", "\3"s + bigEndian32(7), "Unable to load file length.", ""},
    {"file length of three bytes", "\3"s + bigEndian32(7) + "\0\0\0"s,
     "Unable to load offset to file bytes.", ""},
    {"no offset", "\3"s + bigEndian32(7) + bigEndian32(5), "Unable to load offset to file bytes.",
     ""},
    {"offset of three bytes", "\3"s + bigEndian32(7) + bigEndian32(5) + "\0\0\0"s,
     "Unable to load the string value.", ""},
    {"no name length", entry(""), "Unable to load the string value.", ""},
    {"no decompressed count", named(1, "a\1"s), "Unable to load decompressed file count.", ""},
    {"decompressed count of two bytes", named(1, "a\1\0\0"s),
     "Unable to load decompressed file count.", ""},
    {"no decompressed size", named(1, "a\1"s + bigEndian32(2)), "Unable to load decompressed size.",
     ""},
    {"decompressed size of three bytes", named(1, "a\1"s + bigEndian32(2) + "\0\0\0"s), nullptr,
     "a", true, 2, 255},
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
  const char* error;  // null: it loads
  const char* value;  // of the tag A; null: the entry has no tag file
};

const std::vector<TagFileRow> kTagFileRows = {
    {"whole file", 0, "A: 1\n", 0, 5, nullptr, "1"},
    {"stretch in the middle", 1, "junk\nA: 1\nA: 2\n", 5, 5, nullptr, "1"},
    {"stretch to the end", 2, "junk\nA: 1\nA: 2\n", 5, 10, nullptr, "2"},
    {"length 0 holds nothing", 8, "A: 1\n", 0, 0, nullptr, ""},
    {"negative length reads to the end", 0, "A: 1\nA: 2\n", 0, -1, nullptr, "2"},
    {"largest length", 0, "A: 1\nA: 2\n", 1, kLargest, nullptr, "2"},
    {"offset past the end", 0, "A: 1\n", 9, 5, nullptr, ""},
    {"largest offset and length", 0, "A: 1\n", kLargest, kLargest, nullptr, ""},
    {"negative offset", 0, "A: 1\n", -1, 5, "Unable to read tag file.", nullptr},
    {"syntax error", 1, "A: 1\nB\n", 0, 7,
     "Syntax error in n.tag at line 2 ==> Missing colon at the end of the tag name.", nullptr},
    {"block without its end", 0, "A:\n1\n", 0, 5,
     "Syntax error in n.tag at line 1 ==> Missing /: tag completer.", nullptr},
    {"jar", 3, "A: 1\n", 0, 5, nullptr, nullptr},
    {"jar with a bad offset", 3, "A: 1\n", -1, 5, nullptr, nullptr},
    {"launcher", 7, "A: 1\n", 0, 5, nullptr, nullptr},
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
