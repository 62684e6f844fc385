// The input-file protocol: a calling program asks for one action.
#include <filesystem>

#include "e2e/LauncherTest.h"

namespace e2e {
namespace {

constexpr const char* kOpenFailed =
    "Unable to open input file specified on the command line after the -in option.";
constexpr const char* kLoadFailed = "Could not load the input file.";

class InputFile : public LauncherTest {
 protected:
  std::string input(const std::string& tags) {
    return test::writeFile(dir("in.tag"), tags + "LOGFILE: " + logFile() + "\n");
  }
};

// QUIRK(input-failure-told-twice)
TEST_F(InputFile, FailuresAreShownTwiceAndLoggedOnce) {
  struct Row {
    const char* name;
    std::string argument;
    std::string message;  // of the exception
    std::string logged;   // in front of it in the log
  };
  const std::string noColon = test::writeFile(dir("no colon.tag"), "ACTION SEARCH\n");
  const std::string noEnd = test::writeFile(dir("noend.tag"), "ACTION: SEARCH\nJVM:\n");
  const std::string openQuote = test::writeFile(dir("quote.tag"), "ACTION: \"SEARCH\n");
  const std::string syntaxError =
      "Syntax error in " + noColon + " at line 1 ==> Missing colon at the end of the tag name.";
  const std::string blockError =
      "Syntax error in " + noEnd + " at line 2 ==> Missing /: tag completer.";
  const Row rows[] = {
      {"empty name", "", kOpenFailed, ""},
      {"missing file", dir("missing"), kOpenFailed, ""},
      {"a folder", dir("app"), kOpenFailed, ""},
      {"one quote", "\"", kOpenFailed, ""},
      {"syntax error", noColon, syntaxError,
       "Loading input file " + noColon + "\nERROR: " + syntaxError + "\n"},
      {"block without its end", noEnd, blockError,
       "Loading input file " + noEnd + "\nERROR: " + blockError + "\n"},
      {"open quote", openQuote, "Expected double quote to end argument near 9",
       "Loading input file " + openQuote + "\n"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    std::filesystem::remove(logFile());
    const Result result = run({"-cv:in", row.argument});
    EXPECT_EQ(255, result.status);
    EXPECT_EQ(kLoadFailed + row.message + "\n" + row.message + "\n", result.out);
    EXPECT_EQ("------------------\n" + row.logged + "ERROR: " + row.message + "\n", result.log);
  }
}

TEST_F(InputFile, QuotesAroundTheNameAreTakenOffOneByOne) {
  const std::string path = input("ACTION: SEARCH\n");
  for (const std::string& name : {"\"" + path + "\"", "\"" + path, path}) {
    SCOPED_TRACE(name);
    const Result result = run({"-cv:in", name});
    EXPECT_EQ(0, result.status);
    EXPECT_EQ("0\n", result.out);
    EXPECT_NE(std::string::npos, result.log.find("Loading input file " + name + "\n"));
  }
}

TEST_F(InputFile, InvalidActions) {
  struct Row {
    const char* tags;
    const char* action;
  };
  const Row rows[] = {
      {"ACTION: search\n", "search"}, {"ACTION: SEARCH_ALLX\n", "SEARCH_ALLX"}, {"X: y\n", ""}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.tags);
    const std::string text = std::string("Invalid action in input file: ") + row.action + "\n";
    const Result result = runBare({"-cv:in", input(row.tags)});
    EXPECT_EQ(255, result.status);
    EXPECT_EQ(text + text, result.out);
  }
}

// QUIRK(no-logfile-no-log)
TEST_F(InputFile, WithoutLogFileTheLogIsSwitchedOff) {
  const std::string path = test::writeFile(dir("in.tag"), "ACTION: SEARCH\n");
  const Result result = run({"-cv:in", path});
  EXPECT_EQ("------------------\nLoading input file " + path + "\n", result.log);
}

TEST_F(InputFile, SearchPrintsTheMatchWhateverIsHidden) {
  const std::string home = makeJVM("java17", "17.0.1");
  setEnv("FAKE_HOME", home);
  embedJVM("PLATFORM_HINT: FAKE_HOME\n");
  embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "");
  expectLeftovers();
  for (const char* more : {"", "SHOW_FAIL_MSG: 1\n"}) {
    for (const std::string option : {"-cv:version", "-cv:silent"}) {
      SCOPED_TRACE(more + option);
      const Result result = run({option, "-cv:in", input("ACTION: SEARCH\n" + std::string(more))});
      EXPECT_EQ(0, result.status);
      const std::vector<std::string> left = test::listTree(tempDir());
      ASSERT_EQ(1u, left.size());
      const std::string jvmFile = tempDir() + "/" + left[0];
      const std::string version = option == "-cv:version" ? CORVANE_VERSION "\n" : "";
      EXPECT_EQ(version + "1\n" + home + "\n" + jvmFile + "\n", result.out);
      EXPECT_NE(std::string::npos, test::readFile(jvmFile).find("JVM_HOME:  " + home + "\n"));
      EXPECT_NE(std::string::npos, test::readFile(jvmFile).find("JVM_FILE:  " + jvmFile + "\n"));
      EXPECT_NE(std::string::npos, test::readFile(jvmFile).find("JVM_TEMP:  0\n"));
      std::filesystem::remove(jvmFile);
    }
  }
}

TEST_F(InputFile, SearchWithoutAMatch) {
  embedJVM("PATH_HINT: /nowhere\n");
  embed(FILE_TYPE_JVM_MESSAGE, 3, "message", "MESSAGE: Please install Java 17.\n");
  EXPECT_EQ("0\n", runBare({"-cv:in", input("ACTION: SEARCH\n")}).out);
  const Result shown = runBare({"-cv:in", input("ACTION: SEARCH\nSHOW_FAIL_MSG: 1\n")});
  EXPECT_EQ(0, shown.status);
  EXPECT_EQ("Please install Java 17.\n0\n", shown.out);
  const Result progress = runBare({"-cv:in", input("ACTION: SEARCH\nSHOW_PROGRESS: 1\n")});
  EXPECT_EQ(0, progress.status);
  EXPECT_EQ("\nSearching for Java(tm) Virtual Machine...\n", progress.out.substr(0, 43));
}

TEST_F(InputFile, SearchThatFailsPrintsZeroAndNoMessage) {
  embedJVM("PATH_HINT: /nowhere\n");
  embed(FILE_TYPE_VERIFY_JAR, 4, "verify.jar", "not looked at");
  const Result result = runBare(
      {"-cv:tempdir", dir("missing"), "-cv:in", input("ACTION: SEARCH\nSHOW_FAIL_MSG: 1\n")});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ("0\n", result.out);
}

TEST_F(InputFile, VerifyNeedsBothValues) {
  const std::string error =
      "ERROR: TO execute the VERIFY_JVM action, you must also provide values in the input file for "
      "VERIFY_JVM_FILE and VERIFY_JVM_HOME.\n";
  for (const char* more : {"", "VERIFY_JVM_FILE: x\n", "VERIFY_JVM_HOME: y\n"}) {
    SCOPED_TRACE(more);
    std::filesystem::remove(logFile());
    const Result result = runBare({"-cv:in", input("ACTION: VERIFY_JVM\n" + std::string(more))});
    EXPECT_EQ(255, result.status);
    EXPECT_EQ("", result.out);
    EXPECT_EQ("------------------\n" + error, result.log);
  }
}

TEST_F(InputFile, VerifyPrintsItsResult) {
  const std::string home = makeJVM("java17", "17.0.1");
  const std::string jvmFile = test::writeFile(
      dir("java.jvm"), "DESC: Java 17\nJVM_EXE: bin/java\nJVM_PROPERTIES: java.version=17...\n");
  const auto tags = [&](const std::string& tested) {
    return "ACTION: VERIFY_JVM\nVERIFY_CLASSPATH: \"\"\"v.jar\"\"\"\nVERIFY_CLASS_NAME: Verify\n"
           "VERIFY_JVM_FILE: " +
           jvmFile + "\nVERIFY_JVM_HOME: " + tested + "\n";
  };
  EXPECT_EQ("1\n", runBare({"-cv:in", input(tags(home))}).out);
  const std::string old = makeJVM("java8", "1.8.0");
  const Result result = runBare({"-cv:in", input(tags(old) + "SHOW_FAIL_MSG: 1\n")});
  EXPECT_EQ(0, result.status);
  // One dot for the output that was read and six for the verification.
  EXPECT_EQ(".......The JVM is not valid.\n0\n\n", result.out);
}

TEST_F(InputFile, VerifyOfAMissingJvmFileIsAnError) {
  const Result result = runBare(
      {"-cv:in", input("ACTION: VERIFY_JVM\nVERIFY_JVM_FILE: /no/file\nVERIFY_JVM_HOME: /x\n")});
  EXPECT_EQ(255, result.status);
  EXPECT_EQ("Unable to load input file: /no/file\n", result.out);
}

// QUIRK(install-without-values)
TEST_F(InputFile, InstallNeedsBothValuesAndSaysNothing) {
  for (const char* more : {"", "INSTALL_JVM_EXE: x\n", "INSTALL_JVM_DEST: y\n"}) {
    SCOPED_TRACE(more);
    const Result result = runBare({"-cv:in", input("ACTION: INSTALL_JVM\n" + std::string(more))});
    EXPECT_EQ(0, result.status);
    EXPECT_EQ("", result.out);
  }
}

TEST_F(InputFile, InstallRunsTheInstallerInItsFolderAndPrintsTheJvmFile) {
  const std::string target = dir("installed");
  test::writeFile(target + "/here", "");
  const Result result = runBare(
      {"-cv:in", input("ACTION: INSTALL_JVM\nINSTALL_JVM_EXE: echo 'DESC: Java' >jvm; exit 3\n"
                       "INSTALL_JVM_DEST: " +
                       target + "\n")});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ(target + "/jvm\n", result.out);
  EXPECT_EQ("DESC:  Java\nJVM_HOME:  " + target + "\nJVM_FILE:  " + target + "/jvm\nJVM_TEMP:  0\n",
            test::readFile(target + "/jvm"));
}

TEST_F(InputFile, InstallWithoutAJvmFileIsAnError) {
  const Result result = runBare({"-cv:in", input("ACTION: INSTALL_JVM\nINSTALL_JVM_EXE: true\n"
                                                 "INSTALL_JVM_DEST: " +
                                                 dir("app") + "\n")});
  EXPECT_EQ(255, result.status);
  EXPECT_EQ("Unable to load input file: " + dir("app") + "/jvm\n", result.out);
}

TEST_F(InputFile, RunInstructionsPrefersTheScriptsThatItNames) {
  embedInstructions({"EMBEDDED"});
  const std::string script =
      test::writeFile(dir("other.ins"), "INSTRUCTIONS:\n// one\nNAMED\n/:\n");
  const Result named = runBare(
      {"-cv:in", input("ACTION: RUN_INSTRUCTIONS\nINSTRUCTIONS: " + script + "\nUI_TITLE: My\n")});
  EXPECT_EQ(255, named.status);
  EXPECT_EQ("My\nError in instructions. Invalid command (NAMED).  Line number (2)\n", named.out);
  const Result embedded = runBare({"-cv:in", input("ACTION: RUN_INSTRUCTIONS\n")});
  EXPECT_EQ("Error in instructions. Invalid command (EMBEDDED).  Line number (1)\n", embedded.out);
}

TEST_F(InputFile, AFileItNamesThatDoesNotLoad) {
  struct Row {
    const char* tag;
    const char* prefix;
  };
  const Row rows[] = {{"INSTRUCTIONS", "Error loading instructions file."},
                      {"LAUNCHSCRIPT", "Error loading launch script."},
                      {"JVM", "Error loading JVM file."}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.tag);
    const Result result =
        runBare({"-cv:in", input("ACTION: SEARCH\n" + std::string(row.tag) + ": /no/file\n")});
    const std::string text = std::string(row.prefix) + "Unable to load input file: /no/file\n";
    EXPECT_EQ(255, result.status);
    EXPECT_EQ(text + text, result.out);
  }
}

