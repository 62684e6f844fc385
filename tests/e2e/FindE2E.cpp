// Finding a JVM: the strategies in their order, verification, and the scan of the disks.
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <regex>
#include <set>
#include <sstream>

#include "e2e/LauncherTest.h"
#include "e2e/ScanFixture.h"
#include "support/Restrictions.h"

namespace fs = std::filesystem;

namespace e2e {
namespace {

// The places that were verified, in order, one a line.
std::string triedPlaces(const std::string& log, const std::string& scratch) {
  const std::string verifying = "Verifying JVM at ";
  std::string places;
  for (std::size_t at = log.find(verifying); at != std::string::npos;
       at = log.find(verifying, at + 1)) {
    places += log.substr(at + verifying.size(), log.find('\n', at) - at - verifying.size()) + "\n";
  }
  return normalised(places, scratch);
}

std::string lineInFrontOf(const std::string& line, const std::string& text) {
  const std::size_t end = text.find("\n" + line + "\n");
  const std::size_t begin = text.rfind('\n', end - 1) + 1;
  return text.substr(begin, end - begin);
}

class Find : public LauncherTest {
 protected:
  void embedFind() {
    embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "");
    embedInstructions(
        {"FIND_JVM 0 1", "JMP0 @N1@ none", "GOTO end", ":none", "ILAUNCH 0 0", ":end"});
  }
};

// As the sample's jvm files and launch script do it.
TEST_F(Find, ArgumentsForTheVerificationAlone) {
  const std::string verifyArgs = "VERIFY_ARGS: \"-Xint \"\n";
  for (const bool hasThem : {true, false}) {
    SCOPED_TRACE(hasThem);
    forgetFiles();
    embed(FILE_TYPE_JVM, 10, "a.jvm",
          "JVM_EXE: bin/java\nJVM_PROPERTIES: java.version = 17...\nCLASSPATH_SEPARATOR: :\n"
          "PATH_HINT: " +
              makeJVM("java", "17.0.1") + "\nREQ_JAVA_ARGS: -ea\n" +
              (hasThem ? verifyArgs + "CLASSPATH: \"@VERIFY_ARGS@-cp \"\n"
                       : "CLASSPATH: \"-cp \"\n"));
    embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "");
    embed(
        FILE_TYPE_LAUNCH_SCRIPT, 2, "setup.lsc",
        "COMMAND: exec \"@JVM_HOME@/@JVM_EXE@\" %IF_EXISTS%(\"VERIFY_ARGS\",\"@\")%CP%(\"a.jar\") "
        "%RUNTIME_JAVAARGS%() Wizard\n");
    embedInstructions({"FIND_JVM 0 0", "LAUNCH @S2@ 0"});
    pack();
    const std::string log = normalised(run().log, scratch());
    const std::string asked = hasThem ? " -Xint -cp " : " -cp ";
    EXPECT_NE(std::string::npos,
              log.find("command: \"DIR/jvms/java/bin/java\"" + asked +
                       "\"DIR/temp/cvj#/verify.jar\"  -ea \"Verify\" java.version in working"));
    EXPECT_NE(
        std::string::npos,
        log.find("command: exec \"DIR/jvms/java/bin/java\" -cp a.jar  -ea Wizard in working"));
    std::filesystem::remove(logFile());
  }
}

TEST_F(Find, StrategiesInOrder) {
  makeJVM("old", "1.8.0");
  const std::string good = makeJVM("good", "17.0.2");
  setEnv("HINT", dir("jvms/none") + "::" + dir("jvms/old"));
  setEnv("PATH", dir("jvms/old/bin") + "::" + good + "/bin/:/usr/bin:/bin");
  embedJVM("PLATFORM_HINT:\nHINT\nUNSET_HINT\n/:\nPATH_HINT:\n" + dir("jvms/absent") +
           "\njre/here\n/:\n");
  embedFind();
  const Result result = run();
  EXPECT_EQ(0, result.status);
  EXPECT_EQ(
      "DIR/jvms/none/bin/java\n"
      "DIR/jvms/old/bin/java\n"
      "DIR/jvms/absent/bin/java\n"
      "DIR/app/jre/here/bin/java\n"
      "DIR/jvms/old/bin/java\n"
      "DIR/jvms/good/bin/java\n",
      triedPlaces(result.log, scratch()));
  EXPECT_NE(std::string::npos, result.log.find("Matching JVM home is " + good + "/\n"));
}

