#include "jvm/JVMMatch.h"

#include <gtest/gtest.h>

#include "jvm/JVMFile.h"
#include "jvm/UnverifiedJVMMatch.h"
#include "platform/PlatformImpl.h"
#include "support/JVMSupport.h"
#include "support/TestAccess.h"

namespace {

using test::sstr;
using test::str;
using Strings = std::vector<std::string>;

// --- What a scan gathers ---

TEST(UnverifiedJVMMatch, HoldsEachHomeOnce) {
  TagFile tags;
  JVMFile jvm(tags);
  JVMFile twin(tags);
  UnverifiedJVMMatch match(jvm);
  for (const char* home : {"/b", "/a", "/b", "/a/", "", "/a"}) {
    match.addJVMHome(home);
  }
  EXPECT_EQ((Strings{"/b", "/a", "/a/", ""}), test::toVector(match.getHomeDirs()));
  EXPECT_TRUE(match.equals(jvm));
  EXPECT_FALSE(match.equals(twin));  // the very object counts
}

TEST(UnverifiedJVMMatch, IsFoundByItsJVMFile) {
  TagFile tags;
  JVMFile first(tags);
  JVMFile second(tags);
  JVMFile third(tags);
  UnverifiedJVMMatchPtrDeque matches;
  matches.addMatch(first, "/nobody");
  EXPECT_EQ(0, matches.size());
  matches.push_back(std::make_unique<UnverifiedJVMMatch>(first));
  matches.push_back(std::make_unique<UnverifiedJVMMatch>(second));
  matches.addMatch(second, "/two");
  matches.addMatch(second, "/two");
  matches.addMatch(third, "/three");
  ASSERT_EQ(2, matches.size());
  EXPECT_EQ(Strings(), test::toVector(matches[0]->getHomeDirs()));
  EXPECT_EQ(Strings{"/two"}, test::toVector(matches[1]->getHomeDirs()));
  EXPECT_EQ(nullptr, matches.findMatch(third));
  matches.clear();
  EXPECT_EQ(nullptr, matches.findMatch(first));
  EXPECT_EQ(nullptr, matches.at(0));
}

// --- A match, written down ---

TEST(JVMMatch, WritesItsJVMFile) {
  const test::TempDir temp;
  PlatformImpl::setSystemTempDir(sstr(temp.path()));
  for (const bool temporary : {false, true}) {
    TagFile tags;
    test::addTags(tags, {{"DESC", {"J17"}}, {"JVM_HOME", {"/other"}}, {"PATH_HINT", {"x", "y"}}});
    JVMMatch match("/jdk/", tags);
    match.setJVMTemporary(temporary);
    const std::string path = str(match.writeNewJVMFile());
    EXPECT_EQ("DESC:  J17\nJVM_HOME:  /jdk/\nPATH_HINT:\n  x\n  y\n/:\nJVM_FILE:  " + path +
                  "\nJVM_TEMP:  " + (temporary ? "1\n" : "0\n"),
              test::readFile(path));
    EXPECT_EQ(temp.path() + "/cvj", path.substr(0, path.size() - 6));
    EXPECT_EQ(path, str(PlatformTestAccess::createdFiles().back()));
    EXPECT_EQ("/jdk/", str(tags.getTagValue("JVM_HOME", 0)));
  }
}

// --- Whether a search goes on ---

TEST(JVMMatch, EndsASearchAsACancelDoes) {
  TagFile tags;
  std::unique_ptr<JVMMatch> match;
  EXPECT_TRUE(mustTryNext(match));
  PlatformTestAccess::setCanceled(true);
  EXPECT_FALSE(mustTryNext(match));
  match = std::make_unique<JVMMatch>("/opt/java", tags);
  EXPECT_FALSE(mustTryNext(match));
  PlatformTestAccess::setCanceled(false);
  EXPECT_FALSE(mustTryNext(match));
}

}  // namespace
