#include <gtest/gtest.h>

#include "archive/FileIndex.h"
#include "jvm/JVMFile.h"
#include "launchscript/LaunchScript.h"
#include "support/JVMSupport.h"
#include "support/TestAccess.h"

namespace {

using test::sstr;
using test::str;

// Every row's command is resolved in a folder <dir> that holds the launcher <dir>/setup.bin, with
// the temporary folder <temp> and the environment variable SET=value. "!" in front of what is
// wanted: the text of the error.
struct Row {
  const char* name;
  std::string command;
  std::string wanted;
  test::Tags tags = {};
};

const test::Tags kJava = {{"JVM_HOME", {"/jdk"}}, {"JVM_EXE", {"bin/java"}},
                          {"SYSTEM", {"-D"}},     {"SYSTEM_SEPARATOR", {"="}},
                          {"X", {"ex"}},          {"EMPTY", {""}},
                          {"PERCENT", {"%"}},     {"CALL", {"%SYSTEMPROP%(\"a\",\"b\")"}}};

const Row kRows[] = {
    {"plain text", "java -jar x.jar", "java -jar x.jar"},
    {"empty", "", ""},

    // Environment references.
    {"variable", "#SET#/lib", "value/lib"},
    {"unset variable", "[#NOT_SET_ANYWHERE#]", "[]"},
    {"variable names are case-sensitive", "[#set#]", "[]"},
    {"variable takes no arguments", "#SET#(\"a\")", "value(\"a\")"},
    {"doubled number sign", "a##b", "a#b"},
    {"one number sign", "a#b", "a#b"},

    // The three passes: functions, jvm file, environment.
    {"jvm file's macro", "\"@JVM_HOME@/@JVM_EXE@\"", "\"/jdk/bin/java\""},
    {"function gives a macro of the jvm file", "%REPLACE%(\"-\",\"@\",\"-X-\")", "ex"},
    {"function gives an environment reference", "%REPLACE%(\"-\",\"#\",\"-SET-\")", "value"},
    {"macro of the jvm file gives an environment reference", "@V@", "value", {{"V", {"#SET#"}}}},
    {"macro of the jvm file gives no function", "@CALL@", "%SYSTEMPROP%(\"a\",\"b\")"},
    {"variable gives no macro", "#MACRO#", "@X@"},
    {"variable gives no function", "#FUNCTION#", "%TEMP_DIR%()"},
    {"percent sign in a text", "100%", "100%"},
    {"doubled percent sign at the end", "100%%", "100%"},
    {"doubled-delimiter-opens-macro", "a%%b%c", "!Invalid function name (%b)."},
    {"value-scanned-again", "%REPLACE%(\"-\",\"%\",\"-SYSTEMPROP-(\"\"a\"\",\"\"b\"\")\")",
     "-Da=b"},

    // Names.
    {"unknown function", "%NOTHING%()", "!Invalid function name (NOTHING)."},
    {"case matters", "%cp%()", "!Invalid function name (cp)."},
    {"blank in the name", "%CP %()", "!Invalid function name (CP )."},
    {"longer name", "%CPX%()", "!Invalid function name (CPX)."},
    {"unknown name fails before its arguments", "%NOTHING%(a", "!Invalid function name (NOTHING)."},

    // The argument list.
    {"no arguments", "x%LAUNCHER_DIR%()y", "x<dir>y"},
    {"white space before each token", "%SYSTEMPROP% \t\r\n( \"a\" \n,\t\"b\" ) x", "-Da=b x"},
    {"comma before the end", "%SYSTEMPROP%(\"a\",\"b\",)", "-Da=b"},
    {"comma and blank before the end", "%SYSTEMPROP%(\"a\",\"b\", )", "-Da=b"},
    {"doubled quotes in a string", "%SYSTEMPROP%(\"a\",\"\"\"b\"\"\")", "-Da=\"b\""},
    {"delimiters in a string", "%SYSTEMPROP%(\"a\",\"),(\")", "-Da=),("},
    {"empty strings", "%SYSTEMPROP%(\"\",\"\")", "-D="},
    {"text behind the call", "%SYSTEMPROP%(\"a\",\"b\"))", "-Da=b)"},
    {"no parenthesis, end of text", "%LAUNCHER_DIR%",
     "!Expected left parenthesis. (near character 14)"},
    {"no parenthesis, white space only", "%LAUNCHER_DIR%  \n",
     "!Expected left parenthesis. (near character 14)"},
    {"no parenthesis, text", "%LAUNCHER_DIR%/lib",
     "!Expected left parenthesis. (near character 14)"},
    {"no parenthesis, behind white space", "%LAUNCHER_DIR%  /lib",
     "!Expected left parenthesis. (near character 14)"},
    {"list ends behind the parenthesis", "%CP%(", "!Expected string arg. (near character 5)"},
    {"argument without quotes", "%SYSTEMPROP%(a)", "!Expected string arg. (near character 13)"},
    {"argument in single quotes", "%SYSTEMPROP%('a')", "!Expected string arg. (near character 13)"},
    {"argument without quotes behind blanks", "%SYSTEMPROP%(  a)",
     "!Expected string arg. (near character 13)"},
    {"comma first", "%SYSTEMPROP%(,\"a\")", "!Expected string arg. (near character 13)"},
    {"two commas", "%SYSTEMPROP%(\"a\",,\"b\")", "!Expected string arg. (near character 17)"},
    {"second argument without quotes", "%SYSTEMPROP%(\"a\", b)",
     "!Expected string arg. (near character 17)"},
    {"list ends behind a comma", "%SYSTEMPROP%(\"a\", ",
     "!Expected string arg. (near character 17)"},
    {"no comma", "%SYSTEMPROP%(\"a\" \"b\")", "!Expected right parenthesis. (near character 16)"},
    {"two strings side by side", "%SYSTEMPROP%(\"a\"b)",
     "!Expected right parenthesis. (near character 16)"},
    {"list ends behind a string", "%SYSTEMPROP%(\"a\"",
     "!Expected right parenthesis. (near character -1)"},
    {"list ends behind a string and a blank", "%SYSTEMPROP%(\"a\" ",
     "!Expected right parenthesis. (near character 16)"},
    {"positions count from the text as resolved", "%LAUNCHER_DIR%()%CP%(x)",
     "!Expected string arg. (near character <dir+5>)"},
    {"positions count what a value brought", "%REPLACE%(\"-\",\"%\",\"-CP-(y)\")",
     "!Expected string arg. (near character 5)"},

    // REPLACE.
    {"REPLACE", "%REPLACE%(\"a\",\"b\",\"banana\")", "bbnbnb"},
    {"REPLACE by nothing", "%REPLACE%(\"a\",\"\",\"banana\")", "bnn"},
    {"REPLACE what is not there", "%REPLACE%(\"x\",\"y\",\"banana\")", "banana"},
    {"REPLACE in nothing", "[%REPLACE%(\"x\",\"y\",\"\")]", "[]"},
    {"REPLACE goes on behind what it put in", "%REPLACE%(\"a\",\"aa\",\"banana\")", "baanaanaa"},
    {"REPLACE from left to right", "%REPLACE%(\"aa\",\"b\",\"aaaaa\")", "bba"},
    {"REPLACE does not look back", "%REPLACE%(\"ab\",\"a\",\"abb\")", "ab"},
    {"REPLACE resolves from and to", "%REPLACE%(\"@X@\",\"@JVM_HOME@\",\"-ex-\")", "-/jdk-"},
    {"REPLACE does not resolve its subject first", "%REPLACE%(\"@\",\"\",\"@X@\")", "X"},
    {"REPLACE nothing leaves the subject", "%REPLACE%(\"\",\"b\",\"banana\")", "banana"},
    {"REPLACE an empty tag leaves the subject", "%REPLACE%(\"@EMPTY@\",\"b\",\"banana\")",
     "banana"},
    {"REPLACE without arguments", "%REPLACE%()", "!REPLACE function requires 3 arguments."},
    {"REPLACE with two", "%REPLACE%(\"a\",\"b\")", "!REPLACE function requires 3 arguments."},
    {"REPLACE with four", "%REPLACE%(\"a\",\"b\",\"c\",\"d\")",
     "!REPLACE function requires 3 arguments."},

    // Side files: absent here.
    {"RUNTIME_SYSTEMPROP", "[%RUNTIME_SYSTEMPROP%()]", "[]"},
    {"RUNTIME_SYSTEMPROP with one", "%RUNTIME_SYSTEMPROP%(\"a\")",
     "!RUNTIME_SYSTEMPROP function takes no arguments."},
    {"RUNTIME_JAVAARGS", "[%RUNTIME_JAVAARGS%()]", "[]"},
    {"RUNTIME_JAVAARGS with one", "%RUNTIME_JAVAARGS%(\"\")",
     "!RUNTIME_JAVAARGS function takes no arguments."},

    // SYSTEMPROP.
    {"SYSTEMPROP", "%SYSTEMPROP%(\"name\",\"some value\")", "-Dname=some value"},
    {"SYSTEMPROP resolves the value", "%SYSTEMPROP%(\"home\",\"@JVM_HOME@\")", "-Dhome=/jdk"},
    {"SYSTEMPROP: the next pass resolves the name", "%SYSTEMPROP%(\"@X@\",\"1\")", "-Dex=1"},
    {"SYSTEMPROP of another kind of JVM",
     "%SYSTEMPROP%(\"n\",\"v\")",
     "/d:n:v",
     {{"SYSTEM", {"/d:"}}, {"SYSTEM_SEPARATOR", {":"}}}},
    {"SYSTEMPROP without the tags", "%SYSTEMPROP%(\"n\",\"v\")", "nv", {{"DESC", {"bare"}}}},
    {"SYSTEMPROP without arguments", "%SYSTEMPROP%()",
     "!SYSTEMPROP function requires 2 arguments."},
    {"SYSTEMPROP with one", "%SYSTEMPROP%(\"a\")", "!SYSTEMPROP function requires 2 arguments."},
    {"SYSTEMPROP with three", "%SYSTEMPROP%(\"a\",\"b\",\"c\")",
     "!SYSTEMPROP function requires 2 arguments."},

    // IF_EXISTS.
    {"IF_EXISTS: it does", "[%IF_EXISTS%(\"X\",\"-x @X@\")]", "[-x ex]"},
    {"IF_EXISTS: absent", "[%IF_EXISTS%(\"Y\",\"-y\")]", "[]"},
    {"IF_EXISTS: empty", "[%IF_EXISTS%(\"EMPTY\",\"-e\")]", "[]"},
    {"IF_EXISTS: first value empty", "[%IF_EXISTS%(\"V\",\"-v\")]", "[]", {{"V", {"", "second"}}}},
    {"IF_EXISTS without arguments", "%IF_EXISTS%()", "!IF_EXISTS function requires 2 arguments."},
    {"IF_EXISTS with one", "%IF_EXISTS%(\"X\")", "!IF_EXISTS function requires 2 arguments."},
    {"IF_EXISTS with three", "%IF_EXISTS%(\"X\",\"a\",\"b\")",
     "!IF_EXISTS function requires 2 arguments."},

    // The launcher.
    {"LAUNCHER_FILE", "%LAUNCHER_FILE%()", "<dir>/setup.bin"},
    {"LAUNCHER_FILE with one", "%LAUNCHER_FILE%(\"a\")",
     "!LAUNCHER_FILE function takes 0 arguments."},
    {"LAUNCHER_DIR", "%LAUNCHER_DIR%()/lib", "<dir>/lib"},
    {"LAUNCHER_DIR with one", "%LAUNCHER_DIR%(\"a\")", "!LAUNCHER_DIR function takes 0 arguments."},
    {"APPLICATION_ARCHIVE: none embedded", "[%APPLICATION_ARCHIVE%()]", "[]"},
    {"APPLICATION_ARCHIVE: none of that name", "[%APPLICATION_ARCHIVE%(\"no.jar\")]", "[]"},
    {"application-archive-message", "%APPLICATION_ARCHIVE%(\"a\",\"b\")",
     "!APPLICATION_ARCHIVE function takes 0 arguments."},
    {"TEMP_DIR", "%TEMP_DIR%()", "<temp>"},
    {"TEMP_DIR with one", "%TEMP_DIR%(\"a\")", "!TEMP_DIR function takes 0 arguments."},
};

class LaunchScriptMacros : public testing::Test {
 protected:
  LaunchScriptMacros() {
    LauncherTestAccess::setLauncherFileName(m_dir / "setup.bin");
    LauncherTestAccess::setPrependClasspath("");
    LauncherTestAccess::setAppendClasspath("");
    PlatformImpl::setSystemTempDir(sstr(m_temp.path()));
    setenv("SET", "value", 1);
    setenv("MACRO", "@X@", 1);
    setenv("FUNCTION", "%TEMP_DIR%()", 1);
  }