TEST_F(Find, TheUsersHomeComesFirstAndIsTriedForEachJvmFile) {
  const std::string good = makeJVM("good", "17.0.2");
  const std::string old = makeJVM("old", "1.8.0");
  setEnv("HINT", good);
  embedJVM("PLATFORM_HINT: HINT\n");
  embed(FILE_TYPE_JVM, 20, "java8.jvm",
        "DESC: Java 8\nJVM_EXE: bin/java\nJVM_PROPERTIES: java.version=1.8...\nCLASSPATH: -cp\n");
  embedFind();
  const Result result = run({"-cv:javahome", old});
  EXPECT_EQ("DIR/jvms/old/bin/java\nDIR/jvms/old/bin/java\n", triedPlaces(result.log, scratch()));
  EXPECT_NE(std::string::npos,
            result.log.find("Checking user specified Java home directory => " + old + "\n"));
  EXPECT_EQ(std::string::npos, result.log.find("Initiating JVM search based on hints..."));
}

// The verify command runs in the launcher's folder; the home is meant from the user's.
TEST_F(Find, ARelativeUsersHomeIsMeantFromTheUsersFolder) {
  makeJVM("good", "17.0.2");
  embedJVM("");
  embedFind();
  const Result result = run({"-cv:javahome", "../jvms/good"});
  EXPECT_EQ("DIR/current/../jvms/good/bin/java\n", triedPlaces(result.log, scratch()));
  EXPECT_NE(std::string::npos,
            result.log.find("Checking user specified Java home directory => ../jvms/good\n"));
  EXPECT_NE(std::string::npos,
            result.log.find("Matching JVM home is " + currentDir() + "/../jvms/good\n"));
}

TEST_F(Find, AUsersHomeThatDoesNotFitFallsBackToTheHints) {
  const std::string good = makeJVM("good", "17.0.2");
  setEnv("HINT", good);
  embedJVM("PLATFORM_HINT: HINT\n");
  embedFind();
  const Result result = run({"-cv:javahome", dir("jvms/none")});
  EXPECT_EQ("DIR/jvms/none/bin/java\nDIR/jvms/good/bin/java\n", triedPlaces(result.log, scratch()));
}

TEST_F(Find, ARelativeHintMarksTheJvmAsTemporary) {
  makeJVM("../app/jre", "17.0.2");
  embedJVM("PATH_HINT: jre\n");
  embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "");
  embed(FILE_TYPE_LAUNCH_SCRIPT, 2, "l",
        "DESC: Sample\nCOMMAND: echo @JVM_TEMP@ @JVM_HOME@ >#RECORD#\n");
  embedInstructions({"FIND_JVM 0 1", "LAUNCH @S2@ 0"});
  setEnv("RECORD", dir("record.txt"));
  EXPECT_EQ(0, run().status);
  EXPECT_EQ("1 " + dir("app/jre") + "\n", test::readFile(dir("record.txt")));
}

