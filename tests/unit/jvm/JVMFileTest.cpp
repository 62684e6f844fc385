#include "jvm/JVMFile.h"

#include <gtest/gtest.h>

#include <functional>

#include "jvm/JVMFilePtrDeque.h"
#include "support/JVMSupport.h"

namespace {

using test::sstr;
using test::str;

struct MacroRow {
  const char* name;
  test::Tags tags;
  std::string text;
  std::string wanted;
};

const MacroRow kMacros[] = {
    {"no macro", {}, "plain text", "plain text"},
    {"a tag of the jvm file", {{"JVM_EXE", {"bin/java"}}}, "/jdk/@JVM_EXE@ -x", "/jdk/bin/java -x"},
    {"a tag of the author's own", {{"My Tag", {"mine"}}}, "[@My Tag@]", "[mine]"},
    {"tag names are case-sensitive", {{"A", {"1"}}}, "[@a@]", "[]"},
    {"unknown tag disappears", {}, "x@NOT_THERE@y", "xy"},
    {"empty value", {{"A", {""}}}, "x@A@y", "xy"},
    {"first value only", {{"PATH_HINT", {"one", "two"}}}, "@PATH_HINT@", "one"},
    {"value with a macro", {{"A", {"<@B@>"}}, {"B", {"b"}}}, "@A@", "<b>"},
    {"doubled delimiter at the end", {}, "user@@", "user@"},
    {"jvm-home-backslash", {{"JVM_HOME", {"/jdk\\"}}}, "@JVM_HOME@", "/jdk"},
    {"jvm-home-backslash: only one of two", {{"JVM_HOME", {"/jdk\\\\"}}}, "@JVM_HOME@", "/jdk\\"},
    {"jvm-home-backslash: alone", {{"JVM_HOME", {"\\"}}}, "[@JVM_HOME@]", "[]"},
    {"jvm-home-backslash: inside", {{"JVM_HOME", {"/j\\k"}}}, "@JVM_HOME@", "/j\\k"},
    {"JVM_HOME keeps a slash", {{"JVM_HOME", {"/jdk/"}}}, "@JVM_HOME@", "/jdk/"},
    {"JVM_HOME keeps two slashes", {{"JVM_HOME", {"/jdk//"}}}, "@JVM_HOME@", "/jdk//"},
    {"another tag keeps its backslash", {{"HOME", {"/jdk\\"}}}, "@HOME@", "/jdk\\"},
    {"a longer name keeps its backslash", {{"JVM_HOME2", {"/jdk\\"}}}, "@JVM_HOME2@", "/jdk\\"},
};

TEST(JVMFile, ResolvesMacros) {
  for (const MacroRow& row : kMacros) {
    SCOPED_TRACE(row.name);
    TagFile tags;
    test::addTags(tags, row.tags);
    EXPECT_EQ(row.wanted, str(JVMFile(tags).resolve(sstr(row.text))));
  }
}

// What the launcher found out means nothing but itself; what an author wrote is read again.
struct OwnRow {
  const char* name;
  std::function<void(TagFile&)> edit;
  const char* text;
  const char* wanted;
};

const OwnRow kOwnRows[] = {
    {"home of an author", [](TagFile&) {}, "@JVM_HOME@", "a@b"},
    {"home under test", [](TagFile& f) { f.setOwnValue("JVM_HOME", "@B@"); }, "@JVM_HOME@", "@B@"},
    {"home of a match", [](TagFile& f) { f.setDynamicJVMTags("@B@", "/t@B@", true); },
     "@JVM_HOME@ @JVM_FILE@ @JVM_TEMP@", "@B@ /t@B@ 1"},
    {"home in a file that the launcher wrote",
     [](TagFile& f) {
       f.setTagValue("JVM_HOME", "@B@");
       f.setTagValue("JVM_FILE", "@B@");
     },
     "@JVM_HOME@@JVM_FILE@", "@B@@B@"},
    {"home in a tag", [](TagFile& f) { f.setOwnValue("JVM_HOME", "@B@"); }, "@LIB@", "@B@/lib b"},
    {"written over",
     [](TagFile& f) {
       f.setOwnValue("JVM_HOME", "@B@");
       f.setTagValue("JVM_HOME", "@B@");
     },
     "@JVM_HOME@", "b"},
};

TEST(JVMFile, ReadsNoMacrosInWhatTheLauncherFound) {
  for (const OwnRow& row : kOwnRows) {
    SCOPED_TRACE(row.name);
    TagFile tags;
    test::addTags(tags, {{"JVM_HOME", {"a@@b"}}, {"B", {"b"}}, {"LIB", {"@JVM_HOME@/lib @B@"}}});
    row.edit(tags);
    EXPECT_EQ(row.wanted, str(JVMFile(tags).resolve(row.text)));
  }
}

struct SearchAllRow {
  const char* name;
  test::Tags tags;
  bool wanted;
};

const SearchAllRow kSearchAll[] = {
    {"absent", {}, false},
    {"0", {{"SEARCH_ALL", {"0"}}}, false},
    {"1", {{"SEARCH_ALL", {"1"}}}, true},
    {"another number", {{"SEARCH_ALL", {"-7"}}}, true},
    {"a word is the default", {{"SEARCH_ALL", {"true"}}}, false},
    {"empty", {{"SEARCH_ALL", {""}}}, false},
    {"first value decides", {{"SEARCH_ALL", {"0", "1"}}}, false},
};

TEST(JVMFile, SaysWhetherItWantsTheScan) {
  for (const SearchAllRow& row : kSearchAll) {
    SCOPED_TRACE(row.name);
    TagFile tags;
    test::addTags(tags, row.tags);
    EXPECT_EQ(row.wanted, JVMFile(tags).isSearchAll());
  }
}

TEST(JVMFile, ReadsFirstValues) {
  TagFile tags;
  JVMFile jvm(tags);
  EXPECT_EQ("", str(jvm.getDesc()));
  EXPECT_EQ("", str(jvm.getJVMExe()));
  test::addTags(tags, {{"DESC", {"Java 17", "more"}}, {"JVM_EXE", {"bin/java", "jre/bin/java"}}});
  EXPECT_EQ("Java 17", str(jvm.getDesc()));
  EXPECT_EQ("bin/java", str(jvm.getJVMExe()));
  EXPECT_EQ(&tags, &jvm.getTagFile());
}

class Witness : public JVMFile {
 public:
  Witness(TagFile& tagFile, int& destroyed) : JVMFile(tagFile), m_destroyed(destroyed) {}
  ~Witness() override { ++m_destroyed; }
  Witness(const Witness&) = delete;
  Witness& operator=(const Witness&) = delete;

