// Whole runs: the wizard's status and output, the log, odd surroundings, Ctrl-C.
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "e2e/LauncherTest.h"

namespace fs = std::filesystem;

namespace e2e {
namespace {

class Run : public LauncherTest {};

TEST_F(Run, ExitCodesAndErrorTextByPurpose) {
  struct Row {
    int purpose;
    int code;
    bool told;
  };
  // QUIRK(quiet-232)
  const Row rows[] = {{0, 0, false},   {1, 0, false},   {0, 3, true},   {1, 3, true},
                      {2, 3, true},    {0, 232, false}, {1, 232, true}, {2, 232, false},
                      {3, 232, true},  {0, 231, true},  {2, 233, true}, {0, 255, true},
                      {255, 232, true}};
  embedSetup("echo it broke >&2; exit $CODE");
  for (const Row& row : rows) {
    SCOPED_TRACE(std::to_string(row.purpose) + " " + std::to_string(row.code));
    setPurpose(row.purpose);
    setEnv("CODE", std::to_string(row.code));
    pack();
    const Result result = run();
    EXPECT_EQ(row.code, result.status);
    EXPECT_EQ(row.told ? "Sample\nit broke\n\n" : "Sample\n", result.out);
    EXPECT_EQ("", result.err);
  }
}

// What the last wizard said is shown behind whatever else failed.
TEST_F(Run, ErrorTextBehindAnotherFailure) {
  struct Row {
    const char* name;
    std::vector<std::string> lines;  // behind the first wizard, which says so
    int status;
    const char* out;
  };
  const Row rows[] = {
      {"nothing failed", {"// done"}, 0, ""},
      {"an error in the script",
       {"NONSENSE"},
       255,
       "Error in instructions. Invalid command (NONSENSE).  Line number (3)\nit broke\n\n"},
      {"an operation that fails",
       {"INSTALL_JVM 0"},
       255,
       "No JVM installer was included in the launcher.\nit broke\n\n"},
      {"a wizard that does not start", {"ILAUNCH 99 0"}, 255, "it broke\n\n"},
      {"a wizard without its jvm file",
       {"LAUNCH none 0"},
       255,
       "Unable to load input file: none\nit broke\n\n"},
      {"a second wizard says nothing", {"LAUNCH @S2@ 0", "ILAUNCH 99 0"}, 255, ""},
  };
  setPurpose(0);
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    forgetFiles();
    fs::remove(dir("record.txt"));
    embedSetup("[ -f \"$RECORD\" ] || echo it broke >&2; : >\"$RECORD\"");
    forgetFiles(FILE_TYPE_INSTRUCTIONS);
    std::vector<std::string> lines{"FIND_JVM 0 0", "LAUNCH @S2@ 0"};
    lines.insert(lines.end(), row.lines.begin(), row.lines.end());
    embedInstructions(lines);
    pack();
    const Result result = run();
    EXPECT_EQ(row.status, result.status);
    EXPECT_EQ("Sample\n" + std::string(row.out), result.out);
  }
}

// A death by a signal is no success, with a shell in between or without one.
TEST_F(Run, AWizardThatASignalEnds) {
  for (const char* exec : {"", "exec "}) {
    for (const int number : {SIGKILL, SIGTERM, SIGSEGV, SIGINT}) {
      SCOPED_TRACE(exec + std::to_string(number));
      forgetFiles();
      embedSetup("ulimit -c 0; echo it broke >&2; kill -" + std::to_string(number) + " $$");
      forgetFiles(FILE_TYPE_LAUNCH_SCRIPT);
      embed(FILE_TYPE_LAUNCH_SCRIPT, 2, "setup.lsc",
            "DESC: Sample\nCOMMAND: \"" + std::string(exec) +
                "\"\"@JVM_HOME@/@JVM_EXE@\"\" Wizard\"\n");
      pack();
      const Result result = run();
      EXPECT_EQ(128 + number, result.status);
      EXPECT_EQ(0U, result.out.find("Sample\nit broke\n"));
    }
  }
}

TEST_F(Run, SilentSuppressesTheErrorText) {
  embedSetup("echo it broke >&2; exit 3");
  const Result result = run({"-cv:silent"});
  EXPECT_EQ(3, result.status);
  EXPECT_EQ("", result.out);
}

TEST_F(Run, TheLogTellsTheWholeStory) {
  embedSetup("echo done; echo careful >&2; exit 3");
  const Result result = run({"-silent", "two \"words\""});
  EXPECT_EQ(3, result.status);
  EXPECT_EQ(0u, result.log.find("------------------\nfile type: 1\n  file id: 10\n  length: "));
  EXPECT_EQ(
      "Finding a JVM\n"
      "Initiating JVM search based on hints...\n"
      "Searching for Java 17 using platform hints\n"
      "Checking JVM at DIR/jvms/java17 which was resolved from platform hint FAKE_HOME\n"
      "Verifying JVM at DIR/jvms/java17/bin/java\n"
      "   for JVM: Java 17\n"
      "Executing launch script command: \"DIR/jvms/java17/bin/java\" -cp "
      "\"DIR/temp/cvj#/verify.jar\"   \"Verify\" java.version in working directory DIR/app\n"
      "Output from the launch script execution\n"
      "StdOut:\n"
      "1739021872\n"
      "17.0.1\n"
      "\n"
      "ErrOut:\n"
      "\n"
      "Found matching JVM at DIR/jvms/java17\n"
      "Matching JVM home is DIR/jvms/java17\n"
      "Matching JVM file is DIR/temp/cvj#\n"
      "Executing launch script command: \"DIR/jvms/java17/bin/java\" -cp wizard.jar Wizard "
      "\"-silent\" \"two \\\"words\\\"\" in working directory DIR/app\n"
      "Output from the launch script execution\n"
      "StdOut:\n"
      "done\n"
      "\n"
      "ErrOut:\n"
      "careful\n"
      "\n",
      normalised(withoutIndex(result.log), scratch()));
}

TEST_F(Run, TheWizardsEnvironmentAndFolder) {
  embedSetup("{ pwd; echo \"$JAVA_HOME\"; } >\"$RECORD\"");
  EXPECT_EQ(0, run().status);
  EXPECT_EQ(dir("app") + "\n" + dir("jvms/java17") + "\n", test::readFile(dir("record.txt")));
}

TEST_F(Run, MuchOutputBlocksNobody) {
  embedSetup("head -c 3000000 /dev/zero | tr '\\0' x; exit 4");
  const Result result = run();
  EXPECT_EQ(4, result.status);
  EXPECT_NE(std::string::npos, result.log.find(std::string(3000000, 'x')));
}

TEST_F(Run, NoSuitableJVM) {
  setEnv("FAKE_HOME", makeJVM("java8", "1.8.0"));
  embedJVM("PLATFORM_HINT: FAKE_HOME\n");
  embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "");
  const char* script[] = {"FIND_JVM 0 1", "ILAUNCH 99 0"};
  embedInstructions({script[0], script[1]});
  const Result own = run();
  EXPECT_EQ(255, own.status);
  EXPECT_EQ(
      "A suitable JVM could not be found. Please run the program again using the option "
      "-cv:javahome <JAVA HOME DIR>\n",
      own.out);
  embed(FILE_TYPE_JVM_MESSAGE, 3, "message", "MESSAGE:\nGet Java 17.\nAnd more.\n/:\n");
  pack();
  EXPECT_EQ("Get Java 17.\n", run().out);
  EXPECT_EQ("", run({"-cv:silent"}).out);
}