// Each performs its action; the run, which an action may ask for or take away, comes last.
TEST_F(InputFile, SeveralInputFiles) {
  const auto tags = [this](const std::string& name, const std::string& text) {
    return test::writeFile(dir(name), text + "LOGFILE: " + logFile() + "\n");
  };
  const std::string runAll = tags("run.tag", "ACTION: RUN_INSTRUCTIONS\n");
  const std::string search = tags("search.tag", "ACTION: SEARCH\n");
  const std::string install = tags("install.tag", "ACTION: INSTALL_JVM\n");
  const std::string verify = tags("verify.tag", "ACTION: VERIFY_JVM\n");
  const std::string invalid = tags("invalid.tag", "ACTION: NONE\n");
  const std::string other =
      tags("other.tag", "ACTION: RUN_INSTRUCTIONS\nINSTRUCTIONS: " +
                            test::writeFile(dir("o.ins"), "INSTRUCTIONS: OTHER\n") + "\n");
  const auto error = [](const std::string& command) {
    return "Error in instructions. Invalid command (" + command + ").  Line number (1)\n";
  };
  const std::string nameMissing = "An input file name must follow the '-in' command line option.\n";
  const std::string noAction = "Invalid action in input file: NONE\n";
  struct Row {
    const char* name;
    std::vector<std::string> files;
    int status;
    std::string out;
  };
  const Row rows[] = {
      {"the same twice", {search, search}, 0, "0\n0\n"},
      {"a run asked for twice is one", {runAll, runAll}, 255, error("EMBEDDED")},
      {"a later action takes the run away", {runAll, search}, 0, "0\n"},
      {"so does one that does nothing", {runAll, install}, 0, ""},
      {"so does one that fails", {runAll, verify}, 255, ""},
      {"a later one asks for the run", {search, runAll}, 255, "0\n" + error("EMBEDDED")},
      {"a status stays when nothing replaces it", {verify, search}, 255, "0\n"},
      {"the later script counts", {runAll, other}, 255, error("OTHER")},
      {"a script stays when the next names none", {other, runAll}, 255, error("OTHER")},
      {"an invalid action ends it", {search, invalid, search}, 255, "0\n" + noAction + noAction},
      {"a name that is missing ends no earlier one", {search, ""}, 255, "0\n" + nameMissing},
      {"a name that is missing takes the run away", {runAll, ""}, 255, nameMissing},
  };
  embedInstructions({"EMBEDDED"});
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    std::vector<std::string> args;
    for (const std::string& file : row.files) {
      args.push_back("-cv:in");
      if (!file.empty()) {
        args.push_back(file);
      }
    }
    const Result result = runBare(args);
    EXPECT_EQ(row.status, result.status);
    EXPECT_EQ(row.out, result.out);
  }
}

