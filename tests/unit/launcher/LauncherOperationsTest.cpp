// The operations that the script calls: what each leaves in N1, S1 and S2, what it shows and logs,
// also when it fails.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <functional>

#include "archive/LauncherInputFiles.h"
#include "fakes/FakeDiskScan.h"
#include "fakes/FakeJVM.h"
#include "launcher/Launcher.h"
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
  std::string hint;      // the homes that OPERATIONS_HINT names
  std::string userHome;  // "-cv:javahome"
  std::function<void()> operation;
  std::string variables;  // afterwards; "7|s1|s2" before
  std::string out;
  std::string log;
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
    {"found",
     {kHinted, kVerifyJar},
     "GOOD",
     "",
     find<false, true>,
     "1|GOOD|DIR/tmp/cvj#",
     "",
     kFinding + kByHint + hinted("GOOD") + kMatching},
    {"found, shown",
     {kHinted, kVerifyJar},
     "GOOD",
     "",
     find<true, true>,
     "1|GOOD|DIR/tmp/cvj#",
     std::string(kSearching) + kDots,
     kFinding + kByHint + hinted("GOOD") + kMatching},
    {"not found", {kHinted, kVerifyJar}, "BAD", "", find<false, false>, "0||", "", kMissed},
    {"not found, with a message",
     {kHinted, kVerifyJar, kMessage},
     "BAD",
     "",
     find<false, true>,
     "0||",
     "Get Java.\n",
     kMissed + "Get Java.\n"},
    {"not found, shown",
     {kHinted, kVerifyJar, kMessage},
     "BAD",
     "",
     find<true, true>,
     "0||",
     std::string(kSearching) + kDots + "Get Java.\n",
     kMissed + "Get Java.\n"},
    {"not found, an empty message",
     {kEmptyMessage},
     "",
     "",
     find<false, true>,
     "0||",
     "\n",
     kFinding + "\n"},
    {"not found, no message of the author's",
     {},
     "",
     "",
     find<false, true>,
     "0||",
     "A suitable JVM could not be found. Please run the program again using the option "
     "-cv:javahome <JAVA HOME DIR>\n",
     kFinding + "A suitable JVM could not be found. Please run the program again using the option "
                "-cv:javahome <JAVA HOME DIR>\n"},
    {"canceled",
     {kHinted, kMessage},
     "GOOD",
     "",
     [] {
       PlatformTestAccess::setCanceled(true);
       Launcher::findJVM(false, true);
     },
     "0||",
     "",
     kFinding},
    {"no temporary folder",
     {kHinted, kVerifyJar},
     "GOOD",
     "",
     [] {
       PlatformImpl::setSystemTempDir("/no/folder");
       Launcher::findJVM(false, true);
     },
     "0||",
     "",
     "Finding a JVM\n",
     "Cannot use /no/folder as the temp directory because it does not exist. Please run the "
     "program again using the option -cv:tempdir <temp dir> to specify a different directory to "
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
    {"the home that the file names",
     {kNamesGood, kVerifyJar},
     "",
     "",
     verify<11>,
     "1|GOOD|s2",
     "",
     verification("GOOD") + kValid + "GOOD\n"},
    {"the user's home",
     {kNamesBad, kVerifyJar},
     "",
     "GOOD",
     verify<12>,
     "1|GOOD|s2",
     "",
     verification("GOOD") + kValid + "GOOD\n"},
    {"the user's home instead of a good one",
     {kNamesGood, kVerifyJar},
     "",
     "BAD",
     verify<11>,
     "0|s1|s2",
     kTold,
     verification("BAD") + kInvalid},
    {"invalid",
     {kNamesBad, kVerifyJar},
     "",
     "",
     verify<12>,
     "0|s1|s2",
     kTold,
     verification("BAD") + kInvalid},
    {"invalid, nothing told",
     {kNamesBad, kVerifyJar},
     "",
     "",
     verify<12, false, false>,
     "0|s1|s2",
     "",
     verification("BAD") + kInvalid},
    {"invalid, shown",
     {kNamesBad, kVerifyJar},
     "",
     "",
     verify<12, true, true>,
     "0|s1|s2",
     kSearching + std::string(kDots) + kTold,
     verification("BAD") + kInvalid},
    {"no home at all", {kHinted, kVerifyJar}, "", "", verify<10>, "0|s1|s2", kTold, kInvalid},
    {"no requirements",
     {kNoProperties, kVerifyJar},
     "",
     "",
     verify<13>,
     "0|s1|s2",
     kTold,
     "WARNING: Unable to verify any.jvm because the JVM_PROPERTIES tag was not specified.\n" +
         kInvalid},
    {"no requirements, the user's home",
     {kNoProperties, kVerifyJar},
     "",
     "BAD",
     verify<13>,
     "1|BAD|s2",
     "",
     verification("BAD", "") + kValid + "BAD\n"},
    {"the last home of a search",
     {kHinted, kVerifyJar},
     "GOOD",
     "",
     [] {
       Launcher::findJVM(false, false);
       Launcher::setStringVariable(1, "s1");
       Launcher::verifyJVM(false, true, 10);
     },
     "1|GOOD|DIR/tmp/cvj#",
     "",
     kFinding + kByHint + hinted("GOOD") + kMatching + verification("GOOD") + kValid + "GOOD\n"},
    {"no such file",
     {kNamesGood},
     "",
     "",
     verify<-5>,
     "7|s1|s2",
     "",
     "",
     "Cannot verify jvm file at index -5 because it does not exist."},
    {"no such file, shown",
     {kNamesGood},
     "",
     "",
     verify<99, true>,
     "7|s1|s2",
     kSearching,
     "",
     "Cannot verify jvm file at index 99 because it does not exist."},
    {"another type",
     {kScript},
     "",
     "",
     verify<40>,
     "7|s1|s2",
     "",
     "",
     "To verify a JVM, use an index of a jvm file. The index passed in was 40 which corresponds to "
     "the file named setup.lsc"},
    {"not loaded",
     {kHinted},
     "",
     "",
     [] {
       LauncherTestAccess::resetInputFiles();
       Launcher::getInputFiles().load(false);
       Launcher::verifyJVM(false, true, 10);
     },
     "7|s1|s2",
     "",
     "file type: 1\n  file id: 10\n  length: " + std::to_string(kHinted.bytes.size()) +
         "\n  offset: 10\n  file name: hinted.jvm\n",
     "The jvm file with file id 10 could not be read."},
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
    {"hidden",
     {installer("echo 'X: y' >jvm")},
     "",
     "",
     install<0>,
     "1|DIR/tmp/cvj#/jvm|s2",
     "",
     ""},
    {"shown",
     {installer("echo 'X: y' >jvm")},
     "",
     "",
     install<1>,
     "1|DIR/tmp/cvj#/jvm|s2",
     kPreparing + std::string(".."),
     ""},
    {"the exit code does not matter",
     {installer("echo 'X: y' >jvm; exit 3")},
     "",
     "",
     install<0>,
     "1|DIR/tmp/cvj#/jvm|s2",
     "",
     ""},
    {"the first of two",
     {installer("echo 'X: y' >jvm"), installer("exit 3")},
     "",
     "",
     install<0>,
     "1|DIR/tmp/cvj#/jvm|s2",
     "",
     ""},
    {"no jvm file",
     {installer("exit 0")},
     "",
     "",
     install<0>,
     "0||s2",
     "",
     "ERROR: Invalid bundled JVM. Missing 'jvm' file.\n"},
    {"a jvm file in a folder",
     {installer("mkdir jre; echo 'X: y' >jre/jvm")},
     "",
     "",
     install<0>,
     "0||s2",
     "",
     "ERROR: Invalid bundled JVM. Missing 'jvm' file.\n"},
    {"a jvm file with an error",
     {installer("echo X >jvm")},
     "",
     "",
     install<0>,
     "0||s2",
     "",
     "ERROR: Syntax error in DIR/tmp/cvj#/jvm at line 1 ==> Missing colon at the end of the tag "
     "name.\n",
     "Syntax error in DIR/tmp/cvj#/jvm at line 1 ==> Missing colon at the end of the tag name."},
    {"no installer",
     {kScript},
     "",
     "",
     install<0>,
     "0||s2",
     "",
     "",
     "No JVM installer was included in the launcher."},
    {"no installer, shown",
     {kScript},
     "",
     "",
     install<1>,
     "0||s2",
     kPreparing,
     "",
     "No JVM installer was included in the launcher."},
    {"the user is asked, but silence is wanted",
     {installer("echo 'X: y' >jvm")},
     "",
     "",
     [] {
       PlatformImpl::setSilent(true);
       Launcher::installJVM(INSTALL_JVM_OPTION_PROMPT);
     },
     "0||s2",
     "",
     ""},
    {"no such option",
     {installer("echo 'X: y' >jvm")},
     "",
     "",
     install<3>,
     "0||s2",
     kPreparing,
     ""},
    {"no temporary folder",
     {installer("echo 'X: y' >jvm")},
     "",
     "",
     [] {
       PlatformImpl::setSystemTempDir("/no/folder");
       Launcher::installJVM(INSTALL_JVM_OPTION_HIDDEN);
     },
     "0||s2",
     "",
     "",
     "Cannot use /no/folder as the temp directory because it does not exist. Please run the "
     "program again using the option -cv:tempdir <temp dir> to specify a different directory to "
     "use."},
};

