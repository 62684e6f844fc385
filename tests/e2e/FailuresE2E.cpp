// Failures that must be told: results that get lost, memory that runs out, a launcher file that
// changes under the run, rights that the launcher should not have or give.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "e2e/LauncherTest.h"
#include "e2e/ScanFixture.h"
#include "support/Restrictions.h"

namespace fs = std::filesystem;

namespace e2e {
namespace {

class Failures : public LauncherTest {
 protected:
  // The end of a pipe that nobody reads any more.
  static constexpr const char* kBrokenPipe = "|";
  static void breakOutput() {
    int ends[2];
    if (pipe(ends) != 0 || dup2(ends[1], STDOUT_FILENO) != STDOUT_FILENO) {
      _exit(124);
    }
    close(ends[0]);
    close(ends[1]);
  }
  // Standard output from then on: a path, kBrokenPipe, or nothing at all.
  static void setOutput(const std::string& path) {
    if (path == kBrokenPipe) {
      breakOutput();
      return;
    }
    close(STDOUT_FILENO);
    if (!path.empty() && open(path.c_str(), O_WRONLY) != STDOUT_FILENO) {
      _exit(124);
    }
  }

  // Beside the log of the command line, that of the input file.
  std::string input(const std::string& tags) {
    return test::writeFile(dir("in.tag"), tags + "LOGFILE: " + logFile() + "\n");
  }