// LOGFILE counts from the moment the input file has been read.
TEST_F(InputFile, WhichLogIsToldWhat) {
  const std::string noFile = "Error loading JVM file.Unable to load input file: /no/file\n";
  const std::string invalid = "Invalid action in input file: NONE\n";
  const std::string toOther = "LOGFILE: " + dir("other.txt") + "\n";
  const std::string toBlock = "LOGFILE:\n" + dir("other.txt") + "\n/nowhere\n/:\n";
  const std::string path = dir("in.tag");
  const std::string loading = "------------------\nLoading input file " + path + "\n";
  struct Row {
    const char* name;
    std::string tags;
    std::string log;
    std::string other;
  };
  const Row rows[] = {
      {"read, but naming a bad file", "JVM: /no/file\n" + toOther, loading, "ERROR: " + noFile},
      {"an invalid action", "ACTION: NONE\n" + toOther, loading, "ERROR: " + invalid},
      {"the first value counts", "ACTION: NONE\n" + toBlock, loading, "ERROR: " + invalid},
      {"an empty name switches it off", "ACTION: NONE\nLOGFILE:\n/:\n", loading, ""},
      {"not read", toOther + "ACTION NONE\n",
       loading + "ERROR: Syntax error in " + path +
           " at line 2 ==> Missing colon at the end of the tag name.\n"
           "ERROR: Syntax error in " +
           path + " at line 2 ==> Missing colon at the end of the tag name.\n",
       ""},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    std::filesystem::remove(logFile());
    test::writeFile(dir("other.txt"), "");
    const Result result = run({"-cv:in", test::writeFile(path, row.tags)});
    EXPECT_EQ(255, result.status);
    EXPECT_EQ(row.log, result.log);
    EXPECT_EQ(row.other, withoutIndex(test::readFile(dir("other.txt"))));
  }
}

