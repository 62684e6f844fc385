// The options of the command line, seen from outside.
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>

#include "e2e/LauncherTest.h"

namespace fs = std::filesystem;

namespace e2e {
namespace {

constexpr const char* kLogNameMissing =
    "A log file name must be specified after the -log option on the command line.\n";
constexpr const char* kInNameMissing =
    "An input file name must follow the '-in' command line option.\n";

// The wizard writes down its arguments, one a line, and ends with 7.
class CommandLine : public LauncherTest {
 protected:
  void embedRecorder() { embedSetup("printf '[%s]\\n' \"$@\" >\"$RECORD\"; exit 7"); }
};

TEST_F(CommandLine, WithoutArgumentsTheScriptRunsAndItsStatusIsTheExitStatus) {
  embedRecorder();
  EXPECT_EQ(7, run().status);
  EXPECT_EQ("[-cp]\n[wizard.jar]\n[Wizard]\n", test::readFile(dir("record.txt")));
}

TEST_F(CommandLine, PassThroughArguments) {
  struct Row {
    const char* name;
    std::vector<std::string> args;
    const char* passedOn;  // as the wizard wrote them down
    const char* out;
  };
  const Row rows[] = {
      {"unknown, in order",
       {"-x", "one two", "", "-CV:SILENT"},
       "[-x]\n[one two]\n[]\n[-CV:SILENT]\n",
       "Sample\n"},
      {"quotes and letters beyond ASCII",
       {"say \"hi\"", "gr\xC3\xBC\xC3\x9F"},
       "[say \"hi\"]\n[gr\xC3\xBC\xC3\x9F]\n",
       "Sample\n"},
      {"-silent is passed on and silences", {"-silent"}, "[-silent]\n", ""},
      {"-cv:silent is not passed on", {"-cv:silent"}, "", ""},
      {"-console is passed on", {"-console"}, "[-console]\n", "Sample\n"},
      // QUIRK(accessibility-is-console)
      {"-accessibility becomes -console", {"-accessibility"}, "[-console]\n", "Sample\n"},
      {"-cv:javaconsole is not passed on", {"-cv:javaconsole"}, "", "Sample\n"},
      {"-cp:p last, without its path", {"-cp:p"}, "", "Sample\n"},
      {"-cp:a last, without its path", {"a", "-cp:a"}, "[a]\n", "Sample\n"},
      {"-cv:tempdir last", {"-cv:tempdir"}, "", "Sample\n"},
      {"-cv:javahome last", {"-cv:javahome"}, "", "Sample\n"},
      {"an option's value is never read as an option", {"-cv:log", "-silent"}, "", "Sample\n"},
  };
  embedRecorder();
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    if (row.args.back() == "-silent" && row.args.size() > 1) {
      expectLeftovers();  // a log file named "-silent" in the current folder
    }
    const Result result = run(row.args);
    EXPECT_EQ(7, result.status);
    EXPECT_EQ(row.out, result.out);
    EXPECT_EQ("[-cp]\n[wizard.jar]\n[Wizard]\n" + std::string(row.passedOn),
              test::readFile(dir("record.txt")));
  }
}

TEST_F(CommandLine, ClassPathOptions) {
  struct Row {
    const char* name;
    std::vector<std::string> args;
    const char* classpath;
  };
  const Row rows[] = {
      {"in front", {"-cp:p", "p.jar"}, "[p.jar:wizard.jar]"},
      {"behind", {"-cp:a", "a.jar"}, "[wizard.jar:a.jar]"},
      {"the last one counts", {"-cp:a", "a.jar", "-cp:a", "b c.jar"}, "[wizard.jar:b c.jar]"},
      {"empty", {"-cp:p", ""}, "[wizard.jar]"},
  };
  embedRecorder();
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    run(row.args);
    EXPECT_EQ("[-cp]\n" + std::string(row.classpath) + "\n[Wizard]\n",
              test::readFile(dir("record.txt")));
  }
}

