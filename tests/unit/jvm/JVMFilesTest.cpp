#include "jvm/JVMFiles.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include "archive/FileIndex.h"
#include "fakes/FakeDiskScan.h"
#include "fakes/FakeJVM.h"
#include "support/JVMSupport.h"
#include "support/TestAccess.h"

namespace {

using test::FakeDiskScan;
using test::FakeJVM;
using test::sstr;
using test::str;
using Strings = std::vector<std::string>;

// --- The search ---

// In the rows "DIR" stands for a folder with these JVMs: DIR/a/jdk and DIR/b/jdk report version 17,
// DIR/c/jdk version 1.4.2; each has its executable as bin/java. DIR/tool/bin/java is no JVM.
constexpr const char* kWants17 = "java.version=17...";
constexpr const char* kWants1 = "java.version=1....";  // "1." and anything

struct SearchRow {
  const char* name;
  std::vector<test::Tags> jvmFiles;
  std::string userHome = "";
  Strings scanRoots = {};
  Strings wantedLog;            // the lines that tell the way of the search
  std::string wantedHome = "";  // of the match; empty: none
  std::string wantedDesc = "";  // of the jvm file that it matches
  std::string path = "";        // PATH
};

test::Tags java(const std::string& desc, const std::string& property, const test::Tags& more = {}) {
  test::Tags tags = {{"DESC", {desc}}, {"JVM_EXE", {"bin/java"}}, {"JVM_PROPERTIES", {property}}};
  tags.insert(tags.end(), more.begin(), more.end());
  return tags;
}

const std::string kUser = "Checking user specified Java home directory => ";
const std::string kHints = "Initiating JVM search based on hints...";
const std::string kScan = "Beginning exhaustive search";
const std::string kProcess = "Processing unverified matches.";

std::string tried(const std::string& home) {
  return "Verifying JVM at " + home + "/bin/java";
}
Strings threeStrategies(const std::string& desc) {
  return {"Searching for " + desc + " using platform hints",
          "Searching for " + desc + " using path hints",
          "Searching for " + desc + " using platform specific JVM Path hints"};
}

Strings joined(std::initializer_list<Strings> lists) {
  Strings all;
  for (const Strings& list : lists) {
    all.insert(all.end(), list.begin(), list.end());
  }
  return all;
}

const SearchRow kSearches[] = {
    {.name = "no jvm file", .jvmFiles = {}, .scanRoots = {"DIR"}, .wantedLog = {kHints}},
    {.name = "no jvm file, user's home",
     .jvmFiles = {},
     .userHome = "DIR/a/jdk",
     .scanRoots = {"DIR"},
     .wantedLog = {kUser + "DIR/a/jdk", kHints}},
    {.name = "user's home, first jvm file",
     .jvmFiles = {java("J17", kWants17), java("J1", kWants1)},
     .userHome = "DIR/a/jdk",
     .wantedLog = {kUser + "DIR/a/jdk", tried("DIR/a/jdk")},
     .wantedHome = "DIR/a/jdk",
     .wantedDesc = "J17"},
    {.name = "user's home, second jvm file; no hint is tried",
     .jvmFiles = {java("J17", kWants17, {{"PATH_HINT", {"DIR/a/jdk"}}}), java("J1", kWants1)},
     .userHome = "DIR/c/jdk",
     .wantedLog = {kUser + "DIR/c/jdk", tried("DIR/c/jdk"), tried("DIR/c/jdk")},
     .wantedHome = "DIR/c/jdk",
     .wantedDesc = "J1"},
    {.name = "user's home needs no requirements",
     .jvmFiles = {{{"DESC", {"any"}}, {"JVM_EXE", {"bin/java"}}}},
     .userHome = "DIR/c/jdk",
     .wantedLog = {kUser + "DIR/c/jdk", tried("DIR/c/jdk")},
     .wantedHome = "DIR/c/jdk",
     .wantedDesc = "any"},
    {.name = "user's home is wrong: hints",
     .jvmFiles = {java("J17", kWants17, {{"PATH_HINT", {"DIR/b/jdk"}}})},
     .userHome = "DIR/none",
     .wantedLog = {kUser + "DIR/none", tried("DIR/none"), kHints,
                   "Searching for J17 using platform hints", "Searching for J17 using path hints",
                   "Checking path hint DIR/b/jdk", tried("DIR/b/jdk")},
     .wantedHome = "DIR/b/jdk",
     .wantedDesc = "J17"},
    {.name = "platform hints before path hints",
     .jvmFiles = {java("J17", kWants17,
                       {{"PATH_HINT", {"DIR/b/jdk"}}, {"PLATFORM_HINT", {"HINT_A"}}})},
     .wantedLog = {kHints, "Searching for J17 using platform hints",
                   "Checking JVM at DIR/a/jdk which was resolved from platform hint HINT_A",
                   tried("DIR/a/jdk")},
     .wantedHome = "DIR/a/jdk",
     .wantedDesc = "J17"},
    {.name = "PATH at last",
     .jvmFiles = {java("J17", kWants17,
                       {{"PLATFORM_HINT", {"HINT_C"}}, {"PATH_HINT", {"/no/jdk"}}})},
     .wantedLog =
         {kHints, "Searching for J17 using platform hints",
          "Checking JVM at DIR/c/jdk which was resolved from platform hint HINT_C",
          tried("DIR/c/jdk"), "Searching for J17 using path hints", "Checking path hint /no/jdk",
          tried("/no/jdk"), "Searching for J17 using platform specific JVM Path hints",
          "Checking JVM at DIR/b/jdk/ which was resolved from the platform JVM path DIR/b/jdk/bin",
          tried("DIR/b/jdk")},
     .wantedHome = "DIR/b/jdk/",
     .wantedDesc = "J17",
     .path = "DIR/b/jdk/bin"},
    {.name = "all hints of the first jvm file before those of the second",
     .jvmFiles = {java("J1", kWants1), java("J17", kWants17, {{"PATH_HINT", {"DIR/a/jdk"}}})},
     .wantedLog =
         joined({{kHints},
                 threeStrategies("J1"),
                 {"Searching for J17 using platform hints", "Searching for J17 using path hints",
                  "Checking path hint DIR/a/jdk", tried("DIR/a/jdk")}}),
     .wantedHome = "DIR/a/jdk",
     .wantedDesc = "J17"},
    {.name = "nothing found, no scan wanted",
     .jvmFiles = {java("J17", kWants17), java("J1", kWants1, {{"SEARCH_ALL", {"0"}}})},
     .scanRoots = {"DIR/a"},
     .wantedLog = joined({{kHints}, threeStrategies("J17"), threeStrategies("J1")})},
    {.name = "SEARCH_ALL ends the hints, also when they find",
     .jvmFiles = {java("J17", kWants17, {{"PATH_HINT", {"DIR/a/jdk"}}, {"SEARCH_ALL", {"1"}}}),
                  java("J1", kWants1, {{"PATH_HINT", {"DIR/c/jdk"}}})},
     .scanRoots = {"DIR/b"},
     .wantedLog = {kHints, "Searching for J17 using platform hints",
                   "Searching for J17 using path hints", "Checking path hint DIR/a/jdk",
                   tried("DIR/a/jdk")},
     .wantedHome = "DIR/a/jdk",
     .wantedDesc = "J17"},
    {.name = "second of three wants the scan: the third's hints are never tried",
     .jvmFiles = {java("none", "java.version=9"), java("J17", kWants17, {{"SEARCH_ALL", {"1"}}}),
                  java("J1", kWants1, {{"PATH_HINT", {"DIR/c/jdk"}}})},
     .scanRoots = {"DIR/c"},
     .wantedLog =
         joined({{kHints},
                 threeStrategies("none"),
                 threeStrategies("J17"),
                 {kScan, tried("DIR/c/jdk"), kProcess, tried("DIR/c/jdk"), tried("DIR/c/jdk")}}),
     .wantedHome = "DIR/c/jdk",
     .wantedDesc = "J1"},
    {.name = "first-jvm-file-verified-at-once",
     .jvmFiles = {java("J17", kWants17, {{"SEARCH_ALL", {"1"}}}), java("J1", kWants1)},
     .scanRoots = {"DIR/c", "DIR/a", "DIR/b"},
     .wantedLog = joined(
         {{kHints}, threeStrategies("J17"), {kScan, tried("DIR/c/jdk"), tried("DIR/a/jdk")}}),
     .wantedHome = "DIR/a/jdk",
     .wantedDesc = "J17"},
    {.name = "first-jvm-file-verified-at-once: not again afterwards",
     .jvmFiles = {java("J17", kWants17, {{"SEARCH_ALL", {"1"}}})},
     .scanRoots = {"DIR/c", "DIR/tool"},
     .wantedLog = joined({{kHints},
                          threeStrategies("J17"),
                          {kScan, tried("DIR/c/jdk"), tried("DIR/tool"), kProcess}})},
    {.name = "first-jvm-file-verified-at-once: each time it is found",
     .jvmFiles = {java("J17", kWants17, {{"SEARCH_ALL", {"1"}}})},
     .scanRoots = {"DIR/c", "DIR/c"},
     .wantedLog = joined({{kHints},
                          threeStrategies("J17"),
                          {kScan, tried("DIR/c/jdk"), tried("DIR/c/jdk"), kProcess}})},
    {.name = "first-jvm-file-verified-at-once: for each name that one file matches",
     .jvmFiles = {java("J17", kWants17, {{"SEARCH_ALL", {"1"}}}),
                  {{"DESC", {"plain"}}, {"JVM_EXE", {"java"}}, {"JVM_PROPERTIES", {kWants1}}}},
     .scanRoots = {"DIR/c"},
     .wantedLog = joined({{kHints},
                          threeStrategies("J17"),
                          {kScan, tried("DIR/c/jdk"), tried("DIR/c/jdk"), kProcess,
                           "Verifying JVM at DIR/c/jdk/bin/java"}}),
     .wantedHome = "DIR/c/jdk/bin",
     .wantedDesc = "plain"},
    {.name = "candidates of the others are verified afterwards, each home once",
     .jvmFiles = {java("none", "java.version=9", {{"SEARCH_ALL", {"1"}}}), java("J17", kWants17)},
     .scanRoots = {"DIR/c", "DIR/c", "DIR/b", "DIR/a"},
     .wantedLog = joined({{kHints},
                          threeStrategies("none"),
                          {kScan, tried("DIR/c/jdk"), tried("DIR/c/jdk"), tried("DIR/b/jdk"),
                           tried("DIR/a/jdk"), kProcess, tried("DIR/c/jdk"), tried("DIR/b/jdk")}}),
     .wantedHome = "DIR/b/jdk",
     .wantedDesc = "J17"},
    {.name = "scan finds nothing",
     .jvmFiles = {java("J17", kWants17, {{"SEARCH_ALL", {"1"}}})},
     .scanRoots = {"DIR/empty"},
     .wantedLog = joined({{kHints}, threeStrategies("J17"), {kScan, kProcess}})},
    {.name = "scan-suffix-without-boundary",
     .jvmFiles = {java("J9", "java.version=9", {{"SEARCH_ALL", {"1"}}}),
                  {{"DESC", {"tail"}}, {"JVM_EXE", {"va"}}, {"JVM_PROPERTIES", {kWants17}}}},
     .scanRoots = {"DIR/c"},
     .wantedLog =
         joined({{kHints},
                 threeStrategies("J9"),
                 {kScan, tried("DIR/c/jdk"), kProcess, "Verifying JVM at DIR/c/jdk/bin/j/va"}})},
};

Strings wayOfTheSearch(const std::string& log) {
  return test::linesBeginning(log, {"Checking ", "Verifying JVM at ", "Initiating ",
                                    "Searching for ", "Beginning ", "Processing "});
}

class JVMFilesTest : public testing::Test {
 protected:
  JVMFilesTest() : m_path("PATH", "") {
    FakeDiskScan::reset();
    LauncherTestAccess::setLauncherFileName(m_dir / "setup");
    LauncherTestAccess::setPurpose(1);
    LauncherTestAccess::setUserJavaHome("");
    PlatformImpl::setSystemTempDir(sstr(m_temp.path()));
    test::makeFakeJVM(m_dir / "a/jdk", FakeJVM::RightValues);
    test::makeFakeJVM(m_dir / "b/jdk", FakeJVM::RightValues);
    test::makeFakeJVM(m_dir / "c/jdk", FakeJVM::WrongValues);
    test::makeFakeJVM(m_dir / "tool", FakeJVM::NoOutput);
    setenv("HINT_A", (m_dir / "a/jdk").c_str(), 1);
    setenv("HINT_C", (m_dir / "c/jdk").c_str(), 1);
  }

