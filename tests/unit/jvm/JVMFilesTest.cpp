#include "jvm/JVMFiles.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "archive/LauncherInputFiles.h"
#include "fakes/FakeDiskScan.h"
#include "fakes/FakeJVM.h"
#include "launcher/Launcher.h"
#include "support/JVMSupport.h"
#include "support/LauncherFiles.h"
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
  std::string userHome;
  Strings scanRoots;
  Strings wantedLog;       // the lines that tell the way of the search
  std::string wantedHome;  // of the match; empty: none
  std::string wantedDesc;  // of the jvm file that it matches
  std::string path = "";   // PATH
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
    {"no jvm file", {}, "", {"DIR"}, {kHints}, "", ""},
    {"no jvm file, user's home", {}, "DIR/a/jdk", {"DIR"}, {kUser + "DIR/a/jdk", kHints}, "", ""},
    {"user's home, first jvm file",
     {java("J17", kWants17), java("J1", kWants1)},
     "DIR/a/jdk",
     {},
     {kUser + "DIR/a/jdk", tried("DIR/a/jdk")},
     "DIR/a/jdk",
     "J17"},
    {"user's home, second jvm file; no hint is tried",
     {java("J17", kWants17, {{"PATH_HINT", {"DIR/a/jdk"}}}), java("J1", kWants1)},
     "DIR/c/jdk",
     {},
     {kUser + "DIR/c/jdk", tried("DIR/c/jdk"), tried("DIR/c/jdk")},
     "DIR/c/jdk",
     "J1"},
    {"user's home needs no requirements",
     {{{"DESC", {"any"}}, {"JVM_EXE", {"bin/java"}}}},
     "DIR/c/jdk",
     {},
     {kUser + "DIR/c/jdk", tried("DIR/c/jdk")},
     "DIR/c/jdk",
     "any"},
    {"user's home is wrong: hints",
     {java("J17", kWants17, {{"PATH_HINT", {"DIR/b/jdk"}}})},
     "DIR/none",
     {},
     {kUser + "DIR/none", tried("DIR/none"), kHints, "Searching for J17 using platform hints",
      "Searching for J17 using path hints", "Checking path hint DIR/b/jdk", tried("DIR/b/jdk")},
     "DIR/b/jdk",
     "J17"},
    {"platform hints before path hints",
     {java("J17", kWants17, {{"PATH_HINT", {"DIR/b/jdk"}}, {"PLATFORM_HINT", {"HINT_A"}}})},
     "",
     {},
     {kHints, "Searching for J17 using platform hints",
      "Checking JVM at DIR/a/jdk which was resolved from platform hint HINT_A", tried("DIR/a/jdk")},
     "DIR/a/jdk",
     "J17"},
    {"PATH at last",
     {java("J17", kWants17, {{"PLATFORM_HINT", {"HINT_C"}}, {"PATH_HINT", {"/no/jdk"}}})},
     "",
     {},
     {kHints, "Searching for J17 using platform hints",
      "Checking JVM at DIR/c/jdk which was resolved from platform hint HINT_C", tried("DIR/c/jdk"),
      "Searching for J17 using path hints", "Checking path hint /no/jdk", tried("/no/jdk"),
      "Searching for J17 using platform specific JVM Path hints",
      "Checking JVM at DIR/b/jdk/ which was resolved from the platform JVM path DIR/b/jdk/bin",
      tried("DIR/b/jdk")},
     "DIR/b/jdk/",
     "J17",
     "DIR/b/jdk/bin"},
    {"all hints of the first jvm file before those of the second",
     {java("J1", kWants1), java("J17", kWants17, {{"PATH_HINT", {"DIR/a/jdk"}}})},
     "",
     {},
     joined({{kHints},
             threeStrategies("J1"),
             {"Searching for J17 using platform hints", "Searching for J17 using path hints",
              "Checking path hint DIR/a/jdk", tried("DIR/a/jdk")}}),
     "DIR/a/jdk",
     "J17"},
    {"nothing found, no scan wanted",
     {java("J17", kWants17), java("J1", kWants1, {{"SEARCH_ALL", {"0"}}})},
     "",
     {"DIR/a"},
     joined({{kHints}, threeStrategies("J17"), threeStrategies("J1")}),
     "",
     ""},
    {"SEARCH_ALL ends the hints, also when they find",
     {java("J17", kWants17, {{"PATH_HINT", {"DIR/a/jdk"}}, {"SEARCH_ALL", {"1"}}}),
      java("J1", kWants1, {{"PATH_HINT", {"DIR/c/jdk"}}})},
     "",
     {"DIR/b"},
     {kHints, "Searching for J17 using platform hints", "Searching for J17 using path hints",
      "Checking path hint DIR/a/jdk", tried("DIR/a/jdk")},
     "DIR/a/jdk",
     "J17"},
    {"second of three wants the scan: the third's hints are never tried",
     {java("none", "java.version=9"), java("J17", kWants17, {{"SEARCH_ALL", {"1"}}}),
      java("J1", kWants1, {{"PATH_HINT", {"DIR/c/jdk"}}})},
     "",
     {"DIR/c"},
     joined({{kHints},
             threeStrategies("none"),
             threeStrategies("J17"),
             {kScan, tried("DIR/c/jdk"), kProcess, tried("DIR/c/jdk"), tried("DIR/c/jdk")}}),
     "DIR/c/jdk",
     "J1"},
    {"first-jvm-file-verified-at-once",
     {java("J17", kWants17, {{"SEARCH_ALL", {"1"}}}), java("J1", kWants1)},
     "",
     {"DIR/c", "DIR/a", "DIR/b"},
     joined({{kHints}, threeStrategies("J17"), {kScan, tried("DIR/c/jdk"), tried("DIR/a/jdk")}}),
     "DIR/a/jdk",
     "J17"},
    {"first-jvm-file-verified-at-once: not again afterwards",
     {java("J17", kWants17, {{"SEARCH_ALL", {"1"}}})},
     "",
     {"DIR/c", "DIR/tool"},
     joined({{kHints},
             threeStrategies("J17"),
             {kScan, tried("DIR/c/jdk"), tried("DIR/tool"), kProcess}}),
     "",
     ""},
    {"first-jvm-file-verified-at-once: each time it is found",
     {java("J17", kWants17, {{"SEARCH_ALL", {"1"}}})},
     "",
     {"DIR/c", "DIR/c"},
     joined({{kHints},
             threeStrategies("J17"),
             {kScan, tried("DIR/c/jdk"), tried("DIR/c/jdk"), kProcess}}),
     "",
     ""},
    {"candidates of the others are verified afterwards, each home once",
     {java("none", "java.version=9", {{"SEARCH_ALL", {"1"}}}), java("J17", kWants17)},
     "",
     {"DIR/c", "DIR/c", "DIR/b", "DIR/a"},
     joined({{kHints},
             threeStrategies("none"),
             {kScan, tried("DIR/c/jdk"), tried("DIR/c/jdk"), tried("DIR/b/jdk"), tried("DIR/a/jdk"),
              kProcess, tried("DIR/c/jdk"), tried("DIR/b/jdk")}}),
     "DIR/b/jdk",
     "J17"},
    {"scan finds nothing",
     {java("J17", kWants17, {{"SEARCH_ALL", {"1"}}})},
     "",
     {"DIR/empty"},
     joined({{kHints}, threeStrategies("J17"), {kScan, kProcess}}),
     "",
     ""},
    {"scan-suffix-without-boundary",
     {java("J9", "java.version=9", {{"SEARCH_ALL", {"1"}}}),
      {{"DESC", {"tail"}}, {"JVM_EXE", {"va"}}, {"JVM_PROPERTIES", {kWants17}}}},
     "",
     {"DIR/c"},
     joined({{kHints},
             threeStrategies("J9"),
             {kScan, tried("DIR/c/jdk"), kProcess, "Verifying JVM at DIR/c/jdk/bin/j/va"}}),
     "",
     ""},
};

