#include <gtest/gtest.h>

#include "fakes/FakeJVM.h"
#include "jvm/JVMFile.h"
#include "jvm/JVMMatch.h"
#include "jvm/VerifyClass.h"
#include "support/JVMSupport.h"
#include "support/TestAccess.h"

namespace {

using test::FakeJVM;
using test::sstr;
using test::str;
using Strings = std::vector<std::string>;

using Strategy = std::unique_ptr<JVMMatch> (JVMFile::*)(const VerifyClass&);
constexpr Strategy kPlatformHints = &JVMFile::verifyWithPlatformHints;
constexpr Strategy kPathHints = &JVMFile::verifyWithPathHints;
constexpr Strategy kPlatformPaths = &JVMFile::verifyWithPlatformJVMPaths;

// Texts of the rows: "DIR" stands for the folder of the launcher, which holds a right JVM "good",
// a wrong one "bad" and nothing else.
struct Row {
  const char* name;
  Strategy strategy;
  Strings hints = {};           // values of PLATFORM_HINT or PATH_HINT
  std::string variable = "";    // of VARIABLE, or PATH
  Strings wantedCandidates;     // the log lines that say which homes are tried, in order
  std::string wantedHome = "";  // of the match; empty: none
  bool wantedTemporary = false;
  std::string exe = "bin/java";
};

#define FROM_HINT(home) "Checking JVM at " home " which was resolved from platform hint VARIABLE"
#define FROM_PATH(home, entry) \
  "Checking JVM at " home " which was resolved from the platform JVM path " entry
#define TRIED(exe) "Verifying JVM at " exe

const Row kRows[] = {
    // Platform hints: variables with lists of homes.
    {.name = "no platform hint",
     .strategy = kPlatformHints,
     .variable = "DIR/good",
     .wantedCandidates = {}},
    {.name = "unset variable",
     .strategy = kPlatformHints,
     .hints = {"NOT_SET_ANYWHERE"},
     .variable = "DIR/good",
     .wantedCandidates = {}},
    {.name = "empty variable",
     .strategy = kPlatformHints,
     .hints = {"VARIABLE"},
     .wantedCandidates = {}},
    {.name = "empty hint",
     .strategy = kPlatformHints,
     .hints = {""},
     .variable = "DIR/good",
     .wantedCandidates = {}},
    {.name = "one home",
     .strategy = kPlatformHints,
     .hints = {"VARIABLE"},
     .variable = "DIR/good",
     .wantedCandidates = {FROM_HINT("DIR/good"), TRIED("DIR/good/bin/java")},
     .wantedHome = "DIR/good"},
    {.name = "one home with a separator",
     .strategy = kPlatformHints,
     .hints = {"VARIABLE"},
     .variable = "DIR/good/",
     .wantedCandidates = {FROM_HINT("DIR/good/"), TRIED("DIR/good/bin/java")},
     .wantedHome = "DIR/good/"},
    {.name = "second home",
     .strategy = kPlatformHints,
     .hints = {"VARIABLE"},
     .variable = "DIR/bad:DIR/good",
     .wantedCandidates = {FROM_HINT("DIR/bad"), TRIED("DIR/bad/bin/java"), FROM_HINT("DIR/good"),
                          TRIED("DIR/good/bin/java")},
     .wantedHome = "DIR/good"},
    {.name = "stops at the first match",
     .strategy = kPlatformHints,
     .hints = {"VARIABLE", "PATH"},
     .variable = "DIR/good:DIR/bad",
     .wantedCandidates = {FROM_HINT("DIR/good"), TRIED("DIR/good/bin/java")},
     .wantedHome = "DIR/good"},
    {.name = "empty piece between two homes",
     .strategy = kPlatformHints,
     .hints = {"VARIABLE"},
     .variable = "DIR/bad::DIR/none",
     .wantedCandidates = {FROM_HINT("DIR/bad"), TRIED("DIR/bad/bin/java"), FROM_HINT("DIR/none"),
                          TRIED("DIR/none/bin/java")}},
    {.name = "only separators",
     .strategy = kPlatformHints,
     .hints = {"VARIABLE"},
     .variable = "::",
     .wantedCandidates = {}},
    {.name = "second hint",
     .strategy = kPlatformHints,
     .hints = {"NOT_SET_ANYWHERE", "", "VARIABLE"},
     .variable = "DIR/good",
     .wantedCandidates = {FROM_HINT("DIR/good"), TRIED("DIR/good/bin/java")},
     .wantedHome = "DIR/good"},
    {.name = "the same hint twice",
     .strategy = kPlatformHints,
     .hints = {"VARIABLE", "VARIABLE"},
     .variable = "DIR/bad",
     .wantedCandidates = {FROM_HINT("DIR/bad"), TRIED("DIR/bad/bin/java"), FROM_HINT("DIR/bad"),
                          TRIED("DIR/bad/bin/java")}},
    {.name = "no executable named: homes are shown, none is tried",
     .strategy = kPlatformHints,
     .hints = {"VARIABLE"},
     .variable = "DIR/good",
     .wantedCandidates = {FROM_HINT("DIR/good")},
     .exe = ""},

    // Path hints: absolute ones under each partition, others beside the launcher.
    {.name = "no path hint", .strategy = kPathHints, .wantedCandidates = {}},
    {.name = "absolute",
     .strategy = kPathHints,
     .hints = {"DIR/good"},
     .wantedCandidates = {"Checking path hint DIR/good", TRIED("DIR/good/bin/java")},
     .wantedHome = "DIR/good"},
    {.name = "absolute with a separator",
     .strategy = kPathHints,
     .hints = {"DIR/good/"},
     .wantedCandidates = {"Checking path hint DIR/good/", TRIED("DIR/good/bin/java")},
     .wantedHome = "DIR/good/"},
    {.name = "absolute, no such folder",
     .strategy = kPathHints,
     .hints = {"/no/such/jdk"},
     .wantedCandidates = {"Checking path hint /no/such/jdk", TRIED("/no/such/jdk/bin/java")}},
    {.name = "the root alone",
     .strategy = kPathHints,
     .hints = {"/"},
     .wantedCandidates = {"Checking path hint /", TRIED("/bin/none")},
     .exe = "bin/none"},
    {.name = "two separators",
     .strategy = kPathHints,
     .hints = {"//no/jdk"},
     .wantedCandidates = {"Checking path hint //no/jdk", TRIED("//no/jdk/bin/java")}},
    {.name = "relative: beside the launcher, temporary",
     .strategy = kPathHints,
     .hints = {"good"},
     .wantedCandidates = {TRIED("DIR/good/bin/java")},
     .wantedHome = "DIR/good",
     .wantedTemporary = true},
    {.name = "relative with dots",
     .strategy = kPathHints,
     .hints = {"bad/../good"},
     .wantedCandidates = {TRIED("DIR/bad/../good/bin/java")},
     .wantedHome = "DIR/bad/../good",
     .wantedTemporary = true},
    {.name = "relative, wrong",
     .strategy = kPathHints,
     .hints = {"bad"},
     .wantedCandidates = {TRIED("DIR/bad/bin/java")}},
    {.name = "empty hint: the launcher's folder",
     .strategy = kPathHints,
     .hints = {""},
     .wantedCandidates = {TRIED("DIR/bin/java")}},
    {.name = "backslash begins no absolute hint",
     .strategy = kPathHints,
     .hints = {"\\good"},
     .wantedCandidates = {TRIED("DIR/\\good/bin/java")}},
    {.name = "in order until a match",
     .strategy = kPathHints,
     .hints = {"bad", "/no/jdk", "good", "DIR/good"},
     .wantedCandidates = {TRIED("DIR/bad/bin/java"), "Checking path hint /no/jdk",
                          TRIED("/no/jdk/bin/java"), TRIED("DIR/good/bin/java")},
     .wantedHome = "DIR/good",
     .wantedTemporary = true},
    {.name = "absolute before relative is not temporary",
     .strategy = kPathHints,
     .hints = {"DIR/good", "good"},
     .wantedCandidates = {"Checking path hint DIR/good", TRIED("DIR/good/bin/java")},
     .wantedHome = "DIR/good"},

    // PATH: folders that may be the executable's own.
    {.name = "empty PATH", .strategy = kPlatformPaths, .wantedCandidates = {}},
    {.name = "the executable's folder",
     .strategy = kPlatformPaths,
     .variable = "DIR/good/bin",
     .wantedCandidates = {FROM_PATH("DIR/good/", "DIR/good/bin"), TRIED("DIR/good/bin/java")},
     .wantedHome = "DIR/good/"},
    {.name = "the executable's folder with a separator",
     .strategy = kPlatformPaths,
     .variable = "DIR/good/bin/",
     .wantedCandidates = {FROM_PATH("DIR/good/", "DIR/good/bin/"), TRIED("DIR/good/bin/java")},
     .wantedHome = "DIR/good/"},
    {.name = "another folder is tried as it stands",
     .strategy = kPlatformPaths,
     .variable = "DIR/good",
     .wantedCandidates = {FROM_PATH("DIR/good/", "DIR/good"), TRIED("DIR/good/bin/java")},
     .wantedHome = "DIR/good/"},
    {.name = "a folder below the executable's",
     .strategy = kPlatformPaths,
     .variable = "DIR/good/bin/x",
     .wantedCandidates = {FROM_PATH("DIR/good/bin/x/", "DIR/good/bin/x"),
                          TRIED("DIR/good/bin/x/bin/java")}},
    {.name = "path-suffix-without-boundary",
     .strategy = kPlatformPaths,
     .variable = "DIR/xbin",
     .wantedCandidates = {FROM_PATH("DIR/x", "DIR/xbin"), TRIED("DIR/x/bin/java")}},
    {.name = "path-suffix-without-boundary: finds the shortened home",
     .strategy = kPlatformPaths,
     .variable = "DIR/goodbin",
     .wantedCandidates = {FROM_PATH("DIR/good", "DIR/goodbin"), TRIED("DIR/good/bin/java")},
     .wantedHome = "DIR/good"},
    {.name = "one letter short of the executable's folder",
     .strategy = kPlatformPaths,
     .variable = "DIR/good/in",
     .wantedCandidates = {FROM_PATH("DIR/good/in/", "DIR/good/in"), TRIED("DIR/good/in/bin/java")}},
    {.name = "case matters",
     .strategy = kPlatformPaths,
     .variable = "DIR/good/BIN",
     .wantedCandidates = {FROM_PATH("DIR/good/BIN/", "DIR/good/BIN"),
                          TRIED("DIR/good/BIN/bin/java")}},
    {.name = "the whole entry is the executable's folder",
     .strategy = kPlatformPaths,
     .variable = "bin",
     .wantedCandidates = {FROM_PATH("", "bin")}},
    {.name = "the executable's folder of the root",
     .strategy = kPlatformPaths,
     .variable = "/xbin",
     .wantedCandidates = {FROM_PATH("/", "/xbin"), TRIED("/xbin/java")},
     .exe = "xbin/java"},
    {.name = "empty entries are skipped",
     .strategy = kPlatformPaths,
     .variable = ":DIR/bad/bin::DIR/good/bin:",
     .wantedCandidates = {FROM_PATH("DIR/bad/", "DIR/bad/bin"), TRIED("DIR/bad/bin/java"),
                          FROM_PATH("DIR/good/", "DIR/good/bin"), TRIED("DIR/good/bin/java")},
     .wantedHome = "DIR/good/"},
    {.name = "stops at the first match",
     .strategy = kPlatformPaths,
     .variable = "DIR/good/bin:DIR/bad/bin",
     .wantedCandidates = {FROM_PATH("DIR/good/", "DIR/good/bin"), TRIED("DIR/good/bin/java")},
     .wantedHome = "DIR/good/"},
    {.name = "executable without a folder",
     .strategy = kPlatformPaths,
     .variable = "DIR/good/bin",
     .wantedCandidates = {FROM_PATH("DIR/good/bin", "DIR/good/bin"), TRIED("DIR/good/bin/java")},
     .wantedHome = "DIR/good/bin",
     .exe = "java"},
    {.name = "executable without a folder, separator",
     .strategy = kPlatformPaths,
     .variable = "DIR/good/bin/",
     .wantedCandidates = {FROM_PATH("DIR/good/bin/", "DIR/good/bin/"), TRIED("DIR/good/bin/java")},
     .wantedHome = "DIR/good/bin/",
     .exe = "java"},
    {.name = "executable whose only separator is its first byte",
     .strategy = kPlatformPaths,
     .variable = "DIR/good/bin",
     .wantedCandidates = {FROM_PATH("DIR/good/bin", "DIR/good/bin"), TRIED("DIR/good/bin//java")},
     .wantedHome = "DIR/good/bin",
     .exe = "/java"},
    {.name = "executable whose only separator is its first byte, separator",
     .strategy = kPlatformPaths,
     .variable = "DIR/good/bin/",
     .wantedCandidates = {FROM_PATH("DIR/good/bin", "DIR/good/bin/"), TRIED("DIR/good/bin//java")},
     .wantedHome = "DIR/good/bin",
     .exe = "/java"},
    {.name = "executable whose only separator is its first byte, root",
     .strategy = kPlatformPaths,
     .variable = "/",
     .wantedCandidates = {FROM_PATH("", "/")},
     .exe = "/java"},
    {.name = "executable two folders down",
     .strategy = kPlatformPaths,
     .variable = "DIR/jre/bin:DIR/good/bin",
     .wantedCandidates = {FROM_PATH("DIR/", "DIR/jre/bin"), TRIED("DIR/jre/bin/java"),
                          FROM_PATH("DIR/good/bin/", "DIR/good/bin"),
                          TRIED("DIR/good/bin/jre/bin/java")},
     .exe = "jre/bin/java"},
    {.name = "no executable named: entries are shown, none is tried",
     .strategy = kPlatformPaths,
     .variable = "DIR/good/bin",
     .wantedCandidates = {FROM_PATH("DIR/good/bin", "DIR/good/bin")},
     .exe = ""},
};

Strings candidates(const std::string& log) {
  return test::linesBeginning(log, {"Checking ", "Verifying JVM at "});
}

class HintsTest : public testing::Test {
 protected:
  HintsTest() {
    LauncherTestAccess::setLauncherFileName(m_dir / "setup");
    LauncherTestAccess::setPurpose(1);
    test::makeFakeJVM(m_dir / "good", FakeJVM::RightValues);
    test::makeFakeJVM(m_dir / "bad", FakeJVM::WrongValues);
  }

