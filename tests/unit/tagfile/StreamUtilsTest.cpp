#include "tagfile/StreamUtils.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "support/TestFiles.h"
#include "support/Texts.h"
#include "tagfile/TextUtils.h"
#include "util/LauncherException.h"

using namespace std::string_view_literals;

namespace {

using test::sstr;

// A stream of exactly these bytes.
class Stream {
 public:
  explicit Stream(std::string_view bytes)
      : m_file(openFile(sstr(test::writeFile(m_dir / "bytes", bytes)), "rb")) {}
  std::FILE* get() const { return m_file.get(); }

 private:
  test::TempDir m_dir;
  FilePtr m_file;
};

// A stream whose every read fails.
FilePtr brokenStream() {
  return FilePtr(fdopen(open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC), "r"));
}

// --- lines ---

struct LinesRow {
  const char* name;
  std::string bytes;
  std::vector<std::string> wanted;  // the lines up to the end of the file
};

const LinesRow kLinesRows[] = {
    {"empty file", "", {""}},
    {"one line without newline", "ab", {"ab"}},
    {"one line with newline: an empty one follows", "ab\n", {"ab", ""}},
    {"only a newline", "\n", {"", ""}},
    {"two lines", "a\nb", {"a", "b"}},
    {"carriage return and newline", "a\r\nb\r\n", {"a", "b", ""}},
    {"carriage returns anywhere", "\ra\r\rb\r", {"ab"}},
    {"carriage return alone ends no line", "a\rb\n", {"ab", ""}},
    {"blanks around", " \ta b\t \n", {"a b", ""}},
    {"form feed and vertical tab stay", "\fa\v\n", {"\fa\v", ""}},
    {"zero bytes stay", std::string("a\0b\n", 4), {std::string("a\0b", 3), ""}},
    {"byte 0xFF is not the end",
     "a\xFF"
     "b\nc",
     {"a\xFF"
      "b",
      "c"}},
    {"a long line", std::string(511, 'x') + "\n", {std::string(511, 'x'), ""}},
    {"a longer line", std::string(512, 'x') + "\n", {std::string(512, 'x'), ""}},
    {"a line longer still", std::string(513, 'x') + "y\nz", {std::string(513, 'x') + "y", "z"}},
    {"a very long line", std::string(100000, 'x'), {std::string(100000, 'x')}},
    {"a block less one byte", std::string(4094, 'x') + "\ny", {std::string(4094, 'x'), "y"}},
    {"a block", std::string(4095, 'x') + "\ny", {std::string(4095, 'x'), "y"}},
    {"a block and one byte", std::string(4096, 'x') + "\ny", {std::string(4096, 'x'), "y"}},
    {"a carriage return in the second block",
     std::string(4096, 'x') + "\r\ny",
     {std::string(4096, 'x'), "y"}},
    {"a carriage return in the first block only",
     "a\r\n" + std::string(9000, 'x') + "\ny",
     {"a", std::string(9000, 'x'), "y"}},
    {"blanks at the joints",
     std::string(510, 'x') + "   " + std::string(510, 'y') + "  \n",
     {std::string(510, 'x') + "   " + std::string(510, 'y'), ""}},
};

std::int64_t positionBehindLine(const std::string& bytes, std::int64_t position) {
  const std::size_t newline = bytes.find('\n', static_cast<std::size_t>(position));
  return newline == std::string::npos ? std::ssize(bytes) : static_cast<std::int64_t>(newline) + 1;
}

TEST(StreamUtilsTest, ReadsLines) {
  for (const LinesRow& row : kLinesRows) {
    const Stream stream(row.bytes);
    std::vector<std::string> found;
    while (!isAtEnd(stream.get())) {
      SString line;
      readLineFromStream(stream.get(), line);
      found.emplace_back(line.view());
    }
    EXPECT_EQ(row.wanted, found) << row.name;
  }
}

