#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "authoring/AuthoringError.h"
#include "authoring/SetupCheck.h"
#include "authoring/SetupContents.h"
#include "support/ArchiveFixture.h"

namespace {

using authoring::checkSetup;
using authoring::loadSetup;
using test::StoredFile;

// --- Scripts ---

// A setup in which a script finds whatever it needs: jvm file 2, launcher at position 4.
std::vector<StoredFile> setupWith(const std::string& lines) {
  return {{0, 1, "i", "INSTRUCTIONS:\n" + lines + "\n/:\n"},
          {1, 2, "j", "JVM_EXE: java\nJVM_PROPERTIES: a = b\n"},
          {2, 3, "l", "COMMAND: x\n"},
          {5, 4, "v", ""},
          {7, 5, "e", ""},
          {4, 6, "n", ""}};
}

std::vector<std::string> findingsOf(const test::TempDir& dir,
                                    const std::vector<StoredFile>& files) {
  return checkSetup(loadSetup(test::writeFile(dir / "setup", test::launcherFileBytes(files)), {}));
}

struct ScriptRow {
  const char* name;
  const char* lines;
  std::vector<std::string> findings;  // behind "i: line "
};

const std::vector<ScriptRow> kScriptRows = {
    {"every command",
     "// comment\nINITIALIZE_UI\nFIND_JVM 1 0\nJMP0 @N1@ none\nVERIFY 0 1 2\nINSTALL_JVM 2\n"
     "SET S1 = a\nSET n5 = 12\nSET S10 = \"a \"\"b\"\"\"\nSET S2 = @S1@x@@\nLAUNCH @S2@ 1\n"
     "LAUNCH \"a b\" 0\nLAUNCH a 5\nILAUNCH 2 0\nILAUNCH -1 0\nEXECUTE_LAUNCHER 4\nGOTO "
     "end\n:none\n:end",
     {}},
    {"values known at run time only",
     "FIND_JVM @N1@ @N2@\nVERIFY @N1@ @N1@ @N1@\nILAUNCH @N1@ @N1@\nEXECUTE_LAUNCHER @N1@\n"
     "INSTALL_JVM @N1@\nGOTO @S1@\nJMP0 @N1@ x@N2@\nSET N1 = @S1@",
     {}},
    {"words behind the arguments are ignored", "FIND_JVM 1 1 really\nGOTO x y\n:x", {}},

    {"unknown command", "//\nFIND_JVN 1 1", {"2 (FIND_JVN 1 1): unknown command \"FIND_JVN\""}},
    {"command in small letters",
     "//\nfind_jvm 1 1",
     {"2 (find_jvm 1 1): unknown command \"find_jvm\"; commands are written in capitals"}},
    {"comment without a blank",
     "//\n//comment",
     {"2 (//comment): unknown command \"//comment\"; a comment needs a blank behind //"}},
    {"several findings, in the order of the lines",
     "X\nY\n//",
     {"1 (X): unknown command \"X\"", "2 (Y): unknown command \"Y\""}},

    {"missing arguments",
     "FIND_JVM 1\nGOTO\nILAUNCH 2\nINSTALL_JVM\nJMP0 1\nVERIFY 1 1\nEXECUTE_LAUNCHER",
     {"1 (FIND_JVM 1): FIND_JVM needs 2 arguments", "2 (GOTO): GOTO needs 1 argument",
      "3 (ILAUNCH 2): ILAUNCH needs 2 arguments", "4 (INSTALL_JVM): INSTALL_JVM needs 1 argument",
      "5 (JMP0 1): JMP0 needs 2 arguments", "6 (VERIFY 1 1): VERIFY needs 3 arguments",
      "7 (EXECUTE_LAUNCHER): EXECUTE_LAUNCHER needs 1 argument"}},
    {"booleans",
     "FIND_JVM 2 x\nVERIFY -1 0 2\nFIND_JVM 01 +0",
     {"1 (FIND_JVM 2 x): \"2\" must be 0 or 1", "1 (FIND_JVM 2 x): \"x\" is no number",
      "2 (VERIFY -1 0 2): \"-1\" must be 0 or 1"}},
    {"install options",
     "INSTALL_JVM 0\nINSTALL_JVM 3\nINSTALL_JVM -1\nINSTALL_JVM x",
     {"2 (INSTALL_JVM 3): \"3\" must be 0, 1 or 2", "3 (INSTALL_JVM -1): \"-1\" must be 0, 1 or 2",
      "4 (INSTALL_JVM x): \"x\" is no number"}},
    {"jvm files by number",
     "ILAUNCH 3 0\nILAUNCH 99 0\nVERIFY 1 1 1\nVERIFY 1 1 -1\nILAUNCH 2 x",
     {"1 (ILAUNCH 3 0): no jvm file has the number 3; ILAUNCH does nothing then",
      "2 (ILAUNCH 99 0): no jvm file has the number 99; ILAUNCH does nothing then",
      "3 (VERIFY 1 1 1): no jvm file has the number 1; VERIFY is an error then",
      "4 (VERIFY 1 1 -1): no jvm file has the number -1; VERIFY is an error then",
      "5 (ILAUNCH 2 x): \"x\" is no number"}},
    {"launchers by position",
     "EXECUTE_LAUNCHER 5\nEXECUTE_LAUNCHER 6\nEXECUTE_LAUNCHER -1",
     {"1 (EXECUTE_LAUNCHER 5): position 5 of the file index holds no launcher; positions count "
      "from "
      "0 and are not the files' numbers",
      "2 (EXECUTE_LAUNCHER 6): position 6 of the file index holds no launcher; positions count "
      "from "
      "0 and are not the files' numbers",
      "3 (EXECUTE_LAUNCHER -1): position -1 of the file index holds no launcher; positions count "
      "from 0 and are not the files' numbers"}},

    {"label on the first line",
     ":x\nGOTO x",
     {"2 (GOTO x): the label \"x\" stands on the first line, where it is never found; put a line "
      "with // in front of it"}},
    {"label on the first line and further down", ":x\nGOTO x\n:x", {}},
    {"label on the first line that nobody needs", ":x\n//", {}},
    {"label on the second line", "GOTO x\n:x", {}},
    {"label that is not there",
     "GOTO x\nJMP0 0 y\n:z",
     {"1 (GOTO x): there is no label \"x\"; write a line :x",
      "2 (JMP0 0 y): there is no label \"y\"; write a line :y"}},
    {"label with more on its line",
     "GOTO x\n:x here",
     {"1 (GOTO x): the line of the label \"x\" holds more than the label, which is then never "
      "found; "
      "leave the label alone on its line"}},
    {"label twice",
     "GOTO x\n:x\n:x",
     {"3 (:x): a label of that name stands further up and is always taken"}},

    {"references",
     "GOTO @N1\nFIND_JVM @N6@ @X1@\nSET S1 = @S11@\nSET S1 = @@@\nLAUNCH @S0@ 1\nGOTO @@\n//",
     {"1 (GOTO @N1): the last @ lacks its second one; a single @ is written @@",
      "2 (FIND_JVM @N6@ @X1@): \"N6\" is no variable; there are N1 to N5 and S1 to S10",
      "2 (FIND_JVM @N6@ @X1@): \"X1\" is no variable; there are N1 to N5 and S1 to S10",
      "3 (SET S1 = @S11@): \"S11\" is no variable; there are N1 to N5 and S1 to S10",
      "4 (SET S1 = @@@): the last @ lacks its second one; a single @ is written @@",
      "5 (LAUNCH @S0@ 1): \"S0\" is no variable; there are N1 to N5 and S1 to S10"}},

    {"LAUNCH without its seconds",
     "LAUNCH\nLAUNCH @S2@\nLAUNCH \"a b\"\nLAUNCH \"a b",
     {"1 (LAUNCH): LAUNCH needs the jvm file's name and, behind it on the line, the seconds, as in "
      "LAUNCH @S2@ 1",
      "2 (LAUNCH @S2@): LAUNCH needs the jvm file's name and, behind it on the line, the seconds, "
      "as "
      "in LAUNCH @S2@ 1",
      "3 (LAUNCH \"a b\"): LAUNCH needs the jvm file's name and, behind it on the line, the "
      "seconds, "
      "as in LAUNCH @S2@ 1",
      "4 (LAUNCH \"a b): LAUNCH needs the jvm file's name and, behind it on the line, the seconds, "
      "as in LAUNCH @S2@ 1"}},
    {"LAUNCH with something else than seconds",
     "LAUNCH \"a b\" soon\nLAUNCH a @N9@\nLAUNCH \"\" 1",
     {"1 (LAUNCH \"a b\" soon): \"soon\" is no number",
      "2 (LAUNCH a @N9@): \"N9\" is no variable; there are N1 to N5 and S1 to S10",
      "3 (LAUNCH \"\" 1): the jvm file's name is empty"}},

    {"SET",
     "SET S1\nSET X = 1\nSET N6 = 1\nSET = 1\nSET N1 = x\nSET N1 =\nSET S1 =\nSET S1 = \"\"\n"
     "SET S1 = \"a\nSET S1 = a b\nSET S1=a=b\nSET N1 = 12abc\nSET N1 = x y\nSET N1 = \"x\"",
     {"1 (SET S1): SET needs a variable, = and a value",
      "2 (SET X = 1): \"X\" is no variable; there are N1 to N5 and S1 to S10",
      "3 (SET N6 = 1): \"N6\" is no variable; there are N1 to N5 and S1 to S10",
      "4 (SET = 1): \"\" is no variable; there are N1 to N5 and S1 to S10",
      "5 (SET N1 = x): \"x\" is no number", "6 (SET N1 =): \"\" is no number",
      "8 (SET S1 = \"\"): an empty text in quotes is an error; leave out the quotes",
      "9 (SET S1 = \"a): the text lacks its closing quote",
      "10 (SET S1 = a b): only the first word of the value is stored; put it into double quotes",
      "13 (SET N1 = x y): only the first word of the value is stored; put it into double quotes",
      "13 (SET N1 = x y): \"x\" is no number", "14 (SET N1 = \"x\"): \"x\" is no number"}},
};

TEST(Check, ReadsScriptsAsTheInterpreterDoes) {
  const test::TempDir dir;
  for (const ScriptRow& row : kScriptRows) {
    SCOPED_TRACE(row.name);
    std::vector<std::string> wanted;
    for (const std::string& finding : row.findings) {
      wanted.push_back("i: line " + finding);
    }
    EXPECT_EQ(wanted, findingsOf(dir, setupWith(row.lines)));
  }
}

// --- Other files, and the setup as a whole ---

struct SetupRow {
  const char* name;
  std::vector<StoredFile> files;
  std::vector<std::string> findings;  // "DIR" stands for the scratch folder
};

const StoredFile kScript = {0, 1, "i", "INSTRUCTIONS: //\n"};

std::vector<StoredFile> withScript(const StoredFile& file) {
  return {kScript, file};
}

StoredFile script(const std::string& line) {
  return {0, 1, "i", "INSTRUCTIONS:\n//\n" + line + "\n/:\n"};
}

const std::vector<SetupRow> kSetupRows = {
    {"script alone", {kScript}, {}},
    {"every type",
     allTypes(),
     {"j.tag: JVM_PROPERTIES is missing: hints are not looked at and "
      "VERIFY accepts no JVM"}},
    {"no file",
     {},
     {"DIR/setup: no instruction script: the launcher says nothing and ends with status -1"}},
    {"two scripts",
     {kScript, {0, 2, "i2", "INSTRUCTIONS: x\n"}},
     {"i2: never used, since i stands before it"}},
    {"two launch scripts",
     {kScript, {2, 2, "l", "COMMAND: x\n"}, {2, 3, "l2", "COMMAND: x\n"}},
     {"l2: never used, since l stands before it"}},
    {"empty script",
     {{0, 1, "i", ""}},
     {"i: INSTRUCTIONS is missing: the launcher does nothing and ends with status 0"}},

    {"FIND_JVM alone",
     {script("FIND_JVM 1 1")},
     {"DIR/setup: no jvm file: FIND_JVM finds nothing",
      "DIR/setup: no verify archive: FIND_JVM accepts no JVM"}},
    {"LAUNCH alone",
     {script("LAUNCH a 1")},
     {"DIR/setup: no launch script: LAUNCH does nothing, and the launcher ends with status -1"}},
    {"ILAUNCH alone",
     {script("ILAUNCH -1 1")},
     {"DIR/setup: no launch script: ILAUNCH does nothing, and the launcher ends with status -1"}},
    {"INSTALL_JVM alone",
     {script("INSTALL_JVM 1")},
     {"DIR/setup: no JVM installer: INSTALL_JVM is an error"}},
    {"VERIFY alone",
     {script("VERIFY 1 1 2"), {1, 2, "j", "JVM_EXE: java\nJVM_PROPERTIES: a = b\n"}},
     {"DIR/setup: no verify archive: VERIFY accepts no JVM"}},

    {"jvm file without anything",
     withScript({1, 2, "j", ""}),
     {"j: JVM_EXE is missing: no JVM is ever accepted",
      "j: JVM_PROPERTIES is missing: hints are not looked at and VERIFY accepts no JVM"}},
    {"jvm file with a property that says nothing",
     withScript({1, 2, "j", "JVM_EXE: x\nJVM_PROPERTIES:\na = b\nc\n/:\n"}),
     {"j: JVM_PROPERTIES: \"c\" is ignored; write name = value"}},
    {"jvm file with words for numbers",
     withScript({1, 2, "j", "JVM_EXE: x\nJVM_PROPERTIES: a=b\nSEARCH_ALL: true\n"}),
     {"j: SEARCH_ALL: \"true\" counts as not given; write 1 or 0"}},
    {"jvm file with letters beyond ASCII",
     withScript({1, 2, "j", "JVM_EXE: x\nJVM_PROPERTIES: a=b\nDESC: \xC3\xA4\n"}),
     {"j: DESC holds letters beyond ASCII, which are shown wrongly; write each as \\u and its four "
      "hexadecimal digits"}},

    {"launch script without anything",
     withScript({2, 2, "l", "DESC: x\n"}),
     {"l: COMMAND is missing: there is nothing to run"}},
    {"launch script with words for numbers",
     withScript({2, 2, "l", "COMMAND: x\nDISPLAY_CONSOLE: yes\nAUTO_SET_WORKING_DIR: false\n"}),
     {"l: DISPLAY_CONSOLE: \"yes\" counts as not given; write 1 or 0",
      "l: AUTO_SET_WORKING_DIR: \"false\" counts as not given; write 1 or 0"}},
    {"launch script with numbers and escapes",
     withScript({2, 2, "l", "COMMAND: \xC3\xA4\nDISPLAY_CONSOLE: 1\nDESC: \\u00e4\n"}),
     {}},
    {"launch script with letters beyond ASCII",
     withScript({2, 2, "l", "COMMAND: x\nDESC: caf\xE9\n"}),
     {"l: DESC holds letters beyond ASCII, which are shown wrongly; write each as \\u and its four "
      "hexadecimal digits"}},

    {"launch script with every function",
     withScript({2, 2, "l",
                 "COMMAND: %CP%() %CP%(\"a\",\"%LAUNCHER_DIR%()/b\") %SYSTEMPROP%(\"a\",\"b\")"
                 " %RUNTIME_SYSTEMPROP%() %RUNTIME_JAVAARGS%() %IF_EXISTS%(\"A\",\"%TEMP_DIR%()\")"
                 " %REPLACE%(\"a\", \"b\", \"c\") %LAUNCHER_FILE%() %APPLICATION_ARCHIVE%()"
                 " %APPLICATION_ARCHIVE%(\"a\") 100% @x@ #y#\nARCHIVE: %LAUNCHER_DIR%()/a.jar\n"}),
     {}},
    {"launch script with functions that there are not",
     withScript({2, 2, "l", "COMMAND: %CPP%(\"%TEMPDIR%()\") %cp%() %WHAT%()\nARCHIVE: %A%()\n"}),
     {"l: COMMAND: there is no function \"CPP\"; did you mean CP?",
      "l: COMMAND: there is no function \"TEMPDIR\"; did you mean TEMP_DIR?",
      "l: COMMAND: there is no function \"cp\"; did you mean CP?",
      "l: COMMAND: there is no function \"WHAT\"", "l: ARCHIVE: there is no function \"A\""}},
    {"launch script with a percent sign that calls nothing",
     withScript({2, 2, "l", "COMMAND: 100% of %CP%() and %NONE%()\n"}),
     {"l: COMMAND: there is no function \" of \""}},
    {"launch script with wrong numbers of arguments",
     withScript(
         {2, 2, "l",
          "COMMAND: %REPLACE%(\"a\",\"b\") %TEMP_DIR%(\"a\") %APPLICATION_ARCHIVE%(\"a\",\"b\")"
          " %CP%(\"%SYSTEMPROP%(\"\"a\"\")\") %IF_EXISTS%()\n"}),
     {"l: COMMAND: REPLACE needs 3 arguments and has 2",
      "l: COMMAND: TEMP_DIR takes no arguments and has 1",
      "l: COMMAND: APPLICATION_ARCHIVE takes at most 1 argument and has 2",
      "l: COMMAND: SYSTEMPROP needs 2 arguments and has 1",
      "l: COMMAND: IF_EXISTS needs 2 arguments and has 0"}},
    {"launch script with a call that does not end",
     withScript({2, 2, "l", "COMMAND: %CP%(\"a\" %NONE%()\nARCHIVE: %TEMP_DIR%/a\n"}),
     {"l: COMMAND: CP needs parentheses, and in them texts in double quotes with commas between",
      "l: ARCHIVE: TEMP_DIR needs parentheses, and in them texts in double quotes with commas "
      "between"}},

    {"misspelt tags",
     {{0, 1, "i", "INSTRUCTIONS: //\nINSTRUCTION: //\n"},
      {1, 2, "j", "JVM_EXE: x\nJVM_PROPERTIES: a=b\nPLATFORM_HINTS: A\nSerch_All: 1\n"},
      {2, 3, "l", "COMMAND: x\nARCHIV: y\n"},
      {8, 4, "m", "MESSAGE: x\nmessage: y\n"}},
     {"i: INSTRUCTION is no tag that the launcher knows; did you mean INSTRUCTIONS?",
      "j: PLATFORM_HINTS is no tag that the launcher knows; did you mean PLATFORM_HINT?",
      "j: Serch_All is no tag that the launcher knows; did you mean SEARCH_ALL?",
      "l: ARCHIV is no tag that the launcher knows; did you mean ARCHIVE?",
      "m: message is no tag that the launcher knows; did you mean MESSAGE?"}},
    {"tags of the author's own",
     {kScript,
      {1, 2, "j", "JVM_EXE: x\nJVM_PROPERTIES: a=b\nVENDOR: x\nJVM_HOMES: y\nSYSTEMS: z\n"},
      {2, 3, "l", "COMMAND: @JVM_HOMES@ %IF_EXISTS%(\"SYSTEMS\",\"x\")\n"}},
     {}},
    {"several lines where one counts, and a word for a number",
     withScript(
         {1, 2, "j", "JVM_EXE:\na\nb\n/:\nJVM_PROPERTIES:\na=b\nc=d\n/:\nUSE_CP_ENV_VAR: yes\n"}),
     {"j: JVM_EXE has several lines, of which the first alone counts; write one line",
      "j: USE_CP_ENV_VAR: \"yes\" counts as 0; write 1 or 0"}},

    {"message without anything",
     withScript({8, 2, "m", ""}),
     {"m: MESSAGE is missing: an empty line is shown when no JVM is found"}},
    {"message of two lines",
     withScript({8, 2, "m", "MESSAGE:\na\nb\n/:\n"}),
     {"m: MESSAGE has several lines, of which the first alone counts; write one line"}},

    {"tag file that does not parse",
     withScript({1, 2, "j", "A: 1\nB\n"}),
     {"Syntax error in j at line 2 ==> Missing colon at the end of the tag name."}},
    {"tag file with an open quote",
     withScript({1, 2, "j", "A: \"1\n"}),
     {"j: Expected double quote to end argument near 4"}},
    {"script that does not parse",
     {{0, 1, "i", "A\n"}},
     {"Syntax error in i at line 1 ==> Missing colon at the end of the tag name."}},
    {"names",
     {kScript, {3, 2, "../a", ""}, {3, 3, "", ""}, {3, 4, "input.tag", ""}},
     {"../a: its name is a path; write the plain name of a file", ": its name is empty",
      "input.tag: its name is the name of the file that -cv:extract writes itself"}},
    {"names and numbers twice",
     {kScript, {3, 2, "a", ""}, {3, 2, "a", ""}},
     {"a: another file has this name, too; copied out, one would overwrite the other",
      "a: another file has the number 2, too; scripts reach only the first"}},
};

std::string withDir(std::string text, const test::TempDir& dir) {
  return text.rfind("DIR", 0) == 0 ? dir.path() + text.substr(3) : text;
}

TEST(Check, FindsWhatWouldGoWrong) {
  const test::TempDir dir;
  for (const SetupRow& row : kSetupRows) {
    SCOPED_TRACE(row.name);
    std::vector<std::string> wanted;
    for (const std::string& finding : row.findings) {
      wanted.push_back(withDir(finding, dir));
    }
    EXPECT_EQ(wanted, findingsOf(dir, row.files));
  }
}

// Entries that only a broken tool could have written.
TEST(Check, FindsWhatIsWrongInAnIndex) {
  const test::TempDir dir;
  const std::string path = test::writeFile(
      dir / "setup",
      test::launcherFileBytes("INSTRUCTIONS: //\n",
                              authoring::encodeIndex({{0, 1, 17, 10, "i", {}},
                                                      {3, 2, 1000, 10, "far", {}},
                                                      {1, 3, 1, -1, "before", {}},
                                                      {3, 4, -1, 1, "less\\", {}}})));
  EXPECT_EQ((std::vector<std::string>{"far: its bytes lie outside the launcher file",
                                      "before: its bytes lie outside the launcher file",
                                      "less\\x5C: its bytes lie outside the launcher file"}),
            checkSetup(loadSetup(path, {})));
}

// An index that names the same text over and over takes no more memory here than in a launcher,
// which refuses it.
TEST(Check, DoesNotLoadTheSameTextOverAndOver) {
  const test::TempDir dir;
  const std::string text = "A:\n" + std::string(99993, 'x') + "\n/:\n";
  const authoring::IndexRecord record = {1, 1, 100000, test::kStoredOffset, "j", {}};
  const std::string path = test::writeFile(
      dir / "setup",
      test::launcherFileBytes(text, authoring::encodeIndex(std::vector(200, record))));
  const authoring::Setup setup = loadSetup(path, {});
  ASSERT_EQ(200u, setup.files.size());
  const auto isLoaded = [](const authoring::SetupFile& file) { return file.tagFile != nullptr; };
  const auto loaded = std::count_if(setup.files.begin(), setup.files.end(), isLoaded);
  EXPECT_GT(loaded, 100);
  EXPECT_LT(loaded, 200);
  EXPECT_EQ(std::vector<std::string>(static_cast<std::size_t>(200 - loaded),
                                     "j: The tag files of the launcher hold more text than its "
                                     "file has room for."),
            setup.findings);
}

TEST(Check, ReadsManifests) {
  const test::TempDir dir;
  test::writeFile(dir / "base/i.tag", "INSTRUCTIONS:\nLAUNCH x 1\n/:\n");
  test::writeFile(dir / "j.tag", "no colon\n");
  const std::string path = test::writeFile(
      dir / "m.json",
      " \n{\"files\": [{\"type\": \"instructions\", \"path\": \"i.tag\"},"
      "{\"type\": \"jvm\", \"path\": \"j.tag\"}, {\"type\": \"jar\", \"path\": \"j.tag\","
      "\"name\": \"j.jar\"}]}");
  EXPECT_EQ(
      (std::vector<std::string>{
          "Syntax error in " + (dir / "j.tag") +
              " at line 1 ==> Missing colon at the end of the tag name.",
          path + ": no launch script: LAUNCH does nothing, and the launcher ends with status -1"}),
      checkSetup(loadSetup(path, {dir / "base"})));
}

TEST(Check, ReadsABareStub) {
  const test::TempDir dir;
  const std::string path = test::writeFile(dir / "stub",
                                           "\x7F"
                                           "ELF");
  EXPECT_EQ(
      (std::vector<std::string>{
          path + ": no instruction script: the launcher says nothing and ends with status -1"}),
      checkSetup(loadSetup(path, {})));
}

}  // namespace
