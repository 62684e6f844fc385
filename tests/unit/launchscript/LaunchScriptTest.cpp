#include "launchscript/LaunchScript.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include "archive/FileIndex.h"
#include "jvm/JVMFile.h"
#include "support/JVMSupport.h"
#include "support/TestAccess.h"

namespace {

using test::sstr;
using test::str;
using Strings = std::vector<std::string>;

const FileIndex kNoFiles;

// "DIR" stands for a folder with the launcher DIR/setup and the program DIR/tool, which writes down
// its arguments, its folder, and the variables JAVA_HOME, ONE and TWO; it prints "out" on standard
// output, "err" on standard error and ends with status 3. "CURRENT" is the current folder.
const char kTool[] = R"(#!/bin/sh
{
  for a in "$@"; do printf '[%s]' "$a"; done
  echo " in $(pwd) JAVA_HOME=${JAVA_HOME-unset} ONE=${ONE-unset} TWO=${TWO-unset}"
} >DIR/record
echo out
echo err >&2
exit 3
)";

struct Row {
  const char* name;
  test::Tags script;
  test::Tags jvm = {};
  Strings extraArgs = {};
  bool forceConsole = false;
  int purpose;
  std::string wantedRecord;
  std::string wantedLog;
  bool wantedCapture;  // the output is in the strings, not on our own standard output
};

const char kOutput[] = "Output from the launch script execution\nStdOut:\nout\n\nErrOut:\nerr\n\n";

