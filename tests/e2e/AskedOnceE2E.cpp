// Each Java is started once for a question, and nothing but the number of starts tells.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <ostream>

#include "e2e/LauncherTest.h"

namespace fs = std::filesystem;

namespace e2e {
namespace {

struct Row {
  std::string name;
  std::string way = "";               // of the stand-in
  std::vector<std::string> homes;     // in PATH_HINT of each jvm file
  std::vector<std::string> jvmFiles;  // their other tags
  int starts = 0;
  std::string hasty = "";  // not empty: with limits that no test has to wait for
};

void PrintTo(const Row& row, std::ostream* out) {
  *out << row.name;
}

const std::string kSeventeen = "JVM_PROPERTIES: java.version = 17...\n";
const std::string kEighteen = "JVM_PROPERTIES: java.version = 18...\n";
const std::string kNineteen = "JVM_PROPERTIES: java.version = 19...\n";
const std::string kTwoValues = "JVM_PROPERTIES:\njava.version = 18...\njava.vendor = x\n/:\n";

// How many dots there are, and rows of them, depends on how fast the output comes.
std::string withoutProgress(std::string out) {
  std::erase_if(out, [](char byte) { return byte == '.' || byte == '\n'; });
  return out;
}

class AskedOnce : public LauncherTest {
 protected:
  AskedOnce() { setEnv("PATH", dir("none")); }

  // A home with the compiled stand-in, and ways to it:
  //   jdk     the home itself           link    a link to the home
  //   exe     a home whose bin/java is a link           hard    one where it is a hard link
  //   copy    a copy of the file
  //   script  a home whose bin/java is a script that becomes the stand-in
  void makeHomes(const std::string& way) {
    fs::create_directories(dir("jdk/bin"));
    fs::copy_file(CORVANE_STAND_IN_JAVA, java());
    test::writeFile(dir("jdk/way"), way + "\n");
    fs::create_symlink("jdk", dir("link"));
    for (const char* home : {"exe", "hard", "copy"}) {
      fs::create_directories(dir(std::string(home) + "/bin"));
      fs::copy_file(dir("jdk/way"), dir(std::string(home) + "/way"));
    }
    fs::create_symlink(java(), dir("exe/bin/java"));
    fs::create_hard_link(java(), dir("hard/bin/java"));
    fs::copy_file(java(), dir("copy/bin/java"));
    test::writeScript(dir("script/bin/java"), "#!/bin/sh\nexec '" + java() + "' \"$@\"\n");
  }
  // In place of those that are there, and of the embedded files.
  void makeHomesAnew(const std::string& way) {
    for (const char* home : {"jdk", "link", "exe", "hard", "copy", "script"}) {
      fs::remove_all(dir(home));
    }
    forgetFiles();
    makeHomes(way);
  }
  std::string java() const { return dir("jdk/bin/java"); }

  // As a program that may look at its name.
  void makeOtherKind() {
    std::string bytes = test::readFile(java());
    for (std::size_t at = bytes.find("JLI_Launch"); at != std::string::npos;
         at = bytes.find("JLI_Launch", at)) {
      bytes.replace(at, 10, "XLI_Launch");
    }
    test::writeFile(java(), bytes);
  }

  void embedSearch(const std::vector<std::string>& homes, const std::vector<std::string>& tags) {
    std::string hints = "PATH_HINT:\n";
    for (const std::string& home : homes) {
      hints += dir(home) + "\n";
    }
    int id = 10;
    for (const std::string& more : tags) {
      embed(FILE_TYPE_JVM, id, "jvm" + std::to_string(id) + ".jvm",
            "DESC: Java\nJVM_EXE: bin/java\nCLASSPATH: \"-cp \"\nCLASSPATH_SEPARATOR: \":\"\n" +
                hints + "/:\n" + more);
      ++id;
    }
    embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "");
    embedInstructions({"INITIALIZE_UI", "FIND_JVM 1 0"});
  }

