// What is kept of a text of any length.
#include "platform/KeptText.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

struct Row {
  const char* name;
  KeptText::Limits limits;
  std::vector<std::string> pieces;
  std::string text;
  std::string beginning;
  std::uint64_t leftOut;
};

const Row kRows[] = {
    {"nothing", {4, 4}, {}, "", "", 0},
    {"empty pieces", {4, 4}, {"", ""}, "", "", 0},
    {"without limits", {}, {"abc", "def"}, "abcdef", "abcdef", 0},
    {"the beginning alone", {4, 4}, {"abc"}, "abc", "abc", 0},
    {"the beginning is full", {4, 4}, {"abcd"}, "abcd", "abcd", 0},
    {"one more", {4, 4}, {"abcde"}, "abcde", "abcd", 0},
    {"both are full", {4, 4}, {"abcdefgh"}, "abcdefgh", "abcd", 0},
    {"one is left out", {4, 4}, {"abcdefghi"}, "abcd\n[1 bytes left out]\nfghi", "abcd", 1},
    {"byte by byte",
     {2, 3},
     {"a", "b", "c", "d", "e", "f", "g", "h"},
     "ab\n[3 bytes left out]\nfgh",
     "ab",
     3},
    {"pieces over both seams",
     {3, 3},
     {"ab", "cdef", "gh"},
     "abc\n[2 bytes left out]\nfgh",
     "abc",
     2},
    {"a piece longer than the end",
     {1, 2},
     {"a", "bc", "defghijk"},
     "a\n[8 bytes left out]\njk",
     "a",
     8},
    {"a piece around the ring", {0, 4}, {"abcd", "ef", "ghi"}, "[5 bytes left out]\nfghi", "", 5},
    {"the line begins a line", {2, 1}, {"a\n", "bcd"}, "a\n[2 bytes left out]\nd", "a\n", 2},
    {"no end", {3, 0}, {"abcdef"}, "abc\n[3 bytes left out]\n", "abc", 3},
    {"nothing at all is kept", {0, 0}, {"abc"}, "[3 bytes left out]\n", "", 3},
    {"any bytes",
     {2, 2},
     {std::string("\0\xff\0\xfe", 4)},
     std::string("\0\xff\0\xfe", 4),
     std::string("\0\xff", 2),
     0},
};

TEST(KeptTextTest, Rows) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    KeptText kept(row.limits);
    for (const std::string& piece : row.pieces) {
      kept.append(piece);
    }
    EXPECT_EQ(row.text, std::string(kept.text()));
    EXPECT_EQ(row.beginning, std::string(kept.beginning()));
    EXPECT_EQ(row.leftOut, kept.leftOut());
  }
}

// Whatever the pieces, what is kept is the beginning and the end of the whole.
TEST(KeptTextTest, AnySeams) {
  std::string whole;
  for (int i = 0; i < 500; ++i) {
    whole += static_cast<char>('a' + i % 26);
  }
  for (std::size_t step = 1; step < 40; ++step) {
    KeptText kept({17, 23});
    for (std::size_t at = 0; at < whole.size(); at += step) {
      kept.append(std::string_view(whole).substr(at, step));
    }
    EXPECT_EQ(whole.substr(0, 17) + "\n[460 bytes left out]\n" + whole.substr(477),
              std::string(kept.text()))
        << step;
  }
}

}  // namespace