  std::string resolve(const std::string& command, const test::Tags& tags) const {
    TagFile jvmFile;
    test::addTags(jvmFile, tags.empty() ? kJava : tags);
    const JVMFile jvm(jvmFile);
    return test::outcome([&] { return LaunchScript(sstr(command), true).resolve(jvm); });
  }

  std::string here(std::string text) const {
    text = test::replaced(text, "<dir+5>", std::to_string(m_dir.path().size() + 5));
    text = test::replaced(text, "<temp>", m_temp.path());
    return test::replaced(text, "<dir>", m_dir.path());
  }

  test::TempDir m_dir;
  test::TempDir m_temp;
  test::LogCapture m_log;
};

TEST_F(LaunchScriptMacros, ResolvesCommands) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    std::string wanted = here(row.wanted);
    if (wanted.starts_with("!")) {
      wanted = "LauncherException: Launch script error: " + wanted.substr(1);
    }
    EXPECT_EQ(wanted, resolve(row.command, row.tags));
  }
}

// --- What the log shows when a command cannot be resolved ---

struct LogRow {
  const char* name;
  std::string command;
  std::string wantedLog;
};

const LogRow kLogs[] = {
    {"nothing resolved yet", "java %NOTHING%() x", "Launch command:\njava %NOTHING%() x\n"},
    {"as far as it was resolved", "java %SYSTEMPROP%(\"a\",\"b\") %CP%(x) %CP%()",
     "Launch command:\njava -Da=b %CP%(x) %CP%()\n"},
    {"a wrong number of arguments", "java %SYSTEMPROP%(\"a\",\"b\") %SYSTEMPROP%(\"a\") @X@",
     "Launch command:\njava -Da=b %SYSTEMPROP%(\"a\") @X@\n"},
};

