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
  test::Tags jvm;
  Strings extraArgs;
  bool forceConsole;
  int purpose;
  std::string wantedRecord;
  std::string wantedLog;
  bool wantedCapture;  // the output is in the strings, not on our own standard output
};

const char kOutput[] = "Output from the launch script execution\nStdOut:\nout\n\nErrOut:\nerr\n\n";

const Row kRows[] = {
    {"as usual",
     {{"COMMAND", {"\"DIR/tool\" a"}}},
     {{"JVM_HOME", {"/jdk"}}},
     {},
     false,
     0,
     "[a] in DIR JAVA_HOME=/jdk ONE=unset TWO=unset\n",
     "Executing launch script command: \"DIR/tool\" a in working directory DIR\nOUTPUT",
     true},
    {"first command only",
     {{"COMMAND", {"DIR/tool one", "DIR/tool two"}}},
     {},
     {},
     false,
     0,
     "[one] in DIR JAVA_HOME= ONE=unset TWO=unset\n",
     "Executing launch script command: DIR/tool one in working directory DIR\nOUTPUT",
     true},
    {"macros of all kinds",
     {{"COMMAND", {"DIR/tool @JVM_HOME@ #FROM_OUTSIDE# %IF_EXISTS%(\"JVM_HOME\",\"yes\")"}}},
     {{"JVM_HOME", {"/jdk\\"}}},
     {},
     false,
     0,
     "[/jdk][outside][yes] in DIR JAVA_HOME=/jdk\\ ONE=unset TWO=unset\n",
     "Executing launch script command: DIR/tool /jdk outside yes in working directory DIR\nOUTPUT",
     true},
    {"extra arguments in quotes",
     {{"COMMAND", {"DIR/tool x"}}},
     {},
     {"plain", "a b", "a\"b", "", "%CP%", "@JVM_HOME@"},
     false,
     0,
     "[x][plain][a b][a\"b][][%CP%][@JVM_HOME@] in DIR JAVA_HOME= ONE=unset TWO=unset\n",
     "Executing launch script command: DIR/tool x \"plain\" \"a b\" \"a\\\"b\" \"\" \"%CP%\" "
     "\"@JVM_HOME@\" in working directory DIR\nOUTPUT",
     true},
    {"only-quotes-are-escaped",
     {{"COMMAND", {"DIR/tool"}}},
     {},
     {"$FROM_OUTSIDE", "`echo run`", "\\x", "\\\\"},
     false,
     0,
     "[outside][run][\\x][\\] in DIR JAVA_HOME= ONE=unset TWO=unset\n",
     "Executing launch script command: DIR/tool \"$FROM_OUTSIDE\" \"`echo run`\" \"\\x\" "
     "\"\\\\\" in working directory DIR\nOUTPUT",
     true},
    {"in the current folder",
     {{"COMMAND", {"DIR/tool"}}, {"AUTO_SET_WORKING_DIR", {"0"}}},
     {},
     {},
     false,
     0,
     " in CURRENT JAVA_HOME= ONE=unset TWO=unset\n",
     "Executing launch script command: DIR/tool in current working directory\nOUTPUT",
     true},
    {"a word for a boolean is the default",
     {{"COMMAND", {"DIR/tool"}}, {"AUTO_SET_WORKING_DIR", {"false"}}, {"DISPLAY_CONSOLE", {"yes"}}},
     {},
     {},
     false,
     0,
     " in DIR JAVA_HOME= ONE=unset TWO=unset\n",
     "Executing launch script command: DIR/tool in working directory DIR\nOUTPUT",
     true},
    {"with a console nothing is captured",
     {{"COMMAND", {"DIR/tool"}}, {"DISPLAY_CONSOLE", {"1"}}},
     {},
     {},
     false,
     0,
     " in DIR JAVA_HOME= ONE=unset TWO=unset\n",
     "Executing launch script command: DIR/tool in working directory DIR\n",
     false},
    {"with a console by force nothing is captured",
     {{"COMMAND", {"DIR/tool"}}},
     {},
     {},
     true,
     0,
     " in DIR JAVA_HOME= ONE=unset TWO=unset\n",
     "Executing launch script command: DIR/tool in working directory DIR\n",
     false},
    {"environment for the wizard",
     {{"COMMAND", {"DIR/tool"}}},
     {{"SET_ENV_FOR_WIZARD", {" ONE = first \t", "", "  ", "TWO=a=b"}}},
     {},
     false,
     2,
     " in DIR JAVA_HOME= ONE=first TWO=a=b\n",
     "Executing launch script command: DIR/tool in working directory DIR\nOUTPUT",
     true},
    {"environment without values",
     {{"COMMAND", {"DIR/tool"}}},
     {{"SET_ENV_FOR_WIZARD", {"ONE", "TWO="}}},
     {},
     false,
     0,
     " in DIR JAVA_HOME= ONE= TWO=\n",
     "Executing launch script command: DIR/tool in working directory DIR\nOUTPUT",
     true},
    {"environment line with a value and no name",
     {{"COMMAND", {"DIR/tool"}}},
     {{"SET_ENV_FOR_WIZARD", {"ONE=first", "=value", "TWO=second"}}},
     {},
     false,
     0,
     " in DIR JAVA_HOME= ONE=first TWO=second\n",
     "Executing launch script command: DIR/tool in working directory DIR\nOUTPUT",
     true},
    {"environment line with an equal sign alone",
     {{"COMMAND", {"DIR/tool"}}},
     {{"SET_ENV_FOR_WIZARD", {"ONE=first", "=", " = ", "TWO=second"}}},
     {},
     false,
     0,
     " in DIR JAVA_HOME= ONE=first TWO=second\n",
     "Executing launch script command: DIR/tool in working directory DIR\nOUTPUT",
     true},
    {"environment wins over JAVA_HOME",
     {{"COMMAND", {"DIR/tool"}}},
     {{"JVM_HOME", {"/jdk"}}, {"SET_ENV_FOR_WIZARD", {"JAVA_HOME=/mine"}}},
     {},
     false,
     0,
     " in DIR JAVA_HOME=/mine ONE=unset TWO=unset\n",
     "Executing launch script command: DIR/tool in working directory DIR\nOUTPUT",
     true},
    {"environment is not resolved",
     {{"COMMAND", {"DIR/tool"}}},
     {{"JVM_HOME", {"/jdk"}}, {"SET_ENV_FOR_WIZARD", {"ONE=@JVM_HOME@"}}},
     {},
     false,
     0,
     " in DIR JAVA_HOME=/jdk ONE=@JVM_HOME@ TWO=unset\n",
     "Executing launch script command: DIR/tool in working directory DIR\nOUTPUT",
     true},
    {"no environment for purpose 1",
     {{"COMMAND", {"DIR/tool"}}},
     {{"SET_ENV_FOR_WIZARD", {"ONE=first"}}},
     {},
     false,
     1,
     " in DIR JAVA_HOME= ONE=unset TWO=unset\n",
     "Executing launch script command: DIR/tool in working directory DIR\nOUTPUT",
     true},
    {"no environment for purpose 3",
     {{"COMMAND", {"DIR/tool"}}},
     {{"SET_ENV_FOR_WIZARD", {"ONE=first"}}},
     {},
     false,
     3,
     " in DIR JAVA_HOME= ONE=unset TWO=unset\n",
     "Executing launch script command: DIR/tool in working directory DIR\nOUTPUT",
     true},
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
        script.execute(jvm, nullptr, false);
        return SString("it ran");
      }));
  EXPECT_STREQ("/before", getenv("JAVA_HOME"));  // also after an error
}

// QUIRK(java-home-comes-back-empty)
TEST_F(LaunchScriptTest, JavaHomeComesBackEmpty) {
  unsetenv("JAVA_HOME");
  TagFile jvmFile;
  const JVMFile jvm(jvmFile);
  LaunchScript(":", false).execute(jvm, nullptr, false);
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