  std::string m_temp = tempDir();
};

// --- Results that get lost ---

TEST_F(Failures, AResultThatCannotBeWrittenIsAFailure) {
  struct Row {
    const char* name;
    std::string tags;  // of the input file; empty: "-cv:version"
  };
  embedSetup("exit 0");
  const std::string jvmFile = test::writeFile(
      dir("java.jvm"), "DESC: Java\nJVM_EXE: bin/java\nJVM_PROPERTIES: java.version=17...\n");
  const Row rows[] = {
      {"SEARCH", "ACTION: SEARCH\n"},
      {"SEARCH without a match", "ACTION: SEARCH\nJVM: \"\"\n"},
      {"VERIFY_JVM", "ACTION: VERIFY_JVM\nVERIFY_JVM_FILE: " + jvmFile +
                         "\nVERIFY_JVM_HOME: " + dir("jvms/java17") + "\n"},
      {"INSTALL_JVM", "ACTION: INSTALL_JVM\nINSTALL_JVM_EXE: echo X: y >jvm\nINSTALL_JVM_DEST: " +
                          dir("new") + "\n"},
      {"-cv:version", ""},
  };
  struct Output {
    std::string path;
    const char* reason;
  };
  const Output outputs[] = {{"/dev/full", "No space left on device"},
                            {"", "Bad file descriptor"},
                            {kBrokenPipe, "Broken pipe"}};
  fs::create_directories(dir("new"));
  for (const Row& row : rows) {
    for (const Output& output : outputs) {
      SCOPED_TRACE(std::string(row.name) + ", " + output.reason);
      fs::remove(logFile());
      setPrepareChild([&] { setOutput(output.path); });
      const Result result =
          row.tags.empty() ? run({"-cv:version"}) : run({"-cv:in", input(row.tags)});
      EXPECT_EQ(255, result.status);
      EXPECT_TRUE(result.log.ends_with(std::string("ERROR: Cannot write to standard output: ") +
                                       output.reason + "\n"))
          << result.log;
    }
  }
}

TEST_F(Failures, WhatIsNotAskedForMayGetLost) {
  embedSetup("exit 6");
  setPrepareChild([] { setOutput("/dev/full"); });
  EXPECT_EQ(6, run().status);
  EXPECT_EQ(0, run({"-cv:silent", "-cv:version"}).status);
}

// --- Files that are not whole ---

TEST_F(Failures, AJVMFileThatIsNotWholeIsAWriteError) {
  const std::string text =
      "Error writing file = 27 There may not be enough temporary disk space. Try using "
      "-cv:tempdir to use a temporary directory on a partition with more disk space.";
  embedSetup("exit 6");
  forgetFiles(FILE_TYPE_JVM);
  embedJVM("PLATFORM_HINT: FAKE_HOME\nFILLER: " + std::string(20000, 'x') + "\n");
  setPrepareChild([] { test::limit(RLIMIT_FSIZE, 12000); });
  const Result launched = run();
  EXPECT_EQ(255, launched.status);
  EXPECT_EQ("Sample\n" + text + "\n", launched.out);
  fs::remove(logFile());
  const Result searched = run({"-cv:in", input("ACTION: SEARCH\n")});
  EXPECT_EQ(0, searched.status);
  EXPECT_EQ("0\n", searched.out.substr(searched.out.size() - 2));
  EXPECT_TRUE(searched.log.ends_with("ERROR: " + text + "\n")) << searched.log;
}

TEST_F(Failures, ExtractWithoutItsInputTagWarnsInTheLog) {
  embedInstructions({"GOTO end", ":end"});
  fs::create_directory(currentDir() + "/input.tag");
  expectLeftovers();
  const Result result = run({"-cv:extract"});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ(".\n", result.out + result.err);
  EXPECT_TRUE(result.log.ends_with("WARNING: Could not write input.tag :  Is a directory\n"))
      << result.log;
}

// --- Memory ---

TEST_F(Failures, WithoutMemoryItSaysSoAndCleansUp) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer reserves more memory than the limit leaves";
#endif
  const std::vector<std::string> endless = {"SET S1 = " + std::string(1 << 20, 'a') + "@@S1@@",
                                            "SET S2 = @S1@"};
  for (const bool isSilent : {false, true}) {
    forgetFiles();
    embedSetup("exit 0");
    forgetFiles(FILE_TYPE_INSTRUCTIONS);
    embedInstructions({"FIND_JVM 0 0", endless[0], endless[1]});
    pack();
    setPrepareChild([] { test::limit(RLIMIT_AS, 64 << 20); });
    const Result result = isSilent ? run({"-cv:silent"}) : run();
    EXPECT_EQ(255, result.status);
    EXPECT_EQ("The launcher has run out of memory.\n", result.err);
    EXPECT_TRUE(result.log.ends_with("ERROR: The launcher has run out of memory.\n"));
  }
}

// --- The launcher file ---

TEST_F(Failures, OfALauncherFileThatWasReplacedNothingIsUsed) {
  struct Row {
    const char* name;
    const char* replace;  // what the wizard's verification does to "$SETUP"
    int status;
    const char* out;
  };
  const char* const stale =
      "Sample\nError writing file = 116 There may not be enough temporary disk space. Try using "
      "-cv:tempdir to use a temporary directory on a partition with more disk space.\n";
  const char* const gone =
      "Sample\nError writing file = 2 There may not be enough temporary disk space. Try using "
      "-cv:tempdir to use a temporary directory on a partition with more disk space.\n";
  const Row rows[] = {
      {"another file in its place", "cp \"$SETUP\" \"$SETUP.n\" && mv \"$SETUP.n\" \"$SETUP\"", 6,
       "Sample\n"},
      {"another content in its place", "echo other >\"$SETUP.n\" && mv \"$SETUP.n\" \"$SETUP\"", 6,
       "Sample\n"},
      {"cut short", "truncate -s -1 \"$SETUP\"", 255, stale},
      {"longer", "echo >>\"$SETUP\"", 255, stale},
      {"deleted", "rm \"$SETUP\"", 255, gone},
      // Device, inode and size are as before: that the wizard gets the new bytes is not noticed.
      {"written over in place, as long as before",
       "at=$(grep -abo 'the right bytes' \"$SETUP\" | cut -d: -f1); "
       "printf 'the wrong bytes' | dd of=\"$SETUP\" bs=1 seek=$at conv=notrunc status=none",
       1, "Sample\n"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    forgetFiles();
    embedSetup("exit 6");
    embed(FILE_TYPE_APPLICATION_ARCHIVE, 7, "app.zip", "PK the right bytes");
    forgetFiles(FILE_TYPE_LAUNCH_SCRIPT);
    embed(FILE_TYPE_LAUNCH_SCRIPT, 2, "setup.lsc",
          "DESC: Sample\nCOMMAND: \"grep -q right %APPLICATION_ARCHIVE%() && exit 6\"\n");
    test::writeScript(dir("jvms/java17/bin/java"),
                      "#!/bin/sh\neval \"$REPLACE\"\nprintf '%s\\n' 1739021872 17.0.1\n");
    setEnv("SETUP", launcherPath());
    setEnv("REPLACE", row.replace);
    pack();
    // A running program cannot be written to: a copy of it runs, which is told the file's name.
    fs::copy_file(launcherPath(), dir("runs"), fs::copy_options::overwrite_existing);
    setStartPath(dir("runs"));
    setProgramName(launcherPath());
    expectLeftovers();  // one that was deleted is missing
    const Result result = run();
    EXPECT_TRUE(fs::is_empty(tempDir()));
    EXPECT_EQ(row.status, result.status) << result.log;
    EXPECT_EQ(row.out, result.out);
  }
}

// --- The shell ---

// On a disk without one. A Java that cannot be tried is refused; what has to run is an error.
TEST_F(Scan, AShellThatDoesNotStartIsTold) {
  struct Row {
    const char* name;
    std::vector<std::string> lines;
    int status;
    const char* prefix;  // in the log
  };
  const std::string text = "Error starting /bin/sh: No such file or directory\n";
  const Row rows[] = {
      {"a verification", {"FIND_JVM 0 0", "JMP0 @N1@ none", "NONSENSE", ":none"}, 0, "WARNING: "},
      {"an installer", {"INSTALL_JVM 0"}, 255, "ERROR: "},
      {"a wizard", {"ILAUNCH 10 0"}, 255, "ERROR: "},
  };
  fs::remove(dir("jail/bin/sh"));
  embedJVM("PATH_HINT: " + place("/opt/java17", "17.0.1") + "\n");
  embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "");
  embed(FILE_TYPE_JVM_INSTALLER, 5, "install", "#!/bin/sh\n");
  embedLaunchScript();
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    forgetFiles(FILE_TYPE_INSTRUCTIONS);
    embedInstructions(row.lines);
    pack();
    const Result result = runInside({});
    EXPECT_EQ(row.status, result.status);
    EXPECT_EQ("Sample\n" + (row.status == 0 ? "" : text), result.out);
    EXPECT_NE(std::string::npos, result.log.find(row.prefix + text)) << result.log;
    EXPECT_TRUE(fs::is_empty(dir("jail/tmp")));
  }
}

