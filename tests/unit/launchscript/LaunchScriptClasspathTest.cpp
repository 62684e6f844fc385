#include <gtest/gtest.h>

#include <filesystem>

#include "archive/LauncherInputFiles.h"
#include "jvm/JVMFile.h"
#include "launcher/Launcher.h"
#include "launchscript/LaunchScript.h"
#include "support/ClasspathFixture.h"
#include "support/JVMSupport.h"
#include "support/LauncherFiles.h"
#include "support/TestAccess.h"

namespace {

using test::ClasspathTest;
using test::SideFile;
using test::sstr;
using test::str;

// --- The class path ---

// "DIR" stands for the folder with the launcher DIR/setup.bin and the side files of a row.
struct ClasspathRow {
  const char* name;
  std::string command;
  std::string wanted;
  std::vector<SideFile> files = {};
  std::string prepend = "";
  std::string append = "";
  std::string archive = "";
  test::Tags tags = {};  // besides CLASSPATH "-cp " and CLASSPATH_SEPARATOR ":"
  std::string wantedLog = "";
};

const ClasspathRow kClasspaths[] = {
    {.name = "nothing", .command = "java %CP%() Main", .wanted = "java  Main"},
    {.name = "one entry", .command = "java %CP%(\"x.jar\") Main", .wanted = "java -cp x.jar Main"},
    {.name = "two entries", .command = "%CP%(\"x.jar\",\"y.jar\")", .wanted = "-cp x.jar:y.jar"},
    {.name = "empty entries are skipped",
     .command = "%CP%(\"\",\"x\",\"\",\"y\",\"\")",
     .wanted = "-cp x:y"},
    {.name = "entries keep blanks and quotes",
     .command = "%CP%(\" a b \",\"\"\"c\"\"\")",
     .wanted = "-cp  a b :\"c\""},
    {.name = "entries beginning with @ are no files here",
     .command = "%CP%(\"@no-file@\")",
     .wanted = "-cp "},
    {.name = "macros in entries wait for the next pass",
     .command = "%CP%(\"@JVM_HOME@/x\")",
     .wanted = "-cp /jdk/x",
     .tags = {{"JVM_HOME", {"/jdk"}}}},
    {.name = "jvm file's own entries",
     .command = "%CP%(\"x\")",
     .wanted = "-cp tools.jar:x",
     .tags = {{"JVM_CLASSPATH", {"tools.jar", "second value"}}}},
    {.name = "archive of the script",
     .command = "%CP%(\"x\")",
     .wanted = "-cp x:app.jar",
     .archive = "app.jar"},
    {.name = "archive with a function",
     .command = "%CP%()",
     .wanted = "-cp DIR/app.jar",
     .archive = "%LAUNCHER_DIR%()/app.jar"},
    {.name = "archive that gives nothing",
     .command = "%CP%(\"x\")",
     .wanted = "-cp x",
     .archive = "%IF_EXISTS%(\"Y\",\"y\")"},
    {.name = "archive that fails",
     .command = "java %CP%(\"x\") Main",
     .wanted = "LauncherException: Launch script error: Invalid function name (NOPE).",
     .archive = "lib/%NOPE%()",
     .wantedLog = "Launch command:\nlib/%NOPE%()\n"},
    {.name = "macros in the archive wait for the next passes",
     .command = "%CP%(\"x\")",
     .wanted = "-cp x:/jdk/outside.jar",
     .archive = "@JVM_HOME@/#FROM_OUTSIDE#.jar",
     .tags = {{"JVM_HOME", {"/jdk"}}}},
    {.name = "side file in front",
     .command = "%CP%(\"x\")",
     .wanted = "-cp f1:f2:x",
     .files = {{".cp1", "f1\nf2\n"}}},
    {.name = "side file in the middle",
     .command = "%CP%(\"x\")",
     .wanted = "-cp f1:x",
     .files = {{".cp", "f1"}}},
    {.name = "side file at the end",
     .command = "%CP%(\"x\")",
     .wanted = "-cp x:f1",
     .files = {{".cp2", "f1\n"}}},
    {.name = "side file with blanks and empty lines",
     .command = "%CP%()",
     .wanted = "-cp a b:c",
     .files = {{".cp", "\n  a b \r\n\n\t\nc\t"}}},
    {.name = "side file that is empty",
     .command = "%CP%(\"x\")",
     .wanted = "-cp x",
     .files = {{".cp", ""}}},
    {.name = "side file lines are no file names",
     .command = "%CP%()",
     .wanted = "-cp @list",
     .files = {{".cp", "@list@@list\n"}},
     .tags = {{"list", {""}}}},
    {.name = "option in front",
     .command = "%CP%(\"x\")",
     .wanted = "-cp \"p.jar\":x",
     .prepend = "p.jar"},
    {.name = "option at the end",
     .command = "%CP%(\"x\")",
     .wanted = "-cp x:\"a.jar\"",
     .append = "a.jar"},
    {.name = "options with several entries stay one",
     .command = "%CP%()",
     .wanted = "-cp \"a:b\":\"c:d\"",
     .prepend = "a:b",
     .append = "c:d"},
    {.name = "options keep their blanks",
     .command = "%CP%()",
     .wanted = "-cp \" p \":\" a \"",
     .prepend = " p ",
     .append = " a "},
    {.name = "option that names a file",
     .command = "%CP%(\"x\")",
     .wanted = "-cp f1:f2:x",
     .files = {{".list", "f1\nf2\n"}},
     .prepend = "@DIR/setup.list"},
    {.name = "option at the end that names a file",
     .command = "%CP%(\"x\")",
     .wanted = "-cp x:f1",
     .files = {{".list", "f1"}},
     .append = "@DIR/setup.list"},
    {.name = "option that names a file, blank behind it",
     .command = "%CP%()",
     .wanted = "-cp f1",
     .files = {{".list", "f1"}},
     .prepend = "@DIR/setup.list "},
    {.name = "option with a blank before @ is an entry",
     .command = "%CP%(\"x\")",
     .wanted = "-cp \" @DIR/setup.list\":x",
     .files = {{".list", "f1"}},
     .prepend = " @DIR/setup.list"},
    {.name = "option that names a missing file",
     .command = "%CP%(\"x\")",
     .wanted = "-cp x",
     .prepend = "@DIR/none",
     .wantedLog = "WARNING: Could not find the file DIR/none while building the classpath.\n"},
    {.name = "option that names a folder",
     .command = "%CP%(\"x\")",
     .wanted = "-cp x",
     .prepend = "@DIR",
     .wantedLog = "WARNING: Could not find the file DIR while building the classpath.\n"},
    {.name = "option that is @ alone",
     .command = "%CP%(\"x\")",
     .wanted = "-cp x",
     .prepend = "@",
     .wantedLog = "WARNING: Could not find the file  while building the classpath.\n"},
    {.name = "option with @ inside",
     .command = "%CP%()",
     .wanted = "-cp \"x@y\"",
     .prepend = "x@y"},
    {.name = "all sources but the embedded jars, in order",
     .command = "%CP%(\"arg1\",\"arg2\")",
     .wanted = "-cp \"pre\":one:own:mid:arg1:arg2:arch:two:\"post\"",
     .files = {{".cp1", "one"}, {".cp", "mid"}, {".cp2", "two"}},
     .prepend = "pre",
     .append = "post",
     .archive = "arch",
     .tags = {{"JVM_CLASSPATH", {"own"}}}},
    {.name = "twice", .command = "%CP%(\"a\") %CP%(\"b\")", .wanted = "-cp a -cp b"},
    {.name = "another separator",
     .command = "%CP%(\"a\",\"b\")",
     .wanted = "-classpath=a;b",
     .tags = {{"CLASSPATH", {"-classpath="}}, {"CLASSPATH_SEPARATOR", {";"}}}},
};

TEST_F(ClasspathTest, GoesIntoTheCommand) {
  for (const ClasspathRow& row : kClasspaths) {
    SCOPED_TRACE(row.name);
    begin(row.prepend, row.append, row.files);
    const test::ScopedEnvironment outside("FROM_OUTSIDE", "outside");
    EXPECT_EQ(here(row.wanted), resolve(row.command, row.tags, row.archive));
    EXPECT_EQ(row.wantedLog, takeLog());
  }
}

// --- The class path in an environment variable ---

struct VariableRow {
  const char* name;
  std::string command;
  std::string wanted = "";
  std::string wantedValue;  // of MY_CP
  test::Tags tags;
  std::string wantedLog = "";
  std::string prepend = "";
  std::string archive = "";
  std::string append = "";
  std::vector<SideFile> files = {};
};

const VariableRow kVariables[] = {
    {.name = "variable",
     .command = "java %CP%(\"x\",\"y\") Main",
     .wanted = "java  Main",
     .wantedValue = "x:y",
     .tags = {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     .wantedLog = "Set env var MY_CP to x:y\n\n"},
    {.name = "quotes around entries are stripped",
     .command = "%CP%(\"\"\"a b\"\"\",\"c\")",
     .wantedValue = "a b:c",
     .tags = {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     .wantedLog = "Set env var MY_CP to a b:c\n\n"},
    {.name = "one quote of two is stripped",
     .command = "%CP%(\"\"\"\"\"a\"\"\"\"\")",
     .wantedValue = "\"a\"",
     .tags = {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     .wantedLog = "Set env var MY_CP to \"a\"\n\n"},
    {.name = "quotes around the archive are stripped",
     .command = "%CP%()",
     .wantedValue = "app.jar",
     .tags = {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     .wantedLog = "Set env var MY_CP to app.jar\n\n",
     .archive = "\"app.jar\""},
    {.name = "option-keeps-its-quotes",
     .command = "%CP%(\"x\")",
     .wantedValue = "\"p\":x",
     .tags = {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     .wantedLog = "Set env var MY_CP to \"p\":x\n\n",
     .prepend = "p"},
    {.name = "option-keeps-its-quotes: at the end, with all side files",
     .command = "%CP%(\"x\")",
     .wantedValue = "\"p\":f1:f2:x:f3:\"a b\"",
     .tags = {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     .wantedLog = "Set env var MY_CP to \"p\":f1:f2:x:f3:\"a b\"\n\n",
     .prepend = "p",
     .archive = "",
     .append = "a b",
     .files = {{".cp1", "f1"}, {".cp", "f2"}, {".cp2", "f3"}}},
    {.name = "side files keep their quotes",
     .command = "%CP%()",
     .wantedValue = "\"f1\":\"f2\":\"f3\"",
     .tags = {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     .wantedLog = "Set env var MY_CP to \"f1\":\"f2\":\"f3\"\n\n",
     .archive = "",
     .append = "",
     .files = {{".cp1", "\"f1\""}, {".cp", "\"f2\""}, {".cp2", "\"f3\""}}},
    {.name = "macros in the archive are not resolved for the variable",
     .command = "%CP%(\"x\")",
     .wantedValue = "x:@CP_ENV_VAR@/#MY_CP#.jar",
     .tags = {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     .wantedLog = "Set env var MY_CP to x:@CP_ENV_VAR@/#MY_CP#.jar\n\n",
     .archive = "@CP_ENV_VAR@/#MY_CP#.jar"},
    {.name = "jvm file's own entries keep their quotes",
     .command = "%CP%(\"x\")",
     .wantedValue = "\"own\":x",
     .tags = {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}, {"JVM_CLASSPATH", {"\"own\""}}},
     .wantedLog = "Set env var MY_CP to \"own\":x\n\n"},
    {.name = "nothing in the class path",
     .command = "[%CP%()]",
     .wanted = "[]",
     .wantedValue = "",
     .tags = {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     .wantedLog = "Set env var MY_CP to \n\n"},
    {.name = "no variable named: the class path is dropped",
     .command = "[%CP%(\"x\")]",
     .wanted = "[]",
     .wantedValue = "before",
     .tags = {{"USE_CP_ENV_VAR", {"1"}}},
     .wantedLog = "ERROR: If USE_CP_ENV_VAR is set to 1 in the jvm file, then the jvm file should "
                  "also define "
                  "CP_ENV_VAR.\n"},
    {.name = "use-cp-env-var-exactly-1: 0",
     .command = "%CP%(\"x\")",
     .wanted = "-cp x",
     .wantedValue = "before",
     .tags = {{"USE_CP_ENV_VAR", {"0"}}, {"CP_ENV_VAR", {"MY_CP"}}}},
    {.name = "use-cp-env-var-exactly-1: 2",
     .command = "%CP%(\"x\")",
     .wanted = "-cp x",
     .wantedValue = "before",
     .tags = {{"USE_CP_ENV_VAR", {"2"}}, {"CP_ENV_VAR", {"MY_CP"}}}},
    {.name = "use-cp-env-var-exactly-1: 01",
     .command = "%CP%(\"x\")",
     .wanted = "-cp x",
     .wantedValue = "before",
     .tags = {{"USE_CP_ENV_VAR", {"01"}}, {"CP_ENV_VAR", {"MY_CP"}}}},
    {.name = "use-cp-env-var-exactly-1: 1 with more",
     .command = "%CP%(\"x\")",
     .wanted = "-cp x",
     .wantedValue = "before",
     .tags = {{"USE_CP_ENV_VAR", {"1x"}}, {"CP_ENV_VAR", {"MY_CP"}}}},
    {.name = "variable is seen by a later reference",
     .command = "%CP%(\"x\") #MY_CP#",
     .wanted = " x",
     .wantedValue = "x",
     .tags = {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     .wantedLog = "Set env var MY_CP to x\n\n"},
};

TEST_F(ClasspathTest, GoesIntoAVariable) {
  for (const VariableRow& row : kVariables) {
    SCOPED_TRACE(row.name);
    begin(row.prepend, row.append, row.files);
    const test::ScopedEnvironment variable("MY_CP", "before");
    EXPECT_EQ(row.wanted, resolve(row.command, row.tags, row.archive));
    EXPECT_STREQ(row.wantedValue.c_str(), getenv("MY_CP"));
    EXPECT_EQ(row.wantedLog, takeLog());
  }
}

// --- The jar files in the launcher ---

class EmbeddedJarsTest : public ClasspathTest {
 protected:
  EmbeddedJarsTest() {
    test::writeFile(*m_dir / "setup.bin",
                    test::launcherFileBytes({{FILE_TYPE_JAR, 1, "one.jar", "first"},
                                             {FILE_TYPE_VERIFY_JAR, 2, "verify.jar", "no"},
                                             {FILE_TYPE_JAR, 3, "two words.jar", "second"}}));
    LauncherTestAccess::resetInputFiles();
    Launcher::getInputFiles().load(false);
  }
  std::string folder() const { return str(PlatformTestAccess::createdDirectories().back()); }
};

TEST_F(EmbeddedJarsTest, AreExtractedAndQuoted) {
  test::writeFile(*m_dir / "setup.cp2", "last");
  const std::string command = resolve("%CP%(\"x\")", {}, "arch");
  EXPECT_EQ("-cp x:arch:\"" + folder() + "/one.jar\":\"" + folder() + "/two words.jar\":last",
            command);
  EXPECT_EQ("first", test::readFile(folder() + "/one.jar"));
  EXPECT_EQ("second", test::readFile(folder() + "/two words.jar"));
  EXPECT_FALSE(std::filesystem::exists(folder() + "/verify.jar"));
}

TEST_F(EmbeddedJarsTest, StandAmongAllNineSourcesInOrder) {
  test::writeFile(*m_dir / "setup.cp1", "one");
  test::writeFile(*m_dir / "setup.cp", "mid");
  test::writeFile(*m_dir / "setup.cp2", "two");
  LauncherTestAccess::setPrependClasspath("pre");
  LauncherTestAccess::setAppendClasspath("post");
  const std::string command =
      resolve("%CP%(\"arg1\",\"arg2\")", {{"JVM_CLASSPATH", {"own"}}}, "arch");
  EXPECT_EQ("-cp \"pre\":one:own:mid:arg1:arg2:arch:\"" + folder() + "/one.jar\":\"" + folder() +
                "/two words.jar\":two:\"post\"",
            command);
}

TEST_F(EmbeddedJarsTest, AreNotQuotedInAVariable) {
  const test::ScopedEnvironment variable("MY_CP", "before");
  EXPECT_EQ("", resolve("%CP%(\"x\")", {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}}));
  EXPECT_EQ("x:" + folder() + "/one.jar:" + folder() + "/two words.jar", getenv("MY_CP"));
}

TEST_F(EmbeddedJarsTest, StayInTheLauncherForAVerification) {
  TagFile jvmFile;
  const JVMFile jvm(jvmFile);
  const long foldersBefore = PlatformTestAccess::createdDirectories().size();
  EXPECT_EQ("x", str(LaunchScript("%CP%(\"x\")", true).resolve(jvm)));
  EXPECT_EQ(foldersBefore, PlatformTestAccess::createdDirectories().size());
}

// A launcher that carries other files only still gets the folder for its jars.
TEST_F(ClasspathTest, WithoutEmbeddedJarsTheirFolderStaysEmpty) {
  test::writeFile(*m_dir / "setup.bin",
                  test::launcherFileBytes({{FILE_TYPE_VERIFY_JAR, 1, "verify.jar", "no"}}));
  LauncherTestAccess::resetInputFiles();
  Launcher::getInputFiles().load(false);
  const long foldersBefore = PlatformTestAccess::createdDirectories().size();
  EXPECT_EQ("[]", resolve("[%CP%()]", {}));
  ASSERT_EQ(foldersBefore + 1, PlatformTestAccess::createdDirectories().size());
  EXPECT_TRUE(std::filesystem::is_empty(str(PlatformTestAccess::createdDirectories().back())));
}

// --- The builders by themselves ---

TEST_F(ClasspathTest, AppendsAnArgument) {
  struct ArgRow {
    const char* name;
    std::string before;
    std::string arg;
    std::string wanted;
    std::string wantedLog;
  };
  const ArgRow rows[] = {
      {"empty", "a", "", "a", ""},
      {"blanks only", "a", " \t\r\n", "a", ""},
      {"first", "", "x", "x", ""},
      {"second", "a", "x", "a:x", ""},
      {"trimmed", "a", " x y ", "a:x y", ""},
      {"file", "a", "@DIR/list", "a:one:two", ""},
      {"file behind a blank", "a", " @DIR/list\n", "a:one:two", ""},
      {"file that is not there", "a", "@DIR/none", "a",
       "WARNING: Could not find the file DIR/none while building the classpath.\n"},
  };
  TagFile jvmFile;
  test::addTags(jvmFile, {{"CLASSPATH_SEPARATOR", {":"}}});
  const JVMFile jvm(jvmFile);
  const LaunchScript script("", false);
  test::writeFile(*m_dir / "list", "one\ntwo\n");
  for (const ArgRow& row : rows) {
    SCOPED_TRACE(row.name);
    CommandText classpath = sstr(row.before);
    script.appendClasspathArg(jvm, classpath, sstr(here(row.arg)));
    EXPECT_EQ(row.wanted, str(classpath));
    EXPECT_EQ(row.wantedLog, takeLog());
  }
}

TEST_F(ClasspathTest, WithoutASeparatorEntriesAreJoined) {
  TagFile jvmFile;
  const JVMFile jvm(jvmFile);
  EXPECT_EQ("ab", str(LaunchScript("%CP%(\"a\",\"b\")", true).resolve(jvm)));
}

}  // namespace
