#include "util/SString.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

#include "support/Texts.h"

using namespace std::string_view_literals;

namespace {

constexpr std::size_t npos = SString::npos;

using test::str;

bool shareBuffer(const SString& a, const SString& b) {
  return a.c_str() == b.c_str();
}

// --- changing a string: the result, and what an earlier copy still reads ---

struct ChangeRow {
  const char* name;
  const char* before;
  void (*change)(SString&);
  std::string_view after;
};

const ChangeRow kChangeRows[] = {
    {"assign", "abc", [](SString& s) { s.assign("xy"); }, "xy"},
    {"assign a longer text", "abc", [](SString& s) { s.assign("uvwxyz"); }, "uvwxyz"},
    {"assign nothing", "abc", [](SString& s) { s.assign(""); }, ""},
    {"assign to the empty string", "", [](SString& s) { s.assign("xy"); }, "xy"},
    {"assign a part of itself", "abcd", [](SString& s) { s.assign(s.view().substr(1, 2)); }, "bc"},
    {"assign all of itself", "abcd", [](SString& s) { s.assign(s); }, "abcd"},
    {"self-assignment", "abc", [](SString& s) { s = *&s; }, "abc"},
    {"append", "abc", [](SString& s) { s.append("de"); }, "abcde"},
    {"append nothing", "abc", [](SString& s) { s.append(""); }, "abc"},
    {"append to the empty string", "", [](SString& s) { s.append("de"); }, "de"},
    {"append itself", "abc", [](SString& s) { s.append(s); }, "abcabc"},
    {"append itself twice", "ab", [](SString& s) { s.append(s).append(s); }, "abababab"},
    {"append a part of itself", "abcd", [](SString& s) { s += s.view().substr(2); }, "abcdcd"},
    {"append bytes", "ab", [](SString& s) { s.append(3, 'x'); }, "abxxx"},
    {"append no bytes", "ab", [](SString& s) { s.append(0, 'x'); }, "ab"},
    {"append a byte", "ab", [](SString& s) { s += 'x'; }, "abx"},
    {"append a zero byte", "ab", [](SString& s) { s += '\0'; }, "ab\0"sv},
    {"insert in front", "abc", [](SString& s) { s.insert(0, "xy"); }, "xyabc"},
    {"insert within", "abc", [](SString& s) { s.insert(1, "xy"); }, "axybc"},
    {"insert at the end", "abc", [](SString& s) { s.insert(3, "xy"); }, "abcxy"},
    {"insert past the end", "abc", [](SString& s) { s.insert(4, "xy"); }, "abcxy"},
    {"insert at no position", "abc", [](SString& s) { s.insert(npos, "xy"); }, "abcxy"},
    {"insert nothing", "abc", [](SString& s) { s.insert(1, ""); }, "abc"},
    {"insert itself", "abc", [](SString& s) { s.insert(1, s); }, "aabcbc"},
    {"insert a part of itself", "abcd", [](SString& s) { s.insert(1, s.view().substr(1, 2)); },
     "abcbcd"},
    {"erase all", "abc", [](SString& s) { s.erase(); }, ""},
    {"erase from a position", "abc", [](SString& s) { s.erase(1); }, "a"},
    {"erase the first byte", "abc", [](SString& s) { s.erase(0, 1); }, "bc"},
    {"erase the last byte", "abc", [](SString& s) { s.erase(2, 1); }, "ab"},
    {"erase more than there is", "abc", [](SString& s) { s.erase(1, 9); }, "a"},
    {"erase no bytes", "abc", [](SString& s) { s.erase(1, 0); }, "abc"},
    {"erase at the end", "abc", [](SString& s) { s.erase(3); }, "abc"},
    {"erase past the end", "abc", [](SString& s) { s.erase(4, 1); }, "abc"},
    {"erase at no position", "abc", [](SString& s) { s.erase(npos, npos); }, "abc"},
    {"erase in the empty string", "", [](SString& s) { s.erase(0, 1); }, ""},
    {"clear", "abc", [](SString& s) { s.clear(); }, ""},
    {"replace by less", "abcd", [](SString& s) { s.replace(1, 2, "x"); }, "axd"},
    {"replace by as much", "abcd", [](SString& s) { s.replace(1, 2, "xy"); }, "axyd"},
    {"replace by more", "abcd", [](SString& s) { s.replace(1, 2, "xyz"); }, "axyzd"},
    {"replace by nothing", "abcd", [](SString& s) { s.replace(1, 2, ""); }, "ad"},
    {"replace to the end", "abcd", [](SString& s) { s.replace(2, npos, "x"); }, "abx"},
    {"replace past the end", "abcd", [](SString& s) { s.replace(9, 1, "x"); }, "abcdx"},
    {"replace by a part of itself", "abcd",
     [](SString& s) { s.replace(0, 2, s.view().substr(1, 3)); }, "bcdcd"},
    {"replace by a part further on", "abcdef",
     [](SString& s) { s.replace(1, 1, s.view().substr(3, 3)); }, "adefcdef"},
    {"reserve", "abc", [](SString& s) { s.reserve(100); }, "abc"},
    {"reserve less than there is", "abc", [](SString& s) { s.reserve(1); }, "abc"},
    {"move away and back", "abc",
     [](SString& s) {
       SString other = std::move(s);
       s = std::move(other);
     },
     "abc"},
};

TEST(SStringTest, ChangesItselfAndNoCopy) {
  for (const ChangeRow& row : kChangeRows) {
    SCOPED_TRACE(row.name);
    SString alone = row.before;
    row.change(alone);
    EXPECT_EQ(row.after, alone.view());
    EXPECT_EQ('\0', alone.c_str()[alone.size()]);

    SString shared = row.before;
    const SString copy = shared;
    row.change(shared);
    EXPECT_EQ(row.after, shared.view());
    EXPECT_EQ('\0', shared.c_str()[shared.size()]);
    EXPECT_EQ(row.before, str(copy));
  }
}

// --- searching ---

struct SearchRow {
  const char* name;
  std::size_t found;
  std::size_t wanted;
};

TEST(SStringTest, Searches) {
  const SString s = "abcabc";
  const SString none;
  const SearchRow rows[] = {
      {"find: first", s.find("bc"), 1},
      {"find: from the match", s.find("bc", 1), 1},
      {"find: from behind the match", s.find("bc", 2), 4},
      {"find: none", s.find("x"), npos},
      {"find: from the last byte", s.find("c", 5), 5},
      {"find: from the end", s.find("c", 6), npos},
      {"find: from past the end", s.find("c", 7), npos},
      {"find: from no position", s.find("c", npos), npos},
      {"find: nothing", s.find(""), 0},
      {"find: nothing, at the end", s.find("", 6), 6},
      {"find: nothing, past the end", s.find("", 7), npos},
      {"find: longer than the text", s.find("abcabcd"), npos},
      {"find: byte", s.find('c', 3), 5},
      {"find: in the empty string", none.find("a"), npos},
      {"find: byte in the empty string", none.find('a'), npos},
      {"rfind: last", s.rfind("bc"), 4},
      {"rfind: from the match", s.rfind("bc", 4), 4},
      {"rfind: from in front of the match", s.rfind("bc", 3), 1},
      {"rfind: from 0", s.rfind("bc", 0), npos},
      {"rfind: nothing", s.rfind(""), 6},
      {"rfind: longer than the text", s.rfind("abcabcd"), npos},
      {"rfind: byte", s.rfind('a'), 3},
      {"rfind: in the empty string", none.rfind("a"), npos},
      {"find_first_of", s.find_first_of("cb"), 1},
      {"find_first_of: from", s.find_first_of("a", 1), 3},
      {"find_first_of: none", s.find_first_of("xyz"), npos},
      {"find_first_of: from past the end", s.find_first_of("a", 9), npos},
      {"find_first_of: empty set", s.find_first_of(""), npos},
      {"find_last_of", s.find_last_of("ab"), 4},
      {"find_last_of: from", s.find_last_of("a", 2), 0},
      {"find_last_of: none", s.find_last_of("xyz"), npos},
      {"find_last_of: in the empty string", none.find_last_of("a"), npos},
      {"find_first_not_of", s.find_first_not_of("ab"), 2},
      {"find_first_not_of: none", s.find_first_not_of("abc"), npos},
      {"find_first_not_of: from no position", s.find_first_not_of("x", npos), npos},
      {"find_first_not_of: empty set", s.find_first_not_of(""), 0},
      {"find_last_not_of", s.find_last_not_of("c"), 4},
      {"find_last_not_of: none", s.find_last_not_of("abc"), npos},
      {"find_last_not_of: in the empty string", none.find_last_not_of("a"), npos},
  };
  for (const SearchRow& row : rows) {
    EXPECT_EQ(row.wanted, row.found) << row.name;
  }
}

struct TextRow {
  const char* name;
  SString text;
  std::string_view wanted;
};

TEST(SStringTest, MakesTexts) {
  const SString s = "abcd";
  const TextRow rows[] = {
      {"from nothing", SString(), ""},
      {"from a null pointer", SString(static_cast<const char*>(nullptr)), ""},
      {"from an empty text", SString(""), ""},
      {"up to the zero byte", SString("ab\0cd"), "ab"},
      {"with the zero byte", SString("ab\0cd", 5), "ab\0cd"sv},
      {"of no bytes", SString("ab", 0), ""},
      {"from a view", SString("ab\0"sv), "ab\0"sv},
      {"substr: all", s.substr(0), "abcd"},
      {"substr: from", s.substr(2), "cd"},
      {"substr: from, count", s.substr(1, 2), "bc"},
      {"substr: count past the end", s.substr(3, 9), "d"},
      {"substr: no bytes", s.substr(1, 0), ""},
      {"substr: at the end", s.substr(4), ""},
      {"substr: past the end", s.substr(5, 1), ""},
      {"substr: no position", s.substr(npos, npos), ""},
      {"substr: of the empty string", SString().substr(0, 1), ""},
      {"string + string", s + SString("ef"), "abcdef"},
      {"string + text", s + "ef", "abcdef"},
      {"string + view", s + "e\0f"sv, "abcde\0f"sv},
      {"text + string", "xy" + s, "xyabcd"},
      {"string + byte", s + 'e', "abcde"},
      {"string + itself", s + s, "abcdabcd"},
      {"nothing + nothing", SString() + SString(), ""},
  };
  for (const TextRow& row : rows) {
    EXPECT_EQ(row.wanted, row.text.view()) << row.name;
    EXPECT_EQ(row.wanted.size(), row.text.size()) << row.name;
    EXPECT_EQ(row.wanted.empty(), row.text.empty()) << row.name;
    EXPECT_EQ('\0', row.text.c_str()[row.wanted.size()]) << row.name;
  }
}

struct CompareRow {
  const char* name;
  std::string_view a;
  std::string_view b;
  int wanted;  // its sign
};

constexpr CompareRow kCompareRows[] = {
    {"equal", "abc", "abc", 0},        {"both empty", "", "", 0},
    {"empty first", "", "a", -1},      {"a beginning", "ab", "abc", -1},
    {"a difference", "abd", "abc", 1}, {"bytes are unsigned", "\x7F", "\x80", -1},
    {"case matters", "A", "a", -1},    {"behind a zero byte", "a\0b"sv, "a\0c"sv, -1},
};

int sign(int number) {
  return (number > 0) - (number < 0);
}

TEST(SStringTest, Compares) {
  for (const CompareRow& row : kCompareRows) {
    SCOPED_TRACE(row.name);
    const SString a(row.a);
    const SString b(row.b);
    EXPECT_EQ(row.wanted, sign(a.compare(b)));
    EXPECT_EQ(-row.wanted, sign(b.compare(a)));
    EXPECT_EQ(row.wanted == 0, a == b);
    EXPECT_EQ(row.wanted < 0, a < b);
  }
  EXPECT_TRUE(SString("abc") == "abc");
  EXPECT_FALSE(SString("abc\0", 4) == "abc");
}

TEST(SStringTest, ReadsBytesOutsideAsZero) {
  const SString s = "ab";
  EXPECT_EQ('a', s[0]);
  EXPECT_EQ('b', s[1]);
  EXPECT_EQ('\0', s[2]);
  EXPECT_EQ('\0', s[npos]);
  EXPECT_EQ('b', s.back());
  EXPECT_EQ('\0', SString()[0]);
  EXPECT_EQ('\0', SString().back());
}

TEST(SStringTest, KnowsItsEnds) {
  const SString s = "abc";
  EXPECT_TRUE(s.startsWith("ab"));
  EXPECT_TRUE(s.startsWith(""));
  EXPECT_FALSE(s.startsWith("b"));
  EXPECT_FALSE(s.startsWith("abcd"));
  EXPECT_TRUE(s.endsWith("bc"));
  EXPECT_TRUE(s.endsWith(""));
  EXPECT_FALSE(s.endsWith("b"));
  EXPECT_FALSE(s.endsWith("xabc"));
}

TEST(SStringTest, SharesItsBufferUntilChanged) {
  SString first = "abc";
  SString second = first;
  SString third;
  third = second;
  EXPECT_TRUE(shareBuffer(first, second));
  EXPECT_TRUE(shareBuffer(first, third));
  EXPECT_TRUE(shareBuffer(first, first.substr(0))) << "the whole text is no new text";

  second += "d";
  EXPECT_FALSE(shareBuffer(first, second));
  EXPECT_TRUE(shareBuffer(first, third)) << "the others go on sharing";
  EXPECT_EQ("abc", str(first));
  EXPECT_EQ("abcd", str(second));

  third = second;
  second = SString();
  EXPECT_EQ("abcd", str(third)) << "the buffer outlives one of its owners";
}

TEST(SStringTest, KeepsItsBufferWhileThereIsRoom) {
  SString s = "abc";
  s.reserve(100);
  const char* before = s.c_str();
  s.append(97, 'x');
  EXPECT_EQ(before, s.c_str());
  EXPECT_EQ(100u, s.size());
  s.erase(3);
  EXPECT_EQ(before, s.c_str());
  EXPECT_EQ("abc", str(s));
}

TEST(SStringTest, MovesLeaveNoOwnerBehind) {
  SString source = "abc";
  const char* bytes = source.c_str();
  const SString moved = std::move(source);
  EXPECT_EQ(bytes, moved.c_str());
  EXPECT_EQ("abc", str(moved));

  SString assigned = "old";
  SString other = "new";
  assigned = std::move(other);
  EXPECT_EQ("new", str(assigned));
}

TEST(SStringTest, GrowsByAppending) {
  SString s;
  std::string wanted;
  for (int i = 0; i < 5000; ++i) {
    const char byte = static_cast<char>('a' + i % 26);
    s += byte;
    wanted += byte;
  }
  EXPECT_EQ(wanted, str(s));
}

}  // namespace
