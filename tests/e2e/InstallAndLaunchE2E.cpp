// Installing a bundled JVM, ILAUNCH, hand-over, application archives, "-cv:extract".
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "e2e/LauncherTest.h"
#include "support/Restrictions.h"

namespace fs = std::filesystem;

namespace e2e {
namespace {

constexpr const char* kQuestion =
    "Supply the destination directory for the Java Virtual Machine:\n";
constexpr const char* kNoSpace =
    " There may not be enough temporary disk space. Try using -cv:tempdir to use a temporary "
    "directory on a partition with more disk space.\n";

// The largest file that may be written while the disk is "full".
constexpr unsigned long kRoom = 20000;

void fillDisk() {
  if (!test::limit(RLIMIT_FSIZE, kRoom)) {
    _exit(124);
  }
}

constexpr const char* kPreparing = "\nPreparing Java(tm) Virtual Machine...\n";

class Install : public LauncherTest {
 protected:
  // An installer that makes a JVM in the folder where it runs.
  void embedInstaller(const std::string& more = "") {
    embed(FILE_TYPE_JVM_INSTALLER, 5, "install it.sh",
          "#!/bin/sh\n"
          "echo installing; echo careful >&2\n"
          "pwd >\"$RECORD\"; ls >>\"$RECORD\"\n"
          "mkdir -p bin\n"
          "printf '#!/bin/sh\\nexit 9\\n' >bin/java; chmod +x bin/java\n"
          "echo 'JVM_EXE: bin/java' >jvm\n" +
              more);
    setEnv("RECORD", dir("record.txt"));
    embedLaunchScript();
  }
};

// QUIRK(install-leaves-file): S1 is what LAUNCH takes as the jvm file here.
TEST_F(Install, OptionsOfTheConsole) {
  struct Row {
    const char* command;
    std::string out;
  };
  // A dot for the copy of the installer, and for each of its outputs.
  const Row rows[] = {{"INSTALL_JVM 0", "Sample\n"},
                      {"INSTALL_JVM 1", "Sample\n" + std::string(kPreparing) + "..."}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.command);
    forgetFiles();
    embedInstaller("exit 3\n");
    embedInstructions({row.command, "LAUNCH @S1@ 0"});
    pack();
    const Result result = run();
    EXPECT_EQ(9, result.status);  // the exit code of the installer does not matter
    EXPECT_EQ(row.out, result.out);
    EXPECT_EQ("DIR/temp/cvj#\ninstall it.sh\n",
              normalised(test::readFile(dir("record.txt")), scratch()));
  }
}

TEST_F(Install, PromptedFolder) {
  embedInstaller();
  embedInstructions({"INSTALL_JVM 2", "LAUNCH @S1@ 0"});
  fs::create_directories(dir("mine"));
  setStdin("  " + dir("mine") + "  ignored\n");
  const Result result = run();
  EXPECT_EQ(9, result.status);
  const std::string prompt = "Sample\n" + std::string(kPreparing) +
                             "Supply the destination directory for the Java Virtual Machine:\n";
  EXPECT_EQ(prompt, result.out.substr(0, prompt.size()));
  EXPECT_EQ((std::vector<std::string>{"bin/", "bin/java", "jvm"}), test::listTree(dir("mine")));
  EXPECT_EQ("JVM_EXE:  bin/java\nJVM_HOME:  " + dir("mine") + "\nJVM_FILE:  " + dir("mine/jvm") +
                "\nJVM_TEMP:  1\n",
            test::readFile(dir("mine/jvm")));
}

TEST_F(Install, NoAnswerInstallsNothing) {
  embedInstaller();
  embedInstructions({"INSTALL_JVM 2", "JMP0 @N1@ none", "ILAUNCH 99 0", ":none"});
  for (const std::vector<std::string>& args : {std::vector<std::string>{}, {"-cv:silent"}}) {
    EXPECT_EQ(0, run(args).status);
    EXPECT_FALSE(fs::exists(dir("record.txt")));
  }
}

// The name of the folder goes into the tags, and in front of "jvm", as it was typed.
TEST_F(Install, FoldersAsTheyWereTyped) {
  struct Row {
    std::string typed;
    bool installed;
    std::string error;  // at the beginning of the log
  };
  const Row rows[] = {
      {dir("mine"), true, ""},
      {dir("mine") + "/", true, ""},
      {dir("mine/deep/.."), true, ""},
      {"../mine", true, ""},
      // The installer runs in the folder, by a name that only leads to it from our own.
      {"../mine/deep", false, "WARNING: The JVM installer ended with status 127.\nErrOut:\n"},
      {dir("none"), false, "ERROR: No such file or directory\n"},
      {"../none", false, "ERROR: Error writing file = 2 There may not"},
      {logFile(), false, "ERROR: Error writing file = 20 There may not"},
  };
  embedInstaller();
  embedInstructions({"INSTALL_JVM 2", "JMP0 @N1@ none", "LAUNCH @S1@ 0", "GOTO end", ":none",
                     "ILAUNCH 99 0", ":end"});
  for (const Row& row : rows) {
    SCOPED_TRACE(row.typed);
    fs::remove_all(dir("mine"));
    fs::create_directories(dir("mine/deep"));
    fs::remove(logFile());
    setStdin(row.typed + "\n");
    const Result result = run();
    EXPECT_EQ(row.installed ? 9 : 255, result.status);
    EXPECT_EQ(0u, withoutIndex(result.log).find(row.error)) << result.log;
    if (row.installed) {
      EXPECT_EQ("JVM_EXE:  bin/java\nJVM_HOME:  " + row.typed + "\nJVM_FILE:  " + row.typed +
                    "/jvm\nJVM_TEMP:  1\n",
                test::readFile(dir("mine/jvm")));
      fs::remove_all(dir("mine/bin"));
      fs::remove(dir("mine/jvm"));
    }
    EXPECT_EQ(std::vector<std::string>{"deep/"}, test::listTree(dir("mine")));
  }
}

TEST_F(Install, AJvmFileThatCannotBeRead) {
  embedInstaller("echo 'no colon' >jvm\n");
  embedInstructions({"INSTALL_JVM 0"});
  const Result result = run();
  EXPECT_EQ(255, result.status);
  EXPECT_EQ(
      "Sample\nSyntax error in DIR/temp/cvj#/jvm at line 1 ==> Missing colon at the end of the tag "
      "name.\n",
      normalised(result.out, scratch()));
}

// The user's folder is not ours to clean up, only what we put there.
TEST_F(Install, AnInstallerThatDoesNotFitIsNotLeftInTheUsersFolder) {
  for (const bool wasThere : {false, true}) {
    SCOPED_TRACE(wasThere);
    forgetFiles();
    embedInstaller("# " + std::string(kRoom, 'x') + "\n");
    embedInstructions({"INSTALL_JVM 2"});
    fs::create_directories(dir("mine"));
    if (wasThere) {
      fs::create_directories(dir("mine/install it.sh/of the user"));
    }
    setStdin(dir("mine"));
    setPrepareChild(fillDisk);
    pack();
    const Result result = run();
    EXPECT_EQ(255, result.status);
    EXPECT_EQ(
        "Sample\n" + std::string(kPreparing) + kQuestion + ".Error writing file = 27" + kNoSpace,
        result.out);
    EXPECT_EQ(wasThere ? 2U : 0U, test::listTree(dir("mine")).size());
    EXPECT_FALSE(fs::exists(dir("record.txt")));
  }
}

// Once the installer is gone its name is the user's: what is put there is not ours to clean up.
TEST_F(Install, WhatTakesTheInstallersNameLaterStays) {
  setEnv("MINE", dir("mine"));
  embedInstaller("printf '#!/bin/sh\\n: >\"$MINE/install it.sh\"\\nexit 9\\n' >bin/java\n");
  embedInstructions({"INSTALL_JVM 2", "LAUNCH @S1@ 0"});
  fs::create_directories(dir("mine"));
  setStdin(dir("mine"));
  EXPECT_EQ(9, run().status);
  EXPECT_EQ((std::vector<std::string>{"bin/", "bin/java", "install it.sh", "jvm"}),
            test::listTree(dir("mine")));
}

TEST_F(Install, AMissingJvmFileIsLogged) {
  struct Row {
    const char* name;
    std::string more;  // at the end of the installer
    std::string log;
  };
  const std::string missing = "ERROR: Invalid bundled JVM. Missing 'jvm' file.\n";
  const Row rows[] = {
      {"success", "rm jvm\n", missing},
      {"failure", "rm jvm; exit 3\n",
       "WARNING: The JVM installer ended with status 3.\nStdOut:\ninstalling\n\nErrOut:\ncareful\n"
       "\n" +
           missing},
      {"much output", "rm jvm; exec >&2; yes | head -n 5000; exit 4\n", "y\ny\ny\n\n" + missing},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    forgetFiles();
    fs::remove(logFile());
    embedInstaller(row.more);
    embedInstructions({"INSTALL_JVM 0", "ILAUNCH @N1@ 0"});
    pack();
    const Result result = run();
    EXPECT_EQ(255, result.status);
    EXPECT_NE(std::string::npos, result.log.find(row.log)) << result.log;
    EXPECT_GT(6000U, result.log.size());
  }
}

TEST_F(Install, WhatHasTheInstallersNameIsTheUsersAndStays) {
  struct Row {
    const char* name;
    std::function<void(const std::string&)> make;
  };
  const Row rows[] = {
      {"file", [](const std::string& path) { test::writeFile(path, "the user's"); }},
      {"link", [](const std::string& path) { fs::create_symlink("nowhere", path); }},
      {"folder", [](const std::string& path) { test::writeFile(path + "/f", "the user's"); }},
  };
  embedInstaller();
  embedInstructions({"INSTALL_JVM 2", "LAUNCH @S1@ 0"});
  setStdin(dir("mine"));
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    fs::remove_all(dir("mine"));
    fs::create_directories(dir("mine"));
    row.make(dir("mine/install it.sh"));
    const std::vector<std::string> before = test::listTree(dir("mine"));
    EXPECT_EQ(9, run().status);
    EXPECT_EQ(0U, test::readFile(dir("record.txt")).find(dir("mine") + "\n"));
    EXPECT_FALSE(fs::exists(dir("nowhere")));
    for (const char* installed : {"bin", "jvm"}) {
      fs::remove_all(dir("mine") + "/" + installed);
    }
    EXPECT_EQ(before, test::listTree(dir("mine")));
    if (fs::is_regular_file(dir("mine/install it.sh"))) {
      EXPECT_EQ("the user's", test::readFile(dir("mine/install it.sh")));
    }
  }
}