TEST_F(CommandLine, WithoutRunningTheScript) {
  struct Row {
    const char* name;
    std::vector<std::string> args;
    int status;
    const char* out;
  };
  const Row rows[] = {
      {"version", {"-cv:version"}, 0, CORVANE_VERSION "\n"},
      {"version twice",
       {"-cv:version", "-cv:version"},
       0,
       CORVANE_VERSION "\n" CORVANE_VERSION "\n"},
      {"silent in front of version", {"-cv:silent", "-cv:version"}, 0, ""},
      {"silent behind version", {"-cv:version", "-cv:silent"}, 0, CORVANE_VERSION "\n"},
      // QUIRK(option-names-in-texts)
      {"-cv:in last", {"-cv:in"}, 255, kInNameMissing},
      {"log name missing keeps its status without a run",
       {"-cv:version", "-cv:log"},
       255,
       CORVANE_VERSION
       "\nA log file name must be specified after the -log option on the command line.\n"},
      {"original name missing",
       {"-cv:version", "-cv:orig"},
       255,
       CORVANE_VERSION "\nMissing original launcher file name.\n"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const Result result = runBare(row.args);
    EXPECT_EQ(row.status, result.status);
    EXPECT_EQ(row.out, result.out);
    EXPECT_EQ("", result.err);
  }
}

// QUIRK(missing-log-name-goes-on)
TEST_F(CommandLine, AMissingNameIsToldButTheRunsStatusCounts) {
  embedRecorder();
  const Result log = run({"-cv:log"});
  EXPECT_EQ(7, log.status);
  EXPECT_EQ(std::string(kLogNameMissing) + "Sample\n", log.out);
  const Result orig = run({"-cv:orig"});
  EXPECT_EQ(7, orig.status);
  EXPECT_EQ("Missing original launcher file name.\nSample\n", orig.out);
}

// The manual page and formats.md promise it: the same lines, as they come.
TEST_F(CommandLine, TheLogCanGoToStandardError) {
  embedRecorder();
  const Result toFile = run();
  const Result shown = runBare({"-cv:tempdir", tempDir(), "-cv:log", "/dev/stderr"});
  EXPECT_EQ(7, shown.status);
  EXPECT_NE(std::string::npos, shown.err.find("Executing launch script command: "));
  EXPECT_EQ(normalised(toFile.log, scratch()), normalised(shown.err, scratch()));
}

TEST_F(CommandLine, ALaterLogTakesOverWithoutASecondSeparator) {
  embedInstructions({"NONSENSE"});
  const std::string second = dir("second.txt");
  const Result result = run({"-cv:in", dir("missing.tag"), "-cv:log", second});
  EXPECT_EQ(255, result.status);
  const std::string in =
      test::writeFile(dir("in.tag"), "ACTION: RUN_INSTRUCTIONS\nLOGFILE: " + second + "\n");
  run({"-cv:in", in});
  EXPECT_EQ(std::string::npos, test::readFile(second).find("----"));
  EXPECT_NE(std::string::npos,
            test::readFile(second).find(
                "ERROR: Error in instructions. Invalid command (NONSENSE).  Line number (1)\n"));
}

// The launcher finds its own file by argv[0] as it stands, behind the current folder unless it is
// absolute. The file is always the same; MISSING is what is said when it is not found.
class OwnPath : public LauncherTest {
 protected:
  static constexpr const char* kMissing =
      "Unable to load the launcher file index. Cannot open launcher file.\n";

  // A folder below the scratch folder whose whole path has this length, with a link to the
  // launcher's file in it.
  std::string makeFolder(std::size_t length) {
    fs::path folder = dir("deep");
    while (folder.native().size() + 1 < length) {
      const std::size_t rest = length - folder.native().size() - 1;
      folder /= std::string(rest > 200 ? 100 : rest, 'd');
    }
    fs::create_directories(folder);
    fs::create_symlink(launcherPath(), folder / "setup");
    return folder;
  }
};

TEST_F(OwnPath, IsTheProgramNameBehindTheCurrentFolder) {
  embedInstructions({"NONSENSE"});
  pack();
  const char* const found = "Error in instructions. Invalid command (NONSENSE).  Line number (1)\n";
  struct Row {
    const char* name;
    std::string programName;
    std::function<void()> goThere;
    const char* out;
  };
  const std::string withoutRoot = launcherPath().substr(1);
  const auto folder = [](const std::string& path) {
    return [path] {
      if (chdir(path.c_str()) != 0) {
        _exit(125);
      }
    };
  };
  const auto removed = [&] {
    folder(dir("removed"))();
    rmdir(dir("removed").c_str());
  };
  const std::string longest = makeFolder(1023);
  const std::string tooLong = makeFolder(1024);
  const Row rows[] = {
      {"absolute", launcherPath(), nullptr, found},
      {"absolute, not its own", "/no/such/file", nullptr, kMissing},
      {"relative", "../app/setup", nullptr, found},
      {"dots stay", "./.././app/../app//setup", nullptr, found},
      {"a name from PATH", "setup", nullptr, kMissing},
      {"a name in the current folder", "setup", folder(dir("app")), found},
      {"in the root folder", withoutRoot, folder("/"), found},
      {"empty", "", nullptr, kMissing},
      {"a dash", "-cv:version", nullptr, kMissing},
      {"the longest current folder", "setup", folder(longest), found},
      // QUIRK(untold-directory-is-root)
      {"a longer current folder is left out", "setup", folder(tooLong), kMissing},
      {"a longer current folder leaves the root", withoutRoot, folder(tooLong), found},
      {"a removed current folder is left out", "setup", removed, kMissing},
      {"a removed current folder leaves the root", withoutRoot, removed, found},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    fs::create_directories(dir("removed"));
    setProgramName(row.programName);
    setPrepareChild(row.goThere);
    const Result result = run();
    EXPECT_EQ(255, result.status);
    EXPECT_EQ(row.out, result.out);
  }
}

TEST_F(CommandLine, WhereNobodyReadsTheOutput) {
  struct Row {
    const char* name;
    std::function<void()> prepare;
    const char* out;
    const char* err;
  };
  const auto closed = [](std::vector<int> descriptors) {
    return [descriptors] {
      for (const int fd : descriptors) {
        close(fd);
      }
    };
  };
  const auto brokenPipe = [] {
    int ends[2];
    if (pipe(ends) != 0) {
      _exit(125);
    }
    dup2(ends[1], STDOUT_FILENO);
    close(ends[0]);
    close(ends[1]);
  };
  const auto fullDisk = [] { dup2(open("/dev/full", O_WRONLY | O_CLOEXEC), STDOUT_FILENO); };
  const char* const told = "Sample\nit broke\n\n";
  const Row rows[] = {
      {"standard output closed", closed({1}), "", ""},
      {"standard error closed", closed({2}), told, ""},
      {"standard input closed", closed({0}), told, ""},
      {"both outputs closed", closed({1, 2}), "", ""},
      {"all closed", closed({0, 1, 2}), "", ""},
      {"broken pipe", brokenPipe, "", ""},
      {"full disk", fullDisk, "", ""},
  };
  embedSetup("echo it broke >&2; exit 3");
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    fs::remove(logFile());
    setPrepareChild(row.prepare);
    const Result result = run();
    EXPECT_EQ(3, result.status);
    EXPECT_EQ(row.out, result.out);
    EXPECT_EQ("", result.err);
    // What was for the console is not in the log, which is opened first of all.
    EXPECT_EQ(std::string::npos, result.log.find("Sample\n"));
    EXPECT_NE(std::string::npos, result.log.find("ErrOut:\nit broke\n\n"));
  }
}

