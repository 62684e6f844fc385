#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "archive/StubMark.h"
#include "authoring/FindingReport.h"
#include "authoring/SetupCheck.h"
#include "authoring/SetupContents.h"
#include "support/ArchiveFixture.h"

namespace {

using authoring::checkSetup;
using authoring::loadSetup;
using test::StoredFile;

// As they are shown, without the newlines.
std::vector<std::string> linesOf(const authoring::Findings& findings) {
  std::vector<std::string> lines;
  for (const authoring::Finding& finding : findings.all()) {
    lines.push_back(describe(finding, false));
    lines.back().pop_back();
  }
  return lines;
}

// --- Scripts ---

// A setup in which a script finds whatever it needs: jvm file 2, launcher at position 4.
std::vector<StoredFile> setupWith(const std::string& lines) {
  return {{0, 1, "i", "INSTRUCTIONS:\n" + lines + "\n/:\n"},
          {1, 2, "j", "JVM_EXE: x\nJVM_PROPERTIES: a = b\n"},
          {2, 3, "l", "COMMAND: x\n"},
          {5, 4, "v", ""},
          {7, 5, "e", ""},
          {4, 6, "n", ""}};
}

std::vector<std::string> findingsOf(const test::TempDir& dir,
                                    const std::vector<StoredFile>& files) {
  return linesOf(
      checkSetup(loadSetup(test::writeFile(dir / "setup", test::launcherFileBytes(files)), {})));
}

struct ScriptRow {
  const char* name;
  const char* lines;
  std::vector<std::string> findings;  // the script's first line is the second of its file
};

const std::vector<ScriptRow> kScriptRows = {
    {"every command",
     "// comment\nINITIALIZE_UI\nFIND_JVM 0 1\nJMP0 @N1@ none\nVERIFY 0 1 2\nINSTALL_JVM 2\n"
     "SET S1 = a\nSET n5 = 12\nSET S10 = \"a \"\"b\"\"\"\nSET S2 = @S1@x@@@@\nSET S3 = x@@\nLAUNCH "
     "@S2@ 1\n"
     "LAUNCH \"a b\" 0\nLAUNCH a 5\nILAUNCH 2 0\nILAUNCH -1 0\nEXECUTE_LAUNCHER 4\nGOTO "
     "end\n:none\n:end",
     {}},
    {"values known at run time only",
     "FIND_JVM @N1@ @N2@\nVERIFY @N1@ @N1@ @N1@\nILAUNCH @N1@ @N1@\nEXECUTE_LAUNCHER @N1@\n"
     "INSTALL_JVM @N1@\nJMP0 @N1@ x@N2@\nSET S5 = 5\nSET N1 = @S5@\n:x0\n"
     "ILAUNCH -1 0",
     {}},
    {"words behind the arguments are ignored", "FIND_JVM 1 1 really\nGOTO x y\n:x", {}},

    {"unknown command",
     "//\nFIND_JVN 1 1",
     {"i:3: error: unknown command \"FIND_JVN\"; the script ends with an error here; did you mean "
      "FIND_JVM?"}},
    {"command in small letters",
     "//\nfind_jvm 1 1",
     {"i:3: error: unknown command \"find_jvm\"; the script ends with an error here; write "
      "FIND_JVM"}},
    {"comment without a blank",
     "//\n//comment",
     {"i:3: error: unknown command \"//comment\"; the script ends with an error here; a comment "
      "begins with // and a blank"}},
    {"several findings, in the order of the lines",
     "X\nY\n//",
     {"i:2: error: unknown command \"X\"; the script ends with an error here; the commands are "
      "FIND_JVM, GOTO, ILAUNCH, INITIALIZE_UI, INSTALL_JVM, JMP0, LAUNCH, SET, VERIFY, "
      "EXECUTE_LAUNCHER",
      "i:3: error: unknown command \"Y\"; the script ends with an error here; the commands are "
      "FIND_JVM, GOTO, ILAUNCH, INITIALIZE_UI, INSTALL_JVM, JMP0, LAUNCH, SET, VERIFY, "
      "EXECUTE_LAUNCHER"}},

    {"missing arguments",
     "FIND_JVM 1\nGOTO\nILAUNCH 2\nINSTALL_JVM\nJMP0 1\nVERIFY 1 1\nEXECUTE_LAUNCHER",
     {"i:2: error: FIND_JVM needs 2 arguments; the script ends with an error here; write FIND_JVM "
      "1 1",
      "i:3: error: GOTO needs 1 argument; the script ends with an error here; write GOTO LABEL",
      "i:4: error: ILAUNCH needs 2 arguments; the script ends with an error here; write ILAUNCH "
      "NUMBER 1",
      "i:5: error: INSTALL_JVM needs 1 argument; the script ends with an error here; write "
      "INSTALL_JVM 1",
      "i:6: error: JMP0 needs 2 arguments; the script ends with an error here; write JMP0 @N1@ "
      "LABEL",
      "i:7: error: VERIFY needs 3 arguments; the script ends with an error here; write VERIFY 1 1 "
      "NUMBER",
      "i:8: error: EXECUTE_LAUNCHER needs 1 argument; the script ends with an error here; write "
      "EXECUTE_LAUNCHER POSITION"}},
    {"booleans",
     "FIND_JVM 2 x\nVERIFY -1 0 2\nFIND_JVM 01 +0",
     {"i:2: error: \"2\" must be 0 or 1; the script ends with an error here; write 1 or 0",
      "i:2: error: \"x\" is no number; the script ends with an error here; write 1 or 0",
      "i:3: error: \"-1\" must be 0 or 1; the script ends with an error here; write 1 or 0"}},
    {"install options",
     "INSTALL_JVM 0\nINSTALL_JVM 3\nINSTALL_JVM -1\nINSTALL_JVM x",
     {"i:3: error: \"3\" must be 0, 1 or 2; the script ends with an error here; write 0 for a "
      "hidden installation, 1 for a visible one, 2 to let the user name a folder",
      "i:4: error: \"-1\" must be 0, 1 or 2; the script ends with an error here; write 0 for a "
      "hidden installation, 1 for a visible one, 2 to let the user name a folder",
      "i:5: error: \"x\" is no number; the script ends with an error here; write 0 for a hidden "
      "installation, 1 for a visible one, 2 to let the user name a folder"}},
    {"jvm files by number",
     "ILAUNCH 3 0\nILAUNCH 99 0\nVERIFY 1 1 1\nVERIFY 1 1 -1\nILAUNCH 2 x",
     {"i:2: error: no jvm file has the number 3; ILAUNCH does nothing; write the number of a jvm "
      "file, or -1 to end with status -1",
      "i:3: error: no jvm file has the number 99; ILAUNCH does nothing; write the number of a jvm "
      "file, or -1 to end with status -1",
      "i:4: error: no jvm file has the number 1; the script ends with an error here; write the "
      "number of a jvm file",
      "i:5: error: no jvm file has the number -1; the script ends with an error here; write the "
      "number of a jvm file",
      "i:6: error: \"x\" is no number; the script ends with an error here; write a number"}},
    {"launchers by position",
     "EXECUTE_LAUNCHER 5\nEXECUTE_LAUNCHER 6\nEXECUTE_LAUNCHER -1",
     {"i:2: error: position 5 of the file index holds no launcher; the script ends with an error "
      "here; write the launcher's position, which counts from 0 and is not its number",
      "i:3: error: position 6 of the file index holds no launcher; the script ends with an error "
      "here; write the launcher's position, which counts from 0 and is not its number",
      "i:4: error: position -1 of the file index holds no launcher; the script ends with an error "
      "here; write the launcher's position, which counts from 0 and is not its number"}},

    {"label on the first line",
     ":x\nGOTO x",
     {"i:3: error: the label \"x\" stands on the script's first line, where it is never found; the "
      "script ends with an error here; put a line with // in front of it"}},
    {"label on the first line and further down", ":x\nGOTO x\n:x", {}},
    {"label on the first line that nobody needs", ":x\n//", {}},
    {"label on the second line", "GOTO x\n:x", {}},
    {"label that is not there",
     "GOTO x\nJMP0 0 y\n:z",
     {"i:2: error: there is no label \"x\"; the script ends with an error here; write a line :x",
      "i:3: error: there is no label \"y\"; the script ends with an error here; write a line :y"}},
    {"label with more on its line",
     "GOTO x\n:x here",
     {"i:2: error: the line of the label \"x\" holds more than the label, which is never found "
      "then; the script ends with an error here; write :x and nothing else on that line"}},
    {"label twice",
     "GOTO x\n:x\n:x",
     {"i:4: warning: the label \":x\" stands further up, too; the first one is always taken; give "
      "this one another name"}},

    {"references",
     "GOTO @N1\nFIND_JVM @N6@ @X1@\nSET S1 = @S11@\nSET S1 = @@@\nLAUNCH @S0@ 1\nGOTO @@\n//",
     {"i:2: error: the last @ lacks its second one; the script ends with an error here; write a "
      "single @ as @@",
      "i:3: error: \"N6\" is no variable; the script ends with an error here; write N1 to N5 or S1 "
      "to S10",
      "i:3: error: \"X1\" is no variable; the script ends with an error here; write N1 to N5 or S1 "
      "to S10",
      "i:4: error: \"S11\" is no variable; the script ends with an error here; write N1 to N5 or "
      "S1 to S10",
      "i:5: error: the last @ lacks its second one; the script ends with an error here; write a "
      "single @ as @@",
      "i:6: error: \"S0\" is no variable; the script ends with an error here; write N1 to N5 or S1 "
      "to S10"}},

    {"LAUNCH without its seconds",
     "LAUNCH\nLAUNCH @S2@\nLAUNCH \"a b\"\nLAUNCH \"a b",
     {"i:2: error: LAUNCH needs the jvm file's name and, behind it on the line, the seconds; the "
      "script ends with an error here; write LAUNCH @S2@ 1",
      "i:3: error: LAUNCH needs the jvm file's name and, behind it on the line, the seconds; the "
      "script ends with an error here; write LAUNCH @S2@ 1",
      "i:4: error: LAUNCH needs the jvm file's name and, behind it on the line, the seconds; the "
      "script ends with an error here; write LAUNCH @S2@ 1",
      "i:5: error: LAUNCH needs the jvm file's name and, behind it on the line, the seconds; the "
      "script ends with an error here; write LAUNCH @S2@ 1"}},
    {"LAUNCH with something else than seconds",
     "LAUNCH \"a b\" soon\nLAUNCH a @N9@\nLAUNCH \"\" 1",
     {"i:2: error: \"soon\" is no number; the script ends with an error here; write a number",
      "i:3: error: \"N9\" is no variable; the script ends with an error here; write N1 to N5 or S1 "
      "to S10",
      "i:4: error: the jvm file's name is empty; the script ends with an error here; write LAUNCH "
      "@S2@ 1"}},

    {"SET",
     "SET S1\nSET X = 1\nSET N6 = 1\nSET = 1\nSET N1 = x\nSET N1 =\nSET S1 =\nSET S1 = \"\"\n"
     "SET S1 = \"a\nSET S1 = a b\nSET S1=a=b\nSET N1 = 12abc\nSET N1 = x y\nSET N1 = \"x\"",
     {"i:2: error: SET needs a variable, = and a value; the script ends with an error here; write "
      "SET N2 = 1",
      "i:3: error: \"X\" is no variable; the script ends with an error here; write N1 to N5 or S1 "
      "to S10",
      "i:4: error: \"N6\" is no variable; the script ends with an error here; write N1 to N5 or S1 "
      "to S10",
      "i:5: error: \"\" is no variable; the script ends with an error here; write N1 to N5 or S1 "
      "to S10",
      "i:6: error: \"x\" is no number; the script ends with an error here; write a number",
      "i:7: error: \"\" is no number; the script ends with an error here; write a number",
      "i:9: error: an empty text stands in quotes; the script ends with an error here; leave out "
      "the quotes",
      "i:10: error: the text lacks its closing quote; the script ends with an error here; write a "
      "double quote at its end",
      "i:11: warning: the value has several words without quotes; only the first is stored; put "
      "the value into double quotes",
      "i:14: warning: the value has several words without quotes; only the first is stored; put "
      "the value into double quotes",
      "i:14: error: \"x\" is no number; the script ends with an error here; write a number",
      "i:15: error: \"x\" is no number; the script ends with an error here; write a number"}},
};

std::vector<std::string> ofScript(std::vector<std::string> lines) {
  std::erase_if(lines, [](const std::string& line) { return !line.starts_with("i:"); });
  return lines;
}

TEST(Check, ReadsScriptsAsTheInterpreterDoes) {
  const test::TempDir dir;
  for (const ScriptRow& row : kScriptRows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.findings, ofScript(findingsOf(dir, setupWith(row.lines))));
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
     {"j.tag: warning: JVM_PROPERTIES is missing; hints are not looked at and VERIFY accepts no "
      "JVM",
      "j.tag: error: CLASSPATH is missing; the class path stands in the command without an option, "
      "and no Java is accepted; write CLASSPATH: \"-cp \"",
      "l.tag:1: warning: COMMAND: CP is not called, though the setup carries jar files; nothing "
      "else puts them on the class path; write %CP%() in front of the class",
      "a.jar: error: the zip archive is cut: the list at its end is missing or broken; Java finds "
      "no class in it; build or copy it again",
      "verify.jar: error: the zip archive is cut: the list at its end is missing or broken; no JVM "
      "is ever accepted; build or copy it again"}},
    {"no file",
     {},
     {"DIR/setup: error: no instruction script; the launcher says nothing and ends with status -1; "
      "add a file of the type instructions"}},
    {"two scripts",
     {kScript, {0, 2, "i2", "INSTRUCTIONS: x\n"}},
     {"i2: warning: i2 is never used; of the files of the type instructions the launcher takes the "
      "first, i; leave it out"}},
    {"two launch scripts",
     {kScript, {2, 2, "l", "COMMAND: x\n"}, {2, 3, "l2", "COMMAND: x\n"}},
     {"l2: warning: l2 is never used; of the files of the type launchscript the launcher takes the "
      "first, l; leave it out"}},
    {"empty script",
     {{0, 1, "i", ""}},
     {"i: error: INSTRUCTIONS is missing; the launcher does nothing and ends with status 0"}},