  std::string here(const std::string& text) const {
    return test::replaced(text, "DIR", m_dir.path());
  }
  std::string takeLog() { return test::replaced(m_log.take(), m_dir.path(), "DIR"); }

  void setScanRoots(const Strings& roots) const {
    for (const std::string& root : roots) {
      FakeDiskScan::roots.push_back(here(root));
    }
  }

  // The set of these jvm files; their tag files are kept by the test.
  std::unique_ptr<JVMFiles> makeFiles(const std::vector<test::Tags>& rows) {
    auto files = std::make_unique<JVMFiles>(m_noFiles);
    for (const test::Tags& tags : rows) {
      m_tagFiles.push_back(std::make_unique<TagFile>());
      for (const auto& [name, values] : tags) {
        for (const std::string& value : values) {
          m_tagFiles.back()->appendTagValue(sstr(name), sstr(here(value)));
        }
      }
      files->addJVMFile(std::make_unique<JVMFile>(*m_tagFiles.back()));
    }
    files->setVerifyClass({"\"v.jar\"", "Verify"});
    return files;
  }

  // "HOME (DESC)" for each match.
  Strings describe(const JVMMatchPtrDeque& matches) const {
    Strings texts;
    for (long i = 0; i < matches.size(); ++i) {
      const std::string home = str(matches[i]->getJVMHome());
      texts.push_back(test::replaced(home, m_dir.path(), "DIR") + " (" +
                      str(matches[i]->getTagFile().getTagValue("DESC", 0)) + ")");
    }
    return texts;
  }