// QUIRK(first-status-unseen)
TEST_F(Run, TheStatusLineComesBeforeTheConsoleIsSwitchedOn) {
  struct Row {
    std::vector<std::string> lines;
    const char* out;
  };
  const Row rows[] = {
      {{"FIND_JVM 1 0"}, "\nSearching for Java(tm) Virtual Machine...\n\n"},
      {{"FIND_JVM 0 0", "FIND_JVM 1 0"}, "\n"},
      {{"FIND_JVM 0 0", "INITIALIZE_UI", "FIND_JVM 1 0"},
       "\nSearching for Java(tm) Virtual Machine...\n\n"},
      {{"INITIALIZE_UI"}, "\nInitializing ...\n\n"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.lines.front());
    forgetFiles();
    embedInstructions(row.lines);
    pack();
    EXPECT_EQ(row.out, run().out);
  }
}

TEST_F(Run, BadLauncherFiles) {
  struct Row {
    const char* name;
    std::function<void()> write;
    const char* message;
  };
  const auto trailer = [](std::int64_t offset) {
    return test::bigEndian32(offset) + "\xCA\x82\xCA\x82";
  };
  const std::string stub = test::readFile(stubOf(CORVANE_STUB));
  const auto size = static_cast<std::int64_t>(stub.size());
  const auto file = [&](const std::string& tail) {
    return [this, &stub, tail] { test::writeScript(launcherPath(), stub + tail); };
  };
  const Row rows[] = {
      {"index beyond the end", file("\1" + trailer(size + 1000)), "Unable to read the file count."},
      {"negative offset", file("\1" + trailer(-1)), "Invalid file index offset."},
      {"bad type", file(test::bigEndian32(1) + "\x09" + trailer(size)),
       "Invalid file type in file index."},
      {"cut index", file(test::bigEndian32(1) + std::string(1, '\0') + trailer(size)),
       "Unable to load offset to file bytes."},
  };
  usePackedFile();
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    row.write();
    fs::remove(logFile());
    const std::string text =
        "Unable to load the launcher file index. " + std::string(row.message) + "\n";
    for (const std::vector<std::string>& args : {std::vector<std::string>{}, {"-cv:extract"}}) {
      const Result result = run(args);
      EXPECT_EQ(255, result.status);
      EXPECT_EQ(text, result.out);
    }
    EXPECT_EQ("------------------\nERROR: " + text + "------------------\nERROR: " + text,
              test::readFile(logFile()));
  }
}

