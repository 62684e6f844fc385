#include "tagfile/TextUtils.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "support/Texts.h"

using namespace std::string_view_literals;

namespace {

constexpr std::size_t npos = SString::npos;

// --- one text in, one text out ---

struct TextRow {
  const char* name;
  std::string_view text;
  std::string_view wanted;
};

constexpr TextRow kTrimRows[] = {
    {"both ends", " \t a b \r\n", "a b"},
    {"only blanks", "   ", ""},
    {"nothing", "", ""},
    {"no blanks", "ab", "ab"},
    {"one blank", " ", ""},
    {"one byte", "a", "a"},
    {"leading only", "\n\r\t a", "a"},
    {"trailing only", "a \t\r\n", "a"},
    {"inner blanks stay", "a \t\r\n b", "a \t\r\n b"},
    {"form feed and vertical tab stay", "\f a \v", "\f a \v"},
    {"a zero byte is no blank", " \0 "sv, "\0"sv},
    {"a byte above 127 is no blank", " \xA0 ", "\xA0"},
};

constexpr TextRow kSeparatorRows[] = {
    {"no separator", "/tmp", "/tmp/"},
    {"separator there", "/tmp/", "/tmp/"},
    {"nothing", "", ""},
    {"only the separator", "/", "/"},
    {"a backslash is none", "a\\", "a\\/"},
    {"two stay two", "/tmp//", "/tmp//"},
};

constexpr TextRow kStripRows[] = {
    {"both quotes", "\"a b\"", "a b"},
    {"one quote", "\"", ""},
    {"two quotes", "\"\"", ""},
    {"three quotes", "\"\"\"", "\""},
    {"leading only", "\"a", "a"},
    {"trailing only", "a\"", "a"},
    {"none", "a", "a"},
    {"nothing", "", ""},
    {"one at most at each end", "\"\"a\"\"", "\"a\""},
    {"doubled ones within stay", "\"a\"\"b\"", "a\"\"b"},
    {"blanks outside hide them", " \"a\" ", " \"a\" "},
};

void expectTexts(void (*change)(SString&), const TextRow* rows, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    SString text(rows[i].text);
    change(text);
    EXPECT_EQ(rows[i].wanted, text.view()) << rows[i].name;
  }
}

TEST(TextUtilsTest, Trims) {
  expectTexts([](SString& text) { trim(text); }, kTrimRows, std::size(kTrimRows));
  expectTexts([](SString& text) { text = trimmed(text); }, kTrimRows, std::size(kTrimRows));
}

TEST(TextUtilsTest, TrimsAnySet) {
  EXPECT_STREQ(" a ", trimmed("xy a yx", "xy").c_str());
  EXPECT_STREQ("xa", trimmed("xa", "").c_str());
}

TEST(TextUtilsTest, AppendsThePathSeparator) {
  expectTexts(appendPathSeparator, kSeparatorRows, std::size(kSeparatorRows));
}

TEST(TextUtilsTest, KeepsNamesOnOneLine) {
  EXPECT_STREQ("a b\\c \xff", onOneLine("a b\\c \xff").c_str());
  EXPECT_STREQ("a\\012b\\000\\033\\177", onOneLine({"a\nb\0\033\177", 6}).c_str());
  EXPECT_STREQ("", onOneLine("").c_str());
}

TEST(TextUtilsTest, StripsQuotes) {
  expectTexts(stripQuotes, kStripRows, std::size(kStripRows));
}

TEST(TextUtilsTest, KnowsFourBlanks) {
  for (int byte = 0; byte < 256; ++byte) {
    const bool wanted = byte == 9 || byte == 10 || byte == 13 || byte == 32;
    EXPECT_EQ(wanted, isWhitespace(static_cast<char>(byte))) << byte;
  }
}

struct EndRow {
  const char* name;
  const char* text;
  const char* suffix;
  std::size_t wanted;
};

constexpr EndRow kEndRows[] = {
    {"at the end", "setup.jar", ".jar", 5},
    {"all of it", ".jar", ".jar", 0},
    {"twice: the last one", ".jar.jar", ".jar", 4},
    {"not at the end", "a.jarx", ".jar", npos},
    {"only in front", ".jar.zip", ".jar", npos},
    {"longer by one than the text", "jar", ".jar", npos},
    {"much longer than the text", "r", ".jar", npos},
    {"case matters", "a.JAR", ".jar", npos},
    {"empty suffix", "abc", "", 3},
    {"empty text", "", ".jar", npos},
    {"both empty", "", "", 0},
};

TEST(TextUtilsTest, FindsAnEnding) {
  for (const EndRow& row : kEndRows) {
    EXPECT_EQ(row.wanted, stringEndsWith(row.text, row.suffix)) << row.name;
  }
}