  std::string here(const std::string& text) const {
    return test::replaced(text, "DIR", m_dir.path());
  }
  std::string takeLog() { return test::replaced(m_log.take(), m_dir.path(), "DIR"); }

  void fillTags(TagFile& tags, const Row& row) const {
    test::addTags(tags, {{"DESC", {"Java 17"}},
                         {"JVM_EXE", {row.exe}},
                         {"JVM_PROPERTIES", {"java.version=17..."}}});
    for (const std::string& hint : row.hints) {
      tags.appendTagValue(row.strategy == kPathHints ? "PATH_HINT" : "PLATFORM_HINT",
                          sstr(here(hint)));
    }
  }

  test::TempDir m_dir;
  test::LogCapture m_log;
};

TEST_F(HintsTest, TriesItsCandidatesInOrder) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    TagFile tags;
    fillTags(tags, row);
    const bool usesPath = row.strategy == kPlatformPaths;
    const test::ScopedEnvironment variable("VARIABLE", here(row.variable).c_str());
    const test::ScopedEnvironment path("PATH", usesPath ? here(row.variable).c_str() : "/bin");
    JVMFile jvm(tags);
    const auto match = (jvm.*row.strategy)({"", "Verify"});
    EXPECT_EQ(row.wantedCandidates, candidates(takeLog()));
    ASSERT_EQ(!row.wantedHome.empty(), match != nullptr);
    if (match != nullptr) {
      EXPECT_EQ(here(row.wantedHome), str(match->getJVMHome()));
      EXPECT_EQ(row.wantedTemporary, match->isJVMTemporary());
    }
  }
}

