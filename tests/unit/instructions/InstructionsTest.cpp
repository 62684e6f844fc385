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
    {"empty", {}, "0"},
    {"comments and labels alone", {"// x", ":a", ":a"}, "0"},
    {"statements run in order",
     {"SET N1 = 1", "SET N2 = @N1@2", "SET N3 = @N2@3"},
     "0",
     "N1=1 N2=12 N3=123"},
    {"operations run in order",
     {"INITIALIZE_UI", "FIND_JVM 1 0", "VERIFY 0 0 1", "INSTALL_JVM 2", "EXECUTE_LAUNCHER 3"},
     "0",
     "",
     {"initializeUI", "findJVM 1 0", "verifyJVM 0 0 1", "installJVM 2",
      "executeEmbeddedLauncher 3"}},

    {"the launch's result is the script's", {"LAUNCH a 0"}, "7", "", {"launch [a] 0"}, {7}},
    {"a launch does not end the script",
     {"LAUNCH a 0", "SET N1 = 5"},
     "7",
     "N1=5",
     {"launch [a] 0"},
     {7}},
    {"the last launch counts",
     {"LAUNCH a 0", "ILAUNCH 1 0", "LAUNCH b 0"},
     "-3",
     "",
     {"launch [a] 0", "ilaunch 1 0", "launch [b] 0"},
     {7, 8, -3}},
    {"a later launch with 0 counts",
     {"LAUNCH a 0", "ILAUNCH 1 0"},
     "0",
     "",
     {"launch [a] 0", "ilaunch 1 0"},
     {7, 0}},
    {"ILAUNCH alone", {"ILAUNCH 1 2"}, "-1", "", {"ilaunch 1 2"}, {-1}},
    {"a launch that is jumped over does not count",
     {"LAUNCH a 0", "GOTO end", "LAUNCH b 0", ":end"},
     "7",
     "",
     {"launch [a] 0"},
     {7, 8}},

    {"GOTO forward", {"GOTO end", "SET N1 = 1", ":end", "SET N2 = 2"}, "0", "N2=2"},
    {"GOTO the last line", {"GOTO end", "SET N1 = 1", ":end"}, "0"},
    {"GOTO backward",
     {"GOTO b", ":a", "SET N1 = 1", "GOTO end", ":b", "SET N2 = 2", "GOTO a", ":end"},
     "0",
     "N1=1 N2=2"},
    {"GOTO, more tokens ignored", {"GOTO end x", "RUN", ":end"}, "0"},
    {"GOTO a label with references",
     {"SET N1 = 2", "GOTO l@N1@", ":l1", "SET S1 = one", ":l2"},
     "0",
     "N1=2"},
    {"GOTO a label with a doubled @", {"SET N1 = 1", "GOTO a@@b", "RUN", ":a@b"}, "0", "N1=1"},
    {"labels are not substituted",
     {"SET N1 = 2", "GOTO l2", ":l@N1@"},
     error(2, "Label not found (l2)"),
     "N1=2"},
    {"a value with a colon", {"SET S1 = :x", "GOTO @S1@", "RUN", "::x"}, "0", "S1=[:x]"},
    {"the first of equal labels",
     {"GOTO a", ":b", "SET N1 = 1", ":a", "SET N2 = 2", "GOTO end", ":a", "SET N3 = 3", ":end"},
     "0",
     "N2=2"},
    {"the first of equal labels, also behind it",
     {"JMP0 @N1@ a", "SET N5 = 5", ":a", "SET N2 = @N1@", "JMP0 @N1@ b", "GOTO end", ":b",
      "SET N1 = 1", "GOTO a", ":end"},
     "0",
     "N1=1 N2=1"},
    {"labels match in case", {"GOTO End", ":end"}, error(1, "Label not found (End)")},
    {"a longer label", {"GOTO en", ":end"}, error(1, "Label not found (en)")},
    {"a shorter label", {"GOTO endx", ":end"}, error(1, "Label not found (endx)")},
    {"a line without the colon", {"GOTO end", "end"}, error(1, "Label not found (end)")},
    {"a line inside a comment", {"GOTO end", "// :end"}, error(1, "Label not found (end)")},
    {"a colon alone is no target",
     {"GOTO @S1@", ":"},
     error(1, "Label @S1@ resolved to a blank string. Labels cannot be blank.")},
    {"two colons are a target", {"GOTO :", "RUN", "::"}, "0"},
    {"a label that is a command's name", {"GOTO SET", "RUN", ":SET"}, "0"},

    // QUIRK(first-line-label)
    {"label on the first line", {":a", "GOTO a"}, error(2, "Label not found (a)")},
    {"label on the second line",
     {"// x", ":a", "JMP0 @N1@ b", "GOTO end", ":b", "SET N1 = 1", "GOTO a", ":end"},
     "0",
     "N1=1"},
    {"label on the first line and again",
     {":a", "JMP0 @N1@ a", "GOTO end", ":a", "SET N1 = 1", ":end"},
     "0",
     "N1=1"},
    // QUIRK(label-line-whole)
    {"label with text behind", {"GOTO end", ":end x"}, error(1, "Label not found (end)")},
    {"label with a blank behind", {"GOTO end", ":end "}, error(1, "Label not found (end)")},
    {"label with a blank in front", {"GOTO end", " :end"}, error(1, "Label not found (end)")},
    {"value with a blank finds a line with one",
     {"SET S1 = \"a b\"", "GOTO @S1@", "RUN", ":a b"},
     "0",
     "S1=[a b]"},

    {"JMP0 with 0", {"JMP0 0 end", "SET N1 = 1", ":end"}, "0"},
    {"JMP0 with -0", {"JMP0 -0 end", "SET N1 = 1", ":end"}, "0"},
    {"JMP0 with 0x1", {"JMP0 0x1 end", "SET N1 = 1", ":end"}, "0"},
    {"JMP0 with 1", {"JMP0 1 end", "SET N1 = 1", ":end"}, "0", "N1=1"},
    {"JMP0 with -1", {"JMP0 -1 end", "SET N1 = 1", ":end"}, "0", "N1=1"},
    {"JMP0 with a variable that is 0", {"JMP0 @N1@ done", "SET S1 = through", ":done"}, "0"},
    {"JMP0 with a variable that is not",
     {"SET N1 = 4", "JMP0 @N1@ done", "SET S1 = through", ":done"},
     "0",
     "N1=4 S1=[through]"},

    {"a counter by computed labels",
     {"SET N1 = 0", ":top", "GOTO from@N1@", ":from0", "SET N1 = 1", "SET S1 = @S1@a", "GOTO top",
      ":from1", "SET N1 = 2", "SET S1 = @S1@b", "GOTO top", ":from2"},
     "0",
     "N1=2 S1=[ab]"},

    {"the first error ends the script",
     {"SET N1 = 1", "RUN", "SET N2 = 2", "JUMP"},
     error(2, "Invalid command (RUN). "),
     "N1=1"},
    {"the line of an error counts every line",
     {"// one", ":two", "SET N1 = 3", "", "SET N2 = 5"},
     error(4, "No command specified."),
     "N1=3"},
    {"an error behind a jump has its own line",
     {"GOTO a", "// two", ":a", "FIND_JVM"},
     error(4,
           "The first argument to FIND_JVM should be a 1 if the UI should be displayed or a 0 "
           "if the UI should be suppressed.")},
    {"a failing jump has the line of the jump",
     {"SET N1 = 1", "JMP0 0 nowhere", ":end"},
     error(2, "Label not found (nowhere)"),
     "N1=1"},
    {"an error in SET has its line",
     {"SET N1 = 1", "SET N1 = @N9@"},
     error(2, "Invalid expression specified for SET command Variable number is invalid (9)"),
     "N1=1"},
    {"earlier launches do not matter to an error",
     {"LAUNCH a 0", "RUN"},
     error(2, "Invalid command (RUN). "),
     "",
     {"launch [a] 0"},
     {7}},
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

