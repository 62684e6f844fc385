// The statements of the instruction script one by one: commands, arguments, SET.
#include <gtest/gtest.h>

#include <string>

#include "fakes/FakeLauncherOperations.h"
#include "instructions/Instructions.h"
#include "support/ScriptSupport.h"

namespace {

using namespace std::string_literals;

// Runs a script of one line.
std::string run(const std::string& statement, const test::Variables& variables) {
  FakeLauncherOperations::reset();
  test::setVariables(variables);
  TagFile script;
  test::fillScript(script, {statement});
  return test::outcomeOf([&] { return std::to_string(Instructions(script).execute()); });
}

// --- Commands with their arguments: one statement each ---

struct StatementRow {
  const char* name;
  std::string statement;
  std::string wanted;  // the call, or what is thrown; nothing is called then
};

const char* const kFind1 =
    "Line 1: The first argument to FIND_JVM should be a 1 if the UI should be displayed or a 0 if "
    "the UI should be suppressed.";
const char* const kFind2 =
    "Line 1: The second argument to FIND_JVM should be a 1 if a find failure message should be "
    "displayed in a UI or 0 if no message should be displayed.";
const char* const kVerify1 =
    "Line 1: The first argument to VERIFY should be a 1 if the UI should be displayed or a 0 if "
    "the UI should be suppressed.";
const char* const kVerify2 =
    "Line 1: The second argument to VERIFY should be a 1 if a find failure message should be "
    "displayed in a UI or 0 if no message should be displayed.";
const char* const kVerify3 =
    "Line 1: The third argument to VERIFY should be the file index number of the jvm file.";
const char* const kILaunch1 =
    "Line 1: The first argument to ILAUNCH should be the file index number of the jvm file.";
const char* const kILaunch2 =
    "Line 1: The second argument to ILAUNCH should be the number of seconds to display the UI "
    "during the launch.";
const char* const kLaunch2 =
    "Line 1: The second argument to LAUNCH should be the number of seconds to display the UI "
    "during the launch.";
const char* const kInstall = "Line 1: The first argument to INSTALL_JVM should be a 0, 1 or 2.";
const char* const kNoCommand = "Line 1: No command specified.";

std::string badNumber(const std::string& text) {
  return "Line 1: Invalid numeric expression (" + text + ")";
}

std::string badShort(const std::string& text) {
  return "Line 1:  Invalid numeric expression (" + text + ")";
}

std::string badBoolean(const std::string& text) {
  return "Line 1:  Invalid boolean value (" + text + ")";
}

std::string badCommand(const std::string& token) {
  return "Line 1: Invalid command (" + token + "). ";
}

std::string badQuote(const std::string& partial) {
  return "LauncherException: Expected ending quote in " + partial +
         ":  Invalid jvm file name specified in LAUNCH.";
}

const char* const kUnclosedReference = "Line 1:  Invalid variable specification.";
const char* const kBadReference = "LauncherException:  Variable number is invalid (9)";

// With N1 = 1, N2 = 7, S1 = "/jvm dir/a.jvm".
const StatementRow kStatementRows[] = {
    {"INITIALIZE_UI", "INITIALIZE_UI", "initializeUI"},
    {"INITIALIZE_UI, more tokens ignored", "INITIALIZE_UI now @N9@", "initializeUI"},

    {"FIND_JVM 0 0", "FIND_JVM 0 0", "findJVM 0 0"},
    {"FIND_JVM 1 0", "FIND_JVM 1 0", "findJVM 1 0"},
    {"FIND_JVM 0 1", "FIND_JVM 0 1", "findJVM 0 1"},
    {"FIND_JVM with references", "FIND_JVM @N1@ @N3@", "findJVM 1 0"},
    {"FIND_JVM, more tokens ignored", "FIND_JVM 1 1 x", "findJVM 1 1"},
    {"FIND_JVM, white space of all kinds", "\t FIND_JVM \t\v1\f0\r", "findJVM 1 0"},
    {"FIND_JVM, text behind the digits", "FIND_JVM 1yes 0no", "findJVM 1 0"},
    {"FIND_JVM alone", "FIND_JVM", kFind1},
    {"FIND_JVM with blanks alone", "FIND_JVM   ", kFind1},
    {"FIND_JVM without the second", "FIND_JVM 1", kFind2},
    {"FIND_JVM without the second, first 0", "FIND_JVM 0 ", kFind2},
    {"FIND_JVM, bad first before missing second", "FIND_JVM x", badNumber("x")},
    {"FIND_JVM, first 2 before missing second", "FIND_JVM 2", badBoolean("2")},
    {"FIND_JVM, bad first before bad second", "FIND_JVM 2 x", badBoolean("2")},
    {"FIND_JVM, bad second", "FIND_JVM 1 x", badNumber("x")},
    {"FIND_JVM, second -1", "FIND_JVM 1 -1", badBoolean("-1")},
    {"FIND_JVM, boolean as written", "FIND_JVM @N2@ 1", badBoolean("@N2@")},
    {"FIND_JVM, bad reference has no line", "FIND_JVM @N9@ 1", kBadReference},
    {"FIND_JVM, reference not closed", "FIND_JVM @N1 1", kUnclosedReference},
    {"FIND_JVM, reference torn by a blank", "FIND_JVM @N 1@ 1", kUnclosedReference},
    {"FIND_JVM in lower case", "find_jvm 1 1", badCommand("find_jvm")},

    {"VERIFY", "VERIFY 1 0 3", "verifyJVM 1 0 3"},
    {"VERIFY, negative index", "VERIFY 0 1 -2147483648", "verifyJVM 0 1 -2147483648"},
    {"VERIFY with references", "VERIFY @N1@ @N3@ @N2@@N2@", "verifyJVM 1 0 77"},
    {"VERIFY alone", "VERIFY", kVerify1},
    {"VERIFY without the second", "VERIFY 1", kVerify2},
    {"VERIFY without the third", "VERIFY 1 1", kVerify3},
    {"VERIFY, bad first", "VERIFY yes", badNumber("yes")},
    {"VERIFY, bad second before missing third", "VERIFY 1 2", badBoolean("2")},
    {"VERIFY, bad third", "VERIFY 1 1 x", badNumber("x")},

    {"INSTALL_JVM 0", "INSTALL_JVM 0", "installJVM 0"},
    {"INSTALL_JVM 1", "INSTALL_JVM 1", "installJVM 1"},
    {"INSTALL_JVM 2", "INSTALL_JVM 2", "installJVM 2"},
    {"INSTALL_JVM 3", "INSTALL_JVM 3", kInstall},
    {"INSTALL_JVM -1", "INSTALL_JVM -1", kInstall},
    {"INSTALL_JVM, highest number", "INSTALL_JVM 2147483647", kInstall},
    {"INSTALL_JVM, past 32 bits", "INSTALL_JVM 4294967296", kInstall},
    {"INSTALL_JVM with a reference", "INSTALL_JVM @N1@", "installJVM 1"},
    {"INSTALL_JVM with a bad value", "INSTALL_JVM @N2@", kInstall},
    {"INSTALL_JVM x", "INSTALL_JVM x", badNumber("x")},
    {"INSTALL_JVM alone", "INSTALL_JVM", kInstall},

    {"ILAUNCH", "ILAUNCH 4 10", "ilaunch 4 10"},
    {"ILAUNCH, negative", "ILAUNCH -4 -10", "ilaunch -4 -10"},
    {"ILAUNCH, highest seconds", "ILAUNCH 4 32767", "ilaunch 4 32767"},
    {"ILAUNCH, past the highest seconds", "ILAUNCH 4 32768", "ilaunch 4 -32768"},
    {"ILAUNCH, highest index", "ILAUNCH 2147483647 0", "ilaunch 2147483647 0"},
    {"ILAUNCH with references", "ILAUNCH @N2@ @N1@0", "ilaunch 7 10"},
    {"ILAUNCH alone", "ILAUNCH", kILaunch1},
    {"ILAUNCH without seconds", "ILAUNCH 4", kILaunch2},
    {"ILAUNCH, bad index before missing seconds", "ILAUNCH x", badNumber("x")},
    {"ILAUNCH, bad seconds", "ILAUNCH 4 x", badShort("x")},

    {"EXECUTE_LAUNCHER", "EXECUTE_LAUNCHER 2", "executeEmbeddedLauncher 2"},
    {"EXECUTE_LAUNCHER with a reference", "EXECUTE_LAUNCHER @N2@", "executeEmbeddedLauncher 7"},
    {"EXECUTE_LAUNCHER, bad index", "EXECUTE_LAUNCHER x", badNumber("x")},
    // QUIRK(execute-launcher-text)
    {"EXECUTE_LAUNCHER alone", "EXECUTE_LAUNCHER", kILaunch1},

    {"LAUNCH", "LAUNCH /a.jvm 5", "launch [/a.jvm] 5"},
    {"LAUNCH with a reference", "LAUNCH @S1@ 5", "launch [/jvm dir/a.jvm] 5"},
    {"LAUNCH, quoted", "LAUNCH \"/jvm dir/a.jvm\" 5", "launch [/jvm dir/a.jvm] 5"},
    {"LAUNCH, quoted with quotes", "LAUNCH \"a \"\"b\"\" c\" 5", "launch [a \"b\" c] 5"},
    {"LAUNCH, quoted reference", "LAUNCH \"@S1@\" @N2@", "launch [/jvm dir/a.jvm] 7"},
    {"LAUNCH, several blanks", "LAUNCH   /a.jvm   5", "launch [/a.jvm] 5"},
    {"LAUNCH, seconds directly behind the quote", "LAUNCH \"/a.jvm\"5", "launch [/a.jvm] 5"},
    {"LAUNCH, negative seconds", "LAUNCH /a.jvm -1", "launch [/a.jvm] -1"},
    {"LAUNCH, seconds past 16 bits", "LAUNCH /a.jvm 65541", "launch [/a.jvm] 5"},
    {"LAUNCH, empty value", "LAUNCH @S9@ 5", "launch [] 5"},
    {"LAUNCH, more tokens ignored", "LAUNCH /a.jvm 5 6", "launch [/a.jvm] 5"},
    {"LAUNCH alone", "LAUNCH", kLaunch2},
    {"LAUNCH with a blank", "LAUNCH ", kLaunch2},
    {"LAUNCH, no seconds", "LAUNCH /a.jvm", kLaunch2},
    {"LAUNCH, no seconds, a blank behind", "LAUNCH /a.jvm ", kLaunch2},
    {"LAUNCH, one character", "LAUNCH x", kLaunch2},
    {"LAUNCH, bad seconds", "LAUNCH /a.jvm x", badShort("x")},
    {"LAUNCH, no seconds, reference", "LAUNCH @S1@",  // loses its closing @
     "Line 1: Invalid jvm file name specified in LAUNCH. Invalid variable specification."},
    {"LAUNCH, bad reference has no line", "LAUNCH @S0@ 5",
     "LauncherException: Invalid jvm file name specified in LAUNCH. Variable number is invalid "
     "(0)"},
    {"LAUNCH, empty quotes", "LAUNCH \"\" 5",
     "Line 1: Invalid jvm file name specified in LAUNCH. Empty expression."},
    // QUIRK(last-character-of-launch)
    {"LAUNCH, quoted, no seconds", "LAUNCH \"x\"", badQuote("\"x")},
    {"LAUNCH, quoted, no seconds, a blank behind", "LAUNCH \"x\" ", kLaunch2},
    {"LAUNCH, quote not closed", "LAUNCH \"/a.jvm 5", badQuote("\"/a.jvm ")},
    {"LAUNCH, quote alone", "LAUNCH \"", kLaunch2},

    {"GOTO alone", "GOTO", "Line 1: The GOTO command requires a label as its only argument."},
    {"GOTO nowhere", "GOTO x", "Line 1: Label not found (x)"},
    {"GOTO a label as written", "GOTO x@N1@", "Line 1: Label not found (x@N1@)"},
    {"GOTO an empty value", "GOTO @S9@",
     "Line 1: Label @S9@ resolved to a blank string. Labels cannot be blank."},
    {"GOTO, reference not closed", "GOTO @N1",
     "Line 1: Invalid label specified. Invalid variable specification."},
    {"GOTO, bad reference has no line", "GOTO @N9@",
     "LauncherException: Invalid label specified. Variable number is invalid (9)"},
    {"GOTO with a colon", "GOTO :x", "Line 1: Label not found (:x)"},

    // QUIRK(jmp0-second-argument)
    {"JMP0 alone", "JMP0",
     "Line 1: The second argument to JMP0 must be numeric. Empty expression."},
    {"JMP0 abc", "JMP0 abc done",
     "Line 1: The second argument to JMP0 must be numeric.Invalid numeric expression (abc)"},
    {"JMP0, bad value before missing label", "JMP0 abc",
     "Line 1: The second argument to JMP0 must be numeric.Invalid numeric expression (abc)"},
    {"JMP0, reference not closed", "JMP0 @N1 done",
     "Line 1: The second argument to JMP0 must be numeric. Invalid variable specification."},
    {"JMP0, bad reference has no line", "JMP0 @N6@ done",
     "LauncherException: The second argument to JMP0 must be numeric. Variable number is invalid "
     "(6)"},
    {"JMP0 0 without a label", "JMP0 0",
     "Line 1: JMP0 requires a jump label as its second argument."},
    {"JMP0 1 without a label", "JMP0 1",
     "Line 1: JMP0 requires a jump label as its second argument."},
    {"JMP0 0 nowhere", "JMP0 0 x", "Line 1: Label not found (x)"},
    {"JMP0 1 nowhere", "JMP0 1 x", ""},
    {"JMP0 1, label not evaluated", "JMP0 1 @N9@", ""},

    {"label", ":x", ""},
    {"label with text behind", ":x y @", ""},
    {"colon alone", ":", ""},
    {"label with blanks in front", "  :x", ""},
    {"comment", "// LAUNCH", ""},
    {"comment marker at the end", "//", ""},
    {"comment with blanks in front", " // x", ""},
    // QUIRK(comment-marker-alone)
    {"comment without a blank", "//x", badCommand("//x")},
    {"three slashes", "/// x", badCommand("///")},
    {"one slash", "/ x", badCommand("/")},

    {"unknown command", "RUN it", badCommand("RUN")},
    {"mixed case", "Goto x", badCommand("Goto")},
    {"longer than a command", "SETX S1 = a", badCommand("SETX")},
    {"shorter than a command", "SE S1 = a", badCommand("SE")},
    {"a reference is no command", "@S1@ 1", badCommand("@S1@")},
    {"command with a zero byte", "SET\0 S1 = a"s, badCommand("SET\0"s)},
    {"other comment", "# x", badCommand("#")},
    {"empty line", "", kNoCommand},
    {"blank line", "  \t ", kNoCommand},
    {"line of other white space", "\v\f", kNoCommand},
};

TEST(Statements, CallTheirOperationOrFail) {
  for (const StatementRow& row : kStatementRows) {
    SCOPED_TRACE(row.name);
    const test::Variables variables = {{"N1", "1"}, {"N2", "7"}, {"S1", "/jvm dir/a.jvm"}};
    const std::string outcome = run(row.statement, variables);
    std::string calls;
    for (const std::string& call : FakeLauncherOperations::calls()) {
      calls += call;
    }
    EXPECT_EQ(row.wanted, outcome == "0" ? calls : outcome + calls);
  }
}

// --- SET ---

struct SetRow {
  const char* name;
  std::string statement;
  std::string wanted;  // the variables afterwards, or what is thrown
  test::Variables variables = {};
};

std::string badVariable(const std::string& text) {
  return "Line 1: Invalid variable specified on left hand side of SET statement. " + text;
}

std::string badExpression(const std::string& text) {
  return "Line 1: Invalid expression specified for SET command " + text;
}

std::string badValue(const std::string& value) {
  return "Line 1: Invalid value specified for SET command Invalid numeric expression in " + value;
}

const char* const kMissingEquals = "Line 1: SET statement is missing =.";

const SetRow kSetRows[] = {
    {"number", "SET N1 = 12", "N1=12"},
    {"no blanks", "SET N1=12", "N1=12"},
    {"many blanks", " SET \t N1 \t = \t 12 \t ", "N1=12"},
    {"lower-case variable", "SET n5 = 3", "N5=3"},
    {"lenient variable", "SET N 2x = 3", "N2=3"},
    {"text behind the number", "SET N1 = 4x", "N1=4"},
    {"number in quotes", "SET N1 = \" 7\"", "N1=7"},
    {"past 32 bits", "SET N1 = 99999999999", "N1=2147483647"},
    {"word", "SET S1 = abc", "S1=[abc]"},
    {"text with = in it", "SET S1 = a=b", "S1=[a=b]"},
    {"= alone as value", "SET S1 ==", "S1=[=]"},
    {"quoted text", "SET S1 = \"a b\"", "S1=[a b]"},
    {"quoted text keeps its blanks", "SET S1 = \" a \"", "S1=[ a ]"},
    {"doubled quotes", "SET S1 = \"a \"\"b\"\"\"", "S1=[a \"b\"]"},
    {"quoted =", "SET S1 = \"=\"", "S1=[=]"},
    {"doubled @", "SET S1 = a@@b", "S1=[a@b]"},
    {"reference", "SET S2 = \"ver@N1@\"", "N1=12 S2=[ver12]", {{"N1", "12"}}},
    {"reference to itself", "SET S1 = @S1@x", "S1=[ax]", {{"S1", "a"}}},
    {"copied with blanks", "SET S2 = @S1@", "S1=[a b] S2=[a b]", {{"S1", "a b"}}},
    {"string to number", "SET N1 = @S1@", "N1=5 S1=[5 apples]", {{"S1", "5 apples"}}},
    {"empty value to a string", "SET S1 = @S2@", "", {{"S1", "old"}}},
    {"old value replaced", "SET S10 = new", "S10=[new]", {{"S10", "old"}}},
    {"nothing to a string", "SET S1 =", "", {{"S1", "old"}}},
    {"blanks to a string", "SET S1 =   ", "", {{"S1", "old"}}},
    {"nothing to a number", "SET N1 =", badValue("")},
    {"word to a number", "SET N1 = abc", badValue("abc")},
    {"value to a number, as substituted", "SET N1 = @S1@", badValue("abc"), {{"S1", "abc"}}},
    {"a vertical tab is no blank", "SET S1 = \va\v", "S1=[\va\v]"},
    {"no blank between SET and variable", "SET\tS1 = a", "S1=[a]"},

    {"SET alone", "SET", kMissingEquals},
    {"SET with a blank", "SET ", kMissingEquals},
    {"no =", "SET N1 12", kMissingEquals},
    {"no = before a bad variable", "SET X1", kMissingEquals},
    {"= without a variable", "SET = 5",
     badVariable("Variable references must be at least 2 characters (e.g. N1 and S10).")},
    {"= alone",
     "SET =", badVariable("Variable references must be at least 2 characters (e.g. N1 and S10).")},
    {"type alone", "SET N = 5",
     badVariable("Variable references must be at least 2 characters (e.g. N1 and S10).")},
    {"N0", "SET N0 = 5", badVariable("Variable number is invalid (0)")},
    {"N6", "SET N6 = 5", badVariable("Variable number is invalid (6)")},
    {"S11", "SET S11 = 5", badVariable("Variable number is invalid (11)")},
    {"unknown type", "SET X1 = 5",
     badVariable("Invalid variable reference (X1). Must use N or S as the variable type, e.g. N2 "
                 "or S1.")},
    {"reference as variable", "SET @N1@ = 5",
     badVariable("Invalid variable reference (@N1@). Must use N or S as the variable type, e.g. "
                 "N2 or S1.")},
    {"bad variable before a bad value", "SET N6 = @",
     badVariable("Variable number is invalid (6)")},
    {"reference not closed", "SET S1 = @N1", badExpression("Invalid variable specification.")},
    {"bad reference has a line here", "SET S1 = @N9@",
     badExpression("Variable number is invalid (9)")},
    {"no closing quote", "SET S1 = \"abc", "Line 1: Expected double quote to end argument near 1"},
    {"doubled quote at the end", "SET S1 = \"abc\"\"",
     "Line 1: Expected double quote to end argument near -1"},
    {"quote alone", "SET S1 = \"", "Line 1: Expected double quote to end argument near 1"},
    // QUIRK(unquoted-first-word)
    {"two words", "SET S1 = a b", "S1=[a]"},
    {"two numbers", "SET N1 = 1 2", "N1=1"},
    {"reference torn by a blank", "SET S1 = @N 1@",
     badExpression("Invalid variable specification.")},
    // QUIRK(empty-quotes-are-an-error)
    {"empty quotes", "SET S1 = \"\"", badExpression("Empty expression.")},
};

TEST(Set, StoresOrFailsWithItsLine) {
  for (const SetRow& row : kSetRows) {
    SCOPED_TRACE(row.name);
    const std::string outcome = run(row.statement, row.variables);
    EXPECT_EQ(row.wanted, outcome == "0" ? test::describeVariables() : outcome);
  }
}

TEST(Set, AFailureStoresNothing) {
  const test::Variables old = {{"N1", "9"}, {"S1", "old"}};
  for (const SetRow& row : kSetRows) {
    if (run(row.statement, old) != "0") {
      EXPECT_EQ("N1=9 S1=[old]", test::describeVariables()) << row.name;
    }
  }
}

}  // namespace