TEST_F(Run, BadScripts) {
  struct Row {
    std::vector<std::string> lines;
    const char* out;
  };
  const Row rows[] = {
      {{"// fine", "FIND_JAVA 1 1"},
       "Error in instructions. Invalid command (FIND_JAVA).  Line number (2)\n"},
      {{"GOTO nowhere"}, "Error in instructions. Label not found (nowhere) Line number (1)\n"},
      {{":first", "GOTO first"},
       "Error in instructions. Label not found (first) Line number (2)\n"},
      {{"LAUNCH x 0"}, "\n"},
      {{"ILAUNCH 5 0"}, "\n"},
      {{"INSTALL_JVM 0"}, "No JVM installer was included in the launcher.\n"},
      {{"VERIFY 0 0 77"}, "Cannot verify jvm file at index 77 because it does not exist.\n"},
      {{"VERIFY 0 0 1"},
       "To verify a JVM, use an index of a jvm file. The index passed in was 1 which corresponds "
       "to "
       "the file named setup.ins\n"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.lines.back());
    forgetFiles();
    embedInstructions(row.lines);
    pack();
    const Result result = run();
    EXPECT_EQ(255, result.status);
    EXPECT_EQ(row.out, result.out);
  }
}

TEST_F(Run, ASyntaxErrorInAnEmbeddedFile) {
  embed(FILE_TYPE_JVM, 3, "broken.jvm", "DESC: x\nno colon here\n");
  const Result result = run();
  EXPECT_EQ(255, result.status);
  EXPECT_EQ(
      "Unable to load the launcher file index. Error loading instructions file.Syntax error in "
      "broken.jvm at line 2 ==> Missing colon at the end of the tag name.\n",
      result.out);
}

TEST_F(Run, AMissingTemporaryFolder) {
  embedSetup("exit 0");
  const Result result = runBare({"-cv:tempdir", dir("none")});
  EXPECT_EQ(255, result.status);
  EXPECT_EQ(
      "Sample\nCannot use " + dir("none") +
          " as the temp directory because it does not exist. Please run the program again "
          "using the option -cv:tempdir <temp dir> to specify a different directory to use.\n",
      result.out);
}