// As set by ulimit(1). A log that is full is no failure; a file that is copied out is one.
TEST_F(CommandLine, WhereFilesMayNotGrow) {
  struct Row {
    const char* name;
    std::vector<std::string> lines;
    int status;
    const char* out;
  };
  const Row rows[] = {
      {"the log", {"// nothing to do"}, 0, "\n"},
      {"an archive",
       {"EXECUTE_LAUNCHER 1"},
       255,
       ".Error writing file = 27 There may not be enough temporary disk space. Try using "
       "-cv:tempdir to use a temporary directory on a partition with more disk space.\n"},
  };
  setPrepareChild([] {
    const rlimit limit{4096, 4096};
    setrlimit(RLIMIT_FSIZE, &limit);
  });
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    forgetFiles();
    embedInstructions(row.lines);
    embed(FILE_TYPE_LAUNCHER, 9, "inner", std::string(10000, 'x'));
    pack();
    test::writeFile(logFile(), std::string(4096, 'x'));
    const Result result = run();
    EXPECT_EQ(row.status, result.status);
    EXPECT_EQ(row.out, result.out);
    EXPECT_EQ(std::string(4096, 'x'), result.log);
  }
}

TEST_F(CommandLine, ArgumentsOfTheGreatestLength) {
  const std::string text(100000, 'x');  // the system takes 128 KB
  const std::string noTemp = "Cannot use " + text;
  struct Row {
    const char* name;
    std::vector<std::string> args;
    int status;
    std::string out;
  };
  const Row rows[] = {
      {"passed on", {text}, 7, "Sample\n"},
      {"log", {"-cv:log", text}, 7, "Sample\n"},
      {"in",
       {"-cv:in", text},
       255,
       "Could not load the input file.Unable to open input file specified on the command line "
       "after the -in option.\n"
       "Unable to open input file specified on the command line after the -in option.\n"},
      {"javahome", {"-cv:javahome", text}, 7, "Sample\n"},
      // The text that names the folder has room for 1023 characters.
      {"tempdir", {"-cv:tempdir", text}, 255, "Sample\n" + noTemp.substr(0, 1023) + "\n"},
  };
  embedRecorder();
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const Result result = run(row.args);
    EXPECT_EQ(row.status, result.status);
    EXPECT_EQ(row.out, result.out);
  }
}

