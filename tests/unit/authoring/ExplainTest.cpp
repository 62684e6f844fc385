// explain on logs that no run has made so: other machines', cut ones, hostile ones, no logs at all.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "authoring/AuthoringError.h"
#include "authoring/ExplainCommand.h"
#include "support/ArchiveFixture.h"

namespace {

using authoring::AuthoringError;
using authoring::explainLog;
using authoring::ExplainOptions;

constexpr const char* kWhole =
    "------------------\n"
    "file type: 5\n  file id: 3\n  length: 2\n  offset: 7\n  file name: verify.jar\n"
    "Finding a JVM\n"
    "Checking user specified Java home directory => jdk\n"
    "Verifying JVM at /w/jdk/bin/java\n   for JVM: Java 17\n"
    "/w/jdk/bin/java does not exist\n"
    "Initiating JVM search based on hints...\n"
    "Searching for Java 17 using platform hints\n"
    "Checking JVM at /opt/8 which was resolved from platform hint JAVA_HOME\n"
    "Verifying JVM at /opt/8/bin/java\n   for JVM: Java 17\n"
    "Executing launch script command: \"/opt/8/bin/java\" -cp \"/t/verify.jar\"   \"Verify\" "
    "java.version os.arch in working directory /s\n"
    "Output from the launch script execution\n"
    "StdOut:\n1739021872\n1.8.0\namd64\n\nErrOut:\n\n"
    "Searching for Java 17 using path hints\n"
    "Checking path hint /opt/17\n"
    "Verifying JVM at /opt/17/bin/java\n   for JVM: Java 17\n"
    "Executing launch script command: \"/opt/17/bin/java\" -cp \"/t/verify.jar\"   \"Verify\" "
    "java.version os.arch in working directory /s\n"
    "Output from the launch script execution\n"
    "StdOut:\n1739021872\n17.0.1\namd64\n\nErrOut:\n\n"
    "Found matching JVM at /opt/17\n"
    "Matching JVM home is /opt/17\n"
    "Matching JVM file is /t/cvj1\n"
    "Executing launch script command: \"/opt/17/bin/java\" Wizard in working directory /s\n"
    "Output from the launch script execution\n"
    "StdOut:\n\nErrOut:\nbad\n\n";

class ExplainTest : public testing::Test {
 protected:
  std::string explain(const std::string& log, bool json = false) {
    ExplainOptions options;
    options.log = test::writeFile(m_dir / "log", log);
    options.json = json;
    const std::string text = explainLog(options);
    return test::replaced(text, m_dir.path(), "DIR");
  }
  std::string errorOf(const std::string& log) {
    return test::replaced(test::errorOf<AuthoringError>([&] { explain(log); }), m_dir.path(),
                          "DIR");
  }

  test::TempDir m_dir;
};

TEST_F(ExplainTest, ForPrograms) {
  const std::string setup =
      test::launcherFileBytes({{1, 2, "java17.jvm",
                                "DESC: Java 17\nJVM_EXE: bin/java\nJVM_PROPERTIES:\n"
                                "java.version = 17...\nos.arch = amd64\nnonsense\n/:\n"}});
  ExplainOptions options;
  options.log = test::writeFile(m_dir / "log", kWhole);
  options.setup = test::writeFile(m_dir / "setup", setup);
  options.json = true;
  EXPECT_EQ(R"({
  "log": "DIR/log",
  "runsInLog": 1,
  "runs": [
    {
      "run": 1,
      "candidates": [
        {
          "program": "/w/jdk/bin/java",
          "from": "user-home",
          "hint": null,
          "description": "Java 17",
          "jvmFile": "java17.jvm",
          "wanted": {
            "java.version": "17...",
            "os.arch": "amd64"
          },
          "got": null,
          "verdict": "not-there",
          "explanation": "no such program"
        },
        {
          "program": "/opt/8/bin/java",
          "from": "platform-hint",
          "hint": "JAVA_HOME",
          "description": "Java 17",
          "jvmFile": "java17.jvm",
          "wanted": {
            "java.version": "17...",
            "os.arch": "amd64"
          },
          "got": {
            "java.version": "1.8.0",
            "os.arch": "amd64"
          },
          "verdict": "other-values",
          "explanation": "refused: java.version is \"1.8.0\" and not \"17...\""
        },
        {
          "program": "/opt/17/bin/java",
          "from": "path-hint",
          "hint": null,
          "description": "Java 17",
          "jvmFile": "java17.jvm",
          "wanted": {
            "java.version": "17...",
            "os.arch": "amd64"
          },
          "got": {
            "java.version": "17.0.1",
            "os.arch": "amd64"
          },
          "verdict": "accepted",
          "explanation": "accepted"
        }
      ],
      "chosenHome": "/opt/17",
      "chosenFile": "/t/cvj1",
      "wizards": [
        {
          "command": "\"/opt/17/bin/java\" Wizard",
          "ended": true,
          "lastError": "bad"
        }
      ],
      "problems": [],
      "whole": true
    }
  ]
}
)",
            test::replaced(explainLog(options), m_dir.path(), "DIR"));
}

