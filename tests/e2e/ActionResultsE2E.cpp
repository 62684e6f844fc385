// What each action of an input file prints for its calling program: exactly, for all that may be
// shown or hidden, and in silent mode.
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>

#include "e2e/LauncherTest.h"
#include "support/Restrictions.h"

namespace fs = std::filesystem;

namespace e2e {
namespace {

// Standard output by what the input file asks to show. "DIR" and "cvj#" stand for this run's names.
struct Outputs {
  std::string nothing;
  std::string failures;
  std::string progress;
  std::string both;
  std::string silent;  // whatever it asks for
};

struct Row {
  const char* name;
  std::string tags;
  std::function<void()> prepare;
  int status;
  Outputs out;
};

constexpr const char* kSearching = "\nSearching for Java(tm) Virtual Machine...\n";
// One dot for the archive, one for the output that was read, six for the verification.
constexpr const char* kDots = "........";
constexpr const char* kVerifyDots = ".......";

class ActionResults : public LauncherTest {
 protected:
  void SetUp() override {
    m_good = makeJVM("java17", "17.0.1");
    m_old = makeJVM("java8", "1.8.0");
    m_jvmFile = test::writeFile(
        dir("java.jvm"), "DESC: Java\nJVM_EXE: bin/java\nJVM_PROPERTIES: java.version=17...\n");
    setEnv("PATH", "/nowhere");  // no JVM of the machine's own
    expectLeftovers();
  }

  void offer(const std::string& home) {
    setEnv("HINT", home);
    embedJVM("PLATFORM_HINT: HINT\n");
    embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "PK");
  }

  void installInto(const std::string& name) {
    fs::remove_all(dir(name));
    fs::create_directories(dir(name));
  }

  std::string verify(const std::string& home) const {
    return "ACTION: VERIFY_JVM\nVERIFY_CLASSPATH: \"\"\"v.jar\"\"\"\nVERIFY_CLASS_NAME: Verify\n"
           "VERIFY_JVM_FILE: " +
           m_jvmFile + "\nVERIFY_JVM_HOME: " + home + "\n";
  }

  std::string install(const std::string& command) const {
    return "ACTION: INSTALL_JVM\nINSTALL_JVM_EXE: " + command +
           "\nINSTALL_JVM_DEST: " + dir("new") + "\n";
  }

  void check(const Row& row, const std::string& wanted, const std::string& shown, bool silent) {
    SCOPED_TRACE(std::string(row.name) + ", " + shown + (silent ? ", silent" : ""));
    forgetFiles();
    installInto("new");
    row.prepare();
    pack();
    const std::string input = test::writeFile(dir("in.tag"), row.tags + shown);
    std::vector<std::string> args{"-cv:tempdir", m_temp, "-cv:in", input};
    if (silent) {
      args.insert(args.begin(), "-cv:silent");
    }
    const Result result = runBare(args);
    EXPECT_EQ(row.status, result.status);
    EXPECT_EQ(wanted, normalised(result.out, scratch()));
    // What was handed out is all that stays.
    const bool handedOut = wanted.find("cvj#") != std::string::npos;
    EXPECT_EQ(handedOut ? 1U : 0U, test::listTree(tempDir()).size());
    fs::remove_all(tempDir());
    fs::create_directories(tempDir());
  }

  void check(const Row& row) {
    const std::string progress = "SHOW_PROGRESS: 1\n";
    const std::string failures = "SHOW_FAIL_MSG: 1\n";
    check(row, row.out.nothing, "", false);
    check(row, row.out.failures, failures, false);
    check(row, row.out.progress, progress, false);
    check(row, row.out.both, progress + failures, false);
    check(row, row.out.silent, "", true);
    check(row, row.out.silent, progress + failures, true);
  }