const Row kRows[] = {
    {.name = "as usual",
     .script = {{"COMMAND", {"\"DIR/tool\" a"}}},
     .jvm = {{"JVM_HOME", {"/jdk"}}},
     .purpose = 0,
     .wantedRecord = "[a] in DIR JAVA_HOME=/jdk ONE=unset TWO=unset\n",
     .wantedLog =
         "Executing launch script command: \"DIR/tool\" a in working directory DIR\nOUTPUT",
     .wantedCapture = true},
    {.name = "first command only",
     .script = {{"COMMAND", {"DIR/tool one", "DIR/tool two"}}},
     .purpose = 0,
     .wantedRecord = "[one] in DIR JAVA_HOME= ONE=unset TWO=unset\n",
     .wantedLog = "Executing launch script command: DIR/tool one in working directory DIR\nOUTPUT",
     .wantedCapture = true},
    {.name = "macros of all kinds",
     .script = {{"COMMAND",
                 {"DIR/tool @JVM_HOME@ #FROM_OUTSIDE# %IF_EXISTS%(\"JVM_HOME\",\"yes\")"}}},
     .jvm = {{"JVM_HOME", {"/jdk\\"}}},
     .purpose = 0,
     .wantedRecord = "[/jdk][outside][yes] in DIR JAVA_HOME=/jdk\\ ONE=unset TWO=unset\n",
     .wantedLog = "Executing launch script command: DIR/tool /jdk outside yes in working directory "
                  "DIR\nOUTPUT",
     .wantedCapture = true},
    {.name = "extra arguments in quotes",
     .script = {{"COMMAND", {"DIR/tool x"}}},
     .extraArgs = {"plain", "a b", "a\"b", "", "%CP%", "@JVM_HOME@"},
     .purpose = 0,
     .wantedRecord =
         "[x][plain][a b][a\"b][][%CP%][@JVM_HOME@] in DIR JAVA_HOME= ONE=unset TWO=unset\n",
     .wantedLog =
         "Executing launch script command: DIR/tool x \"plain\" \"a b\" \"a\\\"b\" \"\" \"%CP%\" "
         "\"@JVM_HOME@\" in working directory DIR\nOUTPUT",
     .wantedCapture = true},
    {.name = "extra arguments arrive byte for byte",
     .script = {{"COMMAND", {"DIR/tool"}}},
     .extraArgs = {"$FROM_OUTSIDE", "`echo run`", "\\x", "\\\\"},
     .purpose = 0,
     .wantedRecord =
         "[$FROM_OUTSIDE][`echo run`][\\x][\\\\] in DIR JAVA_HOME= ONE=unset TWO=unset\n",
     .wantedLog =
         "Executing launch script command: DIR/tool \"$FROM_OUTSIDE\" \"`echo run`\" \"\\x\" "
         "\"\\\\\" in working directory DIR\nOUTPUT",
     .wantedCapture = true},
    {.name = "in the current folder",
     .script = {{"COMMAND", {"DIR/tool"}}, {"AUTO_SET_WORKING_DIR", {"0"}}},
     .purpose = 0,
     .wantedRecord = " in CURRENT JAVA_HOME= ONE=unset TWO=unset\n",
     .wantedLog = "Executing launch script command: DIR/tool in current working directory\nOUTPUT",
     .wantedCapture = true},
    {.name = "a word for a boolean is the default",
     .script = {{"COMMAND", {"DIR/tool"}},
                {"AUTO_SET_WORKING_DIR", {"false"}},
                {"DISPLAY_CONSOLE", {"yes"}}},
     .purpose = 0,
     .wantedRecord = " in DIR JAVA_HOME= ONE=unset TWO=unset\n",
     .wantedLog = "Executing launch script command: DIR/tool in working directory DIR\nOUTPUT",
     .wantedCapture = true},
    {.name = "with a console nothing is captured",
     .script = {{"COMMAND", {"DIR/tool"}}, {"DISPLAY_CONSOLE", {"1"}}},
     .purpose = 0,
     .wantedRecord = " in DIR JAVA_HOME= ONE=unset TWO=unset\n",
     .wantedLog = "Executing launch script command: DIR/tool in working directory DIR\n",
     .wantedCapture = false},
    {.name = "with a console by force nothing is captured",
     .script = {{"COMMAND", {"DIR/tool"}}},
     .forceConsole = true,
     .purpose = 0,
     .wantedRecord = " in DIR JAVA_HOME= ONE=unset TWO=unset\n",
     .wantedLog = "Executing launch script command: DIR/tool in working directory DIR\n",
     .wantedCapture = false},
    {.name = "environment for the wizard",
     .script = {{"COMMAND", {"DIR/tool"}}},
     .jvm = {{"SET_ENV_FOR_WIZARD", {" ONE = first \t", "", "  ", "TWO=a=b"}}},
     .purpose = 2,
     .wantedRecord = " in DIR JAVA_HOME= ONE=first TWO=a=b\n",
     .wantedLog = "Executing launch script command: DIR/tool in working directory DIR\nOUTPUT",
     .wantedCapture = true},
    {.name = "environment without values",
     .script = {{"COMMAND", {"DIR/tool"}}},
     .jvm = {{"SET_ENV_FOR_WIZARD", {"ONE", "TWO="}}},
     .purpose = 0,
     .wantedRecord = " in DIR JAVA_HOME= ONE= TWO=\n",
     .wantedLog = "Executing launch script command: DIR/tool in working directory DIR\nOUTPUT",
     .wantedCapture = true},
    {.name = "environment line with a value and no name",
     .script = {{"COMMAND", {"DIR/tool"}}},
     .jvm = {{"SET_ENV_FOR_WIZARD", {"ONE=first", "=value", "TWO=second"}}},
     .purpose = 0,
     .wantedRecord = " in DIR JAVA_HOME= ONE=first TWO=second\n",
     .wantedLog = "Executing launch script command: DIR/tool in working directory DIR\nOUTPUT",
     .wantedCapture = true},
    {.name = "environment line with an equal sign alone",
     .script = {{"COMMAND", {"DIR/tool"}}},
     .jvm = {{"SET_ENV_FOR_WIZARD", {"ONE=first", "=", " = ", "TWO=second"}}},
     .purpose = 0,
     .wantedRecord = " in DIR JAVA_HOME= ONE=first TWO=second\n",
     .wantedLog = "Executing launch script command: DIR/tool in working directory DIR\nOUTPUT",
     .wantedCapture = true},
    {.name = "environment wins over JAVA_HOME",
     .script = {{"COMMAND", {"DIR/tool"}}},
     .jvm = {{"JVM_HOME", {"/jdk"}}, {"SET_ENV_FOR_WIZARD", {"JAVA_HOME=/mine"}}},
     .purpose = 0,
     .wantedRecord = " in DIR JAVA_HOME=/mine ONE=unset TWO=unset\n",
     .wantedLog = "Executing launch script command: DIR/tool in working directory DIR\nOUTPUT",
     .wantedCapture = true},
    {.name = "environment is not resolved",
     .script = {{"COMMAND", {"DIR/tool"}}},
     .jvm = {{"JVM_HOME", {"/jdk"}}, {"SET_ENV_FOR_WIZARD", {"ONE=@JVM_HOME@"}}},
     .purpose = 0,
     .wantedRecord = " in DIR JAVA_HOME=/jdk ONE=@JVM_HOME@ TWO=unset\n",
     .wantedLog = "Executing launch script command: DIR/tool in working directory DIR\nOUTPUT",
     .wantedCapture = true},
    {.name = "no environment for purpose 1",
     .script = {{"COMMAND", {"DIR/tool"}}},
     .jvm = {{"SET_ENV_FOR_WIZARD", {"ONE=first"}}},
     .purpose = 1,
     .wantedRecord = " in DIR JAVA_HOME= ONE=unset TWO=unset\n",
     .wantedLog = "Executing launch script command: DIR/tool in working directory DIR\nOUTPUT",
     .wantedCapture = true},
    {.name = "no environment for purpose 3",
     .script = {{"COMMAND", {"DIR/tool"}}},
     .jvm = {{"SET_ENV_FOR_WIZARD", {"ONE=first"}}},
     .purpose = 3,
     .wantedRecord = " in DIR JAVA_HOME= ONE=unset TWO=unset\n",
     .wantedLog = "Executing launch script command: DIR/tool in working directory DIR\nOUTPUT",
     .wantedCapture = true},
};