TEST_F(CommandLine, OrigDeletesTheRunningCopyAndItsEmptyFolder) {
  setLauncherPath(dir("copy/setup"));
  embedInstructions({"// nothing to do"});
  const Result result = run({"-cv:orig", dir("app/setup")});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ(std::vector<std::string>{}, test::listTree(dir("app")));
  EXPECT_NE(0, access(dir("copy").c_str(), F_OK));
}

TEST_F(CommandLine, OrigKeepsAFolderThatHoldsMore) {
  setLauncherPath(dir("copy/setup"));
  embedInstructions({"// nothing to do"});
  test::writeFile(dir("copy/other"), "kept");
  run({"-cv:orig", dir("app/setup")});
  EXPECT_EQ(std::vector<std::string>{"other"}, test::listTree(dir("copy")));
}

TEST_F(CommandLine, OrigDeletesTheRunningCopyWhateverTheStatus) {
  struct Row {
    const char* name;
    std::vector<std::string> args;
    int status;
  };
  const Row rows[] = {
      {"no run", {"-cv:orig", "x", "-cv:version"}, 0},
      {"a failed run", {"-cv:orig", "x"}, 255},
      {"a failed option", {"-cv:orig", "x", "-cv:in", "/no/file"}, 255},
      {"named twice, then not", {"-cv:orig", "x", "-cv:orig", "y", "-cv:orig"}, 255},
  };
  setLauncherPath(dir("copy/setup"));
  embedInstructions({"NONSENSE"});
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    pack();
    EXPECT_EQ(row.status, run(row.args).status);
    EXPECT_FALSE(fs::exists(dir("copy")));
  }
}

TEST_F(CommandLine, ExtractAmongOthers) {
  const std::string runAll = test::writeFile(dir("run.tag"), "ACTION: RUN_INSTRUCTIONS\n");
  const std::string search = test::writeFile(dir("search.tag"), "ACTION: SEARCH\n");
  const char* const error = "Error in instructions. Invalid command (NONSENSE).  Line number (1)\n";
  struct Row {
    const char* name;
    std::vector<std::string> args;
    int status;
    std::string out;
  };
  // The files take two dots: that of the script, which is one chunk, and that of the archive.
  const Row rows[] = {
      {"alone", {"-cv:extract"}, 0, "..\n"},
      {"twice", {"-cv:extract", "-cv:extract"}, 0, "..\n.."},
      {"silent", {"-cv:silent", "-cv:extract"}, 0, ""},
      {"silent behind", {"-cv:extract", "-cv:silent"}, 0, "..\n"},
      {"version behind", {"-cv:extract", "-cv:version"}, 0, "..\n" CORVANE_VERSION "\n"},
      {"version in front", {"-cv:version", "-cv:extract"}, 0, CORVANE_VERSION "\n..\n"},
      {"log name missing behind",
       {"-cv:extract", "-cv:log"},
       255,
       std::string("..\n") + kLogNameMissing},
      // QUIRK(extract-leaves-no-script)
      {"the run that an input file asks for then has no script",
       {"-cv:extract", "-cv:in", runAll},
       255,
       "..\n"},
      {"unless the input file names one",
       {"-cv:extract", "-cv:in", "input.tag"},
       255,
       std::string("..\n") + error},
      {"a search has no jvm files either", {"-cv:extract", "-cv:in", search}, 0, "..\n0\n"},
      {"behind an input file it takes the run away", {"-cv:in", runAll, "-cv:extract"}, 0, ""},
      {"behind an input file without a name",
       {"-cv:extract", "-cv:in"},
       255,
       std::string("..\n") + kInNameMissing},
  };
  embedInstructions({"NONSENSE"});
  embed(FILE_TYPE_JAR, 2, "a.jar", "x");
  expectLeftovers();
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    for (const char* file : {"a.jar", "input.tag", "setup.ins"}) {
      fs::remove(currentDir() + "/" + file);
    }
    const Result result = run(row.args);
    EXPECT_EQ(row.status, result.status);
    EXPECT_EQ(row.out, result.out);
    EXPECT_EQ((std::vector<std::string>{"a.jar", "input.tag", "setup.ins"}),
              test::listTree(currentDir()));
  }
}

TEST_F(CommandLine, ABareStubHasNoScript) {
  test::writeScript(launcherPath(), test::readFile(stubOf(CORVANE_STUB)));
  usePackedFile();
  const Result result = run();
  EXPECT_EQ(255, result.status);
  EXPECT_EQ("\n", result.out);  // the row of dots that the full progress closes
  EXPECT_EQ("", result.log);
}

}  // namespace
}  // namespace e2e