TEST_F(Find, JvmsThatMisbehave) {
  struct Row {
    const char* name;
    const char* script;  // behind "#!/bin/sh"; null: no file at all
    bool found;
  };
  const Row rows[] = {
      {"right values", "printf '1739021872\\n17.1\\n'", true},
      {"wrong values", "printf '1739021872\\n16.1\\n'", false},
      {"banner first", "printf 'Welcome\\n\\n1739021872\\n17.1\\n'", true},
      {"no magic line", "printf '17.1\\n'", false},
      {"magic with a blank behind", "printf '1739021872 \\n17.1\\n'", false},
      {"magic with a blank in front", "printf ' 1739021872\\n17.1\\n'", false},
      {"CRLF", "printf '1739021872\\r\\n17.1\\r\\n'", true},
      {"no newline at the end", "printf '1739021872\\n17.1'", true},
      {"exit 1 behind right lines", "printf '1739021872\\n17.1\\n'; exit 1", true},
      {"right lines on standard error", "printf '1739021872\\n17.1\\n' >&2", false},
      {"nothing behind the magic", "echo 1739021872", true},
      {"says nothing", "exit 0", false},
      {"killed", "kill -9 $$", false},
      {"much output first",
       "head -c 1000000 /dev/zero | tr '\\0' '\\n'; printf '1739021872\\n17\\n'", true},
      {"too much output first",
       "head -c 2000000 /dev/zero | tr '\\0' '\\n'; printf '1739021872\\n17\\n'", false},
      {"too much output behind", "printf '1739021872\\n17\\n'; head -c 3000000 /dev/zero >&2",
       true},
  };
  embedJVM("PLATFORM_HINT: HINT\n");
  embedFind();
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    fs::remove(logFile());
    test::writeScript(dir("jvms/x/bin/java"), "#!/bin/sh\n" + std::string(row.script) + "\n");
    setEnv("HINT", dir("jvms/x"));
    const Result result = run();
    EXPECT_EQ(row.found ? 0 : 255, result.status);
    EXPECT_EQ(row.found, result.log.find("Found matching JVM at ") != std::string::npos);
  }
}

TEST_F(Find, WhatIsNoProgram) {
  struct Row {
    const char* name;
    std::function<void(const std::string&)> make;
  };
  const Row rows[] = {
      {"missing", [](const std::string&) {}},
      {"not executable", [](const std::string& java) { test::writeFile(java, "#!/bin/sh\n"); }},
      {"a folder", [](const std::string& java) { fs::create_directories(java); }},
      {"a dangling link", [](const std::string& java) { fs::create_symlink("/no/where", java); }},
      {"another architecture",
       [](const std::string& java) {
         test::writeScript(java, std::string("\x7f"
                                             "ELF\0\1\2\3",
                                             8));
       }},
      {"empty", [](const std::string& java) { test::writeScript(java, ""); }},
  };
  embedJVM("PLATFORM_HINT: HINT\n");
  embedFind();
  setEnv("HINT", dir("jvms/x"));
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    fs::remove_all(dir("jvms/x"));
    fs::create_directories(dir("jvms/x/bin"));
    row.make(dir("jvms/x/bin/java"));
    EXPECT_EQ(255, run().status);
  }
}

// A candidate that never ends is refused, and told; the next one is tried.
TEST_F(Find, JvmsThatHang) {
  setStub(CORVANE_STUB_HASTY);
  embedJVM("PLATFORM_HINT: HINT\n");
  embedFind();
  for (const char* way : {"deaf", "stopped", "escaped", "slow"}) {
    SCOPED_TRACE(way);
    fs::remove(logFile());
    test::writeScript(dir("jvms/hung/bin/java"),
                      std::string("#!/bin/sh\nprintf '1739021872\\n17\\n'\nexec ") +
                          CORVANE_STAND_IN + " " + way + "\n");
    setEnv("HINT", dir("jvms/hung") + ":" + makeJVM("good", "17.0.2"));
    const Result result = run();
    EXPECT_EQ(0, result.status);
    EXPECT_NE(std::string::npos,
              result.log.find("WARNING: The JVM at " + dir("jvms/hung") +
                              " was ended, as it had not finished after 0 seconds.\n"));
    EXPECT_NE(std::string::npos, result.log.find("Found matching JVM at " + dir("jvms/good")));
  }
}

// Who is left behind with the pipe holds the search for a moment only, and is ended.
TEST_F(Find, JvmsThatLeaveSomebodyBehind) {
  setStub(CORVANE_STUB_HASTY);
  embedJVM("PLATFORM_HINT: HINT\n");
  embedFind();
  test::writeScript(
      dir("jvms/x/bin/java"),
      std::string("#!/bin/sh\nprintf '1739021872\\n17\\n'\n") + CORVANE_STAND_IN + " straggler\n");
  setEnv("HINT", dir("jvms/x"));
  const Result result = run();
  EXPECT_EQ(0, result.status);
  EXPECT_NE(std::string::npos, result.log.find("Found matching JVM at " + dir("jvms/x")));
}