class LaunchScriptTest : public testing::Test {
 protected:
  LaunchScriptTest()
      : m_currentScope(m_current.path()),
        m_javaHome("JAVA_HOME", "/before"),
        m_one("ONE", nullptr),
        m_two("TWO", nullptr),
        m_outside("FROM_OUTSIDE", "outside") {
    LauncherTestAccess::setLauncherFileName(m_dir / "setup");
    LauncherTestAccess::setPrependClasspath("");
    LauncherTestAccess::setAppendClasspath("");
    test::writeScript(m_dir / "tool", here(kTool));
  }

  std::string here(const std::string& text) const {
    return test::replaced(test::replaced(text, "DIR", m_dir.path()), "CURRENT", m_current.path());
  }
  void addTags(TagFile& file, const test::Tags& tags) const {
    for (const auto& [name, values] : tags) {
      for (const std::string& value : values) {
        file.appendTagValue(sstr(name), sstr(name == "COMMAND" ? here(value) : value));
      }
    }
  }

  test::TempDir m_dir;
  test::TempDir m_current;
  test::LogCapture m_log;
  test::ScopedCurrentDir m_currentScope;
  test::ScopedEnvironment m_javaHome;
  test::ScopedEnvironment m_one;
  test::ScopedEnvironment m_two;
  test::ScopedEnvironment m_outside;
};

TEST_F(LaunchScriptTest, RunsTheCommand) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    unsetenv("ONE");
    unsetenv("TWO");
    LauncherTestAccess::setPurpose(row.purpose);
    TagFile scriptFile;
    addTags(scriptFile, row.script);
    TagFile jvmFile;
    addTags(jvmFile, row.jvm);
    StringDeque extraArgs;
    for (const std::string& arg : row.extraArgs) {
      extraArgs.push_back(sstr(arg));
    }
    LaunchScript script(scriptFile, true, kNoFiles);
    const JVMFile jvm(jvmFile);
    const std::string shown = test::captureStdout(
        [&] { EXPECT_EQ(3, script.execute(jvm, &extraArgs, row.forceConsole)); });
    EXPECT_EQ(here(row.wantedRecord), test::readFile(m_dir / "record"));
    EXPECT_EQ(here(test::replaced(row.wantedLog, "OUTPUT", kOutput)), m_log.take());
    EXPECT_EQ(row.wantedCapture ? "out\n" : "", str(script.getStdOut()));
    EXPECT_EQ(row.wantedCapture ? "err\n" : "", str(script.getStdErr()));
    EXPECT_EQ(!row.wantedCapture, shown.find("out\n") != std::string::npos);
    EXPECT_STREQ("/before", getenv("JAVA_HOME"));
  }
}