TEST_F(Install, TemporaryFolderWithBlanksAndQuotes) {
  embedInstaller();
  embedInstructions({"INSTALL_JVM 0", "LAUNCH @S1@ 0"});
  const std::string temp = dir("it's a \"folder\"");
  fs::create_directories(temp);
  runBare({"-cv:tempdir", temp});
  EXPECT_EQ(0u, test::readFile(dir("record.txt")).find(temp));
  EXPECT_TRUE(fs::is_empty(temp));
}

class Launch : public LauncherTest {};

TEST_F(Launch, StatusLineBySeconds) {
  struct Row {
    const char* command;
    const char* out;
  };
  const Row rows[] = {{"LAUNCH @S2@ 0", "Sample\n"},
                      {"LAUNCH @S2@ 1", "Sample\n\nRunning Sample...\n"},
                      {"LAUNCH @S2@ -1", "Sample\n"},
                      {"LAUNCH \"@S2@\" 32767", "Sample\n\nRunning Sample...\n"}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.command);
    forgetFiles();
    embedSetup("exit 4");
    forgetFiles(FILE_TYPE_INSTRUCTIONS);
    embedInstructions({"FIND_JVM 0 0", "INITIALIZE_UI", row.command});
    pack();
    const Result result = run();
    EXPECT_EQ(4, result.status);
    EXPECT_EQ(row.out, result.out);
  }
}