    {"FIND_JVM alone",
     {script("FIND_JVM 1 1")},
     {"DIR/setup: error: no jvm file; FIND_JVM finds nothing; add a file of the type jvm",
      "DIR/setup: error: no verify archive; FIND_JVM accepts no JVM; add a file of the type "
      "verify"}},
    {"LAUNCH alone",
     {script("LAUNCH a 1")},
     {"DIR/setup: error: no launch script; LAUNCH does nothing, and the launcher ends with status "
      "-1; add a file of the type launchscript"}},
    {"ILAUNCH alone",
     {script("ILAUNCH -1 1")},
     {"DIR/setup: error: no launch script; ILAUNCH does nothing, and the launcher ends with status "
      "-1; add a file of the type launchscript"}},
    {"INSTALL_JVM alone",
     {script("INSTALL_JVM 1")},
     {"DIR/setup: error: no JVM installer; INSTALL_JVM is an error; add a file of the type "
      "jvm-installer"}},
    {"VERIFY alone",
     {script("VERIFY 1 1 2"), {1, 2, "j", "JVM_EXE: x\nJVM_PROPERTIES: a = b\n"}},
     {"DIR/setup: error: no verify archive; VERIFY accepts no JVM; add a file of the type verify"}},

    {"jvm file without anything",
     withScript({1, 2, "j", ""}),
     {"j: error: JVM_EXE is missing; no JVM is ever accepted",
      "j: warning: JVM_PROPERTIES is missing; hints are not looked at and VERIFY accepts no JVM"}},
    {"jvm file with a property that says nothing",
     withScript({1, 2, "j", "JVM_EXE: x\nJVM_PROPERTIES:\na = b\nc\n/:\n"}),
     {"j:4: warning: JVM_PROPERTIES: \"c\" has no equals sign; it is ignored; write name = value"}},
    {"jvm file with words for numbers",
     withScript({1, 2, "j", "JVM_EXE: x\nJVM_PROPERTIES: a=b\nSEARCH_ALL: true\n"}),
     {"j:3: warning: SEARCH_ALL: \"true\" is no number; it counts as not given; write 1 or 0"}},
    {"jvm file with letters beyond ASCII",
     withScript({1, 2, "j", "JVM_EXE: x\nJVM_PROPERTIES: a=b\nDESC: \xC3\xA4\n"}),
     {"j:3: warning: DESC holds letters beyond ASCII; they are shown wrongly; write each as \\u "
      "and its four hexadecimal digits"}},

