// Names and arguments with any byte in them: they arrive as they are, and nothing that they spell
// is run. What were run would leave the file "ran" behind, which the fixture notices.
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "e2e/LauncherTest.h"

namespace fs = std::filesystem;

namespace e2e {
namespace {

constexpr const char* kNames[] = {
    "ordinary-1.0",
    " blanks \t and  more ",
    "$(touch ran)",
    "`touch ran`",
    "\"; touch ran; \"",
    "'; touch ran; '",
    "a;touch ran;b&touch ran|touch ran",
    "$HOME${HOME}$$",
    "back\\slash\\\\$\\`\\\"",
    "100%",
    "%LAUNCHER_DIR%()",
    "%NONE%",
    "@JVM_EXE@",
    "one@",
    "#HOME#",
    "*?[a]~{a,b}!^=#",
    ")}>ran<ran",
    "\xFF\xFE\xC3(\x80",
};

class Names : public LauncherTest {
 protected:
  // No Java of the machine's own, but the program that the names ask for.
  void SetUp() override {
    fs::create_directories(dir("bin"));
    fs::create_symlink("/usr/bin/touch", dir("bin/touch"));
    setEnv("PATH", dir("bin"));
  }

  // A setup whose wizard writes down its own path and its arguments, each on a line.
  void embedRecorder(const std::string& arguments) {
    embedJVM("PLATFORM_HINT: FAKE_HOME\nOWN_JAR: \"\"\"@JVM_HOME@/own.jar\"\"\"\n");
    embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "not looked at by the stand-in");
    embed(FILE_TYPE_JAR, 5, "wizard.jar", "");
    embed(FILE_TYPE_APPLICATION_ARCHIVE, 6, "archive", "");
    setEnv("RECORD", dir("record.txt"));
    embedScript("\"@JVM_HOME@/@JVM_EXE@\" " + arguments);
    embedInstructions({"FIND_JVM 0 1", "ILAUNCH 10 0"});
  }

  void embedScript(const std::string& command) {
    forgetFiles(FILE_TYPE_LAUNCH_SCRIPT);
    std::string doubled;
    for (const char byte : command) {
      doubled += byte == '"' ? "\"\"" : std::string(1, byte);
    }
    embed(FILE_TYPE_LAUNCH_SCRIPT, 2, "setup.lsc", "DESC: Sample\nCOMMAND: \"" + doubled + "\"\n");
  }

  void makeRecorder(const std::string& name) {
    setEnv("FAKE_HOME", makeJVM(name, "17.0.1",
                                "for word in \"$0\" \"$@\"; do printf '%s\\n' \"$word\"; done "
                                ">>\"$RECORD\"\nexit 4"));
  }