TEST_F(Launch, IlaunchTakesAnEmbeddedJvmFile) {
  embedSetup("exit 4");
  forgetFiles(FILE_TYPE_INSTRUCTIONS);
  embedInstructions({"VERIFY 0 0 10", "ILAUNCH 10 0"});
  EXPECT_EQ(4, run({"-cv:javahome", dir("jvms/java17")}).status);
}

TEST_F(Launch, IlaunchOfWhatIsNoJvmFile) {
  embedLaunchScript();
  embedInstructions({"ILAUNCH 2 0"});
  const Result result = run();
  EXPECT_EQ(255, result.status);
  EXPECT_EQ("Sample\n\n", result.out);
  EXPECT_EQ(
      "ERROR: Unable to launch the internal launch script with the internal JVM file. Either the "
      "launch script or the JVM file is missing from the launcher.\n",
      withoutIndex(result.log));
}

// QUIRK(hand-over-quotes)
TEST_F(Launch, HandOverPassesPathAndArguments) {
  const std::string recorder =
      "#!/bin/sh\nprintf '[%s]\\n' \"$0\" \"$@\" >\"$RECORD\"\n"
      "rm \"$0\"; rmdir \"${0%/*}\"; exit 11\n";
  setEnv("RECORD", dir("record.txt"));
  embed(FILE_TYPE_LAUNCHER, 9, "inner", recorder);
  embedInstructions({"EXECUTE_LAUNCHER 0", "ILAUNCH 1 0"});
  const Result result = run({"a b", "c", "d\"e", ""});
  EXPECT_EQ(11, result.status);
  EXPECT_EQ(
      "[DIR/temp/cvj#/inner]\n[-cv:orig]\n[DIR/app/setup]\n[-cv:tempdir]\n[DIR/temp]\n"
      "[-cv:log]\n[DIR/log.txt]\n[a b]\n[c]\n[d]\n[e ]\n",
      normalised(test::readFile(dir("record.txt")), scratch()));
}

