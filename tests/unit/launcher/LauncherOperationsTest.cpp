// The operations that the script calls: what each leaves in N1, S1 and S2, what it shows and logs,
// also when it fails.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <functional>
#include <memory>

#include "archive/LauncherInputFiles.h"
#include "fakes/FakeDiskScan.h"
#include "fakes/FakeJVM.h"
#include "jvm/VerificationMemory.h"
#include "launcher/Launcher.h"
#include "launcher/LauncherState.h"
#include "support/ArchiveFixture.h"
#include "support/ConsoleState.h"
#include "support/JVMSupport.h"

namespace {

using test::FakeJVM;
using test::sstr;
using test::StoredFile;
using test::str;

// In the rows GOOD and BAD are the homes of a JVM that fits and of one that does not; DIR is the
// scratch folder, DIR/tmp the temporary one, cvj# a name in it.
const StoredFile kHinted = {1, 10, "hinted.jvm",
                            "DESC: Java\nJVM_EXE: bin/java\nJVM_PROPERTIES: java.version=17...\n"
                            "PLATFORM_HINT: OPERATIONS_HINT\n"};
const StoredFile kNamesGood = {1, 11, "good.jvm",
                               "DESC: Java\nJVM_EXE: bin/java\nJVM_PROPERTIES: java.version=17...\n"
                               "JVM_HOME: GOOD\n"};
const StoredFile kNamesBad = {1, 12, "bad.jvm",
                              "DESC: Java\nJVM_EXE: bin/java\nJVM_PROPERTIES: java.version=17...\n"
                              "JVM_HOME: BAD\n"};
const StoredFile kNoProperties = {1, 13, "any.jvm",
                                  "DESC: Java\nJVM_EXE: bin/java\nJVM_HOME: BAD\n"};
const StoredFile kMessage = {8, 20, "m", "MESSAGE: Get Java.\n"};
const StoredFile kEmptyMessage = {8, 20, "m", "TEXT: Get Java.\n"};
const StoredFile kVerifyJar = {5, 30, "verify.jar", "PK"};
const StoredFile kScript = {2, 40, "setup.lsc", "COMMAND: exit 5\n"};

StoredFile installer(const std::string& commands) {
  return {4, 50, "install", "#!/bin/sh\necho working; " + commands + "\n"};
}

struct Row {
  const char* name;
  std::vector<StoredFile> files;
  std::string hint = "";      // the homes that OPERATIONS_HINT names
  std::string userHome = "";  // "-cv:javahome"
  std::function<void()> operation;
  std::string variables;  // afterwards; "7|s1|s2" before
  std::string out = "";
  std::string log = "";
  std::string error = "";  // the text thrown
};

std::string withNames(std::string text, const test::TempDir& dir) {
  text = test::replaced(text, dir / "good", "GOOD");
  text = test::replaced(text, dir / "bad", "BAD");
  return test::normalised(text, dir.path());
}

class LauncherOperations : public testing::Test {
 protected:
  void SetUp() override {
    test::makeFakeJVM(m_dir / "good", FakeJVM::RightValues);
    test::makeFakeJVM(m_dir / "bad", FakeJVM::WrongValues);
    ASSERT_EQ(0, mkdir((m_dir / "tmp").c_str(), 0755));
    test::FakeDiskScan::reset();
  }

  void TearDown() override {
    PlatformImpl::setSystemTempDir("");
    LauncherTestAccess::setUserJavaHome("");
  }

  std::string expanded(std::string text) const {
    text = test::replaced(text, "GOOD", m_dir / "good");
    return test::replaced(text, "BAD", m_dir / "bad");
  }

  void load(std::vector<StoredFile> files) {
    for (StoredFile& file : files) {
      file.bytes = expanded(file.bytes);
    }
    test::setMode(test::Silent);
    LauncherTestAccess::resetState();
    LauncherTestAccess::resetInputFiles();
    LauncherTestAccess::setLauncherFileName(
        test::writeFile(m_dir / "app/setup", test::launcherFileBytes(files)));
    Launcher::getInputFiles().load(true);
  }

  static std::string variables() {
    return std::to_string(Launcher::getLongVariable(1)) + "|" +
           str(Launcher::getStringVariable(1)) + "|" + str(Launcher::getStringVariable(2));
  }