TEST_F(Find, CtrlCEndsTheSearchWithoutAMatch) {
  test::writeScript(dir("jvms/slow/bin/java"), "#!/bin/sh\n: >\"$RECORD\"\nexec sleep 20\n");
  const std::string good = makeJVM("good", "17.0.2");
  setEnv("RECORD", dir("record.txt"));
  setEnv("HINT", dir("jvms/slow") + ":" + good);
  embedJVM("PLATFORM_HINT: HINT\nPATH_HINT: " + good + "\n");
  embedFind();
  const pid_t pid = start({"-cv:tempdir", tempDir(), "-cv:log", logFile()});
  ASSERT_TRUE(waitForFile(dir("record.txt")));
  kill(pid, SIGINT);
  const Result result = finish(pid);
  EXPECT_EQ(-SIGINT, result.status);
  EXPECT_EQ("Canceled by the user.\n", result.out);
  EXPECT_EQ("DIR/jvms/slow/bin/java\n", triedPlaces(result.log, scratch()));
}

TEST_F(Scan, FindsWhatNoHintNames) {
  place("/opt/a/deep/java8", "1.8.0");
  place("/opt/java17", "17.0.9");
  embedJVM("SEARCH_ALL: 1\n");
  embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "");
  embedInstructions({"FIND_JVM 0 1", "SET S3 = @S1@", "LAUNCH @S2@ 0"});
  embed(FILE_TYPE_LAUNCH_SCRIPT, 2, "l", "DESC: Sample\nCOMMAND: exit 33\n");
  const Result result = runInside({});
  EXPECT_EQ(33, result.status);
  EXPECT_NE(std::string::npos, result.log.find("Beginning exhaustive search\n"));
  EXPECT_NE(std::string::npos, result.log.find("Matching JVM home is /opt/java17\n"));
  EXPECT_EQ(std::vector<std::string>{}, test::listTree(dir("jail/tmp")));
}

TEST_F(Scan, SearchAllPrintsHomesOfAnyName) {
  const std::set<std::string> homes = {
      "/opt/a%b",   "/opt/%CP%()",    "/opt/a@b@c",    "/opt/#a#",     "/opt/ a b ",
      "/opt/a\"'b", "/opt/$(: >ran)", "/opt/`: >ran`", "/opt/a;b&c|d", "/opt/\xFF\\"};
  for (const std::string& home : homes) {
    place(home, "17.0.1");
  }
  embedJVM("");
  embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "");
  test::writeFile(dir("jail/in.tag"), "ACTION: SEARCH_ALL\nLOGFILE: /log\n");
  const Result result = runInside({"-cv:in", "/in.tag"});
  EXPECT_EQ(0, result.status);
  std::istringstream lines(result.out);
  std::string line;
  std::getline(lines, line);
  EXPECT_EQ(std::to_string(homes.size()), line);
  std::set<std::string> found;
  for (std::string file; std::getline(lines, line) && std::getline(lines, file);) {
    found.insert(line);
    EXPECT_NE(std::string::npos, test::readFile(dir("jail" + file)).find("JVM_FILE:  " + file));
    fs::remove(dir("jail" + file));
  }
  EXPECT_EQ(homes, found);
  EXPECT_FALSE(fs::exists(dir("jail/app/ran")));
}