TEST_F(Launch, HandOverToARealLauncherLeavesNothing) {
  embedInstructions({"// first line", "FIND_JAVA"});
  setLauncherPath(dir("inner"));
  pack();
  const std::string inner = test::readFile(dir("inner"));
  forgetFiles();
  setLauncherPath(dir("app/setup"));
  embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "");
  embedJVM("PATH_HINT: /nowhere\n");
  embed(FILE_TYPE_LAUNCHER, 9, "inner", inner);
  embedInstructions({"FIND_JVM 0 0", "EXECUTE_LAUNCHER 2"});
  pack();
  const Result result = run();
  EXPECT_EQ(255, result.status);
  EXPECT_EQ("Error in instructions. Invalid command (FIND_JAVA).  Line number (2)\n", result.out);
}

TEST_F(Launch, HandOverByALauncherThatWasHandedOverTo) {
  setEnv("RECORD", dir("record.txt"));
  embed(FILE_TYPE_LAUNCHER, 9, "inner",
        "#!/bin/sh\nwhile [ $(ls \"$TEMP\" | wc -l) -gt 1 ]; do sleep 0.02; done\n"
        "{ printf '[%s]\\n' \"$0\" \"$@\"; ls \"$TEMP\" | wc -l; } >\"$RECORD\"\n"
        "rm \"$0\"; rmdir \"${0%/*}\"; exit 11\n");
  embedInstructions({"EXECUTE_LAUNCHER 0"});
  setLauncherPath(dir("middle"));
  pack();
  const std::string middle = test::readFile(dir("middle"));
  forgetFiles();
  setLauncherPath(dir("app/setup"));
  setEnv("TEMP", tempDir());
  embed(FILE_TYPE_LAUNCHER, 9, "middle", middle);
  embedInstructions({"EXECUTE_LAUNCHER 0"});
  pack();
  EXPECT_EQ(11, runBare({"-cv:tempdir", tempDir(), "x"}).status);
  EXPECT_EQ(
      "[DIR/temp/cvj#/inner]\n[-cv:orig]\n[DIR/temp/cvj#/middle]\n[-cv:orig]\n[DIR/app/setup]\n"
      "[-cv:tempdir]\n[DIR/temp]\n[x]\n1\n",
      normalised(test::readFile(dir("record.txt")), scratch()));
}

// What can be made executable but not run: the script goes on, nobody is told.
TEST_F(Launch, HandOverThatFails) {
  embed(FILE_TYPE_LAUNCHER, 9, "inner", "#!/no/interpreter\n");
  embedInstructions({"EXECUTE_LAUNCHER 0", "ILAUNCH 1 0"});
  const Result result = run();
  EXPECT_EQ(255, result.status);
  EXPECT_EQ(".\n", result.out);
  EXPECT_EQ(0u, withoutIndex(result.log).find("ERROR: Unable to launch the internal"));
}

TEST_F(Launch, AHandOverThatFailsLeavesTheRunAsItWas) {
  embedSetup("[ -f \"$(dirname \"$TEMP\"/cvj*/verify.jar)\"/verify.jar ] && exit 6");
  setEnv("TEMP", tempDir());
  embed(FILE_TYPE_LAUNCHER, 9, "inner", "#!/no/interpreter\n");
  forgetFiles(FILE_TYPE_INSTRUCTIONS);
  embedInstructions({"FIND_JVM 0 0", "EXECUTE_LAUNCHER 3", "LAUNCH @S2@ 0"});
  const Result result = run();
  EXPECT_EQ(6, result.status) << result.log;
}

TEST_F(Launch, HandOverOnAFullDisk) {
  setPrepareChild(fillDisk);
  embed(FILE_TYPE_LAUNCHER, 9, "inner", std::string(kRoom + 1, '#'));
  embedInstructions({"EXECUTE_LAUNCHER 0"});
  const Result result = run();
  EXPECT_EQ(255, result.status);
  EXPECT_EQ(std::string(".Error writing file = 27") + kNoSpace, result.out);
}