    {"launch script without anything",
     withScript({2, 2, "l", "DESC: x\n"}),
     {"l: error: COMMAND is missing; there is nothing to run"}},
    {"launch script with words for numbers",
     withScript({2, 2, "l", "COMMAND: x\nDISPLAY_CONSOLE: yes\nAUTO_SET_WORKING_DIR: false\n"}),
     {"l:2: warning: DISPLAY_CONSOLE: \"yes\" is no number; it counts as not given; write 1 or 0",
      "l:3: warning: AUTO_SET_WORKING_DIR: \"false\" is no number; it counts as not given; write 1 "
      "or 0"}},
    {"launch script with numbers and escapes",
     withScript({2, 2, "l", "COMMAND: \xC3\xA4\nDISPLAY_CONSOLE: 1\nDESC: \\u00e4\n"}),
     {}},
    {"launch script with letters beyond ASCII",
     withScript({2, 2, "l", "COMMAND: x\nDESC: caf\xE9\n"}),
     {"l:2: warning: DESC holds letters beyond ASCII; they are shown wrongly; write each as \\u "
      "and its four hexadecimal digits"}},

    {"launch script with every function",
     {kScript,
      {6, 3, "app.zip", "PK", {{1, 1}}},
      {2, 2, "l",
       "COMMAND: %CP%() %CP%(\"a\",\"%LAUNCHER_DIR%()/b\") %SYSTEMPROP%(\"a\",\"b\")"
       " %RUNTIME_SYSTEMPROP%() %RUNTIME_JAVAARGS%() %IF_EXISTS%(\"A\",\"%TEMP_DIR%()\")"
       " %REPLACE%(\"a\", \"b\", \"c\") %LAUNCHER_FILE%() %APPLICATION_ARCHIVE%()"
       " %APPLICATION_ARCHIVE%(\"a\") 100% @x@ #USER#\nARCHIVE: %LAUNCHER_DIR%()/a.jar\n"}},
     {}},
    {"launch script with functions that there are not",
     withScript({2, 2, "l", "COMMAND: %CPP%(\"%TEMPDIR%()\") %cp%() %WHAT%()\nARCHIVE: %A%()\n"}),
     {"l:1: error: COMMAND: there is no function \"CPP\"; the wizard is not started; did you mean "
      "CP?",
      "l:1: error: COMMAND: there is no function \"TEMPDIR\"; the wizard is not started; did you "
      "mean TEMP_DIR?",
      "l:1: error: COMMAND: there is no function \"cp\"; the wizard is not started; did you mean "
      "CP?",
      "l:1: error: COMMAND: there is no function \"WHAT\"; the wizard is not started",
      "l:2: error: ARCHIVE: there is no function \"A\"; the wizard is not started"}},
    {"launch script with a percent sign that calls nothing",
     withScript({2, 2, "l", "COMMAND: 100% of %CP%() and %NONE%()\n"}),
     {"l:1: error: COMMAND: there is no function \" of \"; the wizard is not started; put a "
      "percent sign of your own behind all calls, or into a tag of the jvm file"}},
    {"launch script with wrong numbers of arguments",
     withScript(
         {2, 2, "l",
          "COMMAND: %REPLACE%(\"a\",\"b\") %TEMP_DIR%(\"a\") %APPLICATION_ARCHIVE%(\"a\",\"b\")"
          " %CP%(\"%SYSTEMPROP%(\"\"a\"\")\") %IF_EXISTS%()\n"}),
     {"l:1: error: COMMAND: REPLACE needs 3 arguments and has 2; the wizard is not started",
      "l:1: error: COMMAND: TEMP_DIR takes no arguments and has 1; the wizard is not started",
      "l:1: error: COMMAND: APPLICATION_ARCHIVE takes at most 1 argument and has 2; the wizard is "
      "not started",
      "l:1: error: COMMAND: SYSTEMPROP needs 2 arguments and has 1; the wizard is not started",
      "l:1: error: COMMAND: IF_EXISTS needs 2 arguments and has 0; the wizard is not started"}},
    {"launch script with a call that does not end",
     withScript({2, 2, "l", "COMMAND: %CP%(\"a\" %NONE%()\nARCHIVE: %TEMP_DIR%/a\n"}),
     {"l:1: error: COMMAND: CP lacks its ); the wizard is not started; "
      "write parentheses, and in them texts in double quotes with commas between",
      "l:2: error: ARCHIVE: TEMP_DIR lacks its (; the wizard is not "
      "started; write parentheses, and in them texts in double quotes with commas between"}},