TEST_F(Scan, SearchAllPrintsEveryMatch) {
  struct Row {
    const char* name;
    const char* tags;
    std::vector<std::string> args;
    const char* front;  // regular expressions, in front of the results and behind them
    const char* behind;
  };
  const char* const searching = "\nSearching for Java\\(tm\\) Virtual Machine...\n[.\n]*[.]";
  const Row rows[] = {
      {"nothing shown", "", {}, "", ""},
      {"failures shown", "SHOW_FAIL_MSG: 1\n", {}, "", ""},
      {"progress shown", "SHOW_PROGRESS: 1\n", {}, searching, "\n?"},
      {"all shown", "SHOW_PROGRESS: 1\nSHOW_FAIL_MSG: 1\n", {}, searching, "\n?"},
      {"silent", "SHOW_PROGRESS: 1\nSHOW_FAIL_MSG: 1\n", {"-cv:silent"}, "", ""},
  };
  place("/opt/one", "17.0.1");
  place("/opt/two", "17.0.2");
  place("/opt/three", "17.0.3");
  place("/opt/old", "1.8.0");
  place("/opt/xbin", "17");  // bin/java of another name
  fs::rename(dir("jail/opt/xbin/bin"), dir("jail/opt/xbin/sbin"));
  embedJVM("");
  embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "");
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    test::writeFile(dir("jail/in.tag"),
                    "ACTION: SEARCH_ALL\nLOGFILE: /log\n" + std::string(row.tags));
    std::vector<std::string> args = row.args;
    args.insert(args.end(), {"-cv:in", "/in.tag"});
    const Result result = runInside(args);
    EXPECT_EQ(0, result.status);
    const std::regex wanted(std::string(row.front) +
                            "3\n(/opt/(one|two|three)\n/tmp/cvj[A-Za-z0-9]{6}\n){3}" + row.behind);
    EXPECT_TRUE(std::regex_match(result.out, wanted)) << result.out;
    const std::vector<std::string> written = test::listTree(dir("jail/tmp"));
    EXPECT_EQ(3u, written.size());
    for (const std::string& file : written) {
      const std::string home =
          lineInFrontOf("/tmp/" + file, result.out);  // each file is that of the home before it
      EXPECT_NE(std::string::npos, test::readFile(dir("jail/tmp/") + file)
                                       .find("JVM_HOME:  " + home + "\nJVM_FILE:  /tmp/" + file));
      fs::remove(dir("jail/tmp/") + file);
    }
  }
}

// What the calling program has learned stays; a jvm file whose name it never saw is removed.
TEST_F(Scan, ALostResultOfASearchForAllIsAFailure) {
  constexpr std::size_t kLimit = 12000;
  struct Row {
    const char* name;
    std::size_t room;     // bytes that the output still takes
    std::size_t matches;  // whose two lines fit
  };
  const std::size_t oneMatch = std::string("/opt/one\n/tmp/cvjXXXXXX\n").size();
  const Row rows[] = {{"the count", 0, 0},
                      {"the first match", 2, 0},
                      {"a part of it", oneMatch, 0},
                      {"the second match", 2 + oneMatch, 1}};
  place("/opt/one", "17.0.1");
  place("/opt/two", "17.0.2");
  embedJVM("");
  embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "");
  test::writeFile(dir("jail/in.tag"), "ACTION: SEARCH_ALL\nLOGFILE: /log\n");
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    setPrepareDisk([&row] {
      const std::string filler(kLimit - row.room, '-');
      return test::limit(RLIMIT_FSIZE, kLimit) &&
             write(STDOUT_FILENO, filler.data(), filler.size()) ==
                 static_cast<ssize_t>(filler.size());
    });
    const Result result = runInside({"-cv:in", "/in.tag"});
    EXPECT_EQ(255, result.status);
    EXPECT_TRUE(result.log.ends_with("ERROR: Cannot write to standard output: File too large\n"))
        << result.log;
    const std::vector<std::string> written = test::listTree(dir("jail/tmp"));
    ASSERT_EQ(row.matches, written.size());
    for (const std::string& file : written) {
      EXPECT_NE("", lineInFrontOf("/tmp/" + file, result.out));
      fs::remove(dir("jail/tmp/") + file);
    }
  }
}

// The second search looks at the disks as they are then.
TEST_F(Scan, TwoSearchesForAllInOneProcess) {
  test::writeScript(dir("jail/opt/one/bin/java"),
                    "#!/bin/sh\nprintf '%s\\n' 1739021872 17.0.1\nrm -rf /opt/one\n");
  embedJVM("");
  embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "");
  test::writeFile(dir("jail/in.tag"), "ACTION: SEARCH_ALL\nLOGFILE: /log\n");
  const Result result = runInside({"-cv:in", "/in.tag", "-cv:in", "/in.tag"});
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(std::regex_match(result.out, std::regex("1\n/opt/one\n/tmp/cvj[A-Za-z0-9]{6}\n0\n")))
      << result.out;
  EXPECT_EQ("/opt/one/bin/java\n", triedPlaces(result.log, scratch()));
}