TEST_F(Launch, HandOverFromAFolderWithBlanks) {
  setEnv("RECORD", dir("record.txt"));
  fs::create_directories(dir("a b\tc"));
  setLauncherPath(dir("with blank/set up"));
  embed(FILE_TYPE_LAUNCHER, 9, "in ner",
        "#!/bin/sh\nprintf '[%s]\\n' \"$0\" \"$@\" >\"$RECORD\"\n"
        "rm \"$0\"; rmdir \"${0%/*}\"; exit 11\n");
  embedInstructions({"EXECUTE_LAUNCHER 0"});
  EXPECT_EQ(11, runBare({"-cv:tempdir", dir("a b\tc")}).status);
  EXPECT_EQ(
      "[DIR/a b\tc/cvj#/in ner]\n[-cv:orig]\n[DIR/with blank/set up]\n[-cv:tempdir]\n"
      "[DIR/a b\tc]\n",
      normalised(test::readFile(dir("record.txt")), scratch()));
  EXPECT_TRUE(fs::is_empty(dir("a b\tc")));
}

TEST_F(Launch, HandOverToWhatIsNoLauncher) {
  embedInstructions({"EXECUTE_LAUNCHER 0", "EXECUTE_LAUNCHER -1", "EXECUTE_LAUNCHER 7"});
  const Result result = run();
  EXPECT_EQ(0, result.status);
  const std::string error = "ERROR: Unable to execute the embedded launcher.\n";
  EXPECT_EQ(error + error + error, withoutIndex(result.log));
}

TEST_F(Launch, ApplicationArchives) {
  struct Row {
    const char* name;
    const char* call;
    const char* recorded;
  };
  const Row rows[] = {
      {"embedded, the last of two", "%APPLICATION_ARCHIVE%()", "[DIR/temp/cvj#/two.jar]\nsecond\n"},
      {"beside the launcher", "%APPLICATION_ARCHIVE%(\"beside.jar\")",
       "[DIR/temp/cvj#/beside.jar]\nbeside\n"},
      {"in a folder beside", "%APPLICATION_ARCHIVE%(\"lib/deep.jar\")",
       "[DIR/temp/cvj#/deep.jar]\ndeep\n"},
      {"the second call gives the first result",
       "%APPLICATION_ARCHIVE%(\"beside.jar\")\" \"%APPLICATION_ARCHIVE%()",
       "[DIR/temp/cvj#/beside.jar]\nbeside\n[DIR/temp/cvj#/beside.jar]\nbeside\n"},
      {"missing", "x%APPLICATION_ARCHIVE%(\"none.jar\")", "[x]\n"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    forgetFiles();
    setLauncherPath(dir("app/setup"));
    test::writeFile(dir("app/beside.jar"), "beside\n");
    test::writeFile(dir("app/lib/deep.jar"), "deep\n");
    embedSetup("for a; do echo \"[$a]\"; if [ -f \"$a\" ]; then cat \"$a\"; fi; done >\"$RECORD\"");
    forgetFiles(FILE_TYPE_LAUNCH_SCRIPT);
    embed(FILE_TYPE_LAUNCH_SCRIPT, 2, "l",
          "DESC: Sample\nCOMMAND: @JVM_HOME@/bin/java \"" + std::string(row.call) + "\"\n");
    embed(FILE_TYPE_APPLICATION_ARCHIVE, 6, "one.jar", "first\n");
    embed(FILE_TYPE_APPLICATION_ARCHIVE, 6, "two.jar", "second\n");
    pack();
    EXPECT_EQ(0, run().status);
    EXPECT_EQ(row.recorded, normalised(test::readFile(dir("record.txt")), scratch()));
  }
}

TEST_F(Launch, ApplicationArchivesOnAFullDisk) {
  struct Row {
    const char* name;
    const char* call;
    unsigned long size;
    bool fits;
  };
  const Row rows[] = {
      {"beside, as large as the room", "%APPLICATION_ARCHIVE%(\"beside.jar\")", kRoom, true},
      {"beside, one byte more", "%APPLICATION_ARCHIVE%(\"beside.jar\")", kRoom + 1, false},
      {"beside, many chunks more", "%APPLICATION_ARCHIVE%(\"beside.jar\")", 5 * kRoom, false},
      {"beside, empty", "%APPLICATION_ARCHIVE%(\"beside.jar\")", 0, true},
      {"embedded, as large as the room", "%APPLICATION_ARCHIVE%()", kRoom, true},
      {"embedded, one byte more", "%APPLICATION_ARCHIVE%()", kRoom + 1, false},
  };
  setPrepareChild(fillDisk);
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    forgetFiles();
    fs::remove(logFile());
    fs::remove(dir("record.txt"));
    const std::string bytes(row.size, 'x');
    test::writeFile(dir("app/beside.jar"), bytes);
    embedSetup("wc -c <\"$1\" >\"$RECORD\"; exit 4");
    forgetFiles(FILE_TYPE_LAUNCH_SCRIPT);
    embed(FILE_TYPE_LAUNCH_SCRIPT, 2, "l",
          "DESC: Sample\nCOMMAND: @JVM_HOME@/bin/java \"" + std::string(row.call) + "\"\n");
    embed(FILE_TYPE_APPLICATION_ARCHIVE, 6, "one.jar", bytes);
    pack();
    const Result result = run();
    const std::string error = std::string("Error writing file = 27") + kNoSpace;
    EXPECT_EQ(row.fits ? 4 : 255, result.status);
    EXPECT_EQ(row.fits ? "Sample\n" : "Sample\n" + error, result.out);
    EXPECT_EQ(!row.fits, result.log.ends_with("ERROR: " + error));
    EXPECT_EQ(row.fits, fs::exists(dir("record.txt")));
    if (row.fits) {
      EXPECT_EQ(std::to_string(row.size) + "\n", test::readFile(dir("record.txt")));
    }
  }
}