  std::string m_temp = tempDir();
  std::string m_good;
  std::string m_old;
  std::string m_jvmFile;
};

TEST_F(ActionResults, Search) {
  const std::string found = "1\nDIR/jvms/java17\nDIR/temp/cvj#\n";
  const std::string progress = kSearching + std::string(kDots);
  const std::string missed = progress + "..";  // the only folder of PATH is none
  const std::string message = "Get Java 17.\n";
  const auto offerOld = [this] {
    offer(m_old);
    embed(FILE_TYPE_JVM_MESSAGE, 5, "m", "MESSAGE: Get Java 17.\n");
  };
  check({"found",
         "ACTION: SEARCH\n",
         [this] { offer(m_good); },
         0,
         {found, found, progress + found + "\n", progress + found + "\n", found}});
  check({"not found",
         "ACTION: SEARCH\n",
         offerOld,
         0,
         {"0\n", message + "0\n", missed + "0\n\n", missed + message + "0\n\n", "0\n"}});
}

// Each action counts its dots anew: a row is closed by the first one, none by the second.
TEST_F(ActionResults, ASecondActionSetsTheProgressBack) {
  offer(m_old + ":" + m_old + "/.:" + m_old + "/./.");
  const std::string search = "ACTION: SEARCH\nSHOW_PROGRESS: 1\n";
  const std::string input = test::writeFile(dir("in.tag"), search);
  const Result result = runBare({"-cv:tempdir", m_temp, "-cv:in", input, "-cv:in", input});
  EXPECT_EQ(0, result.status);
  const std::string first(24, '.');
  const std::string second(23, '.');  // the archive has been copied out
  EXPECT_EQ(kSearching + first + "0\n\n" + kSearching + second + "0\n", result.out);
}

TEST_F(ActionResults, SearchesThatFail) {
  m_temp = dir("none");
  const std::string message =
      "Unable to search for all JVMs.Cannot use DIR/none as the temp directory because it does not "
      "exist. Please run the program again using the option -cv:tempdir <temp dir> to specify a "
      "different directory to use.\n";
  const std::string searching = kSearching;
  const auto prepare = [this] { offer(m_good); };
  check({"search",
         "ACTION: SEARCH\n",
         prepare,
         0,
         {"0\n", "0\n", searching + "0\n\n", searching + "0\n\n", "0\n"}});
  check({"search all",
         "ACTION: SEARCH_ALL\n",
         prepare,
         0,
         {"0\n", message + "0\n", searching + "0\n\n", searching + message + "0\n\n", "0\n"}});
}

// QUIRK(search-fails-silently)
TEST_F(ActionResults, WhatTheLogSaysOfSearchesThatFail) {
  struct Failure {
    const char* action;
    std::string tempDir;
    const char* log;  // after the file index
  };
  offer(m_good);
  const Failure failures[] = {
      {"SEARCH", dir("none"), "Finding a JVM\n"},
      {"SEARCH_ALL", dir("none"),
       "Finding all matching JVMs\n"
       "ERROR: Unable to search for all JVMs.Cannot use DIR/none as the temp directory because it "
       "does not exist. Please run the program again using the option -cv:tempdir <temp dir> to "
       "specify a different directory to use.\n"},
  };
  for (const Failure& failure : failures) {
    SCOPED_TRACE(failure.action);
    fs::remove(logFile());
    const std::string input = test::writeFile(
        dir("in.tag"), "LOGFILE: " + logFile() + "\nACTION: " + failure.action + "\n");
    const Result result = runBare({"-cv:tempdir", failure.tempDir, "-cv:in", input});
    EXPECT_EQ("0\n", result.out);
    EXPECT_EQ(failure.log, normalised(withoutIndex(result.log), scratch()));
  }
}

// Whoever called waits for an answer, also when no memory is left for what is looked for.
TEST_F(ActionResults, ASearchThatFailsUnexpectedly) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer reserves more memory than the limit leaves";
#endif
  embedJVM("PATH_HINT:\n" + std::string(12 << 20, 'x') + "\n/:\n");
  setPrepareChild([] {
    if (!test::limit(RLIMIT_AS, 64UL << 20)) {
      _exit(124);
    }
  });
  const std::string input =
      test::writeFile(dir("in.tag"), "ACTION: SEARCH\nLOGFILE: " + logFile() + "\n");
  const Result result = runBare({"-cv:tempdir", tempDir(), "-cv:in", input});
  EXPECT_EQ(255, result.status);
  EXPECT_EQ("0\n", result.out);
  EXPECT_EQ("The launcher has run out of memory.\n", result.err);
  EXPECT_TRUE(
      result.log.ends_with("ERROR: Unexpected failure in search.\n"
                           "ERROR: The launcher has run out of memory.\n"))
      << result.log;
  EXPECT_TRUE(fs::is_empty(tempDir()));
}

TEST_F(ActionResults, Verify) {
  const std::string dots = kVerifyDots;
  const std::string invalid = "The JVM is not valid.\n";
  const auto nothing = [] {};
  check({"valid",
         verify(m_good),
         nothing,
         0,
         {"1\n", dots + "1\n\n", dots + "1\n\n", dots + "1\n\n", "1\n"}});
  check({"invalid",
         verify(m_old),
         nothing,
         0,
         {"0\n", dots + invalid + "0\n\n", dots + "0\n\n", dots + invalid + "0\n\n", "0\n"}});
  check({"no JVM there",
         verify(dir("jvms/none")),
         nothing,
         0,
         {"0\n", ".." + invalid + "0\n\n", "..0\n\n", ".." + invalid + "0\n\n", "0\n"}});
  m_jvmFile = "/no/file";
  const std::string error = "Unable to load input file: /no/file\n";
  check({"no jvm file", verify(m_good), nothing, 255, {error, error, error, error, ""}});
}

// The installer's output is not ours to hide; it comes in front of the result.
TEST_F(ActionResults, Install) {
  const std::string result = "installing\nDIR/new/jvm\n";
  const std::string missing = "Unable to load input file: DIR/new/jvm\n";
  const auto nothing = [] {};
  check({"installed",
         install("echo installing; echo 'X: y' >jvm"),
         nothing,
         0,
         {result, result + "\n", result + "\n", result + "\n", result}});
  check({"no jvm file behind it",
         install("exit 3"),
         nothing,
         255,
         {missing, missing, missing, missing, ""}});
}

// The title is told when the launch script is loaded, before anything is hidden.
TEST_F(ActionResults, TheTitleStandsInFront) {
  const std::string found = "1\nDIR/jvms/java17\nDIR/temp/cvj#\n";
  const std::string progress = "Sample\n" + std::string(kSearching) + kDots + found + "\n";
  check({"search",
         "ACTION: SEARCH\n",
         [this] {
           offer(m_good);
           embedLaunchScript();
         },
         0,
         {"Sample\n" + found, "Sample\n" + found, progress, progress, found}});
}

}  // namespace
}  // namespace e2e