    {"misspelt tags",
     {{0, 1, "i", "INSTRUCTIONS: //\nINSTRUCTION: //\n"},
      {1, 2, "j", "JVM_EXE: x\nJVM_PROPERTIES: a=b\nPLATFORM_HINTS: A\nSerch_All: 1\n"},
      {2, 3, "l", "COMMAND: x\nARCHIV: y\n"},
      {8, 4, "m", "MESSAGE: x\nmessage: y\n"}},
     {"i:2: warning: INSTRUCTION is no tag that the launcher knows here; nothing reads it; did you "
      "mean "
      "INSTRUCTIONS?",
      "j:3: warning: PLATFORM_HINTS is no tag that the launcher knows here; nothing reads it; did "
      "you "
      "mean PLATFORM_HINT?",
      "j:4: warning: Serch_All is no tag that the launcher knows here; nothing reads it; did you "
      "mean "
      "SEARCH_ALL?",
      "l:2: warning: ARCHIV is no tag that the launcher knows here; nothing reads it; did you mean "
      "ARCHIVE?",
      "m:2: warning: message is no tag that the launcher knows here; nothing reads it; did you "
      "mean "
      "MESSAGE?"}},
    {"tags of the author's own",
     {kScript,
      {1, 2, "j", "JVM_EXE: x\nJVM_PROPERTIES: a=b\nVENDOR: x\nJVM_HOMES: y\nSYSTEMS: z\n"},
      {2, 3, "l", "COMMAND: @JVM_HOMES@ %IF_EXISTS%(\"SYSTEMS\",\"x\")\n"}},
     {}},
    {"several lines where one counts, and a word for a number",
     withScript(
         {1, 2, "j", "JVM_EXE:\na\nb\n/:\nJVM_PROPERTIES:\na=b\nc=d\n/:\nUSE_CP_ENV_VAR: yes\n"}),
     {"j:3: warning: JVM_EXE has several lines; the first alone counts; write one line",
      "j:9: warning: USE_CP_ENV_VAR: \"yes\" is neither 1 nor 0; it counts as 0; write 1 or 0"}},