TEST_F(HintsTest, UnsetPathHasNoEntries) {
  TagFile tags;
  test::addTags(tags, {{"JVM_EXE", {"bin/java"}}, {"JVM_PROPERTIES", {"a=b"}}});
  const test::ScopedEnvironment path("PATH", nullptr);
  EXPECT_EQ(nullptr, JVMFile(tags).verifyWithPlatformJVMPaths({"", ""}));
  EXPECT_EQ("Searching for  using platform specific JVM Path hints\n", takeLog());
}

// --- The opening line of each strategy, and the refusal ---

struct OpeningRow {
  const char* name;
  Strategy strategy;
  std::string wantedOpening;
};

const OpeningRow kOpenings[] = {
    {"platform hints", kPlatformHints, "Searching for Java 17 using platform hints\n"},
    {"path hints", kPathHints, "Searching for Java 17 using path hints\n"},
    {"PATH", kPlatformPaths, "Searching for Java 17 using platform specific JVM Path hints\n"},
};

TEST_F(HintsTest, SaysWhereItSearches) {
  const test::ScopedEnvironment path("PATH", "");
  for (const OpeningRow& row : kOpenings) {
    SCOPED_TRACE(row.name);
    TagFile tags;
    test::addTags(tags, {{"DESC", {"Java 17"}}, {"JVM_PROPERTIES", {"a=b"}}});
    JVMFile jvm(tags);
    EXPECT_EQ(nullptr, (jvm.*row.strategy)({"", ""}));
    EXPECT_EQ(row.wantedOpening, takeLog());
  }
}