TEST_F(LaunchScriptTest, KeepsTheOutputOfTheLastRunOnly) {
  TagFile jvmFile;
  const JVMFile jvm(jvmFile);
  LaunchScript script("echo once", true);
  EXPECT_EQ(0, script.execute(jvm, nullptr, false));
  EXPECT_EQ(0, script.execute(jvm, nullptr, false));
  EXPECT_EQ("once\n", str(script.getStdOut()));
  EXPECT_EQ(0, script.execute(jvm, nullptr, true));
  EXPECT_EQ("", str(script.getStdOut()));
}

TEST_F(LaunchScriptTest, WithoutCaptureNothingIsLoggedAfterTheRun) {
  TagFile jvmFile;
  const JVMFile jvm(jvmFile);
  LaunchScript script(":", false);
  EXPECT_EQ(0, script.execute(jvm, nullptr, false));
  EXPECT_EQ(here("Executing launch script command: : in working directory DIR\n"), m_log.take());
}

// --- The folder of the run ---

struct FolderRow {
  const char* name;
  std::string launcher;
  std::string wanted;
};

const FolderRow kFolders[] = {
    {"launcher in a folder", "DIR/setup", " in working directory DIR"},
    {"launcher in the root", "/setup", " in current working directory"},
    {"a backslash is no separator here", "DIR/a\\setup", " in working directory DIR"},
    {"a separator at the end", "DIR/", " in working directory DIR"},
};

TEST_F(LaunchScriptTest, RunsInTheLaunchersFolder) {
  TagFile jvmFile;
  const JVMFile jvm(jvmFile);
  for (const FolderRow& row : kFolders) {
    SCOPED_TRACE(row.name);
    LauncherTestAccess::setLauncherFileName(here(row.launcher));
    LauncherTestAccess::setOriginalLauncherFileName("/elsewhere/setup");
    LaunchScript script(":", false);
    EXPECT_EQ(0, script.execute(jvm, nullptr, false));
    EXPECT_EQ(here("Executing launch script command: :" + row.wanted + "\n"), m_log.take());
  }
}

TEST_F(LaunchScriptTest, LauncherWithoutAFolderNamesItself) {
  LauncherTestAccess::setLauncherFileName("no-such-launcher");
  TagFile jvmFile;
  test::addTags(jvmFile, {{"JVM_HOME", {"/jdk"}}});
  const JVMFile jvm(jvmFile);
  LaunchScript script(":", false);
  EXPECT_EQ(
      "LauncherException: Error setting working directory: no-such-launcher No such file or "
      "directory",
      test::outcome([&] {
        (void)script.execute(jvm, nullptr, false);
        return SString("it ran");
      }));
  EXPECT_STREQ("/before", getenv("JAVA_HOME"));  // also after an error
}

// QUIRK(java-home-comes-back-empty)
TEST_F(LaunchScriptTest, JavaHomeComesBackEmpty) {
  unsetenv("JAVA_HOME");
  TagFile jvmFile;
  const JVMFile jvm(jvmFile);
  (void)LaunchScript(":", false).execute(jvm, nullptr, false);
  EXPECT_STREQ("", getenv("JAVA_HOME"));
}

TEST_F(LaunchScriptTest, ReadsItsTags) {
  TagFile scriptFile;
  test::addTags(scriptFile, {{"DESC", {"My Wizard", "more"}}});
  EXPECT_EQ("My Wizard", str(LaunchScript(scriptFile, true, kNoFiles).getDesc()));
  EXPECT_EQ("", str(LaunchScript("command", true).getDesc()));
}

TEST_F(LaunchScriptTest, ThrowExceptionLogsTheCommandFirst) {
  const LaunchScript script("", false);
  EXPECT_EQ("LauncherException: Launch script error: It failed.",
            test::outcome([&]() -> SString { script.throwException("java -x", "It failed."); }));
  EXPECT_EQ("Launch command:\njava -x\n", m_log.take());
}

}  // namespace