  test::TempDir m_dir;
  test::TempDir m_temp;
  test::LogCapture m_log;
  test::ScopedEnvironment m_path;
  FileIndex m_noFiles;
  std::vector<std::unique_ptr<TagFile>> m_tagFiles;
};

TEST_F(JVMFilesTest, SearchFindsOne) {
  for (const SearchRow& row : kSearches) {
    SCOPED_TRACE(row.name);
    FakeDiskScan::reset();
    setScanRoots(row.scanRoots);
    LauncherTestAccess::setUserJavaHome(here(row.userHome));
    const test::ScopedEnvironment path("PATH", here(row.path).c_str());
    const auto files = makeFiles(row.jvmFiles);
    JVMMatchPtrDeque matches;
    files->search(matches);
    EXPECT_EQ(row.wantedLog, wayOfTheSearch(takeLog()));
    const Strings wanted =
        row.wantedHome.empty() ? Strings() : Strings{row.wantedHome + " (" + row.wantedDesc + ")"};
    EXPECT_EQ(wanted, describe(matches));
  }
}

TEST_F(JVMFilesTest, SearchCanBeRepeated) {
  const auto files = makeFiles({java("J17", kWants17, {{"SEARCH_ALL", {"1"}}})});
  setScanRoots({"DIR/a"});
  for (int i = 0; i < 2; ++i) {
    JVMMatchPtrDeque matches;
    files->search(matches);
    EXPECT_EQ(Strings{"DIR/a/jdk (J17)"}, describe(matches));
  }
}

// --- The search for all ---

struct SearchAllRow {
  const char* name;
  std::vector<test::Tags> jvmFiles;
  Strings scanRoots;
  bool stopAtFirst = false;
  Strings wantedMatches = {};
  Strings wantedNames;  // looked for on the disks
};

const SearchAllRow kSearchAlls[] = {
    {.name = "no jvm file", .jvmFiles = {}, .scanRoots = {"DIR"}, .wantedNames = {}},
    {.name = "one jvm file",
     .jvmFiles = {java("J17", kWants17)},
     .scanRoots = {"DIR/a"},
     .wantedMatches = {"DIR/a/jdk (J17)"},
     .wantedNames = {"bin/java"}},
    {.name = "in the order found",
     .jvmFiles = {java("J17", kWants17)},
     .scanRoots = {"DIR/b", "DIR/c", "DIR/a"},
     .wantedMatches = {"DIR/b/jdk (J17)", "DIR/a/jdk (J17)"},
     .wantedNames = {"bin/java"}},
    {.name = "one home for two jvm files",
     .jvmFiles = {java("J17", kWants17), java("again", kWants17)},
     .scanRoots = {"DIR/a"},
     .wantedMatches = {"DIR/a/jdk (J17)", "DIR/a/jdk (again)"},
     .wantedNames = {"bin/java"}},
    {.name = "jvm file by jvm file",
     .jvmFiles = {java("J17", kWants17), java("J1", kWants1)},
     .scanRoots = {"DIR/c", "DIR/a", "DIR/b"},
     .wantedMatches = {"DIR/a/jdk (J17)", "DIR/b/jdk (J17)", "DIR/c/jdk (J1)"},
     .wantedNames = {"bin/java"}},
    {.name = "the same home found twice",
     .jvmFiles = {java("J17", kWants17)},
     .scanRoots = {"DIR/a", "DIR/a"},
     .wantedMatches = {"DIR/a/jdk (J17)"},
     .wantedNames = {"bin/java"}},
    {.name = "hints are not looked at",
     .jvmFiles = {java("J17", kWants17, {{"PATH_HINT", {"DIR/a/jdk"}}})},
     .scanRoots = {"DIR/empty"},
     .wantedNames = {"bin/java"}},
    {.name = "distinct executables, in order",
     .jvmFiles = {java("J17", kWants17),
                  {{"DESC", {"plain"}}, {"JVM_EXE", {"java"}}, {"JVM_PROPERTIES", {kWants17}}},
                  java("J1", kWants1)},
     .scanRoots = {"DIR/a"},
     .wantedMatches = {"DIR/a/jdk (J17)", "DIR/a/jdk/bin (plain)"},
     .wantedNames = {"bin/java", "java"}},
    {.name = "jvm file without executable finds nothing",
     .jvmFiles = {{{"DESC", {"none"}}, {"JVM_PROPERTIES", {kWants17}}}, java("J17", kWants17)},
     .scanRoots = {"DIR/a"},
     .wantedMatches = {"DIR/a/jdk (J17)"},
     .wantedNames = {"", "bin/java"}},
    {.name = "search-all-keeps-scan-match",
     .jvmFiles = {java("J17", kWants17)},
     .scanRoots = {"DIR/a"},
     .stopAtFirst = true,
     .wantedNames = {"bin/java"}},
    {.name = "first of the second jvm file",
     .jvmFiles = {java("none", "java.version=9"), java("J17", kWants17)},
     .scanRoots = {"DIR/c", "DIR/b", "DIR/a"},
     .stopAtFirst = true,
     .wantedMatches = {"DIR/b/jdk (J17)"},
     .wantedNames = {"bin/java"}},
};

TEST_F(JVMFilesTest, SearchAllFindsAll) {
  for (const SearchAllRow& row : kSearchAlls) {
    SCOPED_TRACE(row.name);
    FakeDiskScan::reset();
    setScanRoots(row.scanRoots);
    const auto files = makeFiles(row.jvmFiles);
    JVMMatchPtrDeque matches;
    files->searchAll(matches, row.stopAtFirst);
    EXPECT_EQ(row.wantedMatches, describe(matches));
    EXPECT_EQ(row.wantedNames, FakeDiskScan::names);
  }
}

// What an earlier search found may be gone.
TEST_F(JVMFilesTest, SearchAllBeginsAnew) {
  const auto files = makeFiles({java("J17", kWants17)});
  for (const char* folder : {"a", "b"}) {
    FakeDiskScan::reset();
    setScanRoots({std::string("DIR/") + folder});
    JVMMatchPtrDeque matches;
    files->searchAll(matches, false);
    EXPECT_EQ(Strings{std::string("DIR/") + folder + "/jdk (J17)"}, describe(matches));
  }
}

TEST_F(JVMFilesTest, CancelingEndsTheVerification) {
  const auto files = makeFiles({java("J17", kWants17)});
  setScanRoots({"DIR/a", "DIR/b"});
  FakeDiskScan::atEnd = [] { PlatformTestAccess::setCanceled(true); };
  JVMMatchPtrDeque matches;
  files->searchAll(matches, false);
  PlatformTestAccess::setCanceled(false);
  EXPECT_EQ("Beginning exhaustive search\nProcessing unverified matches.\n\n", takeLog());
  EXPECT_EQ(0, matches.size());
}

TEST_F(JVMFilesTest, CancelingEndsTheScanForEachName) {
  const auto files =
      makeFiles({java("J17", kWants17, {{"SEARCH_ALL", {"1"}}}), java("J1", kWants1)});
  JVMMatchPtrDeque matches;
  files->search(matches);  // from here on the first jvm file is verified at once
  takeLog();
  for (const bool isCanceled : {true, false}) {
    PlatformTestAccess::setCanceled(isCanceled);
    EXPECT_EQ(!isCanceled, files->foundFile(sstr(m_dir / "a/jdk/bin/java")));
    PlatformTestAccess::setCanceled(false);
    EXPECT_EQ(isCanceled, takeLog().empty());
  }
}

TEST_F(JVMFilesTest, CancelingEndsTheSearch) {
  const auto files = makeFiles({java("J17", kWants17, {{"PATH_HINT", {"/no/where"}}})});
  PlatformTestAccess::setCanceled(true);
  JVMMatchPtrDeque matches;
  files->search(matches);
  PlatformTestAccess::setCanceled(false);
  EXPECT_EQ("Initiating JVM search based on hints...\n", takeLog());
  EXPECT_EQ(0, matches.size());
}

// The JVM itself cancels the run while it is verified for the first jvm file.
TEST_F(JVMFilesTest, CancelingEndsTheUsersHome) {
  const std::string home =
      test::makeFakeJVM(m_dir / "cancels", "kill -USR1 " + std::to_string(getpid()) +
                                               "; printf '1739021872\\n1.4.2\\n'");
  const auto oldHandler = signal(SIGUSR1, [](int) { PlatformTestAccess::setCanceled(true); });
  LauncherTestAccess::setUserJavaHome(home);
  const auto files = makeFiles({java("J17", kWants17), java("J1", kWants1)});
  JVMMatchPtrDeque matches;
  EXPECT_THROW(files->search(matches), Canceled);
  PlatformTestAccess::setCanceled(false);
  signal(SIGUSR1, oldHandler);
  const Strings wanted = {kUser + "DIR/cancels", tried("DIR/cancels")};
  EXPECT_EQ(wanted, wayOfTheSearch(takeLog()));
  EXPECT_EQ(1u, test::callsOfFakeJVM(home).size());
  EXPECT_EQ(0, matches.size());
}

TEST_F(JVMFilesTest, OnlyTheFirstJVMFileIsRunDuringTheScan) {
  const auto files = makeFiles({java("J1", kWants1), java("J17", kWants17)});
  setScanRoots({"DIR/a"});
  Strings callsAtEnd;
  FakeDiskScan::atEnd = [&] { callsAtEnd = test::callsOfFakeJVM(m_dir / "a/jdk"); };
  JVMMatchPtrDeque matches;
  files->searchAll(matches, false);
  EXPECT_EQ(Strings(), callsAtEnd);
  EXPECT_EQ(2u, test::callsOfFakeJVM(m_dir / "a/jdk").size());
}

// --- The listener of the scan ---

TEST_F(JVMFilesTest, FoundFileEndsTheScanWithAMatchOnly) {
  const auto files = makeFiles({java("J17", kWants17, {{"SEARCH_ALL", {"1"}}})});
  JVMMatchPtrDeque matches;
  files->search(matches);  // from here on the first match is enough
  EXPECT_FALSE(files->foundFile(sstr(m_dir / "c/jdk/bin/java")));
  EXPECT_FALSE(files->foundFile(sstr(m_dir / "a/jdk/bin/javac")));
  EXPECT_TRUE(files->foundFile(sstr(m_dir / "a/jdk/bin/java")));
  EXPECT_FALSE(files->foundFile(sstr(m_dir / "b/jdk/bin/java")));  // there is a match already
}

TEST_F(JVMFilesTest, FoundFileInTheRootHasNoHome) {
  const auto files = makeFiles({java("J17", kWants17, {{"SEARCH_ALL", {"1"}}})});
  JVMMatchPtrDeque matches;
  files->search(matches);  // from here on the first jvm file is verified at once
  takeLog();
  for (const char* path : {"/bin/java", "bin/java"}) {
    EXPECT_FALSE(files->foundFile(path));
    EXPECT_EQ("", takeLog());
  }
}

// --- Access by index ---

TEST_F(JVMFilesTest, CountsAndChecksIndexes) {
  setenv("LANG", "C", 1);
  const JVMFiles none(m_noFiles);
  EXPECT_EQ(0, none.getJVMFileCount());
  const auto files = makeFiles({java("first", kWants17), java("second", kWants17)});
  EXPECT_EQ(2, files->getJVMFileCount());
  const auto desc = [&](std::int32_t index) {
    return test::outcome([&] { return files->getJVMFile(index)->getDesc(); });
  };
  const std::string error =
      "LauncherException: " + str(PlatformImpl::getMessageText(MSG_INVALID_JVM_FILE_ID));
  EXPECT_EQ(error, desc(-1));
  EXPECT_EQ("first", desc(0));
  EXPECT_EQ("second", desc(1));
  EXPECT_EQ(error, desc(2));
  EXPECT_EQ(error, desc(2147483647));
}

}  // namespace