// --- reading from a position ---

struct ReadRow {
  const char* name;
  std::string_view text;
  std::size_t position;
  std::string_view wanted;
  std::size_t wantedPosition;
};

constexpr ReadRow kLineRows[] = {
    {"first line", "a\r\nb", 0, "a", 3},
    {"last line, without newline", "a\r\nb", 3, "b", 5},
    {"past the end", "a\r\nb", 5, "", 5},
    {"at the end", "a\r\nb", 4, "", 4},
    {"no position", "a\r\nb", npos, "", npos},
    {"nothing", "", 0, "", 0},
    {"last line, with newline", "ab\n", 0, "ab", 3},
    {"behind the last newline", "ab\n", 3, "", 3},
    {"empty line", "\nab", 0, "", 1},
    {"only a newline", "\n", 0, "", 1},
    {"blanks around", "  a b \t\nx", 0, "a b", 8},
    {"carriage returns anywhere", "a\rb\r\rc\r\n", 0, "abc", 8},
    {"only carriage returns", "\r\r", 0, "", 3},
    {"from within a line", "abc\nd", 1, "bc", 4},
    {"a zero byte is a byte", "a\0b\n"sv, 0, "a\0b"sv, 4},
    {"one byte, no newline", "a", 0, "a", 2},
};

TEST(TextUtilsTest, ReadsLinesFromAString) {
  for (const ReadRow& row : kLineRows) {
    std::size_t position = row.position;
    SString line;
    readLineFromString(SString(row.text), position, line);
    EXPECT_EQ(row.wanted, line.view()) << row.name;
    EXPECT_EQ(row.wantedPosition, position) << row.name;
  }
}

TEST(TextUtilsTest, AppendsTheLineAndTrimsAllOfIt) {
  std::size_t position = 0;
  SString line = " x ";
  readLineFromString(" a \n", position, line);
  EXPECT_STREQ("x  a", line.c_str());

  SString untouched = " x ";
  readLineFromString(" a \n", position, untouched);
  EXPECT_STREQ(" x ", untouched.c_str()) << "at the end nothing is touched";
}

constexpr ReadRow kTokenRows[] = {
    {"first", "SET N1 = 2", 0, "SET", 4},
    {"next", "SET N1 = 2", 4, "N1", 7},
    {"last", "SET N1 = 2", 9, "2", 11},
    {"nothing left", "ab", 3, "", 3},
    {"at the end", "ab", 2, "", 3},
    {"far past the end", "ab", 9, "", 3},
    {"no position", "ab", npos, "", 3},
    {"nothing", "", 0, "", 1},
    {"only blanks", "  \t ", 0, "", 5},
    {"blanks in front", "\t\n\v\f\r a b", 0, "a", 8},
    {"ended by a vertical tab", "a\vb", 0, "a", 2},
    {"ended by a form feed", "a\fb", 0, "a", 2},
    {"the byte behind it is left alone", "a  b", 0, "a", 2},
    {"blank at the end", "ab ", 0, "ab", 3},
    {"quotes mean nothing", "\"a b\"", 0, "\"a", 3},
    {"from within", "abc", 1, "bc", 4},
    {"a zero byte is a byte", "a\0b c"sv, 0, "a\0b"sv, 4},
};

TEST(TextUtilsTest, TakesTokens) {
  for (const ReadRow& row : kTokenRows) {
    std::size_t position = row.position;
    const SString token = getTokenFromString(SString(row.text), position);
    EXPECT_EQ(row.wanted, token.view()) << row.name;
    EXPECT_EQ(row.wantedPosition, position) << row.name;
  }
}

constexpr ReadRow kUnquotedRows[] = {
    {"up to a blank", "abc def", 0, "abc", 3},
    {"from a position", "abc def ghi", 4, "def", 7},
    {"up to a tab", "a\tb", 0, "a", 1},
    {"up to a newline", "a\nb", 0, "a", 1},
    {"up to a carriage return", "a\rb", 0, "a", 1},
    {"at a blank", "a b", 1, "", 1},
    {"no blank", "abc", 0, "abc", npos},
    {"unquoted-to-the-end: no blank behind the position", "abc def", 4, "abc def", npos},
    {"unquoted-to-the-end: position at the end", "abc", 3, "abc", npos},
    {"unquoted-to-the-end: position past the end", "abc", 9, "abc", npos},
    {"unquoted-to-the-end: no position", "a b", npos, "a b", npos},
    {"a form feed is no blank", "a\fb", 0, "a\fb", npos},
    {"quotes are bytes", "\"a\" b", 0, "\"a\"", 3},
    {"nothing", "", 0, "", npos},
};