bool tellsTheWay(const std::string& line) {
  for (const char* beginning : {"Checking ", "Verifying JVM at ", "Initiating ", "Searching for ",
                                "Beginning ", "Processing "}) {
    if (line.starts_with(beginning)) {
      return true;
    }
  }
  return false;
}

Strings wayOfTheSearch(const std::string& log) {
  Strings lines;
  std::istringstream stream(log);
  for (std::string line; std::getline(stream, line);) {
    if (tellsTheWay(line)) {
      lines.push_back(line);
    }
  }
  return lines;
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
    auto files = std::make_unique<JVMFiles>();
    for (const test::Tags& tags : rows) {
      m_tagFiles.push_back(std::make_unique<TagFile>());
      for (const auto& [name, values] : tags) {
        for (const std::string& value : values) {
          m_tagFiles.back()->appendTagValue(sstr(name), sstr(here(value)));
        }
      }
      files->addJVMFile(std::make_unique<JVMFile>(*m_tagFiles.back()));
    }
    files->setVerifyClass("\"v.jar\"", "Verify");
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
  bool stopAtFirst;
  Strings wantedMatches;
  Strings wantedNames;  // looked for on the disks
};

const SearchAllRow kSearchAlls[] = {
    {"no jvm file", {}, {"DIR"}, false, {}, {}},
    {"one jvm file", {java("J17", kWants17)}, {"DIR/a"}, false, {"DIR/a/jdk (J17)"}, {"bin/java"}},
    {"in the order found",
     {java("J17", kWants17)},
     {"DIR/b", "DIR/c", "DIR/a"},
     false,
     {"DIR/b/jdk (J17)", "DIR/a/jdk (J17)"},
     {"bin/java"}},
    {"one home for two jvm files",
     {java("J17", kWants17), java("again", kWants17)},
     {"DIR/a"},
     false,
     {"DIR/a/jdk (J17)", "DIR/a/jdk (again)"},
     {"bin/java"}},
    {"jvm file by jvm file",
     {java("J17", kWants17), java("J1", kWants1)},
     {"DIR/c", "DIR/a", "DIR/b"},
     false,
     {"DIR/a/jdk (J17)", "DIR/b/jdk (J17)", "DIR/c/jdk (J1)"},
     {"bin/java"}},
    {"the same home found twice",
     {java("J17", kWants17)},
     {"DIR/a", "DIR/a"},
     false,
     {"DIR/a/jdk (J17)"},
     {"bin/java"}},
    {"hints are not looked at",
     {java("J17", kWants17, {{"PATH_HINT", {"DIR/a/jdk"}}})},
     {"DIR/empty"},
     false,
     {},
     {"bin/java"}},
    {"distinct executables, in order",
     {java("J17", kWants17),
      {{"DESC", {"plain"}}, {"JVM_EXE", {"java"}}, {"JVM_PROPERTIES", {kWants17}}},
      java("J1", kWants1)},
     {"DIR/a"},
     false,
     {"DIR/a/jdk (J17)", "DIR/a/jdk/bin (plain)"},
     {"bin/java", "java"}},
    {"jvm file without executable finds nothing",
     {{{"DESC", {"none"}}, {"JVM_PROPERTIES", {kWants17}}}, java("J17", kWants17)},
     {"DIR/a"},
     false,
     {"DIR/a/jdk (J17)"},
     {"", "bin/java"}},
    {"search-all-keeps-scan-match", {java("J17", kWants17)}, {"DIR/a"}, true, {}, {"bin/java"}},
    {"first of the second jvm file",
     {java("none", "java.version=9"), java("J17", kWants17)},
     {"DIR/c", "DIR/b", "DIR/a"},
     true,
     {"DIR/b/jdk (J17)"},
     {"bin/java"}},
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

// --- Access by index ---

TEST_F(JVMFilesTest, CountsAndChecksIndexes) {
  setenv("LANG", "C", 1);
  JVMFiles none;
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

TEST_F(JVMFilesTest, MatchWritesItsJVMFile) {
  for (const bool temporary : {false, true}) {
    TagFile tags;
    test::addTags(tags, {{"DESC", {"J17"}}, {"JVM_HOME", {"/other"}}, {"PATH_HINT", {"x", "y"}}});
    JVMMatch match("/jdk/", tags);
    match.setJVMTemporary(temporary);
    const std::string path = str(match.writeNewJVMFile());
    EXPECT_EQ("DESC:  J17\nJVM_HOME:  /jdk/\nPATH_HINT:\n  x\n  y\n/:\nJVM_FILE:  " + path +
                  "\nJVM_TEMP:  " + (temporary ? "1\n" : "0\n"),
              test::readFile(path));
    EXPECT_EQ(m_temp.path() + "/cvj", path.substr(0, path.size() - 6));
    EXPECT_EQ(path, str(PlatformTestAccess::createdFiles().back()));
    EXPECT_EQ("/jdk/", str(tags.getTagValue("JVM_HOME", 0)));
  }
}

// --- The verify archive ---

class VerifyJarTest : public JVMFilesTest {
 protected:
  void embed(const std::vector<test::StoredFile>& files) {
    const std::string path = test::writeFile(m_dir / "setup", test::launcherFileBytes(files));
    LauncherTestAccess::setLauncherFileName(path);
    LauncherTestAccess::resetInputFiles();
    Launcher::getInputFiles().load(false);
    m_foldersBefore = folders().size();
  }
  static const StringDeque& folders() { return PlatformTestAccess::createdDirectories(); }
  long newFolders() const { return folders().size() - m_foldersBefore; }
  std::string newFolder(long index) const { return str(folders()[m_foldersBefore + index]); }

 private:
  long m_foldersBefore = 0;
};

TEST_F(VerifyJarTest, ExtractsEveryArchiveAndKeepsTheLast) {
  embed({{FILE_TYPE_VERIFY_JAR, 1, "one.jar", "first"},
         {FILE_TYPE_JAR, 2, "other.jar", "other"},
         {FILE_TYPE_VERIFY_JAR, 3, "two.jar", "second"}});
  JVMFiles files;
  SString classpath;
  SString verifyClass;
  files.writeVerifyJar(classpath, verifyClass);
  ASSERT_EQ(2, newFolders());
  EXPECT_EQ("first", test::readFile(newFolder(0) + "/one.jar"));
  EXPECT_EQ("second", test::readFile(newFolder(1) + "/two.jar"));
  EXPECT_EQ("\"" + newFolder(1) + "/two.jar\"", str(classpath));
  EXPECT_EQ("\"Verify\"", str(verifyClass));
  files.writeVerifyJar();
  EXPECT_EQ(2, newFolders());  // once in a run
}

TEST_F(VerifyJarTest, StaysEmptyWithoutAnArchive) {
  embed({{FILE_TYPE_JAR, 2, "other.jar", "other"}});
  JVMFiles files;
  SString classpath("before");
  SString verifyClass("before");
  files.writeVerifyJar(classpath, verifyClass);
  EXPECT_EQ("", str(classpath));
  EXPECT_EQ("", str(verifyClass));
  EXPECT_EQ(0, newFolders());
}

TEST_F(VerifyJarTest, ValuesThatWereGivenAreKept) {
  embed({{FILE_TYPE_VERIFY_JAR, 1, "one.jar", "first"}});
  struct Row {
    const char* classpath;
    const char* verifyClass;
  };
  for (const Row& row : {Row{"a.jar", "A"}, Row{"a.jar", ""}, Row{"", "A"}}) {
    JVMFiles files;
    files.setVerifyClass(row.classpath, row.verifyClass);
    SString classpath;
    SString verifyClass;
    files.writeVerifyJar(classpath, verifyClass);
    EXPECT_EQ(row.classpath, str(classpath));
    EXPECT_EQ(row.verifyClass, str(verifyClass));
  }
  EXPECT_EQ(0, newFolders());
}

}  // namespace