    {"message without anything",
     withScript({8, 2, "m", ""}),
     {"m: warning: MESSAGE is missing; an empty line is shown when no JVM is found"}},
    {"message of two lines",
     withScript({8, 2, "m", "MESSAGE:\na\nb\n/:\n"}),
     {"m:3: warning: MESSAGE has several lines; the first alone counts; write one line"}},

    {"tag file that does not parse",
     withScript({1, 2, "j", "A: 1\nB\n"}),
     {"j:2: error: missing colon at the end of the tag name; the launcher cannot load the file; "
      "write NAME: value; there are no comments here"}},
    {"tag file with an open quote",
     withScript({1, 2, "j", "A: \"1\n"}),
     {"j:1: error: expected double quote to end argument near 4; the launcher cannot load the "
      "file; close the quote; a double quote inside the value is written twice"}},
    {"script that does not parse",
     {{0, 1, "i", "A\n"}},
     {"i:1: error: missing colon at the end of the tag name; the launcher cannot load the file; "
      "write NAME: value; there are no comments here"}},
    {"names",
     {kScript, {6, 2, "../a", "x", {{1, 1}}}, {4, 3, "", "#!"}, {7, 4, "input.tag", "#!"}},
     {"../a: error: its name is a path; write the plain name of a file; no launcher could copy it "
      "out",
      "entry 2: error: its name is empty; no launcher could copy it out",
      "input.tag: error: its name is the name of the file that -cv:extract writes itself; no "
      "launcher could copy it out"}},
    {"names and numbers twice",
     {kScript, {7, 2, "a", "#!"}, {7, 2, "a", "#!"}},
     {"a: error: another file has this name, too; copied out, one would overwrite the other; give "
      "each a name of its own",
      "a: error: another file has the number 2, too; scripts reach only the first; give each a "
      "number of its own"}},
};