TEST(StreamUtilsTest, ReadsLinesAhead) {
  for (const LinesRow& row : kLinesRows) {
    const Stream stream(row.bytes);
    LineReader reader(stream.get(), 1000);
    std::vector<std::string> found;
    std::int64_t position = 1000;
    while (!reader.isAtEnd()) {
      EXPECT_EQ(position, reader.position()) << row.name;
      found.emplace_back(withoutBlanks(reader.next()));
      position = positionBehindLine(row.bytes, position - 1000) + 1000;
    }
    EXPECT_EQ(row.wanted, found) << row.name;
    EXPECT_EQ("", reader.next()) << row.name;
    EXPECT_TRUE(reader.isAtEnd()) << row.name;
  }
}

TEST(StreamUtilsTest, ReadsOnFromWhereTheStreamStands) {
  const Stream stream("ab\ncd\n");
  std::fseek(stream.get(), 1, SEEK_SET);
  LineReader reader(stream.get(), 1);
  EXPECT_EQ("b", reader.next());
  EXPECT_EQ(3, reader.position());
}

TEST(StreamUtilsTest, AppendsTheLineAndTrimsAllOfIt) {
  const Stream stream(" a \n");
  SString line = " x ";
  readLineFromStream(stream.get(), line);
  EXPECT_STREQ("x  a", line.c_str());
}

TEST(StreamUtilsTest, ReadsNothingWithoutAStream) {
  SString line = " x ";
  readLineFromStream(nullptr, line);
  EXPECT_STREQ("x", line.c_str());
}

TEST(StreamUtilsTest, ReadErrorIsTheEnd) {
  const FilePtr broken = brokenStream();
  ASSERT_NE(nullptr, broken);
  EXPECT_FALSE(isAtEnd(broken.get()));
  SString line;
  readLineFromStream(broken.get(), line);
  EXPECT_TRUE(line.empty());
  EXPECT_TRUE(isAtEnd(broken.get()));

  unsigned char bytes[4];
  EXPECT_EQ(0, getBytes(broken.get(), bytes, 4));
  EXPECT_THROW(loadLongValue(broken.get(), "no number"), LauncherException);
}

// --- binary numbers ---

struct BytesRow {
  const char* name;
  std::string_view bytes;
  int count;
  int wantedReads;
  std::string_view wanted;
};

constexpr BytesRow kBytesRows[] = {
    {"no bytes wanted", "ab", 0, 0, ""},
    {"fewer than there are", "abc", 2, 2, "ab"},
    {"as many as there are", "abc", 3, 3, "abc"},
    {"end-is-a-byte: one more", "abc", 4, 4, "abc\xFF"},
    {"end-is-a-byte: two more stop behind it", "abc", 5, 4, "abc\xFF"},
    {"end-is-a-byte: empty file", "", 2, 1, "\xFF"},
    {"a byte 0xFF is not the end",
     "\xFF\xFF"
     "a",
     3, 3,
     "\xFF\xFF"
     "a"},
    {"negative count", "ab", -1, 0, ""},
};

TEST(StreamUtilsTest, ReadsBytes) {
  for (const BytesRow& row : kBytesRows) {
    const Stream stream(row.bytes);
    unsigned char bytes[8] = {};
    const int reads = getBytes(stream.get(), bytes, row.count);
    EXPECT_EQ(row.wantedReads, reads) << row.name;
    const std::string found(bytes, bytes + row.wanted.size());
    EXPECT_EQ(row.wanted, found) << row.name;
  }
}

constexpr const char* kTooShort = "Too short.";

struct NumberRow {
  const char* name;
  std::string_view bytes;
  std::int32_t wanted;
  const char* error;
};

constexpr NumberRow kLongRows[] = {
    {"zero", "\0\0\0\0"sv, 0, nullptr},
    {"one", "\0\0\0\1"sv, 1, nullptr},
    {"most significant byte first", "\x01\x02\x03\x04", 0x01020304, nullptr},
    {"255", "\0\0\0\xFF"sv, 255, nullptr},
    {"256", "\0\0\1\0"sv, 256, nullptr},
    {"largest", "\x7F\xFF\xFF\xFF", 2147483647, nullptr},
    {"smallest", "\x80\0\0\0"sv, -2147483647 - 1, nullptr},
    {"minus one", "\xFF\xFF\xFF\xFF", -1, nullptr},
    {"what follows is left alone", "\0\0\0\1\2"sv, 1, nullptr},
    {"end-is-a-byte: three bytes", "\x01\x02\x03", 0x010203FF, nullptr},
    {"two bytes", "\x01\x02", 0, kTooShort},
    {"one byte", "\x01", 0, kTooShort},
    {"no byte", "", 0, kTooShort},
};