TEST_F(LaunchScriptMacros, LogsTheCommandThatFails) {
  for (const LogRow& row : kLogs) {
    SCOPED_TRACE(row.name);
    resolve(row.command, {});
    EXPECT_EQ(row.wantedLog, m_log.take());
  }
}

// --- A string without its end: the parser's own text, with a position in the text as resolved ---

struct UnendedRow {
  const char* name;
  std::string command;
  std::string wanted;
};

const UnendedRow kUnended[] = {
    {"no closing quote", "%CP%(\"a", "6"},
    {"opening quote last", "%CP%(\"", "6"},
    {"doubled quote last", "%CP%(\"a\"\"", "-1"},
    {"second string", "%CP%(\"a\",\"b)", "10"},
    {"behind a doubled quote", "%CP%(\"a\"\"b", "9"},
    {"behind a resolved call", "%SYSTEMPROP%(\"a\",\"b\")%CP%(\"a", "11"},
};

TEST_F(LaunchScriptMacros, PassesTheErrorOfAnUnendedStringOn) {
  for (const UnendedRow& row : kUnended) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ("LauncherException: Expected double quote to end argument near " + row.wanted,
              resolve(row.command, {}));
    EXPECT_EQ("", m_log.take());
  }
}

// --- getArguments by itself ---