  void expectRecord(const std::vector<std::string>& words) {
    std::string wanted;
    for (const std::string& word : words) {
      wanted += word + "\n";
    }
    EXPECT_EQ(normalised(wanted, scratch()),
              normalised(test::readFile(dir("record.txt")), scratch()));
    fs::remove(dir("record.txt"));
  }
};

TEST_F(Names, OfAJvmHome) {
  embedRecorder(
      "-D\"@JVM_HOME@\" '@JVM_HOME@' @OWN_JAR@ %SYSTEMPROP%(\"h\",\"\"\"@JVM_HOME@\"\"\")");
  for (const char* const name : kNames) {
    SCOPED_TRACE(name);
    makeRecorder(name);
    const std::string home = dir("jvms/") + name;
    const Result result = run();
    EXPECT_EQ(4, result.status) << result.log;
    EXPECT_EQ("", result.err);
    expectRecord({home + "/bin/java", "-D" + home, home, home + "/own.jar", "-Dh=" + home});
    EXPECT_NE(std::string::npos,
              result.log.find("Executing launch script command: \"" + home + "/bin/java\" -D\"" +
                              home + "\" '" + home + "' \"" + home + "/own.jar\" -Dh=\"" + home +
                              "\" in working directory "));
    fs::remove_all(home);
  }
}

TEST_F(Names, OfAJvmHomeThatTheTemplateLeavesBare) {
  embedRecorder("");
  embedScript("@JVM_HOME@/@JVM_EXE@ @JVM_HOME@");
  for (const char* const name : kNames) {
    SCOPED_TRACE(name);
    makeRecorder(name);
    const std::string home = dir("jvms/") + name;
    EXPECT_EQ(4, run().status);
    expectRecord({home + "/bin/java", home});
    fs::remove_all(home);
  }
}

// The written jvm file carries the home on to LAUNCH, and to launchers of a later run.
TEST_F(Names, OfAJvmHomeInAJvmFile) {
  embedRecorder("\"@JVM_HOME@\" \"@JVM_FILE@\"");
  forgetFiles(FILE_TYPE_INSTRUCTIONS);
  embedInstructions({"FIND_JVM 0 1", "LAUNCH @S2@ 0"});
  for (const char* const name : kNames) {
    SCOPED_TRACE(name);
    makeRecorder(name);
    const std::string home = dir("jvms/") + name;
    EXPECT_EQ(4, run().status);
    expectRecord({home + "/bin/java", home, tempDir() + "/cvjAAAAAA"});
    fs::remove_all(home);
  }
}

TEST_F(Names, OfAJvmWhoseJavaDoesNothing) {
  embedRecorder("");
  for (const char* const name : kNames) {
    SCOPED_TRACE(name);
    const std::string home = dir("jvms/") + name;
    test::writeScript(home + "/bin/java", "");
    setEnv("FAKE_HOME", home);
    EXPECT_EQ(0, run().status);
    fs::remove_all(home);
  }
}

TEST_F(Names, OfATemporaryFolder) {
  makeRecorder("java17");
  embedRecorder("%CP%() \"%TEMP_DIR%()\" '%TEMP_DIR%()' \"%APPLICATION_ARCHIVE%()\"");
  for (const char* const name : kNames) {
    SCOPED_TRACE(name);
    const std::string temp = dir("tmp/") + name;
    fs::create_directories(temp);
    const Result result = runBare({"-cv:tempdir", temp, "-cv:log", logFile()});
    EXPECT_EQ(4, result.status) << result.log;
    expectRecord({dir("jvms/java17/bin/java"), "-cp", temp + "/cvjAAAAAA/wizard.jar", temp, temp,
                  temp + "/cvjAAAAAA/archive"});
    EXPECT_TRUE(fs::is_empty(temp));
    fs::remove(logFile());
  }
}

TEST_F(Names, OfALaunchersFolderAndOfALauncher) {
  makeRecorder("java17");
  embedRecorder("\"%LAUNCHER_FILE%()\" \"%LAUNCHER_DIR%()\" '%LAUNCHER_DIR%()'");
  for (const std::string name : kNames) {
    SCOPED_TRACE(name);
    std::string base = name;
    std::replace(base.begin(), base.end(), '\\', '-');
    const std::string folder = dir("app/" + name);
    setLauncherPath(folder + "/" + base);
    pack();
    EXPECT_EQ(4, run().status);
    expectRecord({dir("jvms/java17/bin/java"), launcherPath(), folder, folder});
    fs::remove_all(folder);
  }
}

// Of the arguments only those without quotes arrive as they are; here the temporary folder is one.
TEST_F(Names, OfFoldersFromWhichTheRunIsHandedOver) {
  setEnv("RECORD", dir("record.txt"));
  embed(FILE_TYPE_LAUNCHER, 9, "in \"ner",
        "#!/bin/sh\nprintf '%s\\n' \"$0\" \"$1\" \"$2\" >\"$RECORD\"\n"
        "/bin/rm \"$0\"; /bin/rmdir \"${0%/*}\"; exit 11\n");
  embedInstructions({"EXECUTE_LAUNCHER 0"});
  for (const std::string name : kNames) {
    SCOPED_TRACE(name);
    const std::string temp = dir("tmp/" + name);
    fs::create_directories(temp);
    setLauncherPath(dir("app/" + name + "/set \"up"));
    pack();
    EXPECT_EQ(11, runBare({"-cv:tempdir", temp}).status);
    expectRecord({temp + "/cvj#/in \"ner", "-cv:orig", launcherPath()});
    EXPECT_TRUE(fs::is_empty(temp));
  }
}

TEST_F(Names, OfFoldersFromWhichARealLauncherIsHandedOverTo) {
  embedInstructions({"// first line", "FIND_JAVA"});
  setLauncherPath(dir("inner"));
  pack();
  const std::string inner = test::readFile(dir("inner"));
  forgetFiles();
  embed(FILE_TYPE_LAUNCHER, 9, "inner", inner);
  embedInstructions({"EXECUTE_LAUNCHER 0"});
  for (const std::string name :
       {"\"; touch ran; \"", "back\\slash\\\\$\\`\\\"", "\xFF\xFE\xC3(\x80"}) {
    SCOPED_TRACE(name);
    const std::string temp = dir("tmp/" + name);
    fs::create_directories(temp);
    setLauncherPath(dir("app/" + name + "/setup"));
    pack();
    const Result result = runBare({"-cv:tempdir", temp});
    EXPECT_EQ(255, result.status);
    EXPECT_EQ("Error in instructions. Invalid command (FIND_JAVA).  Line number (2)\n",
              result.out.substr(result.out.find_first_not_of(".\n")));  // behind the dots
    EXPECT_TRUE(fs::is_empty(temp));
  }
}

TEST_F(Names, OfAClassPathInAVariable) {
  makeRecorder("java17");
  embedRecorder("");
  forgetFiles(FILE_TYPE_JVM);
  embed(FILE_TYPE_JVM, 10, "jvm",
        "DESC: Java\nJVM_EXE: bin/java\nJVM_PROPERTIES: java.version=17...\n"
        "PLATFORM_HINT: FAKE_HOME\nUSE_CP_ENV_VAR: 1\nCP_ENV_VAR: THE_PATH\n");
  embedScript("%CP%()\"@JVM_HOME@/@JVM_EXE@\" \"#THE_PATH#\"");
  for (const char* const name : kNames) {
    SCOPED_TRACE(name);
    const std::string temp = dir("tmp/") + name;
    fs::create_directories(temp);
    EXPECT_EQ(4, runBare({"-cv:tempdir", temp}).status);
    expectRecord({dir("jvms/java17/bin/java"), temp + "/cvjAAAAAA/wizard.jar"});
  }
}

// --- What authors and users wrote keeps its meaning ---

TEST_F(Names, WrittenTextIsReadByTemplateAndShell) {
  makeRecorder("java17");
  embedRecorder("@OWN@ \"#OUTSIDE#\" $OUTSIDE %IF_EXISTS%(\"OWN\",\"@OWN@\") \"`echo @OWN@`\"");
  forgetFiles(FILE_TYPE_JVM);
  forgetFiles(FILE_TYPE_INSTRUCTIONS);
  const int id = embedJVM("PLATFORM_HINT: FAKE_HOME\nOWN: @NEXT@\nNEXT: \"$(echo own)\"\n");
  embedInstructions({"FIND_JVM 0 1", "ILAUNCH " + std::to_string(id) + " 0"});
  setEnv("OUTSIDE", "@NEXT@$HOME");
  EXPECT_EQ(4, run().status);
  expectRecord(
      {dir("jvms/java17/bin/java"), "own", "@NEXT@" + dir("home"), "@NEXT@$HOME", "own", "own"});
}

// --- Arguments ---

std::vector<std::string> oddArguments() {
  std::vector<std::string> arguments = {"",
                                        " ",
                                        "plain",
                                        "two words",
                                        "\ttab",
                                        "line\nbreak",
                                        "\"",
                                        "\"\"",
                                        "'",
                                        "''",
                                        "a\"b'c",
                                        "\\",
                                        "\\\\",
                                        "a\\",
                                        "\\\"",
                                        "\\\\\"",
                                        "\\$",
                                        "$HOME",
                                        "$(touch ran)",
                                        "`touch ran`",
                                        "; touch ran",
                                        "& touch ran &",
                                        "| touch ran",
                                        "> ran",
                                        "*",
                                        "~",
                                        "#",
                                        "!",
                                        "%CP%",
                                        "@JVM_HOME@",
                                        "--",
                                        "-n",
                                        "\xFF\xFE",
                                        "$'a'",
                                        "{a,b}"};
  std::string all;
  for (int byte = 1; byte < 256; ++byte) {
    all += static_cast<char>(byte);
  }
  arguments.push_back(all);
  return arguments;
}

TEST_F(Names, ArgumentsArriveByteForByte) {
  makeRecorder("java17");
  embedRecorder("first");
  const std::vector<std::string> arguments = oddArguments();
  for (const std::string& argument : arguments) {
    SCOPED_TRACE(argument);
    EXPECT_EQ(4, run({argument, "last"}).status);
    expectRecord({dir("jvms/java17/bin/java"), "first", argument, "last"});
  }
  EXPECT_EQ(4, run(arguments).status);
  std::vector<std::string> wanted{dir("jvms/java17/bin/java"), "first"};
  wanted.insert(wanted.end(), arguments.begin(), arguments.end());
  expectRecord(wanted);
}

// 131,072 bytes are the most that the system takes as one argument, for a command, too.
TEST_F(Names, ManyArgumentsArrive) {
  makeRecorder("java17");
  struct Row {
    const char* name;
    std::string script;
    std::size_t count;
    std::size_t size;
    std::vector<std::string> inFront;
  };
  embedRecorder("");
  const std::string java = "\"@JVM_HOME@/@JVM_EXE@\"";
  const Row rows[] = {
      {"a command just below the limit", java, 4, 30'000, {}},
      {"a command at the limit", java, 4, 30'800, {}},
      {"200 KB", "exec " + java, 4, 50'000, {}},
      {"1 MB", "exec " + java, 10, 100'000, {}},
      {"100 KB in small ones", java, 50'000, 2, {}},
      {"positional parameters of the author",
       "set -- own; " + java + " \"$@\" $# \"$_cvj_text\"",
       4,
       50'000,
       {"own", "1", ""}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    embedScript(row.script);
    pack();
    std::vector<std::string> arguments;
    for (std::size_t i = 0; i < row.count; ++i) {
      const std::string odd = i % 3 == 0 ? "$(touch ran)\"'\\" : "x";
      arguments.push_back(odd.size() > row.size ? odd
                                                : odd + std::string(row.size - odd.size(), 'y'));
    }
    EXPECT_EQ(4, runBare(arguments).status);
    std::vector<std::string> wanted{dir("jvms/java17/bin/java")};
    wanted.insert(wanted.end(), row.inFront.begin(), row.inFront.end());
    wanted.insert(wanted.end(), arguments.begin(), arguments.end());
    expectRecord(wanted);
  }
}

TEST_F(Names, TheLogShowsArgumentsWithTheirQuotesAloneEscaped) {
  makeRecorder("java17");
  embedRecorder("first");
  const Result result = run({"a\"b", "$c\\", "`d`"});
  EXPECT_EQ(4, result.status);
  EXPECT_NE(std::string::npos,
            result.log.find("/bin/java\" first \"a\\\"b\" \"$c\\\" \"`d`\" in working directory "));
}

}  // namespace
}  // namespace e2e