TEST_F(ExplainTest, WithoutASetup) {
  EXPECT_EQ(
      "DIR/log: 1 run\n"
      "/w/jdk/bin/java: from -cv:javahome; wanted \"Java 17\"; no such program\n"
      "/opt/8/bin/java: from PLATFORM_HINT JAVA_HOME; wanted \"Java 17\"; got java.version = "
      "1.8.0, "
      "os.arch = amd64; refused: it answered, but a value is not the one that is wanted\n"
      "/opt/17/bin/java: from PATH_HINT; wanted \"Java 17\"; got java.version = 17.0.1, os.arch = "
      "amd64; accepted\n"
      "Chosen: /opt/17\n"
      "Wizard: ended; its status is the setup's and is not in the log; its last error line: "
      "\"bad\"\n"
      "To see what was wanted, add --setup with the setup file.\n",
      explain(kWhole));
}

TEST_F(ExplainTest, ALogFromAnEditorThatWritesCarriageReturns) {
  EXPECT_EQ(explain(kWhole), explain(test::replaced(kWhole, "\n", "\r\n")));
}

TEST_F(ExplainTest, Finds) {
  EXPECT_EQ(
      "DIR/log: 1 run\n"
      "/a/bin/java: from the scan of the disks; not tried as root: /a: everybody can write there; "
      "name its home with -cv:javahome if you trust it\n"
      "/b/bin/java: from the scan of the disks; not tried: it lies in the mount /b of type nfs; "
      "name its home with -cv:javahome\n"
      "Chosen: none\nWizard: not started\n",
      explain(
          "------------------\nFinding a JVM\nBeginning exhaustive search\n"
          "WARNING: Not trusted and not tried as root: /a/bin/java because of /a: everybody can "
          "write there\n"
          "Not tried: /b/bin/java because it lies in the mount /b of type nfs\n"));
}

TEST_F(ExplainTest, AShellThatDoesNotStart) {
  EXPECT_EQ(
      "DIR/log: 1 run\n"
      "/a/java: from VERIFY; wanted \"J\"; got nothing; refused: it could not be started (Error "
      "starting /bin/sh: Cannot allocate memory)\n"
      "Chosen: none\nWizard: not started\n",
      explain("------------------\nVerifying JVM at /a/java\n   for JVM: J\n"
              "Executing launch script command: \"/a/java\" \"Verify\" in working directory /\n"
              "Output from the launch script execution\nStdOut:\n\nErrOut:\n\n"
              "WARNING: Error starting /bin/sh: Cannot allocate memory\n"
              "ERROR: Invalid magic value: \n\nIn VERIFY, the jvm is invalid.\n"));
}