std::string withDir(std::string text, const test::TempDir& dir) {
  return text.rfind("DIR", 0) == 0 ? dir.path() + text.substr(3) : text;
}

// Most scripts here are too short to use their files.
std::vector<std::string> withoutUnused(std::vector<std::string> lines) {
  std::erase_if(lines, [](const std::string& line) {
    return line.find(" is never used; there is no ") != std::string::npos;
  });
  return lines;
}

TEST(Check, FindsWhatWouldGoWrong) {
  const test::TempDir dir;
  for (const SetupRow& row : kSetupRows) {
    SCOPED_TRACE(row.name);
    std::vector<std::string> wanted;
    for (const std::string& finding : row.findings) {
      wanted.push_back(withDir(finding, dir));
    }
    EXPECT_EQ(wanted, withoutUnused(findingsOf(dir, row.files)));
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
  const std::string outside =
      ": error: its bytes lie outside the launcher file; the file was cut, or made by a broken "
      "tool; "
      "pack the setup again";
  EXPECT_EQ((std::vector<std::string>{"far" + outside, "before" + outside, "less\\" + outside}),
            withoutUnused(linesOf(checkSetup(loadSetup(path, {})))));
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
                                     "j: error: the tag files of the launcher hold more text than "
                                     "its file has room for; the launcher cannot load the file"),
            linesOf(setup.findings));
}