TEST_F(Run, OddPaths) {
  embedSetup("pwd >\"$RECORD\"; exit 5");
  for (const char* name :
       {"with blank/set up", "quote's \"double\"/setup",
        "gr\xC3\xBC\xC3\x9F/\xE8\xA8\xAD\xE5\xAE\x9A", "dollar $HOME `x`/a.b", "new\nline/setup"}) {
    SCOPED_TRACE(name);
    setLauncherPath(dir(name));
    pack();
    EXPECT_EQ(5, run().status);
    EXPECT_EQ(fs::path(dir(name)).parent_path().string() + "\n", test::readFile(dir("record.txt")));
  }
}

TEST_F(Run, RelativePathsOfTheLauncher) {
  embedSetup("exit 6");
  pack();
  for (const char* path : {"../app/setup", "./../app/setup", "../current/../app//setup"}) {
    SCOPED_TRACE(path);
    setLauncherPath(path);
    EXPECT_EQ(6, run().status);
  }
}

TEST_F(Run, AReadOnlyFolder) {
  embedSetup("exit 6");
  pack();
  chmod(dir("app").c_str(), 0555);
  EXPECT_EQ(6, run().status);
  chmod(dir("app").c_str(), 0755);
}

TEST_F(Run, TemporaryFolderWithBlanks) {
  embedSetup("exit 6");
  fs::create_directories(dir("a b"));
  EXPECT_EQ(6, runBare({"-cv:tempdir", dir("a b")}).status);
  EXPECT_TRUE(fs::is_empty(dir("a b")));
}

TEST_F(Run, SignalsReachTheWizardAndTheCleanUpRuns) {
  struct Row {
    int signal;
    const char* wizard;
    int status;
  };
  const Row rows[] = {
      {SIGTERM, "trap 'exit 9' TERM; : >\"$RECORD\"; while :; do sleep 0.05; done", 9},
      {SIGINT, "trap 'exit 8' INT; : >\"$RECORD\"; while :; do sleep 0.05; done", 8},
      {SIGHUP, "trap 'exit 7' HUP; : >\"$RECORD\"; while :; do sleep 0.05; done", 7},
  };
  embedSetup("eval \"$WIZARD\"");
  for (const Row& row : rows) {
    SCOPED_TRACE(row.wizard);
    fs::remove(dir("record.txt"));
    setEnv("WIZARD", row.wizard);
    const pid_t pid = start({"-cv:tempdir", tempDir()});
    ASSERT_TRUE(waitForFile(dir("record.txt")));
    kill(pid, row.signal);
    EXPECT_EQ(row.status, finish(pid).status);
  }
}

// The terminal that closes sends HUP to all: the run goes on, also to the next wizard.
TEST_F(Run, UnderNohupTheTerminalMayClose) {
  setEnv("GO", dir("go"));
  embedSetup(": >\"$RECORD\"; while [ ! -e \"$GO\" ]; do sleep 0.02; done; echo bye >&2; exit 7");
  forgetFiles(FILE_TYPE_INSTRUCTIONS);
  embedInstructions({"FIND_JVM 0 1", "LAUNCH @S2@ 0", "LAUNCH @S2@ 0"});
  setStartPath("/usr/bin/nohup");
  const pid_t pid = start({launcherPath(), "-cv:tempdir", tempDir()});
  ASSERT_TRUE(waitForFile(dir("record.txt")));
  kill(-pid, SIGHUP);
  test::writeFile(dir("go"), "");
  const Result result = finish(pid);
  EXPECT_EQ(7, result.status);
  EXPECT_EQ("Sample\nbye\n\n", result.out);
}

TEST_F(Run, AScriptThatLoopsForEverCanBeStopped) {
  for (const std::vector<std::string>& lines :
       {std::vector<std::string>{"// no label in the first line", ":again", "GOTO again"},
        {"SET S1 = a@@S1@@", "SET S2 = @S1@"}}) {
    SCOPED_TRACE(lines.back());
    forgetFiles();
    embedInstructions(lines);
    pack();
    fs::remove(logFile());
    const pid_t pid = start({"-cv:log", logFile()});
    ASSERT_TRUE(waitForFile(logFile()));
    usleep(50000);
    kill(pid, SIGINT);
    const Result result = finish(pid);
    EXPECT_EQ(-SIGINT, result.status);
    EXPECT_EQ("Canceled by the user.\n", result.out);
  }
}

}  // namespace
}  // namespace e2e