TEST_F(LauncherOperations, Install) {
  for (const Row& row : kInstallations) {
    check(row);
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
    {"embedded",
     {kNamesGood, kScript},
     "",
     "",
     [] { launchEmbedded(11); },
     "5|s1|s2",
     "",
     kLaunched},
    {"embedded, no such file",
     {kNamesGood, kScript},
     "",
     "",
     [] { launchEmbedded(12); },
     "-1|s1|s2",
     "",
     kNotLaunched},
    {"embedded, another type",
     {kNamesGood, kScript},
     "",
     "",
     [] { launchEmbedded(40); },
     "-1|s1|s2",
     "",
     kNotLaunched},
    {"embedded, no launch script",
     {kNamesGood},
     "",
     "",
     [] { launchEmbedded(11); },
     "-1|s1|s2",
     "",
     kNotLaunched},
    {"no launch script",
     {},
     "",
     "",
     [] { Launcher::setLongVariable(1, Launcher::launch("/no/file", 0)); },
     "-1|s1|s2",
     "",
     ""},
    {"no jvm file",
     {kScript},
     "",
     "",
     [] { Launcher::setLongVariable(1, Launcher::launch("/no/file", 1)); },
     "7|s1|s2",
     "",
     "",
     "Unable to load input file: /no/file"},
    {"no launcher",
     {kScript},
     "",
     "",
     [] { Launcher::executeEmbeddedLauncher(0); },
     "7|s1|s2",
     "",
     "ERROR: Unable to execute the embedded launcher.\n"},
    {"no such position",
     {kScript},
     "",
     "",
     [] { Launcher::executeEmbeddedLauncher(1); },
     "7|s1|s2",
     "",
     "ERROR: Unable to execute the embedded launcher.\n"},
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
    EXPECT_EQ(row.out, test::captureStdout([&] { Launcher::ilaunch(11, row.seconds); }));
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