struct ArgumentsRow {
  const char* name;
  std::string text;
  std::size_t position;
  std::vector<std::string> wanted;
  std::size_t wantedPosition;
};

const ArgumentsRow kArguments[] = {
    {"none", "()", 0, {}, 2},
    {"none, with white space", " ( ) x", 0, {}, 4},
    {"one", "(\"a\")", 0, {"a"}, 5},
    {"two", "(\"a\",\"b c\")x", 0, {"a", "b c"}, 11},
    {"from the middle", "x(\"a\")y", 1, {"a"}, 6},
    {"comma at the end", "(\"a\",)", 0, {"a"}, 6},
    {"doubled quotes", "(\"a\"\"b\")", 0, {"a\"b"}, 8},
};

TEST(LaunchScriptArguments, AreRead) {
  const LaunchScript script("", false);
  for (const ArgumentsRow& row : kArguments) {
    SCOPED_TRACE(row.name);
    CommandTexts args;
    std::size_t position = row.position;
    script.getArguments(sstr(row.text), position, args);
    std::vector<std::string> read;
    for (const CommandText& arg : args) {
      read.push_back(str(arg));
    }
    EXPECT_EQ(row.wanted, read);
    EXPECT_EQ(row.wantedPosition, position);
  }
}

// --- The temporary folder's name ---

