#include <gtest/gtest.h>

#include <filesystem>

#include "archive/LauncherInputFiles.h"
#include "jvm/JVMFile.h"
#include "launcher/Launcher.h"
#include "launchscript/LaunchScript.h"
#include "support/JVMSupport.h"
#include "support/LauncherFiles.h"
#include "support/TestAccess.h"

namespace {

using test::sstr;
using test::str;

// --- The class path ---

// "DIR" stands for the folder with the launcher DIR/setup.bin and the side files of a row.
struct SideFile {
  std::string extension;
  std::string text;
};

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
    {"all nine sources in order",
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

class ClasspathTest : public testing::Test {
 protected:
  ClasspathTest() {
    LauncherTestAccess::setPurpose(1);
    LauncherTestAccess::resetInputFiles();
    PlatformImpl::setSystemTempDir(sstr(m_temp.path()));
    begin("", "", {});
  }

  // A new folder for each row.
  void begin(const std::string& prepend, const std::string& append,
             const std::vector<SideFile>& files) {
    m_dir = std::make_unique<test::TempDir>();
    LauncherTestAccess::setLauncherFileName(*m_dir / "setup.bin");
    LauncherTestAccess::setPrependClasspath(here(prepend));
    LauncherTestAccess::setAppendClasspath(here(append));
    for (const SideFile& file : files) {
      test::writeFile(*m_dir / ("setup" + file.extension), file.text);
    }
  }

  std::string here(const std::string& text) const {
    return test::replaced(text, "DIR", m_dir->path());
  }
  std::string takeLog() { return test::replaced(m_log.take(), m_dir->path(), "DIR"); }

  std::string resolve(const std::string& command, const test::Tags& tags,
                      const std::string& archive = "") const {
    TagFile scriptFile;
    test::addTags(scriptFile, {{"COMMAND", {command}}, {"ARCHIVE", {archive}}});
    TagFile jvmFile;
    test::addTags(jvmFile, {{"CLASSPATH", {"-cp "}}, {"CLASSPATH_SEPARATOR", {":"}}});
    for (const auto& tag : tags) {
      jvmFile.removeValue(sstr(tag.first));
      test::addTags(jvmFile, {tag});
    }
    const JVMFile jvm(jvmFile);
    return test::outcome([&] { return LaunchScript(scriptFile, true).resolve(jvm); });
  }

  std::unique_ptr<test::TempDir> m_dir;
  test::TempDir m_temp;
  test::LogCapture m_log;
};

TEST_F(ClasspathTest, GoesIntoTheCommand) {
  for (const ClasspathRow& row : kClasspaths) {
    SCOPED_TRACE(row.name);
    begin(row.prepend, row.append, row.files);
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
    begin(row.prepend, "", {});
    const test::ScopedEnvironment variable("MY_CP", "before");
    EXPECT_EQ(row.wanted, resolve(row.command, row.tags, row.archive));
    EXPECT_STREQ(row.wantedValue.c_str(), getenv("MY_CP"));
    EXPECT_EQ(row.wantedLog, takeLog());
  }
}

// --- Properties and arguments of side files ---

struct SideFileRow {
  const char* name;
  std::vector<SideFile> files;
  std::string command;
  std::string wanted;
  test::Tags tags = {};
};

const test::Tags kProperties = {{"SYSTEM", {"-D"}}, {"SYSTEM_SEPARATOR", {"="}}, {"X", {"ex"}}};

const SideFileRow kSideFiles[] = {
    {"no properties", {}, "[%RUNTIME_SYSTEMPROP%()]", "[]"},
    {"one property", {{".sp", "a=b\n"}}, "[%RUNTIME_SYSTEMPROP%()]", "[-Da=b]"},
    {"two properties", {{".sp", "a=b\nc=d"}}, "[%RUNTIME_SYSTEMPROP%()]", "[-Da=b -Dc=d]"},
    {"lines without an equal sign are skipped",
     {{".sp", "a\n\nb=c\nd\n"}},
     "[%RUNTIME_SYSTEMPROP%()]",
     "[-Db=c]"},
    {"value with an equal sign", {{".sp", "a=b=c"}}, "[%RUNTIME_SYSTEMPROP%()]", "[-Da=b=c]"},
    {"blanks around the equal sign stay",
     {{".sp", "  a = b  \r\n"}},
     "[%RUNTIME_SYSTEMPROP%()]",
     "[-Da = b]"},
    {"empty name, empty value", {{".sp", "=b\na="}}, "[%RUNTIME_SYSTEMPROP%()]", "[-D=b -Da=]"},
    {"value is resolved", {{".sp", "a=@X@"}}, "[%RUNTIME_SYSTEMPROP%()]", "[-Da=ex]"},

    {"no arguments", {}, "[%RUNTIME_JAVAARGS%()]", "[]"},
    {"one argument", {{".ja", "-Xint\n"}}, "[%RUNTIME_JAVAARGS%()]", "[-Xint]"},
    {"two arguments", {{".ja", "-Xint\n-ea"}}, "[%RUNTIME_JAVAARGS%()]", "[-Xint -ea]"},
    {"several on a line",
     {{".ja", " -Xint   -ea \r\n\n-da"}},
     "[%RUNTIME_JAVAARGS%()]",
     "[-Xint   -ea -da]"},
    {"arguments are resolved", {{".ja", "-x @X@"}}, "[%RUNTIME_JAVAARGS%()]", "[-x ex]"},
    {"an argument that resolves to nothing is skipped",
     {{".ja", "-a\n@Y@\n-b"}},
     "[%RUNTIME_JAVAARGS%()]",
     "[-a -b]"},
    {"required arguments behind them",
     {{".ja", "-Xint"}},
     "[%RUNTIME_JAVAARGS%()]",
     "[-Xint -req]",
     {{"REQ_JAVA_ARGS", {"-req"}}}},
    {"required-args-after-blank",
     {},
     "[%RUNTIME_JAVAARGS%()]",
     "[ -req]",
     {{"REQ_JAVA_ARGS", {"-req", "second value"}}}},
    {"required arguments wait for the next pass",
     {},
     "[%RUNTIME_JAVAARGS%()]",
     "[ -req ex]",
     {{"REQ_JAVA_ARGS", {"-req @X@"}}}},
};

TEST_F(ClasspathTest, ReadsPropertiesAndArguments) {
  for (const SideFileRow& row : kSideFiles) {
    SCOPED_TRACE(row.name);
    begin("", "", row.files);
    test::Tags tags = kProperties;
    tags.insert(tags.end(), row.tags.begin(), row.tags.end());
    EXPECT_EQ(row.wanted, resolve(row.command, tags));
    EXPECT_EQ("", takeLog());
  }
}

// --- Where the side files lie ---

struct NameRow {
  const char* name;
  std::string launcher;
  std::string wanted;
};

const NameRow kNames[] = {
    {"without extension", "DIR/setup", "DIR/setup.cp"},
    {"with extension", "DIR/setup.bin", "DIR/setup.cp"},
    {"with two extensions", "DIR/setup.tar.bin", "DIR/setup.tar.cp"},
    {"dot at the end", "DIR/setup.", "DIR/setup.cp"},
    {"dot in the folder only", "DIR/x.y/setup", "DIR/x.y/setup.cp"},
    {"dot in the folder and the name", "DIR/x.y/setup.sh", "DIR/x.y/setup.cp"},
    {"name begins with a dot", "DIR/.setup", "DIR/.cp"},
    {"dot in front of a backslash", "DIR/x.y\\setup", "DIR/x.y\\setup.cp"},
    {"dot behind a backslash", "DIR/x\\setup.bin", "DIR/x\\setup.cp"},
    {"no folder", "setup.bin", "setup.cp"},
    {"no folder, no extension", "setup", "setup.cp"},
};

TEST_F(ClasspathTest, LooksForSideFilesBesideTheOriginalLauncher) {
  for (const NameRow& row : kNames) {
    SCOPED_TRACE(row.name);
    begin("", "", {});
    const test::ScopedCurrentDir current(m_dir->path());
    LauncherTestAccess::setOriginalLauncherFileName(here(row.launcher));
    const std::string path = here(row.wanted);
    test::writeFile(path.starts_with("/") ? path : *m_dir / path, "found");
    EXPECT_EQ("-cp found", resolve("%CP%()", {}));
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

TEST_F(EmbeddedJarsTest, AreNotQuotedInAVariable) {
  const test::ScopedEnvironment variable("MY_CP", "before");
  EXPECT_EQ("", resolve("%CP%(\"x\")", {{"USE_CP_ENV_VAR", {"1"}}, {"CP_ENV_VAR", {"MY_CP"}}}));
  EXPECT_EQ("x:" + folder() + "/one.jar:" + folder() + "/two words.jar", getenv("MY_CP"));
}

TEST_F(EmbeddedJarsTest, StayInTheLauncherForAVerification) {
  TagFile jvmFile;
  const JVMFile jvm(jvmFile);
  const long foldersBefore = PlatformTestAccess::createdDirectories().size();
  EXPECT_EQ("x", str(LaunchScript("%CP%(\"x\")", true, false).resolve(jvm)));
  EXPECT_EQ(foldersBefore, PlatformTestAccess::createdDirectories().size());
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
  const LaunchScript script("", false, false);
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
  EXPECT_EQ("ab", str(LaunchScript("%CP%(\"a\",\"b\")", true, false).resolve(jvm)));
}

}  // namespace