class Extract : public LauncherTest {};

TEST_F(Extract, EverythingAndAnInputFile) {
  embed(FILE_TYPE_JVM, 1, "a.jvm", "DESC: A\n");
  embed(FILE_TYPE_JVM, 2, "b.jvm", "DESC: B\n");
  embed(FILE_TYPE_LAUNCH_SCRIPT, 3, "l.lsc", "DESC: L\n");
  embed(FILE_TYPE_INSTRUCTIONS, 4, "i.ins", "not even a tag file");
  embed(FILE_TYPE_JVM_MESSAGE, 5, "m.msg", "MESSAGE: M\n");
  embed(FILE_TYPE_JAR, 6, "c.jar", std::string("\0\xFF\n", 3));
  embed(FILE_TYPE_JVM_INSTALLER, 7, "inst", "x");
  embed(FILE_TYPE_LAUNCHER, 8, "inner", "");
  expectLeftovers();
  const Result result = run({"-cv:extract"});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ((std::vector<std::string>{"a.jvm", "b.jvm", "c.jar", "i.ins", "inner", "input.tag",
                                      "inst", "l.lsc", "m.msg"}),
            test::listTree(currentDir()));
  EXPECT_EQ(
      "ACTION:  RUN_INSTRUCTIONS\nJVM:\n  a.jvm\n  b.jvm\n/:\nLAUNCHSCRIPT:  l.lsc\n"
      "INSTRUCTIONS:  i.ins\nJVMMESSAGE:  m.msg\n",
      test::readFile(currentDir() + "/input.tag"));
  EXPECT_EQ(std::string("\0\xFF\n", 3), test::readFile(currentDir() + "/c.jar"));
  for (const auto& [name, executable] :
       {std::pair{"inst", true}, {"inner", true}, {"c.jar", false}, {"a.jvm", false}}) {
    EXPECT_EQ(executable ? 0 : -1, access((currentDir() + "/" + name).c_str(), X_OK)) << name;
  }
}

TEST_F(Extract, WhereNothingCanBeWritten) {
  embed(FILE_TYPE_JAR, 6, "taken", "x");
  fs::create_directories(currentDir() + "/taken");
  expectLeftovers();
  const Result result = run({"-cv:extract"});
  EXPECT_EQ(255, result.status);
  EXPECT_EQ(
      "Unable to extract embedded files from the launcher. Error writing file = 21 There may not "
      "be enough temporary disk space. Try using -cv:tempdir to use a temporary directory on a "
      "partition with more disk space.\n",
      result.out);
  EXPECT_EQ(std::vector<std::string>{"taken/"}, test::listTree(currentDir()));
}

TEST_F(Extract, TheExtractedInputFileRunsTheSameSetup) {
  embedSetup("exit 12");
  expectLeftovers();
  ASSERT_EQ(0, run({"-cv:extract"}).status);
  EXPECT_EQ(12, run({"-cv:in", "input.tag"}).status);
}

}  // namespace
}  // namespace e2e