TEST_F(LaunchScriptMacros, TempDirLosesOneBackslash) {
  struct TempRow {
    const char* name;
    const char* folder;
    const char* wanted;
  };
  const TempRow rows[] = {
      {"temp-dir-backslash", "t\\", "t"},
      {"temp-dir-backslash: one of two", "t\\\\", "t\\"},
      {"a slash is kept", "t/", "t/"},
      {"neither", "t", "t"},
  };
  const test::ScopedCurrentDir current(m_temp.path());
  for (const TempRow& row : rows) {
    SCOPED_TRACE(row.name);
    test::writeFile(m_temp / row.folder + "/file", "");
    PlatformImpl::setSystemTempDir(row.folder);
    EXPECT_EQ(m_temp / row.wanted, resolve("%TEMP_DIR%()", {}));
  }
}

TEST_F(LaunchScriptMacros, OriginalLauncherGivesTheFolder) {
  LauncherTestAccess::setOriginalLauncherFileName("/orig/first");
  EXPECT_EQ(m_dir / "setup.bin", resolve("%LAUNCHER_FILE%()", {}));
  EXPECT_EQ("/orig", resolve("%LAUNCHER_DIR%()", {}));
}

TEST_F(LaunchScriptMacros, ArchiveBesideTheLauncherIsCopiedOnce) {
  test::writeFile(m_dir / "app.jar", "archive");
  const long foldersBefore = PlatformTestAccess::createdDirectories().size();
  TagFile jvmFile;
  const JVMFile jvm(jvmFile);
  const LaunchScript script("%APPLICATION_ARCHIVE%(\"app.jar\")", true);
  const std::string path = str(script.resolve(jvm));
  EXPECT_EQ("archive", test::readFile(path));
  EXPECT_EQ(path, str(script.resolve(jvm)));
  EXPECT_EQ(foldersBefore + 1, PlatformTestAccess::createdDirectories().size());
}

// --- Commands that would never end ---

TEST_F(LaunchScriptMacros, EndlessValueCanBeCanceled) {
  setenv("LANG", "C", 1);
  PlatformTestAccess::setCanceled(true);
  EXPECT_EQ("LauncherException: Canceled by the user.", resolve("@LOOP@", {{"LOOP", {"@LOOP@"}}}));
  PlatformTestAccess::setCanceled(false);
}

TEST_F(LaunchScriptMacros, ArchiveMustNotCallTheClassPath) {
  TagFile scriptFile;
  test::addTags(scriptFile, {{"COMMAND", {"java %CP%(\"a\")"}}, {"ARCHIVE", {"%CP%(\"b\")"}}});
  TagFile jvmFile;
  const JVMFile jvm(jvmFile);
  const FileIndex noFiles;
  const LaunchScript script(scriptFile, true, noFiles);
  for (int i = 0; i < 2; ++i) {  // the guard does not outlive the run
    EXPECT_EQ("LauncherException: Launch script error: ARCHIVE must not call the CP function.",
              test::outcome([&] { return script.resolve(jvm); }));
  }
}

}  // namespace
