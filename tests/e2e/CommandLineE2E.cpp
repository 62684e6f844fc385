// The options of the command line, seen from outside.
#include "e2e/LauncherTest.h"

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
      {"version", {"-cv:version"}, 0, "2.52\n"},
      {"version twice", {"-cv:version", "-cv:version"}, 0, "2.52\n2.52\n"},
      {"silent in front of version", {"-cv:silent", "-cv:version"}, 0, ""},
      {"silent behind version", {"-cv:version", "-cv:silent"}, 0, "2.52\n"},
      // QUIRK(option-names-in-texts)
      {"-cv:in last", {"-cv:in"}, 255, kInNameMissing},
      {"log name missing keeps its status without a run",
       {"-cv:version", "-cv:log"},
       255,
       "2.52\nA log file name must be specified after the -log option on the command line.\n"},
      {"original name missing",
       {"-cv:version", "-cv:orig"},
       255,
       "2.52\nMissing original launcher file name.\n"},
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

TEST_F(CommandLine, ABareStubHasNoScript) {
  test::writeScript(launcherPath(), test::readFile(CORVANE_STUB));
  usePackedFile();
  const Result result = run();
  EXPECT_EQ(255, result.status);
  EXPECT_EQ("\n", result.out);  // the row of dots that the full progress closes
  EXPECT_EQ("", result.log);
}

}  // namespace
}  // namespace e2e