constexpr ReadRow kQuotedRows[] = {
    {"to the closing quote", "\"ab\" c", 1, "ab", 4},
    {"closing quote is the last byte", "\"ab\"", 1, "ab", npos},
    {"doubled quote is one", "\"ab\"\"c\"", 1, "ab\"c", npos},
    {"doubled quotes side by side", "\"a\"\"\"\"b\" x", 1, "a\"\"b", 8},
    {"doubled quote first", "\"\"\"a\" x", 1, "\"a", 5},
    {"doubled quote before the closing one", "\"a\"\"\" x", 1, "a\"", 5},
    {"nothing in it", "\"\" x", 1, "", 2},
    {"nothing in it, at the end", "\"\"", 1, "", npos},
    {"blanks in it", "\" a \t\" x", 1, " a \t", 6},
    {"from further on", "x y\" z", 2, "y", 4},
    {"a zero byte is a byte", "\"a\0b\" c"sv, 1, "a\0b"sv, 5},
};

void expectArguments(bool quoted, const ReadRow* rows, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    std::size_t position = rows[i].position;
    const SString argument = parseStringArgument(SString(rows[i].text), position, quoted);
    EXPECT_EQ(rows[i].wanted, argument.view()) << rows[i].name;
    EXPECT_EQ(rows[i].wantedPosition, position) << rows[i].name;
  }
}

TEST(TextUtilsTest, ReadsArguments) {
  expectArguments(false, kUnquotedRows, std::size(kUnquotedRows));
  expectArguments(true, kQuotedRows, std::size(kQuotedRows));
}

struct MissingQuoteRow {
  const char* name;
  const char* text;
  std::size_t position;
  const char* wanted;
};

constexpr MissingQuoteRow kMissingQuoteRows[] = {
    {"no quote at all", "\"abc", 1, "Expected double quote to end argument near 1"},
    {"nothing behind the opening one", "\"", 1, "Expected double quote to end argument near 1"},
    {"from further on", "x \"abc", 3, "Expected double quote to end argument near 3"},
    {"behind a doubled quote", "\"a\"\"bc", 1, "Expected double quote to end argument near 4"},
    {"behind two doubled quotes", "\"a\"\"b\"\"c", 1,
     "Expected double quote to end argument near 7"},
    {"doubled-quote-at-the-end", "\"ab\"\"", 1, "Expected double quote to end argument near -1"},
    {"doubled-quote-at-the-end, nothing else", "\"\"\"", 1,
     "Expected double quote to end argument near -1"},
    {"doubled-quote-at-the-end, behind another", "\"a\"\"b\"\"", 1,
     "Expected double quote to end argument near -1"},
};

TEST(TextUtilsTest, MissesTheClosingQuote) {
  for (const MissingQuoteRow& row : kMissingQuoteRows) {
    std::size_t position = row.position;
    EXPECT_EQ(row.wanted, test::errorOf([&] { parseStringArgument(row.text, position, true); }))
        << row.name;
  }
}

// --- numbers ---

constexpr std::int32_t kUntouched = 4711;

struct NumberRow {
  const char* name;
  std::string_view text;
  bool isNumber;
  std::int64_t asLong;
  std::int64_t asShort;
};

constexpr NumberRow kNumberRows[] = {
    {"zero", "0", true, 0, 0},
    {"minus zero", "-0", true, 0, 0},
    {"plus sign", "+7", true, 7, 7},
    {"negative", "-1", true, -1, -1},
    {"leading zeros are decimal", "010", true, 10, 10},
    {"hexadecimal is not read", "0x10", true, 0, 0},
    {"text behind", "7abc", true, 7, 7},
    {"blank behind", "7 8", true, 7, 7},
    {"fraction behind", "1.9", true, 1, 1},
    {"C white space in front", " \t\n\v\f\r7", true, 7, 7},
    {"255", "255", true, 255, 255},
    {"256", "256", true, 256, 256},
    {"largest short", "32767", true, 32767, 32767},
    {"short-keeps-low-bits: past the largest", "32768", true, 32768, -32768},
    {"smallest short", "-32768", true, -32768, -32768},
    {"short-keeps-low-bits: below the smallest", "-32769", true, -32769, 32767},
    {"short-keeps-low-bits: 65535", "65535", true, 65535, -1},
    {"short-keeps-low-bits: 65536", "65536", true, 65536, 0},
    {"largest", "2147483647", true, 2147483647, -1},
    {"past the largest", "2147483648", true, 2147483647, -1},
    {"smallest", "-2147483648", true, -2147483648LL, 0},
    {"below the smallest", "-2147483649", true, -2147483648LL, 0},
    {"past 32 bits", "4294967296", true, 2147483647, -1},
    {"past 64 bits", "99999999999999999999", true, 2147483647, -1},
    {"far below 64 bits", "-99999999999999999999", true, -2147483648LL, 0},
    {"nothing", "", false, kUntouched, kUntouched},
    {"blanks", "  ", false, kUntouched, kUntouched},
    {"word", "true", false, kUntouched, kUntouched},
    {"sign alone", "-", false, kUntouched, kUntouched},
    {"two signs", "--1", false, kUntouched, kUntouched},
    {"sign, blank", "- 1", false, kUntouched, kUntouched},
    {"zero byte in front", "\0007"sv, false, kUntouched, kUntouched},
    {"zero byte within", "1\0002"sv, true, 1, 1},
};