constexpr NumberRow kShortRows[] = {
    {"zero", "\0\0"sv, 0, nullptr},
    {"most significant byte first", "\x01\x02", 0x0102, nullptr},
    {"255", "\0\xFF"sv, 255, nullptr},
    {"256", "\1\0"sv, 256, nullptr},
    {"largest", "\x7F\xFF", 32767, nullptr},
    {"smallest", "\x80\0"sv, -32768, nullptr},
    {"minus one", "\xFF\xFF", -1, nullptr},
    {"end-is-a-byte: one byte", "\x01", 0x01FF, nullptr},
    {"no byte", "", 0, kTooShort},
};

template <class Load>
void expectNumber(const NumberRow& row, Load load) {
  const Stream stream(row.bytes);
  try {
    EXPECT_EQ(row.wanted, load(stream.get(), kTooShort)) << row.name;
    EXPECT_EQ(nullptr, row.error) << row.name;
  } catch (const LauncherException& e) {
    EXPECT_STREQ(row.error, e.what()) << row.name;
  }
}

TEST(StreamUtilsTest, LoadsNumbers) {
  for (const NumberRow& row : kLongRows) {
    expectNumber(row, loadLongValue);
  }
  for (const NumberRow& row : kShortRows) {
    expectNumber(row, loadShortValue);
  }
}

TEST(StreamUtilsTest, ConvertsBytes) {
  constexpr unsigned char bytes[] = {0xFE, 0xDC, 0xBA, 0x98};
  EXPECT_EQ(-0x01234568, convertToLong(bytes));
  EXPECT_EQ(-0x0124, convertToShort(bytes));
}

// --- opening ---

TEST(StreamUtilsTest, OpensForReadingAndWriting) {
  const test::TempDir dir;
  const SString path = sstr(dir / "file");
  FilePtr file = openFile(path, "w");
  ASSERT_NE(nullptr, file);
  EXPECT_EQ(FD_CLOEXEC, fcntl(fileno(file.get()), F_GETFD) & FD_CLOEXEC);
  EXPECT_EQ(2, std::fprintf(file.get(), "ab"));
  file.reset();

  file = openFile(path, "r");
  ASSERT_NE(nullptr, file);
  EXPECT_EQ(FD_CLOEXEC, fcntl(fileno(file.get()), F_GETFD) & FD_CLOEXEC);
  EXPECT_EQ('a', std::fgetc(file.get()));
}

struct UnopenedRow {
  const char* name;
  const char* path;
  const char* mode;
  int error;
};

constexpr UnopenedRow kUnopenedRows[] = {
    {"no such file", "/no/such/file", "r", ENOENT},
    {"no name", "", "r", ENOENT},
    {"folder to be read", "/", "r", EISDIR},
    {"folder to be read as bytes", "/", "rb", EISDIR},
    {"folder to be written", "/", "w", EISDIR},
};

TEST(StreamUtilsTest, DoesNotOpen) {
  for (const UnopenedRow& row : kUnopenedRows) {
    errno = 0;
    const FilePtr file = openFile(row.path, row.mode);
    const int error = errno;
    EXPECT_EQ(nullptr, file) << row.name;
    EXPECT_EQ(row.error, error) << row.name;
  }
}

TEST(StreamUtilsTest, FileNameEndsAtItsZeroByte) {
  const test::TempDir dir;
  test::writeFile(dir / "file", "x");
  EXPECT_NE(nullptr, openFile(sstr(dir / std::string("file\0more", 9)), "r"));
}

}  // namespace
