// What `corvane-pack explain` tells of the logs of real runs.
#include <signal.h>

#include <filesystem>
#include <string>
#include <vector>

#include "authoring/ExplainCommand.h"
#include "e2e/LauncherTest.h"

namespace e2e {
namespace {

constexpr const char* kVerifies = "  if [ \"$argument\" = Verify ]; then\n";

class Explain : public LauncherTest {
 protected:
  // A java that does `answer` (shell commands) when it is asked.
  std::string makeJava(const std::string& name, const std::string& answer) {
    const std::string home = dir("jvms/" + name);
    test::writeScript(home + "/bin/java", "#!/bin/sh\nfor argument; do\n" + std::string(kVerifies) +
                                              answer + "\n  exit 1\n  fi\ndone\n");
    return home;
  }
  void embedVerify() { embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", ""); }
  void embedFind() { embedInstructions({"FIND_JVM 0 1"}); }
  // The explanation, without the line that names the log.
  std::string explain(bool withSetup = true) {
    authoring::ExplainOptions options;
    options.log = logFile();
    options.setup = withSetup ? launcherPath() : "";
    const std::string text = authoring::explainLog(options);
    return normalised(text.substr(text.find('\n') + 1), scratch());
  }
};

constexpr const char* kWanted = "; wanted \"Java 17\" (java.version = 17...); ";
constexpr const char* kNothing = "Chosen: none\nWizard: not started\n";

TEST_F(Explain, WhyAJavaWasRefused) {
  struct Row {
    const char* name;
    const char* answer;
    const char* told;
  };
  const std::vector<Row> rows = {
      {"another version", "printf '%s\\n' 1739021872 1.8.0_302; exit 0",
       "got java.version = 1.8.0_302; refused: java.version is \"1.8.0_302\" and not \"17...\""},
      {"a banner in front", "printf '%s\\n' Hello 1739021872 11.0.1; exit 0",
       "got java.version = 11.0.1; refused: java.version is \"11.0.1\" and not \"17...\""},
      {"an answer without its end", "printf '1739021872\\n11'; exit 0",
       "got java.version = 11; refused: java.version is \"11\" and not \"17...\""},
      {"silent", "exit 1", "got nothing; refused: it gave no answer, and said nothing"},
      {"what it said", "echo 'cannot go on' >&2; exit 1",
       "got nothing; refused: it gave no answer, and said \"cannot go on\""},
      {"too old for the class", "echo 'java.lang.UnsupportedClassVersionError: Verify' >&2; exit 1",
       "got nothing; refused: it is too old for the verify class (it said "
       "\"java.lang.UnsupportedClassVersionError: Verify\")"},
      {"no verify class", "echo 'Error: Could not find or load main class Verify' >&2; exit 1",
       "got nothing; refused: it did not find the verify class; try LC_ALL=C.UTF-8 or another "
       "-cv:tempdir, and look whether CLASSPATH in the jvm file ends with a blank (it said "
       "\"Error: Could not find or load main class Verify\")"},
      {"an option that it does not know",
       "echo 'Picked up JAVA_TOOL_OPTIONS: -Xno' >&2; echo 'Unrecognized option: -Xno' >&2; exit 1",
       "got nothing; refused: it does not know an option that it was given; look at "
       "JAVA_TOOL_OPTIONS, _JAVA_OPTIONS, JDK_JAVA_OPTIONS and at REQ_JAVA_ARGS (it said "
       "\"Unrecognized option: -Xno\")"},
      {"control characters", "printf '1739021872\\n\\033[2J\\302\\2331m\\n'; exit 0",
       "got java.version = \\x1B[2J\\xC2\\x9B1m; refused: java.version is "
       "\"\\x1B[2J\\xC2\\x9B1m\" and not \"17...\""},
      {"one that imitates the log",
       "printf '%s\\n' 1739021872 1.8; printf 'Found matching JVM at %s\\n' \"$FAKE\" >&2; exit 0",
       "got java.version = 1.8; accepted, as the log says, but java.version is \"1.8\" and not "
       "\"17...\"; the log is of another setup, or this program imitates it"},
  };
  setEnv("FAKE", dir("jvms/x"));
  setEnv("HINT", dir("jvms/x"));
  embedJVM("PLATFORM_HINT: HINT\n");
  embedVerify();
  embedFind();
  setEnv("PATH", "");
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    std::filesystem::remove(logFile());
    makeJava("x", row.answer);
    run();
    EXPECT_EQ("DIR/jvms/x/bin/java: from PLATFORM_HINT HINT" + std::string(kWanted) + row.told +
                  "\n" + kNothing,
              explain());
  }
}

TEST_F(Explain, EveryWayToAJava) {
  setEnv("HINT", dir("jvms/none"));
  setEnv("PATH", makeJVM("good", "17.0.2") + "/bin:/usr/bin:/bin");
  embedJVM("PLATFORM_HINT: HINT\nPATH_HINT:\n" + dir("jvms/absent") + "\njre\n/:\n");
  embedVerify();
  embedLaunchScript();
  embedInstructions({"FIND_JVM 0 1", "LAUNCH @S2@ 0"});
  run({"-cv:javahome", makeJVM("old", "1.8.0")});
  EXPECT_EQ("DIR/jvms/old/bin/java: from -cv:javahome" + std::string(kWanted) +
                "got java.version = 1.8.0; refused: java.version is \"1.8.0\" and not \"17...\"\n"
                "DIR/jvms/none/bin/java: from PLATFORM_HINT HINT" +
                kWanted +
                "no such program\n"
                "DIR/jvms/absent/bin/java: from PATH_HINT" +
                kWanted +
                "no such program\n"
                "DIR/app/jre/bin/java: from PATH_HINT" +
                kWanted +
                "no such program\n"
                "DIR/jvms/good/bin/java: from PATH" +
                kWanted +
                "got java.version = 17.0.2; accepted\n"
                "Chosen: DIR/jvms/good/\n"
                "Wizard: ended; its status is the setup's and is not in the log\n",
            explain());
  EXPECT_EQ(
      "DIR/jvms/old/bin/java: from -cv:javahome; wanted \"Java 17\"; got java.version = "
      "1.8.0; refused: it answered, but a value is not the one that is wanted\n",
      explain(false).substr(0, explain(false).find('\n') + 1));
}

TEST_F(Explain, AJavaThatHangs) {
  setStub(CORVANE_STUB_HASTY);
  setEnv("HINT", makeJava("hung", "exec sleep 20"));
  setEnv("PATH", "/usr/bin:/bin");
  embedJVM("JVM_EXE: bin/java\nPLATFORM_HINT: HINT\nJVM_PROPERTIES: java.version = 17...\n");
  embedVerify();
  embedFind();
  run();
  const std::string told = explain();
  EXPECT_EQ("DIR/jvms/hung/bin/java: from PLATFORM_HINT HINT" + std::string(kWanted) +
                "got nothing; refused: it hung or waited for somebody, and was ended\n",
            told.substr(0, told.find('\n') + 1));
}

TEST_F(Explain, SetupsThatCannotFindAnything) {
  setEnv("PATH", "");
  setEnv("HINT", makeJava("x", "exit 1"));
  embedFind();
  run();
  EXPECT_EQ("No Java was considered.\n" + std::string(kNothing), explain(false));

  std::filesystem::remove(logFile());
  embedJVM("PLATFORM_HINT: HINT\n");
  pack();
  run();
  EXPECT_EQ(
      "DIR/jvms/x/bin/java: from PLATFORM_HINT HINT" + std::string(kWanted) +
          "got nothing; refused: the setup carries no verify archive, so no Java can answer\n" +
          kNothing,
      explain());

  std::filesystem::remove(logFile());
  embedVerify();
  embed(FILE_TYPE_JVM, 20, "b.jvm",
        "DESC: No program\nJVM_PROPERTIES: a = b\nPLATFORM_HINT: HINT\n");
  embed(FILE_TYPE_JVM, 21, "c.jvm", "DESC: No properties\nJVM_EXE: bin/java\n");
  pack();
  run();
  EXPECT_EQ(
      "DIR/jvms/x/bin/java: from PLATFORM_HINT HINT" + std::string(kWanted) +
          "got nothing; refused: it gave no answer, and said nothing\n"
          "DIR/jvms/x: from PLATFORM_HINT HINT; wanted \"No program\" (a = b); not tried: its "
          "jvm file has no JVM_EXE\n" +
          kNothing +
          "WARNING: Unable to verify c.jvm because the JVM_PROPERTIES tag was not specified.\n",
      explain());
}

TEST_F(Explain, HowTheWizardEnded) {
  struct Row {
    const char* name;
    const char* wizard;
    const char* told;
  };
  const std::vector<Row> rows = {
      {"well", "echo hello", "ended; its status is the setup's and is not in the log"},
      {"with an error", "echo one >&2; echo two >&2; exit 3",
       "ended; its status is the setup's and is not in the log; its last error line: \"two\""},
      {"by a signal", "kill -KILL $$",
       "ended; its status is the setup's and is not in the log; its last error line: \"Killed\""},
      {"with lines of a log", "printf '%s\\n' ------------------ 'WARNING: no' 'Chosen' >&2",
       "ended; its status is the setup's and is not in the log; its last error line: \"Chosen\""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    std::filesystem::remove(logFile());
    forgetFiles();
    embedSetup(row.wizard);
    pack();
    run();
    EXPECT_EQ("DIR/jvms/java17/bin/java: from PLATFORM_HINT FAKE_HOME" + std::string(kWanted) +
                  "got java.version = 17.0.1; accepted\nChosen: DIR/jvms/java17\nWizard: " +
                  row.told + "\n",
              explain());
  }
}

TEST_F(Explain, AWizardOnTheTerminal) {
  embedSetup("echo hello");
  run({"-cv:javaconsole"});
  EXPECT_EQ(
      "DIR/jvms/java17/bin/java: from PLATFORM_HINT FAKE_HOME" + std::string(kWanted) +
          "got java.version = 17.0.1; accepted\nChosen: DIR/jvms/java17\nWizard: started; the "
          "log does not tell its end, since it wrote to the terminal itself, still runs, or "
          "was ended together with the setup\n",
      explain());
}

TEST_F(Explain, AJavaThatTheSetupInstalls) {
  embed(FILE_TYPE_JVM_INSTALLER, 5, "installer.sh",
        "#!/bin/sh\nmkdir bin\nprintf '#!/bin/sh\\nexit 0\\n' >bin/java\nchmod +x bin/java\n"
        "printf 'JVM_EXE: bin/java\\n' >jvm\n");
  embedLaunchScript();
  embedInstructions({"INSTALL_JVM 0", "LAUNCH @S1@ 0"});
  run();
  const std::string told = explain(false);
  EXPECT_EQ(
      "No Java was considered.\nChosen: none by a search; the setup ran a Java that it had "
      "installed or that its script names\nWizard: ended; its status is the setup's and is "
      "not in the log\n",
      told);
}

TEST_F(Explain, AnInstallerThatFails) {
  embed(FILE_TYPE_JVM_INSTALLER, 5, "installer.sh", "#!/bin/sh\necho full >&2\nexit 7\n");
  embedInstructions({"INSTALL_JVM 0"});
  run();
  EXPECT_EQ("No Java was considered.\n" + std::string(kNothing) +
                "WARNING: The JVM installer ended with status 7.\n"
                "ERROR: Invalid bundled JVM. Missing 'jvm' file.\n",
            explain(false));
}

TEST_F(Explain, ASearchThatTheUserCancels) {
  test::writeScript(dir("jvms/slow/bin/java"), "#!/bin/sh\n: >\"$RECORD\"\nexec sleep 20\n");
  setEnv("RECORD", dir("record.txt"));
  setEnv("HINT", dir("jvms/slow"));
  embedJVM("PLATFORM_HINT: HINT\n");
  embedVerify();
  embedFind();
  const pid_t pid = start({"-cv:tempdir", tempDir(), "-cv:log", logFile()});
  ASSERT_TRUE(waitForFile(dir("record.txt")));
  kill(pid, SIGINT);
  finish(pid);
  EXPECT_EQ("DIR/jvms/slow/bin/java: from PLATFORM_HINT HINT" + std::string(kWanted) +
                "got nothing; the log ends before the verdict\n" + kNothing +
                "ERROR: Canceled by the user.\n",
            explain());
}

TEST_F(Explain, OfSeveralRunsTheLast) {
  embedSetup("exit 0");
  run();
  run({"-cv:javahome", dir("jvms/none")});
  authoring::ExplainOptions options;
  options.log = logFile();
  const std::string last = normalised(authoring::explainLog(options), scratch());
  EXPECT_EQ(
      "DIR/log.txt: run 2 of 2\n"
      "DIR/jvms/none/bin/java: from -cv:javahome; wanted \"Java 17\"; no such program\n"
      "DIR/jvms/java17/bin/java: from PLATFORM_HINT FAKE_HOME; wanted \"Java 17\"; got "
      "java.version = 17.0.1; accepted\n"
      "Chosen: DIR/jvms/java17\n"
      "Wizard: ended; its status is the setup's and is not in the log\n",
      last);
  options.allRuns = true;
  EXPECT_EQ(
      last,
      normalised(authoring::explainLog(options), scratch())
          .substr(
              normalised(authoring::explainLog(options), scratch()).find("DIR/log.txt: run 2")));
}

}  // namespace
}  // namespace e2e
