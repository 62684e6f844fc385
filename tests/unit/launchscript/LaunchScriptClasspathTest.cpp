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
    {"nothing", "java %CP%() Main", "java  Main"},
    {"one entry", "java %CP%(\"x.jar\") Main", "java -cp x.jar Main"},
    {"two entries", "%CP%(\"x.jar\",\"y.jar\")", "-cp x.jar:y.jar"},
    {"empty entries are skipped", "%CP%(\"\",\"x\",\"\",\"y\",\"\")", "-cp x:y"},
    {"entries keep blanks and quotes", "%CP%(\" a b \",\"\"\"c\"\"\")", "-cp  a b :\"c\""},
    {"entries beginning with @ are no files here", "%CP%(\"@no-file@\")", "-cp "},
    {"macros in entries wait for the next pass",
     "%CP%(\"@JVM_HOME@/x\")",
     "-cp /jdk/x",
     {},
     "",
     "",
     "",
     {{"JVM_HOME", {"/jdk"}}}},
    {"jvm file's own entries",
     "%CP%(\"x\")",
     "-cp tools.jar:x",
     {},
     "",
     "",
     "",
     {{"JVM_CLASSPATH", {"tools.jar", "second value"}}}},
    {"archive of the script", "%CP%(\"x\")", "-cp x:app.jar", {}, "", "", "app.jar"},
    {"archive with a function",
     "%CP%()",
     "-cp DIR/app.jar",
     {},
     "",
     "",
     "%LAUNCHER_DIR%()/app.jar"},
    {"archive that gives nothing", "%CP%(\"x\")", "-cp x", {}, "", "", "%IF_EXISTS%(\"Y\",\"y\")"},
    {"archive that fails",
     "java %CP%(\"x\") Main",
     "LauncherException: Launch script error: Invalid function name (NOPE).",
     {},
     "",
     "",
     "lib/%NOPE%()",
     {},
     "Launch command:\nlib/%NOPE%()\n"},
    {"macros in the archive wait for the next passes",
     "%CP%(\"x\")",
     "-cp x:/jdk/outside.jar",
     {},
     "",
     "",
     "@JVM_HOME@/#FROM_OUTSIDE#.jar",
     {{"JVM_HOME", {"/jdk"}}}},
    {"side file in front", "%CP%(\"x\")", "-cp f1:f2:x", {{".cp1", "f1\nf2\n"}}},
    {"side file in the middle", "%CP%(\"x\")", "-cp f1:x", {{".cp", "f1"}}},
    {"side file at the end", "%CP%(\"x\")", "-cp x:f1", {{".cp2", "f1\n"}}},
    {"side file with blanks and empty lines",
     "%CP%()",
     "-cp a b:c",
     {{".cp", "\n  a b \r\n\n\t\nc\t"}}},
    {"side file that is empty", "%CP%(\"x\")", "-cp x", {{".cp", ""}}},
    {"side file lines are no file names",
     "%CP%()",
     "-cp @list",
     {{".cp", "@list@@list\n"}},
     "",
     "",
     "",
     {{"list", {""}}}},
    {"option in front", "%CP%(\"x\")", "-cp \"p.jar\":x", {}, "p.jar"},
    {"option at the end", "%CP%(\"x\")", "-cp x:\"a.jar\"", {}, "", "a.jar"},
    {"options with several entries stay one", "%CP%()", "-cp \"a:b\":\"c:d\"", {}, "a:b", "c:d"},
    {"options keep their blanks", "%CP%()", "-cp \" p \":\" a \"", {}, " p ", " a "},
    {"option that names a file",
     "%CP%(\"x\")",
     "-cp f1:f2:x",
     {{".list", "f1\nf2\n"}},
     "@DIR/setup.list"},
    {"option at the end that names a file",
     "%CP%(\"x\")",
     "-cp x:f1",
     {{".list", "f1"}},
     "",
     "@DIR/setup.list"},
    {"option that names a file, blank behind it",
     "%CP%()",
     "-cp f1",
     {{".list", "f1"}},
     "@DIR/setup.list "},
    {"option with a blank before @ is an entry",
     "%CP%(\"x\")",
     "-cp \" @DIR/setup.list\":x",
     {{".list", "f1"}},
     " @DIR/setup.list"},
    {"option that names a missing file",
     "%CP%(\"x\")",
     "-cp x",
     {},
     "@DIR/none",
     "",
     "",
     {},
     "WARNING: Could not find the file DIR/none while building the classpath.\n"},
    {"option that names a folder",
     "%CP%(\"x\")",
     "-cp x",
     {},
     "@DIR",
     "",
     "",
     {},
     "WARNING: Could not find the file DIR while building the classpath.\n"},
    {"option that is @ alone",
     "%CP%(\"x\")",
     "-cp x",
     {},
     "@",
     "",
     "",
     {},
     "WARNING: Could not find the file  while building the classpath.\n"},
    {"option with @ inside", "%CP%()", "-cp \"x@y\"", {}, "x@y"},
    {"all sources but the embedded jars, in order",
     "%CP%(\"arg1\",\"arg2\")",
     "-cp \"pre\":one:own:mid:arg1:arg2:arch:two:\"post\"",
     {{".cp1", "one"}, {".cp", "mid"}, {".cp2", "two"}},
     "pre",
     "post",
     "arch",
     {{"JVM_CLASSPATH", {"own"}}}},
    {"twice", "%CP%(\"a\") %CP%(\"b\")", "-cp a -cp b"},
    {"another separator",
     "%CP%(\"a\",\"b\")",
     "-classpath=a;b",
     {},
     "",
     "",
     "",
     {{"CLASSPATH", {"-classpath="}}, {"CLASSPATH_SEPARATOR", {";"}}}},
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
  std::string wanted;
  std::string wantedValue;  // of MY_CP
  test::Tags tags;
  std::string wantedLog;
  std::string prepend = "";
  std::string archive = "";
  std::string append = "";
  std::vector<SideFile> files = {};
};

