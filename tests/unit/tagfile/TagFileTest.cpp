#include "tagfile/TagFile.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "launcher/Log.h"
#include "support/TestFiles.h"
#include "support/Texts.h"
#include "tagfile/StreamUtils.h"

using namespace std::string_view_literals;

namespace {

using test::errorOf;
using test::sstr;

constexpr const char* kName = "a name.tag";

// The document as `write` writes it: all tags and values, in order.
std::string written(const TagFile& document) {
  const test::TempDir dir;
  EXPECT_EQ(0, document.write(sstr(dir / "written")));
  return test::readFile(dir / "written");
}

// What `load` throws; empty when it throws nothing.
std::string load(TagFile& document, std::string_view bytes, std::int32_t start = 0,
                 std::int32_t length = -1) {
  const test::TempDir dir;
  const FilePtr file = openFile(sstr(test::writeFile(dir / "bytes", bytes)), "rb");
  return errorOf([&] { document.load(file.get(), kName, start, length); });
}

// --- what is read ---

struct LoadRow {
  const char* name;
  std::string_view text;
  std::string_view wanted;  // as written
};

constexpr LoadRow kLoadRows[] = {
    {"empty file", "", ""},
    {"only blank lines", "\n  \n\t\r\n", ""},
    {"one tag", "NAME: value\n", "NAME:  value\n"},
    {"no final newline", "NAME: value", "NAME:  value\n"},
    {"carriage returns and newlines", "A: 1\r\nB:\r\n  2\r\n  3\r\n/:\r\n",
     "A:  1\nB:\n  2\n  3\n/:\n"},
    {"carriage return within", "NA\rME: va\rlue\n", "NAME:  value\n"},
    {"no blank behind the colon", "NAME:value\n", "NAME:  value\n"},
    {"blanks around the colon", "NAME \t:\t value\n", "NAME:  value\n"},
    {"indented", "  \tNAME: value\n", "NAME:  value\n"},
    {"blank lines between", "\nA: 1\n\n\nB: 2\n\n", "A:  1\nB:  2\n"},
    {"blanks in the name", "A NAME: value\n", "A NAME:  value\n"},
    {"blanks in the value", "A: a  b\tc \t\n", "A:  a  b\tc\n"},
    {"colons in the value", "A: b: c:\n", "A:  b: c:\n"},
    {"colons side by side", "A::\n", "A:  :\n"},
    {"empty name", ": value\n", ":  value\n"},
    {"name of blanks", " \t : value\n", ":  value\n"},
    {"quotes in the name", "\"A\": value\n", "\"A\":  value\n"},
    {"names differ by case", "a: 1\nA: 2\n", "a:  1\nA:  2\n"},
    {"bytes above 127", "\xC4: \xE4\xFF\n", "\xC4:  \xE4\xFF\n"},

    {"quoted value", "A: \" b \"\n", "A:  \" b \"\n"},
    {"quoted value without need", "A: \"b\"\n", "A:  b\n"},
    {"quoted value of nothing", "A: \"\"\n", "A:  \"\"\n"},
    {"doubled quotes", "A: \"a \"\"b\"\" c\" and more\n", "A:  \"a \"\"b\"\" c\"\n"},
    {"dropped behind the closing quote", "A: \"b\" c \"d\n", "A:  b\n"},
    {"quote directly behind the colon", "A:\"b c \"\n", "A:  \"b c \"\n"},
    {"quote within a bare value", "A: a \"b\"\n", "A:  \"a \"\"b\"\"\"\n"},
    {"quote at the end of a bare value", "A: a\"\n", "A:  \"a\"\"\"\n"},
    {"quoted colon", "A: \":\"\n", "A:  :\n"},

    {"block", "A:\n1\n2\n/:\n", "A:\n  1\n  2\n/:\n"},
    {"block of one value", "A:\n  1\n/:\n", "A:  1\n"},
    {"block of no values", "A:\n/:\n", ""},
    {"block of blank lines", "A:\n\n  \n/:\n", ""},
    {"block, completer is the last line without newline", "A:\n1\n2\n/:", "A:\n  1\n  2\n/:\n"},
    {"block with blank lines", "A:\n\n1\n \n2\n\n/:\n", "A:\n  1\n  2\n/:\n"},
    {"block, blanks behind the colon", "A: \t\n1\n2\n/:\n", "A:\n  1\n  2\n/:\n"},
    {"block of tag lines", "A:\nB: 1\nC:\n/:\nD: 2\n", "A:\n  B: 1\n  C:\n/:\nD:  2\n"},
    {"block with quoted values", "A:\n\" 1 \" x\n\"\"\"2\"\"\"\n/:\n",
     "A:\n  \" 1 \"\n  \"\"\"2\"\"\"\n/:\n"},
    {"quoted-completer: an empty value is skipped", "A:\n1\n\"\"\n2\n/:\n", "A:\n  1\n  2\n/:\n"},
    {"block of an empty quoted value", "A:\n\"\"\n/:\n", ""},
    {"block, quoted blanks are a value", "A:\n1\n\" \"\n/:\n", "A:\n  1\n  \" \"\n/:\n"},
    {"block, indented completer", "A:\n1\n2\n \t/: \n", "A:\n  1\n  2\n/:\n"},
    {"quoted-completer: ends the block", "A:\n1\n\"/:\" x\nB: 2\n", "A:  1\nB:  2\n"},
    {"block, quoted completer with a blank is a value", "A:\n1\n\" /:\"\n/:\n",
     "A:\n  1\n  \" /:\"\n/:\n"},
    {"block, completer and more is a value", "A:\n/: x\n1\n/:\n", "A:\n  /: x\n  1\n/:\n"},
    {"block, a lone slash is a value", "A:\n/\n:\n/:\n", "A:\n  /\n  :\n/:\n"},
    {"block without a name", ":\n1\n2\n/:\n", ":\n  1\n  2\n/:\n"},
    {"equal values stay", "A:\n1\n1\n/:\n", "A:\n  1\n  1\n/:\n"},

    {"completer outside a block begins the block of a tag", "/:\n1\n2\n/:\n", "/:\n  1\n  2\n/:\n"},
    {"completer and a value outside a block", "/: x\n", "/:  x\n"},

    {"last-definition-wins: and goes to the end", "A: 1\nB: 2\nA: 3\n", "B:  2\nA:  3\n"},
    {"a tag again in the next line", "A: 1\nA: 2\n", "A:  2\n"},
    {"a tag again as a block", "A: 1\nB: 2\nA:\n3\n4\n/:\n", "B:  2\nA:\n  3\n  4\n/:\n"},
    {"a block again as a tag", "A:\n1\n2\n/:\nA: 3\n", "A:  3\n"},
    {"a tag again without values", "A: 1\nB: 2\nA:\n/:\n", "B:  2\n"},
    {"three times", "A: 1\nA: 2\nB: 0\nA: 3\n", "B:  0\nA:  3\n"},
};

TEST(TagFileTest, Loads) {
  for (const LoadRow& row : kLoadRows) {
    SCOPED_TRACE(row.name);
    TagFile document;
    EXPECT_FALSE(document.isLoaded());
    EXPECT_EQ("", load(document, row.text));
    EXPECT_TRUE(document.isLoaded());
    EXPECT_STREQ(kName, document.getName().c_str());
    EXPECT_EQ(row.wanted, written(document));

    TagFile again;
    EXPECT_EQ("", load(again, written(document)));
    EXPECT_EQ(row.wanted, written(again)) << "what is written reads back equal";
  }
}

TEST(TagFileTest, KeepsZeroBytesInValues) {
  TagFile document;
  EXPECT_EQ("", load(document, "A: a\0b\nB:\n\0\nc\n/:\n"sv));
  EXPECT_EQ("a\0b"sv, document.getTagValue("A", 0).view());
  EXPECT_EQ("\0"sv, document.getTagValue("B", 0).view());
  EXPECT_EQ(2, document.getTagValueCount("B"));
}

TEST(TagFileTest, WritesValuesUpToTheirFirstZeroByte) {
  const test::TempDir dir;
  TagFile document;
  EXPECT_EQ("", load(document, "A: \0a\nB: b \0c\nC: d\n"sv));
  const std::string path = dir / "written";
  EXPECT_EQ(0, document.write(path.c_str()));
  EXPECT_EQ("A:  \"\"\nB:  \"b \"\nC:  d\n", test::readFile(path));
}

// --- a stretch inside a file ---

struct StretchRow {
  const char* name;
  std::int32_t start;
  std::int32_t length;
  const char* wanted;
};

constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kSmallest = std::numeric_limits<std::int32_t>::min();

// Offsets:                       0      6      12   15   18   21     27
constexpr const char* kStretch = "A: 01\nB: 02\nC:\n 1\n 2\n/:\n\nD: 03\n";

constexpr StretchRow kStretchRows[] = {
    {"all", 0, -1, "A:  01\nB:  02\nC:\n  1\n  2\n/:\nD:  03\n"},
    {"all, any negative length", 0, kSmallest, "A:  01\nB:  02\nC:\n  1\n  2\n/:\nD:  03\n"},
    {"nothing", 0, 0, ""},
    {"nothing, further on", 6, 0, ""},
    {"one byte: the whole line", 0, 1, "A:  01\n"},
    {"one byte short of the second tag", 0, 5, "A:  01\n"},
    {"up to the second tag", 0, 6, "A:  01\n"},
    {"one byte into the second tag", 0, 7, "A:  01\nB:  02\n"},
    {"from the second tag", 6, 6, "B:  02\n"},
    {"from within a tag", 3, 3, "error"},
    {"from the second tag to the end", 6, -1, "B:  02\nC:\n  1\n  2\n/:\nD:  03\n"},
    {"bound-before-tags-only: a block begins before it", 6, 7, "B:  02\nC:\n  1\n  2\n/:\n"},
    {"the bound within a block", 12, 6, "C:\n  1\n  2\n/:\n"},
    {"the bound at the last tag, behind a blank line", 12, 13, "C:\n  1\n  2\n/:\n"},
    {"one byte more", 12, 14, "C:\n  1\n  2\n/:\nD:  03\n"},
    {"past the end", 25, 100, "D:  03\n"},
    {"start + length past 32 bits", 25, kLargest, "D:  03\n"},
    {"start at the end", 31, -1, ""},
    {"start past the end", 100, -1, ""},
    {"start and length as large as can be", kLargest, kLargest, ""},
};

TEST(TagFileTest, LoadsAStretch) {
  for (const StretchRow& row : kStretchRows) {
    SCOPED_TRACE(row.name);
    TagFile document;
    const std::string error = load(document, kStretch, row.start, row.length);
    if (row.wanted == "error"sv) {
      EXPECT_EQ(
          "Syntax error in a name.tag at line 1 ==> Missing colon at the end of the tag name.",
          error);
      continue;
    }
    EXPECT_EQ("", error);
    EXPECT_TRUE(document.isLoaded());
    EXPECT_EQ(row.wanted, written(document));
  }
}

// --- failures: the text, what is logged, what stays in the document ---

struct FailureRow {
  const char* name;
  std::string_view text;
  std::int32_t start;
  const char* error;
  bool isLogged = false;
  const char* wanted = "";
};

constexpr FailureRow kFailureRows[] = {
    {.name = "no colon",
     .text = "A: 1\n\nno tag\nB: 2\n",
     .start = 0,
     .error = "Syntax error in a name.tag at line 3 ==> Missing colon at the end of the tag name.",
     .isLogged = true,
     .wanted = "A:  1\n"},
    {.name = "no colon on the first line",
     .text = "x",
     .start = 0,
     .error = "Syntax error in a name.tag at line 1 ==> Missing colon at the end of the tag name.",
     .isLogged = true},
    {.name = "no colon behind a block",
     .text = "A:\n1\n2\n/:\nx\n",
     .start = 0,
     .error = "Syntax error in a name.tag at line 5 ==> Missing colon at the end of the tag name.",
     .isLogged = true,
     .wanted = "A:\n  1\n  2\n/:\n"},
    {.name = "a comment is none",
     .text = "# comment\n",
     .start = 0,
     .error = "Syntax error in a name.tag at line 1 ==> Missing colon at the end of the tag name.",
     .isLogged = true},
    {.name = "lines count from the start of the stretch",
     .text = "ABC\nDEF\nGHI\n",
     .start = 4,
     .error = "Syntax error in a name.tag at line 1 ==> Missing colon at the end of the tag name.",
     .isLogged = true},
    {.name = "no completer",
     .text = "A: 1\nB:\n2\n3\n",
     .start = 0,
     .error = "Syntax error in a name.tag at line 2 ==> Missing /: tag completer.",
     .isLogged = true,
     .wanted = "A:  1\nB:\n  2\n  3\n/:\n"},
    {.name = "no completer, no newline",
     .text = "B:\n2",
     .start = 0,
     .error = "Syntax error in a name.tag at line 1 ==> Missing /: tag completer.",
     .isLogged = true,
     .wanted = "B:  2\n"},
    {.name = "no completer, nothing at all",
     .text = "A: 1\n\nB:\n",
     .start = 0,
     .error = "Syntax error in a name.tag at line 3 ==> Missing /: tag completer.",
     .isLogged = true,
     .wanted = "A:  1\n"},
    {.name = "no completer, not even a newline",
     .text = "B:",
     .start = 0,
     .error = "Syntax error in a name.tag at line 1 ==> Missing /: tag completer.",
     .isLogged = true},
    {.name = "completer outside a block begins one",
     .text = "A: 1\n/:\n",
     .start = 0,
     .error = "Syntax error in a name.tag at line 2 ==> Missing /: tag completer.",
     .isLogged = true,
     .wanted = "A:  1\n"},
    {.name = "no closing quote",
     .text = "A: 1\nB: \"2\n",
     .start = 0,
     .error = "Expected double quote to end argument near 4",
     .wanted = "A:  1\n"},
    {.name = "no closing quote: positions are those of the trimmed line",
     .text = "   B: \"2\n",
     .start = 0,
     .error = "Expected double quote to end argument near 4"},
    {.name = "no closing quote behind a doubled one",
     .text = "A: \"a\"\"b\n",
     .start = 0,
     .error = "Expected double quote to end argument near 7"},
    {.name = "doubled quote at the end",
     .text = "A: \"a\"\"\n",
     .start = 0,
     .error = "Expected double quote to end argument near -1"},
    {.name = "a quote alone",
     .text = "A: \"\n",
     .start = 0,
     .error = "Expected double quote to end argument near 4"},
    {.name = "no closing quote in a block",
     .text = "A:\n1\n \"2\n3\n/:\n",
     .start = 0,
     .error = "Expected double quote to end argument near 1",
     .wanted = "A:  1\n"},
    {.name = "last-definition-wins: a failing one has removed the tag",
     .text = "A: 1\nB: 2\nA: \"3\n",
     .start = 0,
     .error = "Expected double quote to end argument near 4",
     .wanted = "B:  2\n"},
    {.name = "a failing redefinition as a block",
     .text = "A: 1\nB: 2\nA:\n3\n",
     .start = 0,
     .error = "Syntax error in a name.tag at line 3 ==> Missing /: tag completer.",
     .isLogged = true,
     .wanted = "B:  2\nA:  3\n"},
    {.name = "start before the file",
     .text = "A: 1\n",
     .start = -1,
     .error = "Unable to read tag file."},
    {.name = "start far before the file",
     .text = "A: 1\n",
     .start = kSmallest,
     .error = "Unable to read tag file."},
};

TEST(TagFileTest, FailsToLoad) {
  const test::TempDir dir;
  setLogFileName(sstr(dir / "log"));
  std::string log;
  for (const FailureRow& row : kFailureRows) {
    SCOPED_TRACE(row.name);
    TagFile document;
    EXPECT_EQ(row.error, load(document, row.text, row.start));
    EXPECT_FALSE(document.isLoaded());
    EXPECT_STREQ(kName, document.getName().c_str());
    EXPECT_EQ(row.wanted, written(document));
    if (row.isLogged) {
      log +=
          (log.empty() ? "------------------\nERROR: " : "ERROR: ") + std::string(row.error) + "\n";
    }
    EXPECT_EQ(log, test::readFile(dir / "log"));
  }
}

TEST(TagFileTest, ReadsNoStreamWithoutPositions) {
  int ends[2];
  ASSERT_EQ(0, pipe(ends));
  const FilePtr reader(fdopen(ends[0], "r"));
  close(ends[1]);
  TagFile document;
  EXPECT_EQ("Unable to read tag file.",
            errorOf([&] { document.load(reader.get(), kName, 0, -1); }));
}

TEST(TagFileTest, ReadErrorIsNotTheEnd) {
  const test::TempDir dir;
  const FilePtr file = openFile(sstr(dir / "file"), "w");  // not to be read
  TagFile document;
  EXPECT_EQ("Unable to read tag file.", errorOf([&] { document.load(file.get(), kName, 0, -1); }));
  EXPECT_FALSE(document.isLoaded());
}

TEST(TagFileTest, LogsSyntaxErrors) {
  constexpr const char* wanted = "Syntax error in file at line -1 ==> the message";
  const test::TempDir dir;
  setLogFileName(sstr(dir / "log"));
  EXPECT_EQ(wanted, errorOf([] { TagFile::logSyntaxError("the message", "file", -1); }));
  EXPECT_TRUE(test::readFile(dir / "log").ends_with("ERROR: " + std::string(wanted) + "\n"));
}

TEST(TagFileTest, LoadsAFileByItsPath) {
  const test::TempDir dir;
  const SString path = sstr(test::writeFile(dir / "file", "A: 1\n"));
  const TagFile document(path);
  EXPECT_TRUE(document.isLoaded());
  EXPECT_EQ(path.view(), document.getName().view());
  EXPECT_EQ("A:  1\n", written(document));
}

struct UnopenedRow {
  const char* name;
  const char* path;
  const char* wanted;
};

constexpr UnopenedRow kUnopenedRows[] = {
    {"no such file", "/no/such file", "Unable to load input file: /no/such file"},
    {"folder", "/", "Unable to load input file: /"},
    {"no name", "", "Unable to load input file: "},
};

TEST(TagFileTest, DoesNotOpen) {
  for (const UnopenedRow& row : kUnopenedRows) {
    EXPECT_EQ(row.wanted, errorOf([&] { TagFile(SString(row.path)); })) << row.name;
  }
}

TEST(TagFileTest, NamesTheFileInItsErrors) {
  const test::TempDir dir;
  const std::string path = test::writeFile(dir / "file", "x\n");
  EXPECT_EQ("Syntax error in " + path + " at line 1 ==> Missing colon at the end of the tag name.",
            errorOf([&] { TagFile(sstr(path)); }));
}

TEST(TagFileTest, LoadsIntoWhatIsThere) {
  TagFile document;
  EXPECT_EQ("", load(document, "A: 1\nB: 2\nC: 3\n"));
  EXPECT_EQ("", load(document, "D: 4\nA: 5\n"));
  EXPECT_EQ("B:  2\nC:  3\nD:  4\nA:  5\n", written(document));
  EXPECT_EQ("Syntax error in a name.tag at line 1 ==> Missing colon at the end of the tag name.",
            load(document, "x\n"))
      << "lines count anew";
}

// --- reading values ---

TEST(TagFileTest, ReadsValues) {
  TagFile document;
  ASSERT_EQ("", load(document, "NAME:\n1\n2\n3\n/:\nONE: x\nEMPTY: \"\"\n"));
  EXPECT_STREQ("1", document.getTagValue("NAME", 0).c_str());
  EXPECT_STREQ("3", document.getTagValue("NAME", 2).c_str());
  EXPECT_STREQ("", document.getTagValue("NAME", 3).c_str());
  EXPECT_STREQ("", document.getTagValue("NAME", 5).c_str());
  EXPECT_STREQ("", document.getTagValue("NAME", std::numeric_limits<unsigned long>::max()).c_str());
  EXPECT_STREQ("", document.getTagValue("ABSENT", 0).c_str());
  EXPECT_STREQ("", document.getTagValue("name", 0).c_str()) << "case matters";
  EXPECT_STREQ("", document.getTagValue(" NAME", 0).c_str()) << "nothing is trimmed";
  EXPECT_STREQ("", document.getTagValue("NAM", 0).c_str());
  EXPECT_STREQ("", document.getTagValue("", 0).c_str());
  EXPECT_EQ(3, document.getTagValueCount("NAME"));
  EXPECT_EQ(1, document.getTagValueCount("ONE"));
  EXPECT_EQ(1, document.getTagValueCount("EMPTY"));
  EXPECT_EQ(0, document.getTagValueCount("ABSENT"));
  EXPECT_EQ(nullptr, document.getValue("ABSENT"));
  ASSERT_NE(nullptr, document.getValue("NAME"));
  EXPECT_EQ(3, document.getValue("NAME")->size());
  EXPECT_STREQ("2", document.getValue("NAME")->at(1).c_str());
}

TEST(TagFileTest, StartsEmpty) {
  const TagFile document;
  EXPECT_FALSE(document.isLoaded());
  EXPECT_STREQ("", document.getName().c_str());
  EXPECT_EQ(nullptr, document.getValue(""));
  EXPECT_EQ("", written(document));
}

struct BoolRow {
  const char* name;
  const char* value;
  bool isNumber;
  bool wanted;
};

constexpr BoolRow kBoolRows[] = {
    {"1", "1", true, true},
    {"2", "2", true, true},
    {"-1", "-1", true, true},
    {"7abc", "7abc", true, true},
    {"blank in front", " 1", true, true},
    {"0", "0", true, false},
    {"00", "00", true, false},
    {"-0", "-0", true, false},
    {"0x1 is 0", "0x1", true, false},
    {"0.5 is 0", "0.5", true, false},
    {"32768", "32768", true, true},
    {"65535", "65535", true, true},
    {"short-keeps-low-bits: 65536 is 0", "65536", true, false},
    {"65537", "65537", true, true},
    {"past 32 bits", "4294967296", true, true},
    {"empty", "", false, false},
    {"true", "true", false, false},
    {"yes", "yes", false, false},
    {"on", "on", false, false},
    {"false", "false", false, false},
    {"sign alone", "-", false, false},
};

TEST(TagFileTest, ReadsFlags) {
  for (const BoolRow& row : kBoolRows) {
    TagFile document;
    document.setTagValue("FLAG", row.value);
    EXPECT_EQ(row.isNumber ? row.wanted : false, document.getBoolTagValue("FLAG", false))
        << row.name;
    EXPECT_EQ(row.isNumber ? row.wanted : true, document.getBoolTagValue("FLAG", true)) << row.name;
  }
  EXPECT_TRUE(TagFile().getBoolTagValue("ABSENT", true));
  EXPECT_FALSE(TagFile().getBoolTagValue("ABSENT", false));
}

// --- changing a document that holds A: 1, B: 2 3 4, C: 5 ---

struct EditRow {
  const char* name;
  void (*edit)(TagFile&);
  const char* wanted;
};

const EditRow kEditRows[] = {
    {"set a new tag", [](TagFile& f) { f.setTagValue("D", "x"); },
     "A:  1\nB:\n  2\n  3\n  4\n/:\nC:  5\nD:  x\n"},
    {"set a tag again", [](TagFile& f) { f.setTagValue("A", "x"); },
     "A:  x\nB:\n  2\n  3\n  4\n/:\nC:  5\n"},
    {"set a tag of many values", [](TagFile& f) { f.setTagValue("B", "x"); },
     "A:  1\nB:  x\nC:  5\n"},
    {"set a tag to one of its values",
     [](TagFile& f) { f.setTagValue("B", f.getValue("B")->at(1)); }, "A:  1\nB:  3\nC:  5\n"},
    {"set a tag to nothing", [](TagFile& f) { f.setTagValue("A", ""); },
     "A:  \"\"\nB:\n  2\n  3\n  4\n/:\nC:  5\n"},
    {"append to a new tag", [](TagFile& f) { f.appendTagValue("D", "x"); },
     "A:  1\nB:\n  2\n  3\n  4\n/:\nC:  5\nD:  x\n"},
    {"append to a tag", [](TagFile& f) { f.appendTagValue("A", "x"); },
     "A:\n  1\n  x\n/:\nB:\n  2\n  3\n  4\n/:\nC:  5\n"},
    {"append one of its values", [](TagFile& f) { f.appendTagValue("B", f.getValue("B")->at(0)); },
     "A:  1\nB:\n  2\n  3\n  4\n  2\n/:\nC:  5\n"},
    {"remove the first", [](TagFile& f) { f.removeValue("A"); }, "B:\n  2\n  3\n  4\n/:\nC:  5\n"},
    {"remove one within", [](TagFile& f) { f.removeValue("B"); }, "A:  1\nC:  5\n"},
    {"remove the last", [](TagFile& f) { f.removeValue("C"); }, "A:  1\nB:\n  2\n  3\n  4\n/:\n"},
    {"remove an absent one", [](TagFile& f) { f.removeValue("D"); },
     "A:  1\nB:\n  2\n  3\n  4\n/:\nC:  5\n"},
    {"remove, set: goes to the end",
     [](TagFile& f) {
       f.removeValue("A");
       f.setTagValue("A", "x");
     },
     "B:\n  2\n  3\n  4\n/:\nC:  5\nA:  x\n"},
    {"remove all",
     [](TagFile& f) {
       f.removeValue("B");
       f.removeValue("A");
       f.removeValue("C");
     },
     ""},
    {"set flags",
     [](TagFile& f) {
       f.setBoolTagValue("A", true);
       f.setBoolTagValue("B", false);
     },
     "A:  1\nB:  0\nC:  5\n"},
    {"set the tags of a found JVM",
     [](TagFile& f) { f.setDynamicJVMTags("/jvm home", "java11.tag", true); },
     "A:  1\nB:\n  2\n  3\n  4\n/:\nC:  5\nJVM_HOME:  /jvm home\nJVM_FILE:  java11.tag\n"
     "JVM_TEMP:  1\n"},
    {"set the tags of a found JVM, not temporary",
     [](TagFile& f) {
       f.removeValue("B");
       f.setDynamicJVMTags("", "", false);
     },
     "A:  1\nC:  5\nJVM_HOME:  \"\"\nJVM_FILE:  \"\"\nJVM_TEMP:  0\n"},
};

TEST(TagFileTest, IsEdited) {
  for (const EditRow& row : kEditRows) {
    TagFile document;
    ASSERT_EQ("", load(document, "A: 1\nB:\n2\n3\n4\n/:\nC: 5\n"));
    row.edit(document);
    EXPECT_EQ(row.wanted, written(document)) << row.name;
  }
}

// --- writing ---

struct WriteRow {
  const char* name;
  std::vector<const char*> values;
  const char* wanted;
};

const WriteRow kWriteRows[] = {
    {"plain", {"a b"}, "A:  a b\n"},
    {"empty", {""}, "A:  \"\"\n"},
    {"leading blank", {" a"}, "A:  \" a\"\n"},
    {"trailing blank", {"a "}, "A:  \"a \"\n"},
    {"leading tab", {"\ta"}, "A:  \"\ta\"\n"},
    {"trailing newline", {"a\n"}, "A:  \"a\n\"\n"},
    {"trailing carriage return", {"a\r"}, "A:  \"a\r\"\n"},
    {"one blank", {" "}, "A:  \" \"\n"},
    {"leading form feed", {"\fa"}, "A:  \fa\n"},
    {"quote within", {"a\"b"}, "A:  \"a\"\"b\"\n"},
    {"one quote", {"\""}, "A:  \"\"\"\"\n"},
    {"two quotes", {"\"\""}, "A:  \"\"\"\"\"\"\n"},
    {"completer", {"/:"}, "A:  /:\n"},
    {"percent signs", {"100%s%n"}, "A:  100%s%n\n"},
    {"two values", {"a", "b"}, "A:\n  a\n  b\n/:\n"},
    {"quoted values among others",
     {"a", " b", "c\"", "d"},
     "A:\n  a\n  \" b\"\n  \"c\"\"\"\n  d\n/:\n"},
    {"empty value among others", {"a", ""}, "A:\n  a\n  \"\"\n/:\n"},
};

TEST(TagFileTest, Writes) {
  for (const WriteRow& row : kWriteRows) {
    TagFile document;
    for (const char* value : row.values) {
      document.appendTagValue("A", value);
    }
    EXPECT_EQ(row.wanted, written(document)) << row.name;
  }
}

TEST(TagFileTest, ReplacesTheFileThatItWrites) {
  const test::TempDir dir;
  test::writeFile(dir / "file", "a longer text than the one to come");
  TagFile document;
  document.setTagValue("A", "1");
  EXPECT_EQ(0, document.write(sstr(dir / "file")));
  EXPECT_EQ("A:  1\n", test::readFile(dir / "file"));
}

TEST(TagFileTest, SaysNothingWhenItCannotWrite) {
  const test::TempDir dir;
  setLogFileName(sstr(dir / "log"));
  TagFile document;
  document.setTagValue("A", "1");
  EXPECT_EQ(ENOENT, document.write(sstr(dir / "no/such/folder/file")));
  EXPECT_EQ(EISDIR, document.write(sstr(dir.path())));
  EXPECT_EQ(std::vector<std::string>{}, test::listTree(dir.path()));
  if (access("/dev/full", W_OK) == 0) {
    EXPECT_EQ(ENOSPC, document.write("/dev/full"));
  }
}

// --- sizes: nothing here may take time in the square of the number ---

TEST(TagFileTest, HoldsManyTagsAndValues) {
  constexpr int kCount = 20000;
  std::string text = "BLOCK:\n";
  for (int i = 0; i < kCount; ++i) {
    text += "value " + std::to_string(i) + "\n";
  }
  text += "/:\n";
  for (int round = 0; round < 2; ++round) {  // all of them again: the second round wins
    for (int i = 0; i < kCount; ++i) {
      text += "TAG" + std::to_string(i) + ": " + std::to_string(i + round) + "\n";
    }
  }
  TagFile document;
  ASSERT_EQ("", load(document, text));
  EXPECT_EQ(kCount, document.getTagValueCount("BLOCK"));
  EXPECT_STREQ("value 19999", document.getTagValue("BLOCK", kCount - 1).c_str());
  EXPECT_STREQ("1", document.getTagValue("TAG0", 0).c_str());
  EXPECT_STREQ("20000", document.getTagValue("TAG19999", 0).c_str());
}

}  // namespace