TEST_F(HintsTest, CanceledTriesNoCandidate) {
  const test::ScopedEnvironment path("PATH", here("DIR/good/bin").c_str());
  const test::ScopedEnvironment variable("VARIABLE", here("DIR/good").c_str());
  for (const OpeningRow& row : kOpenings) {
    for (const bool isCanceled : {true, false}) {  // not canceled, each one matches
      SCOPED_TRACE(std::string(row.name) + (isCanceled ? ", canceled" : ""));
      TagFile tags;
      fillTags(tags,
               {"", row.strategy, {row.strategy == kPathHints ? "good" : "VARIABLE"}, "", {}, ""});
      JVMFile jvm(tags);
      PlatformTestAccess::setCanceled(isCanceled);
      const auto match = (jvm.*row.strategy)({"", "Verify"});
      PlatformTestAccess::setCanceled(false);
      EXPECT_EQ(isCanceled, match == nullptr);
      const std::string log = takeLog();
      EXPECT_EQ(row.wantedOpening, isCanceled ? log : log.substr(0, row.wantedOpening.size()));
    }
  }
  EXPECT_EQ(3u, test::callsOfFakeJVM(m_dir / "good").size());
}

TEST_F(HintsTest, NeedsRequirements) {
  const test::ScopedEnvironment path("PATH", here("DIR/good/bin").c_str());
  const test::ScopedEnvironment variable("VARIABLE", here("DIR/good").c_str());
  test::writeFile(m_dir / "any.jvm",
                  "JVM_EXE: bin/java\nPATH_HINT: good\nPLATFORM_HINT: VARIABLE\n");
  for (const OpeningRow& row : kOpenings) {
    SCOPED_TRACE(row.name);
    TagFile tags(sstr(m_dir / "any.jvm"));
    JVMFile jvm(tags);
    EXPECT_EQ(nullptr, (jvm.*row.strategy)({"", ""}));
    EXPECT_EQ(
        "WARNING: Unable to verify DIR/any.jvm because the JVM_PROPERTIES tag was not "
        "specified.\n",
        takeLog());
  }
}

TEST_F(HintsTest, LauncherWithoutFolderLooksInTheCurrentOne) {
  const test::ScopedCurrentDir current(m_dir.path());
  LauncherTestAccess::setOriginalLauncherFileName("setup");
  TagFile tags;
  fillTags(tags, {"", kPathHints, {"good"}, "", {}, ""});
  const auto match = JVMFile(tags).verifyWithPathHints({"", "Verify"});
  ASSERT_NE(nullptr, match);
  EXPECT_EQ("good", str(match->getJVMHome()));
}

}  // namespace