// The flags switch the console, for the run, too, which closes its row of dots.
TEST_F(InputFile, FlagsShowTheConsole) {
  struct Row {
    const char* tags;
    const char* out;
  };
  const char* const searching = "\nSearching for Java(tm) Virtual Machine...\n0\n\n";
  const Row rows[] = {
      {"ACTION: RUN_INSTRUCTIONS\n", ""},
      {"ACTION: RUN_INSTRUCTIONS\nSHOW_PROGRESS: 0\nSHOW_FAIL_MSG: 0\n", ""},
      {"ACTION: RUN_INSTRUCTIONS\nSHOW_PROGRESS: 1\n", "\n"},
      {"ACTION: RUN_INSTRUCTIONS\nSHOW_FAIL_MSG: 1\n", "\n"},
      {"ACTION: RUN_INSTRUCTIONS\nSHOW_FAIL_MSG: -1\n", "\n"},
      {"ACTION: RUN_INSTRUCTIONS\nSHOW_PROGRESS: true\n", ""},
      {"ACTION:\nRUN_INSTRUCTIONS\nSEARCH\n/:\nSHOW_PROGRESS: 1\n", "\n"},
      {"ACTION: SEARCH\nSHOW_PROGRESS: 1\n", searching},
      {"ACTION: SEARCH\nSHOW_PROGRESS: 2\n", searching},
      {"ACTION: INSTALL_JVM\nSHOW_PROGRESS: 1\n", "\n"},
      {"ACTION: INSTALL_JVM\nSHOW_FAIL_MSG: 1\n", "\n"},
  };
  embedInstructions({"// nothing to do"});
  for (const Row& row : rows) {
    SCOPED_TRACE(row.tags);
    const Result result = runBare({"-cv:in", input(row.tags)});
    EXPECT_EQ(0, result.status);
    EXPECT_EQ(row.out, result.out);
  }
}

TEST_F(InputFile, SilentOutlastsTheFlags) {
  embedInstructions({"NONSENSE"});
  for (const char* action : {"NONE", "RUN_INSTRUCTIONS", "VERIFY_JVM"}) {
    const Result result = runBare(
        {"-cv:silent", "-cv:in",
         input("ACTION: " + std::string(action) + "\nSHOW_PROGRESS: 1\nSHOW_FAIL_MSG: 1\n")});
    EXPECT_EQ(255, result.status);
    EXPECT_EQ("", result.out);
  }
}

TEST_F(InputFile, AnIndexThatCannotBeRead) {
  setLauncherPath(dir("app/setup"));
  test::writeScript(launcherPath(), test::readFile(stubOf(CORVANE_STUB)) + "\1" +
                                        test::bigEndian32(-1) + "\xCA\x82\xCA\x82");
  usePackedFile();
  const std::string text = "Unable to load the launcher file index. Invalid file index offset.\n";
  const Result result = run({"-cv:in", input("ACTION: SEARCH\n")});
  EXPECT_EQ(255, result.status);
  EXPECT_EQ(text, result.out);
  EXPECT_EQ("ERROR: " + text, result.log.substr(result.log.find("ERROR")));
}

}  // namespace
}  // namespace e2e