TEST(TextUtilsTest, ReadsNumbers) {
  for (const NumberRow& row : kNumberRows) {
    std::int32_t longNumber = kUntouched;
    EXPECT_EQ(row.isNumber, convertToLong(SString(row.text), longNumber)) << row.name;
    EXPECT_EQ(row.asLong, longNumber) << row.name;
    std::int16_t shortNumber = kUntouched;
    EXPECT_EQ(row.isNumber, convertToShort(SString(row.text), shortNumber)) << row.name;
    EXPECT_EQ(row.asShort, shortNumber) << row.name;
  }
}

TEST(TextUtilsTest, WritesNumbers) {
  using Limits = std::numeric_limits<std::int32_t>;
  EXPECT_STREQ("0", convertToString(0).c_str());
  EXPECT_STREQ("-1", convertToString(-1).c_str());
  EXPECT_STREQ("2147483647", convertToString(Limits::max()).c_str());
  EXPECT_STREQ("-2147483648", convertToString(Limits::min()).c_str());
  EXPECT_STREQ("0", positionToString(0).c_str());
  EXPECT_STREQ("4711", positionToString(4711).c_str());
  EXPECT_STREQ("-1", positionToString(npos).c_str());
}

// --- wide characters ---

struct WideRow {
  const char* name;
  std::string_view text;
  std::vector<std::int64_t> wanted;  // as signed 32-bit numbers, without the closing zero
};

const WideRow kWideRows[] = {
    {"nothing", "", {}},
    {"plain", "ab", {'a', 'b'}},
    {"bytes from 0x80 on are negative", "\x7F\x80\xFF", {0x7F, -128, -1}},
    {"escape", "\\u00e9", {0xE9}},
    {"escape with a big U", "\\U20AC", {0x20AC}},
    {"digits of either case", "\\uaBcD", {0xABCD}},
    {"text around", "a\\u0041b", {'a', 'A', 'b'}},
    {"two escapes", "\\u0041\\u0042", {'A', 'B'}},
    {"fifth digit is text", "\\u00412", {'A', '2'}},
    {"short-unicode-escape: two digits", "\\u12zz", {0x12}},
    {"short-unicode-escape: text behind", "\\u12zzab", {0x12, 'a', 'b'}},
    {"short-unicode-escape: one digit", "\\u1zzz", {0x1}},
    {"short-unicode-escape: 0x in front", "\\u0x1f", {0x1F}},
    {"short-unicode-escape: blanks in front", "\\u  1f", {0x1F}},
    {"short-unicode-escape: sign in front", "\\u-001", {-1}},
    {"short-unicode-escape: zero byte behind", "\\u12\0\0"sv, {0x12}},
    {"no digit", "\\uzzzz", {'\\', 'u', 'z', 'z', 'z', 'z'}},
    {"no digit first", "\\uz123", {'\\', 'u', 'z', '1', '2', '3'}},
    {"blanks alone", "\\u    ", {'\\', 'u', ' ', ' ', ' ', ' '}},
    {"one byte short", "\\u123", {'\\', 'u', '1', '2', '3'}},
    {"last in the text", "ab\\u0041", {'a', 'b', 'A'}},
    {"lone backslash at the end", "a\\", {'a', '\\'}},
    {"other escape", "\\n1234", {'\\', 'n', '1', '2', '3', '4'}},
    {"two backslashes", "\\\\u0041", {'\\', 'A'}},
    {"zero character", "a\\u0000b", {'a', 0, 'b'}},
    {"zero byte", "a\0b"sv, {'a', 0, 'b'}},
};

TEST(TextUtilsTest, WidensText) {
  for (const WideRow& row : kWideRows) {
    const std::unique_ptr<wchar_t[]> wide = convertToUnicode(SString(row.text));
    std::vector<std::int64_t> found;
    for (std::size_t i = 0; i < row.wanted.size(); ++i) {
      found.push_back(static_cast<std::int32_t>(wide[i]));
    }
    EXPECT_EQ(row.wanted, found) << row.name;
    EXPECT_EQ(L'\0', wide[row.wanted.size()]) << row.name;
  }
}

}  // namespace
