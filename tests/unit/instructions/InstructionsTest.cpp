// The instruction script as a whole: order, jumps, labels, results, cancelling.
#include "instructions/Instructions.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "fakes/FakeLauncherOperations.h"
#include "support/ScriptSupport.h"
#include "support/TestFiles.h"

namespace {

using namespace std::string_literals;
using Lines = std::vector<std::string>;

std::string error(int line, const std::string& text) {
  return "Line " + std::to_string(line) + ": " + text;
}

// --- Whole scripts ---

struct ScriptRow {
  const char* name;
  Lines lines;
  std::string outcome;  // what execute returned or threw
  std::string variables = "";
  Lines calls = {};
  std::vector<std::int32_t> results = {};  // of the launches
};

const ScriptRow kScriptRows[] = {
    {.name = "empty", .lines = {}, .outcome = "0"},
    {.name = "comments and labels alone", .lines = {"// x", ":a", ":a"}, .outcome = "0"},
    {.name = "statements run in order",
     .lines = {"SET N1 = 1", "SET N2 = @N1@2", "SET N3 = @N2@3"},
     .outcome = "0",
     .variables = "N1=1 N2=12 N3=123"},
    {.name = "operations run in order",
     .lines = {"INITIALIZE_UI", "FIND_JVM 1 0", "VERIFY 0 0 1", "INSTALL_JVM 2",
               "EXECUTE_LAUNCHER 3"},
     .outcome = "0",
     .calls = {"initializeUI", "findJVM 1 0", "verifyJVM 0 0 1", "installJVM 2",
               "executeEmbeddedLauncher 3"}},

    {.name = "the launch's result is the script's",
     .lines = {"LAUNCH a 0"},
     .outcome = "7",
     .calls = {"launch [a] 0"},
     .results = {7}},
    {.name = "a launch does not end the script",
     .lines = {"LAUNCH a 0", "SET N1 = 5"},
     .outcome = "7",
     .variables = "N1=5",
     .calls = {"launch [a] 0"},
     .results = {7}},
    {.name = "the last launch counts",
     .lines = {"LAUNCH a 0", "ILAUNCH 1 0", "LAUNCH b 0"},
     .outcome = "-3",
     .calls = {"launch [a] 0", "ilaunch 1 0", "launch [b] 0"},
     .results = {7, 8, -3}},
    {.name = "a later launch with 0 counts",
     .lines = {"LAUNCH a 0", "ILAUNCH 1 0"},
     .outcome = "0",
     .calls = {"launch [a] 0", "ilaunch 1 0"},
     .results = {7, 0}},
    {.name = "ILAUNCH alone",
     .lines = {"ILAUNCH 1 2"},
     .outcome = "-1",
     .calls = {"ilaunch 1 2"},
     .results = {-1}},
    {.name = "a launch that is jumped over does not count",
     .lines = {"LAUNCH a 0", "GOTO end", "LAUNCH b 0", ":end"},
     .outcome = "7",
     .calls = {"launch [a] 0"},
     .results = {7, 8}},

    {.name = "GOTO forward",
     .lines = {"GOTO end", "SET N1 = 1", ":end", "SET N2 = 2"},
     .outcome = "0",
     .variables = "N2=2"},
    {.name = "GOTO the last line", .lines = {"GOTO end", "SET N1 = 1", ":end"}, .outcome = "0"},
    {.name = "GOTO backward",
     .lines = {"GOTO b", ":a", "SET N1 = 1", "GOTO end", ":b", "SET N2 = 2", "GOTO a", ":end"},
     .outcome = "0",
     .variables = "N1=1 N2=2"},
    {.name = "GOTO, more tokens ignored", .lines = {"GOTO end x", "RUN", ":end"}, .outcome = "0"},
    {.name = "GOTO a label with references",
     .lines = {"SET N1 = 2", "GOTO l@N1@", ":l1", "SET S1 = one", ":l2"},
     .outcome = "0",
     .variables = "N1=2"},
    {.name = "GOTO a label with a doubled @",
     .lines = {"SET N1 = 1", "GOTO a@@b", "RUN", ":a@b"},
     .outcome = "0",
     .variables = "N1=1"},
    {.name = "labels are not substituted",
     .lines = {"SET N1 = 2", "GOTO l2", ":l@N1@"},
     .outcome = error(2, "Label not found (l2)"),
     .variables = "N1=2"},
    {.name = "a value with a colon",
     .lines = {"SET S1 = :x", "GOTO @S1@", "RUN", "::x"},
     .outcome = "0",
     .variables = "S1=[:x]"},
    {.name = "the first of equal labels",
     .lines = {"GOTO a", ":b", "SET N1 = 1", ":a", "SET N2 = 2", "GOTO end", ":a", "SET N3 = 3",
               ":end"},
     .outcome = "0",
     .variables = "N2=2"},
    {.name = "the first of equal labels, also behind it",
     .lines = {"JMP0 @N1@ a", "SET N5 = 5", ":a", "SET N2 = @N1@", "JMP0 @N1@ b", "GOTO end", ":b",
               "SET N1 = 1", "GOTO a", ":end"},
     .outcome = "0",
     .variables = "N1=1 N2=1"},
    {.name = "labels match in case",
     .lines = {"GOTO End", ":end"},
     .outcome = error(1, "Label not found (End)")},
    {.name = "a longer label",
     .lines = {"GOTO en", ":end"},
     .outcome = error(1, "Label not found (en)")},
    {.name = "a shorter label",
     .lines = {"GOTO endx", ":end"},
     .outcome = error(1, "Label not found (endx)")},
    {.name = "a line without the colon",
     .lines = {"GOTO end", "end"},
     .outcome = error(1, "Label not found (end)")},
    {.name = "a line inside a comment",
     .lines = {"GOTO end", "// :end"},
     .outcome = error(1, "Label not found (end)")},
    {.name = "a colon alone is no target",
     .lines = {"GOTO @S1@", ":"},
     .outcome = error(1, "Label @S1@ resolved to a blank string. Labels cannot be blank.")},
    {.name = "two colons are a target", .lines = {"GOTO :", "RUN", "::"}, .outcome = "0"},
    {.name = "a label that is a command's name",
     .lines = {"GOTO SET", "RUN", ":SET"},
     .outcome = "0"},

    // QUIRK(first-line-label)
    {.name = "label on the first line",
     .lines = {":a", "GOTO a"},
     .outcome = error(2, "Label not found (a)")},
    {.name = "label on the second line",
     .lines = {"// x", ":a", "JMP0 @N1@ b", "GOTO end", ":b", "SET N1 = 1", "GOTO a", ":end"},
     .outcome = "0",
     .variables = "N1=1"},
    {.name = "label on the first line and again",
     .lines = {":a", "JMP0 @N1@ a", "GOTO end", ":a", "SET N1 = 1", ":end"},
     .outcome = "0",
     .variables = "N1=1"},
    // QUIRK(label-line-whole)
    {.name = "label with text behind",
     .lines = {"GOTO end", ":end x"},
     .outcome = error(1, "Label not found (end)")},
    {.name = "label with a blank behind",
     .lines = {"GOTO end", ":end "},
     .outcome = error(1, "Label not found (end)")},
    {.name = "label with a blank in front",
     .lines = {"GOTO end", " :end"},
     .outcome = error(1, "Label not found (end)")},
    {.name = "value with a blank finds a line with one",
     .lines = {"SET S1 = \"a b\"", "GOTO @S1@", "RUN", ":a b"},
     .outcome = "0",
     .variables = "S1=[a b]"},

    {.name = "JMP0 with 0", .lines = {"JMP0 0 end", "SET N1 = 1", ":end"}, .outcome = "0"},
    {.name = "JMP0 with -0", .lines = {"JMP0 -0 end", "SET N1 = 1", ":end"}, .outcome = "0"},
    {.name = "JMP0 with 0x1", .lines = {"JMP0 0x1 end", "SET N1 = 1", ":end"}, .outcome = "0"},
    {.name = "JMP0 with 1",
     .lines = {"JMP0 1 end", "SET N1 = 1", ":end"},
     .outcome = "0",
     .variables = "N1=1"},
    {.name = "JMP0 with -1",
     .lines = {"JMP0 -1 end", "SET N1 = 1", ":end"},
     .outcome = "0",
     .variables = "N1=1"},
    {.name = "JMP0 with a variable that is 0",
     .lines = {"JMP0 @N1@ done", "SET S1 = through", ":done"},
     .outcome = "0"},
    {.name = "JMP0 with a variable that is not",
     .lines = {"SET N1 = 4", "JMP0 @N1@ done", "SET S1 = through", ":done"},
     .outcome = "0",
     .variables = "N1=4 S1=[through]"},

    {.name = "a counter by computed labels",
     .lines = {"SET N1 = 0", ":top", "GOTO from@N1@", ":from0", "SET N1 = 1", "SET S1 = @S1@a",
               "GOTO top", ":from1", "SET N1 = 2", "SET S1 = @S1@b", "GOTO top", ":from2"},
     .outcome = "0",
     .variables = "N1=2 S1=[ab]"},

    {.name = "the first error ends the script",
     .lines = {"SET N1 = 1", "RUN", "SET N2 = 2", "JUMP"},
     .outcome = error(2, "Invalid command (RUN). "),
     .variables = "N1=1"},
    {.name = "the line of an error counts every line",
     .lines = {"// one", ":two", "SET N1 = 3", "", "SET N2 = 5"},
     .outcome = error(4, "No command specified."),
     .variables = "N1=3"},
    {.name = "an error behind a jump has its own line",
     .lines = {"GOTO a", "// two", ":a", "FIND_JVM"},
     .outcome =
         error(4,
               "The first argument to FIND_JVM should be a 1 if the UI should be displayed or a 0 "
               "if the UI should be suppressed.")},
    {.name = "a failing jump has the line of the jump",
     .lines = {"SET N1 = 1", "JMP0 0 nowhere", ":end"},
     .outcome = error(2, "Label not found (nowhere)"),
     .variables = "N1=1"},
    {.name = "an error in SET has its line",
     .lines = {"SET N1 = 1", "SET N1 = @N9@"},
     .outcome =
         error(2, "Invalid expression specified for SET command Variable number is invalid (9)"),
     .variables = "N1=1"},
    {.name = "earlier launches do not matter to an error",
     .lines = {"LAUNCH a 0", "RUN"},
     .outcome = error(2, "Invalid command (RUN). "),
     .calls = {"launch [a] 0"},
     .results = {7}},
};

TEST(Scripts, RunToTheirEndOrFirstError) {
  for (const ScriptRow& row : kScriptRows) {
    SCOPED_TRACE(row.name);
    FakeLauncherOperations::reset();
    FakeLauncherOperations::setResults(row.results);
    test::setVariables();
    TagFile script;
    test::fillScript(script, row.lines);
    EXPECT_EQ(row.outcome,
              test::outcomeOf([&] { return std::to_string(Instructions(script).execute()); }));
    EXPECT_EQ(row.variables, test::describeVariables());
    EXPECT_EQ(row.calls, FakeLauncherOperations::calls());
  }
}

TEST(Scripts, AnOperationsFailurePassesThrough) {
  test::setVariables();
  FakeLauncherOperations::reset();
  FakeLauncherOperations::setHook([] { throw LauncherException("No disk."); });
  TagFile script;
  test::fillScript(script, {"SET N1 = 1", "FIND_JVM 1 1", "SET N2 = 2"});
  EXPECT_EQ("LauncherException: No disk.",
            test::outcomeOf([&] { return std::to_string(Instructions(script).execute()); }));
  EXPECT_EQ("N1=1", test::describeVariables());
}

TEST(Scripts, AnOperationsVariablesAreSeenByTheNextLine) {
  test::setVariables();
  FakeLauncherOperations::reset();
  FakeLauncherOperations::setHook([] {
    if (FakeLauncherOperations::calls().size() == 1) {
      LauncherFacts::setLongVariable(1, 1);
      LauncherFacts::setStringVariable(2, "/tmp/found jvm");
    }
  });
  TagFile script;
  test::fillScript(script, {"FIND_JVM 1 1", "JMP0 @N1@ none", "LAUNCH @S2@ 1", ":none"});
  EXPECT_EQ(0, Instructions(script).execute());
  EXPECT_EQ((Lines{"findJVM 1 1", "launch [/tmp/found jvm] 1"}), FakeLauncherOperations::calls());
}

TEST(Scripts, RunAgainFromTheirFirstLine) {
  test::setVariables();
  FakeLauncherOperations::reset();
  FakeLauncherOperations::setResults({7});
  TagFile script;
  test::fillScript(
      script, {"SET S1 = @S1@x", "JMP0 @N1@ first", "RUN", ":first", "SET N1 = 1", "LAUNCH a 0"});
  const Instructions instructions(script);
  const auto execute = [&] { return std::to_string(instructions.execute()); };
  EXPECT_EQ("7", test::outcomeOf(execute));
  EXPECT_EQ(error(3, "Invalid command (RUN). "), test::outcomeOf(execute));
  LauncherFacts::setLongVariable(1, 0);
  EXPECT_EQ("0", test::outcomeOf(execute));
  EXPECT_EQ("N1=1 S1=[xxx]", test::describeVariables());
}

TEST(Scripts, MayChangeBetweenTwoRuns) {
  TagFile script;
  test::fillScript(script, {"GOTO a", "RUN", ":a"});
  const Instructions instructions(script);
  EXPECT_EQ(0, instructions.execute());
  script.removeValue("INSTRUCTIONS");
  test::fillScript(script, {"GOTO a", ":b", "RUN", "JUMP", ":a"});
  EXPECT_EQ(0, instructions.execute());
}

TEST(Scripts, AnotherTagIsNoScript) {
  TagFile script;
  script.appendTagValue("instructions", "RUN");
  script.appendTagValue("INSTRUCTION", "RUN");
  EXPECT_EQ(0, Instructions(script).execute());
}

// --- Labels by themselves ---

struct LabelRow {
  const char* name;
  Lines lines;
  std::string label;
  std::string wanted;
};

const LabelRow kLabelRows[] = {
    {"second line", {"x", ":a"}, "a", "1"},
    {"last of many", {"x", ":a", ":b", "x", ":c"}, "c", "4"},
    {"first of equals", {"x", ":a", ":b", ":b", ":a"}, "b", "2"},
    {"first line", {":a", "x"}, "a", "Line 1: Label not found (a)"},
    {"empty script", {}, "a", "Line 1: Label not found (a)"},
    {"one line", {":a"}, "a", "Line 1: Label not found (a)"},
    {"no label at all", {"x", "y", "z"}, "a", "Line 1: Label not found (a)"},
    {"an empty line does not match", {"x", "", ":a"}, "a", "2"},
    {"empty label",
     {"x", ":"},
     "",
     "Line 1: Label  resolved to a blank string. Labels cannot be blank."},
    {"blank label", {"x", ": "}, " ", "1"},
    {"zero byte in the label", {"x", ":a", ":a\0"s}, "a\0"s, "2"},
};

TEST(Labels, AreFoundByTheirWholeLine) {
  for (const LabelRow& row : kLabelRows) {
    TagFile script;
    test::fillScript(script, row.lines);
    EXPECT_EQ(row.wanted, test::outcomeOf([&] {
                return std::to_string(Instructions(script).gotoLabel(SString(row.label)));
              }))
        << row.name;
  }
}

// Every label of scripts of many sizes, so that every fill of the index is met.
TEST(Labels, AreAllFoundInScriptsOfAnySize) {
  for (std::size_t count = 1; count <= 130; ++count) {
    Lines lines = {"// first"};
    for (std::size_t i = 1; i <= count; ++i) {
      lines.push_back(":label" + std::to_string(i * i));
    }
    TagFile script;
    test::fillScript(script, lines);
    const Instructions instructions(script);
    for (std::size_t i = 1; i <= count; ++i) {
      ASSERT_EQ(i, instructions.gotoLabel(SString(lines[i].substr(1)))) << count;
    }
    ASSERT_EQ("Line 1: Label not found (label2)",
              test::outcomeOf([&] { return std::to_string(instructions.gotoLabel("label2")); }));
  }
}

// --- The way out of a script that never ends ---

class EndlessScripts : public testing::Test {
 protected:
  void SetUp() override { FakeLauncherOperations::reset(); }
  void TearDown() override { PlatformTestAccess::setCanceled(false); }
  // The user cancels during the `n`th operation.
  void cancelAt(std::size_t n) {
    PlatformTestAccess::setCanceled(false);
    FakeLauncherOperations::setHook(
        [n] { PlatformTestAccess::setCanceled(FakeLauncherOperations::calls().size() >= n); });
  }
  std::string execute(const Lines& lines) {
    test::setVariables();
    TagFile script;
    test::fillScript(script, lines);
    return test::outcomeOf([&] { return std::to_string(Instructions(script).execute()); });
  }
  const test::ScopedEnvironment m_language{"LANG", "C"};
};

const char* const kCanceled = "LauncherException: Canceled by the user.";

// Each behind a wizard that has run, so that the statement alone looks at the cancel.
const ScriptRow kEndlessRows[] = {
    {.name = "GOTO", .lines = {"// x", ":a", "INITIALIZE_UI", "GOTO a"}, .outcome = kCanceled},
    {.name = "GOTO the line before",
     .lines = {"INITIALIZE_UI", ":a", "GOTO a"},
     .outcome = kCanceled},
    {.name = "JMP0", .lines = {"// x", ":a", "INITIALIZE_UI", "JMP0 0 a"}, .outcome = kCanceled},
    {.name = "JMP0 after a test",
     .lines = {"// x", ":a", "INITIALIZE_UI", "JMP0 @N1@ b", "RUN", ":b", "GOTO a"},
     .outcome = kCanceled},
    {.name = "value that names itself, in SET",
     .lines = {"SET S1 = @@S1@@", "INITIALIZE_UI", "SET S2 = @S1@"},
     .outcome = kCanceled},
    {.name = "value that names itself, in JMP0",
     .lines = {"SET S1 = @@S1@@", "INITIALIZE_UI", "JMP0 @S1@ a"},
     .outcome = kCanceled},
    {.name = "value that names itself, in LAUNCH",
     .lines = {"SET S1 = @@S1@@", "INITIALIZE_UI", "LAUNCH @S1@ a"},
     .outcome = kCanceled},
    {.name = "value that names itself, in a label",
     .lines = {"SET S1 = @@S1@@", "INITIALIZE_UI", "GOTO @S1@"},
     .outcome = kCanceled},
};

TEST_F(EndlessScripts, EndWhenTheUserCancels) {
  for (const ScriptRow& row : kEndlessRows) {
    FakeLauncherOperations::reset();
    const bool isLoop = row.lines[0] == "// x";
    Lines lines = row.lines;
    lines.insert(lines.begin() + 1, "LAUNCH wizard 0");
    cancelAt(isLoop ? 4 : 2);
    EXPECT_EQ(row.outcome, execute(lines)) << row.name;
    EXPECT_EQ(isLoop ? 4U : 2U, FakeLauncherOperations::calls().size()) << row.name;
  }
}

// Before a wizard has run no statement follows a cancel, whatever it would do.
TEST_F(EndlessScripts, NoStatementFollowsACancel) {
  for (const char* next : {"SET S1 = x", "// x", ":x", "FIND_JVM 0 0", "NONSENSE", "GOTO no"}) {
    SCOPED_TRACE(next);
    FakeLauncherOperations::reset();
    cancelAt(1);
    EXPECT_EQ(kCanceled, execute({"INITIALIZE_UI", next}));
    EXPECT_EQ(1U, FakeLauncherOperations::calls().size());
    EXPECT_EQ("", test::describeVariables());
  }
  FakeLauncherOperations::reset();
  cancelAt(1);
  EXPECT_EQ(kCanceled, execute({"INITIALIZE_UI"}));
  EXPECT_EQ(kCanceled, execute({}));
}

TEST_F(EndlessScripts, AScriptThatEndsByItselfIsNotCanceled) {
  cancelAt(1);
  FakeLauncherOperations::setResults({130});
  EXPECT_EQ("130", execute({"LAUNCH wizard 0", "SET S1 = \"after @N1@\"", "SET S2 = @S1@",
                            "JMP0 @N1@ end", "RUN", ":end", "FIND_JVM 0 0"}));
  EXPECT_EQ("S1=[after 0] S2=[after 0]", test::describeVariables());
}

TEST_F(EndlessScripts, AnErrorAfterCancellingKeepsItsLine) {
  cancelAt(1);
  EXPECT_EQ(error(2, "Invalid value specified for SET command Invalid numeric expression in x"),
            execute({"LAUNCH wizard 0", "SET N1 = x"}));
}

}  // namespace