  int starts() const {
    int count = 0;
    for (const char* home : {"jdk", "hard", "copy"}) {
      const std::string file = dir(home) + "/starts";
      count += fs::exists(file) ? test::countOf("\n", test::readFile(file)) : 0;
    }
    return count;
  }
};

const Row kRows[] = {
    {.name = "five jvm files",
     .homes = {"jdk"},
     .jvmFiles = {kEighteen, kNineteen, kEighteen, kNineteen, kSeventeen},
     .starts = 1},
    {.name = "three names", .homes = {"jdk", "link", "exe"}, .jvmFiles = {kEighteen}, .starts = 1},
    {.name = "three names and four jvm files",
     .homes = {"link", "exe", "jdk"},
     .jvmFiles = {kEighteen, kNineteen, kEighteen, kNineteen},
     .starts = 1},
    {.name = "other properties",
     .homes = {"jdk"},
     .jvmFiles = {kEighteen, kTwoValues, kEighteen, kTwoValues},
     .starts = 2},
    {.name = "other required arguments",
     .homes = {"jdk"},
     .jvmFiles = {kEighteen, kEighteen + "REQ_JAVA_ARGS: -Xint\n", kNineteen},
     .starts = 2},
    {.name = "an environment of its own, from then on",
     .homes = {"jdk"},
     .jvmFiles = {kEighteen, kNineteen + "SET_ENV_FOR_WIZARD: A=1\n", kEighteen},
     .starts = 2},
    {.name = "another class path",
     .homes = {"jdk"},
     .jvmFiles = {kEighteen, kNineteen + "JVM_CLASSPATH: x.jar\n"},
     .starts = 2},
    {.name = "what the shell expands is always run",
     .homes = {"jdk"},
     .jvmFiles = {kEighteen + "REQ_JAVA_ARGS: -Dx=$HOME\n",
                  kEighteen + "REQ_JAVA_ARGS: -Dx=$HOME\n"},
     .starts = 2},
    {.name = "what the shell writes is always written",
     .homes = {"jdk"},
     .jvmFiles = {kEighteen + "REQ_JAVA_ARGS: 2>/dev/null\n",
                  kEighteen + "REQ_JAVA_ARGS: 2>/dev/null\n"},
     .starts = 2},
    {.name = "hard links have parts of their own",
     .homes = {"jdk", "hard"},
     .jvmFiles = {kEighteen, kNineteen},
     .starts = 2},
    {.name = "a copy is another program",
     .homes = {"jdk", "copy"},
     .jvmFiles = {kEighteen, kNineteen},
     .starts = 2},
    {.name = "scripts are always run",
     .homes = {"script"},
     .jvmFiles = {kEighteen, kNineteen, kEighteen},
     .starts = 3},
    {.name = "one that shows its name",
     .way = "shows its name",
     .homes = {"jdk", "link"},
     .jvmFiles = {kEighteen, kNineteen},
     .starts = 2},
    {.name = "one that shows JAVA_HOME",
     .way = "shows JAVA_HOME",
     .homes = {"jdk", "link"},
     .jvmFiles = {kEighteen, kNineteen},
     .starts = 2},
    {.name = "one that fails, under each name",
     .way = "ends with 1",
     .homes = {"jdk", "link"},
     .jvmFiles = {kEighteen, kNineteen},
     .starts = 2},
    {.name = "one that is too old for the class",
     .way = "is too old, 1",
     .homes = {"jdk", "link", "exe"},
     .jvmFiles = {kEighteen, kNineteen},
     .starts = 1},
    {.name = "one that is too old for the class, and shows its name",
     .way = "is too old and shows its name",
     .homes = {"jdk", "link"},
     .jvmFiles = {kEighteen, kNineteen},
     .starts = 2},
    {.name = "one that says on its output that it is too old",
     .way = "is too old for all to see",
     .homes = {"jdk", "link"},
     .jvmFiles = {kEighteen, kNineteen},
     .starts = 2},
    {.name = "one that is too old by another status",
     .way = "is too old, 2",
     .homes = {"jdk", "link"},
     .jvmFiles = {kEighteen, kNineteen},
     .starts = 2},
    {.name = "the last status that is not the shell's",
     .way = "ends with 125",
     .homes = {"jdk"},
     .jvmFiles = {kEighteen, kNineteen},
     .starts = 1},
    {.name = "the status of a program that cannot be run",
     .way = "ends with 126",
     .homes = {"jdk"},
     .jvmFiles = {kEighteen, kNineteen},
     .starts = 2},
    {.name = "the status of a program that is not there",
     .way = "ends with 127",
     .homes = {"jdk"},
     .jvmFiles = {kEighteen, kNineteen},
     .starts = 2},
    {.name = "one that is ended by a signal",
     .way = "dies",
     .homes = {"jdk"},
     .jvmFiles = {kEighteen, kNineteen},
     .starts = 2},
    {.name = "one that takes too long",
     .way = "stays",
     .homes = {"jdk"},
     .jvmFiles = {kEighteen, kNineteen},
     .starts = 2,
     .hasty = "yes"},
    {.name = "one that is cut short, as somebody keeps its output open",
     .way = "leaves somebody",
     .homes = {"jdk"},
     .jvmFiles = {kEighteen, kNineteen},
     .starts = 2,
     .hasty = "yes"},
    {.name = "an answer in several chunks",
     .way = "says 9000",
     .homes = {"jdk", "link"},
     .jvmFiles = {kEighteen, kNineteen, kSeventeen},
     .starts = 1},
    // With a line's end, the magic line and the version.
    {.name = "64 KiB",
     .way = "says " + std::to_string((64 << 10) - 1 - 11 - 7),
     .homes = {"jdk"},
     .jvmFiles = {kEighteen, kNineteen},
     .starts = 1},
    {.name = "more than 64 KiB",
     .way = "says " + std::to_string((64 << 10) - 11 - 7),
     .homes = {"jdk"},
     .jvmFiles = {kEighteen, kNineteen},
     .starts = 2},
    {.name = "more than 1 MiB, of which the answer is cut off",
     .way = "says " + std::to_string(1 << 20),
     .homes = {"jdk"},
     .jvmFiles = {kEighteen, kNineteen},
     .starts = 2},
};

class AskedOnceRow : public AskedOnce, public testing::WithParamInterface<Row> {};

TEST_P(AskedOnceRow, Starts) {
  const Row& row = GetParam();
  makeHomes(row.way);
  if (!row.hasty.empty()) {
    setStub(CORVANE_STUB_HASTY);
  }
  setPurpose(0);
  embedSearch(row.homes, row.jvmFiles);
  EXPECT_EQ(0, run().status);
  EXPECT_EQ(row.starts, starts());
}

INSTANTIATE_TEST_SUITE_P(Rows, AskedOnceRow, testing::ValuesIn(kRows),
                         [](const auto& row) { return std::to_string(row.index); });

// A script that becomes the same program is run each time: the launcher's words are the same.
TEST_F(AskedOnce, NothingElseTells) {
  for (const char* way : {"", "says 9000", "ends with 1", "is too old, 1"}) {
    SCOPED_TRACE(way);
    makeHomesAnew(way);
    const std::vector<std::string> tags = {kEighteen, kNineteen, kTwoValues, kSeventeen};
    Result results[2];
    for (Result& result : results) {
      forgetFiles();
      embedSearch({"jdk", "link"}, tags);
      pack();
      result = run();
      fs::remove(logFile());
      result.log = normalised(result.log, scratch());
      test::writeScript(java(), "#!/bin/sh\nexec '" + dir("copy/bin/java") + "' \"$@\"\n");
    }
    EXPECT_EQ(results[1].log, results[0].log);
    EXPECT_EQ(withoutProgress(results[1].out), withoutProgress(results[0].out));
    const bool isGood = std::string(way) != "is too old, 1";
    EXPECT_EQ(isGood, results[0].log.find("Found matching JVM") != std::string::npos);
  }
}

// 9,000 bytes are three chunks or, on a busy machine, more; the repetitions show as many as the
// start.
TEST_F(AskedOnce, TheProgressIsThatOfTheStart) {
  makeHomes("says 9000");
  embedSearch({"jdk"}, {kEighteen, kNineteen, kEighteen});
  const std::string out = run().out;
  const std::string progress = out.substr(out.find("Machine...") + 10);
  const auto dots = std::count(progress.begin(), progress.end(), '.');
  EXPECT_EQ(0, dots % 3);
  EXPECT_LE(6 + 3, dots / 3);
  EXPECT_EQ(1, starts());
}

// By its name it finds the same folder through a link to its home, but not through one to itself.
TEST_F(AskedOnce, AProgramThatMayLookAtItsNameIsAskedUnderEachName) {
  makeHomes("");
  makeOtherKind();
  embedSearch({"jdk", "link", "exe"}, {kEighteen, kNineteen});
  run();
  EXPECT_EQ(2, starts());
}

// Nobody says of it, as of the packed one, that it prints properties and nothing else.
TEST_F(AskedOnce, AClassOfTheInputFileIsAskedOnceUnderEachName) {
  const std::vector<std::string> homes = {"jdk", "link"};
  for (int names = 1; names <= 2; ++names) {
    SCOPED_TRACE(names);
    makeHomesAnew("");
    embedSearch({homes.begin(), homes.begin() + names}, {kEighteen, kNineteen, kEighteen});
    pack();
    const std::string input = test::writeFile(
        dir("input"),
        "VERIFY_CLASSPATH: \"\"\"x.jar\"\"\"\nVERIFY_CLASS_NAME: Mine\nACTION: SEARCH\n");
    run({"-cv:in", input});
    EXPECT_EQ(names, starts());
  }
}

// By a hint the home is DIR/jdk, by PATH it is DIR/jdk/, twice.
TEST_F(AskedOnce, AHomeFromPathHasASlashAtItsEnd) {
  struct SlashRow {
    const char* way;
    bool isOpenJDKs;
    int starts;
  };
  const SlashRow rows[] = {
      {"", true, 1}, {"", false, 1}, {"shows JAVA_HOME", true, 2}, {"ends with 1", true, 2}};
  for (const SlashRow& row : rows) {
    SCOPED_TRACE(row.way);
    makeHomesAnew(row.way);
    if (!row.isOpenJDKs) {
      makeOtherKind();
    }
    setEnv("PATH", dir("jdk/bin") + ":" + dir("jdk/bin/"));
    embedSearch({"jdk"}, {kEighteen});
    pack();
    run();
    EXPECT_EQ(row.starts, starts());
  }
}

// DIR/jdk with bin/java and DIR/jdk/bin with java: the same words, but for JAVA_HOME.
TEST_F(AskedOnce, OneFileOfTwoHomesIsAskedForEachUnlessItIsOfOpenJDK) {
  for (const bool isOpenJDKs : {true, false}) {
    SCOPED_TRACE(isOpenJDKs);
    makeHomesAnew("");
    if (!isOpenJDKs) {
      makeOtherKind();
    }
    embedSearch({"jdk"}, {kEighteen});
    embed(FILE_TYPE_JVM, 20, "flat.jvm",
          "DESC: Java\nJVM_EXE: java\nCLASSPATH: \"-cp \"\nCLASSPATH_SEPARATOR: \":\"\n"
          "PATH_HINT: " +
              dir("jdk/bin") + "\n" + kNineteen);
    pack();
    run();
    EXPECT_EQ(isOpenJDKs ? 1 : 2, starts());
  }
}

// Nothing but the file's time tells of the change.
TEST_F(AskedOnce, AChangedProgramIsAskedAgain) {
  makeHomes("");
  test::writeScript(dir("toucher/bin/java"),
                    "#!/bin/sh\n/usr/bin/touch -d 2001-02-03 '" + java() + "'\n");
  embedSearch({"jdk", "toucher"}, {kEighteen, kNineteen});
  run();
  EXPECT_EQ(2, starts());
}

// An installer may have changed a Java without touching its program.
TEST_F(AskedOnce, AfterAnotherCommandItIsAskedAgain) {
  makeHomes("");
  embedSearch({"jdk"}, {kEighteen, kSeventeen});
  embedLaunchScript();
  forgetFiles(FILE_TYPE_INSTRUCTIONS);
  embedInstructions({"FIND_JVM 0 0", "FIND_JVM 0 0", "LAUNCH @S2@ 0", "FIND_JVM 0 0"});
  run();
  EXPECT_EQ(3, starts());  // the wizard is the second
}

TEST_F(AskedOnce, AfterAnInstallerItIsAskedAgain) {
  makeHomes("");
  embedSearch({"jdk"}, {kEighteen, kSeventeen});
  embed(FILE_TYPE_JVM_INSTALLER, 5, "installer", "#!/bin/sh\necho 'X: y' >jvm\n");
  forgetFiles(FILE_TYPE_INSTRUCTIONS);
  embedInstructions({"FIND_JVM 0 0", "FIND_JVM 0 0", "INSTALL_JVM 0", "FIND_JVM 0 0"});
  run();
  EXPECT_EQ(2, starts());
}

}  // namespace
}  // namespace e2e
