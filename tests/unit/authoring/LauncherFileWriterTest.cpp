#include "authoring/LauncherFileWriter.h"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <string>

#include "authoring/AuthoringError.h"
#include "support/ArchiveFixture.h"

namespace {

using namespace std::string_literals;

struct EntryRow {
  const char* name;
  authoring::IndexRecord record;
  std::string bytes;
};

const EntryRow kEntryRows[] = {
    {"all zero", {}, std::string(16, '\0')},
    {"stored",
     {3, 0x01020304, 0x05060708, 0x090A0B0C, "ab", {}},
     "\3\1\2\3\4\5\6\7\x8\x9\xA\xB\xC\0\2ab\0"s},
    {"packed",
     {8, -1, 255, 256, "a", {{1, -2}}},
     "\x8\xFF\xFF\xFF\xFF\0\0\0\xFF\0\0\1\0\0\1a\1\0\0\0\1\xFF\xFF\xFF\xFE"s},
    {"name of 256 bytes",
     {0, 0, 0, 0, std::string(256, 'n'), {}},
     std::string(13, '\0') + "\1\0"s + std::string(256, 'n') + '\0'},
};

TEST(LauncherFileWriter, EncodesEntries) {
  for (const EntryRow& row : kEntryRows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.bytes, authoring::encodeEntry(row.record));
  }
}

TEST(LauncherFileWriter, EncodesTheWholeFile) {
  EXPECT_EQ(
      "stub"
      "one\n"     // a newline outside the stored bytes
      "two\n"     // its own
      "\0\0\0\3"  // the index, at 12
      "\0\0\0\0\1\0\0\0\3\0\0\0\4\0\1i\0"
      "\3\0\0\0\2\0\0\0\4\0\0\0\x8\0\1j\0"
      "\6\0\0\0\3\0\0\0\0\0\0\0\xC\0\0\1\0\0\0\5\0\0\0\6"
      "\2"  // the purpose byte
      "\0\0\0\xC\xCA\x82\xCA\x82"s,
      test::launcherFileBytes({{0, 1, "i", "one"}, {3, 2, "j", "two\n"}, {6, 3, "", "", {{5, 6}}}},
                              2, "stub"));
}

TEST(LauncherFileWriter, EncodesAFileWithoutEntries) {
  EXPECT_EQ("\0\0\0\0\xFF\0\0\0\0\xCA\x82\xCA\x82"s, test::launcherFileBytes({}, 255, ""));
}

TEST(LauncherFileWriter, ReportsAFullDisk) {
  const FilePtr full(std::fopen("/dev/full", "wb"));
  std::setvbuf(full.get(), nullptr, _IONBF, 0);
  authoring::LauncherFileWriter writer(full.get());
  try {
    writer.addStub("stub");
    FAIL() << "nothing was thrown";
  } catch (const authoring::AuthoringError& e) {
    EXPECT_STREQ("the launcher file cannot be written: No space left on device", e.what());
  }
}

// Asked before a byte is written.
TEST(LauncherFileWriter, RefusesToGrowBeyondItsNumbers) {
  const std::size_t size = 0x80000000u;
  void* const bytes =
      mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  ASSERT_NE(MAP_FAILED, bytes);
  const FilePtr null(std::fopen("/dev/null", "wb"));
  for (const std::size_t before : {0u, 1u}) {
    authoring::LauncherFileWriter writer(null.get());
    writer.addStub(std::string(before, 'x'));
    try {
      writer.addStub(std::string_view(static_cast<const char*>(bytes), size - before));
      FAIL() << "nothing was thrown";
    } catch (const authoring::AuthoringError& e) {
      EXPECT_STREQ("the launcher file grows beyond 2147483647 bytes", e.what());
    }
  }
  munmap(bytes, size);
}

}  // namespace