const ScriptRow kEndlessRows[] = {
    {"GOTO", {"// x", ":a", "INITIALIZE_UI", "GOTO a"}, kCanceled},
    {"GOTO the line before", {"INITIALIZE_UI", ":a", "GOTO a"}, kCanceled},
    {"JMP0", {"// x", ":a", "INITIALIZE_UI", "JMP0 0 a"}, kCanceled},
    {"JMP0 after a test",
     {"// x", ":a", "INITIALIZE_UI", "JMP0 @N1@ b", "RUN", ":b", "GOTO a"},
     kCanceled},
    {"value that names itself, in SET",
     {"SET S1 = @@S1@@", "INITIALIZE_UI", "SET S2 = @S1@"},
     kCanceled},
    {"value that names itself, in JMP0",
     {"SET S1 = @@S1@@", "INITIALIZE_UI", "JMP0 @S1@ a"},
     kCanceled},
    {"value that names itself, in LAUNCH",
     {"SET S1 = @@S1@@", "INITIALIZE_UI", "LAUNCH @S1@ a"},
     kCanceled},
    {"value that names itself, in a label",
     {"SET S1 = @@S1@@", "INITIALIZE_UI", "GOTO @S1@"},
     kCanceled},
};

TEST_F(EndlessScripts, EndWhenTheUserCancels) {
  for (const ScriptRow& row : kEndlessRows) {
    FakeLauncherOperations::reset();
    const bool isLoop = row.lines[0] == "// x";
    cancelAt(isLoop ? 3 : 1);
    EXPECT_EQ(row.outcome, execute(row.lines)) << row.name;
    EXPECT_EQ(isLoop ? 3U : 1U, FakeLauncherOperations::calls().size()) << row.name;
  }
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
