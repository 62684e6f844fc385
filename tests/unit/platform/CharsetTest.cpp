// The charsets that the launcher writes: their names, their bytes beside those of the C library.
#include <gtest/gtest.h>
#include <iconv.h>

#include <string>

#include "platform/Charset.h"
#include "platform/CharsetTables.h"

namespace {

constexpr int kUnknown = -3;
constexpr int kUtf8 = -2;

int numberOf(const char* name) {
  const auto charset = Charset::named(name);
  return !charset ? kUnknown : charset->isUtf8() ? kUtf8 : charset->table();
}

struct NameRow {
  const char* name;
  const char* wanted;  // of a table; "utf8"; null: unknown
};

const NameRow kNameRows[] = {
    {"UTF-8", "utf8"},
    {"utf8", "utf8"},
    {"Utf_8", "utf8"},
    {"ISO-8859-1", "iso88591"},
    {"ISO8859-1", "iso88591"},
    {"iso885915", "iso885915"},
    {"eucJP", "eucjp"},
    {"EUC-KR", "euckr"},
    {"eucCN", "euccn"},
    {"EUC-TW", "euctw"},
    {"KOI8-R", "koi8r"},
    {"CP1251", "cp1251"},
    {"BIG5", "big5"},
    {"GB18030", "gb18030"},
    {"", nullptr},
    {"-", nullptr},
    {"ANSI_X3.4-1968", nullptr},
    {"UTF-16", nullptr},
    {"UTF", nullptr},
    {"ISO-8859-12", nullptr},
    {"ISO-8859-", nullptr},
    {"BIG5-HKSCS", nullptr},
};

TEST(Charset, Names) {
  for (const NameRow& row : kNameRows) {
    const int number = numberOf(row.name);
    const std::string found = number == kUnknown ? "unknown"
                              : number == kUtf8  ? "utf8"
                                                 : kCharsetTables[number].name;
    EXPECT_EQ(row.wanted == nullptr ? "unknown" : row.wanted, found) << row.name;
  }
}

TEST(Charset, NamesAreWrittenAsTheyAreCompared) {
  for (int i = 0; i < kCharsetCount; ++i)
    EXPECT_EQ(i, numberOf(kCharsetTables[i].name)) << kCharsetTables[i].name;
}

struct CharacterRow {
  const char* name;
  const char* charset;  // null: ASCII
  char32_t character;
  const char* wanted;  // null: it has none there
};

const CharacterRow kCharacterRows[] = {
    {"the last of ASCII", nullptr, 0x7F, "\x7F"},
    {"the first beyond", nullptr, 0x80, nullptr},
    {"ASCII in a table of one byte", "iso88595", 'A', "A"},
    {"ASCII in a table of two bytes", "big5", '\\', "\\"},
    {"one byte", "utf8", 0x7F, "\x7F"},
    {"first of two bytes", "utf8", 0x80, "\xC2\x80"},
    {"last of two bytes", "utf8", 0x7FF, "\xDF\xBF"},
    {"first of three bytes", "utf8", 0x800, "\xE0\xA0\x80"},
    {"last before the halves of pairs", "utf8", 0xD7FF, "\xED\x9F\xBF"},
    {"first half of a pair", "utf8", 0xD800, nullptr},
    {"last half of a pair", "utf8", 0xDFFF, nullptr},
    {"first behind the halves of pairs", "utf8", 0xE000, "\xEE\x80\x80"},
    {"last of three bytes", "utf8", 0xFFFF, "\xEF\xBF\xBF"},
    {"first of four bytes", "utf8", 0x10000, "\xF0\x90\x80\x80"},
    {"last of all", "utf8", 0x10FFFF, "\xF4\x8F\xBF\xBF"},
    {"one too many", "utf8", 0x110000, nullptr},
    {"a stray byte, sign-extended", "utf8", 0xFFFFFFE9, nullptr},
    {"a stray byte in a table", "iso88591", 0xFFFFFFE9, nullptr},
    {"first of Latin-1", "iso88591", 0x80, "\x80"},
    {"last of Latin-1", "iso88591", 0xFF, "\xFF"},
    {"behind Latin-1", "iso88591", 0x100, nullptr},
    {"the euro where it is", "iso885915", 0x20AC, "\xA4"},
    {"the euro where it is not", "iso88591", 0x20AC, nullptr},
    {"a place that stands for nothing", "iso88597", 0xFFFD, nullptr},
    {"first row", "eucjp", 0x3000, "\xA1\xA1"},
    {"kana", "eucjp", 0x30C6, "\xA5\xC6"},
    {"an ideograph", "eucjp", 0x65E5, "\xC6\xFC"},
    {"an ideograph in Big5", "big5", 0x65E5, "\xA4\xE9"},
    {"a second byte that is a backslash", "big5", 0x529F, "\xA5\x5C"},
    {"a syllable", "euckr", 0xAC00, "\xB0\xA1"},
    {"shares the table of another", "gb18030", 0x65E0, "\xCE\xDE"},
    {"the dash of the larger sets", "gbk", 0x2014, "\xA1\xAA"},
    {"the dash of the smaller one", "gb2312", 0x2015, "\xA1\xAA"},
    {"a dash with other bytes", "gbk", 0x2015, nullptr},
    {"the middle dot of the larger sets", "gb18030", 0xB7, "\xA1\xA4"},
    {"the middle dot of the smaller one", "gb2312", 0x30FB, "\xA1\xA4"},
    {"a middle dot with other bytes", "gb18030", 0x30FB, nullptr},
    {"a character beyond 16 bits", "gb18030", 0x1F600, nullptr},
};

TEST(Charset, Characters) {
  for (const CharacterRow& row : kCharacterRows) {
    const Charset charset =
        row.charset == nullptr ? Charset::ascii() : Charset::named(row.charset).value();
    SString text("<");
    EXPECT_EQ(row.wanted != nullptr, charset.append(row.character, text)) << row.name;
    EXPECT_EQ("<" + std::string(row.wanted == nullptr ? "" : row.wanted), std::string(text.view()))
        << row.name;
  }
}

struct ConverterRow {
  const char* charset;
  const char* encoding;
  bool isPart = false;  // the charset has more characters of two bytes than the table
};

// Whatever a table holds is what the C library writes for the character.
const ConverterRow kConverterRows[] = {
    {"iso88591", "ISO-8859-1"}, {"iso88592", "ISO-8859-2"},   {"iso88595", "ISO-8859-5"},
    {"iso88596", "ISO-8859-6"}, {"iso88597", "ISO-8859-7"},   {"iso88598", "ISO-8859-8"},
    {"iso88599", "ISO-8859-9"}, {"iso885915", "ISO-8859-15"}, {"iso885916", "ISO-8859-16"},
    {"koi8r", "KOI8-R"},        {"cp1251", "CP1251"},         {"big5", "BIG5"},
    {"eucjp", "EUC-JP"},        {"euckr", "EUC-KR"},          {"euctw", "EUC-TW"},
    {"gb2312", "GB2312"},       {"gbk", "GBK", true},         {"gb18030", "GB18030", true},
    {"koi8u", "KOI8-U"},        {"cp1250", "CP1250"},         {"cp1252", "CP1252"},
    {"cp1253", "CP1253"},       {"cp1254", "CP1254"},         {"cp1257", "CP1257"},
    {"iso88593", "ISO-8859-3"}, {"iso88594", "ISO-8859-4"},   {"iso885913", "ISO-8859-13"},
};

bool isOneByte(const char* charset) {
  return kCharsetTables[Charset::named(charset)->table()].firstLead == 0;
}

// What the C library writes; empty for nothing, and for a likeness.
std::string converted(iconv_t converter, char32_t character) {
  auto source = static_cast<wchar_t>(character);
  char target[8];
  char* from = reinterpret_cast<char*>(&source);
  char* to = target;
  std::size_t fromLeft = sizeof source;
  std::size_t toLeft = sizeof target;
  iconv(converter, nullptr, nullptr, nullptr, nullptr);
  const bool done = iconv(converter, &from, &fromLeft, &to, &toLeft) == 0;
  return done ? std::string(target, to) : "";
}

// True when our table must have it: not the larger sets of EUC-JP and EUC-TW, with three and four
// bytes, and not the sign of the won, whose bytes stand for the wide one.
bool isInTable(const char* charset, char32_t character, const std::string& bytes) {
  return !bytes.empty() && bytes.size() == (isOneByte(charset) ? 1U : 2U) &&
         static_cast<unsigned char>(bytes[0]) >= (isOneByte(charset) ? 0x80U : 0xA1U) &&
         character != 0x20A9;
}

TEST(Charset, TablesAgreeWithTheCLibrary) {
  for (const ConverterRow& row : kConverterRows) {
    const iconv_t converter = iconv_open(row.encoding, "WCHAR_T");
    if (converter == reinterpret_cast<iconv_t>(-1)) {
      GTEST_SKIP() << "no converters to " << row.encoding;
    }
    // Searching the large tables takes time: a part of their characters will do.
    const char32_t step = isOneByte(row.charset) ? 1 : 11;
    const Charset charset = Charset::named(row.charset).value();
    for (char32_t character = 0x80; character <= 0xFFFF; character += step) {
      const std::string theirs = converted(converter, character);
      SString ours;
      const bool has = charset.append(character, ours);
      EXPECT_TRUE(has ? theirs == ours.view()
                      : row.isPart || !isInTable(row.charset, character, theirs))
          << row.charset << " U+" << std::hex << static_cast<unsigned long>(character);
    }
    iconv_close(converter);
  }
}

struct OlderRow {
  char32_t letter;
  char32_t wanted;
};

const OlderRow kOlderRows[] = {{0x217, 0},     {0x218, 0x15E}, {0x219, 0x15F},
                               {0x21A, 0x162}, {0x21B, 0x163}, {0x21C, 0}};

TEST(Charset, OlderLetters) {
  for (const OlderRow& row : kOlderRows)
    EXPECT_EQ(row.wanted, olderLetter(row.letter)) << static_cast<unsigned long>(row.letter);
}

}  // namespace