TEST_F(ExplainTest, TheErrorAboveAStackTrace) {
  EXPECT_EQ(
      "DIR/log: 1 run\nNo Java was considered.\nChosen: none by a search; the setup ran a Java "
      "that it had installed or that its script names\nWizard: ended; its status is the "
      "setup's and is not in the "
      "log; its last error line: \"Caused by: java.io.IOException: No space\"\n",
      explain("------------------\nExecuting launch script command: java Wizard in working "
              "directory /\n"
              "Output from the launch script execution\nStdOut:\n\nErrOut:\n"
              "Exception in thread \"main\" java.lang.IllegalStateException\n\tat "
              "Wizard.main(Wizard.java:1)\n"
              "Caused by: java.io.IOException: No space\n\tat Wizard.write(Wizard.java:2)\n"
              "\t... 1 more\n\n"));
}

TEST_F(ExplainTest, WhatIsNoLog) {
  const std::vector<std::string> rows = {"",
                                         "\n",
                                         "hello\n",
                                         "WARNING: a program warns\n",
                                         std::string(100000, '\0'),
                                         "\x7F"
                                         "ELF",
                                         "------------------\nhello\n"};
  for (const std::string& row : rows) {
    SCOPED_TRACE(row.substr(0, 20));
    EXPECT_EQ("DIR/log is no log of a setup; start the setup with -cv:log FILE and name that file",
              errorOf(row));
  }
}

TEST_F(ExplainTest, SetupsThatDoNotHelp) {
  ExplainOptions options;
  options.log = test::writeFile(m_dir / "log", kWhole);
  options.setup = test::writeFile(m_dir / "setup", test::launcherFileBytes({}));
  EXPECT_EQ(options.setup + " carries no jvm file; name the setup that has written the log",
            test::errorOf<AuthoringError>([&] { explainLog(options); }));
}

// A log may be cut anywhere, at its beginning by a tool that keeps the end alone.
TEST_F(ExplainTest, EveryPartOfALog) {
  const std::string whole = kWhole;
  for (std::size_t cut = 0; cut < whole.size(); cut += 5) {
    for (const std::string& part : {whole.substr(0, cut), whole.substr(cut)}) {
      const std::string error = test::errorOf<AuthoringError>([&] { explain(part); });
      EXPECT_TRUE(error.empty() || error.find(" is no log of a setup; ") != error.npos) << error;
    }
  }
  const std::string cutInLine = explain(whole.substr(0, whole.find("Matching JVM home") + 5));
  EXPECT_NE(std::string::npos,
            cutInLine.find("The log ends within a line: it was cut, or is being written.\n"));
}

// Each byte of a log may be any byte.
TEST_F(ExplainTest, NothingReachesTheTerminalRaw) {
  const std::string whole = kWhole;
  for (std::size_t at = 0; at < whole.size(); at += 11) {
    for (const char byte : {'\x1B', '\0', '\x9B', '\xFF', '\n', '\r'}) {
      std::string log = whole;
      log[at] = byte;
      ExplainOptions options;
      options.log = test::writeFile(m_dir / "log", log);
      for (const bool json : {false, true}) {
        options.json = json;
        std::string text;
        test::errorOf<AuthoringError>([&] { text = explainLog(options); });
        EXPECT_EQ(std::string::npos, text.find_first_of("\x1B\x9B\xFF\r")) << at;
        EXPECT_EQ(std::string::npos, text.find('\0')) << at;
      }
    }
  }
}

TEST_F(ExplainTest, LongLinesAndManyLines) {
  const std::string begin =
      "------------------\nVerifying JVM at /" + std::string(1000000, 'x') +
      "\n   for JVM: J\nExecuting launch script command: java \"Verify\" p in working directory w\n"
      "Output from the launch script execution\nStdOut:\n1739021872\n";
  std::string errors = "ErrOut:\n";
  for (int i = 0; i < 100000; ++i) {
    errors += "line\n";
  }
  EXPECT_EQ(
      "DIR/log: 1 run\n/" + std::string(299, 'x') +
          "...: from VERIFY; wanted \"J\"; got p = v; refused: it answered, but a value is not "
          "the one that is wanted\nChosen: none\nWizard: not started\n"
          "To see what was wanted, add --setup with the setup file.\n",
      explain(begin + "v\nmore\n" + errors));
}

}  // namespace
