#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <utility>

#include "support/Texts.h"
#include "util/GenericDeque.h"
#include "util/LauncherException.h"
#include "util/PtrDeque.h"
#include "util/StringDeque.h"
#include "util/StringPair.h"

namespace {

constexpr long kLargest = std::numeric_limits<long>::max();
constexpr long kSmallest = std::numeric_limits<long>::min();

// One step on a sequence that holds a, b, c; the entries afterwards joined by blanks.
struct StepRow {
  const char* name;
  char
      operation;  // i: insert "x", e: erase, s: set to "x", p: pop_back, c: clear, +: push_back "x"
  long index;
  const char* wanted;
};

constexpr StepRow kStepRows[] = {
    {"append", '+', 0, "a b c x"},
    {"insert in front", 'i', 0, "x a b c"},
    {"insert within", 'i', 1, "a x b c"},
    {"insert in front of the last", 'i', 2, "a b x c"},
    {"insert at the count does nothing", 'i', 3, "a b c"},
    {"insert past the count does nothing", 'i', 4, "a b c"},
    {"insert at the largest index does nothing", 'i', kLargest, "a b c"},
    {"insert at -1 appends", 'i', -1, "a b c x"},
    {"insert at -2 appends", 'i', -2, "a b c x"},
    {"insert at the smallest index appends", 'i', kSmallest, "a b c x"},
    {"erase the first", 'e', 0, "b c"},
    {"erase within", 'e', 1, "a c"},
    {"erase the last", 'e', 2, "a b"},
    {"erase at the count does nothing", 'e', 3, "a b c"},
    {"erase at -1 does nothing", 'e', -1, "a b c"},
    {"erase at the largest index does nothing", 'e', kLargest, "a b c"},
    {"erase at the smallest index does nothing", 'e', kSmallest, "a b c"},
    {"overwrite the first", 's', 0, "x b c"},
    {"overwrite the last", 's', 2, "a b x"},
    {"overwrite at the count does nothing", 's', 3, "a b c"},
    {"overwrite at -1 does nothing", 's', -1, "a b c"},
    {"remove the last", 'p', 0, "a b"},
    {"remove all", 'c', 0, ""},
};

std::string joined(const StringDeque& deque) {
  std::string text;
  for (long i = 0; i < deque.size(); ++i) {
    text += (i == 0 ? "" : " ") + test::str(deque.at(i));
  }
  return text;
}

StringDeque abc() {
  StringDeque deque;
  for (const char* text : {"a", "b", "c"}) {
    deque.push_back(text);
  }
  return deque;
}

TEST(StringDequeTest, Changes) {
  for (const StepRow& row : kStepRows) {
    SCOPED_TRACE(row.name);
    StringDeque deque = abc();
    switch (row.operation) {
      case '+':
        deque.push_back("x");
        break;
      case 'i':
        deque.insert(row.index, "x");
        break;
      case 'e':
        deque.erase(row.index);
        break;
      case 's':
        deque.set(row.index, "x");
        break;
      case 'p':
        deque.pop_back();
        break;
      default:
        deque.clear();
    }
    EXPECT_EQ(row.wanted, joined(deque));
  }
}

TEST(StringDequeTest, ReadsTheSharedEmptyStringOutside) {
  const StringDeque deque = abc();
  for (const long index : {3L, 4L, -1L, kLargest, kSmallest}) {
    EXPECT_EQ(&StringDeque::emptyString, &deque.at(index)) << index;
    EXPECT_EQ(&StringDeque::emptyString, &deque[index]) << index;
  }
  EXPECT_EQ(&StringDeque::emptyString, &StringDeque().at(0));
  EXPECT_EQ(&StringDeque::emptyString, &StringDeque().back());
  EXPECT_TRUE(StringDeque::emptyString.empty());
}

TEST(StringDequeTest, ReadsItsEntries) {
  const StringDeque deque = abc();
  EXPECT_EQ(3, deque.size());
  EXPECT_FALSE(deque.empty());
  EXPECT_STREQ("a", deque.at(0).c_str());
  EXPECT_STREQ("c", deque[2].c_str());
  EXPECT_STREQ("c", deque.back().c_str());
  EXPECT_EQ(0, StringDeque().size());
  EXPECT_TRUE(StringDeque().empty());
}

TEST(StringDequeTest, InsertsIntoTheEmptySequenceOnlyByAppending) {
  StringDeque deque;
  deque.insert(0, "x");
  EXPECT_EQ("", joined(deque));
  deque.insert(-1, "x");
  EXPECT_EQ("x", joined(deque));
}

TEST(StringDequeTest, RemovesNothingFromTheEmptySequence) {
  StringDeque deque;
  deque.pop_back();
  deque.erase(0);
  deque.eraseFirst("a");
  EXPECT_EQ(0, deque.size());
}

TEST(StringDequeTest, FindsByEquality) {
  StringDeque deque = abc();
  deque.push_back("b");
  EXPECT_TRUE(deque.contains("b"));
  EXPECT_FALSE(deque.contains("B"));
  EXPECT_FALSE(deque.contains(""));
  deque.eraseFirst("x");
  EXPECT_EQ("a b c b", joined(deque));
  deque.eraseFirst("b");
  EXPECT_EQ("a c b", joined(deque));
}

TEST(StringDequeTest, CopiesAreIndependent) {
  const StringDeque original = abc();
  StringDeque copy = original;
  copy.set(0, "x");
  copy.erase(2);
  EXPECT_EQ("a b c", joined(original));
  EXPECT_EQ("x b", joined(copy));
}

TEST(StringDequeTest, TakesAnEntryOfItsOwn) {
  StringDeque deque = abc();
  for (int i = 0; i < 100; ++i) {  // across several growths
    deque.push_back(deque.at(0));
  }
  EXPECT_EQ(103, deque.size());
  EXPECT_STREQ("a", deque.back().c_str());
}

TEST(GenericDequeTest, YieldsNoEntryOutside) {
  GenericDeque<int> deque;
  EXPECT_EQ(nullptr, deque.at(0));
  deque.push_back(7);
  ASSERT_NE(nullptr, deque.at(0));
  EXPECT_EQ(7, *deque.at(0));
  for (const long index : {1L, -1L, kLargest, kSmallest}) {
    EXPECT_EQ(nullptr, deque.at(index)) << index;
    EXPECT_EQ(nullptr, std::as_const(deque).at(index)) << index;
  }
}

TEST(GenericDequeTest, KeepsTheOrderAcrossGrowths) {
  GenericDeque<int> deque;
  for (int i = 0; i < 200; ++i) {
    deque.push_back(i);
  }
  for (int i = 0; i < 200; ++i) {
    EXPECT_EQ(i, *deque.at(i));
  }
  EXPECT_EQ(200, deque.size());
}

// --- sequences that own what their entries point to ---

struct Counted {
  Counted(int aNumber, int& aLiving) : number(aNumber), living(aLiving) { ++living; }
  ~Counted() { --living; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

  int number;
  int& living;
};

TEST(PtrDequeTest, DestroysItsElements) {
  int living = 0;
  {
    PtrDeque<Counted> deque;
    for (int i = 0; i < 5; ++i) {
      deque.push_back(std::make_unique<Counted>(i, living));
    }
    deque.insert(0, std::make_unique<Counted>(5, living));
    EXPECT_EQ(6, living);
    deque.insert(6, std::make_unique<Counted>(6, living));
    EXPECT_EQ(6, living) << "an element that found no place is destroyed";
    deque.erase(0);
    EXPECT_EQ(5, living);
    deque.erase(5);
    EXPECT_EQ(5, living);
    deque.pop_back();
    EXPECT_EQ(4, living);
  }
  EXPECT_EQ(0, living);
}

TEST(PtrDequeTest, YieldsNullOutside) {
  int living = 0;
  PtrDeque<Counted> deque;
  EXPECT_EQ(nullptr, deque.back());
  deque.push_back(std::make_unique<Counted>(1, living));
  deque.insert(-1, std::make_unique<Counted>(2, living));
  EXPECT_EQ(1, deque.at(0)->number);
  EXPECT_EQ(2, deque[1]->number);
  EXPECT_EQ(2, deque.back()->number);
  EXPECT_EQ(nullptr, deque.at(2));
  EXPECT_EQ(nullptr, deque[-1]);
  deque.clear();
  EXPECT_TRUE(deque.empty());
  EXPECT_EQ(0, living);
}

TEST(StringPairPtrDequeTest, HoldsKeysAndValues) {
  StringPairPtrDeque pairs;
  pairs.push_back(std::make_unique<StringPair>(StringPair{"key", "value"}));
  EXPECT_STREQ("key", pairs.at(0)->key.c_str());
  EXPECT_STREQ("value", pairs.at(0)->value.c_str());
}

TEST(LauncherExceptionTest, CarriesOneText) {
  const LauncherException cause("the cause");
  EXPECT_STREQ("the cause", cause.getMessage().c_str());
  EXPECT_STREQ("the cause", cause.what());
  EXPECT_STREQ("The step failed. the cause",
               LauncherException::prefixed("The step failed. ", cause).getMessage().c_str());
}

}  // namespace