TEST(Check, ReadsManifests) {
  const test::TempDir dir;
  test::writeFile(dir / "base/i.tag", "INSTRUCTIONS:\nLAUNCH x 1\n/:\n");
  test::writeFile(dir / "j.tag", "no colon\n");
  test::writeFile(dir / "stub", "#!/bin/sh\n");
  const std::string path = test::writeFile(
      dir / "m.json",
      " \n{\"files\": [{\"type\": \"instructions\", \"path\": \"i.tag\"},"
      "{\"type\": \"jvm\", \"path\": \"j.tag\"}, {\"type\": \"launcher\", \"path\": \"stub\","
      "\"name\": \"j.jar\"}]}");
  EXPECT_EQ(
      (std::vector<std::string>{
          path +
              ": error: no launch script; LAUNCH does nothing, and the launcher ends with status "
              "-1; add a file of the type launchscript",
          (dir / "j.tag") + ":1: error: missing colon at the end of the tag name; the launcher "
                            "cannot load the file; write NAME: value; there are no comments here"}),
      withoutUnused(linesOf(checkSetup(loadSetup(path, {dir / "base"})))));
}

TEST(Check, ReadsABareStub) {
  const test::TempDir dir;
  const std::string path = test::writeFile(dir / "stub", CORVANE_STUB_MARK("k", "1", "user", "m"));
  EXPECT_EQ(
      (std::vector<std::string>{
          path + ": error: no instruction script; the launcher says nothing and ends with status "
                 "-1; add a file of the type instructions"}),
      linesOf(checkSetup(loadSetup(path, {}))));
}

}  // namespace