const VariableRow kVariables[] = {
    {"variable",
     "java %CP%(\"x\",\"y\") Main",
     "java  Main",
     "x:y",
     {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     "Set env var MY_CP to x:y\n\n"},
    {"quotes around entries are stripped",
     "%CP%(\"\"\"a b\"\"\",\"c\")",
     "",
     "a b:c",
     {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     "Set env var MY_CP to a b:c\n\n"},
    {"one quote of two is stripped",
     "%CP%(\"\"\"\"\"a\"\"\"\"\")",
     "",
     "\"a\"",
     {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     "Set env var MY_CP to \"a\"\n\n"},
    {"quotes around the archive are stripped",
     "%CP%()",
     "",
     "app.jar",
     {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     "Set env var MY_CP to app.jar\n\n",
     "",
     "\"app.jar\""},
    {"option-keeps-its-quotes",
     "%CP%(\"x\")",
     "",
     "\"p\":x",
     {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     "Set env var MY_CP to \"p\":x\n\n",
     "p"},
    {"option-keeps-its-quotes: at the end, with all side files",
     "%CP%(\"x\")",
     "",
     "\"p\":f1:f2:x:f3:\"a b\"",
     {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     "Set env var MY_CP to \"p\":f1:f2:x:f3:\"a b\"\n\n",
     "p",
     "",
     "a b",
     {{".cp1", "f1"}, {".cp", "f2"}, {".cp2", "f3"}}},
    {"side files keep their quotes",
     "%CP%()",
     "",
     "\"f1\":\"f2\":\"f3\"",
     {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     "Set env var MY_CP to \"f1\":\"f2\":\"f3\"\n\n",
     "",
     "",
     "",
     {{".cp1", "\"f1\""}, {".cp", "\"f2\""}, {".cp2", "\"f3\""}}},
    {"macros in the archive are not resolved for the variable",
     "%CP%(\"x\")",
     "",
     "x:@CP_ENV_VAR@/#MY_CP#.jar",
     {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     "Set env var MY_CP to x:@CP_ENV_VAR@/#MY_CP#.jar\n\n",
     "",
     "@CP_ENV_VAR@/#MY_CP#.jar"},
    {"jvm file's own entries keep their quotes",
     "%CP%(\"x\")",
     "",
     "\"own\":x",
     {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}, {"JVM_CLASSPATH", {"\"own\""}}},
     "Set env var MY_CP to \"own\":x\n\n"},
    {"nothing in the class path",
     "[%CP%()]",
     "[]",
     "",
     {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     "Set env var MY_CP to \n\n"},
    {"no variable named: the class path is dropped",
     "[%CP%(\"x\")]",
     "[]",
     "before",
     {{"USE_CP_ENV_VAR", {"1"}}},
     "ERROR: If USE_CP_ENV_VAR is set to 1 in the jvm file, then the jvm file should also define "
     "CP_ENV_VAR.\n"},
    {"use-cp-env-var-exactly-1: 0",
     "%CP%(\"x\")",
     "-cp x",
     "before",
     {{"USE_CP_ENV_VAR", {"0"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     ""},
    {"use-cp-env-var-exactly-1: 2",
     "%CP%(\"x\")",
     "-cp x",
     "before",
     {{"USE_CP_ENV_VAR", {"2"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     ""},
    {"use-cp-env-var-exactly-1: 01",
     "%CP%(\"x\")",
     "-cp x",
     "before",
     {{"USE_CP_ENV_VAR", {"01"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     ""},
    {"use-cp-env-var-exactly-1: 1 with more",
     "%CP%(\"x\")",
     "-cp x",
     "before",
     {{"USE_CP_ENV_VAR", {"1x"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     ""},
    {"variable is seen by a later reference",
     "%CP%(\"x\") #MY_CP#",
     " x",
     "x",
     {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}},
     "Set env var MY_CP to x\n\n"},
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
    SString classpath = sstr(row.before);
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