// What has been found by then is of no use to who does not want it any more.
TEST_F(Scan, CtrlCEndsTheVerificationOfWhatWasFound) {
  for (const char* name : {"one", "two"}) {
    test::writeScript(dir("jail/opt/") + name + "/bin/java",
                      "#!/bin/sh\n: >/begun\nread line </pipe\n");
  }
  ASSERT_EQ(0, mkfifo(dir("jail/pipe").c_str(), 0600));
  embedJVM("");
  embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "");
  test::writeFile(dir("jail/in.tag"), "ACTION: SEARCH_ALL\nLOGFILE: /log\nSHOW_FAIL_MSG: 1\n");
  const pid_t pid = start({"-cv:tempdir", "/tmp", "-cv:in", "/in.tag"});
  ASSERT_TRUE(waitForFile(dir("jail/begun")));
  kill(-pid, SIGINT);  // to the whole group, as the terminal does
  const Result result = finish(pid);
  EXPECT_EQ(-SIGINT, result.status);
  EXPECT_EQ("0\nCanceled by the user.\n", result.out);
  const std::string places = triedPlaces(test::readFile(dir("jail/log")), scratch());
  EXPECT_EQ(1, std::count(places.begin(), places.end(), '\n')) << places;
  EXPECT_EQ(std::vector<std::string>{}, test::listTree(dir("jail/tmp")));
}

// QUIRK(zero-after-partial-output)
TEST_F(Scan, AFailureBehindTheCountPrintsAZero) {
  const std::string missing =
      "Unable to search for all JVMs.Cannot use /tmp as the temp directory because it does not "
      "exist. Please run the program again using the option -cv:tempdir <temp dir> to specify a "
      "different directory to use.\n";
  embedJVM("");
  embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "");
  for (const bool shown : {false, true}) {
    test::writeScript(dir("jail/opt/one/bin/java"),
                      "#!/bin/sh\nprintf '%s\\n' 1739021872 17.0.1\nrm -rf /tmp\n");
    fs::create_directories(dir("jail/tmp"));
    test::writeFile(dir("jail/in.tag"), "ACTION: SEARCH_ALL\nLOGFILE: /log\nSHOW_FAIL_MSG: " +
                                            std::to_string(shown ? 1 : 0) + "\n");
    const Result result = runInside({"-cv:in", "/in.tag"});
    EXPECT_EQ(0, result.status);
    EXPECT_EQ(shown ? "1\n" + missing + "0\n" : "1\n0\n", result.out);
    EXPECT_NE(std::string::npos, result.log.find("ERROR: " + missing));
  }
}

TEST_F(Scan, WithoutSearchAllNothingIsScanned) {
  place("/opt/java17", "17.0.9");
  embedJVM("");
  embedInstructions({"FIND_JVM 0 0", "ILAUNCH 0 0"});
  const Result result = runInside({});
  EXPECT_EQ(255, result.status);
  EXPECT_EQ(std::string::npos, result.log.find("exhaustive"));
}

TEST_F(Scan, TheJvmFileThatAsksForTheScanIsTheLastWhoseHintsAreTried) {
  place("/opt/java17", "17.0.9");
  embedJVM("SEARCH_ALL: 0\nPATH_HINT: /first\n");
  embedJVM("SEARCH_ALL: 1\nPATH_HINT: /second\n");
  embedJVM("PATH_HINT: /opt/java17\n");
  embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "");
  embedInstructions({"FIND_JVM 0 0"});
  const Result result = runInside({});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ("/first/bin/java\n/bin/java\n/second/bin/java\n/bin/java\n/opt/java17/bin/java\n",
            triedPlaces(result.log, scratch()));
}

}  // namespace
}  // namespace e2e