// --- Rights ---

TEST_F(Failures, NothingThatWeCreateIsWritableForOthers) {
  embedSetup("");
  test::writeScript(dir("jvms/java17/bin/java"),
                    "#!/bin/sh\nprintf '%s\\n' 1739021872 17.0.1\n"
                    "find \"$TEMP\" \"$LOG\" -perm /022 >>\"$RECORD\"; umask >>\"$RECORD\"\n");
  setEnv("TEMP", m_temp);
  setEnv("LOG", logFile());
  for (const auto& [mask, shown] :
       std::vector<std::pair<mode_t, std::string>>{{0, "0000"}, {002, "0002"}, {077, "0077"}}) {
    SCOPED_TRACE(shown);
    fs::remove(dir("record.txt"));
    setPrepareChild([mask = mask] { umask(mask); });
    run();
    EXPECT_EQ(shown + "\n" + shown + "\n", test::readFile(dir("record.txt")));
  }
}

TEST_F(Failures, ATemporaryFolderThatOthersCanWriteIsAWarning) {
  struct Row {
    mode_t mode;
    bool warns;
  };
  embedSetup("exit 6");
  for (const Row& row : {Row{0755, false}, Row{0775, false}, Row{0777, true}, Row{01777, false}}) {
    SCOPED_TRACE(row.mode);
    fs::remove(logFile());
    ASSERT_EQ(0, chmod(tempDir().c_str(), row.mode));
    const Result result = run();
    EXPECT_EQ(6, result.status);
    const std::string warning = "WARNING: The temporary directory " + tempDir() +
                                " is open to everybody and has no sticky bit: others may replace "
                                "what is in it.\n";
    const std::size_t at = result.log.find(warning);
    EXPECT_EQ(row.warns, at != std::string::npos) << result.log;
    EXPECT_EQ(std::string::npos, result.log.find(warning, at + 1));
  }
}

TEST_F(Failures, WithBorrowedRightsItRefusesToRun) {
#ifdef CORVANE_COVERAGE
  GTEST_SKIP() << "a coverage build complains of the figures that it may not write then";
#endif
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the leak sanitizer cannot look into a program with borrowed rights";
#endif
  if (geteuid() != 0) {
    GTEST_SKIP() << "only root can make such a program";
  }
  embedSetup("exit 6");
  pack();
  for (const mode_t bit : {mode_t{S_ISUID}, mode_t{S_ISGID}}) {
    ASSERT_EQ(0, chmod(scratch().c_str(), 0755));
    ASSERT_EQ(0, chmod(launcherPath().c_str(), 0755 | bit));
    setPrepareChild([] {
      constexpr unsigned kNobody = 65534;
      if (setgid(kNobody) != 0 || setuid(kNobody) != 0) {
        _exit(124);
      }
    });
    const Result result = runBare({});
    EXPECT_EQ(255, result.status);
    EXPECT_EQ("", result.out);
    EXPECT_EQ(
        "A launcher does not run with the rights of another user or group (set-user-id, "
        "set-group-id).\n",
        result.err);
  }
}

}  // namespace
}  // namespace e2e