 private:
  int& m_destroyed;
};

TEST(JVMFilePtrDeque, DestroysWhatItOwns) {
  TagFile tags;
  tags.setTagValue("DESC", "still there");
  int ownedGone = 0;
  int otherGone = 0;
  Witness other(tags, otherGone);
  {
    JVMFilePtrDeque deque;
    deque.push_back(new Witness(tags, ownedGone), true);
    deque.push_back(&other, false);
    deque.push_back(nullptr, true);
    EXPECT_EQ(3, deque.size());
    EXPECT_EQ(&other, deque[1]);
    EXPECT_EQ(nullptr, deque.back());
    EXPECT_EQ(nullptr, deque.at(3));
    EXPECT_EQ(nullptr, deque.at(-1));
  }
  EXPECT_EQ(1, ownedGone);
  EXPECT_EQ(0, otherGone);
  EXPECT_EQ("still there", str(tags.getTagValue("DESC", 0)));
}

TEST(JVMFilePtrDeque, InsertsInFront) {
  TagFile tags;
  JVMFile first(tags);
  JVMFile second(tags);
  JVMFile last(tags);
  JVMFilePtrDeque deque;
  deque.push_back(&second, false);
  deque.insert(0, &first, false);
  deque.insert(-1, &last, false);
  deque.insert(3, &first, false);  // the count itself: nothing happens
  ASSERT_EQ(3, deque.size());
  EXPECT_EQ(&first, deque[0]);
  EXPECT_EQ(&second, deque[1]);
  EXPECT_EQ(&last, deque[2]);
}

}  // namespace
