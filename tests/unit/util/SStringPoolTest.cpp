#include "util/SStringPool.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

std::string str(const SString& text) {
  return std::string(text.view());
}

TEST(SStringPoolTest, MakesTextsOfAnyLength) {
  SStringPool pool;
  std::vector<SString> made;
  std::vector<std::string> wanted;
  for (const std::size_t length : std::initializer_list<std::size_t>{
           0, 1, 2, 3, 4, 5, 255, 256, 511, 512, 4095, 4096, 4097, 70000}) {
    for (int round = 0; round < 3; ++round) {
      wanted.emplace_back(length, static_cast<char>('a' + round));
      made.push_back(pool.make(wanted.back()));
    }
  }
  for (std::size_t i = 0; i < made.size(); ++i) {
    EXPECT_EQ(wanted[i], str(made[i])) << i;
    EXPECT_EQ('\0', made[i].c_str()[wanted[i].size()]) << i;
  }
}

TEST(SStringPoolTest, KeepsZeroBytes) {
  SStringPool pool;
  EXPECT_EQ(std::string("a\0b", 3), str(pool.make(std::string_view("a\0b", 3))));
}

TEST(SStringPoolTest, StringsOutliveThePool) {
  auto pool = std::make_unique<SStringPool>();
  std::vector<SString> strings;
  for (int i = 0; i < 5000; ++i) {  // several slabs
    strings.push_back(pool->make("string " + std::to_string(i)));
  }
  pool.reset();
  const SString first = strings.front();
  const SString last = strings.back();
  strings.clear();
  EXPECT_EQ("string 0", str(first));
  EXPECT_EQ("string 4999", str(last));
}

TEST(SStringPoolTest, ThePoolOutlivesItsStrings) {
  SStringPool pool;
  for (int i = 0; i < 5000; ++i) {
    EXPECT_EQ("gone at once", str(pool.make("gone at once")));
  }
}

struct ChangeRow {
  const char* name;
  void (*change)(SString&);
  const char* wanted;
};

constexpr ChangeRow kChangeRows[] = {
    {"append", [](SString& s) { s += "d"; }, "abcd"},
    {"append bytes", [](SString& s) { s.append(2, 'x'); }, "abcxx"},
    {"append itself", [](SString& s) { s.append(s); }, "abcabc"},
    {"insert a part of itself", [](SString& s) { s.insert(0, s.view().substr(1)); }, "bcabc"},
    {"erase", [](SString& s) { s.erase(1, 1); }, "ac"},
    {"replace in place", [](SString& s) { s.replace(1, 1, "x"); }, "axc"},
    {"assign", [](SString& s) { s.assign("x"); }, "x"},
    {"clear", [](SString& s) { s.clear(); }, ""},
    {"reserve", [](SString& s) { s.reserve(2); }, "abc"},
    {"move away and back",
     [](SString& s) {
       SString other = std::move(s);
       s = std::move(other);
     },
     "abc"},
};

TEST(SStringPoolTest, StringsChangeAlone) {
  SStringPool pool;
  for (const ChangeRow& row : kChangeRows) {
    const SString before = pool.make("before");
    SString changed = pool.make("abc");
    const SString behind = pool.make("behind");
    const SString copy = changed;
    row.change(changed);
    EXPECT_EQ(row.wanted, str(changed)) << row.name;
    EXPECT_EQ("abc", str(copy)) << row.name;
    EXPECT_EQ("before", str(before)) << row.name;
    EXPECT_EQ("behind", str(behind)) << row.name;
  }
}

TEST(SStringPoolTest, StringsWithOneOwnerChangeAlone) {
  SStringPool pool;
  for (const ChangeRow& row : kChangeRows) {
    SString changed = pool.make("abc");
    const SString behind = pool.make("behind");
    row.change(changed);
    EXPECT_EQ(row.wanted, str(changed)) << row.name;
    EXPECT_EQ("behind", str(behind)) << row.name;
  }
}

TEST(SStringPoolTest, CopiesShareTheirBytes) {
  SStringPool pool;
  const SString first = pool.make("abc");
  const SString second = first;
  EXPECT_EQ(first.c_str(), second.c_str());
}

}  // namespace
