#include "launcher/CmdLine.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <string_view>
#include <vector>

using namespace std::string_view_literals;

namespace {

constexpr std::size_t npos = SString::npos;

std::vector<std::string> options(const CmdLine& line) {
  std::vector<std::string> found;
  for (int i = 0; i < line.getOptionCount(); ++i) {
    found.emplace_back(line.getOption(i));
  }
  return found;
}

struct ParseRow {
  const char* name;
  std::string_view line;
  std::vector<std::string> wanted;
};

const ParseRow kParseRows[] = {
    {"nothing", "", {}},
    {"only blanks", " \t\r\n ", {}},
    {"one", "one", {"one"}},
    {"quoted among others", "one \"two three\" four", {"one", "two three", "four"}},
    {"all four blanks separate", "a b\tc\nd\re", {"a", "b", "c", "d", "e"}},
    {"blanks around", "  a   b  ", {"a", "b"}},
    {"form feed and vertical tab do not separate", "a\fb\vc", {"a\fb\vc"}},

    {"quoted nothing is dropped", "\"\"", {}},
    {"quoted nothing among others is dropped", "a \"\" b", {"a", "b"}},
    {"quoted nothing at the end is dropped", "a \"\"", {"a"}},
    {"quoted blanks are kept", "a \" \t\" b", {"a", " \t", "b"}},
    {"a quote alone", "a \"", {"a"}},
    {"unclosed quote takes the rest", "a \"b c  ", {"a", "b c  "}},
    {"a closed quote ends the argument", "a \"b\"c d", {"a", "b", "c", "d"}},
    {"two quoted side by side", "a \"b\"\"c\"", {"a", "b", "c"}},

    {"quoted section within", "a\"b c\"d", {"ab cd"}},
    {"quoted section within, further arguments", "x a\"b c\"d e", {"x", "ab cd", "e"}},
    {"quoted section at the end", "x a\"b c\"", {"x", "ab c"}},
    {"quoted section at the end, blank behind", "x a\"b c\" d", {"x", "ab c", "d"}},
    {"empty quoted section", "x a\"\"b", {"x", "ab"}},
    {"two quoted sections", "x a\"b c\"\"d e\"f", {"x", "ab cd ef"}},
    {"unclosed section takes the rest", "x a\"b c ", {"x", "ab c "}},
    {"unclosed section of nothing", "x a\"", {"x", "a"}},
    {"blanks at the start of a section", "x a\"  b\"", {"x", "a  b"}},

    {"escaped quote", "x a\\\"b", {"x", "a\"b"}},
    {"escaped quote first", "x \\\"b c", {"x", "\"b", "c"}},
    {"escaped quote in quotes", "x \"a\\\"b c\" d", {"x", "a\"b c", "d"}},
    {"escaped quote in a section", "x a\"b\\\" c\"d", {"x", "ab\" cd"}},
    {"backslash before anything else stays", "x a\\b \\n", {"x", "a\\b", "\\n"}},
    {"backslash in quotes stays", "x \"a\\b\"", {"x", "a\\b"}},
    {"two backslashes stay two", "x a\\\\b", {"x", "a\\\\b"}},
    {"two backslashes and a quote: the quote opens", "x a\\\\\"b c\"", {"x", "a\\\\b c"}},
    {"three backslashes and a quote", "x a\\\\\\\"b c", {"x", "a\\\\\"b", "c"}},
    {"escaped blank is kept with its backslash", "x a\\ b", {"x", "a\\ b"}},
    {"backslash at the end is dropped", "x a\\", {"x", "a"}},
    {"backslash alone at the end is dropped", "x \\", {"x"}},
    {"backslash at the end of unclosed quotes is dropped", "x \"a\\", {"x", "a"}},
    {"backslash at the end of an unclosed section", "x b\"a\\", {"x", "ba"}},

    {"first: backslashes are ordinary", "C:\\x\\y z", {"C:\\x\\y", "z"}},
    {"first: backslash at the end", "C:\\x\\", {"C:\\x\\"}},
    {"first: backslash and quote, the quote opens", "C:\\x\\\"y z\" w", {"C:\\x\\y z", "w"}},
    {"first: backslash and unclosed quote", "C:\\x\\\"y", {"C:\\x\\y"}},
    {"first: backslash in quotes", "\"C:\\x y\\\" z", {"C:\\x y\\", "z"}},
    {"first: backslash in a section", "a\"b\\\"c d", {"ab\\c", "d"}},
    {"first: still first behind a dropped one", "\"\" a\\\"b c\"", {"a\\b c"}},

    {"a zero byte ends what C sees", "a\0b c"sv, {"a", "c"}},
};

TEST(CmdLineTest, Parses) {
  for (const ParseRow& row : kParseRows) {
    CmdLine line;
    EXPECT_EQ(1, line.parse(SString(row.line))) << row.name;
    EXPECT_EQ(row.wanted, options(line)) << row.name;
  }
}

struct NextRow {
  const char* name;
  const char* line;
  std::size_t pos;
  bool isFirst = false;
  const char* wanted = "";
  std::size_t wantedNext;
};

constexpr NextRow kNextRows[] = {
    {.name = "up to the blank, which is left",
     .line = "ab cd",
     .pos = 0,
     .wanted = "ab",
     .wantedNext = 2},
    {.name = "from a blank", .line = "ab cd", .pos = 2, .wanted = "cd", .wantedNext = 5},
    {.name = "to the end of the line", .line = "ab", .pos = 0, .wanted = "ab", .wantedNext = 2},
    {.name = "behind the closing quote",
     .line = "\"ab\" c",
     .pos = 0,
     .wanted = "ab",
     .wantedNext = 4},
    {.name = "closing quote at the end",
     .line = "\"ab\"",
     .pos = 0,
     .wanted = "ab",
     .wantedNext = 4},
    {.name = "unclosed quote", .line = "\"ab", .pos = 0, .wanted = "ab", .wantedNext = 3},
    {.name = "quote alone", .line = "\"", .pos = 0, .wantedNext = 1},
    {.name = "quoted nothing", .line = "\"\" a", .pos = 0, .wantedNext = 2},
    {.name = "section, then more", .line = "a\"b\"c d", .pos = 0, .wanted = "abc", .wantedNext = 5},
    {.name = "section that ends the line leaves no position",
     .line = "a\"b\"",
     .pos = 0,
     .wanted = "ab",
     .wantedNext = npos},
    {.name = "unclosed section leaves no position",
     .line = "a\"b",
     .pos = 0,
     .wanted = "ab",
     .wantedNext = npos},
    {.name = "section, then a blank", .line = "a\"b\" ", .pos = 0, .wanted = "ab", .wantedNext = 4},
    {.name = "backslash at the end", .line = "ab\\", .pos = 0, .wanted = "ab", .wantedNext = 3},
    {.name = "backslash at the end, first",
     .line = "ab\\",
     .pos = 0,
     .isFirst = true,
     .wanted = "ab\\",
     .wantedNext = 3},
    {.name = "escaped quote at the end",
     .line = "a\\\"",
     .pos = 0,
     .wanted = "a\"",
     .wantedNext = 3},
    {.name = "only blanks", .line = "  ", .pos = 0, .wantedNext = npos},
    {.name = "nothing", .line = "", .pos = 0, .wantedNext = npos},
    {.name = "past the end", .line = "ab", .pos = 5, .wantedNext = npos},
    {.name = "no position", .line = "ab", .pos = npos, .wantedNext = npos},
};

TEST(CmdLineTest, ReadsOneArgument) {
  for (const NextRow& row : kNextRows) {
    SString arg = "old";
    std::size_t next = 4711;
    EXPECT_EQ(1, CmdLine().getNextArg(row.line, row.pos, row.isFirst, arg, next)) << row.name;
    EXPECT_STREQ(row.wanted, arg.c_str()) << row.name;
    EXPECT_EQ(row.wantedNext, next) << row.name;
  }
}

TEST(CmdLineTest, HasNoOptionOutside) {
  CmdLine line;
  EXPECT_EQ(0, line.getOptionCount());
  EXPECT_EQ(nullptr, line.getOption(0));
  line.parse("a b");
  EXPECT_EQ(2, line.getOptionCount());
  EXPECT_STREQ("a", line.getOption(0));
  EXPECT_STREQ("b", line.getOption(1));
  for (const int index :
       {2, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
    EXPECT_EQ(nullptr, line.getOption(index)) << index;
  }
}

// QUIRK(parse-appends)
TEST(CmdLineTest, ParseAppendsButCountsAnew) {
  CmdLine line;
  line.parse("a b c");
  line.parse("d e\\\"");
  EXPECT_EQ((std::vector<std::string>{"a", "b"}), options(line));
  line.parse("f g h i j k");
  EXPECT_EQ((std::vector<std::string>{"a", "b", "c", "d", "e\"", "f"}), options(line));
}

}  // namespace