  void check(const Row& row) {
    SCOPED_TRACE(row.name);
    load(row.files);
    setenv("OPERATIONS_HINT", expanded(row.hint).c_str(), 1);
    LauncherTestAccess::setUserJavaHome(expanded(row.userHome));
    PlatformImpl::setSystemTempDir(sstr(m_dir / "tmp"));
    test::setMode(test::Shown);
    g_console.ui_progress = 0;
    g_console.ui_progressBlock = 0;
    Launcher::setLongVariable(1, 7);
    Launcher::setStringVariable(1, "s1");
    Launcher::setStringVariable(2, "s2");
    test::LogCapture log;
    runAndCompare(row, log);
    PlatformImpl::cleanup();
    EXPECT_EQ(std::vector<std::string>{}, test::listTree(m_dir / "tmp"));
  }

  void runAndCompare(const Row& row, test::LogCapture& log) {
    std::string error;
    const std::string out = test::captureStdout([&] { error = errorOf(row.operation); });
    EXPECT_EQ(row.error, withNames(error, m_dir));
    EXPECT_EQ(row.variables, withNames(variables(), m_dir));
    EXPECT_EQ(row.out, withNames(out, m_dir));
    EXPECT_EQ(row.log, withNames(log.take(), m_dir));
  }

  test::TempDir m_dir;
};

// --- What is shown and logged ---

constexpr const char* kSearching = "\nSearching for Java(tm) Virtual Machine...\n";
constexpr const char* kPreparing = "\nPreparing Java(tm) Virtual Machine...\n";
// The archive, the output that was read, six steps of a verification.
constexpr const char* kDots = "........";

std::string verification(const std::string& home, const std::string& properties = " java.version") {
  return "Verifying JVM at " + home +
         "/bin/java\n   for JVM: Java\nExecuting launch script command: \"" + home +
         "/bin/java\" \"DIR/tmp/cvj#/verify.jar\"   \"Verify\"" + properties +
         " in working directory DIR/app\nOutput from the launch script execution\nStdOut:\n"
         "1739021872\n" +
         (home == "GOOD" ? "17.0.2" : "1.4.2") + "\nFake Vendor\n\nErrOut:\n\n" +
         (home == "GOOD" || properties.empty() ? "Found matching JVM at " + home + "\n" : "");
}

const std::string kFinding = "Finding a JVM\nInitiating JVM search based on hints...\n";
const std::string kByHint = "Searching for Java using platform hints\n";
std::string hinted(const std::string& home) {
  return "Checking JVM at " + home + " which was resolved from platform hint OPERATIONS_HINT\n" +
         verification(home);
}
const std::string kOtherHints =
    "Searching for Java using path hints\nSearching for Java using platform specific JVM Path "
    "hints\n";
const std::string kMatching = "Matching JVM home is GOOD\nMatching JVM file is DIR/tmp/cvj#\n";
const std::string kMissed = kFinding + kByHint + hinted("BAD") + kOtherHints;

template <bool Progress, bool Failures>
void find() {
  Launcher::findJVM(Progress, Failures);
}

const Row kFinds[] = {
    {.name = "found",
     .files = {kHinted, kVerifyJar},
     .hint = "GOOD",
     .operation = find<false, true>,
     .variables = "1|GOOD|DIR/tmp/cvj#",
     .log = kFinding + kByHint + hinted("GOOD") + kMatching},
    {.name = "found, shown",
     .files = {kHinted, kVerifyJar},
     .hint = "GOOD",
     .operation = find<true, true>,
     .variables = "1|GOOD|DIR/tmp/cvj#",
     .out = std::string(kSearching) + kDots,
     .log = kFinding + kByHint + hinted("GOOD") + kMatching},
    {.name = "not found",
     .files = {kHinted, kVerifyJar},
     .hint = "BAD",
     .operation = find<false, false>,
     .variables = "0||",
     .log = kMissed},
    {.name = "not found, with a message",
     .files = {kHinted, kVerifyJar, kMessage},
     .hint = "BAD",
     .operation = find<false, true>,
     .variables = "0||",
     .out = "Get Java.\n",
     .log = kMissed + "Get Java.\n"},
    {.name = "not found, shown",
     .files = {kHinted, kVerifyJar, kMessage},
     .hint = "BAD",
     .operation = find<true, true>,
     .variables = "0||",
     .out = std::string(kSearching) + kDots + "Get Java.\n",
     .log = kMissed + "Get Java.\n"},
    {.name = "not found, an empty message",
     .files = {kEmptyMessage},
     .operation = find<false, true>,
     .variables = "0||",
     .out = "\n",
     .log = kFinding + "\n"},
    {.name = "not found, no message of the author's",
     .files = {},
     .operation = find<false, true>,
     .variables = "0||",
     .out = "A suitable JVM could not be found. Please run the program again using the option "
            "-cv:javahome <JAVA HOME DIR>\n",
     .log = kFinding +
            "A suitable JVM could not be found. Please run the program again using the option "
            "-cv:javahome <JAVA HOME DIR>\n"},
    {.name = "canceled",
     .files = {kHinted, kMessage},
     .hint = "GOOD",
     .operation =
         [] {
           PlatformTestAccess::setCanceled(true);
           Launcher::findJVM(false, true);
         },
     .variables = "0||",
     .log = kFinding,
     .error = "Canceled by the user."},
    {.name = "no temporary folder",
     .files = {kHinted, kVerifyJar},
     .hint = "GOOD",
     .operation =
         [] {
           PlatformImpl::setSystemTempDir("/no/folder");
           Launcher::findJVM(false, true);
         },
     .variables = "0||",
     .log = "Finding a JVM\n",
     .error =
         "Cannot use /no/folder as the temp directory because it does not exist. Please run the "
         "program again using the option -cv:tempdir <temp dir> to specify a different directory "
         "to "
         "use."},
};

TEST_F(LauncherOperations, Find) {
  const test::ScopedEnvironment path("PATH", "");  // no JVM of the machine's own
  for (const Row& row : kFinds) {
    check(row);
    PlatformTestAccess::setCanceled(false);
  }
}

template <std::int32_t FileId, bool Progress = false, bool Failures = true>
void verify() {
  Launcher::verifyJVM(Progress, Failures, FileId);
}

const std::string kValid = "After VERIFY, the jvm home is ";
const std::string kInvalid = "In VERIFY, the jvm is invalid.\n";
const std::string kTold = "The JVM is not valid.\n";

const Row kVerifications[] = {
    {.name = "the home that the file names",
     .files = {kNamesGood, kVerifyJar},
     .operation = verify<11>,
     .variables = "1|GOOD|s2",
     .log = verification("GOOD") + kValid + "GOOD\n"},
    {.name = "the user's home",
     .files = {kNamesBad, kVerifyJar},
     .userHome = "GOOD",
     .operation = verify<12>,
     .variables = "1|GOOD|s2",
     .log = verification("GOOD") + kValid + "GOOD\n"},
    {.name = "the user's home instead of a good one",
     .files = {kNamesGood, kVerifyJar},
     .userHome = "BAD",
     .operation = verify<11>,
     .variables = "0|s1|s2",
     .out = kTold,
     .log = verification("BAD") + kInvalid},
    {.name = "invalid",
     .files = {kNamesBad, kVerifyJar},
     .operation = verify<12>,
     .variables = "0|s1|s2",
     .out = kTold,
     .log = verification("BAD") + kInvalid},
    {.name = "invalid, nothing told",
     .files = {kNamesBad, kVerifyJar},
     .operation = verify<12, false, false>,
     .variables = "0|s1|s2",
     .log = verification("BAD") + kInvalid},
    {.name = "invalid, shown",
     .files = {kNamesBad, kVerifyJar},
     .operation = verify<12, true, true>,
     .variables = "0|s1|s2",
     .out = kSearching + std::string(kDots) + kTold,
     .log = verification("BAD") + kInvalid},
    {.name = "no home at all",
     .files = {kHinted, kVerifyJar},
     .operation = verify<10>,
     .variables = "0|s1|s2",
     .out = kTold,
     .log = kInvalid},
    {.name = "no requirements",
     .files = {kNoProperties, kVerifyJar},
     .operation = verify<13>,
     .variables = "0|s1|s2",
     .out = kTold,
     .log =
         "WARNING: Unable to verify any.jvm because the JVM_PROPERTIES tag was not specified.\n" +
         kInvalid},
    {.name = "no requirements, the user's home",
     .files = {kNoProperties, kVerifyJar},
     .userHome = "BAD",
     .operation = verify<13>,
     .variables = "1|BAD|s2",
     .log = verification("BAD", "") + kValid + "BAD\n"},
    {.name = "the last home of a search",
     .files = {kHinted, kVerifyJar},
     .hint = "GOOD",
     .operation =
         [] {
           Launcher::findJVM(false, false);
           Launcher::setStringVariable(1, "s1");
           Launcher::verifyJVM(false, true, 10);
         },
     .variables = "1|GOOD|DIR/tmp/cvj#",
     .log = kFinding + kByHint + hinted("GOOD") + kMatching + verification("GOOD") + kValid +
            "GOOD\n"},
    {.name = "no such file",
     .files = {kNamesGood},
     .operation = verify<-5>,
     .variables = "7|s1|s2",
     .error = "Cannot verify jvm file at index -5 because it does not exist."},
    {.name = "no such file, shown",
     .files = {kNamesGood},
     .operation = verify<99, true>,
     .variables = "7|s1|s2",
     .out = kSearching,
     .error = "Cannot verify jvm file at index 99 because it does not exist."},
    {.name = "another type",
     .files = {kScript},
     .operation = verify<40>,
     .variables = "7|s1|s2",
     .error = "To verify a JVM, use an index of a jvm file. The index passed in was 40 which "
              "corresponds to "
              "the file named setup.lsc"},
    {.name = "not loaded",
     .files = {kHinted},
     .operation =
         [] {
           LauncherTestAccess::resetInputFiles();
           Launcher::getInputFiles().load(false);
           Launcher::verifyJVM(false, true, 10);
         },
     .variables = "7|s1|s2",
     .log = "file type: 1\n  file id: 10\n  length: " + std::to_string(kHinted.bytes.size()) +
            "\n  offset: 10\n  file name: hinted.jvm\n",
     .error = "The jvm file with file id 10 could not be read."},
};

TEST_F(LauncherOperations, Verify) {
  for (const Row& row : kVerifications) {
    check(row);
  }
}

template <int Option>
void install() {
  Launcher::installJVM(static_cast<InstallJVMOption>(Option));
}

const Row kInstallations[] = {
    {.name = "hidden",
     .files = {installer("echo 'X: y' >jvm")},
     .operation = install<0>,
     .variables = "1|DIR/tmp/cvj#/jvm|s2"},
    {.name = "shown",
     .files = {installer("echo 'X: y' >jvm")},
     .operation = install<1>,
     .variables = "1|DIR/tmp/cvj#/jvm|s2",
     .out = kPreparing + std::string("..")},
    {.name = "the exit code does not matter",
     .files = {installer("echo 'X: y' >jvm; exit 3")},
     .operation = install<0>,
     .variables = "1|DIR/tmp/cvj#/jvm|s2",
     .log = "WARNING: The JVM installer ended with status 3.\nStdOut:\nworking\n\n"},
    {.name = "the first of two",
     .files = {installer("echo 'X: y' >jvm"), installer("exit 3")},
     .operation = install<0>,
     .variables = "1|DIR/tmp/cvj#/jvm|s2"},
    {.name = "no jvm file",
     .files = {installer("exit 0")},
     .operation = install<0>,
     .variables = "0||s2",
     .log = "ERROR: Invalid bundled JVM. Missing 'jvm' file.\n"},
    {.name = "a jvm file in a folder",
     .files = {installer("mkdir jre; echo 'X: y' >jre/jvm")},
     .operation = install<0>,
     .variables = "0||s2",
     .log = "ERROR: Invalid bundled JVM. Missing 'jvm' file.\n"},
    {.name = "a jvm file with an error",
     .files = {installer("echo X >jvm")},
     .operation = install<0>,
     .variables = "0||s2",
     .log = "ERROR: Syntax error in DIR/tmp/cvj#/jvm at line 1 ==> Missing colon at the end of the "
            "tag "
            "name.\n",
     .error = "Syntax error in DIR/tmp/cvj#/jvm at line 1 ==> Missing colon at the end of the tag "
              "name."},
    {.name = "no installer",
     .files = {kScript},
     .operation = install<0>,
     .variables = "0||s2",
     .error = "No JVM installer was included in the launcher."},
    {.name = "no installer, shown",
     .files = {kScript},
     .operation = install<1>,
     .variables = "0||s2",
     .out = kPreparing,
     .error = "No JVM installer was included in the launcher."},
    {.name = "the user is asked, but silence is wanted",
     .files = {installer("echo 'X: y' >jvm")},
     .operation =
         [] {
           PlatformImpl::setSilent(true);
           Launcher::installJVM(INSTALL_JVM_OPTION_PROMPT);
         },
     .variables = "0||s2"},
    {.name = "no such option",
     .files = {installer("echo 'X: y' >jvm")},
     .operation = install<3>,
     .variables = "0||s2",
     .out = kPreparing},
    {.name = "no temporary folder",
     .files = {installer("echo 'X: y' >jvm")},
     .operation =
         [] {
           PlatformImpl::setSystemTempDir("/no/folder");
           Launcher::installJVM(INSTALL_JVM_OPTION_HIDDEN);
         },
     .variables = "0||s2",
     .error =
         "Cannot use /no/folder as the temp directory because it does not exist. Please run the "
         "program again using the option -cv:tempdir <temp dir> to specify a different directory "
         "to "
         "use."},
};

TEST_F(LauncherOperations, Install) {
  for (const Row& row : kInstallations) {
    check(row);
  }
}

// What it knew of the Javas is forgotten.
TEST_F(LauncherOperations, AnInstallerMayHaveChangedAJava) {
  const std::function<void()> ways[] = {
      install<0>, [&] {
        test::captureStdout(
            [&] { Launcher::installJVM(false, false, "echo 'X: y' >jvm", sstr(m_dir / "tmp")); });
      }};
  for (const auto& installInOneWay : ways) {
    load({installer("echo 'X: y' >jvm")});
    PlatformImpl::setSystemTempDir(sstr(m_dir / "tmp"));
    VerificationMemory::ofRun();
    const std::weak_ptr<VerificationMemory> before = g_launcher.m_verificationMemory;
    EXPECT_FALSE(before.expired());
    installInOneWay();
    EXPECT_TRUE(before.expired());
  }
}

// What a launch returns takes the place of N1 here.
void launchEmbedded(std::int32_t fileId) {
  Launcher::setLongVariable(1, Launcher::ilaunch(fileId, 0));
}

const std::string kNotLaunched =
    "ERROR: Unable to launch the internal launch script with the internal JVM file. Either the "
    "launch script or the JVM file is missing from the launcher.\n";
const std::string kLaunched =
    "Executing launch script command: exit 5 in working directory DIR/app\n"
    "Output from the launch script execution\nStdOut:\n\nErrOut:\n\n";

const Row kLaunches[] = {
    {.name = "embedded",
     .files = {kNamesGood, kScript},
     .operation = [] { launchEmbedded(11); },
     .variables = "5|s1|s2",
     .log = kLaunched},
    {.name = "embedded, no such file",
     .files = {kNamesGood, kScript},
     .operation = [] { launchEmbedded(12); },
     .variables = "-1|s1|s2",
     .log = kNotLaunched},
    {.name = "embedded, another type",
     .files = {kNamesGood, kScript},
     .operation = [] { launchEmbedded(40); },
     .variables = "-1|s1|s2",
     .log = kNotLaunched},
    {.name = "embedded, no launch script",
     .files = {kNamesGood},
     .operation = [] { launchEmbedded(11); },
     .variables = "-1|s1|s2",
     .log = kNotLaunched},
    {.name = "no launch script",
     .files = {},
     .operation = [] { Launcher::setLongVariable(1, Launcher::launch("/no/file", 0)); },
     .variables = "-1|s1|s2"},
    {.name = "no jvm file",
     .files = {kScript},
     .operation = [] { Launcher::setLongVariable(1, Launcher::launch("/no/file", 1)); },
     .variables = "7|s1|s2",
     .error = "Unable to load input file: /no/file"},
    {.name = "no launcher",
     .files = {kScript},
     .operation = [] { Launcher::executeEmbeddedLauncher(0); },
     .variables = "7|s1|s2",
     .log = "ERROR: Unable to execute the embedded launcher.\n"},
    {.name = "no such position",
     .files = {kScript},
     .operation = [] { Launcher::executeEmbeddedLauncher(1); },
     .variables = "7|s1|s2",
     .log = "ERROR: Unable to execute the embedded launcher.\n"},
};

TEST_F(LauncherOperations, Launch) {
  for (const Row& row : kLaunches) {
    check(row);
  }
}

// The console is off while the wizard runs, whatever was shown before.
TEST_F(LauncherOperations, ALaunchHidesTheConsole) {
  struct SecondsRow {
    std::int16_t seconds;
    const char* out;
  };
  const SecondsRow rows[] = {
      {-32768, ""}, {-1, ""}, {0, ""}, {1, "\nRunning ...\n"}, {32767, "\nRunning ...\n"}};
  load({kNamesGood, kScript});
  for (const SecondsRow& row : rows) {
    SCOPED_TRACE(row.seconds);
    test::setMode(test::Shown);
    EXPECT_EQ(row.out, test::captureStdout([&] { (void)Launcher::ilaunch(11, row.seconds); }));
    EXPECT_FALSE(PlatformImpl::isUIVisible());
  }
}

TEST_F(LauncherOperations, InitializeUI) {
  for (const test::Mode mode : {test::Shown, test::Hidden, test::Silent}) {
    test::setMode(mode);
    EXPECT_EQ(mode == test::Shown ? "\nInitializing ...\n" : "",
              test::captureStdout([] { Launcher::initializeUI(); }));
    EXPECT_EQ(mode != test::Silent, PlatformImpl::isUIVisible());
  }
}

}  // namespace
